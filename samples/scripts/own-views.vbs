' SPDX-License-Identifier: MIT
' Fills a tree and a grid of the host: here two small classes that keep text. Any automation object with these members
' works.
'   cscript own-views.vbs [folder]
Option Explicit

Class Node
  Public Key
  Public Text
  Public Image
  Public Sorted
  Public Expanded
  Public Checked
  Public Parent
End Class

Class TreeNodes
  Private colNodes
  Private Sub Class_Initialize
    Clear
  End Sub
  Public Sub Clear()
    Set colNodes = CreateObject("Scripting.Dictionary")
  End Sub
  Public Property Get Count()
    Count = colNodes.Count
  End Property
  ' By number or by key.
  Public Function Item(vIndex)
    If VarType(vIndex) = vbString Then
      Set Item = colNodes.Item(vIndex)
    Else
      Dim colAll
      colAll = colNodes.Items
      Set Item = colAll(vIndex - 1)
    End If
  End Function
  ' The first node comes without a relative; relationship 4 is child.
  Public Function Add(vRelative, vRelationship, sKey, sText, sImage)
    Dim cNode
    Set cNode = New Node
    cNode.Key = sKey
    cNode.Text = sText
    cNode.Image = sImage
    If VarType(vRelative) = vbString Then
      Set cNode.Parent = Item(vRelative)
    Else
      Set cNode.Parent = Nothing
    End If
    colNodes.Add sKey, cNode
    Set Add = cNode
  End Function
End Class

Class Tree
  Public Nodes
  Private Sub Class_Initialize
    Set Nodes = New TreeNodes
  End Sub
End Class

Class Grid
  Public Redraw
  Public Columns
  Private colCells
  Private colKeys
  Private lRows
  Private Sub Class_Initialize
    Set colCells = CreateObject("Scripting.Dictionary")
    Set colKeys = CreateObject("Scripting.Dictionary")
    lRows = 0
  End Sub
  Public Property Get ColCount()
    If Columns = "" Then ColCount = 0 Else ColCount = UBound(Split(Columns, ",")) + 1
  End Property
  Public Sub AddCol(sKey, sHeader)
    If Columns <> "" Then Columns = Columns & ","
    Columns = Columns & sKey
  End Sub
  Public Property Get RowCount()
    RowCount = lRows
  End Property
  Public Property Let RowCount(lNew)
    lRows = lNew
  End Property
  Public Property Get RowKey(lRow)
    RowKey = colKeys(CStr(lRow))
  End Property
  Public Property Let RowKey(lRow, sKey)
    colKeys(CStr(lRow)) = sKey
  End Property
  Public Property Get CellValue(lRow, sCol)
    CellValue = colCells(lRow & " " & sCol)
  End Property
  Public Property Let CellValue(lRow, sCol, vValue)
    colCells(lRow & " " & sCol) = vValue
  End Property
End Class

Dim sFolder, cDataBase, cSchedMan, cTree, cGrid, sKey, bAll, bSeveral, cShown, cImages
If WScript.Arguments.Count > 0 Then
  sFolder = WScript.Arguments(0)
Else
  sFolder = CreateObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path
End If
Set cDataBase = CreateObject("RavloBase.clsDataBase")
cDataBase.Open sFolder & "\views.db"
AddSong "Ann", "One", "Rock", 1
AddSong "Bob", "Two", "Rock/Jazz", 2
AddSong "Cid", "Six", "Rock", 1
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
cSchedMan.PopulateFromDataBase cDataBase, sFolder

Set cTree = New Tree
cSchedMan.PopulateTreeView cTree
Expect cTree.Nodes.Count, 6
ExpectNode 1, "ALL AUDIO" & vbTab & "0", "ALL AUDIO"
Expect cTree.Nodes.Item(1).Expanded, True
Expect cTree.Nodes.Item(1).Sorted, True
ExpectNode 2, "Rock" & vbTab & "0", "Rock"
Expect cTree.Nodes.Item(2).Parent.Text, "ALL AUDIO"
ExpectNode 3, "Rock" & vbTab & "1", "1"
ExpectNode 4, "Rock" & vbTab & "2", "2"
ExpectNode 5, "Jazz" & vbTab & "0", "Jazz"
ExpectNode 6, "Jazz" & vbTab & "2", "2"
Expect cTree.Nodes.Item(6).Parent.Text, "Jazz"

' One level, in rotation order. Nodes get images when there is an image list; no member of it is used.
Set cGrid = New Grid
Set cImages = CreateObject("Scripting.Dictionary")
sKey = "rock" & vbTab & "1"
cSchedMan.ShowGridCuts cGrid, sKey, cTree, cImages, bAll, bSeveral, cShown
Expect cGrid.Columns, "Pos,ID,Artist,Title,Dur,Cat,Lvl,Year,Opener,Path"
Expect cGrid.RowCount, 2
Expect cGrid.CellValue(2, "Pos"), 2
Expect cGrid.CellValue(2, "Artist"), "Cid"
Expect cGrid.CellValue(2, "Opener"), "N"
Expect cGrid.RowKey(2), "C:\Music\Six.mp3"
Expect cGrid.Redraw, True
Expect bAll, False
Expect bSeveral, False
Expect cShown.CatLevel, 1
Expect cTree.Nodes.Item(3).Image, "Open"
Expect cTree.Nodes.Item(2).Image, "Open"
Expect cTree.Nodes.Item(4).Image, "Closed"

' A main category: its levels, one after another.
sKey = "Rock" & vbTab & "0"
cSchedMan.ShowGridCuts cGrid, sKey, Nothing, Nothing, bAll, bSeveral, cShown
Expect cGrid.RowCount, 3
Expect cGrid.CellValue(3, "Title"), "Two"
Expect bSeveral, True
Expect cShown.CatName, "Rock"

' The whole database.
sKey = "all audio" & vbTab & "0"
cSchedMan.ShowGridCuts cGrid, sKey, Nothing, Nothing, bAll, bSeveral, cShown
Expect bAll, True
Expect cShown Is Nothing, True
Expect cGrid.CellValue(2, "Cat"), "Rock/Jazz"
WScript.Echo "ALL OK"

Sub AddSong(sArtist, sTitle, sCategories, lLevel)
  Dim cNew, colNew
  Set cNew = cDataBase.NewCut
  cNew.Key = "C:\Music\" & sTitle & ".mp3"
  cNew.Artist = sArtist
  cNew.Title = sTitle
  cNew.CategoryText = sCategories
  cNew.CatLevel = lLevel
  Set colNew = CreateObject("KorvaCollection.clsCollection")
  colNew.Add cNew, cNew.Key
  cDataBase.AddCuts colNew
End Sub

Sub ExpectNode(lIndex, sKey, sText)
  Expect cTree.Nodes.Item(lIndex).Key, sKey
  Expect cTree.Nodes.Item(lIndex).Text, sText
  Expect cTree.Nodes.Item(lIndex).Image, "Closed"
End Sub

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
