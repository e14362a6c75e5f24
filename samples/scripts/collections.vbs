' SPDX-License-Identifier: MIT
' The collection classes by themselves: keys, positions, order and the errors they raise.
'   cscript collections.vbs
Option Explicit
Dim col, vItem, sItems, list

Set col = CreateObject("KorvaCollection.clsCollection")
col.Add "rock songs", "Rock"
col.Add "pop songs", "Pop"
col.Add "blues songs", "Blues", "Pop"     ' before the one named Pop
col.Add "jazz songs", "Jazz", , 1         ' after the first one
col.Add 42                                ' without a key
For Each vItem In col
  sItems = sItems & vItem & "|"
Next
Expect sItems, "rock songs|jazz songs|blues songs|pop songs|42|"
Expect col.Count, 5
Expect col(1), "rock songs"
Expect col("ROCK"), "rock songs"
Expect col.Item("Jazz"), "jazz songs"
Expect col.Exists("blues"), True
Expect col.Exists("Soul"), False
col.Remove "rock"
col.Remove 4
Expect col.Count, 3

' The errors have the numbers that every automation host knows.
On Error Resume Next
col.Add "again", "JAZZ"
ExpectError 457, "KorvaCollection.clsCollection"
vItem = col("Soul")
ExpectError 5, "KorvaCollection.clsCollection"
vItem = col(99)
ExpectError 9, "KorvaCollection.clsCollection"
vItem = col(Null)
ExpectError 13, "KorvaCollection.clsCollection"
On Error GoTo 0

' A collection may change during For Each.
For Each vItem In col
  col.Remove 1
Next
Expect col.Count, 1

' A value list returns its values in ascending order.
Set list = CreateObject("KorvaCollection.clsValueList")
list.Add 30 : list.Add 4 : list.Add "text" : list.Add 100 : list.Add 4
sItems = ""
For Each vItem In list
  sItems = sItems & vItem & "|"
Next
Expect sItems, "4|4|30|100|text|"
list.Remove 1
Expect list(1), 4
Expect list.Count, 4
WScript.Echo "ALL OK"

Sub Expect(vActual, vExpected)
  If vActual <> vExpected Then
    WScript.Echo "Expected " & vExpected & " but got " & vActual
    WScript.Quit 1
  End If
End Sub

Sub ExpectError(lNumber, sSource)
  If Err.Number <> lNumber Or Err.Source <> sSource Or Err.Description = "" Then
    WScript.Echo "Expected error " & lNumber & " but got " & Err.Number & " " & Err.Description & " from " & Err.Source
    WScript.Quit 1
  End If
  Err.Clear
End Sub
