#!/usr/bin/env bash
# What a new user does with what is released, run in a system that has nothing beyond the essential
# packages. Lines that begin with "report: " are shown by ./dev release.
#   clean-root.sh packages|tarball    in the folder with these and sample.mxf
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"

# The time since $start, in tenths of a second.
elapsed() {
    local now=${EPOCHREALTIME/[.,]/}
    printf '%d.%d' $(((now - start) / 1000000)) $(((now - start) / 100000 % 10))
}
begin() { start=${EPOCHREALTIME/[.,]/}; }

# expect_xml COMMAND...: it writes the header metadata of the sample.
expect_xml() {
    "$@" >out.xml
    grep -q '<s377m:Preface' out.xml
    grep -q 'Test picture and tone' out.xml
}

# What every installation of the command does.
use_command() {
    "$1" info sample.mxf | grep -q 'Test picture and tone'
    # What needs Xerces-C, too.
    expect_xml "$1" to-xml --validate sample.mxf
    "$1" check sample.mxf
    "$1" report sample.mxf -o report.html
}

no_broken_links() {
    local broken
    broken=$(find -L "$@" -type l)
    [[ ! $broken ]] || {
        echo "links that lead nowhere: $broken"
        return 1
    }
}

packages() {
    begin
    apt-get -q update
    apt-get -q -y install --no-install-recommends ./corvid_*.deb ./libcorvid0.*.deb
    expect_xml corvid to-xml sample.mxf
    echo "report: from nothing to the first XML: $(elapsed) s, with apt-get update and all that is fetched"
    use_command corvid
    # The libraries are found without any path, and nothing has one to a folder for all.
    ldd /usr/bin/corvid | grep -q '/usr/lib/[^ ]*libCorvid.so\|/lib/[^ ]*libCorvid.so'

    begin
    apt-get -q -y install --no-install-recommends ./corvid-doc_*.deb ./libcorvid-dev_*.deb g++ pkg-config
    program=/usr/share/doc/corvid/examples/printMetadata.cpp
    c++ -std=c++17 "$program" -o printMetadata $(pkg-config --cflags --libs corvid-xmlbuilder)
    expect_xml ./printMetadata sample.mxf
    echo "report: from there to a program of one's own: $(elapsed) s, with the compiler"

    no_broken_links /usr/share/doc/corvid* /usr/share/doc/libcorvid* /usr/include/corvid /usr/lib/*/libCorvid*
    for page in /usr/share/man/man1/corvid*; do
        [[ ! -e $page ]] || gzip -t "$page"
    done
    dpkg -V corvid libcorvid0.1 libcorvid-dev corvid-doc
    apt-get -q -y purge corvid libcorvid0.1 libcorvid-dev corvid-doc
    local left
    left=$(find / -xdev \( -path /corvid -o -path /proc -o -path /dev \) -prune -o -iname '*corvid*' -print)
    [[ ! $left ]] || {
        echo "left after the packages are removed: $left"
        return 1
    }
}

tarball() {
    begin
    tar -xzf corvid-*.tar.gz
    local root
    root=$(echo corvid-*/)
    expect_xml "${root}bin/corvid" to-xml sample.mxf
    echo "report: from the tarball to the first XML: $(elapsed) s"
    use_command "${root}bin/corvid"
    no_broken_links "$root"
}

"$1"
