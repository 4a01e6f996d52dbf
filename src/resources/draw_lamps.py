#!/usr/bin/env python3
"""Draws the lamps of the monitoring page as 24-bit bitmaps of 16 x 16 pixels, and of 48 x 48 to
make those for finer screens of.

They are told apart without seeing their colour: normal is a bright disc with a dark check mark,
alarm a dark square-edged sign with a white cross, the third a triangle with an exclamation mark.
Magenta is what the panel replaces by the ground that the lamp is on.
"""

import math
import struct
import sys
from pathlib import Path

SMALL, LARGE = 16, 48  # the shapes are drawn on a square of 16 by 16
GRID = 8
GROUND = (255, 0, 255)
BLEND = (236, 233, 228)  # what half-covered edge pixels are mixed with: near every dialog's ground


def distance_to_line(x, y, ax, ay, bx, by):
    t = ((x - ax) * (bx - ax) + (y - ay) * (by - ay)) / ((bx - ax) ** 2 + (by - ay) ** 2)
    t = min(max(t, 0.0), 1.0)
    return math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay))


def near_path(x, y, points, half_width):
    return any(distance_to_line(x, y, *a, *b) <= half_width for a, b in zip(points, points[1:]))


def red(x, y):
    """An octagon: dark red, with a white cross."""
    dx, dy = abs(x - 8), abs(y - 8)
    if max(dx, dy) > 7.5 or dx + dy > 10.6:
        return None
    if near_path(x, y, ((5, 5), (11, 11)), 1.15) or near_path(x, y, ((11, 5), (5, 11)), 1.15):
        return (255, 255, 255)
    return (120, 0, 0) if max(dx, dy) > 6.7 or dx + dy > 9.5 else (196, 16, 16)


def green(x, y):
    """A disc: bright green, with a dark check mark."""
    r = math.hypot(x - 8, y - 8)
    if r > 7.5:
        return None
    if near_path(x, y, ((4.4, 8.4), (7.0, 11.0), (11.6, 5.2)), 1.15):
        return (0, 64, 16)
    return (24, 132, 48) if r > 6.6 else (112, 236, 120)


def orange(x, y):
    """A triangle, with an exclamation mark."""
    def inside(margin):
        return y <= 15 - margin and (y - 0.8) * 0.52 >= abs(x - 8) + margin * 1.1
    if not inside(0):
        return None
    if abs(x - 8) <= 1.0 and (5.2 <= y <= 10.2 or 11.5 <= y <= 13.3):
        return (64, 32, 0)
    return (255, 168, 32) if inside(0.9) else (176, 96, 0)


def pixel(shape, px, py, scale):
    samples = [shape((px + (i % GRID + 0.5) / GRID) * scale, (py + (i // GRID + 0.5) / GRID) * scale)
               for i in range(GRID * GRID)]
    hits = [s for s in samples if s is not None]
    if len(hits) * 4 < len(samples):
        return GROUND
    hits += [BLEND] * (len(samples) - len(hits))
    return tuple(round(sum(channel) / len(hits)) for channel in zip(*hits))


def bitmap(shape, size):
    rows = [[pixel(shape, x, y, SMALL / size) for x in range(size)] for y in range(size)]
    bits = b"".join(bytes((b, g, r)) for row in reversed(rows) for r, g, b in row)
    header = struct.pack("<IiiHHIIiiII", 40, size, size, 1, 24, 0, len(bits), 0, 0, 0, 0)
    return struct.pack("<2sIHHI", b"BM", 14 + 40 + len(bits), 0, 0, 14 + 40) + header + bits


def main():
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).parent
    for shape in (red, green, orange):
        (folder / f"lamp_{shape.__name__}.bmp").write_bytes(bitmap(shape, SMALL))
    for shape in (red, green):
        (folder / f"lamp_{shape.__name__}_large.bmp").write_bytes(bitmap(shape, LARGE))


if __name__ == "__main__":
    main()
