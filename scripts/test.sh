#!/usr/bin/env bash
# Builds everything and runs all tests: the portable ones natively, under the sanitizers and as
# Windows programs under Wine; the window tests on a virtual display; the fuzz targets for a bounded
# count; the whole product end to end. Ends with "N passed, N failed".
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

passed=0
failed=0
logs="$root/build/test-logs"

note() { printf '%s\n' "$*"; }

# count NAME PASSED FAILED: adds one group of tests to the sums.
count() {
    passed=$((passed + $2))
    failed=$((failed + $3))
    note "  $1: $2 passed, $3 failed"
}

# The sum of the numbers on standard input.
total() { awk '{ sum += $1 } END { print sum + 0 }'; }

# check NAME COMMAND...: one test that is a whole command; its output shows only when it fails.
check() {
    local name=$1 log="$logs/${1// /-}.log"
    shift
    if "$@" >"$log" 2>&1; then
        count "$name" 1 0
    else
        tail -n 60 "$log"
        count "$name" 0 1
    fi
}

# run_suites PRESET [CTEST-OPTION...]: all test programs of a build; counts their single tests.
run_suites() {
    local preset=$1 log="$logs/$1.log" status=0 good bad programs closed
    shift
    ctest --test-dir "build/$preset" --verbose "$@" >"$log" 2>&1 || status=$?
    good=$(sed -nE 's/.*\[  PASSED  \] ([0-9]+) tests?\..*/\1/p' "$log" | total)
    bad=$(sed -nE 's/.*\[  FAILED  \] ([0-9]+) tests?, listed below.*/\1/p' "$log" | total)
    # A program that crashed or hung has no closing line of its own, whatever it exited with.
    programs=$(sed -nE 's/^Total Tests: ([0-9]+)/\1/p' < <(ctest --test-dir "build/$preset" -N))
    closed=$(grep -acE '\[  PASSED  \] [0-9]+ tests?\.' "$log" || true)
    bad=$((bad + programs - closed))
    [ "$status" -eq 0 ] || [ "$bad" -gt 0 ] || bad=1
    if [ "$bad" -gt 0 ]; then grep -aE '\[  FAILED  \]|: Failure|ERROR: |SUMMARY: |\*\*\*' "$log" | head -60; fi
    count "$preset" "$good" "$bad"
}

build() {
    local preset=$1
    shift
    note "building $preset"
    [ -e "build/$preset/build.ninja" ] || cmake --preset "$preset" >"$logs/configure-$preset.log" 2>&1 ||
        { cat "$logs/configure-$preset.log"; return 1; }
    ninja -C "build/$preset" "$@" >"$logs/build-$preset.log" 2>&1 ||
        { grep -E 'error|FAILED|undefined' "$logs/build-$preset.log" | head -40; return 1; }
}

our_sources() { git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h'; }

check_format() { our_sources | xargs clang-format --dry-run -Werror; }

# The core stays portable: Windows headers belong to the rooms that own windows and threads.
check_portability() {
    local windows_rooms='^src/(ui|runtime|shell|resources)/|^src/(monitor|editors|admin)/.*_(page|panel|dialog)\.|^host/|^tests/(ui|shell|host|runtime|monitor|support)/|^bench/(start|monitor)_bench|^src/device/(udp|ping_host)\.cpp$'
    local portable
    portable=$(our_sources | grep -vE "$windows_rooms")
    [ -n "$portable" ] || return 1
    local headers='#include <(windows|win[a-z0-9]+|comm(ctrl|dlg)|ws2tcpip|mstcpip|iphlpapi|icmpapi|shlobj)\.h>'
    # grep finds nothing: 1. Anything else is a hit or an error.
    local status=0
    xargs grep -lE "$headers" <<<"$portable" || status=$?
    [ "$status" -eq 123 ] || [ "$status" -eq 1 ]
}

fuzz() {
    local target=$1 runs=$2
    mkdir -p "build/fuzz/corpus/$target"
    "build/fuzz/fuzz/fuzz_$target" -runs="$runs" -seed=1 -max_len=680000 -artifact_prefix="$logs/" \
        "build/fuzz/corpus/$target"
}

finish() {
    local status=$?
    stop_display
    if [ -n "${WINEPREFIX:-}" ]; then wineserver -k 2>/dev/null || true; fi
    return "$status"
}

bash scripts/setup.sh
mkdir -p "$logs"
. scripts/display.sh
trap finish EXIT

build native
build asan
build tsan
build fuzz
build windows-x86

note "checks of the sources"
check "format" check_format
check "portability" check_portability

note "tests"
run_suites native -j2
run_suites asan -j2
run_suites tsan -j2

note "fuzzing, a bounded count"
python3 scripts/make_fuzz_corpus.py build/fuzz/corpus
check "fuzz answer" fuzz answer 20000
check "fuzz config_file" fuzz config_file 1000
check "fuzz config_image" fuzz config_image 1000

note "Windows programs"
start_display
# A prefix of their own: nothing that runs in the user's is disturbed when this one is shut down.
export KORVANE_WINEPREFIX="$root/build/wine-tests"
. scripts/wine_env.sh
# Keeps Wine's own services between the tests, and away from the pipes that the tests write to.
wineserver -p
wine cmd /c exit </dev/null >/dev/null 2>&1
run_suites windows-x86
check "end to end" bash tests/e2e/run.sh

note ""
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
