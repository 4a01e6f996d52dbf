# Sourced. A virtual display of the caller's own.

# start_display: starts one on the first free number and exports DISPLAY; its process is $display_pid.
start_display() {
    local number_file
    number_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$number_file" >/dev/null 2>&1 &
    display_pid=$!
    # The number is written once the server takes connections.
    local waited=0
    until [ -s "$number_file" ]; do
        kill -0 "$display_pid" 2>/dev/null && [ "$waited" -lt 300 ] ||
            { echo "the virtual display did not start" >&2; return 1; }
        sleep 0.1
        waited=$((waited + 1))
    done
    DISPLAY=":$(cat "$number_file")"
    export DISPLAY
    rm -f "$number_file"
}

stop_display() {
    [ -n "${display_pid:-}" ] || return 0
    kill "$display_pid" 2>/dev/null || true
    wait "$display_pid" 2>/dev/null || true
    display_pid=
}
