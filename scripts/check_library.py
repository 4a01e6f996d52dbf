#!/usr/bin/env python3
"""Holds what a host loads to what it may expect: check_library.py [LIBRARY]

A host brings nothing along but Windows, so the library may need no more than that; it finds three
functions by their bare names; and the loader may put the library anywhere, run no data of it as
code, and ask its handlers about faults.
"""
import pathlib
import re
import subprocess
import sys

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


def main():
    library = sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/windows-x86/Korvane.dll"
    listing = subprocess.run(["i686-w64-mingw32-objdump", "-p", library], capture_output=True,
                             text=True, check=True).stdout
    found = list(complaints(listing))
    print("\n".join(found) or f"{library} is as a host expects it")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
