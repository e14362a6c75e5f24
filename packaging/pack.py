# SPDX-License-Identifier: MIT
"""pack.py X64 X86 OUT: makes the packages from two build folders. The same tree gives the same bytes each time.

pack.py --setup64 X64 X86 OUT makes only the setup program, as a 64-bit program, for a system that runs no others.
"""
import hashlib
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import zipfile

import art

TREE = pathlib.Path(__file__).resolve().parent.parent
VERSION = re.search(r"project\(ravlo VERSION ([\d.]+)", (TREE / "CMakeLists.txt").read_text(encoding="utf-8"))[1]
PROGRAMS = ("RavloSched.dll", "RavloBase.dll", "RavloHost.exe")
MANIFESTS = ("RavloSched.manifest", "RavloBase.manifest", "RavloTypes.manifest")
LIBRARIES = ("RavloScheduler", "RavloBase", "KorvaCollection")
WIDTHS = ("x64", "x86")
DOC = pathlib.Path("/usr/share/doc")
# What is linked into the programs or is part of the setup program: name of the file, and the texts in it.
LICENCES = {
    "Ravlo.txt": (TREE / "LICENSE",),
    "SQLite.txt": (TREE / "packaging/sqlite.txt",),
    "libcsv.txt": (TREE / "build/third_party/libcsv/COPYING.LESSER",),
    "TagLib.txt": (TREE / "build/third_party/taglib/COPYING.MPL",),
    "CLI11.txt": (DOC / "libcli11-dev/copyright",),
    "GCC runtime.txt": (DOC / "gcc-mingw-w64-base/copyright", pathlib.Path("/usr/share/common-licenses/GPL-3")),
    "mingw-w64 runtime.txt": (DOC / "mingw-w64-common/copyright",),
    "NSIS, in the setup program only.txt": (DOC / "nsis-common/copyright",),
}


def commit_time():
    """Seconds since 1970: SOURCE_DATE_EPOCH, else the last commit's, else those of a fixed day."""
    if "SOURCE_DATE_EPOCH" in os.environ:
        return int(os.environ["SOURCE_DATE_EPOCH"])
    done = subprocess.run(["git", "log", "-1", "--format=%ct"], cwd=TREE, capture_output=True, check=False)
    return int(done.stdout) if done.returncode == 0 else 1577836800


def windows_text(file):
    return file.read_bytes().replace(b"\r\n", b"\n").replace(b"\n", b"\r\n")


def tracked(*folders):
    """Path -> content of the files of the source tree."""
    listed = subprocess.run(["git", "ls-files", "-z", *folders], cwd=TREE, capture_output=True, check=True).stdout
    return {name: (TREE / name).read_bytes() for name in sorted(listed.decode("utf-8").split("\0")) if name}


def manual():
    """The documents as one page."""
    with tempfile.TemporaryDirectory() as folder:
        page = pathlib.Path(folder) / "manual.html"
        subprocess.run([TREE / "cmake/manual", page], check=True, stdout=subprocess.DEVNULL)
        return page.read_bytes()


def common_files():
    """What every package for users contains: path -> content."""
    files = {"licences/" + name: b"\r\n\r\n".join(windows_text(text) for text in texts)
             for name, texts in LICENCES.items()}
    files["manual.html"] = manual()
    files["README.txt"] = windows_text(TREE / "packaging/README.txt")
    return files | tracked("samples")


def program_files(build):
    """What one width needs to run, registered or not."""
    files = {name: (build / "bin" / name).read_bytes() for name in (*PROGRAMS, *MANIFESTS)}
    return files | {f"{name}.tlb": (build / "typelibs" / f"{name}.tlb").read_bytes() for name in LIBRARIES}


def kit_files(builds):
    """What a host developer needs, in any language."""
    files = tracked("samples", "host/client")
    files |= {"docs/" + page: (TREE / "docs" / page).read_bytes()
              for page in ("guide-host-developer.md", "guide-host-rotation.md")}
    files |= {"IMPORT.md": (TREE / "packaging/IMPORT.md").read_bytes(), "manual.html": manual(),
              "licences/Ravlo.txt": windows_text(TREE / "LICENSE")}
    for name in LIBRARIES:
        files["idl/" + name + ".idl"] = (builds["x64"] / "typelibs" / (name + ".idl")).read_bytes()
        for ending in (".h", "_i.c"):
            files["include/" + name + ending] = (builds["x64"] / "typelibs" / (name + ending)).read_bytes()
    for width, build in builds.items():
        files |= {f"typelib/{width}/{name}.tlb": (build / "typelibs" / f"{name}.tlb").read_bytes() for name in LIBRARIES}
        files |= {f"manifest/{width}/{name}": (build / "bin" / name).read_bytes() for name in MANIFESTS}
    return files


def source_files():
    """This source tree with the third-party sources where cmake/setup would put them."""
    third = TREE / "build/third_party"
    fetched = [file for folder in ("libcsv", "sqlite3", "taglib") for file in sorted((third / folder).rglob("*"))
               if file.is_file()]
    return tracked() | {str(file.relative_to(TREE)): file.read_bytes() for file in fetched}


