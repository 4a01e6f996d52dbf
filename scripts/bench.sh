#!/usr/bin/env bash
# Builds and runs the benchmarks: ratios of two measurements of the same run, and their targets.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

[ -n "${KORVANE_SET_UP:-}" ] || exec bash scripts/setup.sh "scripts/${0##*/}" "$@"
[ -e build/bench/build.ninja ] || cmake --preset bench >/dev/null
ninja -C build/bench >/dev/null
[ -e build/windows-x86/build.ninja ] || cmake --preset windows-x86 >/dev/null
ninja -C build/windows-x86 monitor_bench >/dev/null

status=0
build/bench/bench/model_bench || status=1
build/bench/bench/transfer_bench || status=1

. scripts/display.sh
trap stop_display EXIT
[ -n "${DISPLAY:-}" ] || start_display
bash scripts/with_wine.sh build/windows-x86/monitor_bench.exe || status=1
exit "$status"
