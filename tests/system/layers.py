# SPDX-License-Identifier: MIT
"""layers.py TREE: refuses an include that points upward, and <windows.h> where it may not be.

The layers and what each may see are read from the build files (ravlo_layer and ravlo_com_server).
"""
import pathlib
import re
import sys

LAYER = re.compile(r"^\s*(ravlo_layer|ravlo_com_server)\(\s*(\w+)\s+FOLDER\s+([^\s)]+)([^)]*)\)", re.M)
INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
KEYWORDS = {"DEPENDS", "LIBRARIES", "TYPELIBS", "WINDOWS_ONLY"}
WINDOWS_FOLDERS = ("com", "comkit", "ravlobase/com", "platform/windows", "platform/disk", "host")  # and any folder named windows below ui
WINDOWS_HEADERS = {"windows.h", "ole2.h", "oleauto.h", "objbase.h", "commctrl.h"}
SOURCES = {".h", ".cpp", ".inc"}


def read_targets(tree):
    """Target -> its folder, and target -> the targets and libraries it names."""
    folder_of, depends = {}, {}
    for build_file in [tree / "CMakeLists.txt", *sorted(tree.glob("[a-z]*/**/CMakeLists.txt"))]:
        if build_file.relative_to(tree).parts[0] == "build":
            continue
        for kind, name, folder, rest in LAYER.findall(build_file.read_text(encoding="utf-8")):
            folder_of[name] = folder
            words, taking, wanted = rest.split(), None, ["comkit"] if kind == "ravlo_com_server" else []
            for word in words:
                if word in KEYWORDS:
                    taking = word
                elif taking in ("DEPENDS", "LIBRARIES"):
                    wanted.append(word)
            depends[name] = wanted
    return folder_of, depends


def named_folders(tree):
    """Folder -> the folders of the layers that its target names."""
    folder_of, depends = read_targets(tree)
    return {folder: {folder_of[other] for other in depends[name] if other in folder_of}
            for name, folder in folder_of.items()}


def read_layers(tree):
    """Folder -> the folders it may include from, its own included."""
    folder_of, depends = read_targets(tree)

    def reachable(name, seen):
        if name in folder_of and name not in seen:
            seen.add(name)
            for other in depends[name]:
                reachable(other, seen)
        return seen

    return {folder_of[name]: {folder_of[other] for other in reachable(name, set())} for name in folder_of}


def may_use_windows(folder):
    parts = folder.split("/")
    return (any(folder == allowed or folder.startswith(allowed + "/") for allowed in WINDOWS_FOLDERS)
            and not folder.startswith("host/day")) or (parts[0] == "ui" and parts[-1] == "windows")


def check(tree):
    """The faults, one line each; and the number of files looked at."""
    layers = read_layers(tree)
    faults, files = [], 0
    for folder, allowed in sorted(layers.items()):
        for source in sorted((tree / folder).glob("*")):
            if source.suffix not in SOURCES:
                continue
            files += 1
            for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                own, system = match.groups()
                where = f"{folder}/{source.name}:{number}"
                if system and system.lower() in WINDOWS_HEADERS and not may_use_windows(folder):
                    faults.append(f"{where}: <{system}> has no place in {folder}")
                if own and own.rpartition("/")[0] not in allowed:
                    faults.append(f"{where}: {folder} may not include \"{own}\"")
    return faults, files


def main(check_tree, looked_at):
    """Runs a check on the tree that the command line names; prints its faults. Returns the exit status."""
    faults, count = check_tree(pathlib.Path(sys.argv[1]))
    print(*faults, f"{count} {looked_at}, {len(faults)} faults", sep="\n")
    return 1 if faults or not count else 0


if __name__ == "__main__":
    sys.exit(main(check, "files"))
