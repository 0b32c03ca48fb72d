#!/bin/sh
# Runs tests of real files on an XFS of their own, which nobody else sees and which goes with them:
#     on-xfs.sh PROGRAM
# Exit status 77 where this system lets nobody make or mount one.
set -u
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
truncate -s 512M "$folder/image"
mkdir "$folder/xfs"
if ! mkfs.xfs -q "$folder/image"; then
    echo "there is no mkfs.xfs"
    exit 77
fi
if ! unshare --mount mount -o loop "$folder/image" "$folder/xfs"; then
    echo "XFS can't be mounted here"
    exit 77
fi
# A file system that inserts no blocks would skip what this is about.
TMPDIR=$folder/xfs unshare --mount sh -c '
    mount -o loop "$1" "$2" && "$3" --gtest_filter="RealBlocks.*:RealFiles.*:*RealOddFiles*:LeasedFile.*:*Ffmpeg*"
    ' sh "$folder/image" "$folder/xfs" "$program" >"$folder/said"
status=$?
cat "$folder/said"
if grep -q 'SKIPPED.*RealBlocks' "$folder/said"; then
    echo "no blocks were inserted"
    exit 1
fi
exit $status
