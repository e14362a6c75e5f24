# SPDX-License-Identifier: MIT
"""What the tests that run RavloHost.exe share: a folder of their own, a small library, runs and their outputs.

RAVLO_WINE_RUN, RAVLO_HOST and RAVLO_SAMPLES name the wrapper, the program and the folder of samples.
"""
import contextlib
import csv
import datetime
import io
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

WINE_RUN = os.environ["RAVLO_WINE_RUN"]
HOST = os.environ["RAVLO_HOST"]
SAMPLES = pathlib.Path(os.environ["RAVLO_SAMPLES"])
START = "2030-01-01T00:00:00"
HEADING = "start,category,level,opener,kind,artist,title,album,path,duration_ms,artist_gap_min,title_gap_min"
SEPARATION = datetime.timedelta(minutes=60)
STATION = ("--db", "library.db", "--app", "station")

# One artist, so that the second slot cannot keep the separation; no opener in level 2.
TINY = """path,artist,title,album,year,duration_ms,run_time_ms,categories,level,opener
D:\\a.mp3,Ann,One,,2001,200000,200000,rock,1,Y
D:\\b.mp3,Ann,Two,,2001,100000,100000,rock,1,N
D:\\c.mp3,Bob,"Say ""hi"", twice",,2001,150000,150000,rock,2,N
"""


def run(*arguments, folder, typed=None, wrapper=WINE_RUN):
    """typed: a person's answer; None: there is no person."""
    environment = dict(os.environ, WINE_RUN_INPUT="" if typed is None else "1")
    done = subprocess.run([wrapper, HOST, *map(str, arguments)], cwd=folder, capture_output=True, check=False,
                          env=environment, input=typed.encode() if typed is not None else b"")
    return done.returncode, done.stdout.decode("utf-8"), done.stderr.decode("utf-8")


def read_log(file):
    text = file.read_bytes().decode("utf-8")
    assert text.split("\n", 1)[0] == HEADING and "\r" not in text, text[:200]
    rows = list(csv.DictReader(io.StringIO(text, newline="")))
    for row in rows:
        row["at"] = datetime.datetime.fromisoformat(row["start"])
    return rows


def read_library(file):
    with open(file, encoding="utf-8", newline="") as text:
        return {row["path"]: row for row in csv.DictReader(text)}


def fold(text):
    return "".join(c.upper() if len(c.upper()) == 1 else c for c in text)


def content_of(folder):
    return {str(file.relative_to(folder)): file.read_bytes() if file.is_file() else None
            for file in sorted(folder.rglob("*"))}


class HostCase(unittest.TestCase):
    maxDiff = 4000

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ravlo-host-"))
        self.addCleanup(shutil.rmtree, self.folder)

    def write(self, name, text):
        file = self.folder / name
        file.write_text(text, encoding="utf-8")
        return name

    def good(self, *arguments, folder=None):
        status, out, error = run(*arguments, folder=folder or self.folder)
        self.assertEqual((status, error), (0, ""), out)
        return out

    def ends(self, status, *arguments, **options):
        """The two outputs of a run that ends with this status."""
        answer = run(*arguments, folder=self.folder, **options)
        self.assertEqual(answer[0], status, answer)
        return answer[1:]

    def make_station(self, folder=None):
        ((folder or self.folder) / "station" / "Scheduler").mkdir(parents=True, exist_ok=True)

    def import_samples(self, folder=None):
        self.make_station(folder)
        return self.good("import", "--db", "library.db", "--csv", SAMPLES / "library.csv", folder=folder)

    def import_tiny(self):
        self.make_station()
        return self.good("import", "--db", "library.db", "--csv", self.write("tiny.csv", TINY))

    def day(self, log, *arguments, folder=None):
        self.good("day", *STATION, "--log", log, *arguments, folder=folder)
        return read_log((folder or self.folder) / log)

    def sample_day(self, log, *arguments, folder=None):
        return self.day(log, "--clock", SAMPLES / "clock.txt", *arguments, folder=folder)

    def refused(self, status, text, *arguments):
        before = content_of(self.folder)
        out, error = self.ends(status, *arguments)
        self.assertEqual((out, error.count("\n")), ("", 1), error)
        self.assertTrue(error.startswith("RavloHost: "), error)
        self.assertIn(text, error)
        self.assertEqual(content_of(self.folder), before)

    def check_separations(self, rows):
        for name in ("artist", "title"):
            last = {}
            for row in rows:
                key = fold(row[name])
                gap = row["at"] - last[key] if key and key in last else None
                if gap is not None:
                    self.assertGreaterEqual(gap, SEPARATION, row)
                    self.assertAlmostEqual(float(row[name + "_gap_min"]), gap.total_seconds() / 60, delta=0.006)
                last[key] = row["at"]

    def check_contiguous(self, rows):
        for before, row in zip(rows, rows[1:]):
            ends = before["at"] + datetime.timedelta(milliseconds=int(before["duration_ms"]))
            self.assertLessEqual(abs(row["at"] - ends), datetime.timedelta(seconds=1), row)

    def cats(self, *arguments, typed=None):
        out, error = self.ends(0, "cats", *STATION, *arguments, typed=typed)
        self.assertEqual(error, "", out)
        return out

    def small_disk(self):
        """A folder that is a disk of 2 MB."""
        disk = self.folder / "disk"
        disk.mkdir()
        if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=2m", "tmpfs", disk], capture_output=True, check=False).returncode:
            self.skipTest("needs the right to mount a small file system")
        self.addCleanup(subprocess.run, ["umount", disk], check=False)
        return disk

    def fill(self, disk):
        with contextlib.suppress(OSError), open(disk / "filler", "wb", buffering=0) as filler:
            while True:
                filler.write(bytes(4096))
