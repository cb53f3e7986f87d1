#!/usr/bin/env bash
# Makes the archive tessel-<version>-<machine>.tar.xz of what packaging/build.sh has built: the
# program with the libraries that it needs, for systems with a C library as new as the builder's.
# usage: packaging/archive.sh <folder of the build tree>
set -euo pipefail

out=${1:?usage: packaging/archive.sh <folder>}
: "${SOURCE_DATE_EPOCH:?packaging/build.sh says the time that the files are to bear}"
# What every desktop has, and what must fit its kernel, its graphics driver or its fonts.
system_libraries='^(ld-linux.*|lib(c|m|dl|rt|pthread|resolv|stdc\+\+|gcc_s|GL|EGL|GLX|GLdispatch|OpenGL|drm|gbm|X11|X11-xcb|xcb|fontconfig|freetype|expat|z))\.so'

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[^=]*=//p' "$out/tree/CMakeCache.txt")
plugins=/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/qt6/plugins
name=tessel-$version-$(dpkg-architecture -qDEB_HOST_GNU_CPU)
stage=$out/stage/$name
program_folder=$stage/lib/tessel

install_program() {
    rm -rf "$out/stage"
    DESTDIR=$stage cmake --install "$out/tree" --prefix / >/dev/null
    strip --remove-section=.comment --remove-section=.note "$program_folder/Tessel"
}

# Those for windows, pictures and printing; themes of other desktops would bring their toolkits.
copy_plugins() {
    local kind
    for kind in platforms platforminputcontexts xcbglintegrations iconengines imageformats printsupport \
        wayland-decoration-client wayland-graphics-integration-client wayland-shell-integration; do
        [[ -d $plugins/$kind ]] || continue
        mkdir -p "$program_folder/plugins"
        cp -r "$plugins/$kind" "$program_folder/plugins/"
    done
    # Displays without a window system are no place for windows.
    find "$program_folder/plugins/platforms" -name '*.so' ! -name 'libqxcb*' ! -name 'libqwayland*' \
        ! -name 'libqoffscreen*' -delete
    printf '[Paths]\nPlugins=plugins\n' >"$program_folder/qt.conf"
}

# What the program itself loads when it first needs it, and with it what that needs.
late_libraries() {
    local library file
    for library in libpq.so.5 libmariadb.so.3; do
        file=$(/sbin/ldconfig -p | sed -n "s/^\t${library//./\\.} .*=> //p" | head -n 1)
        [[ -n $file ]] || { echo "archive.sh: there is no $library here" >&2 && return 1; }
        printf '\t%s => %s (late)\n' "$library" "$file"
        ldd "$file"
    done
}

# A line for each: its name, and where it is here.
needed_libraries() {
    { find "$program_folder" -type f \( -name Tessel -o -name '*.so' \) -exec ldd {} + && late_libraries; } |
        sed -n 's/^\t\([^ ]*\) => \(\/[^ ]*\) .*/\1 \2/p' | grep -vE "$system_libraries" | sort -u
}

# The program finds them by the folder of its own file, however it was started.
copy_libraries() {
    local library file
    mkdir -p "$program_folder/lib"
    while read -r library file; do cp "$file" "$program_folder/lib/$library"; done <<<"$libraries"
    patchelf --force-rpath --set-rpath "\$ORIGIN/lib" "$program_folder/Tessel"
}

package_of() {
    local file
    file=$(realpath "$1")
    { dpkg-query -S "$file" || dpkg-query -S "${file#/usr}"; } 2>/dev/null | sed -n '1s/:.*//p'
}

# Whose libraries these are, under which licence, and from which source package they were built.
copy_licences() {
    local library file package folder=$stage/share/doc/tessel/libraries
    mkdir -p "$folder"
    cp LICENSE README.md "$stage/share/doc/tessel/"
    while read -r library file; do
        package=$(package_of "$file")
        cp -n "/usr/share/doc/$package/copyright" "$folder/$package" || true
        dpkg-query -W -f '${Package} ${Version}, source ${source:Package} ${source:Version}\n' "$package"
    done <<<"$libraries" | sort -u >"$folder/VERSIONS"
}

pack() {
    tar --directory "$out/stage" --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 \
        --numeric-owner --mode=go-w --create "$name" | nice xz -6 -T1 >"$out/archive.part"
    mv "$out/archive.part" "$out/$name.tar.xz"
    rm -rf "$out/stage"
}

printf '== Making the archive %s\n' "$name.tar.xz"
install_program
copy_plugins
libraries=$(needed_libraries)
copy_libraries
copy_licences
pack
