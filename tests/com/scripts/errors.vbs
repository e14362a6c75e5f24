' SPDX-License-Identifier: MIT
' What a script sees in Err after each kind of failure.
Option Explicit
Dim cDataBase, cSchedMan, cCat, cCut, colCuts, bFlag
Set cDataBase = CreateObject("RavloBase.clsDataBase")
Set cSchedMan = CreateObject("RavloScheduler.clsSchedMan")
Set cCat = CreateObject("RavloScheduler.clsCat")
On Error Resume Next

cDataBase.AddCuts Nothing
ExpectError 91, "RavloBase.clsDataBase"
cDataBase.Open WScript.Arguments(0) & "\errors.db"
cDataBase.Open WScript.Arguments(0) & "\errors.db"
ExpectError 55, "RavloBase.clsDataBase"
cDataBase.ImportCsv WScript.Arguments(0) & "\missing.csv"
ExpectError 53, "RavloBase.clsDataBase"
cDataBase.AddCuts cDataBase
ExpectError 451, "RavloBase.clsDataBase"
Set cCut = cDataBase.NewCut
cCut.Key = "C:\1.mp3" : cCut.CategoryText = "Rock" : cCut.CatLevel = 1
Set colCuts = CreateObject("KorvaCollection.clsCollection")
colCuts.Add cCut
cDataBase.AddCuts colCuts
cCut.Key = "C:\2.mp3"
ExpectError 70, "RavloBase.clsCut"
colCuts.Add "no cut"
cDataBase.RemoveCuts colCuts
ExpectError 13, "RavloBase.clsDataBase"

' Arguments of the wrong kind never reach the object.
cCat.CatLevel = "many"
ExpectError 13, ""
cSchedMan.SaveHistoryAndOrdering cDataBase
ExpectError 13, ""
cSchedMan.NoSuchMember
ExpectError 438, ""
cSchedMan.ShowHelp 1, 2
ExpectError 450, ""

' Nothing where a category is asked for is no error.
bFlag = False
If cCat.AddCut(Nothing, bFlag) Then WScript.Quit 1
ExpectError 0, ""
WScript.Echo "ALL OK"

Sub ExpectError(lNumber, sSource)
  If (Err.Number And &HFFFF&) <> lNumber Or (sSource <> "" And Err.Source <> sSource) Then
    WScript.Echo "Expected error " & lNumber & " but got " & Err.Number & " " & Err.Description & " from " & Err.Source
    WScript.Quit 1
  End If
  Err.Clear
End Sub
