# SPDX-License-Identifier: MIT
"""The layer check finds includes that point upward and misplaced Windows headers."""
import pathlib
import tempfile
import unittest

import layers

BUILD = """ravlo_layer(ports FOLDER ports)
ravlo_layer(model    FOLDER model DEPENDS ports LIBRARIES libcsv)
ravlo_layer(rotation FOLDER rotation DEPENDS model)
ravlo_layer(windows_port FOLDER platform/windows DEPENDS ports WINDOWS_ONLY)
"""


class Layers(unittest.TestCase):
    def faults(self, **sources):
        with tempfile.TemporaryDirectory() as folder:
            tree = pathlib.Path(folder)
            (tree / "CMakeLists.txt").write_text(BUILD, encoding="utf-8")
            for name in ("ports", "model", "rotation", "platform/windows"):
                (tree / name).mkdir(parents=True)
            for name, text in sources.items():
                (tree / name.replace("__", "/")).with_suffix(".cpp").write_text(text, encoding="utf-8")
            return layers.check(tree)[0]

    def test_an_include_may_point_down_or_sideways(self):
        self.assertEqual(self.faults(rotation__a='#include "model/m.h"\n#include "ports/p.h"\n#include "rotation/r.h"\n'), [])

    def test_an_include_that_points_upward_is_refused(self):
        self.assertEqual(self.faults(model__a='\n#include "rotation/r.h"\n'),
                         ['model/a.cpp:2: model may not include "rotation/r.h"'])

    def test_an_include_without_its_folder_is_refused(self):
        self.assertEqual(len(self.faults(model__a='#include "m.h"\n')), 1)

    def test_the_windows_headers_stay_in_their_folders(self):
        self.assertEqual(self.faults(platform__windows__a="#include <windows.h>\n"), [])
        self.assertEqual(self.faults(model__a="# include <Windows.h>\n"),
                         ["model/a.cpp:1: <Windows.h> has no place in model"])

    def test_only_the_hosts_client_may_use_the_windows_headers(self):
        self.assertTrue(layers.may_use_windows("host/client"))
        self.assertFalse(layers.may_use_windows("host/day"))
        self.assertTrue(layers.may_use_windows("ui/library/windows"))
        self.assertFalse(layers.may_use_windows("ui/library"))


if __name__ == "__main__":
    unittest.main()
