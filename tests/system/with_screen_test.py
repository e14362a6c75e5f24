# SPDX-License-Identifier: MIT
"""Which program waits for which in cmake/with-screen, natively: with fakes of wine-run and Xvfb.

RAVLO_WITH_SCREEN names the script.
"""
import os
import pathlib
import shutil
import subprocess
import tempfile
import time
import unittest

WINE_RUN = """#!/bin/sh
echo "$*" >>"$LOG"
[ "$1" != hold ] || until [ -e "$GO" ]; do sleep 0.05; done
"""
XVFB = """#!/bin/sh
echo 77 >&3
exec sleep 60
"""


class WithScreen(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="ravlo-screen-"))
        self.addCleanup(shutil.rmtree, self.folder)
        for name, text in (("cmake/wine-run", WINE_RUN), ("bin/Xvfb", XVFB), ("bin/wineserver", "#!/bin/sh\n")):
            file = self.folder / name
            file.parent.mkdir(exist_ok=True)
            file.write_text(text, encoding="utf-8")
            file.chmod(0o755)
        shutil.copy(os.environ["RAVLO_WITH_SCREEN"], self.folder / "cmake")
        self.log = self.folder / "log"
        self.go = self.folder / "go"
        self.programs = []
        self.addCleanup(self.end)

    def end(self):
        self.go.touch()
        for program in self.programs:
            with program:
                pass
        for file in self.folder.rglob("with-screen.display"):
            subprocess.run(["kill", file.read_text(encoding="utf-8").split()[1]], check=False)

    def start(self, *arguments, display):
        environment = dict(os.environ, LOG=str(self.log), GO=str(self.go), PATH=f"{self.folder}/bin:{os.environ['PATH']}")
        environment.pop("WINEPREFIX", None)
        environment.pop("DISPLAY", None)
        if display:
            environment["DISPLAY"] = display
        program = subprocess.Popen([self.folder / "cmake" / "with-screen", *arguments], env=environment, text=True,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.programs.append(program)
        return program

    def wait_for(self, condition):
        end = time.monotonic() + 30
        while not condition():
            self.assertLess(time.monotonic(), end)
            time.sleep(0.02)

    def ran(self, line):
        return self.log.exists() and line in self.log.read_text(encoding="utf-8").splitlines()

    def test_before_a_display_nobody_waits_for_a_window(self):
        first = self.start("--here", "hold", "library", display=":5")
        self.wait_for(lambda: self.ran("hold library"))
        second = self.start("--here", "other", display=":5")
        self.assertEqual(second.communicate(timeout=30), ("", ""))
        self.assertTrue(self.ran("other"))
        self.assertIsNone(first.poll())
        self.go.touch()
        self.assertEqual(first.communicate(timeout=30), ("", ""))

    def test_without_a_display_the_second_says_whom_it_waits_for(self):
        first = self.start("--here", "hold", "library", display=None)
        self.wait_for(lambda: self.ran("hold library"))
        second = self.start("--here", "other", display=None)
        self.assertEqual(second.stderr.readline(), f"with-screen: waiting for hold library (process {first.pid}) to end\n")
        self.assertFalse(self.ran("other"))
        self.go.touch()
        self.assertEqual(second.communicate(timeout=30), ("", ""))
        self.assertTrue(self.ran("other"))
        first.communicate(timeout=30)

    def test_a_test_waits_without_a_word(self):
        first = self.start("hold", display=None)
        self.wait_for(lambda: self.ran("hold"))
        second = self.start("other", display=None)
        time.sleep(0.3)
        self.assertFalse(self.ran("other"))
        self.go.touch()
        self.assertEqual(second.communicate(timeout=30), ("", ""))
        first.communicate(timeout=30)


if __name__ == "__main__":
    unittest.main()