def write_zip(file, files, seconds):
    """In one folder named as the file; sorted, and all of one time."""
    moment = time.gmtime(max(seconds, 315619200))[:6]  # a ZIP begins in 1980
    with zipfile.ZipFile(file, "w") as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(f"{file.stem}/{name}", moment)
            entry.create_system = 3
            executable = files[name].startswith(b"#!")
            entry.external_attr = (0o100755 if executable else 0o100644) << 16
            archive.writestr(entry, files[name], zipfile.ZIP_DEFLATED, 9)


def write_tree(folder, files, seconds):
    shutil.rmtree(folder, ignore_errors=True)
    for name, content in files.items():
        file = folder / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
        os.utime(file, (seconds, seconds))


def write_file_list(file, parts):
    """The macros of the setup script: one that installs each part, and RemoveFiles."""
    lines = []
    for part, names in parts.items():
        lines.append(f"!macro Install{part}")
        for name in sorted(names, key=lambda name: (str(pathlib.PurePath(name).parent), name)):
            folder = str(pathlib.PureWindowsPath(name).parent)
            lines.append('  SetOutPath "$INSTDIR%s"' % ("" if folder == "." else "\\" + folder))
            lines.append(f'  File "${{STAGE}}/{name}"')
        lines.append("!macroend")
    every = sorted(name for names in parts.values() for name in names)
    folders = {parent for name in every for parent in pathlib.PureWindowsPath(name).parents if str(parent) != "."}
    lines.append("!macro RemoveFiles")
    lines += [f'  Delete "$INSTDIR\\{pathlib.PureWindowsPath(name)}"' for name in every]
    lines += [f'  RMDir "$INSTDIR\\{folder}"' for folder in sorted(map(str, folders), reverse=True)]
    lines.append("!macroend")
    file.write_text("\n".join(lines) + "\n", encoding="utf-8")


def write_setup(file, builds, work, seconds, target=None):
    work.mkdir(parents=True, exist_ok=True)
    art.write(work)
    for picture in work.glob("*.*"):
        os.utime(picture, (seconds, seconds))  # the setup program contains the time of each file
    common = common_files() | {"Ravlo.ico": (work / "Ravlo.ico").read_bytes(),
                               "console.cmd": windows_text(TREE / "packaging/console.cmd")}
    parts = {"Common": common}
    for width, build in builds.items():
        parts[width.upper()] = {f"{width}/{name}": content for name, content in program_files(build).items()}
    write_tree(work / "stage", {name: content for files in parts.values() for name, content in files.items()}, seconds)
    write_file_list(work / "files.nsh", parts)
    defines = {"VERSION": VERSION, "OUTPUT": file, "STAGE": work / "stage", "FILES": work / "files.nsh", "ART": work}
    if target:
        defines["TARGET"] = target
    done = subprocess.run(["makensis", "-V2", "-WX", "-NOCD", *(f"-D{key}={value}" for key, value in defines.items()),
                           str(TREE / "packaging/Ravlo.nsi")], capture_output=True, text=True, check=False,
                          env=dict(os.environ, SOURCE_DATE_EPOCH=str(seconds)))
    if done.returncode:
        sys.exit(f"makensis:\n{done.stdout}{done.stderr}")


def main(arguments):
    only_setup64 = arguments[:1] == ["--setup64"]
    x64, x86, out = (pathlib.Path(argument).resolve() for argument in arguments[1 if only_setup64 else 0:])
    builds = dict(zip(WIDTHS, (x64, x86)))
    seconds = commit_time()
    out.mkdir(parents=True, exist_ok=True)
    name = f"Ravlo-{VERSION}"
    if only_setup64:
        write_setup(out / f"{name}-setup64.exe", builds, out / "work", seconds, "amd64-unicode")
        return
    for file in out.glob("*"):
        if file.is_file():
            file.unlink()
    write_setup(out / f"{name}-setup.exe", builds, TREE / "build/package", seconds)
    for width, build in builds.items():
        write_zip(out / f"{name}-win{width.replace('x64', '64').replace('x86', '32')}.zip",
                  common_files() | program_files(build), seconds)
    write_zip(out / f"{name}-sdk.zip", kit_files(builds), seconds)
    write_zip(out / f"{name}-debug.zip", {f"{width}/{program}.debug": (build / "bin" / f"{program}.debug").read_bytes()
                                          for width, build in builds.items() for program in PROGRAMS}, seconds)
    write_zip(out / f"{name}-src.zip", source_files(), seconds)
    made = sorted(out.glob("Ravlo-*"))
    (out / "SHA256SUMS").write_text("".join(f"{hashlib.sha256(file.read_bytes()).hexdigest()}  {file.name}\n"
                                            for file in made), encoding="ascii")
    for file in made:
        print(f"{file.stat().st_size:>10,}  {file.name}")


if __name__ == "__main__":
    main(sys.argv[1:])
