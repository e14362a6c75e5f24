# SPDX-License-Identifier: MIT
"""The health report as a browser shows it: a headless Chromium opens it, in light and in dark.

Skipped where there is no Chromium. See also host_case.py.
"""
import html.parser
import json
import os
import shutil
import struct
import subprocess
import unittest
import zlib

from host_case import STATION, HostCase

CHROMIUM = shutil.which("chromium") or shutil.which("chromium-browser")
LIGHT, DARK = (255, 255, 255), (0x15, 0x18, 0x1C)  # the page's background

# Artist, title: markup, quotes, scripts, names from right to left, one with a control that turns the direction.
NAMES = (("<b>Bold</b> & \"Loud\" 'n' &amp;", "</td><script>document.title=1</script>"),
         ("<b>Bold</b> & \"Loud\" 'n' &amp;", "Second ]]> <!-- song"),
         ("\u05e9\u05dc\u05d5\u05dd (\u05d7\u05d9)", "\u0645\u0631\u062d\u0628\u0627 12"),
         ("Tom \u202eevil", "<img src=x onerror=alert(1)>"),
         ("\u6771\u4eac", "Bj\u00f6rk \u2013 \u00e9t\u00e9 \U0001f3b5"))


class Tables(html.parser.HTMLParser):
    """The rows of every table, as the texts of their cells, and the elements and attributes of the page."""

    def __init__(self, text):
        super().__init__()
        self.tables, self.elements, self.attributes = [], set(), set()
        self.title, self.style, self.within, self.in_cell = "", "", "", False
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        self.elements.add(tag)
        self.attributes.update(name for name, _ in attributes)
        self.within = tag
        if tag == "table":
            self.tables.append([])
        elif tag == "tr":
            self.tables[-1].append([])
        elif tag in ("td", "th"):
            self.tables[-1][-1].append("")
            self.in_cell = True

    def handle_data(self, data):
        if self.within == "title" and "body" not in self.elements:  # pictures have titles too
            self.title += data
        elif self.within == "style":
            self.style += data
        elif self.in_cell:
            self.tables[-1][-1][-1] += data

    def handle_endtag(self, tag):
        self.within = ""
        if tag in ("td", "th"):
            self.in_cell = False


def corner_of(file):
    """The size of a PNG picture and the colour of its first pixel, which no filter changes."""
    data, at, packed = file.read_bytes(), 8, b""
    while at < len(data):
        length, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IHDR":
            size = struct.unpack(">II", data[at + 8:at + 16])
        elif kind == b"IDAT":
            packed += data[at + 8:at + 8 + length]
        at += 12 + length
    return size, tuple(zlib.decompressobj().decompress(packed, 4)[1:])


@unittest.skipUnless(CHROMIUM, "skipped: there is no Chromium")
class Report(HostCase):
    def make_starving_station(self):
        self.make_station()
        rows = "".join(f'D:\\{n}.mp3,"{artist.replace(chr(34), chr(34) * 2)}","{title.replace(chr(34), chr(34) * 2)}",180000,'
                       f"R&B <pop>,{1 if n < 4 else 2}\n" for n, (artist, title) in enumerate(NAMES))
        self.good("import", "--db", "library.db", "--csv",
                  self.write("names.csv", "path,artist,title,duration_ms,categories,level\n" + rows))
        self.write("clock", "R&B <pop>,1\nR&B <pop>,1\nR&B <pop>,2\n")

    def chromium(self, *options):
        done = subprocess.run([CHROMIUM, "--headless", "--disable-gpu", "--no-sandbox", "--hide-scrollbars", "--no-first-run",
                               f"--user-data-dir={self.folder / 'profile'}", "--window-size=1000,1600", *options,
                               (self.folder / "report.html").as_uri()], capture_output=True, check=True, timeout=120)
        return done.stdout.decode("utf-8")

    def check_row(self, cells, expected):
        self.assertEqual(len(cells), len(expected), cells)
        for cell, value in zip(cells, expected):
            if isinstance(value, float):
                self.assertAlmostEqual(float(cell), value, delta=0.5001)
            else:
                self.assertEqual(cell, str(value), cells)

    def distances(self, gaps):
        return [float(gaps[name]) for name in ("smallest", "median", "largest")] if gaps else [""] * 3

    def check_level(self, level, tables):
        def name(cut):
            return f"{cut['artist']} - {cut['title']}"

        for starved in filter(None, (level["neverPlayed"], level["underHalf"])):
            for row, cut in zip(next(tables)[1:], starved, strict=True):
                self.check_row(row, [name(cut), cut["plays"], cut["passedOver"], cut["rule"],
                                     name(cut["blockedBy"]) if cut["blockedBy"] else ""])
        for row, artist in zip(next(tables)[1:], level["artists"], strict=True):
            self.check_row(row, [artist["name"], artist["cuts"], artist["plays"], row[3], row[4], *self.distances(artist["gaps"])])
            self.assertAlmostEqual(float(row[4].split()[0]), artist["shareOfPicks"] * 100, delta=0.5001)
        for row, cut in zip(next(tables)[1:], level["cuts"], strict=True):
            self.check_row(row, [name(cut), cut["plays"], "yes" if cut["lockStep"] else "", *self.distances(cut["titleGaps"]),
                                 *(plays or "" for plays in cut["byHour"])])

    def test_a_browser_shows_the_figures_and_every_name_as_it_is(self):
        self.make_starving_station()
        self.ends(4, "health", *STATION, "--clock", "clock", "--days", "3", "--html", "report.html", "--json", "report.json")
        figures = json.loads((self.folder / "report.json").read_text(encoding="utf-8"))
        page = Tables(self.chromium("--dump-dom", f"--screenshot={self.folder / 'light.png'}"))
        self.chromium("--force-dark-mode", f"--screenshot={self.folder / 'dark.png'}")
        if os.environ.get("RAVLO_KEEP_PICTURES"):
            for name in ("light.png", "dark.png", "report.html"):
                shutil.copy(self.folder / name, os.environ["RAVLO_KEEP_PICTURES"])

        self.assertEqual(page.title, "Rotation health", "a script of a title ran")
        self.assertEqual(page.elements & {"script", "link", "img", "iframe", "object", "b"}, set())
        self.assertEqual({name for name in page.attributes if name.startswith("on") or name in ("src", "style")}, set())
        self.assertNotIn("url(", page.style)
        tables = iter(page.tables)
        shown = {row[0]: row for row in next(tables)[1:]}
        self.assertEqual(len(shown), len(figures["levels"]))
        for level in figures["levels"]:
            row = shown[level["key"].replace("\t", " ")]
            self.assertEqual(row[1].split()[-1], level["light"])
            self.check_row(row[2:], [level["cutCount"], level["artistCount"], level["picks"], level["unfilled"], float(level["meanPlays"]),
                                     len(level["neverPlayed"]), len(level["underHalf"]), level["rulesBroken"],
                                     level["artistSepMins"], level["attainableArtistMins"], level["titleSepMins"],
                                     level["attainableTitleMins"]])
            if level["light"] != "green":
                self.check_level(level, tables)
        self.assertEqual(list(tables), [])
        self.assertEqual({name for level in figures["levels"] for cut in level["cuts"] for name in [(cut["artist"], cut["title"])]},
                         set(NAMES))
        self.assertEqual(corner_of(self.folder / "light.png"), ((1000, 1600), LIGHT))
        self.assertEqual(corner_of(self.folder / "dark.png"), ((1000, 1600), DARK))


if __name__ == "__main__":
    unittest.main()
