"""Verifies a header partition that `corvid from-xml` wrote of a file's document against the file.

    check_header.py FILE.mxf HEADER.mxf [--ffprobe PATH] [--registers DIR]

Prints every difference; exit status 1 if there is one. Dark sets are compared byte for byte, with what
the primer packs say of their local tags; all others property by property, by label and bytes.

With ffprobe the header takes the place of the file's own, where no essence follows that directly:
the program must see the same streams, and complain of nothing that it did not complain of before.
"""
import argparse
import subprocess
import sys
from collections import Counter

import facts as knowledge
import klv
from klv import hexpairs, unversioned

KAG = 512
PATTERN = bytes.fromhex("060e2b34010101000102020300000000")
CONTAINERS = bytes.fromhex("060e2b34010101000102021002010000")


def properties(item, primer, static_tags, versioned):
    """Counts (label, value) for each property of a set; a tag without label stands for itself. Of a
    label that no file had, as the tag alone was there, the version takes no part."""
    found = Counter()
    for tag, value in item.properties:
        label = primer.get(tag) or static_tags.get(tag) or tag
        if label not in versioned and label != tag:
            label = unversioned(label)
        found[label, value] += 1
    return found


def tags_of(item):
    """The local tags in the bytes of a set, as far as they can be separated."""
    at, value = 0, item.value
    while at + 4 <= len(value):
        size = int.from_bytes(value[at + 2 : at + 4], "big")
        if at + 4 + size > len(value):
            return
        yield int.from_bytes(value[at : at + 2], "big")
        at += 4 + size


def name(label):
    return "tag %04x" % label if isinstance(label, int) else hexpairs(label)


def structure(data):
    """What is amiss with pack, fill and the limits of the metadata."""
    pack = klv.Triplet(data, 0)
    if pack.key != bytes.fromhex("060e2b34020501010d01020101020400") or pack.ber_octets != 4:
        yield "no closed and complete header partition pack: %s" % hexpairs(pack.key)
    partition = klv.Partition(data, 0, 0)
    if partition.fault:
        yield partition.fault
    for what, found, expected in (
        ("version", (partition.major, partition.minor), (1, 3)),
        ("KAG size", partition.kag, KAG),
        ("this, previous and footer partition", partition.this + partition.previous, 0),
        ("footer partition", partition.footer, 0),
        ("index bytes", partition.index_bytes, 0),
        ("SIDs and body offset", pack.value[48:64], bytes(16)),
        ("size of the file", len(data) % KAG, 0),
    ):
        if found != expected:
            yield "%s: expected %s, found %s" % (what, expected, found)
    at, order = pack.end, []
    while at < len(data):
        item = klv.Triplet(data, at)
        order.append(
            "fill" if item.is_a(klv.FILL) else "primer" if item.is_a(klv.PRIMER) else "set"
        )
        if order[-1] == "primer" and (at % KAG or at + partition.header_bytes != len(data)):
            yield "primer at %d, %d bytes of metadata" % (at, partition.header_bytes)
        if order[-1] == "fill" and (item.ber_octets != 4 or item.value.strip(b"\0")):
            yield "fill at %d with %d octets of length" % (at, item.ber_octets)
        at = item.end
    if order.count("primer") != 1 or "fill" in order[2:-1] or order[:1] not in (
        ["fill"],
        ["primer"],
    ):
        yield "order of the file: %s" % " ".join(order)
    yield from against_preface(pack, partition)


def against_preface(pack, partition):
    if not partition.sets or not partition.sets[0].is_a(klv.PREFACE):
        yield "the first set is no Preface"
        return
    labels = partition.primer
    values = {
        unversioned(labels[tag]): value
        for tag, value in partition.sets[0].properties or []
        if tag in labels
    }
    if pack.value[64:80] != values.get(PATTERN, bytes(16)):
        yield "operational pattern: found %s" % hexpairs(pack.value[64:80])
    empty = bytes.fromhex("0000000000000010")
    if pack.value[80:] != values.get(CONTAINERS, empty):
        yield "essence containers: found %s" % hexpairs(pack.value[80:])


