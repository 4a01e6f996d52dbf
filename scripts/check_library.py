#!/usr/bin/env python3
"""Holds what a host loads to what it may expect: check_library.py [LIBRARY]

A host brings nothing along but Windows, so the library may need no more than that; it finds three
functions by their bare names; and the loader may put the library anywhere, run no data of it as
code, and ask its handlers about faults. Beside it, in symbols/, is the same code with its lines.
"""
import pathlib
import re
import sys

from read_crash_report import Image, tool

ROOT = pathlib.Path(__file__).resolve().parent.parent

IMPORTS = {
    "advapi32.dll": "the registry, where the log is switched",
    "comctl32.dll": "lists, trees, tabs, progress bars",
    "comdlg32.dll": "the dialogs to choose a file",
    "gdi32.dll": "drawing",
    "kernel32.dll": "threads, files, memory",
    "msvcrt.dll": "the C library that is part of each Windows",
    "user32.dll": "windows",
    "uxtheme.dll": "the ground of the pages within tabs",
    "ws2_32.dll": "UDP",
}
EXPORTS = ["cmmbGetWnd", "cmmbStart", "cmmbStop"]

RELOCATIONS_STRIPPED = 0x0001
DYNAMIC_BASE, NX_COMPAT, NO_SEH = 0x0040, 0x0100, 0x0400


def header(listing, name):
    return int(re.search(rf"^{name}\s+(?:0x)?([0-9a-f]+)", listing, re.M)[1], 16)


def exports(listing):
    table = listing.partition("[Ordinal/Name Pointer] Table")[2]
    return re.findall(r"^\s+\[ *\d+\](?: \+base\[ *\d+\])?(?: +[0-9a-f]+)? (\S+)$", table, re.M)


def complaints(listing):
    for library in re.findall(r"DLL Name: (\S+)", listing):
        if library.lower() not in IMPORTS:
            yield f"needs {library}, which a host's Windows may not have"
    functions = re.search(r"^\s*Export Address Table\s+([0-9a-f]+)$", listing, re.M)
    if exports(listing) != EXPORTS or not functions or int(functions[1], 16) != len(EXPORTS):
        yield f"exports {exports(listing)}, not exactly {EXPORTS}"
    flags = header(listing, "DllCharacteristics")
    if not flags & DYNAMIC_BASE or header(listing, "Characteristics") & RELOCATIONS_STRIPPED:
        yield "cannot be loaded just anywhere (no DYNAMIC_BASE, or no relocations)"
    if not flags & NX_COMPAT:
        yield "does not keep its data from being run (no NX_COMPAT)"
    if flags & NO_SEH:
        yield "denies that it has handlers for faults (NO_SEH)"


def symbol_complaints(library, listing):
    symbols = library.parent / "symbols" / library.name
    if not symbols.exists() or Image(symbols).code != Image(library).code:
        yield f"{symbols} is not the same code"
        return
    start = re.search(r"\[ +1\] \+base\[ +2\] ([0-9a-f]+) Export RVA", listing)
    if not start or "plugin_exports.cpp:" not in Image(symbols).line(
            Image(symbols).base + int(start[1], 16)):
        yield f"{symbols} does not say which lines its code comes from"


def main():
    library = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else
                           ROOT / "build/windows-x86/Korvane.dll")
    listing = tool(["objdump", "-p", library])
    found = [*complaints(listing), *symbol_complaints(library, listing)]
    print("\n".join(found) or f"{library} is as a host expects it")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
