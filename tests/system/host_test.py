# SPDX-License-Identifier: MIT
"""RavloHost.exe from outside: import, days, logs and mistakes, with the real libraries behind it.

RAVLO_WITH_SCREEN names the wrapper for windows; see also host_case.py.
"""
import contextlib
import datetime
import json
import os
import shutil
import sqlite3
import struct
import subprocess
import threading
import time
import unittest

from host_case import SAMPLES, SEPARATION, START, STATION, TINY, WINE_RUN, HostCase, content_of, read_library, read_log

WITH_SCREEN = os.environ["RAVLO_WITH_SCREEN"]


class RavloHost(HostCase):
    # Import

    def test_an_import_tells_the_number_of_cuts_and_its_progress_only_if_asked(self):
        self.assertIn("Imported 5000 cuts", self.import_samples())
        self.assertTrue((self.folder / "library.db").exists())
        out, error = self.ends(0, "import", "--db", "a.db", "--csv", SAMPLES / "library.csv", "--progress")
        self.assertIn("Imported 5000 cuts", out)
        self.assertNotEqual(error, "")

    def test_a_second_import_of_the_same_library_adds_nothing(self):
        self.import_tiny()
        self.import_tiny()
        rows = self.day("log.csv", "--start", START, "--hours", "1", "--clock", self.write("c", "rock,1\n"))
        self.assertEqual({row["path"] for row in rows}, {"D:\\a.mp3", "D:\\b.mp3"})

    def test_an_import_that_cannot_be_done_changes_nothing(self):
        self.import_tiny()
        self.write("bad.csv", "artist,title\nAnn,One\n")
        self.write("no.db", "this is no database\n" * 100)
        self.refused(1, "nothing.csv", "import", "--db", "new.db", "--csv", "nothing.csv")
        for database in ("new.db", "missing/new.db", "library.db"):
            self.refused(1, "", "import", "--db", database, "--csv", "bad.csv")
        self.refused(1, "", "import", "--db", "no.db", "--csv", "tiny.csv")

    # Days

    def test_a_day_fills_every_slot_within_the_separations(self):
        self.import_samples()
        rows = self.sample_day("log.csv", "--start", START)
        library = read_library(SAMPLES / "library.csv")
        self.assertEqual(rows[0]["start"], START)
        self.assertGreater(len(rows), 24 * 12)
        self.assertLess(rows[-1]["at"], datetime.datetime(2030, 1, 2))
        self.check_contiguous(rows)
        self.check_separations(rows)
        for row in rows:
            self.assertEqual(row["kind"], "0")
            cut = library[row["path"]]
            self.assertEqual([row[n] for n in ("artist", "title", "album", "duration_ms", "level")],
                             [cut[n] for n in ("artist", "title", "album", "duration_ms", "level")])
            self.assertIn(row["category"], cut["categories"].split("/"))
            self.assertTrue(row["opener"] == "N" or cut["opener"] == "Y", row)

    def test_the_clock_begins_again_with_every_hour(self):
        self.import_samples()
        rows = self.sample_day("log.csv", "--start", "2030-01-01T10:30:00", "--hours", "4")
        lines = [line.split(",") for line in (SAMPLES / "clock.txt").read_text(encoding="utf-8").splitlines()
                 if line and line[0] != "#" and not line.startswith("category")]
        next_line, hour = 0, None
        for row in rows:
            if row["at"].hour != hour or next_line == len(lines):
                next_line, hour = 0, row["at"].hour
            self.assertEqual((row["category"], row["level"]), tuple(lines[next_line][:2]), row)
            next_line += 1

    def test_a_second_day_continues_the_first(self):
        self.import_samples()
        first = self.sample_day("1.csv", "--start", START)
        second = self.sample_day("2.csv")
        self.check_contiguous(first[-1:] + second[:1])
        self.check_separations(first + second)
        self.assertTrue(all(row["kind"] == "0" for row in second))
        # The rotation continues: in a level with more cuts than a day needs, no cut plays twice.
        self.assertEqual({row["path"] for row in first if (row["category"], row["level"]) == ("pop", "1")}
                         & {row["path"] for row in second if (row["category"], row["level"]) == ("pop", "1")}, set())

    def test_the_same_input_gives_the_same_log(self):
        logs = []
        for name, more in (("a", ()), ("b", ()), ("c", ("--save-each",))):
            folder = self.folder / name
            folder.mkdir()
            self.import_samples(folder)
            self.sample_day("log.csv", "--start", START, "--hours", "6", *more, folder=folder)
            logs.append((folder / "log.csv").read_bytes())
        self.assertEqual(logs[0], logs[1])
        self.assertEqual(logs[0], logs[2])

    def test_slots_start_at_their_own_times(self):
        self.import_samples()
        self.write("slots.csv", "slot_at,category,level,opener\n2030-01-01T08:00:00,rock,1,Y\n"
                                "2030-01-01T08:10:00,rock,2,N\n2030-01-01T12:00:00,pop,1,N\n")
        rows = self.day("log.csv", "--slots", "slots.csv")
        self.assertEqual([(r["start"][11:], r["category"], r["level"], r["opener"], r["kind"]) for r in rows],
                         [("08:00:00", "rock", "1", "Y", "0"), ("08:10:00", "rock", "2", "N", "0"),
                          ("12:00:00", "pop", "1", "N", "0")])

    def test_the_first_slot_is_measured_from_the_start(self):
        self.import_tiny()
        clock = self.write("c", "rock,2\n")
        self.day("1.csv", "--start", "2030-01-01T10:00:00", "--hours", "1",
                 "--slots", self.write("s.csv", "slot_at,category,level,opener\n2030-01-01T10:00:00,rock,2,N\n"))
        early = self.day("2.csv", "--start", "2030-01-01T10:59:59", "--hours", "1", "--clock", clock)
        self.assertEqual((early[0]["kind"], early[0]["artist_gap_min"]), ("15", "59.98"))
        # The last play of the previous run starts within its hour; one hour later the separation is kept.
        late = early[-1]["at"] + SEPARATION
        rows = self.day("3.csv", "--start", late.isoformat(), "--hours", "1", "--clock", clock)
        self.assertEqual((rows[0]["kind"], rows[0]["artist_gap_min"]), ("0", "60.00"))

    def test_an_empty_slot_is_a_row_with_its_kind_and_lasts_three_minutes(self):
        self.import_tiny()
        rows = self.day("log.csv", "--start", START, "--hours", "1", "--clock", self.write("c", "rock,2,Y\n"))
        self.assertEqual(len(rows), 20)
        for number, row in enumerate(rows):
            self.assertEqual(row["start"], f"2030-01-01T00:{3 * number:02}:00")
            self.assertEqual([row[n] for n in ("opener", "kind", "artist", "title", "path", "duration_ms")],
                             ["Y", "11", "", "", "", ""])

    def test_a_cut_that_breaks_a_separation_the_least_is_marked_with_its_kind(self):
        self.import_tiny()
        rows = self.day("log.csv", "--start", START, "--hours", "1", "--clock", self.write("c", "rock,1,N\n"))
        self.assertEqual(rows[0]["kind"], "0")
        # Both cuts are Ann's: her other title breaks only the artist's separation.
        self.assertEqual((rows[1]["kind"], rows[1]["path"]), ("14", "D:\\b.mp3"))
        self.assertEqual(rows[1]["artist_gap_min"], "3.33")
        self.assertEqual({row["kind"] for row in rows[2:]}, {"15"})

    def test_without_clock_or_slots_every_level_gets_its_turn(self):
        self.import_tiny()
        rows = self.day("log.csv", "--start", START, "--hours", "1")
        self.assertEqual([(r["category"], r["level"]) for r in rows[:3]], [("rock", "1"), ("rock", "2"), ("rock", "1")])

    def test_a_day_prints_its_log_and_a_summary(self):
        self.import_tiny()
        self.write("c", "rock,1,N\nrock,2,Y\n")
        arguments = ("day", *STATION, "--start", START, "--hours", "1", "--clock", "c")
        out = self.good(*arguments).splitlines()
        self.assertEqual(out[0], "2030-01-01T00:00:00  rock:1  Ann - One")
        self.assertEqual(out[1], "2030-01-01T00:03:20  rock:2 opener  (nothing)  [kind 11]")
        self.assertTrue(any(line.startswith("Slots: ") for line in out))
        quiet = self.good(*arguments, "--quiet")
        self.assertTrue(quiet.startswith("From "), quiet)

    def test_a_day_is_written_as_a_playlist_and_as_json(self):
        self.import_samples()
        rows = self.sample_day("log.csv", "--start", START, "--hours", "2", "--m3u8", "day.m3u8", "--json", "day.json")
        slots = json.loads((self.folder / "day.json").read_text(encoding="utf-8"))
        self.assertEqual([(slot["start"], slot["path"], str(slot["duration_ms"])) for slot in slots],
                         [(row["start"], row["path"], row["duration_ms"]) for row in rows])
        lines = (self.folder / "day.m3u8").read_text(encoding="utf-8").split("\n")
        self.assertEqual(lines[0], "#EXTM3U")
        self.assertEqual(lines[1:-1:3], [f"#EXT-X-PROGRAM-DATE-TIME:{row['start']}" for row in rows])
        self.assertEqual(lines[3::3], [row["path"] for row in rows])

    def test_the_station_is_the_folder_that_was_asked_for(self):
        self.import_tiny()
        self.write("c", "rock,1\n")
        self.good("day", "--db", self.folder / "library.db", "--app", self.folder / "deep" / "station", "--start", START,
                  "--hours", "1", "--clock", self.folder / "c")
        self.assertTrue((self.folder / "deep" / "station" / "Scheduler" / "History_and_Ordering" / "rock.sif").exists())

    # Days with faults from outside

    def lock_library(self):
        """Another program that writes to the database until the connection is closed."""
        writer = sqlite3.connect(self.folder / "library.db", isolation_level=None, check_same_thread=False)
        self.addCleanup(writer.close)
        writer.execute("BEGIN IMMEDIATE")
        return writer

    def last_plays(self):
        with contextlib.closing(sqlite3.connect(self.folder / "library.db")) as library:
            return {path: round(played * 86400) for path, played in
                    library.execute("SELECT path, last_played FROM cuts WHERE last_played > 0")}

    def check_plays(self, rows):
        begin = datetime.datetime(1899, 12, 30)
        aired = {row["path"]: round((row["at"] - begin).total_seconds()) for row in rows if row["path"]}
        kept = self.last_plays()
        self.assertEqual(kept.keys(), aired.keys())
        for path, at in aired.items():
            self.assertLessEqual(abs(kept[path] - at), 1, path)

    def day_beside_a_writer(self, *arguments):
        self.import_samples()
        writer = self.lock_library()
        threading.Timer(10, writer.execute, ("ROLLBACK",)).start()
        out, _ = self.ends(0, "day", *STATION, "--clock", SAMPLES / "clock.txt", "--start", START, "--hours", "2",
                           "--log", "log.csv", *arguments)
        self.assertIn("Slots: ", out)
        rows = read_log(self.folder / "log.csv")
        self.check_separations(rows)
        self.check_plays(rows)

    def test_while_another_program_writes_a_day_keeps_separations_and_plays(self):
        self.day_beside_a_writer()

    def test_while_another_program_writes_a_day_as_on_air_loses_nothing_either(self):
        self.day_beside_a_writer("--save-each")

    def test_a_station_in_use_is_left_to_the_program_that_has_it(self):
        self.import_tiny()
        self.cats("list")
        with subprocess.Popen([WINE_RUN, "cmd", "/c", "pause>station\\Scheduler\\InUse.lock"], cwd=self.folder,
                              stdin=subprocess.PIPE, env=dict(os.environ, WINE_RUN_INPUT="1")) as other:
            lock = self.folder / "station" / "Scheduler" / "InUse.lock"
            while not lock.exists() or not lock.stat().st_size:  # what it says while it waits for a key
                self.assertIsNone(other.poll())
                time.sleep(0.1)
            for command in (("day",), ("watch", "--csv", "tiny.csv"), ("cats", "new", "Jazz"), ("cats", "shuffle", "rock", "-y")):
                self.refused(1, "another program works on the station station", *command, *STATION)
            self.assertIn("1 category", self.cats("list"))
            self.import_tiny()
            other.stdin.write(b"\r\n")
        self.assertEqual(self.cats("new", "Jazz"), "Made the category Jazz with level 1\n")

    def test_a_day_says_which_plays_the_database_refused(self):
        self.import_tiny()
        clock = self.write("c", "rock,1\nrock,2\n")
        self.day("0.csv", "--start", START, "--hours", "1", "--clock", clock)
        before = self.last_plays()
        writer = self.lock_library()
        out, error = self.ends(1, "day", *STATION, "--clock", clock, "--hours", "1", "--log", "log.csv")
        writer.close()
        self.assertIn("Slots: ", out)
        self.assertGreater(len(read_log(self.folder / "log.csv")), 10)
        self.assertIn("RavloHost: 3 plays are not in the database: ", error)
        self.assertEqual(self.last_plays(), before)

    def test_a_day_whose_orders_cannot_be_saved_still_has_its_log(self):
        self.import_tiny()
        (self.folder / "station" / "Scheduler" / "History_and_Ordering" / "rock.sif").mkdir(parents=True)
        out, error = self.ends(1, "day", *STATION, "--start", START, "--hours", "1",
                               "--clock", self.write("c", "rock,1\n"), "--log", "log.csv")
        self.assertIn("Slots: ", out)
        self.check_plays(read_log(self.folder / "log.csv"))
        self.assertTrue(error.endswith("RavloHost: the rotation order could not be saved: rock\n"), error)

    def test_a_full_disk_is_told_before_anything_is_done(self):
        disk = self.small_disk()
        self.import_tiny()
        shutil.copy(self.folder / "library.db", disk)
        self.make_station(disk)
        self.fill(disk)
        for command in (("day", "--app", "disk/station"), ("cats", "list", "--app", "disk/station"),
                        ("import", "--csv", "tiny.csv")):
            out, error = self.ends(1, *command, "--db", "disk/library.db")
            self.assertEqual(out, "")
            self.assertIn("library.db\" cannot be opened: the disk is full.", error)
            self.assertEqual(error.count("\n"), 1, error)
        self.assertEqual(sorted(file.name for file in disk.iterdir()), ["filler", "library.db", "station"])

    def test_a_folder_of_tagged_files_is_imported(self):
        self.make_station()
        music = self.folder / "music"
        (music / "deep").mkdir(parents=True)
        silence = b"RIFF" + struct.pack("<I", 8036) + b"WAVEfmt " + struct.pack("<IHHIIHH", 16, 1, 1, 8000, 8000, 1, 8)
        (music / "deep" / "Ann - One.wav").write_bytes(silence + b"data" + struct.pack("<I", 8000) + b"\x80" * 8000)
        (music / "broken.m4a").write_bytes(b"\0\0\0\x20ftypM4A ")
        folder = ("import", "--db", "library.db", "--folder", "music", "--category", "Gold")
        tried = self.good(*folder, "--dry-run")
        self.assertIn("1 cut would be added, 0 changed, 0 unchanged, 1 file rejected.\n", tried)
        self.assertIn("Ann - One [Gold]", tried)
        self.assertFalse((self.folder / "library.db").exists())
        done = self.good(*folder)
        self.assertIn("Imported 1 cuts from music into library.db\n1 cut added,", done)
        self.assertIn("broken.m4a: is no audio file, or damaged\n", done)
        self.assertIn("0 cuts added, 0 changed, 1 unchanged", self.good(*folder))
        self.assertIn("Gold", self.good("cats", "list", *STATION))
        self.refused(1, "was not found", "import", "--db", "new.db", "--folder", "nowhere")
        self.assertFalse((self.folder / "new.db").exists())

    def test_plays_of_a_period_are_reported(self):
        self.import_tiny()
        self.good("day", *STATION, "--start", "2026-11-30T23:50:00", "--hours", "1", "--log", "day.csv", "--quiet")
        aired = [row for row in read_log(self.folder / "day.csv") if row["path"]]
        printed = self.good("plays", "--db", "library.db", "--from", "2026-11-01", "--to", "2026-11-30")
        lines = printed.splitlines()
        self.assertEqual(lines[0], "start,artist,title,album,duration,key,categories,level")
        self.assertEqual([line.split(",")[0] for line in lines[1:]],
                         [row["start"] for row in aired if row["start"] < "2026-12-01"])
        self.good("plays", "--db", "library.db", "--by", "artist", "--csv", "plays.csv")
        sums = (self.folder / "plays.csv").read_text(encoding="utf-8").splitlines()[1:]
        self.assertEqual(sum(int(line.split(",")[1]) for line in sums), len(aired))
        self.refused(1, "its folder does not exist", "plays", "--db", "library.db", "--csv", "no/plays.csv")
        self.refused(1, "no such file", "plays", "--db", "no.db")

    # Watching an import

    def watch(self, csv_file, *arguments):
        return self.good("watch", *STATION, "--csv", csv_file, *arguments)

    def test_watch_shows_the_rotation_taking_cuts_in(self):
        self.import_tiny()
        # b moves to level 2, c keeps its place with a new title, d and e are new.
        self.write("more.csv", "path,artist,title,categories,level,duration_ms\n"
                               "D:\\d.mp3,Dan,Four,fresh/rock,1,60000\nD:\\e.mp3,Eve,Five,fresh,1,90000\n"
                               "D:\\b.mp3,,,,2,\nD:\\c.mp3,,Goodbye,,,\n")
        out = self.watch("more.csv", "--picks", "2")
        for text in ("2 cuts added, 2 changed, 0 unchanged, 0 rows rejected.", "Updating Scheduler with Added items",
                     "Updated Scheduler with new items.", "In the rotation: 2 new, 1 moved, 0 gone"):
            self.assertIn(text, out)
        self.assertIn("Category  Level  Before  After  New at\n"
                      "rock          1       2      2  2\n"
                      "rock          2       1      2  2\n"
                      "fresh         1       0      2  1-2\n", out)
        self.assertIn("The rotation of fresh:1, where new cuts come up soonest:\n"
                      "1  Dan - Four (1:00)  new\n2  Eve - Five (1:30)  new\n", out)
        self.assertRegex(out, r"The next 2 picks:\n\S+  fresh:1  Dan - Four\n\S+  fresh:1  Eve - Five\n$")
        # The plays are recorded: the same cuts have gone to the back.
        again = self.good("cats", "list", "fresh:1", *STATION)
        self.assertEqual(again, "fresh:1 (2 cuts)\n1  Dan - Four (1:00)\n2  Eve - Five (1:30)\n")

    def test_the_sample_update_adds_and_changes_cuts_of_the_sample_library(self):
        self.import_samples()
        out = self.watch(SAMPLES / "update.csv")
        self.assertIn("160 cuts added, 40 changed, 0 unchanged, 0 rows rejected.", out)
        self.assertIn("In the rotation: 160 new, 28 moved, 0 gone", out)
        self.assertRegex(out, r"\nnew releases +1 +0 +32  1-32\n")
        picks = [line for line in out.splitlines() if "  new releases:1  " in line]
        self.assertEqual(len(picks), 8)
        self.assertEqual(len(set(line[21:] for line in picks)), 8)
        self.assertFalse(any("[kind" in line for line in picks), picks)

    def test_a_watch_of_nothing_new_or_that_cannot_be_done_changes_nothing(self):
        self.import_tiny()
        out = self.watch("tiny.csv")
        self.assertIn("0 cuts added, 0 changed, 3 unchanged, 0 rows rejected.", out)
        self.assertTrue(out.endswith("No cut came into a level: the rotation goes on as it was.\n"), out)
        watch = ("watch", *STATION, "--csv")
        self.refused(1, "missing.csv", *watch, "missing.csv")
        self.refused(1, "missing.db", "watch", "--db", "missing.db", "--app", "station", "--csv", "tiny.csv")
        self.refused(2, "--picks", *watch, "tiny.csv", "--picks", "many")
        self.refused(2, "--csv", "watch", *STATION)

    # Categories

    def cats_refused(self, status, text, *arguments, typed=None, out=""):
        before = self.cats("list", "--first", "9")
        answer = self.ends(status, "cats", *STATION, *arguments, typed=typed)
        self.assertEqual(answer[0], out, answer)
        self.assertIn(text, answer[1])
        self.assertEqual(self.cats("list", "--first", "9"), before)

    def test_cats_list_shows_levels_and_cuts(self):
        self.import_tiny()
        table = ("Category  Level  Cuts  Average\nrock          1     2     2:30\nrock          2     1     2:30\n"
                 "1 category with 2 levels\n")
        self.assertEqual(self.cats("list"), table)
        self.assertEqual(self.cats("list", "ROCK"), table)
        self.assertEqual(self.cats("list", "rock:1"), "rock:1 (2 cuts)\n1  Ann - One (3:20)\n2  Ann - Two (1:40)\n")
        self.assertEqual(self.cats("list", "rock", "--first", "1"),
                         "rock:1 (2 cuts)\n1  Ann - One (3:20)\n... and 1 more\n"
                         "rock:2 (1 cut)\n1  Bob - Say \"hi\", twice (2:30)\n")
        self.cats_refused(1, "there is no category jazz", "list", "jazz")
        self.cats_refused(1, "rock has no level 3", "list", "rock:3")

    def test_cats_new_makes_a_category_that_stays(self):
        self.import_tiny()
        self.assertEqual(self.cats("new", "Hard Rock"), "Made the category Hard Rock with level 1\n")
        self.assertEqual(self.cats("new", "Jazz/Funk"), "Made the category Jazz_Funk with level 1\n")
        self.assertIn("Hard Rock      1     0        -\n", self.cats("list"))
        self.cats_refused(1, "There is already a category by this name!", "new", "hard rock")
        self.cats_refused(1, "Category Names must not be numeric!", "new", "2024")
        self.cats_refused(1, "Category Name too long!", "new", "x" * 51)

    def test_cats_level_makes_a_level_that_stays(self):
        self.import_tiny()
        self.assertEqual(self.cats("level", "ROCK", "9"), "Made the level rock:9\n")
        self.assertIn("rock          9     0        -\n", self.cats("list"))
        self.cats("new", "Empty")
        self.assertEqual(self.cats("level", "Empty", "2"), "Made the level Empty:2\n")
        self.assertIn("Empty         2     0        -\n", self.cats("list"))
        self.cats_refused(1, "rock has a level 9 already", "level", "rock", "9")
        self.cats_refused(1, "there is no category jazz", "level", "jazz", "1")
        self.cats_refused(2, "LEVEL", "level", "rock", "32765")

    def test_cats_asks_before_it_destroys(self):
        self.import_tiny()
        question = "Really shuffle rock:1 (2 cuts)? [y/N] "
        self.cats_refused(3, "--yes", "shuffle", "rock:1", out=question + "\n")
        self.cats_refused(3, "", "shuffle", "rock:1", typed="n\n", out=question + "Nothing was changed.\n")
        self.cats_refused(3, "", "shuffle", "rock:1", typed="\n", out=question + "Nothing was changed.\n")
        self.cats_refused(3, "", "move", "rock:1", "--to", "rock:2", typed="perhaps\n",
                          out="Really move 2 cuts of rock:1 (2 cuts) to rock:2? [y/N] Nothing was changed.\n")
        self.cats_refused(3, "", "delete", "rock", typed="no\n", out="Really delete rock (3 cuts)? The cuts stay in the "
                          "database. [y/N] Nothing was changed.\n")
        self.assertEqual(self.cats("delete", "rock:1", typed="y\n"),
                         "Really delete rock:1 (2 cuts)? The cuts stay in the database. [y/N] "
                         "Deleted rock:1 (2 cuts)\n")
        self.assertEqual(self.cats("list"), "Category  Level  Cuts  Average\nrock          2     1     2:30\n"
                         "1 category with 1 level\n")

    def test_cats_shuffle_keeps_every_cut(self):
        self.import_samples()
        before = self.cats("list", "rock:1").splitlines()
        self.assertEqual(self.cats("shuffle", "rock:1", "--yes"), "Shuffled rock:1 (163 cuts)\n")
        after = self.cats("list", "rock:1").splitlines()
        self.assertNotEqual(before, after)
        self.assertEqual(sorted(line.lstrip("0123456789 ") for line in before),
                         sorted(line.lstrip("0123456789 ") for line in after))

    def test_cats_moves_and_copies_cuts(self):
        self.import_tiny()
        self.cats("new", "new releases")
        self.assertEqual(self.cats("copy", "rock:1", "--to", "new releases"),
                         "Copied 2 cuts to new releases\n"
                         "Category      Level  Before  After  New at\nnew releases      1       0      2  1-2\n")
        self.assertEqual(self.cats("copy", "rock:1", "--to", "new releases"),
                         "They were there already.\n")
        self.assertEqual(self.cats("move", "rock", "--to", "rock:2", "--cut", "d:\\A.mp3", "--yes"),
                         "Moved 1 cut to rock:2\nCategory      Level  Before  After  New at\n"
                         "rock              1       2      1\nrock              2       1      2  2\n"
                         "new releases      1       2      1\nnew releases      2       0      1  1\n")
        self.assertEqual(self.cats("move", "rock:2", "--to", "new releases:2", "--exclusive", "-y"),
                         "Moved 2 cuts to new releases:2\nCategory      Level  Before  After  New at\n"
                         "rock              2       2      0\nnew releases      2       1      2  2\n")
        self.cats_refused(1, "there is no cut in rock:2 (0 cuts)", "copy", "rock:2", "--to", "rock:1")
        self.cats_refused(1, "D:\\z.mp3 is not there", "copy", "rock", "--to", "new releases", "--cut",
                          "D:\\z.mp3")
        self.cats_refused(1, "rock has no level 7", "move", "rock:1", "--to", "rock:7", "--yes")

    def test_cats_copy_names_what_it_did_not_copy(self):
        self.import_tiny()
        self.cats("new", "new releases")
        out, error = self.ends(1, "cats", "copy", "rock", "--to", "new releases:1", *STATION)
        self.assertEqual(out, "Copied 2 cuts to new releases:1\n"
                              "Category      Level  Before  After  New at\nnew releases      1       0      2  1-2\n")
        self.assertIn("D:\\c.mp3 was not copied: its level is 2\n", error)
        self.assertTrue(error.endswith("RavloHost: 1 cut was not copied to new releases:1: a copy keeps its level\n"), error)

    def damage_the_list(self):
        """The saved list of categories can be neither read nor replaced: a folder has its name."""
        file = self.folder / "station" / "Scheduler" / "MainCats.txt"
        file.unlink()
        file.mkdir()
        (file / "kept").write_text("", encoding="utf-8")

    def test_cats_tells_what_was_done_when_not_everything_could_be_saved(self):
        self.import_tiny()
        self.cats("list")
        file = self.folder / "station" / "Scheduler" / "MainCats.txt"
        file.write_text("\r\nrock\r\nROCK", encoding="utf-8", newline="")
        # A box from before the action is shown, but is no failure of the action.
        out, error = self.ends(0, "cats", *STATION, "new", "Jazz")
        self.assertEqual(out, "Made the category Jazz with level 1\n", error)
        self.assertIn("the scheduler says: ", error)
        self.damage_the_list()
        out, error = self.ends(1, "cats", *STATION, "new", "Soul")
        self.assertEqual(out, "", error)
        self.assertTrue(error.endswith("RavloHost: the category Soul was made, but not everything could be saved\n"), error)

    def unsaved_watch(self, row, *arguments):
        self.write("more.csv", "path,artist,title,categories,level,duration_ms\n" + row)
        out, error = self.ends(1, "watch", *STATION, "--csv", "more.csv", *arguments)
        self.assertIn("1 cut added", out)
        self.assertIn("the scheduler says: ", error)
        self.assertTrue(error.endswith("RavloHost: the cuts were imported, but the scheduler could not save everything\n"),
                        error)

    def test_watch_fails_when_not_everything_could_be_saved(self):
        self.import_tiny()
        self.cats("list")
        orders = self.folder / "station" / "Scheduler" / "History_and_Ordering" / "fresh.sif"
        orders.mkdir(parents=True)
        self.unsaved_watch("D:\\d.mp3,Dan,Four,fresh,1,60000\n", "--picks", "0")
        orders.rmdir()
        self.damage_the_list()  # which is saved when the scheduler closes
        self.unsaved_watch("D:\\e.mp3,Eve,Five,newer,1,60000\n")

    def test_a_category_with_a_colon_in_its_name_can_be_named(self):
        self.make_station()
        self.good("import", "--db", "library.db", "--csv", self.write("talk.csv", TINY.replace(",rock,2", ",Talk: News,2")))
        self.assertEqual(self.cats("list", "talk: news:2"), "Talk: News:2 (1 cut)\n1  Bob - Say \"hi\", twice (2:30)\n")
        self.assertIn("Talk: News      2     1     2:30\n", self.cats("list", "Talk: News"))

    def test_cats_of_a_station_that_is_none_changes_nothing(self):
        self.refused(1, "missing.db", "cats", "list", "--db", "missing.db", "--app", "station")
        self.import_tiny()
        self.write("file", "")
        self.refused(1, "is a file, not a folder", "cats", "list", "--db", "library.db", "--app", "file")
        self.refused(2, "--app", "cats", "--db", "library.db", "list")

    # Mistakes

    def test_a_usage_mistake_has_status_two(self):
        self.import_tiny()
        day = ("day", *STATION)
        self.refused(2, "", "day")
        self.refused(2, "", "dance")
        self.refused(2, "--start", *day, "--start", "noon")
        self.refused(2, "--hours", *day, "--hours", "0")
        self.refused(2, "--clock", *day, "--clock", "c", "--slots", "s")

    def test_a_bad_file_changes_nothing(self):
        self.import_tiny()
        self.write("good", "rock,1\n")
        self.write("bad_level", "rock,1\nrock,one\n")
        self.write("bad_category", "rock,1\njazz,1\n")
        self.write("bad_slots.csv", "slot_at,category,level,opener\n2030-01-01T00:00:00,rock,1,N\nnoon,rock,1,N\n")
        self.write("no.db", "this is no database\n" * 100)
        day = ("day", *STATION, "--start", START, "--log", "log.csv")
        self.refused(1, "missing", *day, "--clock", "missing")
        self.refused(1, "bad_level, line 2: ", *day, "--clock", "bad_level")
        self.refused(1, "bad_category, line 2: no cut is in jazz:1", *day, "--clock", "bad_category")
        self.refused(1, "bad_slots.csv, line 3: ", *day, "--slots", "bad_slots.csv")
        self.refused(1, "missing.db", "day", "--db", "missing.db", "--app", "station", "--clock", "good")
        self.refused(1, "", "day", "--db", "no.db", "--app", "station", "--clock", "good")
        self.refused(1, "nowhere", "day", *STATION, "--clock", "good", "--log",
                     "nowhere/log.csv")
        self.refused(1, "good", "day", "--db", "library.db", "--app", "good", "--clock", "good")

    def test_names_may_be_of_every_script(self):
        text = TINY + "D:\\\u6771.mp3,\u6771\u4eac,Bj\u00f6rk \u2013 \u00e9t\u00e9 \U0001f3b5,,2001,200000,200000,\u00fcber,1,N\n"
        self.good("import", "--db", "b\u00fccher.db", "--csv", self.write("tiny.csv", text))
        self.write("c", "\u00dcBER,1\n")
        self.good("day", "--db", "b\u00fccher.db", "--app", "st\u00e4tion", "--start", START, "--hours", "1", "--clock", "c",
                  "--log", "l\u00f6g.csv")
        row = read_log(self.folder / "l\u00f6g.csv")[0]
        self.assertEqual((row["artist"], row["title"], row["path"]),
                         ("\u6771\u4eac", "Bj\u00f6rk \u2013 \u00e9t\u00e9 \U0001f3b5", "D:\\\u6771.mp3"))

    def picture(self, *arguments):
        (self.folder / "Scheduler").mkdir(exist_ok=True)
        out, error = self.ends(0, *arguments, "--db", "t.db", "--app", ".", "--picture", "window.png", wrapper=WITH_SCREEN)
        self.assertEqual((self.folder / "window.png").read_bytes()[:8], b"\x89PNG\r\n\x1a\n")
        return out, error

    def test_the_category_window_prints_what_was_chosen(self):
        self.good("import", "--db", "t.db", "--csv", self.write("t.csv", TINY))
        chosen = "Category: rock\nLevel: 2\nOpener: no\n"
        self.assertEqual(self.picture("category", "--category", "ROCK:2"), (chosen, ""))
        self.assertEqual(self.picture("category", "--multi", "--cut", "d:\\C.MP3"),
                         (chosen + "The cut is placed in: rock\n", ""))

    def test_the_health_window_opens_with_the_clock(self):
        self.good("import", "--db", "t.db", "--csv", self.write("t.csv", TINY))
        self.assertEqual(self.picture("health", "--window", "--clock", self.write("clock", "rock,2\n")), ("", ""))

    def test_a_box_does_not_keep_a_picture_waiting(self):
        self.good("import", "--db", "t.db", "--csv", self.write("t.csv", TINY))
        (self.folder / "Scheduler").mkdir()
        (self.folder / "Scheduler" / "MainCats.txt").write_text("\r\nrock\r\nROCK", encoding="utf-8", newline="")
        _, error = self.picture("library")
        self.assertIn("the scheduler says: ", error)

    def test_the_library_window_opens_on_a_station_without_a_cut(self):
        self.good("import", "--db", "t.db", "--csv", self.write("t.csv", "path\n"))
        self.assertEqual(self.picture("library"), ("", ""))

    def test_a_window_opens_only_with_what_the_station_has(self):
        self.good("import", "--db", "t.db", "--csv", self.write("t.csv", TINY))
        before = content_of(self.folder)
        for wrong in (["--category", "jazz"], ["--multi", "--cut", "nowhere.mp3"], ["--picture", "no/where.png"]):
            out, error = self.ends(1, "category", "--db", "t.db", "--app", "app", *wrong)
            self.assertEqual(out, "", wrong)
            self.assertIn(wrong[-1].replace("/", "\\"), error)
        self.assertEqual(before.keys() | {"app"}, {name.split("/")[0] for name in content_of(self.folder)})


if __name__ == "__main__":
    unittest.main()
