# SPDX-License-Identifier: MIT
"""RavloHost's commands around rotation: options, spread, explain, simulate and health, and days under other options."""
import contextlib
import json
import os
import pathlib
import signal
import struct
import subprocess
import time
import unittest

from host_case import HOST, START, STATION, WINE_RUN, HostCase, content_of

# Two cuts of Ann's follow each other, and she may return after ten minutes: the second is passed over in every round.
STARVING = "path,artist,title,duration_ms,categories,level,opener\n" + "".join(
    f"D:\\{n}.mp3,{'Ann' if n <= 2 else 'Artist ' + str(n)},Song {n},180000,pop,1,N\n" for n in range(1, 9))
JINGLES = "path,artist,title,duration_ms,categories,level,opener\n" + "".join(
    f"D:\\{n}.mp3,,Jingle {n},10000,jingles,1,N\n" for n in range(1, 4))
RULES = struct.pack("<iiH55si", 10, 1, 0, b"pop\xac\xac\xac1".ljust(55), 0)  # artist 10 minutes, title 1, no album


def kill(pid):
    """Kills a process and what it started; the caller first, which must not start it again."""
    children = [int(stat.parent.name) for stat in pathlib.Path("/proc").glob("[0-9]*/stat") if parent_of(stat) == pid]
    os.kill(pid, signal.SIGKILL)
    for child in children:
        kill(child)


def parent_of(stat):
    with contextlib.suppress(OSError):
        return int(stat.read_text(encoding="utf-8", errors="replace").rpartition(")")[2].split()[1])
    return None


