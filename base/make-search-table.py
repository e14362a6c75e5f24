#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes SearchTable.inc, the folding of the Basic Multilingual Plane for searching, next to this script.

The data is Python's copy of the Unicode Character Database: compatibility decompositions, case folding, categories and
names. A character becomes its decomposition in lower case, without accents and other marks that people leave out when
they type; a letter that the names call "O WITH STROKE" and the like, which has no decomposition, becomes the plain
letter. Marks that make another letter of a script (Japanese voicing, Indian vowels) are kept. Precomposed Hangul, and
forms that hardly occur in names (squared and enclosed signs, compatibility ideographs, Arabic presentation forms), stay
as they are.

A range is {first, last, step, delta}: every step-th character from first to last becomes itself plus delta. A text is
{what, from}: each character of from becomes what; an empty what drops it.
"""
import pathlib
import re
import sys
import unicodedata

# Marks that people leave out: accents of Latin, Greek and Cyrillic, Hebrew points, Arabic vowel signs, and what only
# tells how a text is shown.
DROPPED = [
    (0x00AD, 0x00AD), (0x0300, 0x036F), (0x0483, 0x0489), (0x0591, 0x05BD), (0x05BF, 0x05BF), (0x05C1, 0x05C2),
    (0x05C4, 0x05C5), (0x05C7, 0x05C7), (0x0610, 0x061A), (0x0640, 0x0640), (0x064B, 0x065F), (0x0670, 0x0670),
    (0x06D6, 0x06DC), (0x06DF, 0x06E4), (0x06E7, 0x06E8), (0x06EA, 0x06ED), (0x1AB0, 0x1ACE), (0x1DC0, 0x1DFF),
    (0x200B, 0x200F), (0x202A, 0x202E), (0x2060, 0x2064), (0x2066, 0x2069), (0x20D0, 0x20F0), (0xFE00, 0xFE0F),
    (0xFE20, 0xFE2F), (0xFEFF, 0xFEFF),
]

KEPT = [
    (0x2460, 0x24FF), (0x2F00, 0x2FDF), (0x3200, 0x33FF), (0xA69E, 0xA69F), (0xAC00, 0xD7A3), (0xD800, 0xDFFF),
    (0xF900, 0xFAFF), (0xFB50, 0xFDFF), (0xFE70, 0xFEFC),
]
PER_LINE = 16
SHORTEST_RANGE = 3  # shorter ones take more room than texts

# What has no decomposition, and is typed with the keys of an ordinary keyboard.
TYPED = {
    "Æ": "ae", "æ": "ae", "Ǽ": "ae", "ǽ": "ae", "Ǣ": "ae", "ǣ": "ae", "Œ": "oe", "œ": "oe", "Þ": "th", "þ": "th",
    "Ð": "d", "ð": "d", "ı": "i", "ĸ": "k", "Ŋ": "n", "ŋ": "n", "ẞ": "ss", "Ə": "e", "ə": "e",
    "‘": "'", "’": "'", "‚": "'", "‛": "'", "′": "'", "‹": "'", "›": "'", "´": "'", "ʻ": "'", "ʼ": "'", "ʹ": "'",
    "ˈ": "'", "“": '"', "”": '"', "„": '"', "‟": '"', "″": '"', "«": '"', "»": '"',
    "‐": "-", "‑": "-", "‒": "-", "–": "-", "—": "-", "―": "-", "−": "-", "⁄": "/", "∕": "/",
    "×": "x", "•": ".", "·": ".",
}
WITH = re.compile(r"^LATIN (?:CAPITAL|SMALL) LETTER ([A-Z]) WITH [A-Z ]*(?:STROKE|HOOK|BAR|TAIL|TOPBAR|MIDDLE TILDE|SWASH TAIL|CURL|NOTCH)[A-Z ]*$")


def within(code, ranges):
    return any(first <= code <= last for first, last in ranges)


def folded_once(text):
    bare = "".join(char for char in unicodedata.normalize("NFKD", text) if not within(ord(char), DROPPED))
    out = ""
    for char in unicodedata.normalize("NFKD", bare.casefold()):
        plain = WITH.match(unicodedata.name(char, ""))
        if char in TYPED:
            out += TYPED[char]
        elif plain:
            out += plain.group(1).lower()
        elif unicodedata.category(char) in ("Zs", "Zl", "Zp"):
            out += " "
        elif not within(ord(char), DROPPED):
            out += char
    return out


def folded(char):
    text = TYPED.get(char, char)
    while (again := folded_once(text)) != text:
        text = again
    return text


def mappings():
    found = {}
    for code in range(0xA0, 0x10000):
        if within(code, KEPT):
            continue
        text = folded(chr(code))
        assert all(ord(char) <= 0xFFFF for char in text), f"U+{code:04X}: leaves the basic plane"
        if text != chr(code):
            found[code] = text
    return found


# The ranges, and what they do not cover.
def split(found):
    ranges = []
    for code, text in found.items():
        if len(text) != 1 or text.isascii():
            continue
        delta = ord(text) - code
        if ranges:
            first, last, step, same = ranges[-1]
            gap = code - last
            if same == delta and gap <= 2 and (first == last or gap == step):
                ranges[-1] = (first, code, gap, same)
                continue
        ranges.append((code, code, 1, delta))
    ranges = [row for row in ranges if (row[1] - row[0]) // row[2] + 1 >= SHORTEST_RANGE]
    covered = {code for first, last, step, _ in ranges for code in range(first, last + 1, step)}
    texts = {}
    for code, text in found.items():
        if code not in covered:
            texts.setdefault(text, []).append(code)
    return ranges, texts


def escaped(code):
    if code >= 0x80:
        return f"\\u{code:04X}"
    return "\\" + chr(code) if chr(code) in '"\\' else chr(code)


def quoted(text):
    codes = [escaped(ord(char)) for char in text]
    parts = ["".join(codes[at:at + PER_LINE]) for at in range(0, len(codes), PER_LINE)] or [""]
    return "\n    ".join(f'u"{part}"' for part in parts)


def main():
    ranges, texts = split(mappings())
    lines = [
        "// SPDX-License-Identifier: MIT",
        f"// Made by make-search-table.py from Unicode {unicodedata.unidata_version}. Not to be edited by hand.",
        "constexpr SearchRange aRanges[] = {",
    ]
    lines += [f"{{0x{first:04X}, 0x{last:04X}, {step}, {delta}}}," for first, last, step, delta in ranges]
    lines += ["};", "constexpr SearchText aTexts[] = {"]
    lines += [f"{{{quoted(what)}, {quoted(map(chr, codes))}}}," for what, codes in sorted(texts.items())]
    lines += ["};"]
    target = pathlib.Path(__file__).with_name("SearchTable.inc")
    target.write_text("\n".join(lines) + "\n", encoding="ascii")
    return 0


if __name__ == "__main__":
    sys.exit(main())
