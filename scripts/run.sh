#!/usr/bin/env bash
# Builds Korvane and shows it: see usage below, or run it with --help.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/display.sh
. "$root/scripts/display.sh"

out=$root/out
host=$root/build/windows-x86/KorvaneHost.exe
simulator=$root/build/native/korvane-sim
korvane=$root/build/native/korvane
console=$out/console.txt

tour=false
address=
sim_pid='' host_pid='' tail_pid='' console_pid=''

usage() {
    cat <<'TEXT'
usage: bash scripts/run.sh [--tour] [--address ADDRESS]

Installs what is missing, builds the panel, its host and the simulated device, and starts them.
With a display the host's window opens, connected, and stays until it is closed. Without one, the
host drives a tour through the panel on a display of its own: the configuration is fetched, each
page shown, alarms and a lost link of the simulated device too, exported, imported and saved to the
device. A simulated device's configuration is edited before it is saved, and then looked at by the
command line. The tour leaves in out/ a picture of each page and dialog, transcript.txt,
simulator.log, the panel's diagnostic log as log.txt, and the files that it exported.

  --tour             the tour, even where there is a display
  --address ADDRESS  a real device instead of the simulated one; a tour writes to it
  --help             this text

Exit code: 0 when all went well, 1 when something failed, 2 for a wrong command line.
TEXT
}

say() { printf 'run: %s\n' "$*"; }
fail() { printf 'run: %s\n' "$*" >&2; exit 1; }

wrong_usage() {
    printf 'run: %s\nTry: bash scripts/run.sh --help\n' "$1" >&2
    exit 2
}

parse_options() {
    while [ $# -gt 0 ]; do
        case $1 in
            --tour) tour=true ;;
            --address)
                address=${2:-}
                [ -n "$address" ] || wrong_usage "--address needs an address"
                shift
                ;;
            --help | -h) usage; exit 0 ;;
            *) wrong_usage "unknown option $1" ;;
        esac
        shift
    done
}

# Ends what this script started, whichever way it ends itself.
stop_all() {
    local code=$? pid
    trap - EXIT
    for pid in $host_pid $tail_pid $sim_pid $console_pid; do
        kill "$pid" 2>/dev/null || continue
        wait "$pid" 2>/dev/null || true
    done
    stop_display
    exit "$code"
}

build() { # PRESET TARGET...
    local preset=$1 folder=$root/build/$1 log
    shift
    log=$(mktemp)
    if { [ -e "$folder/build.ninja" ] || (cd "$root" && cmake --preset "$preset"); } >"$log" 2>&1 &&
        cmake --build "$folder" --target "$@" >>"$log" 2>&1; then
        rm -f "$log"
        return
    fi
    tail -n 40 "$log" >&2
    rm -f "$log"
    fail "the build $preset failed"
}

build_all() {
    say "building"
    build native korvane-sim korvane
    build windows-x86 Korvane KorvaneHost
}

# True when DISPLAY names a display that lets this user in.
have_display() {
    [ -n "${DISPLAY:-}" ] || return 1
    python3 -c 'import ctypes, sys
sys.exit(0 if ctypes.CDLL("libX11.so.6").XOpenDisplay(None) else 1)' 2>/dev/null
}

# Waits for a condition (a command), while a process lives, for at most a minute.
wait_until() { # PID COMMAND...
    local pid=$1 tries=600
    shift
    until "$@" 2>/dev/null; do
        kill -0 "$pid" 2>/dev/null || return 1
        tries=$((tries - 1))
        [ $tries -gt 0 ] || return 1
        sleep 0.1
    done
}

# Several devices can run side by side; one is needed that nobody else uses. Its console takes what
# is added to a file, which the host under Wine writes to as to any other.
start_simulator() {
    local last log=$out/simulator.log
    # A tour that goes on right after a restart must find the device again within one command.
    local restart=()
    ! $tour || restart=(--reboot-time 2000)
    : >"$console"
    exec 3< <(exec tail -n +1 -s 0.1 -f "$console")
    console_pid=$!
    for last in {2..32}; do
        "$simulator" "${restart[@]}" --address "127.0.0.$last" --dump "$out/device.state" <&3 >"$log" 2>&1 &
        sim_pid=$!
        if wait_until "$sim_pid" grep -q '^listening on' "$log"; then
            exec 3<&-
            address=127.0.0.$last
            say "simulated device at $address, its log is out/simulator.log"
            return
        fi
        wait "$sim_pid" 2>/dev/null || true
        sim_pid=
    done
    cat "$log" >&2
    fail "no address from 127.0.0.2 to 127.0.0.32 is free for the simulated device"
}

