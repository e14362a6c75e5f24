' SPDX-License-Identifier: MIT
' Fills a media database, populates a scheduler from it, and lists its categories.
'   cscript populate.vbs [folder]
Option Explicit
Dim sFolder, cDataBase, cSchedMan, colNew, cMainCat, cSubCat, cCut
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If

Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\station.db"

' Collect new cuts and add them together: one change on the disk, one event.
Set colNew = CreateObject("KorvaCollection.clsCollection")
AddNewCut "C:\Music\one.mp3", "The Openers", "First Song", "Rock", 1, 183000
AddNewCut "C:\Music\two.mp3", "The Singers", "Second Song", "Rock/Gold", 1, 201000
AddNewCut "C:\Music\three.mp3", "The Dancers", "Third Song", "Rock", 2, 240000
WScript.Echo "Added " & cDataBase.AddCuts(colNew) & " cuts"

Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder

For Each cMainCat In cSchedMan.colMainCats
  WScript.Echo cMainCat.CatName & ": " & cMainCat.TotalCuts & " cuts"
  For Each cSubCat In cMainCat.SubCats
    WScript.Echo "  level " & cSubCat.CatLevel & ", average " & cSubCat.AverageRunTimemS & " ms"
    For Each cCut In cSubCat.SchedCuts
      WScript.Echo "    " & cCut.Artist & " - " & cCut.Title & " (" & cCut.DurationText & ")"
    Next
  Next
Next

' The collections are the scheduler's own, keyed by names and numbers; the cuts in them are the database's own.
Expect cSchedMan.colMainCats.Count, 2
Expect cSchedMan.colMainCats("gold" & vbTab & "0").SubCats("1").SchedCuts(1).Title, "Second Song"
Expect cSchedMan.colCuts("Rock").Count, 3
Expect cSchedMan.colCuts("Rock", 2).Count, 1
Expect cSchedMan.colCuts("Rock", 2)(1) Is cDataBase.CutByKey("C:\Music\three.mp3"), True
Expect cSchedMan.colCuts("Jazz") Is Nothing, True

' The categories follow a change in the database at once.
Set cCut = cDataBase.CutByKey("C:\Music\three.mp3")
cCut.CatLevel = 1
Set colNew = CreateObject("KorvaCollection.clsCollection")
colNew.Add cCut
cDataBase.ModifyCuts colNew
Expect cSchedMan.colCuts("Rock", 1).Count, 3
cDataBase.RemoveCuts colNew
Expect cSchedMan.colCuts("Rock", 1).Count, 2
WScript.Echo "ALL OK"

Sub AddNewCut(sKey, sArtist, sTitle, sCategories, lLevel, lRunTimemS)
  Dim cNew
  Set cNew = cDataBase.NewCut
  cNew.Key = sKey
  cNew.Artist = sArtist
  cNew.Title = sTitle
  cNew.CategoryText = sCategories
  cNew.CatLevel = lLevel
  cNew.RunTimemS = lRunTimemS
  cNew.DurationmS = lRunTimemS
  colNew.Add cNew, cNew.Key
End Sub

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
