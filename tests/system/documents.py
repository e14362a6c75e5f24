# SPDX-License-Identifier: MIT
"""documents.py TREE: refuses a document that names something that does not exist.

Checks each *.md of the tree: links and their headings; paths into the source tree, with or without an extension;
`CamelCase` names of the code. In the guide for host developers, the members, their parameters and their help strings,
against the interface definitions. In the architecture, the table of the layers, against the build files. Also refuses a
picture of docs/ that no page shows.
"""
import pathlib
import re
import sys

import layers

LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.*)$", re.M)
MEMBER = re.compile(r"\[id\(([^\]]*)\]\s+(?:HRESULT|void) (\w+)\(([^;]*)\);")
HELP = re.compile(r'helpstring\("([^"]*)"\)')
PARAMETER = re.compile(r"\[([^\]]*)\]\s*[\w ]+?[\s*]+(\w+)")
SOURCES = {".cpp", ".h", ".idl", ".in", ".vbs", ".pas"}
DOCUMENTED = re.compile(r"`(\w+)\(([^`]*)\)`")
ROW = re.compile(r"^\|(?: \d+ \|)? `(\w+)[^`]*` \| (.*) \|$", re.M)


def folders(tree):
    return [path for path in sorted(tree.iterdir())
            if path.is_dir() and not path.name.startswith(".") and path.name not in ("build", "station")]


def documents(tree):
    return [*sorted(tree.glob("*.md")),
            *(page for folder in folders(tree) for page in sorted(folder.rglob("*.md")))]


def anchors(path):
    """The names under which a page's headings can be linked to."""
    text = path.read_text(encoding="utf-8")
    return {re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in HEADING.findall(text)}


def check_links(page, text):
    for link in LINK.findall(text):
        if "://" in link:
            continue
        name, _, anchor = link.partition("#")
        target = page.parent / name if name else page
        if not target.exists():
            yield f"no file for the link {link}"
        elif anchor and anchor not in anchors(target):
            yield f"no heading for the link {link}"


def check_paths(tree, text):
    """Paths that begin with a folder of the tree."""
    names = "|".join(re.escape(folder.name) for folder in folders(tree))
    for match in re.finditer(rf"(?<![\w./\\-])(?:{names})/\w[\w./-]*", text):
        path = match.group().rstrip("./-")
        place = tree / path
        if not place.exists() and not any(place.parent.glob(place.name + ".*")):
            yield f"no file {path}"


def names(tree):
    """Every word of the sources."""
    sources = (path for folder in folders(tree) for path in folder.rglob("*.*") if path.suffix in SOURCES)
    return {word for source in sources for word in re.findall(r"\w+", source.read_text(encoding="utf-8"))}


def check_names(known, text):
    for name in re.findall(r"`(\w+(?:::\w+)*)`", text):
        for word in name.split("::"):
            if re.search("[a-z][A-Z]", word) and word not in known:
                yield f"no {word} in the code"


def members(tree):
    """Name -> the possible lists of parameters, an optional one in brackets. Without the collections, because a host's
    own tree has members of the same names."""
    found = {}
    for definition in ("RavloScheduler", "RavloBase"):
        for _, name, parameters in MEMBER.findall((tree / f"comkit/{definition}.idl").read_text(encoding="utf-8")):
            names = [f"[{parameter}]" if "optional" in how or "defaultvalue" in how else parameter
                     for how, parameter in PARAMETER.findall(parameters) if "retval" not in how]
            found.setdefault(name, []).append(names)
    return found


def check_members(tree, text):
    defined = members(tree)
    for name in defined:
        if not re.search(rf"\b{name}\b", text):
            yield f"{name} is not described"
    for name, parameters in DOCUMENTED.findall(text):
        given = [parameter.strip() for parameter in parameters.split(",") if parameter.strip()]
        if name in defined and given not in defined[name]:
            yield f"{name}({', '.join(given)}) has other parameters: {defined[name]}"


def helps(tree):
    """Name -> the help strings of the members of that name. Without what only For Each calls."""
    found = {}
    for definition in sorted((tree / "comkit").glob("*.idl")):
        for attributes, name, _ in MEMBER.findall(definition.read_text(encoding="utf-8")):
            if "restricted" not in attributes:
                found.setdefault(name, set()).update(HELP.findall(attributes) or [""])
    return found


def check_helps(tree, text):
    """The row of a member begins with its help string; more may follow as sentences of their own."""
    defined = helps(tree)
    rows = [(name, said) for name, said in ROW.findall(text) if name in defined]
    for name, wanted in defined.items():
        for help_string in sorted(wanted):
            if not help_string:
                yield f"{name} has no help string"
            elif not any(name == row and f"{said}. ".startswith(help_string + ". ") for row, said in rows):
                yield f"{name} has no row that begins with its help string: {help_string}"
    for name, said in rows:
        if not any(f"{said}. ".startswith(help_string + ". ") for help_string in defined[name]):
            yield f"the row of {name} begins with no help string: {said}"


def check_layers(tree, text):
    """The rows "| `folder`, ... | what it does | `folder`, ... |"."""
    named = layers.named_folders(tree)
    described = {}
    for line in text.splitlines():
        cells = line.split("|")
        if len(cells) == 5 and set(re.findall(r"`([^`]*)`", cells[1])) & named.keys():
            for folder in re.findall(r"`([^`]*)`", cells[1]):
                described[folder] = set(re.findall(r"`([^`]*)`", cells[3]))
    for folder in sorted(named.keys() | described.keys()):
        if described.get(folder) != named.get(folder):
            yield f"{folder} may include from {sorted(named.get(folder, ()))}"


def check_pictures(tree, pages):
    shown = {(page.parent / link).resolve() for page in pages for link in LINK.findall(page.read_text(encoding="utf-8"))}
    for picture in sorted((tree / "docs").rglob("*.png")):
        if picture.resolve() not in shown:
            yield f"{picture.relative_to(tree)}: no page shows it"


def check(tree):
    """The faults, one line each; and the number of pages looked at."""
    pages, known = documents(tree), names(tree)
    faults = [*check_pictures(tree, pages)]
    for page in pages:
        text = page.read_text(encoding="utf-8")
        found = [*check_links(page, text), *check_paths(tree, text), *check_names(known, text)]
        if page.name == "guide-host-developer.md":
            found += [*check_members(tree, text), *check_helps(tree, text)]
        if page.name == "ARCHITECTURE.md":
            found += check_layers(tree, text)
        faults += [f"{page.relative_to(tree)}: {fault}" for fault in found]
    return faults, len(pages)


if __name__ == "__main__":
    sys.exit(layers.main(check, "pages"))
