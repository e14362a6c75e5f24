' SPDX-License-Identifier: MIT
' Undo and redo from a script.
Option Explicit
Dim cDataBase, cSchedMan, cRotation, cCut, colCuts, colCats, sKey
Set cDataBase = CreateObject("RavloBase.clsDataBase")
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
Set cRotation = CreateObject("RavloScheduler.clsRotation")
Set colCuts = CreateObject("KorvaCollection.clsCollection")
cDataBase.Open WScript.Arguments(0) & "\undo.db"
For Each sKey In Array("1", "2", "3")
  Set cCut = cDataBase.NewCut
  cCut.Key = "C:\" & sKey & ".mp3" : cCut.CategoryText = "Rock" : cCut.CatLevel = 1
  colCuts.Add cCut
Next
cDataBase.AddCuts colCuts
Set cRotation.Scheduler = cSchedMan
cSchedMan.PopulateFromDataBase cDataBase, WScript.Arguments(0)

Expect cRotation.CanUndo, False
Expect cRotation.UndoText, ""
On Error Resume Next
cRotation.Undo
Expect Err.Number And &HFFFF&, 5
Expect Err.Description, "There is nothing to undo"
Err.Clear
On Error GoTo 0

Set colCats = CreateObject("KorvaCollection.clsCollection")
colCats.Add cSchedMan.colMainCats.Item("Rock" & vbTab & "0")
Expect cSchedMan.DeleteCats(colCats), True
Expect cSchedMan.colMainCats.Count, 0
Expect cRotation.CanUndo, True
Expect cRotation.UndoText, "Undo deletion of Rock"
cRotation.Undo
Expect cSchedMan.colMainCats.Item("Rock" & vbTab & "0").TotalCuts, 3
Expect cRotation.CanUndo, False
Expect cRotation.CanRedo, True
Expect cRotation.RedoText, "Redo deletion of Rock"
cRotation.Redo
Expect cSchedMan.colMainCats.Count, 0
Expect cRotation.CanRedo, False
WScript.Echo "ALL OK"

Sub Expect(vFound, vExpected)
  If vFound <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but found " & vFound
    WScript.Quit 1
  End If
End Sub
