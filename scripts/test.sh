#!/usr/bin/env bash
# Builds everything and runs all tests: the portable ones natively, under the sanitizers and as
# Windows programs under Wine; the window tests on a virtual display; the fuzz targets for a bounded
# count; the whole product end to end. Ends with "N passed, N failed".
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

logs="$root/build/test-logs"

note() { printf '%s\n' "$*"; }

# count NAME PASSED FAILED: adds one group of tests to the sums; a file, as two jobs count.
count() {
    echo "$2 $3" >>"$logs/counts"
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
    ninja -j"$(nproc)" -C "build/$preset" "$@" >"$logs/build-$preset.log" 2>&1 ||
        { grep -E 'error|FAILED|undefined' "$logs/build-$preset.log" | head -40; return 1; }
}

our_sources() { git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h'; }

check_format() { our_sources | xargs clang-format --dry-run -Werror; }

# fuzz TARGET RUNS FLOOR: from the seeds alone, each kept whole. What is reached are the branches of
# the rooms under test (libFuzzer's "cov", see fuzz/CMakeLists.txt); below the floor the target has
# gone blind, or the seeds no longer fit. The same binary reaches the same: the random seed is fixed.
fuzz() {
    local target=$1 runs=$2 floor=$3 found="build/fuzz/found/$1" log="$logs/libfuzzer-$1.log" reached
    rm -rf "$found"
    mkdir -p "$found"
    "build/fuzz/fuzz/fuzz_$target" -runs="$runs" -seed=1 -max_len=720000 -len_control=0 -keep_seed=1 \
        -reduce_inputs=0 -artifact_prefix="$logs/" "$found" "build/fuzz/seeds/$target" >"$log" 2>&1 ||
        { cat "$log"; return 1; }
    reached=$(sed -nE 's/.*DONE +cov: ([0-9]+) .*/\1/p' "$log")
    echo "$target reached ${reached:=0} branches, at least $floor wanted"
    [ "$reached" -ge "$floor" ]
}

fuzz_all() {
    rm -rf build/fuzz/seeds
    python3 scripts/make_fuzz_corpus.py build/fuzz/seeds
    #                         target       runs  floor
    check "fuzz answer"       fuzz answer       20000     96
    check "fuzz config_file"  fuzz config_file   3000    318
    check "fuzz config_image" fuzz config_image  3000    182
    check "fuzz text_form"    fuzz text_form      400   1460
    # The seeds of another, each once.
    check "files as text" build/fuzz/fuzz/fuzz_text_form build/fuzz/seeds/config_file/*
}

sanitizers_and_fuzzers() {
    build asan
    build tsan
    run_suites asan -j2
    run_suites tsan -j2
    build fuzz
    fuzz_all
}

set_dots_per_inch() {
    wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$1" /f \
        </dev/null >/dev/null 2>&1
}

# What follows the size of a dot, and the whole product, on a screen of 144 dots per inch.
finer_screen() {
    local status=0
    set_dots_per_inch 144
    wine build/windows-x86/tests/monitor/monitor_window_tests.exe --gtest_filter='*EachLamp*' &&
        bash tests/e2e/run.sh test_all_steps_go_well_and_are_pictured || status=1
    set_dots_per_inch 96
    return "$status"
}

windows_programs() {
    start_display
    # A prefix of their own: nothing that runs in the user's is disturbed when this one is shut down.
    export KORVANE_WINEPREFIX="$root/build/wine-tests"
    . scripts/wine_env.sh
    # Keeps Wine's own services between the tests, and away from the pipes that the tests write to.
    wineserver -p
    set_dots_per_inch 96
    run_suites windows-x86
    check "end to end" bash tests/e2e/run.sh
    check "finer screen" finer_screen
    check "package" bash tests/e2e/package_test.sh
}

finish() {
    local status=$?
    if [ -n "${background:-}" ]; then kill -- "-$background" 2>/dev/null || true; fi
    stop_display
    if [ -n "${WINEPREFIX:-}" ]; then wineserver -k 2>/dev/null || true; fi
    return "$status"
}

[ -n "${KORVANE_SET_UP:-}" ] || exec bash scripts/setup.sh "scripts/${0##*/}" "$@"
mkdir -p "$logs"
: >"$logs/counts"
. scripts/display.sh
trap finish EXIT

build native
build windows-x86

note "checks of the sources and of the library"
check "format" check_format
check "portability" python3 scripts/check_portability.py
check "library" python3 scripts/check_library.py

# The Windows programs mostly wait, so the other builds use the processor meanwhile and give way to
# them. As a process group of its own the job can be ended as a whole.
set -m
(
    renice -n 10 "$BASHPID" >/dev/null
    sanitizers_and_fuzzers
) >"$logs/background.log" 2>&1 </dev/null &
background=$!
set +m

note "portable programs"
run_suites native -j2
check "command line" python3 tests/e2e/command_line_test.py
note "Windows programs"
windows_programs

note "sanitizers and fuzzers, built and run meanwhile"
status=0
wait "$background" || status=$?
background=
cat "$logs/background.log"
[ "$status" -eq 0 ] || exit "$status"

note ""
read -r passed failed < <(awk '{ good += $1; bad += $2 } END { print good + 0, bad + 0 }' "$logs/counts")
echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
