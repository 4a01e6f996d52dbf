#!/usr/bin/env bash
# The end-to-end tests on what the presets windows-x86 and native have built.
# usage: tests/e2e/run.sh [NAME OF A TEST...]
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$root/scripts/display.sh"
trap stop_display EXIT
[ -n "${DISPLAY:-}" ] || start_display
# Starts Wine's services, so that no test waits for them.
bash "$root/scripts/with_wine.sh" cmd /c exit </dev/null >/dev/null 2>&1
python3 "$root/tests/e2e/e2e_test.py" "${@/#/EndToEnd.}"
