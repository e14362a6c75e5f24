#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes CaseTable.inc, the upper-case table of the Basic Multilingual Plane, next to this script.

One-to-one mappings only. A letter whose upper case takes several characters keeps its one-character title case if it
has one, else itself. Nothing outside ASCII maps into ASCII, or two file names could become one. Each row is
{first, last, step, upper minus lower} and covers every step-th character from first to last.
"""
import pathlib
import sys
import unicodedata


def simple_upper(code):
    for mapped in (chr(code).upper(), chr(code).title()):
        if len(mapped) == 1:
            upper = ord(mapped)
            return code if upper > 0xFFFF or (upper < 0x80 <= code) else upper
    return code


def table():
    upper = {code: simple_upper(code) for code in range(0x80, 0x10000) if not 0xD800 <= code < 0xE000}
    for code, target in upper.items():
        assert upper.get(target, target) == target, f"U+{code:04X}: folding twice must be folding once"
    return [(code, target - code) for code, target in upper.items() if target != code]


def rows(mappings):
    found = []
    for code, delta in mappings:
        if found:
            first, last, step, same = found[-1]
            gap = code - last
            if same == delta and gap <= 2 and (first == last or gap == step):
                found[-1] = (first, code, gap, same)
                continue
        found.append((code, code, 1, delta))
    return found


def main():
    lines = [
        "// SPDX-License-Identifier: MIT",
        f"// Made by make-case-table.py from Unicode {unicodedata.unidata_version}. Not to be edited by hand.",
    ]
    lines += [f"{{0x{first:04X}, 0x{last:04X}, {step}, {delta}}}," for first, last, step, delta in rows(table())]
    target = pathlib.Path(__file__).with_name("CaseTable.inc")
    target.write_text("\n".join(lines) + "\n", encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
