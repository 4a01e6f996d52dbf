#!/usr/bin/env python3
"""Tells where in the sources a crash was: read_crash_report.py REPORT [SYMBOLS]

REPORT is a file that holds one or more crash reports: a day's log, or the text of an error box.
SYMBOLS is the unstripped library of the very build that crashed, else build/windows-x86/symbols/.

A report has addresses alone, and Windows loads the library where it likes, yet always by whole
64 KB: the low halves of the addresses stay. Which of the few places left it was is told by the
bytes of code in the report.
"""
import os
import pathlib
import re
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
REPORT = re.compile(r"code ([0-9a-f]{8})\(eip=[0-9a-f]{8}\):\s+((?:(?:[0-9a-f]{2}|\?\?)\s+){16})"
                    r"(?:stack:\s+((?:(?:[0-9a-f]{8}|\?{8})\s+)*))?")
GRANULE = 0x10000
ENOUGH = 8  # bytes of code alike; the loader has changed addresses among them


def tool(command, text=""):
    return subprocess.run(["i686-w64-mingw32-" + command[0], *command[1:]], input=text, text=True,
                          stdout=subprocess.PIPE, check=True, env=os.environ | {"LC_ALL": "C"}).stdout


class Image:
    """The code of an unstripped library."""

    def __init__(self, path):
        self.path, data = path, pathlib.Path(path).read_bytes()
        header = struct.unpack_from("<I", data, 0x3C)[0]
        sections, = struct.unpack_from("<H", data, header + 6)
        optional, = struct.unpack_from("<H", data, header + 20)
        self.base, = struct.unpack_from("<I", data, header + 24 + 28)
        for at in range(header + 24 + optional, header + 24 + optional + 40 * sections, 40):
            name, size, place, _, start = struct.unpack_from("<8s4I", data, at)
            if name.rstrip(b"\0") == b".text":
                self.first, self.code = self.base + place, data[start:start + size]

    def alike(self, address, code):
        offset = address - self.first
        found = self.code[max(offset, 0):offset + len(code)] if offset > -len(code) else b""
        return sum(a == b for a, b in zip(found, code)) if offset >= 0 else 0

    def shift(self, address, code):
        """What is added to an address of this image where it was loaded; None: not this image."""
        first = self.first + (address - self.first) % GRANULE
        places = range(first, self.first + len(self.code), GRANULE)
        best = max(places, key=lambda place: self.alike(place, code), default=0)
        return address - best if self.alike(best, code) >= min(ENOUGH, len(code)) > 0 else None

    def has(self, address):
        return self.first < address <= self.first + len(self.code)

    def line(self, address):
        told = tool(["addr2line", "-fipe", self.path, hex(address)])
        # It takes the first underscore of a name for one that C puts before each.
        told = re.sub(r"\b_*Z(?=[NKST\dL])", "_Z", told)
        told = re.sub(r"\S*\.\./(src/)", r"\1", tool(["c++filt", "-n"], told))
        return told.strip().replace("\n", "\n    ")


def explain(image, report):
    address = int(report[1], 16)
    code = bytes(int(byte, 16) for byte in report[2].split() if byte != "??")
    shift = image.shift(address, code)
    if shift is None:
        print(f"{address:08x} is not in the code of {image.path}")
        return False
    print(f"{address:08x}, the library at {image.base + shift:08x}\n  {image.line(address - shift)}")
    for word in (report[3] or "").split():
        caller = 0 if "?" in word else int(word, 16) - shift
        # Where the call was, not where it returns to; not each word is what a call left.
        line = image.line(caller - 1) if image.has(caller) else ""
        if "src/" in line:
            print(f"  stack {word}: {line}")
    return True


def main():
    if len(sys.argv) not in (2, 3):
        print(__doc__, file=sys.stderr)
        return 2
    symbols = sys.argv[2] if len(sys.argv) > 2 else ROOT / "build/windows-x86/symbols/Korvane.dll"
    image = Image(symbols)
    text = pathlib.Path(sys.argv[1]).read_text(encoding="latin-1")
    told = [explain(image, report) for report in REPORT.finditer(text)]
    if not told:
        print("no crash report in this file")
    return 0 if told and all(told) else 1


if __name__ == "__main__":
    sys.exit(main())
