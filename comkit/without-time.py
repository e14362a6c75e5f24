# SPDX-License-Identifier: MIT
"""without-time.py FILE: takes the time at which it was compiled out of a type library, so that two builds are the same."""
import pathlib
import re
import sys

# The compiler's note: its name with the time as text, and, in the next record, the time in seconds.
NOTE = re.compile(rb"(Created by WIDL version [\d.]+ at ).{24}(\nW*\x13\x00).{4}", re.S)

file = pathlib.Path(sys.argv[1])
content, found = NOTE.subn(rb"\1Thu Jan  1 00:00:00 1970\2" + bytes(4), file.read_bytes())
if found != 1:
    sys.exit(f"{file}: the compiler's note with the time is not where it was")
file.write_bytes(content)
