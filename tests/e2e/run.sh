#!/usr/bin/env bash
# The end-to-end tests on what the presets windows-x86 and native have built.
# usage: tests/e2e/run.sh [NAME OF A TEST...]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
exec python3 "$root/tests/e2e/e2e_test.py" --host "$root/build/windows-x86/KorvaneHost.exe" \
    --simulator "$root/build/native/korvane-sim" --out "$root/build/e2e" "$@"
