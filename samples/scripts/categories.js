// SPDX-License-Identifier: MIT
// Makes, lists and deletes categories and levels.
//   cscript categories.js [folder [ask]]        with "ask" the scheduler asks for a level in a box of its own
var sFolder = WScript.Arguments.Count() > 0 ? WScript.Arguments(0)
    : new ActiveXObject("Scripting.FileSystemObject").GetSpecialFolder(2).Path;

function expect(actual, expected) {
    if (actual !== expected) {
        WScript.Echo("Expected " + expected + " but got " + actual);
        WScript.Quit(1);
    }
}

function listOf() {
    var col = new ActiveXObject("KorvaCollection.clsCollection");
    for (var i = 0; i < arguments.length; i++) {
        col.Add(arguments[i]);
    }
    return col;
}

var cDataBase = new ActiveXObject("RavloBase.clsDataBase");
cDataBase.Open(sFolder + "\\categories.db");
var cNew = cDataBase.NewCut();
cNew.Key = "C:\\Music\\one.mp3";
cNew.Title = "One";
cNew.CategoryText = "Rock";
cNew.CatLevel = 1;
cDataBase.AddCuts(listOf(cNew));
var cSchedMan = new ActiveXObject("RavloScheduler.clsSchedMan");
cSchedMan.PopulateFromDataBase(cDataBase, sFolder);

function mainCat(sName) {
    return cSchedMan.colMainCats(sName + "\t0");
}

// A new category has level 1 and is saved at once. Characters that a file name cannot contain become "_"; hosts with
// by-reference variables receive the name there.
expect(cSchedMan.CreateMainCat("Jazz/Funk"), true);
expect(cSchedMan.colMainCats.Count, 2);
expect(mainCat("jazz_funk").SubCats.Count, 1);

// CreateCatLevel asks the user for the number. A host that has the number makes the level itself and saves its main category.
var cLevel = new ActiveXObject("RavloScheduler.clsCat");
cLevel.CatName = mainCat("Rock").CatName;
cLevel.CatLevel = 3;
expect(mainCat("Rock").AddSubCat(cLevel), true);
expect(mainCat("Rock").AddSubCat(cLevel), false);   // it has one of that number
expect(cSchedMan.SaveHistoryAndOrdering(mainCat("Rock")), true);
if (WScript.Arguments.Count() > 1 && WScript.Arguments(1) === "ask") {
    WScript.Echo("Made a level: " + cSchedMan.CreateCatLevel(mainCat("Rock")));
}

// Lists any collection of categories and levels as one text, for instance for a question to the user.
var colDoomed = listOf(mainCat("Jazz_Funk"), mainCat("Rock").SubCats("1"), mainCat("Rock").SubCats("3"));
var sList = cSchedMan.ListCats(colDoomed);
WScript.Echo("Deleting: " + sList);
expect(sList, "Jazz_Funk, Rock 1, Rock 3");

// Deletes a main category with all its levels, or a single level. The cuts stay in the database and lose the category's name.
expect(cSchedMan.DeleteCats(colDoomed), true);
expect(cSchedMan.colMainCats.Exists("Jazz_Funk\t0"), false);
expect(cSchedMan.colMainCats.Exists("Rock\t0"), true);   // it was not listed itself
expect(cSchedMan.colCuts("Rock", 1), null);
expect(cDataBase.CutByKey("C:\\Music\\one.mp3").CategoryText, "");
WScript.Echo("ALL OK");
