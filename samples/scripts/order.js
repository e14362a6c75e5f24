// SPDX-License-Identifier: MIT
// The order in which a level's cuts play: moves cuts forward, shuffles levels and collections.
//   cscript order.js [folder]
var sFolder = WScript.Arguments.Count() > 0 ? WScript.Arguments(0)
    : new ActiveXObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path;

function expect(actual, expected) {
    if (actual !== expected) {
        WScript.Echo("Expected " + expected + " but got " + actual);
        WScript.Quit(1);
    }
}

function newCollection() {
    return new ActiveXObject("KorvaCollection.clsCollection");
}

function titlesOf(colCuts) {
    var titles = [];
    for (var e = new Enumerator(colCuts); !e.atEnd(); e.moveNext()) {
        titles.push(e.item().Title);
    }
    return titles.join(" ");
}

function sorted(sTitles) {
    return sTitles.split(" ").sort().join(" ");
}

var cDataBase = new ActiveXObject("RavloBase.clsDataBase");
cDataBase.Open(sFolder + "\\order.db");
var colNew = newCollection();
for (var i = 0; i < 20; i++) {
    var cNew = cDataBase.NewCut();
    cNew.Key = "C:\\Music\\" + i + ".mp3";
    cNew.Title = String.fromCharCode(97 + i);
    cNew.Artist = "Artist" + i;
    cNew.CategoryText = "Rock";
    cNew.CatLevel = 1;
    colNew.Add(cNew);
}
cDataBase.AddCuts(colNew);
var cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
cSchedMan.PopulateFromDataBase(cDataBase, sFolder);
var cLevel = cSchedMan.colMainCats("Rock\t0").SubCats("1");
var sAtFirst = titlesOf(cLevel.SchedCuts);

// Moves two cuts, in the order given, before the first one: they play next. The order is saved.
var colInsert = newCollection();
colInsert.Add(cLevel.SchedCuts(20));
colInsert.Add(cLevel.SchedCuts(10));
cSchedMan.MoveCutsInCategory(cLevel, colInsert, 1);
WScript.Echo("Put forward: " + titlesOf(cLevel.SchedCuts));
expect(titlesOf(cLevel.SchedCuts).substr(0, 7), "t j a b");

// A position past the end means the end. Cuts that the level does not contain are skipped.
cSchedMan.MoveCutsInCategory(cLevel, colInsert, 99);
expect(titlesOf(cLevel.SchedCuts).substr(34), "s t j");

// A shuffle puts each level of the collection into a new random order and saves it. With true as second argument the
// scheduler asks the user first.
var colCats = newCollection();
colCats.Add(cSchedMan.colMainCats("Rock\t0"));      // all its levels, each in itself
cSchedMan.ShuffleCategories(colCats, false);
var sShuffled = titlesOf(cLevel.SchedCuts);
WScript.Echo("Shuffled:    " + sShuffled);
expect(sorted(sShuffled), sorted(sAtFirst));
expect(sShuffled === sAtFirst, false);              // one chance in 20!

// The next scheduler on this folder restores the order.
cLevel = null;
colCats = null;
cSchedMan = null;
CollectGarbage();                                   // the script engine lets go of the manager now
cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
cSchedMan.PopulateFromDataBase(cDataBase, sFolder);
expect(titlesOf(cSchedMan.colCuts("Rock", 1)), sShuffled);
WScript.Echo("ALL OK");
