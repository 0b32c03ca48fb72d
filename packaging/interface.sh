#!/usr/bin/env bash
# Usage: interface.sh check|accept BUILD
# Compares the interface of the libraries in a build with debug information, such as that of the preset
# packages, with the one that packaging/interface has for this minor version: what a program may use
# must stay there, as it is (docs/compatibility.md). "accept" writes it anew.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$2
version=$(sed -n 's/^project(Corvid VERSION \([0-9]*\.[0-9]*\).*/\1/p' "$here/../CMakeLists.txt")
folder=$here/interface/$version
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
status=0

cmake --install "$build" --component Development --prefix "$scratch/installed" >/dev/null
[[ $1 != accept ]] || { rm -rf "$folder" && mkdir -p "$folder"; }
[[ -d $folder ]] || {
    echo "there is no interface of version $version to compare with: interface.sh accept writes it"
    exit 1
}
count=0
while read -r library; do
    name=${library##*/}
    name=${name%%.so*}
    found=$scratch/$name.abi
    # Only what the installed headers declare counts.
    abidw --headers-dir "$scratch/installed/include/corvid" --drop-private-types \
        --drop-undefined-syms --exported-interfaces-only --suppressions "$here/interface/not-ours" \
        --no-show-locs --no-corpus-path --no-comp-dir-path --no-elf-needed --out-file "$found" "$library"
    if [[ $1 == accept ]]; then
        xz -9 --stdout "$found" >"$folder/$name.abi.xz"
    else
        xz --decompress --stdout "$folder/$name.abi.xz" >"$scratch/$name.expected.abi"
        abidiff --no-added-syms --suppressions "$here/interface/not-ours" \
            "$scratch/$name.expected.abi" "$found" || status=1
    fi
    count=$((count + 1))
done < <(find "$build" -type f -name 'libCorvid*.so.*.*.*' -not -path '*/_CPack_Packages/*' | sort)
((count == 5)) || {
    echo "found $count libraries in $build, expected 5"
    exit 1
}
exit "$status"
