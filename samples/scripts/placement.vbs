' SPDX-License-Identifier: MIT
' How cuts enter and leave categories: through notifications of the database, and through the scheduler's own members.
'   cscript placement.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, cCut, bCreated, colAffected
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\placement.db"
cDataBase.AddCuts ListOf(NewCut("one", "Rock", 1), NewCut("two", "Rock/Gold", 1))
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder

' A cut that is added to the database is placed at once, at the end of its level, so that it plays last. Missing categories
' and levels are made.
cDataBase.AddCuts ListOf(NewCut("three", "Rock/Party", 3), NewCut("four", "Rock", 1))
Expect TitlesIn("Rock", 1), "one two four "
Expect TitlesIn("Party", 3), "three "

' Edit a cut and announce the edit: the scheduler follows. Nothing happens before the announcement.
Set cCut = cDataBase.CutByKey("C:\Music\one.mp3")
cCut.CatLevel = 2
cCut.CategoryText = "Rock/Party"
Expect TitlesIn("Rock", 1), "one two four "
cDataBase.ModifyCuts ListOf(cCut, Nothing)
Expect TitlesIn("Rock", 1), "two four "
Expect TitlesIn("Rock", 2), "one "
Expect TitlesIn("Party", 2), "one "

' An edit that changes neither categories nor level does not move the cut in the rotation.
Set cCut = cDataBase.CutByKey("C:\Music\two.mp3")
cCut.Artist = "Another artist"
cDataBase.ModifyCuts ListOf(cCut, Nothing)
Expect TitlesIn("Rock", 1), "two four "

' A host may place a cut itself: a main category takes it into the level of the cut's own number, and adds its name to the cut.
bCreated = False
Set cCut = cDataBase.CutByKey("C:\Music\four.mp3")
Expect cSchedMan.colMainCats("Party" & vbTab & "0").AddCut(cCut, bCreated), True
Expect bCreated, True                     ' Party had no level 1
Expect cCut.CategoryText, "Rock/Party"

' Remove a cut from one category, or with Nothing from every one. The collection receives the categories for the host to save.
Set colAffected = Nothing
cSchedMan.RemoveCutFromCategory cSchedMan.colMainCats("Party" & vbTab & "0"), cCut, colAffected
Expect colAffected.Count, 1
Expect cCut.CategoryText, "Rock"
cSchedMan.RemoveCutFromCategory Nothing, cDataBase.CutByKey("C:\Music\two.mp3"), colAffected
Expect colAffected.Count, 3               ' Party from before, Rock and Gold
Expect TitlesIn("Gold", 1), ""
Dim cMainCat
For Each cMainCat In colAffected
  WScript.Echo "Left and saved: " & cMainCat.CatName & " " & cSchedMan.SaveHistoryAndOrdering(cMainCat)
Next

' A cut that is removed from the database leaves every category.
cDataBase.RemoveCuts ListOf(cDataBase.CutByKey("C:\Music\three.mp3"), Nothing)
Expect TitlesIn("Party", 3), ""
WScript.Echo "ALL OK"

Function NewCut(sTitle, sCategories, lLevel)
  Set NewCut = cDataBase.NewCut
  NewCut.Key = "C:\Music\" & sTitle & ".mp3"
  NewCut.Artist = "Artist of " & sTitle
  NewCut.Title = sTitle
  NewCut.CategoryText = sCategories
  NewCut.CatLevel = lLevel
  NewCut.RunTimemS = 180000
End Function

Function ListOf(cFirst, cSecond)
  Set ListOf = CreateObject("KorvaCollection.clsCollection")
  ListOf.Add cFirst
  If Not cSecond Is Nothing Then ListOf.Add cSecond
End Function

Function TitlesIn(sCategory, lLevel)
  Dim cEach
  For Each cEach In cSchedMan.colCuts(sCategory, lLevel)
    TitlesIn = TitlesIn & cEach.Title & " "
  Next
End Function

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
