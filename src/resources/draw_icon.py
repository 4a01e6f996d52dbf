#!/usr/bin/env python3
"""Draws korvane.ico: four streams that run together into one carrier, on a rounded tile."""

import struct
import sys
import zlib
from pathlib import Path

SIZES = (16, 20, 24, 32, 48, 64, 256)
TILE_TOP, TILE_BOTTOM = (38, 96, 164), (16, 44, 92)
STREAMS = ((0.24, (255, 196, 84)), (0.41, (120, 222, 170)),
           (0.59, (118, 200, 255)), (0.76, (255, 138, 122)))
CARRIER = (255, 255, 255)
MERGE_X, CARRIER_END = 0.60, 0.86


def smooth(t):
    t = min(max(t, 0.0), 1.0)
    return t * t * (3 - 2 * t)


def in_tile(x, y):
    radius, margin = 0.20, 0.02
    dx = max(abs(x - 0.5) - (0.5 - margin - radius), 0.0)
    dy = max(abs(y - 0.5) - (0.5 - margin - radius), 0.0)
    return dx * dx + dy * dy <= radius * radius


def colour_at(x, y, half_width):
    """The colour of one point of the unit square, or None outside the tile."""
    if not in_tile(x, y):
        return None
    if MERGE_X - 0.02 <= x <= CARRIER_END:
        point = max(0.0, (x - (CARRIER_END - 0.14)) / 0.14)
        half = 0.11 if point == 0.0 else 0.20 * (1.0 - point)
        if abs(y - 0.5) <= half:
            return CARRIER
    if 0.13 <= x < MERGE_X:
        bend = smooth((x - 0.24) / (MERGE_X - 0.24))
        for start, colour in STREAMS:
            target = 0.5 + (start - 0.5) * 0.28
            if abs(y - (start + (target - start) * bend)) <= half_width:
                return colour
    return tuple(a + (b - a) * y for a, b in zip(TILE_TOP, TILE_BOTTOM))


def draw(size):
    """Rows of (red, green, blue, alpha), top row first, each pixel averaged from a grid."""
    grid = 3 if size > 64 else 8
    half_width = 0.055 if size < 32 else 0.042
    rows = []
    for py in range(size):
        row = []
        for px in range(size):
            red = green = blue = hits = 0.0
            for sample in range(grid * grid):
                x = (px + (sample % grid + 0.5) / grid) / size
                y = (py + (sample // grid + 0.5) / grid) / size
                colour = colour_at(x, y, half_width)
                if colour is not None:
                    red, green, blue, hits = red + colour[0], green + colour[1], blue + colour[2], hits + 1
            scale = hits or 1
            row.append((round(red / scale), round(green / scale), round(blue / scale),
                        round(255 * hits / (grid * grid))))
        rows.append(row)
    return rows


def png(rows):
    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    size = len(rows)
    raw = b"".join(b"\0" + b"".join(bytes(pixel) for pixel in row) for row in rows)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def bitmap(rows):
    """A 32-bit icon bitmap: bottom row first, then the 1-bit mask that old readers want."""
    size = len(rows)
    header = struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, 0, 0, 0, 0, 0)
    colours = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask = b""
    for row in reversed(rows):
        bits = "".join("0" if pixel[3] >= 128 else "1" for pixel in row)
        bits = bits.ljust((size + 31) // 32 * 32, "0")
        mask += int(bits, 2).to_bytes(len(bits) // 8, "big")
    return header + colours + mask


def main():
    target = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).with_name("korvane.ico")
    images = [(size, png(draw(size)) if size == 256 else bitmap(draw(size))) for size in SIZES]
    offset = 6 + 16 * len(images)
    directory = struct.pack("<HHH", 0, 1, len(images))
    for size, data in images:
        directory += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    target.write_bytes(directory + b"".join(data for _, data in images))


if __name__ == "__main__":
    main()
