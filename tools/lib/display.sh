# A private display for programs that need one. To be sourced by bash.
#   start_display <width>x<height> <log file> [<authority file>]
#                                    starts Xvfb and openbox, exports DISPLAY; false if it cannot.
#                                    With the third the display is open to those only who can read
#                                    that file, which it makes; exports XAUTHORITY.
#   start <command>...               starts a command in the background; its pid is in STARTED_PID
#   stop_started                     ends every process that start has started, latest first
# shellcheck shell=bash

STARTED=()

start() {
    "$@" &
    STARTED_PID=$!
    STARTED+=("$STARTED_PID")
}

stop_started() {
    local index
    for ((index = ${#STARTED[@]} - 1; index >= 0; index--)); do
        kill -TERM "${STARTED[index]}" 2>/dev/null || continue
        wait "${STARTED[index]}" 2>/dev/null || true
    done
    STARTED=()
}

# Waits until a file is there and not empty; false after ten seconds, or when the process ends first.
wait_for_file() {
    local file=$1 pid=$2 tries
    for ((tries = 0; tries < 100; tries++)); do
        [[ ! -s $file ]] || return 0
        kill -0 "$pid" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

# A cookie for any display, in the form in which X clients and servers read it. It is nobody's
# argument: the list of processes is open to everybody.
write_authority() (
    umask 077
    python3 -c 'import os, struct, sys
field = lambda data: struct.pack(">H", len(data)) + data
wild = struct.pack(">H", 0xFFFF)
sys.stdout.buffer.write(wild + field(b"") + field(b"") + field(b"MIT-MAGIC-COOKIE-1")
                        + field(os.urandom(16)))' >"$1"
)

start_display() {
    local size=$1 log=$2 folder result=0
    command -v Xvfb >/dev/null && command -v openbox >/dev/null || return 1
    SERVER_OPTIONS=()
    if [[ -n ${3:-} ]]; then
        write_authority "$3"
        SERVER_OPTIONS=(-auth "$3")
        export XAUTHORITY=$3
    fi
    folder=$(mktemp -d)
    start_server "$size" "$log" "$folder" && start_window_manager "$log" "$folder" || result=1
    rm -rf "$folder"
    return "$result"
}

start_server() {
    local size=$1 log=$2 number_file=$3/number
    start Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp "${SERVER_OPTIONS[@]}" 3>"$number_file" 2>"$log" >&2
    wait_for_file "$number_file" "$STARTED_PID" || return 1
    DISPLAY=:$(<"$number_file")
    export DISPLAY
    unset WAYLAND_DISPLAY
}

# Windows that open before the window manager is ready may never become active.
start_window_manager() {
    local log=$1 ready=$2/ready
    start openbox --sm-disable --startup "sh -c 'echo ready >$ready'" 2>>"$log" >&2
    wait_for_file "$ready" "$STARTED_PID"
}