class RotationHost(HostCase):
    def starving_station(self):
        self.good("import", "--db", "library.db", "--csv", self.write("starving.csv", STARVING))
        self.write("clock", "pop,1\n")
        self.make_station()
        self.good("options", *STATION)  # makes the folder of the rules
        (self.folder / "station/Scheduler/Rules/pop\u00ac\u00ac\u00ac1.rls").write_bytes(RULES)

    def options(self, *arguments):
        return self.good("options", *STATION, *arguments)

    def plays_of_song_2(self, rows):
        return sum(row["title"] == "Song 2" for row in rows)

    def starving_day(self, log, *arguments):
        return self.day(log, "--hours", "6", "--clock", "clock", *arguments)

    def orders(self):
        file = self.folder / "station/Scheduler/History_and_Ordering/pop.sif"
        return file.read_bytes() if file.exists() else None

    def unchanged(self, *names):
        return {name: content for name, content in content_of(self.folder).items() if not name.endswith(names)}

    def test_options_are_shown_saved_and_kept(self):
        self.starving_station()
        self.assertEqual(self.options(), "Fair rotation: off\nFeatured artists: off\n")
        self.assertFalse((self.folder / "station/Scheduler/Rotation.cfg").exists())
        self.assertEqual(self.options("--fair", "on"), "Fair rotation: on\nFeatured artists: off\n")
        self.assertEqual(self.options("--featured", "on", "--fair", "off"), "Fair rotation: off\nFeatured artists: on\n")
        self.assertEqual((self.folder / "station/Scheduler/Rotation.cfg").read_bytes(),
                         b"FairRotation=0\r\nFeaturedArtists=1\r\n")
        self.refused(2, "--fair", "options", *STATION, "--fair", "perhaps")
        self.refused(1, "missing.db", "options", "--db", "missing.db", "--app", "station")

    def test_a_day_under_other_options_leaves_the_stations_alone(self):
        self.starving_station()
        self.options("--featured", "on")
        file = self.folder / "station/Scheduler/Rotation.cfg"
        saved, stamp = file.read_bytes(), file.stat().st_mtime_ns
        walk = self.starving_day("walk.csv", "--start", START)
        fair = self.starving_day("fair.csv", "--fair", "on", "--featured", "off")
        self.assertEqual(self.plays_of_song_2(walk), 0)
        self.assertGreater(self.plays_of_song_2(fair), 10)
        self.assertEqual((file.read_bytes(), file.stat().st_mtime_ns), (saved, stamp))
        self.assertEqual(self.options(), "Fair rotation: off\nFeatured artists: on\n")

    def test_a_day_that_is_killed_leaves_the_stations_options_alone(self):
        self.starving_station()
        before = self.orders()
        with subprocess.Popen([WINE_RUN, HOST, "day", *STATION, "--clock", "clock", "--start", START, "--hours", "8784",
                               "--save-each", "--fair", "on"], cwd=self.folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as day:
            while self.orders() == before:  # until it has picked under the option
                self.assertIsNone(day.poll())
                time.sleep(0.1)
            kill(day.pid)
        self.assertFalse((self.folder / "station/Scheduler/Rotation.cfg").exists())
        self.assertEqual(self.options(), "Fair rotation: off\nFeatured artists: off\n")

    def test_a_simulation_tells_the_day_that_comes(self):
        self.starving_station()
        told = self.good("simulate", *STATION, "--clock", "clock", "--start", START, "--log", "told.csv")
        self.assertRegex(told, r"\npop:1 +red +8 ")
        fair = self.good("simulate", *STATION, "--clock", "clock", "--start", START, "--fair", "on", "--log", "fair.csv")
        self.assertTrue(fair.endswith("Every level is green.\n"), fair)
        aired = self.day("aired.csv", "--start", START, "--clock", "clock")
        self.assertEqual((self.folder / "told.csv").read_bytes(), (self.folder / "aired.csv").read_bytes())
        self.assertIn(f"Slots: {len(aired)}, filled: {len(aired)}\n", told)
        self.assertIn("Log: told.csv\n", told)

    def test_a_simulation_changes_nothing_of_the_station(self):
        self.starving_station()
        self.options("--fair", "on")
        before = content_of(self.folder)
        self.good("simulate", *STATION, "--clock", "clock", "--days", "3", "--fair", "off", "--featured", "on")
        self.good("explain", *STATION, "pop:1")
        self.good("health", *STATION, "--clock", "clock", "--days", "2")
        self.ends(4, "health", *STATION, "--clock", "clock", "--days", "2", "--fair", "off")
        self.assertEqual(content_of(self.folder), before)

    def test_health_tells_by_its_status_whether_a_level_is_red(self):
        self.import_samples()
        self.write("easy", "pop,1\nrock,2\n")
        out = self.good("health", *STATION, "--clock", "easy", "--days", "1")
        self.assertRegex(out, r"\npop:1 +green ")
        self.write("hard", "rock,1,Y\nedm,3\n")
        out, _ = self.ends(4, "health", *STATION, "--clock", "hard", "--json", "health.json")
        figures = json.loads((self.folder / "health.json").read_text(encoding="utf-8"))
        self.assertIn("Report: health.json\n", out)
        self.assertEqual((figures["days"], figures["plan"], figures["planFile"]), (28, "clock file hard", "hard"))
        self.assertTrue(out.startswith(f"Clock file hard, 28 days from {figures['start']}\n"), (out, figures["start"]))
        table = {line.split("  ")[0]: line.split() for line in out.splitlines() if ":" in line.split("  ")[0]}
        for level in figures["levels"]:
            row = table[level["key"].replace("\t", ":")]
            self.assertIn(level["light"], row)
            self.assertEqual(row[-1], str(level["rulesBroken"]))

    def test_only_health_looks_for_what_helps_and_tells_how_far_it_is(self):
        self.starving_station()
        arguments = *STATION, "--clock", "clock", "--start", START, "--days", "60", "--progress"
        _, error = self.ends(4, "health", *arguments)
        self.assertRegex(error, r"Looking for what helps: \d+ %")
        _, error = self.ends(0, "simulate", *arguments)
        self.assertNotIn("Looking", error)

    def test_a_level_without_artists_is_told_of_no_separation(self):
        self.make_station()
        self.good("import", "--db", "library.db", "--csv", self.write("jingles.csv", JINGLES))
        self.write("clock", "jingles,1,Y\n")
        out, _ = self.ends(4, "health", *STATION, "--clock", "clock", "--days", "1")
        self.assertRegex(out, r"\njingles:1:\n  \d+ of \d+ slots stay empty: no cut is an opener\n")

    def test_a_spread_is_saved_and_explained_picks_come(self):
        self.starving_station()
        self.assertEqual(self.good("spread", *STATION, "pop:1"), "Spread pop:1 (8 cuts)\n")
        order = [line.split("  ")[1].split(" - ")[0] for line in self.cats("list", "pop:1").splitlines()[1:]]
        at = [place for place, artist in enumerate(order) if artist == "Ann"]
        self.assertEqual(at[1] - at[0], 4, order)
        first = order[0]
        self.assertTrue(self.good("explain", *STATION, "pop:1").startswith(f"Chosen: {first} - "))
        self.assertTrue(self.starving_day("log.csv", "--start", START)[0]["artist"] == first)
        self.assertEqual(self.good("explain", *STATION, "pop:1", "--opener").splitlines()[-1],
                         "Nothing chosen: pop 1 has no opener.")

    # Mistakes

    def test_what_cannot_be_simulated_is_refused_in_a_sentence(self):
        self.starving_station()
        self.write("empty", "# nothing\n")
        self.write("bad", "pop,1\npop,one\n")
        self.write("unknown", "pop,1\n\njazz,1\n")
        self.write("slots.csv", "slot_at,category,level,opener\n2030-01-01T00:00:00,pop,1,N\nnoon,pop,1,N\n")
        self.write("past.csv", "slot_at,category,level,opener\n2030-01-01T00:00:00,pop,1,N\n")
        for command in ("simulate", "health"):
            call = (command, *STATION)
            for status, text, arguments in (
                    (2, "--clock", ()),
                    (2, "--slots", ("--clock", "clock", "--slots", "slots.csv")),
                    (2, "--days: Value 0 not in range 1 to 3660", ("--clock", "clock", "--days", "0")),
                    (2, "--days: Value 100000 not in range 1 to 3660", ("--clock", "clock", "--days", "100000")),
                    (2, "--days", ("--clock", "clock", "--days", "many")),
                    (2, "--start", ("--clock", "clock", "--start", "noon")),
                    (2, "--fair", ("--clock", "clock", "--fair", "1")),
                    (1, "missing", ("--clock", "missing")),
                    (1, "empty", ("--clock", "empty")),
                    (1, 'bad, line 2: the level must be a whole number from 1, not "one"', ("--clock", "bad")),
                    (1, "unknown, line 3: no cut is in jazz:1", ("--clock", "unknown")),
                    (1, "slots.csv, line 3: ", ("--slots", "slots.csv")),
                    (1, "slot", ("--slots", "past.csv", "--start", "2031-01-01T00:00:00"))):
                with self.subTest(command=command, arguments=arguments):
                    self.refused(status, text, *call, *arguments)
            self.refused(1, "missing.db", command, "--db", "missing.db", "--app", "station", "--clock", "clock")

    def test_a_folder_that_is_no_station_stays_as_it_is(self):
        self.starving_station()
        for app in ("statoin", "."):
            for command in (("simulate", "--clock", "clock"), ("health", "--clock", "clock"), ("explain", "pop:1"),
                            ("health", "--clock", "clock", "--window"), ("options",), ("options", "--fair", "on"),
                            ("spread", "pop:1"), ("cats", "list"), ("cats", "new", "Jazz")):
                with self.subTest(app=app, command=command):
                    self.refused(1, f"{app} is no station: it has no folder Scheduler", command[0], "--db", "library.db",
                                 "--app", app, *command[1:])
        day = "day", "--db", "library.db", "--app", "statoin", "--start", START, "--hours", "1", "--quiet"
        self.assertTrue(self.good(*day).startswith("New station: statoin\nFrom "))
        self.assertTrue(self.good(*day).startswith("From "))

    def test_a_level_that_is_not_there_is_neither_explained_nor_spread(self):
        self.starving_station()
        for arguments, text in ((("explain", "jazz:1"), "there is no category jazz"), (("explain", "pop"), "pop is no level"),
                                (("explain", "pop:7"), "pop has no level 7"), (("spread", "pop:1", "jazz:1"), "there is no category jazz"),
                                (("spread", "pop:7"), "pop has no level 7")):
            self.refused(1, text, *arguments, *STATION)
        self.refused(2, "LEVEL", "spread", *STATION)
        self.refused(2, "LEVEL", "explain", *STATION)

    def test_a_report_that_cannot_be_written_costs_nothing_else(self):
        self.starving_station()
        (self.folder / "folder.html").mkdir()
        for option, command in (("--html", "health"), ("--json", "health"), ("--log", "simulate")):
            call = (command, *STATION, "--clock", "clock", "--days", "1", option)
            self.refused(1, "nowhere\\r: its folder does not exist", *call, "nowhere/r")
            self.refused(1, "folder.html is a folder", *call, "folder.html")
        disk = self.small_disk()
        (disk / "old.html").write_text("the old report", encoding="utf-8")
        self.fill(disk)
        before = self.unchanged("filler")
        for option, command in (("--html", "health"), ("--log", "simulate")):
            _, error = self.ends(1, command, *STATION, "--clock", "clock", "--days", "1", option, "disk/old.html")
            self.assertRegex(error, r"^RavloHost: [^\n]*old\.html[^\n]*\n$")
        self.assertEqual(self.unchanged("filler"), before)


if __name__ == "__main__":
    unittest.main()
