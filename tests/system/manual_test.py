# SPDX-License-Identifier: MIT
"""The manual has every page of docs/, all its links lead somewhere, and it needs no other file."""
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

TREE = pathlib.Path(__file__).resolve().parents[2]


def made():
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder) / "manual.html"
        subprocess.run([sys.executable, TREE / "cmake/manual", page], check=True)
        return page.read_text(encoding="utf-8")


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.text = made()

    def test_the_start_page_links_to_every_page_once(self):
        docs = TREE / "docs"
        links = re.findall(r"\]\(([^)\s]+)\)", (docs / "README.md").read_text(encoding="utf-8"))
        pages = [page.relative_to(docs).as_posix() for page in docs.rglob("*.md") if page != docs / "README.md"]
        self.assertEqual(sorted(links), sorted(pages))

    def test_every_link_leads_to_one_place_in_the_manual(self):
        names = re.findall(r' id="([^"]+)"', self.text)
        self.assertEqual(len(names), len(set(names)))
        links = re.findall(r'href="#([^"]*)"', self.text)
        self.assertGreater(len(links), 50)
        self.assertEqual([link for link in links if link not in names], [])

    def test_it_needs_no_other_file(self):
        sources = re.findall(r'src="([^"]{0,22})', self.text)
        self.assertGreater(len(sources), 10)
        self.assertEqual({source for source in sources}, {"data:image/png;base64,"})
        self.assertEqual(re.findall(r'href="(?!#|https?://)[^"]*"|<link|<script', self.text), [])


if __name__ == "__main__":
    unittest.main()
