# A private display for programs that need one. To be sourced by bash.
#   start_display <width>x<height>   starts Xvfb and openbox, exports DISPLAY; false if it cannot
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

start_display() {
    local size=$1 log=$2 number_file tries
    command -v Xvfb >/dev/null && command -v openbox >/dev/null || return 1
    number_file=$(mktemp)
    start Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp 3>"$number_file" 2>"$log" >&2
    for ((tries = 0; tries < 100; tries++)); do
        [[ ! -s $number_file ]] || break
        kill -0 "$STARTED_PID" 2>/dev/null || break
        sleep 0.1
    done
    local number
    number=$(<"$number_file")
    rm -f "$number_file"
    [[ -n $number ]] || return 1
    export DISPLAY=":$number"
    unset WAYLAND_DISPLAY
    start openbox --sm-disable 2>>"$log" >&2
}