# The simulator writes the state of the device when it ends.
stop_simulator() {
    kill "$sim_pid"
    wait "$sim_pid" || fail "the simulated device ended with an error, see out/simulator.log"
    sim_pid=
}

prepare_wine() {
    say "preparing Wine"
    # shellcheck source=scripts/wine_env.sh
    . "$root/scripts/wine_env.sh"
    # Services of an earlier run may hang on to a display that is gone.
    timeout 5 wineserver -w 2>/dev/null || true
    set_managed "$1"
}

# Whether a window manager gets to see the host's windows: a person wants its title bars, while
# without one each window that closes waits two seconds for it. This first Wine program starts
# Wine's services too, which would otherwise keep the host's output open.
set_managed() { # Y or N
    wine reg add 'HKCU\Software\Wine\AppDefaults\KorvaneHost.exe\X11 Driver' /v Managed /d "$1" /f \
        </dev/null >/dev/null 2>&1 || fail "Wine does not start"
}

windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# A tour's diary is complete: informational lines are switched on.
switch_log_on() {
    wine reg add 'HKLM\Software\Nox CAS1.0' /v PrintLog /t REG_SZ /d 1 /f </dev/null >/dev/null 2>&1 ||
        fail "the panel's log cannot be switched on"
}

# What the panel wrote on the day of the tour, and after midnight if it came to that, for people to
# read.
copy_log() { # SECOND OF THE TOUR'S BEGINNING
    local folder=${host%/*}/LogFile log
    : >"$out/log.txt"
    [ -d "$folder" ] || return 0
    find "$folder" -name '*.log' -newermt "@$1" | sort | while IFS= read -r log; do
        iconv -f GBK -t UTF-8 "$log" | tr -d '\r'
    done >"$out/log.txt" || say "the panel's log is not all GBK text"
}

run_tour() {
    local transcript=$out/transcript.txt code=0 began
    began=$(date +%s)
    local options=(--tour "$(windows_path "$out")")
    [ -z "$sim_pid" ] || options+=(--console "$(windows_path "$console")")
    : >"$transcript"
    wine "$host" "${options[@]}" "$address" </dev/null >"$transcript" 2>"$out/host.log" &
    host_pid=$!
    tail -n +1 -s 0.2 -f --pid="$host_pid" "$transcript" &
    tail_pid=$!
    wait "$host_pid" || code=$?
    host_pid=
    wait "$tail_pid" || true
    tail_pid=
    copy_log "$began"
    if [ "$code" -ne 0 ]; then
        cat "$out/host.log" >&2
        fail "the tour failed, see out/"
    fi
    if [ -n "$sim_pid" ]; then
        command_line_session
        stop_simulator
        python3 "$root/scripts/compare_device.py" --edited "$out/device.state" "$out/exported.dat" |
            tee -a "$transcript"
    fi
    say "pictures and transcript are in out/"
}

# The same device on the command line: what it has after the panel's edits, and how it is.
command_line_session() {
    local folder=$out/command-line
    rm -rf "$folder"
    mkdir -p "$folder"
    cp "$out/exported.dat" "$folder/before.dat"
    (
        cd "$folder"
        session 0 fetch "$address" station.json
        session 0 show station.json
        session 1 diff before.dat station.json
        session 1 check station.json  # a warning: short-time frames keep their slots
        session 0 status "$address"
    ) | tee -a "$out/transcript.txt"
}

# One command and its answer; it must end with this code.
session() { # CODE ARGUMENT...
    local wanted=$1 code=0
    shift
    printf '$ korvane %s\n' "$*"
    "$korvane" "$@" 2>&1 || code=$?
    [ "$code" -eq "$wanted" ] || fail "korvane $1 ended with code $code, not $wanted"
}

show_host() {
    say "the host's window is open; close it to end"
    wine "$host" "$address" </dev/null >"$out/host.log" 2>&1 &
    host_pid=$!
    local code=0
    wait "$host_pid" || code=$?
    host_pid=
    [ "$code" -eq 0 ] || fail "the host ended with code $code, see out/host.log"
}

main() {
    parse_options "$@"
    [ -n "${KORVANE_SET_UP:-}" ] || exec bash "$root/scripts/setup.sh" "$0" "$@"
    trap stop_all EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    build_all
    mkdir -p "$out"
    have_display || tour=true
    if $tour; then
        rm -f "$out"/*.png "$out"/*.dat "$out"/device.state
        start_display
        prepare_wine N
        switch_log_on
    else
        prepare_wine Y
    fi
    [ -n "$address" ] || start_simulator
    if $tour; then run_tour; else show_host; fi
}

main "$@"
