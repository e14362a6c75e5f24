' SPDX-License-Identifier: MIT
' A playout host in VB.NET, bound late: it fills a small library, asks for three cuts and reports their plays.
'   vbc Host.vb, then Host FOLDER
Option Strict Off
Imports System
Imports System.IO

Module Host
    Sub AddCuts(dataBase As Object)
        Dim cuts As Object = CreateObject("KorvaCollection.clsCollection")
        For number As Integer = 1 To 3
            Dim cut As Object = dataBase.NewCut()
            cut.Key = "C:\Music\" & number & ".mp3"
            cut.Artist = "Artist" & number
            cut.Title = "Song" & number
            cut.CategoryText = "Rock"
            cut.CatLevel = 1
            cut.RunTimemS = 180000
            cuts.Add(cut, cut.Key)
        Next
        dataBase.AddCuts(cuts)
    End Sub

    <STAThread>
    Sub Main(arguments As String())
        Dim folder As String = arguments(0)
        Dim dataBase As Object = CreateObject("RavloBase.clsDataBase")
        dataBase.Open(Path.Combine(folder, "host.db"))
        AddCuts(dataBase)

        Dim scheduler As Object = CreateObject("RavloScheduler.clsSchedMan")
        scheduler.PopulateFromDataBase(dataBase, folder)
        scheduler.RotatesAllowed = True
        For pick As Integer = 1 To 3
            Dim mainCat As Object = Nothing, subCat As Object = Nothing, mainCatKey As Object = Nothing
            Dim cut As Object = scheduler.NextCutFromRotation("Rock" & vbTab & "1", False, Nothing, mainCat, subCat, mainCatKey)
            Console.Write(cut.Title & " ")
            cut.LastPlayed = DateTime.Now
            scheduler.UpdateArtistTitleHistory(cut)
        Next
        Console.WriteLine()
        Console.WriteLine("ALL OK")
    End Sub
End Module
