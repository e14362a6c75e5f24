# SPDX-License-Identifier: MIT
"""A playout host in Python (pip install pywin32): it fills a small library, asks for three cuts, reports their plays and
counts the scheduler's progress events.
    python host.py FOLDER
EnsureDispatch imports the type library, so that events and parameters by reference work: a member returns the parameters
by reference after its result."""
import datetime
import os
import sys

import pywintypes
import win32com.client
from win32com.client import gencache


class Events:
    started = 0

    def OnProgressStart(self, sReason, lMax):
        Events.started += 1


def add_cuts(database):
    cuts = gencache.EnsureDispatch("KorvaCollection.clsCollection")
    for number in range(1, 4):
        cut = database.NewCut()
        cut.Key = rf"C:\Music\{number}.mp3"
        cut.Artist = f"Artist{number}"
        cut.Title = f"Song{number}"
        cut.CategoryText = "Rock"
        cut.CatLevel = 1
        cut.RunTimemS = 180000
        cuts.Add(cut, cut.Key)
    database.AddCuts(cuts)


def main(folder):
    database = gencache.EnsureDispatch("RavloBase.clsDataBase")
    database.Open(os.path.join(folder, "host.db"))
    add_cuts(database)

    scheduler = win32com.client.DispatchWithEvents("RavloScheduler.clsSchedMan", Events)
    scheduler.PopulateFromDataBase(database, folder)
    scheduler.RotatesAllowed = True
    played = []
    for _ in range(3):
        # Result first, then cMainCat, cSubCat and sMainCatKey.
        cut, *_ = scheduler.NextCutFromRotation("Rock\t1", False, None, None, None, "")
        played.append(cut.Title)
        cut.LastPlayed = pywintypes.Time(datetime.datetime.now())
        scheduler.UpdateArtistTitleHistory(cut)
    print("Played:", *played)
    if Events.started > 0:
        print("ALL OK")


if __name__ == "__main__":
    main(sys.argv[1])
