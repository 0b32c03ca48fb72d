#!/usr/bin/env bash
# Usage: tarball.sh WORK OUTPUT
# Makes the tarball of the command for Linux on x86-64 in the folder OUTPUT, and a list of what is in
# the command (SPDX). The command is one executable that needs only the C library. The folder WORK has
#   sysroot/  a Debian 11 with the packages that release.sh names
#   sources/  the source packages of Xerces-C and expat, and those header-only libraries as .deb files
# Everything else in WORK is made anew.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
project=$(dirname "$here")
work=$(realpath "$1")
output=$(realpath "$2")
jobs=$(nproc)
deps=$work/deps
version=$(sed -n 's/^project(Corvid VERSION \([0-9.]*\).*/\1/p' "$project/CMakeLists.txt")
name=corvid-$version-linux-x86_64
# One time for all files, that of the commit, so that the same sources make the same bytes.
SOURCE_DATE_EPOCH=$(git -C "$project" log -1 --format=%ct)
export SOURCE_DATE_EPOCH LC_ALL=C TZ=UTC
# Names of sources in the command are relative to the project. With a base, ccache makes them relative
# to the folder of the build before the compiler can.
unset CCACHE_BASEDIR

rm -rf "$deps" "$work"/{unpacked,build,"$name"}
mkdir -p "$deps/usr" "$work"/{unpacked,build}

configure() {
    local source=$1 build=$2
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$here/toolchain.cmake" \
        -DCORVID_SYSROOT="$work/sysroot" -DCORVID_DEPS="$deps" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX=/usr -DBUILD_SHARED_LIBS=OFF "${@:3}"
}

# The header-only libraries. One of them has a package for CMake that asks for its shared library, too.
for package in "$work"/sources/*.deb; do dpkg-deb -x "$package" "$deps"; done

# Debian's source packages, with Debian's patches.
for package in expat xerces-c; do
    dpkg-source --no-check -x "$work/sources/$package"_*.dsc "$work/unpacked/$package"
done
# A patch compares this macro with a number, as it is after a build with autoconf.
sed -i 's/^#cmakedefine XML_DTD$/#cmakedefine XML_DTD 1/' "$work/unpacked/expat/expat/expat_config.h.cmake"
# Only the library.
sed -i '/^add_subdirectory(\(doc\|tests\|samples\))/d' "$work/unpacked/xerces-c/CMakeLists.txt"

# library NAME FOLDER [CMAKE-ARGUMENT...]
library() {
    local unpacked=$work/unpacked/$1
    configure "$unpacked/$2" "$work/build/$1" "${@:3}" \
        -DCMAKE_C_FLAGS_RELEASE="-O2 -DNDEBUG -ffile-prefix-map=$work/=" \
        -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG -ffile-prefix-map=$work/="
    cmake --build "$work/build/$1" -j "$jobs"
    DESTDIR=$deps cmake --install "$work/build/$1"
}
library expat expat -DEXPAT_SHARED_LIBS=OFF -DEXPAT_BUILD_TOOLS=OFF -DEXPAT_BUILD_TESTS=OFF \
    -DEXPAT_BUILD_EXAMPLES=OFF -DEXPAT_BUILD_DOCS=OFF
library xerces-c . -Dnetwork=OFF -Dtranscoder=gnuiconv -Dmessage-loader=inmemory \
    -Dxmlch-type=char16_t

archives=$work/sysroot/usr/lib/x86_64-linux-gnu
configure "$project" "$work/build/corvid" -DCORVID_WITH_XQILLA=OFF -DCORVID_BUILD_TESTS=OFF \
    -DCORVID_BUILD_FUZZ=OFF -DCORVID_BUILD_BENCH=OFF -DCORVID_STRICT=ON \
    -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG -ffile-prefix-map=$work/=" -DBoost_USE_STATIC_LIBS=ON \
    -DSodium_LIBRARY="$archives/libsodium.a" -DCMAKE_INSTALL_DOCDIR=share/doc/corvid
cmake --build "$work/build/corvid" -j "$jobs" --target corvid corvid_json_schema

root=$work/$name
for component in Command Documentation; do
    cmake --install "$work/build/corvid" --component "$component" --prefix "$root"
done
python3 "$here/components.py" "$project" "$work" "$version" "$name" "$output"
cp -r "$work/licences" "$root/share/doc/corvid/licences"

find "$root" -type d -exec chmod 755 {} +
tar --sort=name --mtime="@$SOURCE_DATE_EPOCH" --owner=0 --group=0 --numeric-owner \
    -C "$work" -cf - "$name" | gzip -9n >"$output/$name.tar.gz"
