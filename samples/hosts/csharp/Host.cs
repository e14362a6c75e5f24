// SPDX-License-Identifier: MIT
// A playout host in C#: it fills a small library, asks for three cuts and reports their plays.
//   csc Host.cs, then Host FOLDER
// It is bound late. For early binding and events, import the type libraries (Visual Studio: Add COM Reference, or
// "tlbimp RavloSched.dll"); in a 64-bit process register the 64-bit DLLs, in a 32-bit one the 32-bit ones.
using System;
using System.IO;

static class Host
{
    static dynamic Create(string progId)
    {
        return Activator.CreateInstance(Type.GetTypeFromProgID(progId, true));
    }

    static void AddCuts(dynamic dataBase)
    {
        dynamic cuts = Create("KorvaCollection.clsCollection");
        for (int number = 1; number <= 3; ++number)
        {
            dynamic cut = dataBase.NewCut();
            cut.Key = @"C:\Music\" + number + ".mp3";
            cut.Artist = "Artist" + number;
            cut.Title = "Song" + number;
            cut.CategoryText = "Rock";
            cut.CatLevel = 1;
            cut.RunTimemS = 180000;
            cuts.Add(cut, cut.Key);
        }
        dataBase.AddCuts(cuts);
    }

    [STAThread]
    static void Main(string[] arguments)
    {
        string folder = arguments[0];
        dynamic dataBase = Create("RavloBase.clsDataBase");
        dataBase.Open(Path.Combine(folder, "host.db"));
        AddCuts(dataBase);

        dynamic scheduler = Create("RavloScheduler.clsSchedMan");
        scheduler.PopulateFromDataBase(dataBase, folder);
        scheduler.RotatesAllowed = true;
        for (int pick = 0; pick < 3; ++pick)
        {
            object mainCat = null, subCat = null, mainCatKey = null;
            dynamic cut = scheduler.NextCutFromRotation("Rock\t1", false, null, ref mainCat, ref subCat, ref mainCatKey);
            Console.Write(cut.Title + " ");
            cut.LastPlayed = DateTime.Now;
            scheduler.UpdateArtistTitleHistory(cut);
        }
        Console.WriteLine();
        Console.WriteLine("ALL OK");
    }
}
