// SPDX-License-Identifier: MIT
// From JScript: spreads a level, forecasts a day and writes the figures for another program.
//   cscript forecast.js [folder]
var sFolder = WScript.Arguments.Count() > 0 ? WScript.Arguments(0)
    : new ActiveXObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path;

function expect(actual, expected) {
    if (actual !== expected) {
        WScript.Echo("Expected " + expected + " but got " + actual);
        WScript.Quit(1);
    }
}

var cDataBase = new ActiveXObject("RavloBase.clsDataBase");
cDataBase.Open(sFolder + "\\forecast-js.db");
var colNew = new ActiveXObject("KorvaCollection.clsCollection");
for (var i = 1; i <= 12; i++) {
    var cNew = cDataBase.NewCut();
    cNew.Key = "C:\\Music\\" + i + ".mp3";
    cNew.Artist = "Artist" + (i <= 3 ? 1 : i);
    cNew.Title = "Song" + i;
    cNew.CategoryText = "Rock";
    cNew.CatLevel = 1;
    colNew.Add(cNew, cNew.Key);
}
expect(cDataBase.AddCuts(colNew), 12);
var cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
cSchedMan.PopulateFromDataBase(cDataBase, sFolder);

var cRotation = new ActiveXObject("RavloScheduler.clsRotation");
cRotation.Scheduler = cSchedMan;
var colCats = new ActiveXObject("KorvaCollection.clsCollection");
colCats.Add(cSchedMan.colMainCats("Rock\t0").SubCats("1"));
cRotation.SpreadCategories(colCats);

// Three of twelve songs are by one artist: every fourth place is the farthest they can be apart.
var colCuts = cSchedMan.colCuts("Rock", 1);
var nLast = 0;
for (var n = 1; n <= 12; n++) {
    if (colCuts(n).Artist === "Artist1") {
        expect(nLast === 0 || n - nLast === 4, true);
        nLast = n;
    }
}

cRotation.AddSlot("Rock\t1");
var nStart = 47490; // 7 January 2030, as a number of days
var cSimulation = cRotation.Simulate(nStart, 1);
expect(cSimulation.Picks, 480);
var cLevel = cSimulation.Levels("Rock\t1");
expect(cLevel.TopArtistCuts, 3);
expect(cLevel.AttainableArtistMins, 12);
cSimulation.SaveLog(sFolder + "\\forecast.csv");
cRotation.WriteReport(cSimulation, sFolder + "\\forecast.json");

// A credit may name more than one artist.
cRotation.FeaturedArtists = true;
expect(cRotation.ArtistsOf("A feat. B").Count, 3);
cRotation.FeaturedArtists = false;
WScript.Echo("ALL OK");
