#!/usr/bin/env bash
# Makes the package and starts what is in it under Wine, from an empty folder: the simulator, the
# command line against it, and the panel in its host through a whole tour.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$root/scripts/display.sh"
simulator=
finish() {
    [ -z "$simulator" ] || kill "$simulator" 2>/dev/null || true
    stop_display
}
trap finish EXIT
[ -n "${DISPLAY:-}" ] || start_display

package=$root/$(cd "$root" && bash scripts/package.sh | tail -n 1)
folder=$root/build/package-test
rm -rf "$folder"
mkdir -p "$folder/tour"
python3 -m zipfile -e "$package" "$folder"
cd "$folder"
. "$root/scripts/wine_env.sh"
wine cmd /c exit </dev/null >/dev/null 2>&1

# Several devices can run side by side: one is needed that nobody else uses.
for last in {90..99}; do
    address=127.0.0.$last
    wine korvane-sim.exe --address "$address" </dev/null >simulator.log 2>&1 &
    simulator=$!
    until grep -q '^listening on' simulator.log; do
        kill -0 "$simulator" 2>/dev/null || continue 2
        sleep 0.1
    done
    break
done

timeout 60 wine korvane.exe fetch "$address" station.json
timeout 60 wine korvane.exe check station.json
windows_folder=Z:${folder//\//\\}
timeout 240 wine KorvaneHost.exe --tour "$windows_folder\\tour" "$address" </dev/null
grep -q '新闻综合频道' station.json
ls tour/*.png >/dev/null