def differences(path, header_path, facts):
    """Everything that is amiss with a header made of the document of the file at `path`."""
    with open(header_path, "rb") as file:
        data = file.read()
    yield from structure(data)
    old, new = klv.choose(klv.read(path)), klv.Partition(data, 0, 0)
    if len(set(new.primer.values())) != len(new.primer):
        yield "a label is in the primer pack twice"
    labels = set(old.primer.values())
    same = Counter((item.key, item.ber_octets, item.value) for item in new.sets)
    sets = {}
    for item in new.sets:
        sets.setdefault((item.key, item.uid), []).append(item)
    for item in old.sets:
        where = "set %s %s" % (hexpairs(item.key), hexpairs(item.uid or b""))
        if item.properties is None or not facts.group_of(item.key):
            if not same[item.key, item.ber_octets, item.value]:
                yield "%s: not there byte for byte" % where
            for tag in tags_of(item):
                if tag in old.primer and new.primer.get(tag) != old.primer[tag]:
                    yield "%s: %s is no longer %s" % (where, name(tag), name(old.primer[tag]))
            continue
        twins = sets.get((item.key, item.uid))
        if not twins:
            yield "%s: not there" % where
            continue
        # The primer of the header must have every tag whose meaning is known.
        wanted = properties(item, old.primer, facts.static_tags, labels)
        found = [properties(twin, new.primer, {}, labels) for twin in twins]
        if wanted not in found:
            for label, value in wanted - found[0]:
                yield "%s: lacks %s %s" % (where, name(label), value[:40].hex())
            for label, value in found[0] - wanted:
                yield "%s: has %s %s" % (where, name(label), value[:40].hex())
    if sum(map(len, sets.values())) != len(old.sets):
        yield "not as many sets as the file has"


def exchanged(path, header_path):
    """The file with the other header, or None where that has no room or must have essence."""
    with open(path, "rb") as file:
        data = file.read()
    with open(header_path, "rb") as file:
        header = file.read()
    old, pack = klv.Partition(data, 0, 0), klv.Triplet(data, 0)
    item = klv.Triplet(data, pack.end)
    while item.is_a(klv.FILL):
        item = klv.Triplet(data, item.end)
    end = item.at + old.header_bytes
    room = end - len(header)
    if pack.value[60:64] != bytes(4) or room < 0 or 0 < room < 20:
        return None
    if room:
        header += klv.FILL + b"\x83" + (room - 20).to_bytes(3, "big") + bytes(room - 20)
    return header + data[end:]


def probe(ffprobe, path):
    entries = "stream=index,codec_name,codec_type,duration:format=format_name,duration"
    done = subprocess.run(
        [ffprobe, "-v", "warning", "-of", "compact", "-show_entries", entries, path],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        timeout=60,
    )
    said = [line.partition("] ")[2] or line for line in done.stderr.decode().splitlines()]
    return done.returncode, done.stdout.decode(), said


def probed(ffprobe, path, header_path, scratch):
    """What ffprobe sees in the header that it does not see in the file's own."""
    other = exchanged(path, header_path)
    if other is None:
        return
    with open(scratch, "wb") as file:
        file.write(other)
    for old, new in zip(probe(ffprobe, path), probe(ffprobe, scratch)):
        if old != new:
            yield "ffprobe: expected %r, found %r" % (old, new)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file")
    parser.add_argument("header")
    parser.add_argument("--ffprobe")
    parser.add_argument("--registers")
    arguments = parser.parse_args()
    found = list(
        differences(arguments.file, arguments.header, knowledge.load(arguments.registers))
    )
    if arguments.ffprobe:
        scratch = arguments.header + ".joined.mxf"
        found += probed(arguments.ffprobe, arguments.file, arguments.header, scratch)
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
