# SPDX-License-Identifier: MIT
"""The headers and properties of the programs that ship. RAVLO_BIN: their folder; RAVLO_TREE: the source tree;
RAVLO_RELEASE: not empty when they are built as they ship."""
import os
import pathlib
import re
import unittest

import pe

FOLDER = pathlib.Path(os.environ["RAVLO_BIN"])
TREE = pathlib.Path(os.environ["RAVLO_TREE"])
VERSION = re.search(r"project\(ravlo VERSION ([\d.]+)", (TREE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
PROGRAMS = {"RavloSched.dll": "Ravlo scheduler", "RavloBase.dll": "Ravlo media database", "RavloHost.exe": "Ravlo playout host"}


def each():
    return {name: pe.Binary((FOLDER / name).read_bytes()) for name in PROGRAMS}


class Binaries(unittest.TestCase):
    def test_the_headers_name_windows_7(self):
        for name, binary in each().items():
            self.assertEqual((binary.system, binary.subsystem), ((6, 1), (6, 1)), name)

    def test_32_bit_programs_may_use_4_gb(self):
        for name, binary in each().items():
            self.assertTrue(binary.flags & pe.LARGE_ADDRESS_AWARE, name)

    def test_properties_show_the_version_of_the_build_files(self):
        for name, binary in each().items():
            shown = {key: binary.property(key) for key in ("FileVersion", "ProductVersion", "OriginalFilename", "FileDescription")}
            self.assertEqual(shown, {"FileVersion": VERSION, "ProductVersion": VERSION, "OriginalFilename": name,
                                     "FileDescription": PROGRAMS[name]})

    def test_no_binary_holds_a_time_or_a_path_of_the_build(self):
        for name, binary in each().items():
            self.assertEqual(binary.seconds, 0, name)
            self.assertNotIn(str(TREE).encode(), binary.content, name)
        for library in ("RavloScheduler", "RavloBase", "KorvaCollection"):
            content = (FOLDER.parent / "typelibs" / f"{library}.tlb").read_bytes()
            self.assertIn(b" at Thu Jan  1 00:00:00 1970", content, library)

    @unittest.skipUnless(os.environ.get("RAVLO_RELEASE"), "only what ships is stripped")
    def test_debug_information_is_next_to_the_stripped_program(self):
        for name, binary in each().items():
            long_names = [section for section in binary.sections if section.startswith(b"/")]
            self.assertEqual(binary.symbols, 0, name)
            # The link to the debug information and, in 32 bit, .eh_frame; debug information has six and more.
            self.assertIn(len(long_names), (1, 2), name)
            self.assertIn(f"{name}.debug\0".encode(), binary.content)
            self.assertGreater((FOLDER / f"{name}.debug").stat().st_size, len(binary.content) // 4)


if __name__ == "__main__":
    unittest.main()
