"""Makes clips longer, mostly in front of their footer partition, with fill that is not written: sparse files."""

import struct

PARTITION = bytes.fromhex("060e2b34020501010d010201")
FILL = bytes.fromhex("060e2b34010101020301021001000000")
# In the value of a partition pack, SMPTE ST 377-1.
THIS, PREVIOUS, FOOTER, METADATA = 8, 16, 24, 32
ESSENCE_CONTAINERS = 80


def unfinished(source, target, gap):
    """Writes the front of source to target, as a recording that was not ended: its header says that it is open, names
    no footer, and gap bytes of small fill come last."""
    with open(source, "rb") as file:
        clip = bytearray(file.read())
    footer = _value(clip, 0) + FOOTER
    (end,) = struct.unpack_from(">Q", clip, footer)
    clip[14] = 1
    struct.pack_into(">Q", clip, footer, 0)
    with open(target, "wb") as file:
        file.write(clip[:end] + (_fill(8192) + bytes(8192 - 25)) * (gap // 8192))


def _value(clip, offset):
    """The offset of the value of the KLV triplet there."""
    first = clip[offset + 16]
    return offset + 17 + (first & 0x7F if first & 0x80 else 0)


def _fill(gap):
    """The head of a triplet of gap bytes."""
    return FILL + b"\x88" + struct.pack(">Q", gap - 25)


def lengthen(source, target, gap, partitions=0):
    """Writes source to target with gap bytes before its footer: fill, or so many body partitions with as
    much fill after each."""
    with open(source, "rb") as file:
        clip = bytearray(file.read())
    (index_size,) = struct.unpack(">I", clip[-4:])
    start = len(clip) - index_size
    index = _value(clip, start)
    entries = [struct.unpack_from(">IQ", clip, at) for at in range(index, len(clip) - 4, 12)]
    footer = entries[-1][1]
    new_footer = footer + gap
    for _, offset in entries:
        assert clip[offset : offset + 12] == PARTITION
        struct.pack_into(">Q", clip, _value(clip, offset) + FOOTER, new_footer)
    value = _value(clip, footer)
    struct.pack_into(">Q", clip, value + THIS, new_footer)
    each = gap // partitions // 4096 * 4096 if partitions else gap
    added = [footer + number * each for number in range(partitions)]
    with open(target, "wb") as file:
        file.write(clip[:footer])
        previous = entries[-2][1]
        for number, offset in enumerate(added):
            pack = bytearray(PARTITION + b"\x01\x03\x04\x00\x58" + clip[_value(clip, 0) :][:ESSENCE_CONTAINERS])
            pack += struct.pack(">II", 0, 16)
            struct.pack_into(">QQ", pack, 17 + THIS, offset, previous)
            pack[17 + METADATA : 17 + 64] = bytes(32)
            previous = offset
            size = (new_footer if number + 1 == partitions else offset + each) - offset
            file.seek(offset)
            file.write(pack + _fill(size - len(pack)))
        if not partitions:
            file.write(_fill(gap))
        else:
            struct.pack_into(">Q", clip, value + PREVIOUS, previous)
        entries = entries[:-1] + [(0, offset) for offset in added] + [(entries[-1][0], new_footer)]
        file.seek(new_footer)
        file.write(clip[footer:start] + clip[start : start + 16])
        pairs = b"".join(struct.pack(">IQ", *entry) for entry in entries)
        file.write(b"\x83" + struct.pack(">I", len(pairs) + 4)[1:] + pairs)
        file.write(struct.pack(">I", 20 + len(pairs) + 4))
