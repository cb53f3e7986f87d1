#!/usr/bin/env bash
# Formats C++ files in place: those given, or every one of the project.
# usage: tools/format.sh [file...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
if [[ $# -eq 0 ]]; then
    mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' ':!cmake/')
    set -- "${files[@]}"
fi
clang-format -i --style=file "$@"
