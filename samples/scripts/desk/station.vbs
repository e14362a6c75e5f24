' SPDX-License-Identifier: MIT
' A whole station from a script: imports the sample library, schedules an hour, shows the library window until the user closes
' it, changes an order and restores it after a restart.
'   cscript station.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, cFiles
Set cFiles = CreateObject("Scripting.FileSystemObject")
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = cFiles.GetSpecialFolder(2).Path & "\station"
  If Not cFiles.FolderExists(sFolder) Then cFiles.CreateFolder sFolder
End If

OpenStation
ScheduleAnHour
cSchedMan.ShowLibraryUI
Expect cSchedMan.UIShowing, False
ChangeAnOrder
WScript.Echo "ALL OK"

' Imports the library next to this script's folder, unless the station has one already.
Sub OpenStation()
  Dim bNew, sSamples
  bNew = Not cFiles.FileExists(sFolder & "\station.db")
  Set cDataBase = CreateObject("RavloBase.clsDataBase")
  cDataBase.Open sFolder & "\station.db"
  sSamples = cFiles.GetParentFolderName(cFiles.GetParentFolderName(cFiles.GetParentFolderName(WScript.ScriptFullName)))
  If bNew Then WScript.Echo "Imported " & cDataBase.ImportCsv(sSamples & "\library.csv") & " cuts"
  Restart
End Sub

Sub Restart()
  Set cSchedMan = Nothing
  Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
  cSchedMan.PopulateFromDataBase cDataBase, sFolder
  cSchedMan.RotatesAllowed = True
End Sub

' Slot after slot until the hour is full. The cut before tells each pick when it starts.
Sub ScheduleAnHour()
  Dim colLevels, dtNext, dtEnd, cPrevious, cCut, cMainCat, cSubCat, sKey, i
  colLevels = Array("rock" & vbTab & "1", "pop" & vbTab & "1", "rock" & vbTab & "2")
  dtNext = DateSerial(2026, 3, 2) + TimeSerial(6, 0, 0)
  dtEnd = dtNext + TimeSerial(1, 0, 0)
  Set cPrevious = Nothing
  i = 0
  Do While dtNext < dtEnd
    ' Orders are saved once at the end: planning ahead need not write the file with every pick.
    Set cCut = cSchedMan.NextCutFromRotation(colLevels(i Mod 3), False, cPrevious, cMainCat, cSubCat, sKey, False, False)
    Expect cCut.KindCode, 0
    cCut.LastPlayed = dtNext
    cSchedMan.UpdateArtistTitleHistory cCut
    dtNext = DateAdd("s", cCut.DurationmS / 1000, dtNext)
    Set cPrevious = cCut
    i = i + 1
  Loop
  Expect cSchedMan.SaveHistoryAndOrdering(Nothing), True
  WScript.Echo "Scheduled " & i & " cuts from 06:00 to " & FormatDateTime(dtNext, 4)
End Sub

' Makes the last cut of a level play next.
Sub ChangeAnOrder()
  Dim cLevel, cLast, colMove
  Set cLevel = LevelOf("rock", 1)
  Set cLast = cLevel.SchedCuts(cLevel.SchedCuts.Count)
  Set colMove = CreateObject("KorvaCollection.clsCollection")
  colMove.Add cLast, cLast.Key
  cSchedMan.MoveCutsInCategory cLevel, colMove, 1
  Expect cLevel.SchedCuts(1).Key, cLast.Key
  Set cLevel = Nothing
  Restart
  Expect LevelOf("rock", 1).SchedCuts(1).Key, cLast.Key
  WScript.Echo "Next in rock 1, also after a restart: " & cLast.Artist & " - " & cLast.Title
End Sub

Function LevelOf(sName, lLevel)
  Set LevelOf = cSchedMan.colMainCats(sName & vbTab & "0").SubCats(CStr(lLevel))
End Function

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
