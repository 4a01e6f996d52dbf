#!/usr/bin/env bash
# Builds out/korvane-VERSION-windows.zip: library, host, command line and simulator for Windows.
# What is in it needs nothing else.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

[ -n "${KORVANE_SET_UP:-}" ] || exec bash scripts/setup.sh "scripts/${0##*/}" "$@"

build=build/windows-x86
[ -e "$build/build.ninja" ] || cmake --preset windows-x86 >/dev/null
ninja -C "$build" Korvane KorvaneHost korvane korvane-sim >/dev/null

python3 - "$build" <<'PYTHON'
import pathlib
import re
import sys
import zipfile

build, out = pathlib.Path(sys.argv[1]), pathlib.Path("out")
version = re.search(r"project\(Korvane VERSION (\S+)", pathlib.Path("CMakeLists.txt").read_text())[1]
package = out / f"korvane-{version}-windows.zip"
readme = pathlib.Path("scripts/package.txt").read_text(encoding="utf-8").replace("@VERSION@", version)
out.mkdir(exist_ok=True)
with zipfile.ZipFile(package, "w", zipfile.ZIP_DEFLATED) as archive:
    for name in ("Korvane.dll", "KorvaneHost.exe", "korvane.exe", "korvane-sim.exe"):
        archive.write(build / name, name)
    # With the mark by which editors of that system know UTF-8, and its ends of lines.
    archive.writestr("README.txt", ("\ufeff" + readme.replace("\n", "\r\n")).encode("utf-8"))
print(package)
PYTHON
