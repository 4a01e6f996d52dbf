#!/usr/bin/env python3
"""Holds the portable half of the code portable: check_portability.py

Looks at what the two builds really compiled, as the compilers noted it: run both before.
Portable is what the native build uses; there, only one file may know Windows. What is built for
Windows alone must need it: code that could be portable belongs into the native build, too.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
WINDOWS_HEADER = re.compile(r"#include <(windows|win\w+|comm(ctrl|dlg)|ws2tcpip|mstcpip|iphlpapi|"
                            r"icmpapi|shlobj|shellapi|uxtheme)\.h>")
# The two socket libraries, and the two converters of texts.
KNOWS_BOTH = {pathlib.Path("src/device/udp.cpp"), pathlib.Path("src/text/gbk.cpp")}


def compilations(preset):
    """For each object file the files of ours that went into it, and whether windows.h did."""
    build = ROOT / "build" / preset
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], capture_output=True, text=True,
                             check=True).stdout
    for entry in re.split(r"\n(?=\S)", listing):
        files = [(build / line.strip()).resolve() for line in entry.split("\n")[1:] if line.strip()]
        ours = {file.relative_to(ROOT) for file in files
                if file.is_relative_to(ROOT) and not file.is_relative_to(ROOT / "build")}
        if ours and all((ROOT / file).is_file() for file in ours):
            yield ours, any(file.name in ("windows.h", "winsock2.h") for file in files)


def room(file):
    return file.parts[:2] if file.parts[0] in ("src", "tests") else file.parts[:1]


def main():
    portable = set().union(*(ours for ours, _ in compilations("native")))
    complaints = [f"{file}: portable, but includes a header of Windows"
                  for file in portable - KNOWS_BOTH
                  if WINDOWS_HEADER.search((ROOT / file).read_text())]
    rooms = {room(file) for file in portable if file.suffix == ".cpp"}
    for ours, windows in compilations("windows-x86"):
        sources = {file for file in ours if file.suffix == ".cpp"}
        apart = windows or any(room(file) not in rooms for file in ours)
        if sources and not sources & portable and not apart:
            complaints.append(f"{sources.pop()}: needs nothing of Windows, but is built for it alone")
    print("\n".join(sorted(complaints)) or f"{len(portable)} portable files")
    return 1 if complaints or not portable else 0


if __name__ == "__main__":
    sys.exit(main())
