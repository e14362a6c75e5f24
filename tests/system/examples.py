# SPDX-License-Identifier: MIT
"""examples.py PAGE SCRIPT SOURCE: writes the examples of a page as one VBScript, which is run, and as C++, which is compiled.

The page's blocks follow each other. A station with eight cuts of rock 1 and the names that the page takes for granted come
before them.
"""
import pathlib
import re
import sys

BLOCK = re.compile(r"^```(vb|cpp)\n(.*?)^```$", re.M | re.S)
SCRIPT = r"""' Made from {page}.
folder = WScript.Arguments(0)
Set db = CreateObject("RavloBase.clsDataBase")
db.Open folder & "\library.db"
Set cuts = CreateObject("KorvaCollection.clsCollection")
For i = 1 To 8
  Set cut = db.NewCut
  cut.Key = "C:\Music\" & i & ".mp3"
  cut.Artist = "Artist" & i
  If i = 2 Then cut.Artist = "Artist1"
  cut.Title = "Song" & i
  cut.CategoryText = "rock"
  cut.CatLevel = 1
  cut.DurationmS = 180000
  cuts.Add cut, cut.Key
Next
db.AddCuts cuts
Set man = CreateObject("RavloScheduler.clsSchedMan")
man.PopulateFromDataBase db, folder
Set clock = CreateObject("Scripting.FileSystemObject").CreateTextFile(folder & "\clock.txt")
clock.WriteLine "rock,1"
clock.Close
{blocks}WScript.Echo "ALL OK"
"""
SOURCE = """// Made from {page}.
#include <windows.h>

#include <RavloScheduler.h>

HRESULT Examples(_clsSchedMan* man, IDispatch* levels);
HRESULT Examples(_clsSchedMan* man, IDispatch* levels)
{{
{blocks}    SysFreeString(level);
    return result;
}}
"""


def main(page, script, source):
    page = pathlib.Path(page)
    blocks = BLOCK.findall(page.read_text(encoding="utf-8"))
    for target, language, form in ((script, "vb", SCRIPT), (source, "cpp", SOURCE)):
        text = "".join(block for name, block in blocks if name == language)
        if not text:
            sys.exit(f"{page}: no example in {language}")
        pathlib.Path(target).write_text(form.format(page=page.name, blocks=text), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
