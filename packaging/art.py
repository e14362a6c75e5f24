# SPDX-License-Identifier: MIT
"""Draws the icon and the pictures of the setup program, so that the tree needs no binary files."""
import struct
import zlib

BLUE, DEEP, WHITE, PALE = (38, 110, 190), (18, 50, 96), (255, 255, 255), (150, 196, 240)


def rounded(x, y, left, top, right, bottom, radius):
    """Whether the point is in the rectangle with round corners."""
    dx = max(left + radius - x, x - (right - radius), 0)
    dy = max(top + radius - y, y - (bottom - radius), 0)
    return left <= x <= right and top <= y <= bottom and dx * dx + dy * dy <= radius * radius


def mark(x, y):
    """The mark in a unit square: cuts in rotation order, the head about to play. None: not part of it."""
    if not rounded(x, y, 0.03, 0.03, 0.97, 0.97, 0.2):
        return None
    if 0.22 <= x <= 0.42 and abs(y - 0.30) <= (0.42 - x) * 0.62:  # a triangle that points right
        return WHITE
    if rounded(x, y, 0.49, 0.24, 0.80, 0.36, 0.06):
        return WHITE
    for row, length in ((0.50, 0.80), (0.70, 0.62)):
        if rounded(x, y, 0.22, row - 0.055, length, row + 0.055, 0.055):
            return PALE
    return tuple(round(a + (b - a) * y) for a, b in zip(BLUE, DEEP))


def draw(width, height, paint):
    """Rows of (red, green, blue, alpha); paint(x, y) gives a colour or None, in pixels."""
    samples = 4 if height <= 64 else 2  # a side, for smooth edges
    steps = [(2 * i + 1) / (2 * samples) for i in range(samples)]
    rows = []
    for y in range(height):
        row = []
        for x in range(width):
            seen = [colour for sy in steps for sx in steps if (colour := paint(x + sx, y + sy))]
            mean = [round(sum(part) / len(seen)) for part in zip(*seen)] if seen else [0, 0, 0]
            row.append((*mean, round(255 * len(seen) / samples ** 2)))
        rows.append(row)
    return rows


def icon_rows(size):
    return draw(size, size, lambda x, y: mark(x / size, y / size))


def png(rows):
    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    lines = b"".join(b"\0" + bytes(value for pixel in row for value in pixel) for row in rows)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b"")


def bitmap_in_icon(rows):
    size = len(rows)
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    pixels = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    return header + pixels + bytes((size + 31) // 32 * 4 * size)


def icon(sizes=(16, 20, 24, 32, 40, 48, 64, 256)):
    """The bytes of an .ico file; the largest picture is a PNG, as Windows has it since Vista."""
    pictures = [(size, (png if size == 256 else bitmap_in_icon)(icon_rows(size))) for size in sizes]
    at = 6 + 16 * len(pictures)
    entries = b""
    for size, content in pictures:
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(content), at)
        at += len(content)
    return struct.pack("<HHH", 0, 1, len(pictures)) + entries + b"".join(content for _, content in pictures)


def bmp(width, height, paint):
    """A 24-bit .bmp; paint must give a colour everywhere."""
    padding = bytes(-3 * width % 4)
    rows = draw(width, height, paint)
    content = b"".join(b"".join(bytes((b, g, r)) for r, g, b, _ in row) + padding for row in reversed(rows))
    header = struct.pack("<2sIHHI", b"BM", 54 + len(content), 0, 0, 54)
    return header + struct.pack("<IiiHHIIiiII", 40, width, height, 1, 24, 0, len(content), 3780, 3780, 0, 0) + content


def side(width=328, height=628):
    """The picture next to the first and the last page, twice as large as at 100 %."""
    def paint(x, y):
        size = width * 0.5
        left, top = (width - size) / 2, height * 0.16
        colour = mark((x - left) / size, (y - top) / size)
        slope = y / height
        return colour or tuple(round(a + (b - a) * slope) for a, b in zip((232, 241, 251), (170, 202, 236)))
    return bmp(width, height, paint)


def head(width=300, height=114):
    """The picture in the head of the other pages, twice as large as at 100 %."""
    size = height * 0.72
    return bmp(width, height, lambda x, y: mark((x - width + size * 1.15) / size, (y - (height - size) / 2) / size) or WHITE)


def write(folder):
    for name, content in (("Ravlo.ico", icon()), ("side.bmp", side()), ("head.bmp", head())):
        (folder / name).write_bytes(content)
    return folder
