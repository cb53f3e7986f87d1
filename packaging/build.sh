#!/usr/bin/env bash
# Makes what is given to users, in build/package: a Debian package with its debug symbols apart, and
# an archive that runs on other systems too, without being installed.
# usage: packaging/build.sh [deb] [archive]      (without a word: both)
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

out=$PWD/build/package

usage() { sed -n '2,4s/^# //p' packaging/build.sh; }

say() { printf '== %s\n' "$*"; }

# debhelper gives what it runs a home of its own, where ccache would find nothing.
find_cache() {
    command -v ccache >/dev/null || return 0
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR
}

# dpkg-buildpackage wants the folder "debian" where it works, and puts what it makes one above.
build_deb() {
    say "Building the Debian package"
    rm -rf "$out/deb" "$out"/*.deb "$out"/*.buildinfo "$out"/*.changes
    mkdir -p "$out/deb"
    cp -r packaging/debian "$out/deb/debian"
    (cd "$out/deb" && nice dpkg-buildpackage --build=binary --no-sign --no-pre-clean)
    rm -rf "$out/deb"
}

check_deb() {
    say "Checking the Debian package"
    lintian --fail-on error,warning "$out"/*.changes
}

wanted=("$@")
[[ ${#wanted[@]} -gt 0 ]] || wanted=(deb archive)
for word in "${wanted[@]}"; do
    case $word in
    deb | archive) ;;
    -h | --help) usage && exit 0 ;;
    *) usage >&2 && exit 2 ;;
    esac
done

tools/install-packages.sh run package
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(dpkg-parsechangelog -l packaging/debian/changelog -S Timestamp)}
export SOURCE_DATE_EPOCH
find_cache
build_deb
check_deb
[[ " ${wanted[*]} " != *" archive "* ]] || packaging/archive.sh "$out"
say "Made in $out:"
(cd "$out" && ls -1sh -- *.deb *.tar.xz 2>/dev/null)
