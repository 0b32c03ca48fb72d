#!/bin/sh
# Edits a clip on small file systems of their own that are full but for a few blocks, from none to
# more than the edit needs:
#     on-full-disks.sh CORVID CLIP.mxf
# Exit status 77 where this system lets nobody mount one.
set -u
corvid=$1
clip=$2
if [ -z "${3-}" ]; then
    folder=$(mktemp -d)
    trap 'rm -rf "$folder"' EXIT
    if ! unshare --mount mount -t tmpfs none "$folder"; then
        echo "nothing can be mounted here"
        exit 77
    fi
    # What is mounted goes with the namespace.
    unshare --mount "$0" "$corvid" "$clip" "$folder"
    exit
fi
folder=$3
mkdir "$folder/tmpfs" "$folder/ext4"
mount -t tmpfs -o size=512k none "$folder/tmpfs" || exit 77
truncate -s 4M "$folder/image" && mkfs.ext4 -q -m 0 "$folder/image" &&
    mount -o loop "$folder/image" "$folder/ext4"
hasExt4=$?
rm -f "$folder/image"

name() { head -c "$1" /dev/zero | tr '\0' n; }

failed=0
complain() {
    echo "$*"
    failed=1
}

# Edits the clip with so many blocks left, and looks at what is there then.
edit() {
    disk=$1
    blocks=$2
    title=$3
    rm -rf "${disk:?}"/* "${disk:?}"/.[a-z]*
    cp "$clip" "$disk/clip.mxf"
    free=$(stat -f -c %a "$disk")
    size=$(stat -f -c %S "$disk")
    head -c $(((free - blocks) * size)) /dev/zero >"$disk/filler" 2>"$disk.said"
    "$corvid" set "$disk/clip.mxf" "MaterialPackage/PackageName=$title" >"$disk.said" 2>&1
    status=$?
    case $status in
    0)
        done=$((done + 1))
        [ "$("$corvid" get "$disk/clip.mxf" MaterialPackage/PackageName)" = "$title" ] ||
            complain "$disk: $blocks blocks: the clip lacks the edit"
        ;;
    3)
        full=$((full + 1))
        grep -q 'No space left on device' "$disk.said" || complain "$(cat "$disk.said")"
        cmp "$clip" "$disk/clip.mxf" || complain "$disk: $blocks blocks: the clip has changed"
        ;;
    *) complain "$disk: $blocks blocks: status $status: $(cat "$disk.said")" ;;
    esac
    [ "$(find "$disk" -mindepth 1 -maxdepth 1 ! -name lost+found | wc -l)" = 2 ] ||
        complain "$disk: $blocks blocks: $(ls -A "$disk")"
}

for disk in "$folder/tmpfs" "$folder/ext4"; do
    [ "$disk" = "$folder/tmpfs" ] || [ $hasExt4 = 0 ] || continue
    for length in 20 9000; do
        done=0
        full=0
        title=$(name $length)
        for blocks in 0 1 2 3 4 5 6 7 8 9 10 12 14 16 20 24 30 50 70 100; do
            edit "$disk" $blocks "$title"
        done
        echo "${disk##*/}, $length characters: $done edits, $full times no room"
        [ $done != 0 ] && [ $full != 0 ] || complain "the disk was never full, or always"
    done
done
exit $failed
