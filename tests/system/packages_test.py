# SPDX-License-Identifier: MIT
"""The packages: what is in them, and the setup program at work in a Windows of its own.

RAVLO_TREE names the source tree; `./package --out build/dist` has made the packages.
"""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import time
import unittest
import zipfile

import pe

TREE = pathlib.Path(os.environ["RAVLO_TREE"])
DIST = TREE / "build/dist"
VERSION = re.search(r"project\(ravlo VERSION ([\d.]+)", (TREE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
NAME = f"Ravlo-{VERSION}"
BUILDS = (TREE / "build/windows-x64", TREE / "build/windows-x86")
WINDOWS = TREE / "build/wine-setup"
DRIVE = WINDOWS / "drive_c"
INSTALLED = DRIVE / "Program Files/Ravlo"
SCRIPTS = "Z:" + str(TREE / "samples/scripts").replace("/", "\\") + "\\"
IDENTIFIER = re.compile(r"uuid\(([0-9a-f-]{36})\)")


def content_of(package):
    with zipfile.ZipFile(DIST / f"{NAME}-{package}.zip") as archive:
        return {name.removeprefix(f"{NAME}-{package}/"): archive.read(name) for name in archive.namelist()}


class Packages(unittest.TestCase):
    def test_every_package_is_there_with_its_checksum(self):
        lines = (DIST / "SHA256SUMS").read_text(encoding="ascii").splitlines()
        named = dict(reversed(line.split("  ")) for line in lines)
        self.assertEqual(sorted(named), sorted(f"{NAME}-{part}" for part in (
            "setup.exe", "win64.zip", "win32.zip", "sdk.zip", "debug.zip", "src.zip")))
        for name, checksum in named.items():
            self.assertEqual(hashlib.sha256((DIST / name).read_bytes()).hexdigest(), checksum, name)

    def test_setup_is_below_4_mb_and_runs_on_both_widths(self):
        setup = (DIST / f"{NAME}-setup.exe").read_bytes()
        self.assertLess(len(setup), 4_000_000)
        self.assertEqual((pe.Binary(setup).machine, pe.Binary(setup).property("ProductVersion")), (pe.X86, VERSION))

    def test_a_zip_has_all_that_runs_without_registration(self):
        for package, machine in (("win64", pe.X64), ("win32", pe.X86)):
            files = content_of(package)
            for name in ("RavloSched.dll", "RavloBase.dll", "RavloHost.exe"):
                self.assertEqual(pe.Binary(files[name]).machine, machine, name)
            for name in ("RavloSched.manifest", "RavloBase.manifest", "RavloTypes.manifest", "RavloScheduler.tlb",
                         "RavloBase.tlb", "KorvaCollection.tlb", "manual.html", "samples/library.csv",
                         "README.txt"):
                self.assertIn(name, files)

    def test_the_licence_of_everything_linked_in_is_there(self):
        for package in ("win64", "win32"):
            texts = {name.removeprefix("licences/"): text for name, text in content_of(package).items()
                     if name.startswith("licences/")}
            for name, words in (("Ravlo.txt", b"MIT"), ("SQLite.txt", b"public domain"), ("CLI11.txt", b"Redistribution"),
                                ("libcsv.txt", b"LESSER GENERAL PUBLIC LICENSE"),
                                ("GCC runtime.txt", b"RUNTIME LIBRARY EXCEPTION"),
                                ("mingw-w64 runtime.txt", b"mingw-w64")):
                self.assertIn(words, texts[name], name)

    def test_the_kit_has_what_each_language_imports(self):
        files = content_of("sdk")
        for name in ("RavloScheduler", "RavloBase", "KorvaCollection"):
            for file in (f"idl/{name}.idl", f"include/{name}.h", f"include/{name}_i.c", f"typelib/x64/{name}.tlb",
                         f"typelib/x86/{name}.tlb"):
                self.assertIn(file, files)
        for file in ("IMPORT.md", "docs/guide-host-developer.md", "samples/scripts/populate.vbs", "host/client/RunDay.cpp"):
            self.assertIn(file, files)
        self.assertIn(f'helpstring("Ravlo scheduler {VERSION}")'.encode(), files["idl/RavloScheduler.idl"])

    def test_nothing_names_the_folder_of_the_build(self):
        for package in ("win64", "win32", "sdk", "debug"):
            for name, content in content_of(package).items():
                self.assertNotIn(f"{TREE}/build/".encode(), content, f"{package}: {name}")

    def test_the_source_includes_that_of_what_is_linked_in(self):
        files = content_of("src")
        for file in ("package", "CMakeLists.txt", "build/third_party/libcsv/libcsv.c", "build/third_party/sqlite3/sqlite3.c"):
            self.assertIn(file, files)

    @unittest.skipUnless(os.environ.get("RAVLO_LONG"), "links everything again")
    def test_building_again_gives_the_same_bytes(self):
        for build in BUILDS:
            for file in [*build.glob("typelibs/*.tlb"), *build.glob("bin/Ravlo*")]:
                file.unlink()
            subprocess.run(["cmake", build], check=True, capture_output=True)  # the manifests
        again = TREE / "build/dist-again"
        subprocess.run([TREE / "package", "--out", again], check=True, stdout=subprocess.DEVNULL)
        sums = [(folder / "SHA256SUMS").read_text(encoding="ascii") for folder in (DIST, again)]
        shutil.rmtree(again)
        self.assertEqual(*sums)


class Setup(unittest.TestCase):
    """The setup program in a fresh Windows: the one that ships where 32-bit programs run, else the same as a 64-bit one."""
    maxDiff = 6000
    MARKS = re.compile("|".join(["ravlo", "korva", *(guid for file in (TREE / "comkit").glob("*.idl")
                                                     for guid in IDENTIFIER.findall(file.read_text(encoding="utf-8")))]), re.I)

    @classmethod
    def setUpClass(cls):
        cls.environment = dict(os.environ, WINEPREFIX=str(WINDOWS))
        cls.stop()
        shutil.rmtree(WINDOWS, ignore_errors=True)
        cls.run_program("cmd", "/c", "exit")
        cls.both = cls.run_program(r"C:\windows\syswow64\cmd.exe", "/c", "exit")[0] == 0
        if cls.both:
            cls.setup = DIST / f"{NAME}-setup.exe"
        else:
            folder = TREE / "build/dist-setup64"
            subprocess.run([sys.executable, TREE / "packaging/pack.py", "--setup64", *BUILDS, folder], check=True)
            cls.setup = folder / f"{NAME}-setup64.exe"

    @classmethod
    def tearDownClass(cls):
        cls.stop()
        shutil.rmtree(WINDOWS, ignore_errors=True)

    @classmethod
    def stop(cls):
        if WINDOWS.exists():
            subprocess.run(["wineserver", "-k"], env=cls.environment, check=False, capture_output=True)

    @classmethod
    def run_program(cls, *arguments, folder=None):
        done = subprocess.run([TREE / "cmake/wine-run", *map(str, arguments)], env=cls.environment, capture_output=True,
                              check=False, cwd=folder)
        return done.returncode, done.stdout.decode("utf-8", "replace"), done.stderr.decode("utf-8", "replace")

    def same(self, before, after):
        """Compares keys or files; names the first differences."""
        if isinstance(before, dict):
            before, after = set(before.items()), set(after.items())
        self.assertEqual(sorted(before - after)[:8], sorted(after - before)[:8])

    def install(self, *arguments):
        return self.run_program(self.setup, "/S", *arguments)

    def installs(self, *arguments):
        self.assertEqual(self.install(*arguments), (0, "", ""))

    def uninstalls(self, *arguments, folder=INSTALLED):
        """The uninstaller ends at once and works on as a copy of itself."""
        self.assertEqual(self.run_program(folder / "uninstall.exe", "/S", *arguments)[0], 0)
        end = time.monotonic() + 120
        while folder.exists() and time.monotonic() < end:
            time.sleep(0.2)
        self.assertFalse(folder.exists())

    def registry(self):
        """Each key that names something of Ravlo, with its values; without Wine's own notes on menus."""
        self.run_program("reg", "export", "HKLM\\Software", r"C:\machine.reg", "/y")
        self.run_program("reg", "export", "HKCU", r"C:\user.reg", "/y")
        keys = {}
        for name in ("machine.reg", "user.reg"):
            text = (DRIVE / name).read_bytes().decode("utf-16")
            (DRIVE / name).unlink()
            for part in text.split("\r\n\r\n"):
                key, _, values = part.partition("\r\n")
                if self.MARKS.search(part) and "\\Software\\Wine\\" not in key:
                    keys[key] = values
        return keys

    def files(self):
        """Without the folder that belongs to the user, and what Windows deletes at its next start."""
        found = {str(file.relative_to(DRIVE)) for part in ("Program Files", "ProgramData", "users", "Ravlo")
                 for file in (DRIVE / part).rglob("*")}
        return {name for name in found if not name.endswith("AppData/Local/Programs") and "/Temp/" not in name}

    def registered(self, registry=None):
        return {key for key in registry or self.registry() if "\\Classes\\" in key}

    def script(self, name):
        folder = DRIVE / "scratch"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        status, out, error = self.run_program("cscript", "//nologo", SCRIPTS + name, r"C:\scratch")
        shutil.rmtree(folder)
        return (out.strip().splitlines() or [error])[-1].strip()

    def test_install_use_upgrade_and_remove(self):
        before, files = self.registry(), self.files()
        self.same(self.registered(before), set())

        self.installs()
        widths = ("x64", "x86") if self.both else ("x64",)
        for width in widths:
            for name in ("RavloSched.dll", "RavloBase.dll", "RavloHost.exe"):
                self.assertTrue((INSTALLED / width / name).exists(), name)
        self.assertGreater(len(self.registered()), 40)
        links = {file.name for file in DRIVE.rglob("Start Menu/Programs/Ravlo/*")}
        self.assertEqual(links, {"Library.lnk", "Categories.lnk", "Console.lnk", "Manual.lnk"})
        self.assertEqual(self.script("populate.vbs"), "ALL OK")

        # A station in the folder that the start menu opens.
        station = next(DRIVE.rglob("Ravlo Station"))
        host = INSTALLED / "x64/RavloHost.exe"
        self.assertEqual(self.run_program(host, "--version")[1].strip(), f"RavloHost {VERSION}")
        self.assertEqual(self.run_program(host, "import", "--db", "library.db", "--csv",
                                          INSTALLED / "samples/library.csv", folder=station)[0], 0)
        self.assertEqual(self.run_program(host, "day", "--db", "library.db", "--app", ".", "--hours", "1", folder=station)[0], 0)

        # An upgrade takes away what the earlier version had, also from another folder, and registers again.
        installed = self.registry()
        self.installs()
        self.same(installed, self.registry())
        other = DRIVE / "Ravlo"
        self.installs("/D=C:\\Ravlo")
        self.assertFalse(INSTALLED.exists())
        self.same(self.registered(installed), self.registered())
        self.assertEqual(self.script("populate.vbs"), "ALL OK")

        self.refuses_while_in_use(other)

        kept = {file: file.read_bytes() for file in station.rglob("*") if file.is_file()}
        self.assertIn(station / "library.db", kept)
        self.uninstalls(folder=other)
        self.assertEqual({file: file.read_bytes() for file in station.rglob("*") if file.is_file()}, kept)
        shutil.rmtree(station)
        self.same(files, self.files())
        self.same(before, self.registry())

    def refuses_while_in_use(self, folder):
        """While a host has the library open, nothing changes, and one sentence says why."""
        script = DRIVE / "hold.vbs"
        script.write_text('Set man = CreateObject("RavloScheduler.clsSchedMan")\r\n'
                          'Set files = CreateObject("Scripting.FileSystemObject")\r\n'
                          'files.CreateTextFile("C:\\held").Close\r\n'
                          'Do While files.FileExists("C:\\held")\r\nLoop\r\n', encoding="ascii")
        before, registry = self.files(), self.registry()
        with subprocess.Popen([TREE / "cmake/wine-run", "cscript", "//nologo", r"C:\hold.vbs"], env=self.environment,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as host:
            end = time.monotonic() + 60
            while not (DRIVE / "held").exists() and time.monotonic() < end:
                time.sleep(0.1)
            try:
                for arguments in ((self.setup, "/S"), (folder / "uninstall.exe", "/S", f"_?=C:\\Ravlo")):
                    status, out, error = self.run_program(*arguments)
                    self.assertEqual(status, 2)
                    self.assertRegex(out + error, r"^C:\\Ravlo\\x64\\RavloSched\.dll is in use or write-protected: close the "
                                                  r"programs that use Ravlo, then start this again\.\r?\n$")
                self.same(before, self.files())
                self.same(registry, self.registry())
            finally:
                (DRIVE / "held").unlink()
                host.wait(60)
        script.unlink()

    def test_an_installation_for_one_user_leaves_no_trace(self):
        before, files = self.registry(), self.files()
        self.installs("/CurrentUser")
        (folder,) = DRIVE.glob("users/*/AppData/Local/Programs/Ravlo")
        added = self.registered()
        self.assertTrue(any(key.startswith("[HKEY_CURRENT_USER\\Software\\Classes\\CLSID") for key in added), added)
        self.assertFalse(any(key.startswith("[HKEY_LOCAL_MACHINE\\Software\\Classes\\CLSID") for key in added), added)
        self.uninstalls("/CurrentUser", folder=folder)
        self.same(files, self.files())
        self.same(before, self.registry())


if __name__ == "__main__":
    unittest.main()
