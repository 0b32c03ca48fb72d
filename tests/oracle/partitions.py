"""What an edit of header metadata must leave alone, by a naive walk through a whole MXF file.

partitions.py FILE...         lists the pieces of files
partitions.py BEFORE AFTER --edited   compares a file with itself after an edit: status 1 where
essence, index tables, packs or the random index pack are not what they have to be

It walks from key to key (SMPTE ST 377-1), believes no offset, and reads whole files into memory.
"""
import hashlib
import struct
import sys

from klv import FILL, PACK, PRIMER, RANDOM_INDEX, Triplet, Unreadable, unversioned

# What follows the length of a partition pack.
FIELDS = ("major", "minor", "kag", "this", "previous", "footer", "header_bytes", "index_bytes")
FIELDS += ("index_sid", "body_offset", "body_sid")
MOVING = ("this", "previous", "footer", "header_bytes")
# An edit may change what the packs repeat of the Preface, and their status.
REPEATED = ("status", "pattern", "containers")


def is_pack(key):
    return key[:5] + key[8:13] == PACK[:5] + PACK[8:13] and key[13] in (2, 3, 4)


class Part:
    """A partition: the fields of its pack, its header metadata and what follows that."""

    def __init__(self, data, item):
        if item.length < 88:
            raise Unreadable("the partition pack at %d is too short" % item.at)
        self.at = item.at
        self.kind = item.key[13]
        self.key = item.key[:14] + item.key[15:]  # without the status
        self.fields = dict(zip(FIELDS, struct.unpack_from(">HHIQQQQQIQI", item.value)))
        self.fields["status"] = item.key[14]
        self.fields["pattern"] = item.value[64:80]
        self.fields["containers"] = item.value[80:]
        self.head = item.end - item.at  # of the pack
        self.metadata = (item.end, item.end)
        self.end = item.end


def walk(data):
    """The partitions, and where the random index pack is (None without one)."""
    base = data.find(PACK[:11], 0, 65535 + 11)
    if base < 0:
        raise Unreadable("no header partition")
    parts, index, at = [], None, base
    while at < len(data):
        try:
            item = Triplet(data, at)
        except Unreadable:
            break  # a file that was cut off
        if is_pack(item.key):
            parts.append(Part(data, item))
            at = item.end
            start = at
            while start < len(data):
                try:
                    first = Triplet(data, start)
                except Unreadable:
                    break
                if not first.is_a(FILL):
                    if first.is_a(PRIMER) and parts[-1].fields["header_bytes"]:
                        end = start + parts[-1].fields["header_bytes"]
                        parts[-1].metadata = (start, min(end, len(data)))
                        at = parts[-1].metadata[1]
                    break
                start = first.end
            parts[-1].end = at
            continue
        if unversioned(item.key) == unversioned(RANDOM_INDEX):
            index = at
            break
        if not parts:
            raise Unreadable("no partition pack at %d" % at)
        at = parts[-1].end = item.end
    if not parts:
        raise Unreadable("no whole partition pack")
    if index is None:
        parts[-1].end = len(data)
    return base, parts, index


def digest(data):
    return hashlib.sha256(data).hexdigest()[:16]


def faults_in(data):
    """What the packs and the random index pack say that is not so."""
    base, parts, index = walk(data)
    faults = []
    previous = 0
    last = parts[-1]
    for number, part in enumerate(parts):
        expected = {"this": part.at - base, "previous": previous}
        if part.fields["footer"] != 0:
            expected["footer"] = last.at - base if last.kind == 4 else -1
        for field, value in expected.items():
            if part.fields[field] != value:
                faults.append(
                    "partition %d: %s is %d, not %d" % (number, field, part.fields[field], value)
                )
        previous = part.at - base
    if index is not None:
        item = Triplet(data, index)
        if item.length % 12 != 4:
            return faults + ["random index pack: its length is %d" % item.length]
        found = [struct.unpack_from(">IQ", item.value, at) for at in range(0, item.length - 4, 12)]
        wanted = [(part.fields["body_sid"], part.at - base) for part in parts]
        if found != wanted:
            faults.append("random index pack: %s, not %s" % (found, wanted))
        if struct.unpack_from(">I", item.value, item.length - 4)[0] != item.end - index:
            faults.append("random index pack: wrong length at its end")
    return faults


def differences(before, after):
    """What differs of two files beside header metadata and what must follow it."""
    base, old, old_index = walk(before)
    base_after, new, new_index = walk(after)
    found = []
    if before[:base] != after[:base_after]:
        found.append("run-in differs")
    if len(old) != len(new):
        return found + ["%d partitions, then %d" % (len(old), len(new))]
    for number, (was, now) in enumerate(zip(old, new)):
        name = "partition %d: " % number
        if was.key != now.key:
            found.append(name + "another key")
        for field, value in was.fields.items():
            if field not in MOVING + REPEATED and now.fields[field] != value:
                found.append(name + "%s was %s, is %s" % (field, value, now.fields[field]))
        if (was.fields["footer"] == 0) != (now.fields["footer"] == 0):
            found.append(
                name + "footer was %d, is %d" % (was.fields["footer"], now.fields["footer"])
            )
        if was.head != now.head:
            found.append(name + "the pack has another size")
        moved = now.at - was.at
        if moved % max(was.fields["kag"], 1):
            found.append(name + "moved by %d, which is no multiple of its KAG" % moved)
        grown = (now.metadata[1] - now.metadata[0]) - (was.metadata[1] - was.metadata[0])
        if now.fields["header_bytes"] != was.fields["header_bytes"] + grown:
            found.append(name + "HeaderByteCount is %d" % now.fields["header_bytes"])
        if was.at + was.head < was.metadata[0] and (
            before[was.at + was.head : was.metadata[0]]
            != after[now.at + now.head : now.metadata[0]]
        ):
            found.append(name + "what is before the metadata differs")
        rest = before[was.metadata[1] : was.end]
        rest_after = after[now.metadata[1] : now.end]
        if rest != rest_after:
            found.append(
                name
                + "what follows the metadata differs: %s, then %s"
                % (digest(rest), digest(rest_after))
            )
    if (old_index is None) != (new_index is None):
        found.append("the random index pack comes or goes")
    elif old_index is not None:
        if len(before) - old_index != len(after) - new_index:
            found.append("the random index pack has another size")
    return found


def main(arguments):
    if arguments[2:] == ["--edited"]:
        with open(arguments[0], "rb") as file:
            before = file.read()
        with open(arguments[1], "rb") as file:
            after = file.read()
        problems = differences(before, after)
        if not faults_in(before):
            problems += faults_in(after)
        for problem in problems:
            print(problem)
        return 1 if problems else 0
    for name in arguments:
        with open(name, "rb") as file:
            data = file.read()
        base, parts, index = walk(data)
        print("%s: run-in %d, random index pack at %s" % (name, base, index))
        for part in parts:
            print(
                "  at %d kind %d %s metadata %s rest to %d %s"
                % (
                    part.at,
                    part.kind,
                    {k: v for k, v in part.fields.items() if k not in ("pattern", "containers")},
                    part.metadata,
                    part.end,
                    digest(data[part.metadata[1] : part.end]),
                )
            )
        for fault in faults_in(data):
            print("  " + fault)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
