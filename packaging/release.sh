#!/usr/bin/env bash
# Makes and tests what is released: Debian packages, a tarball of the command, SHA256SUMS, in
# build/release-packages. ./dev release installs what it needs and calls it. Its only input is the
# archive that apt uses; a step that can't run here says why, and is no failure.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cd "$here/.."
output=$PWD/build/release-packages
work=$PWD/build/release
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
jobs=$(nproc)
version=$(sed -n 's/^project(Corvid VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt)
tarball=corvid-$version-linux-x86_64
# Both folders of a step have their own names for the same sources.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1
failed=()
skipped=()

say() { printf 'release: %s\n' "$*" >&2; }

# step NAME COMMAND...: runs the command with its output in a log; status 77 is that of a step that
# can't run here, whose last line is the reason.
step() {
    local name=$1 log=$work/${1// /-}.log start=$SECONDS status=0
    # Not as a part of a condition: there a failing command would not end the step.
    set +e
    (
        set -e
        "${@:2}"
    ) >"$log" 2>&1
    status=$?
    set -e
    if ((status == 0)); then
        say "$name: done ($((SECONDS - start)) s)"
        sed -n 's/^report: /  /p' "$log" >&2
    elif ((status == 77)); then
        say "$name: skipped, $(tail -n 1 "$log")"
        skipped+=("$name")
    else
        tail -n 40 "$log" >&2
        say "$name: failed (see $log)"
        failed+=("$name")
    fi
}

# True after the step with this name.
did() {
    local each
    for each in "${failed[@]}" "${skipped[@]}"; do [[ $each != "$1" ]] || return 1; done
}

skip() {
    echo "$*"
    exit 77
}

# The lines of apt for what this system uses of Debian; the argument is deb or deb-src.
debian_sources() {
    apt-get indextargets --format '$(ORIGIN)|$(RELEASE)|$(REPO_URI) $(RELEASE) $(COMPONENT)' \
        'Created-By: Packages' |
        awk -F'|' -v kind="$1" -v key="$keyring" -v suite="$codename" \
            '$1 == "Debian" && index($2, suite) == 1 {print kind " [signed-by=" key "] " $3}' | sort -u
}

# Those of another suite: only its main archive is known to be there.
older_sources() {
    debian_sources deb | awk -v from="$codename" -v to="$1" '$(NF - 1) == from {$(NF - 1) = to; print}'
}
codename=$(. /etc/os-release && [[ $ID == debian ]] && echo "${VERSION_CODENAME-}" || true)

packages() {
    cmake --preset packages
    cmake --build build/packages -j "$jobs"
    (cd build/packages && cpack -B "$work/cpack")
    mv "$work"/cpack/*.deb "$output"
    python3 "$here/check_packages.py" "$output" "$version"
    rm -rf "$work/doc"
    dpkg-deb -x "$output"/corvid-doc_*.deb "$work/doc"
    python3 tests/consumer/documentationLinks.py "$work/doc/usr/share/doc/corvid"
}

lint() {
    [[ $(command -v lintian) ]] || skip "there is no lintian"
    lintian --allow-root --fail-on error "$output"/*.deb
}

static_libraries() {
    cmake --preset static -DCORVID_WITH_XQILLA="${CORVID_WITH_XQILLA:-OFF}"
    cmake --build build/static -j "$jobs" --target corvid corvid_json_schema \
        Corvid_XMLBuilder Corvid_Editing Corvid_Inspection examples_tests
    ctest --test-dir build/static -L consumer --output-on-failure --no-tests=error
}

# What roots need: the right to make them, and an archive to make them from.
needs_roots() {
    ((EUID == 0)) || skip "only root can make a clean root"
    [[ $(command -v mmdebstrap) ]] || skip "there is no mmdebstrap"
    unshare --mount true 2>/dev/null || skip "this machine does not let root mount anything"
    [[ $codename == bookworm ]] || skip "this is not a Debian 12, whose packages these are"
    [[ $(debian_sources deb) ]] || skip "apt knows no Debian archive"
}

# A system without anything beyond the essential packages and those named, made once.
# root SUITE FOLDER [PACKAGE...]
root() {
    local suite=$1 folder=$2 included lines
    [[ ! -e $folder/etc/debian_version ]] || return 0
    included=$(IFS=,; echo "${*:3}")
    rm -rf "$folder"
    mapfile -t lines < <(if [[ $suite == "$codename" ]]; then debian_sources deb; else older_sources "$suite"; fi)
    mmdebstrap --variant=minbase ${included:+--include="$included"} "$suite" "$folder" "${lines[@]}" ||
        {
            rm -rf "$folder"
            skip "mmdebstrap can't make a system of the suite $suite"
        }
}

# fetch_sources PATTERN: what the tarball needs of Debian, from those lines of apt that match.
fetch_sources() {
    rm -rf "$work"/{sources,lists}
    mkdir -p "$work"/{sources,lists/partial}
    debian_sources deb-src | grep -- "$1" >"$work/sources.list"
    local apt=(apt-get -q -o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts=-
        -o Dir::State::Lists="$work/lists" -o APT::Sandbox::User=root)
    (cd "$work/sources" && "${apt[@]}" update &&
        "${apt[@]}" source --download-only xerces-c expat &&
        apt-get -q -o APT::Sandbox::User=root download \
            libcli11-dev libfmt-dev libfmt9 nlohmann-json3-dev)
}

make_tarball() {
    needs_roots
    [[ $(command -v clang++) && $(command -v ld.lld) ]] || skip "there is no clang with lld"
    root bullseye "$work/sysroot" libc6-dev libcurl4-openssl-dev \
        libsodium-dev libstdc++-10-dev libboost-thread-dev
    # Links of the system to itself would lead into this one.
    find "$work/sysroot" -xdev -type l -lname '/*' -printf '%p\0%l\0' |
        while IFS= read -r -d '' link && IFS= read -r -d '' target; do
            ln -sfnr "$work/sysroot$target" "$link"
        done
    # Not every mirror has the sources of what comes by the suites for security and updates.
    fetch_sources . || fetch_sources " $codename main\$"
    # Twice, in different places and without what the compiler has already made.
    local turn
    for turn in first second; do
        rm -rf "$work/$turn"
        mkdir -p "$work/$turn/output"
        ln -s ../sources ../sysroot "$work/$turn"
    done
    "$here/tarball.sh" "$work/first" "$work/first/output"
    CCACHE_DISABLE=1 "$here/tarball.sh" "$work/second" "$work/second/output"
    diff -r "$work/first/output" "$work/second/output" || {
        echo "the same sources made different bytes"
        return 1
    }
    mv "$work"/first/output/* "$output"
    python3 "$here/check_executable.py" "$work/first/$tarball/bin/corvid"
}

# Runs clean-root.sh in a copy of a root.
# in_root SUITE WHAT: WHAT is packages or tarball
in_root() {
    needs_roots
    root "$1" "$work/$1"
    local copy=$work/$1-$2
    rm -rf "$copy"
    cp -a "$work/$1" "$copy"
    mkdir "$copy/corvid"
    cp "$output"/*.deb "$output"/*.tar.gz "$copy/corvid" 2>/dev/null || true
    cp examples/sample.mxf "$here/clean-root.sh" "$copy/corvid"
    cp /etc/resolv.conf "$copy/etc/resolv.conf"
    # The mount ends with the namespace.
    unshare --mount sh -ec '
        mount --bind /proc "$0/proc"
        exec chroot "$0" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C DEBIAN_FRONTEND=noninteractive \
            bash /corvid/clean-root.sh "$1"' "$copy" "$2"
    rm -rf "$copy"
}

interface() {
    [[ $(command -v abidiff) ]] || skip "there is no abidiff (abigail-tools)"
    "$here/interface.sh" check build/packages
}

rm -rf "$output" "$work/cpack"
mkdir -p "$output" "$work"
step packages packages
if did packages; then
    step lintian lint
    step interface interface
    step "packages on Debian 12" in_root bookworm packages
fi
step "static libraries" static_libraries
step tarball make_tarball
if did tarball; then
    step "tarball on Debian 11" in_root bullseye tarball
    step "tarball on Debian 12" in_root bookworm tarball
fi
(cd "$output" && sha256sum -- * >../SHA256SUMS && mv ../SHA256SUMS .)
((${#failed[@]} == 0)) || {
    say "failed: ${failed[*]} ($SECONDS s)"
    exit 1
}
say "$output holds what is released; skipped: ${#skipped[@]} ($SECONDS s)"
