' SPDX-License-Identifier: MIT
' Puts any collection into random order: RandomizeCollection replaces it by a new one.
'   cscript shuffle-collection.vbs
Option Explicit
Dim cSchedMan, col, colBefore, vItem, sBefore, sAfter, i
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
Set col = CreateObject("KorvaCollection.clsCollection")
For i = 1 To 20
  col.Add "Jingle " & i, "key" & i
Next
Set colBefore = col
sBefore = TextOf(col)

cSchedMan.RandomizeCollection col
sAfter = TextOf(col)
WScript.Echo sAfter
Expect col.Count, 20
Expect sAfter <> sBefore, True            ' one chance in 20!
Expect col("key7"), "Jingle 7"            ' items keep their keys
Expect col Is colBefore, False            ' the collection that was passed stays unchanged
Expect TextOf(colBefore), sBefore

Set col = CreateObject("KorvaCollection.clsCollection")
cSchedMan.RandomizeCollection col
Expect col.Count, 0
WScript.Echo "ALL OK"

Function TextOf(colItems)
  For Each vItem In colItems
    TextOf = TextOf & vItem & ";"
  Next
End Function

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub
