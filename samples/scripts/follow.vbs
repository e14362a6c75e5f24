' SPDX-License-Identifier: MIT
' The scheduler's events: progress, and requests of its user to edit a cut or to see the help. Windows Script Host binds
' events to procedures whose names begin with a prefix.
'   cscript follow.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, cCut, colCuts, vAnswer, bBound, lStarted, lDone
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\follow.db"
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")

' Some script hosts cannot bind events: the script continues without them.
On Error Resume Next
WScript.ConnectObject cSchedMan, "man_"
bBound = (Err.Number = 0)
On Error GoTo 0
If Not bBound Then WScript.Echo "This script host binds no events"

cSchedMan.PopulateFromDataBase cDataBase, sFolder
Set cCut = cDataBase.NewCut
cCut.Key = "C:\Music\one.mp3" : cCut.Title = "One" : cCut.CategoryText = "Rock" : cCut.CatLevel = 1
Set colCuts = CreateObject("KorvaCollection.clsCollection")
colCuts.Add cCut
cDataBase.AddCuts colCuts                 ' the database notifies the scheduler, which notifies the host
If bBound Then Expect lStarted > 0 And lDone > 0, True

' The windows request the host's editor and help in the same way as these calls.
vAnswer = 0
cSchedMan.RaiseEditRequestCutEvent cCut, vAnswer
If bBound Then Expect vAnswer, 1
cSchedMan.ShowHelp
If bBound Then WScript.DisconnectObject cSchedMan
Expect cSchedMan.colCuts("Rock", 1).Count, 1
WScript.Echo "ALL OK"

Sub man_ProgressStart(sReason, lMax)
  lStarted = lStarted + 1
  WScript.Echo sReason & " (" & lMax & ")"
End Sub

Sub man_Progress(strProgress, lCount, lMax)
  WScript.Echo "  " & strProgress & " (" & lCount & " of " & lMax & ")"
End Sub

Sub man_ProgressDone(sStatus)
  lDone = lDone + 1
  WScript.Echo sStatus
End Sub

' The caller receives what the host stores in Result.
Sub man_RequestEditCut(cEdited, Result)
  WScript.Echo "Edit " & cEdited.Title
  Result = 1
End Sub

Sub man_ShowHelpEvent()
  WScript.Echo "Help"
End Sub

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
