# SPDX-License-Identifier: MIT
# A playout host in Windows PowerShell: it fills a small library, asks for three cuts and reports their plays.
#   powershell -STA -File host.ps1 FOLDER
param([Parameter(Mandatory)][string] $Folder)
$ErrorActionPreference = 'Stop'

$dataBase = New-Object -ComObject RavloBase.clsDataBase
$dataBase.Open((Join-Path $Folder 'host.db'))
$cuts = New-Object -ComObject KorvaCollection.clsCollection
foreach ($number in 1..3) {
    $cut = $dataBase.NewCut()
    $cut.Key = "C:\Music\$number.mp3"
    $cut.Artist = "Artist$number"
    $cut.Title = "Song$number"
    $cut.CategoryText = 'Rock'
    $cut.CatLevel = 1
    $cut.RunTimemS = 180000
    $cuts.Add($cut, $cut.Key)
}
$null = $dataBase.AddCuts($cuts)

$scheduler = New-Object -ComObject RavloScheduler.clsSchedMan
$scheduler.PopulateFromDataBase($dataBase, $Folder)
$scheduler.RotatesAllowed = $true
$played = foreach ($pick in 1..3) {
    $mainCat = $null; $subCat = $null; $mainCatKey = $null
    # A property with parameters: PowerShell calls it as a method, by-reference parameters with [ref].
    $cut = $scheduler.NextCutFromRotation("Rock`t1", $false, $null, [ref] $mainCat, [ref] $subCat, [ref] $mainCatKey)
    $cut.LastPlayed = Get-Date
    $scheduler.UpdateArtistTitleHistory($cut)
    $cut.Title
}
"Played: $played"
'ALL OK'
