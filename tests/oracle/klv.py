"""A plain KLV walker for MXF header metadata (SMPTE ST 377-1).

It exists to disagree with the library: it shares no code with it, reads the whole file into memory
and takes the most naive way everywhere. Run it on files to see what it finds.
"""
import struct
import sys

PACK = bytes.fromhex("060e2b34020501010d01020101")
RANDOM_INDEX = bytes.fromhex("060e2b34020501010d01020101110100")
PRIMER = bytes.fromhex("060e2b34020501010d01020101050100")
FILL = bytes.fromhex("060e2b34010101010301021001000000")
PREFACE = bytes.fromhex("060e2b34025301010d01010101012f00")
INSTANCE_UID = bytes.fromhex("060e2b34010101010101150200000000")
KINDS = {2: "header", 3: "body", 4: "footer"}


class Unreadable(Exception):
    """The bytes are not what they claim to be."""


def unversioned(label):
    """The label with its registry version (byte 8), which takes no part in matching, blanked."""
    return label[:7] + b"\0" + label[8:]


def hexpairs(data):
    """Identifier text: lower-case hexadecimal pairs joined by full stops."""
    return ".".join("%02x" % byte for byte in data)


class Triplet:
    def __init__(self, data, at):
        self.at = at
        self.key = data[at : at + 16]
        if len(self.key) < 16 or at + 17 > len(data):
            raise Unreadable("no whole key at %d" % at)
        first = data[at + 16]
        more = first & 0x7F if first & 0x80 else 0
        if first == 0x80 or more > 8 or at + 17 + more > len(data):
            raise Unreadable("length at %d is not one" % (at + 16))
        self.length = int.from_bytes(data[at + 17 : at + 17 + more], "big") if more else first
        self.ber_octets = 1 + more
        self.start = at + 17 + more
        self.end = self.start + self.length
        if self.end > len(data):
            raise Unreadable("value at %d runs past the end of the file" % self.start)
        self.value = data[self.start : self.end]

    def is_a(self, key):
        return unversioned(self.key) == unversioned(key)


class LocalSet(Triplet):
    """One KLV of the header metadata; `properties` is None where it is no well-formed local set."""

    def __init__(self, data, at, primer):
        super().__init__(data, at)
        self.properties = self._parse() if self.key[:6] == PREFACE[:6] else None
        self.uid = None
        self.primer_holds_all = True
        for tag, value in self.properties or []:
            label = primer.get(tag) or (INSTANCE_UID if tag == 0x3C0A else None)
            self.primer_holds_all &= label is not None
            if label and unversioned(label) == unversioned(INSTANCE_UID) and len(value) == 16:
                self.uid = self.uid or value

    def _parse(self):
        found, at = [], 0
        while at < len(self.value):
            if at + 4 > len(self.value):
                return None
            tag, length = struct.unpack_from(">HH", self.value, at)
            at += 4
            if at + length > len(self.value):
                return None
            found.append((tag, self.value[at : at + length]))
            at += length
        return found


class Partition:
    """A partition pack and, if it has any, its header metadata."""

    def __init__(self, data, base, offset):
        pack = Triplet(data, base + offset)
        if pack.key[:5] + pack.key[8:13] != PACK[:5] + PACK[8:13] or pack.key[13] not in KINDS:
            raise Unreadable("no partition pack at %d" % (base + offset))
        if pack.length < 88:
            raise Unreadable("partition pack at %d is too short" % (base + offset))
        self.offset = offset
        self.kind = KINDS[pack.key[13]]
        self.complete = pack.key[14] in (3, 4)
        self.status = pack.key[14]
        (
            self.major,
            self.minor,
            self.kag,
            self.this,
            self.previous,
            self.footer,
            self.header_bytes,
            self.index_bytes,
        ) = struct.unpack_from(">HHIQQQQQ", pack.value)
        self.primer, self.sets, self.fault = {}, [], None
        if self.header_bytes:
            try:
                self._read_metadata(data, pack.end)
            except Unreadable as fault:
                self.fault = str(fault)

    def _read_metadata(self, data, at):
        item = Triplet(data, at)
        while item.is_a(FILL):  # A fill before the primer belongs to the pack.
            at = item.end
            item = Triplet(data, at)
        if not item.is_a(PRIMER):
            raise Unreadable("no primer at %d" % at)
        end = at + self.header_bytes
        count, size = struct.unpack_from(">II", item.value) if item.length >= 8 else (0, 18)
        if count and (size != 18 or 8 + 18 * count > item.length):
            raise Unreadable("the primer at %d is no batch of 18-byte items" % at)
        for index in range(count):
            tag, label = struct.unpack_from(">H16s", item.value, 8 + 18 * index)
            self.primer.setdefault(tag, label)
        at = item.end
        while at < end:
            item = LocalSet(data, at, self.primer)
            if item.end > end:
                raise Unreadable("set at %d runs past the header metadata" % at)
            if not item.is_a(FILL):
                self.sets.append(item)
            at = item.end


def partitions(data):
    """All partitions that header, random index, footer and their chain lead to."""
    base = data.find(PACK[:11], 0, 65535 + 11)
    if base < 0:
        raise Unreadable("no header partition")
    header = Partition(data, base, 0)
    offsets = {0} | set(random_index(data))
    chain = [header.footer]
    found = {0: header}
    for offset in sorted(offsets):
        chain.append(offset)
    while chain:
        offset = chain.pop()
        if offset in found:
            continue
        try:
            found[offset] = Partition(data, base, offset)
        except Unreadable:
            continue
        chain += [found[offset].previous, found[offset].footer]
    return [found[offset] for offset in sorted(found)]


def random_index(data):
    if len(data) < 4:
        return []
    whole = int.from_bytes(data[-4:], "big")
    if not 21 <= whole <= len(data):
        return []
    try:
        pack = Triplet(data, len(data) - whole)
    except Unreadable:
        return []
    if not pack.is_a(RANDOM_INDEX) or pack.end != len(data):
        return []
    return [
        int.from_bytes(pack.value[at + 4 : at + 12], "big") for at in range(0, pack.length - 4, 12)
    ]


def choose(found):
    """The last complete copy of the metadata, else the last copy."""
    readable = [p for p in found if p.header_bytes and not p.fault]
    if not readable:
        raise Unreadable("; ".join(p.fault for p in found if p.fault) or "no header metadata")
    return ([p for p in readable if p.complete] or readable)[-1]


def read(path):
    with open(path, "rb") as file:
        return partitions(file.read())


if __name__ == "__main__":
    for name in sys.argv[1:]:
        try:
            every = read(name)
            taken = choose(every)
        except Unreadable as fault:
            print("%s: %s" % (name, fault))
            continue
        print(
            "%s: %s"
            % (
                name,
                "; ".join(
                    "%s at %d %s, %d sets%s%s"
                    % (
                        p.kind,
                        p.offset,
                        "complete" if p.complete else "incomplete",
                        len(p.sets),
                        " (" + p.fault + ")" if p.fault else "",
                        " *" if p is taken else "",
                    )
                    for p in every
                ),
            )
        )
