# SPDX-License-Identifier: MIT
"""A station that both widths work on is the same, byte for byte, as one that a single width made. Of its database the
content is compared: the layout of an SQLite file follows the seconds in which plays were written.

RAVLO_TREE names the source tree, in which both widths are built. RAVLO_WINE_32 names a wrapper that runs 32-bit programs
where cmake/wine-run does not; without either the test ends with status 77, skipped.
"""
import contextlib
import os
import pathlib
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest

TREE = pathlib.Path(os.environ["RAVLO_TREE"])
WINE = TREE / "cmake/wine-run"
WINE_32 = pathlib.Path(os.environ.get("RAVLO_WINE_32", WINE))
SAMPLES = TREE / "samples"
STATION = ("--db", "library.db", "--app", "station")
RULES = struct.pack("<iiH55si", 90, 45, 0, b"pop\xac\xac\xac1".ljust(55), 0)
# One run of the host each; nothing in it depends on chance, as a spread does, or on the clock on the wall.
STEPS = (
    ("import", "--db", "library.db", "--csv", SAMPLES / "library.csv"),
    ("day", *STATION, "--clock", SAMPLES / "clock.txt", "--start", "2030-01-01T00:00:00", "--hours", "3", "--log", "one.csv"),
    ("cats", *STATION, "new", "night music"),
    ("cats", *STATION, "move", "rock:4", "--to", "night music:1", "--yes"),
    ("import", "--db", "library.db", "--csv", SAMPLES / "update.csv"),
    ("day", *STATION, "--clock", SAMPLES / "clock.txt", "--start", "2030-01-01T03:00:00", "--hours", "3", "--log", "two.csv",
     "--fair", "on", "--featured", "on"),
)


class Widths(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ravlo-widths-", dir=os.environ.get("RAVLO_WIDTHS_FOLDER")))
        self.addCleanup(shutil.rmtree, self.folder)

    def station(self, name, widths):
        """The files that the steps make when the widths take turns: name -> content."""
        folder = self.folder / name
        (folder / "station/Scheduler/Rules").mkdir(parents=True)
        (folder / "station/Scheduler/Rules/pop\u00ac\u00ac\u00ac1.rls").write_bytes(RULES)
        for number, step in enumerate(STEPS):
            width = widths[number % len(widths)]
            host = TREE / f"build/windows-{width}/bin/RavloHost.exe"
            done = subprocess.run([WINE_32 if width == "x86" else WINE, host, *map(str, step)], cwd=folder,
                                  capture_output=True, check=False)
            self.assertEqual((done.returncode, done.stderr), (0, b""), (width, step, done.stdout[-500:]))
        files = {str(file.relative_to(folder)): file.read_bytes() for file in folder.rglob("*") if file.is_file()}
        with contextlib.closing(sqlite3.connect(folder / "library.db")) as database:
            files["library.db"] = "\n".join(database.iterdump())
        return files

    def test_both_widths_make_the_same_station(self):
        wanted = self.station("one", ("x64",))
        self.assertGreater(len(wanted), 10)
        for name, widths in (("other", ("x86",)), ("turns", ("x64", "x86"))):
            made = self.station(name, widths)
            self.assertEqual(sorted(made), sorted(wanted))
            for file, content in wanted.items():
                self.assertTrue(made[file] == content, f"{name}: {file} differs")


if __name__ == "__main__":
    if WINE_32 == WINE and subprocess.run([WINE, "--runs-32-bit"], check=False).returncode:
        print("skipped: no Wine here runs 32-bit programs")
        sys.exit(77)
    unittest.main()
