# SPDX-License-Identifier: MIT
"""What the header of a Windows program or DLL says."""
import struct

X64, X86 = 0x8664, 0x14C
LARGE_ADDRESS_AWARE = 0x20


class Binary:
    """Versions are (major, minor) pairs; seconds: the time of linking, 0 when it is left out."""

    def __init__(self, content):
        self.content = content
        at = struct.unpack_from("<I", content, 60)[0]
        assert content[:2] == b"MZ" and content[at:at + 4] == b"PE\0\0"
        self.machine, count, self.seconds, _, self.symbols, size, self.flags = struct.unpack_from("<HHIIIHH", content, at + 4)
        header = at + 24
        self.system = struct.unpack_from("<HH", content, header + 40)
        self.subsystem = struct.unpack_from("<HH", content, header + 48)
        table = header + size
        self.sections = [content[table + 40 * i:table + 40 * i + 8].rstrip(b"\0") for i in range(count)]

    def property(self, name):
        """A text of the file properties; None when there is none."""
        key = (name + "\0").encode("utf-16-le")
        at = self.content.find(key)
        if at < 0:
            return None
        text = self.content[at + len(key):at + len(key) + 400].decode("utf-16-le", "replace").lstrip("\0")
        return text.split("\0")[0]
