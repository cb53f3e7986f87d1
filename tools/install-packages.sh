#!/usr/bin/env bash
# Installs the Debian packages that are named in tools/packages/<list>.txt and missing here.
# usage: tools/install-packages.sh <list>...      (run, test, develop)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)

check_lists() {
    local list
    for list in "$@"; do
        [[ -f $here/packages/$list.txt ]] && continue
        echo "install-packages: there is no package list '$list'" >&2
        exit 2
    done
}

list_packages() {
    local list
    for list in "$@"; do
        sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$here/packages/$list.txt"
    done
}

missing_of() {
    local installed
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null |
        sed -n 's/^installed //p' || true)
    comm -23 <(printf '%s\n' "$@" | sort -u) <(sort -u <<<"$installed")
}

# Debian starts a database server as soon as it is installed; the tests start their own. Where the
# machine has no policy yet, one that says "do not start" stands while the installation runs.
install_quietly() {
    local policy=/usr/sbin/policy-rc.d
    if [[ ! -e $policy ]]; then
        trap '"${as_root[@]}" rm -f /usr/sbin/policy-rc.d' EXIT
        printf '#!/bin/sh\nexit 101\n' | "${as_root[@]}" tee "$policy" >/dev/null
        "${as_root[@]}" chmod 755 "$policy"
    fi
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y \
        --no-install-recommends -o DPkg::Lock::Timeout=300 "$@"
}

if [[ $# -eq 0 ]]; then
    echo "usage: $0 <list>...   lists: $(basename -a -s .txt "$here"/packages/*.txt | paste -sd' ')" >&2
    exit 2
fi
check_lists "$@"
if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    echo "This is no Debian system: please install what these packages hold by hand:"
    list_packages "$@" | paste -sd' '
    exit 0
fi

mapfile -t wanted < <(list_packages "$@")
mapfile -t missing < <(missing_of "${wanted[@]}")
[[ ${#missing[@]} -gt 0 ]] || exit 0

as_root=()
if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "These packages are missing; please install them as root and start again:" >&2
        echo "  apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
echo "Installing ${#missing[@]} packages: ${missing[*]}"
install_quietly "${missing[@]}" && exit 0
echo "Refreshing the package lists and trying again."
"${as_root[@]}" apt-get update -o DPkg::Lock::Timeout=300
install_quietly "${missing[@]}"
