' SPDX-License-Identifier: MIT
' Finds a song that never plays, switches fair rotation on, prints a forecast, explains a pick and writes a report.
'   cscript forecast.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, cRotation, cSimulation, cLevel, cStarved, cExplanation, cStep, sRemedy, sLevel, cCut
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
sLevel = "Rock" & vbTab & "1"

Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\forecast.db"
FillDataBase
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder
cSchedMan.colMainCats("Rock" & vbTab & "0").SubCats("1").Rules.ArtistSepMins = 10
cSchedMan.colMainCats("Rock" & vbTab & "0").SubCats("1").Rules.TitleSepMins = 1

' The plan: an hour of three-minute songs, all of one level.
Set cRotation = CreateObject("RavloScheduler.clsRotation")
Set cRotation.Scheduler = cSchedMan
cRotation.AddSlot sLevel
Expect cRotation.SlotCount, 1

' A week as it is. Songs 1 and 2 have one artist; the second is passed over in every round.
Set cSimulation = cRotation.Simulate(DateSerial(2030, 1, 7), 7)
Expect cSimulation.Picks, 7 * 24 * 20
Set cLevel = cSimulation.Levels(sLevel)
Expect cLevel.Light, 2
Expect cLevel.NeverPlayed.Count, 1
For Each cStarved In cLevel.NeverPlayed
  WScript.Echo cStarved.Cut.Title & " never plays; in its way is " & cStarved.BlockedBy.Title
  Expect cStarved.Cut Is cDataBase.CutByKey("C:\Music\2.mp3"), True
Next
For Each sRemedy In cLevel.Advice
  WScript.Echo "  " & sRemedy
Next
Expect cLevel.Advice.Count > 0, True

' The same week under fair rotation, then for good.
Set cSimulation = cRotation.Simulate(DateSerial(2030, 1, 7), 7, True)
Expect cSimulation.Plays("C:\Music\2.mp3") > 0, True
cRotation.FairRotation = True
Expect cRotation.FairRotation, True

' Why is the next song that one?
cSchedMan.RotatesAllowed = True
Set cCut = cSchedMan.NextCutFromRotation(sLevel, False, Nothing, Nothing, Nothing, "")
cCut.LastPlayed = Now
cSchedMan.UpdateArtistTitleHistory cCut
Set cExplanation = cRotation.Explain(sLevel, False, Nothing)
WScript.Echo cExplanation.Text
Expect cExplanation.Steps.Count, 2
Set cStep = cExplanation.Steps(1)
Expect cStep.Verdict, 1
Expect cStep.BlockedBy.Title, "Song1"
Expect cExplanation.Cut.Title, "Song3"

cRotation.WriteReport cSimulation, sFolder & "\forecast.html"
Expect CreateObject("Scripting.FileSystemObject").FileExists(sFolder & "\forecast.html"), True
WScript.Echo "ALL OK"

Sub FillDataBase()
  Dim colNew, cNew, l
  Set colNew = CreateObject("KorvaCollection.clsCollection")
  For l = 1 To 8
    Set cNew = cDataBase.NewCut
    cNew.Key = "C:\Music\" & l & ".mp3"
    cNew.Artist = "Artist" & l
    If l = 2 Then cNew.Artist = "Artist1"
    cNew.Title = "Song" & l
    cNew.CategoryText = "Rock"
    cNew.CatLevel = 1
    cNew.DurationmS = 180000
    colNew.Add cNew, cNew.Key
  Next
  cDataBase.AddCuts colNew
End Sub

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
