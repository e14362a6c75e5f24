' SPDX-License-Identifier: MIT
' Events of the manager and of the database reach a script, with values that come back.
Option Explicit
Class ManagerEvents
  Public sHeard
  Public Sub ShowHelpEvent() : sHeard = sHeard & "help;" : End Sub
  Public Sub ProgressStart(sReason, lMax) : sHeard = sHeard & "start " & sReason & " " & lMax & ";" : End Sub
  Public Sub ProgressDone(sStatus) : sHeard = sHeard & "done " & sStatus & ";" : End Sub
  Public Sub RequestEditCut(cCut, Result) : sHeard = sHeard & "edit " & cCut.Title & " " & Result & ";" : Result = 42 : End Sub
End Class
Class DataBaseEvents
  Public sHeard
  Public Sub CutsAdded(colCuts) : sHeard = sHeard & "added " & colCuts.Count & " " & colCuts(1).Title & ";" : End Sub
  Public Sub CutsModified(colCuts) : sHeard = sHeard & "modified " & colCuts("c:\1.MP3").Title & ";" : End Sub
  Public Sub CutsRemoved(colCuts)
    Dim cEach
    For Each cEach In colCuts : sHeard = sHeard & "removed " & cEach.Title & ";" : Next
  End Sub
End Class

Dim helper, cSchedMan, cDataBase, onManager, onDataBase, lManager, lDataBase, cCut, colCuts, vResult
Set helper = CreateObject("RavloTest.Events")
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
Set cDataBase = CreateObject("RavloBase.clsDataBase")
Set onManager = New ManagerEvents
Set onDataBase = New DataBaseEvents
lManager = helper.Connect(cSchedMan, onManager)
lDataBase = helper.Connect(cDataBase, onDataBase)

cDataBase.Open WScript.Arguments(0) & "\events.db"
Set cCut = cDataBase.NewCut
cCut.Key = "C:\1.mp3" : cCut.Title = "One" : cCut.CategoryText = "Rock" : cCut.CatLevel = 1
Set colCuts = CreateObject("KorvaCollection.clsCollection")
colCuts.Add cCut
cDataBase.AddCuts colCuts
cCut.Title = "Two"
cDataBase.ModifyCuts colCuts
cDataBase.RemoveCuts colCuts
Expect onDataBase.sHeard, "added 1 One;modified Two;removed Two;"

cSchedMan.ShowHelp
vResult = 5
cSchedMan.RaiseEditRequestCutEvent cCut, vResult
Expect vResult, 42
Expect onManager.sHeard, "help;edit Two 5;"
onManager.sHeard = ""
cSchedMan.PopulateFromDataBase cDataBase, WScript.Arguments(0)
Expect Left(onManager.sHeard, 48), "start Initialising Scheduler - creating categori"

helper.Disconnect lManager
onManager.sHeard = ""
cSchedMan.ShowHelp
Expect onManager.sHeard, ""
helper.Disconnect lDataBase
WScript.Echo "ALL OK"

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
