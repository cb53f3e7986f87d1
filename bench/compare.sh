#!/usr/bin/env bash
# Builds the program and its benchmarks and holds them against what the drivers take by themselves,
# side by side. Prints a table; the exit status is 0 if every row reaches its aim.
# usage: bench/compare.sh [--no-build] [--rows N] [--big-rows N] [--rounds N] [--only ROW,...] [--list]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=yes
arguments=()
for argument in "$@"; do
    case $argument in
    --no-build | --list | --help) build=no ;;&
    --no-build) ;;
    *) arguments+=("$argument") ;;
    esac
done

if [[ $build == yes ]]; then
    cmake --preset bench >/dev/null
    cmake --build --preset bench --target compare
fi
exec python3 bench/compare/compare.py --programs build/bench/bin "${arguments[@]}"
