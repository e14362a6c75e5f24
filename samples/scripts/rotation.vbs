' SPDX-License-Identifier: MIT
' Asks for the next cuts of a level as a playout program does for every slot, reports the plays, and restores the order
' after a restart.
'   cscript rotation.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, i, cCut, cMainCat, cSubCat, sMainCatKey, sLevel, sPlayed, cRules
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
sLevel = "Rock" & vbTab & "1"

Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\rotation.db"
FillDataBase
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder

' Until the host allows rotation, picks return placeholders; the kind code says why.
Set cCut = cSchedMan.NextCutFromRotation(sLevel, False, Nothing, cMainCat, cSubCat, sMainCatKey)
Expect cCut.KindCode, 17
cSchedMan.RotatesAllowed = True

' No artist within 30 minutes. The rules object writes its file on every change.
Set cRules = cSchedMan.colMainCats("Rock" & vbTab & "0").SubCats("1").Rules
cRules.ArtistSepMins = 30
Expect cRules.ArtistSepMins, 30
Expect cRules.TitleSepMins, 60

' By-reference parameters accept variables of any type.
For i = 1 To 3
  Set cCut = cSchedMan.NextCutFromRotation(sLevel, False, Nothing, cMainCat, cSubCat, sMainCatKey)
  Expect cCut.KindCode, 0
  Expect cCut.CategoryKey, sLevel
  Expect cMainCat.CatName, "Rock"
  Expect cSubCat.CatLevel, 1
  Expect cSubCat.MainCat Is cMainCat, True
  Expect sMainCatKey, "Rock" & vbTab & "0"
  ' On air. The play is reported with its time.
  cCut.LastPlayed = Now
  cSchedMan.UpdateArtistTitleHistory cCut
  sPlayed = sPlayed & cCut.Title & " "
Next
WScript.Echo "Played: " & sPlayed
Expect sPlayed, "Song1 Song2 Song3 "

' The history contains the database's own cut, not the copy that the pick returned.
Expect cSchedMan.TitleHistoryCut("SONG2") Is cDataBase.CutByKey("C:\Music\2.mp3"), True
Expect cSchedMan.ArtistHistoryCut("Artist3").Title, "Song3"
Expect cSchedMan.AlbumHistoryCut("unheard") Is Nothing, True

' Every cut has just been played: the pick returns the one played longest ago, with the reason.
For i = 1 To 3
  Set cCut = cSchedMan.NextCutFromRotation(sLevel, False, Nothing, cMainCat, cSubCat, sMainCatKey)
Next
Expect cCut.KindCode <> 0, True

' A key that names no level also returns a placeholder, never Nothing.
Set cCut = cSchedMan.NextCutFromRotation("Jazz" & vbTab & "1", False, Nothing, cMainCat, cSubCat, sMainCatKey)
Expect cCut.KindCode, 9
Expect cMainCat Is Nothing, True
Set cCut = cSchedMan.NextCutFromRotation("Rock" & vbTab & "7", False, Nothing, cMainCat, cSubCat, sMainCatKey)
Expect cCut.KindCode, 10

' The order was saved: a new manager restores it.
Dim sOrder
sOrder = OrderOf(cSchedMan)
Expect cSchedMan.SaveHistoryAndOrdering(Nothing), True
Set cCut = Nothing : Set cMainCat = Nothing : Set cSubCat = Nothing : Set cRules = Nothing
Set cSchedMan = Nothing
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder
Expect OrderOf(cSchedMan), sOrder
WScript.Echo "ALL OK"

Function OrderOf(cMan)
  Dim cEach, sResult
  For Each cEach In cMan.colCuts("Rock", 1)
    sResult = sResult & cEach.Title & " "
  Next
  OrderOf = sResult
End Function

Sub FillDataBase()
  Dim colNew, cNew, l
  Set colNew = CreateObject("KorvaCollection.clsCollection")
  For l = 1 To 3
    Set cNew = cDataBase.NewCut
    cNew.Key = "C:\Music\" & l & ".mp3"
    cNew.Artist = "Artist" & l
    cNew.Title = "Song" & l
    cNew.CategoryText = "Rock"
    cNew.CatLevel = 1
    cNew.RunTimemS = 180000
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
