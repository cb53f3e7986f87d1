#!/usr/bin/env bash
# Builds the program, makes a sample database and a saved connection to it, and opens the program.
# usage: ./run.sh [--build-only]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/lib/display.sh

program_folder=$PWD/build/release/bin
build_only=no

usage() { sed -n '2,3s/^# //p' run.sh; }

say() { printf '== %s\n' "$*"; }

read_arguments() {
    local argument
    for argument in "$@"; do
        case $argument in
        --build-only) build_only=yes ;;
        -h | --help) usage && exit 0 ;;
        *)
            echo "run.sh: unknown argument '$argument'" >&2
            usage >&2
            exit 2
            ;;
        esac
    done
}

build() {
    say "Looking for missing packages"
    tools/install-packages.sh run
    say "Building (the first time takes a few minutes)"
    local output
    output=$(cmake --preset release 2>&1) || {
        echo "$output" >&2
        exit 1
    }
    nice cmake --build --preset release --target Tessel
}

xml_escape() {
    local text=${1//&/&amp;}
    text=${text//</&lt;}
    text=${text//>/&gt;}
    printf '%s' "${text//\"/&quot;}"
}

# The settings file may come to hold passwords: only its owner may read it.
write_settings() {
    local settings=$1 database=$2 temporary
    temporary=$(mktemp "$settings.XXXXXX")
    cat >"$temporary" <<END
<?xml version="1.0" encoding="UTF-8"?>
<Tessel>
  <Connections>
    <Connection connectionString="Provider=SQLite;Data Source=$(xml_escape "$database")" caption="Sample shop" backColor="80000005" foreColor="80000008"/>
  </Connections>
</Tessel>
END
    mv "$temporary" "$settings"
}

make_sample() {
    local database=$program_folder/shop.db settings=$program_folder/Tessel.ini.xml
    if [[ ! -e $database ]]; then
        say "Making the sample database $database"
        python3 samples/make_shop.py --out "$database"
    fi
    if [[ ! -e $settings ]]; then
        say "Writing the settings file $settings"
        write_settings "$settings" "$database"
    fi
}

free_port() {
    python3 -c 'import socket
s = socket.socket()
s.bind(("127.0.0.1", 0))
print(s.getsockname()[1])'
}

wait_for_port() {
    local tries
    for ((tries = 0; tries < 100; tries++)); do
        if (exec 3<>"/dev/tcp/127.0.0.1/$1") 2>/dev/null; then return 0; fi
        sleep 0.1
    done
    echo "run.sh: nothing answers on port $1; see $2" >&2
    return 1
}

# Eight characters, which is all that VNC looks at, in a file for its owner only.
write_password() (
    umask 077
    python3 -c 'import secrets, string
letters = string.ascii_letters + string.digits
print("".join(secrets.choice(letters) for _ in range(8)))' >"$1"
)

# Shows the program in a browser: a display in memory, handed on by VNC, on this machine only and
# to those only who know the password. It stands behind the "#" of the address: what stands there
# is not sent to the server.
run_in_browser() {
    local folder screen_port web_port result=0
    say "There is no display here (DISPLAY and WAYLAND_DISPLAY are empty)."
    say "The program will be shown in a web browser instead."
    folder=$(mktemp -d)
    trap 'stop_started; rm -rf "'"$folder"'"' EXIT
    trap 'exit 130' INT
    trap 'exit 143' TERM HUP
    if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then export XDG_RUNTIME_DIR=$folder; fi
    start_display 1440x900 "$folder/display.log" "$folder/authority" || {
        cat "$folder/display.log" >&2
        exit 1
    }
    write_password "$folder/password"
    screen_port=$(free_port)
    start x11vnc -display "$DISPLAY" -localhost -no6 -rfbport "$screen_port" -forever -shared \
        -passwdfile "$folder/password" -noxdamage -quiet >"$folder/vnc.log" 2>&1
    wait_for_port "$screen_port" "$folder/vnc.log"
    web_port=$(free_port)
    start websockify --web /usr/share/novnc "127.0.0.1:$web_port" "127.0.0.1:$screen_port" \
        >"$folder/web.log" 2>&1
    wait_for_port "$web_port" "$folder/web.log"
    say "Open this address in a browser on this machine (it holds the password of the display):"
    echo
    echo "   http://127.0.0.1:$web_port/vnc.html#autoconnect=1&resize=scale&password=$(<"$folder/password")"
    echo
    say "Closing the program, or Ctrl+C here, ends everything."
    start "$program_folder/Tessel"
    wait "$STARTED_PID" || result=$?
    exit "$result"
}

read_arguments "$@"
build
make_sample
if [[ $build_only == yes ]]; then
    say "Built: $program_folder/Tessel"
elif [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
    say "Starting the program"
    exec "$program_folder/Tessel"
else
    run_in_browser
fi
