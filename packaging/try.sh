#!/usr/bin/env bash
# Tries the Debian package in a clean Debian 12 of its own, made for this and removed again: installs
# it, starts the program on a display in memory, installs a newer version while it runs, removes it
# and installs it again. A user's files must survive all of it. Must be run as root; needs mmdebstrap.
# usage: packaging/try.sh [--keep]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

package=$(ls build/package/tessel_*.deb)
root=$(mktemp -d)
folder=/home/user/.local/share/tessel
keep=no
[[ ${1:-} != --keep ]] || keep=yes

say() { printf '== %s\n' "$*"; }

fail() {
    echo "try.sh: $*" >&2
    exit 1
}

# What apt says of its work is shown only when it fails.
install() {
    inside apt-get install -qq -y "$@" >"$root/tmp/apt.log" 2>&1 || {
        cat "$root/tmp/apt.log" >&2
        fail "cannot install $*"
    }
}

inside() { chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }

as_user() { chroot --userspec=user "$root" env -i PATH=/usr/bin:/bin HOME=/home/user LC_ALL=C.UTF-8 DISPLAY=:177 "$@"; }

remove_root() {
    local pid
    for pid in "${STARTED[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait
    umount "$root/dev/shm" "$root/proc" 2>/dev/null || true
    if [[ $keep == yes ]]; then say "The root stays in $root"; else rm -rf --one-file-system "$root"; fi
}

make_root() {
    say "Making a clean Debian 12"
    mmdebstrap --quiet --variant=apt bookworm "$root"
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    mount -t proc proc "$root/proc"
    mkdir -p "$root/dev/shm" && mount -t tmpfs tmpfs "$root/dev/shm"
    inside useradd --create-home user
}

# The display and what looks at it are no part of what is tried.
prepare_display() {
    install --no-install-recommends xvfb openbox xdotool imagemagick dbus
    start_inside /usr/bin/Xvfb :177 -screen 0 1280x900x24 -nolisten tcp
    sleep 2
    start_inside env DISPLAY=:177 openbox --sm-disable
}

STARTED=()
start_inside() {
    chroot --userspec=user "$root" env -i PATH=/usr/bin:/bin HOME=/home/user LC_ALL=C.UTF-8 DISPLAY=:177 \
        "$@" >>"$root/tmp/log" 2>&1 &
    STARTED+=($!)
}

# The program's process, which must be one that was started through the link of that folder.
program_in() {
    local exe
    for exe in /proc/[0-9]*; do
        [[ $(tr '\0' '\n' 2>/dev/null <"$exe/cmdline" | head -n 1) == "$1/Tessel" ]] || continue
        basename "$exe"
        return
    done
    return 1
}

wait_for_program() {
    local tries
    for ((tries = 0; tries < 100; tries++)); do
        program_in "$1" >/dev/null && as_user xdotool search --onlyvisible --name Tessel >/dev/null 2>&1 && return
        sleep 0.2
    done
    cat "$root/tmp/log" >&2
    fail "no window came up for $1"
}

end_program() {
    local pid
    pid=$(program_in "$1") || fail "the program in $1 does not run"
    kill -TERM "$pid"
    while kill -0 "$pid" 2>/dev/null; do sleep 0.1; done
}

# A package of the next version, made of this one's files.
make_newer() {
    local files
    files=$(mktemp -d)
    dpkg-deb --raw-extract "$package" "$files"
    sed -i 's/^Version: .*/Version: 99.0/' "$files/DEBIAN/control"
    sed -i "s/^version='.*/version='99.0'/" "$files/usr/bin/tessel"
    (cd "$files" && find usr -type f -exec md5sum {} + >DEBIAN/md5sums)
    dpkg-deb --root-owner-group --build "$files" "$root/tmp/newer.deb" >/dev/null
    rm -rf "$files"
}

expect_files() {
    [[ $(as_user cat "$folder/Tessel.vocab.txt") == "my word" ]] || fail "$1: the user's words are gone"
    [[ -e $root$folder/Tessel.ini.xml ]] || fail "$1: the user's connections are gone"
}

write_user_files() {
    as_user sh -c "echo 'my word' >$folder/Tessel.vocab.txt; umask 077; cat >$folder/Tessel.ini.xml" <<'END'
<?xml version="1.0" encoding="UTF-8"?>
<Tessel><Connections><Connection connectionString="Provider=SQLite;Data Source=/home/user/try.db;Mode=ReadWriteCreate" caption="Tried" backColor="80000005" foreColor="80000008"/></Connections></Tessel>
END
}

picture() { as_user import -window root png:- >"build/package/try-$1.png"; }

[[ $(id -u) -eq 0 ]] || fail "a root folder can be made by root only"
trap remove_root EXIT
make_root
say "Installing"
cp "$package" "$root/tmp/tessel.deb"
inside apt-get update -qq
install /tmp/tessel.deb
inside dpkg -s tessel | grep -E '^(Status|Version)'
as_user tessel --version
as_user tessel --help >/dev/null
prepare_display

say "Starting, with the usual folder and with another one"
as_user mkdir -p "$folder"
write_user_files
start_inside tessel
start_inside tessel --folder /home/user/second
wait_for_program "$folder"
wait_for_program /home/user/second
sleep 2
picture started

say "Installing a newer version while the program runs"
make_newer
install /tmp/newer.deb
as_user tessel --version
program_in "$folder" >/dev/null || fail "the running program is gone"
expect_files "after the upgrade"
end_program "$folder"
end_program /home/user/second
start_inside tessel
wait_for_program "$folder"

say "Removing it while the program runs"
inside apt-get purge -qq -y tessel >/dev/null 2>&1
program_in "$folder" >/dev/null || fail "the running program is gone"
picture removed
end_program "$folder"
expect_files "after the removal"
[[ -L $root$folder/Tessel && ! -e $root/usr/lib/tessel ]] || fail "something of the package is left"
if as_user "$folder/Tessel" 2>/dev/null; then fail "a removed program starts"; fi

say "Installing it again"
install /tmp/tessel.deb
start_inside tessel
wait_for_program "$folder"
expect_files "after installing again"
end_program "$folder"
say "All of it went well."
