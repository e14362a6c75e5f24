' SPDX-License-Identifier: MIT
' Moves or copies many cuts at once: the four options of DoMassCatChange.
'   cscript mass-change.vbs [folder]
Option Explicit
Const eCancel = 0
Const eCopyHere = 1
Const eMoveHere = 2
Const eMoveExclusiveHere = 3
Dim sFolder, cDataBase, cSchedMan, i, colFrom, bCreated
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\mass-change.db"
cDataBase.AddCuts NewCuts
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder
Show "At first"                           ' Rock 1: 1 2 3   Rock 2: 4   Gold 1: 1 2 3   Gold 2: 4   Pop 1: 5

' Here the cuts are those of the level; a host passes what its user has selected. It also passes the level that a move
' takes them out of.
Set colFrom = ListOf(Level("Rock", 1))

' Cancel does nothing: a menu that was closed returns it.
cSchedMan.DoMassCatChange eCancel, colFrom, Level("Pop", 1), Level("Rock", 1).SchedCuts, bCreated
Expect TitlesIn("Pop", 1), "5 "

' A copy places them in a further level; they also stay where they are.
cSchedMan.DoMassCatChange eCopyHere, colFrom, Level("Pop", 1), Level("Rock", 1).SchedCuts, bCreated
Show "Copied Rock 1 to Pop 1"
Expect TitlesIn("Pop", 1), "5 1 2 3 "
Expect TitlesIn("Rock", 1), "1 2 3 "

' A move takes them out of the levels given. A cut has one level in all its categories: with a new number it changes the
' level in each of them.
cSchedMan.DoMassCatChange eMoveHere, colFrom, Level("Rock", 2), Level("Rock", 1).SchedCuts, bCreated
Show "Moved Rock 1 to Rock 2"
Expect TitlesIn("Rock", 1), ""
Expect TitlesIn("Rock", 2), "4 1 2 3 "
Expect TitlesIn("Gold", 2), "4 1 2 3 "
Expect bCreated, True                     ' Pop had no level 2

' An exclusive move also takes them out of every other category.
cSchedMan.DoMassCatChange eMoveExclusiveHere, ListOf(Level("Rock", 2)), Level("Pop", 1), Level("Rock", 2).SchedCuts, bCreated
Show "Moved Rock 2 to Pop 1 exclusively"
Expect TitlesIn("Rock", 2), ""
Expect TitlesIn("Gold", 2), ""
Expect TitlesIn("Pop", 2), ""
Expect TitlesIn("Pop", 1), "5 4 1 2 3 "
Expect cDataBase.CutByKey("C:\Music\1.mp3").CategoryText, "Pop"
WScript.Echo "ALL OK"

Function NewCuts()
  Dim cNew
  Set NewCuts = CreateObject("KorvaCollection.clsCollection")
  For i = 1 To 5
    Set cNew = cDataBase.NewCut
    cNew.Key = "C:\Music\" & i & ".mp3"
    cNew.Artist = "Artist" & i
    cNew.Title = i
    cNew.CategoryText = "Rock/Gold"
    cNew.CatLevel = 1
    If i = 4 Then cNew.CatLevel = 2
    If i = 5 Then cNew.CategoryText = "Pop"
    NewCuts.Add cNew
  Next
End Function

Function ListOf(cItem)
  Set ListOf = CreateObject("KorvaCollection.clsCollection")
  ListOf.Add cItem
End Function

Function Level(sCategory, lLevel)
  Set Level = cSchedMan.colMainCats(sCategory & vbTab & "0").SubCats(CStr(lLevel))
End Function

Function TitlesIn(sCategory, lLevel)
  Dim cEach
  For Each cEach In cSchedMan.colCuts(sCategory, lLevel)
    TitlesIn = TitlesIn & cEach.Title & " "
  Next
End Function

Sub Show(sWhen)
  Dim cMainCat, cLevel, sLine
  For Each cMainCat In cSchedMan.colMainCats
    For Each cLevel In cMainCat.SubCats
      sLine = sLine & cLevel.CatName & " " & cLevel.CatLevel & ": " & TitlesIn(cLevel.CatName, cLevel.CatLevel) & "  "
    Next
  Next
  WScript.Echo sWhen & vbTab & sLine
End Sub

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
