#!/usr/bin/env bash
# Builds everything and runs every test. The last line is "N passed, N failed, N skipped".
# usage: ./test.sh [--preset dev|asan-ubsan|tsan] [--ring text|package|logic|data|desktop|access] [--xvfb]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
source tools/lib/display.sh

preset=dev
rings=(text logic data desktop package access)
time_limit=1800
xvfb=no

usage() { sed -n '2,3s/^# //p' test.sh; }

say() { printf '== %s\n' "$*"; }

read_arguments() {
    while [[ $# -gt 0 ]]; do
        case $1 in
        --preset) preset=${2:?--preset needs a name} && shift ;;
        --ring) rings=("${2:?--ring needs a name}") && shift ;;
        --xvfb) xvfb=yes ;;
        -h | --help) usage && exit 0 ;;
        *)
            echo "test.sh: unknown argument '$1'" >&2
            usage >&2
            exit 2
            ;;
        esac
        shift
    done
    case ${rings[0]} in text | logic | data | desktop | package | access) ;; *)
        echo "test.sh: there is no ring '${rings[0]}'" >&2
        exit 2
        ;;
    esac
}

needs_build() { [[ ${rings[*]} != text ]]; }

build() {
    local targets=() ring
    for ring in "${rings[@]}"; do
        case $ring in
        text) ;;
        package) targets+=(Tessel tessel_icons) ;;
        access) targets+=(Tessel) ;;
        *) targets+=("${ring}_tests") ;;
        esac
    done
    # A run of every ring also builds the program.
    [[ ${#rings[@]} -eq 1 ]] || targets=(all)
    cmake --preset "$preset" -DTESSEL_WERROR=ON >"$results/configure.log" 2>&1 || {
        cat "$results/configure.log"
        return 1
    }
    nice cmake --build --preset "$preset" --target "${targets[@]}"
}

sanitizer_settings() {
    export ASAN_OPTIONS=detect_stack_use_after_return=1
    export LSAN_OPTIONS=suppressions=$PWD/tests/sanitizers/lsan.supp:print_suppressions=0
    export UBSAN_OPTIONS=print_stacktrace=1
    export TSAN_OPTIONS=ignore_noninstrumented_modules=1:suppressions=$PWD/tests/sanitizers/tsan.supp
}

# The thread sanitizer needs the plain memory layout; newer kernels randomise more than it can bear.
plain_layout() {
    if [[ $preset == tsan ]]; then setarch -R "$@"; else "$@"; fi
}

# Runs one ring; its report, log and exit status land in $results for tests/summary.py.
run_ring() {
    local ring=$1 status=0
    local -a command
    if [[ $ring == text ]]; then
        command=(python3 tests/text/check.py --self-test --json "$results/text.json")
    elif [[ $ring == package ]]; then
        command=(python3 tests/package/check.py --build "build/$preset" --json "$results/package.json")
    elif [[ $ring == access ]]; then
        command=(plain_layout timeout --foreground "$time_limit" tests/access/access_test.py
            --program "build/$preset/bin/Tessel" --json "$results/access.json")
    else
        command=(plain_layout timeout --foreground "$time_limit" "build/$preset/${ring}_tests" --gtest_brief=1
            "--gtest_output=json:$results/$ring.json")
    fi
    say "Running the $ring tests"
    "${command[@]}" >"$results/$ring.log" 2>&1 || status=$?
    cat "$results/$ring.log"
    echo "$status" >"$results/$ring.exit"
}

# Off screen a window is active as soon as it is shown. Under Xvfb the window manager hands on the
# keyboard in its own time, which the tests do not always wait for.
prepare_desktop() {
    export QT_QPA_PLATFORM=offscreen
    [[ $xvfb == yes ]] || return 0
    start_display 1280x1024 "$results/display.log"
    export QT_QPA_PLATFORM=xcb
}

read_arguments "$@"
results=$(mktemp -d)
runtime_folder=$(mktemp -d)
trap 'stop_started; rm -rf "$results" "$runtime_folder"' EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP
export XDG_RUNTIME_DIR=$runtime_folder LC_ALL=C.UTF-8

say "Looking for missing packages"
tools/install-packages.sh run test
if needs_build; then
    say "Building the preset $preset"
    build || {
        echo "The build failed."
        echo "0 passed, 1 failed, 0 skipped"
        exit 1
    }
fi
sanitizer_settings
for ring in "${rings[@]}"; do
    [[ $ring != desktop ]] || prepare_desktop
    run_ring "$ring"
done
stop_started
python3 tests/summary.py "$results" "${rings[@]}"
