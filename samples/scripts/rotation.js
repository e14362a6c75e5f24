// SPDX-License-Identifier: MIT
// From JScript: a database, a scheduler, some picks, and what an error looks like.
//   cscript rotation.js [folder]
var sFolder = WScript.Arguments.Count() > 0 ? WScript.Arguments(0)
    : new ActiveXObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path;

function expect(actual, expected) {
    if (actual !== expected) {
        WScript.Echo("Expected " + expected + " but got " + actual);
        WScript.Quit(1);
    }
}

var cDataBase = new ActiveXObject("RavloBase.clsDataBase");
cDataBase.Open(sFolder + "\\js.db");
var colNew = new ActiveXObject("KorvaCollection.clsCollection");
for (var i = 1; i <= 4; i++) {
    var cNew = cDataBase.NewCut();
    cNew.Key = "C:\\Music\\" + i + ".mp3";
    cNew.Artist = "Artist" + i;
    cNew.Title = "Song" + i;
    cNew.CategoryText = "Rock";
    cNew.CatLevel = i <= 2 ? 1 : 2;
    colNew.Add(cNew, cNew.Key);
}
expect(cDataBase.AddCuts(colNew), 4);

var cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
cSchedMan.PopulateFromDataBase(cDataBase, sFolder);
cSchedMan.RotatesAllowed = true;

// Enumerator works on every collection. JScript has no by-reference variables: pass null for such parameters.
var sTitles = "";
for (var e = new Enumerator(cSchedMan.colMainCats.Item("Rock\t0").SubCats); !e.atEnd(); e.moveNext()) {
    var cLevel = e.item();
    var cCut = cSchedMan.NextCutFromRotation("Rock\t" + cLevel.CatLevel, false, null, null, null, null);
    expect(cCut.KindCode, 0);
    sTitles += cCut.Title + " ";
}
expect(sTitles, "Song1 Song3 ");
expect(cSchedMan.colCuts("Rock").Count, 4);
expect(cSchedMan.colCuts("Rock", 2).Count, 2);
expect(cSchedMan.colCuts("Jazz"), null);

// Sets a level's order from any collection.
var colOrder = new ActiveXObject("KorvaCollection.clsCollection");
var cSubCat = cSchedMan.colMainCats(1).SubCats("2");
colOrder.Add(cSubCat.SchedCuts(2));
colOrder.Add(cSubCat.SchedCuts(1));
var sBefore = cSubCat.SchedCuts(1).Title;
cSubCat.SchedCuts = colOrder;
expect(cSubCat.SchedCuts.Item(2).Title, sBefore);

try {
    cSchedMan.colMainCats("Jazz\t0");
    expect("no error", "an error");
} catch (error) {
    expect(error.number & 0xFFFF, 5);
    expect(error.message, "Invalid procedure call or argument");
}
WScript.Echo("ALL OK");
