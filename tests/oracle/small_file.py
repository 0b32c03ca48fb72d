"""A small MXF file that has one of everything; small.xml is its document, checked by hand."""
import struct

SET_KEY = "060e2b34025301010d0101010101%02x00"


def ul(text):
    return bytes.fromhex(text)


# Labels of the properties that have no static tag, with the tags that this file gives them.
DYNAMIC = {
    0x8001: ul("060e2b34010101090601010406100000"),  # SubDescriptors
    0x8002: ul("060e2b340101010a0401060301000000"),  # Rsiz
    0x8003: ul("060e2b340101010a040106030b000000"),  # PictureComponentSizing
    0x8004: ul("060e2b340101010a040106030c000000"),  # CodingStyleDefault
    0x8005: ul("060e2b340101010a040106030d000000"),  # QuantizationDefault
    0x8006: ul("060e2b340101010d0301010203150000"),  # RFC5646SpokenLanguage
    0x8007: ul("060e2b34010101070101150900000000"),  # ExtendedClipID
    0x8008: ul("060e2b34010101040702010301070000"),  # KeypointPosition
    0x8009: ul("060e2b34010101010d04010101010b00"),  # APP_Duration
    0x800A: ul("a1b2c3d4e5f60718293a4b5c6d7e8f90"),  # unknown
    0x800B: ul("060e2b340101010e0103070106000000"),  # SoundfieldGroupLinkID
}


def uid(number):
    return bytes([number]) * 16


def text(value):
    return value.encode("utf-16-be")


def many(*values, size=16):
    return struct.pack(">II", len(values), size) + b"".join(values)


def triplet(key, value, octets=4):
    length = (
        bytes([len(value)])
        if octets == 1
        else (bytes([0x7F + octets]) + len(value).to_bytes(octets - 1, "big"))
    )
    return key + length + value


def local_set(number, *properties, octets=4):
    key = number if isinstance(number, bytes) else ul(SET_KEY % number)
    return triplet(
        key,
        b"".join(struct.pack(">HH", tag, len(value)) + value for tag, value in properties),
        octets,
    )


def sets():
    """Preface first, then the tree, two sets with one identifier, a floating tree, dark sets."""
    stamp = struct.pack(">H6B", 2024, 2, 29, 23, 59, 58, 249)
    label = ul("060e2b34040101010d01020101010900")
    return [
        local_set(
            0x2F,
            (0x3C0A, uid(1)),
            (0x0102, uid(0xA1)),
            (0x3B02, stamp),
            (0x3B03, uid(3)),
            (0x3B05, b"\x01\x03"),
            (0x3B06, many(uid(2))),
            (0x3B07, b"\0\0\1"),
            (0x3B08, uid(4)),
            (0x3B09, label),
            (0x3B0A, many(label, label)),
            (0x3B0B, many(size=0)),
            (0x3B05, b"\x01\x02"),
            (0x4801, b"\0\0\0\7"),
            (0x8007, bytes(range(64))),
            (0x8008, b"\xFF" * 8),
            (0x8009, b"\xFF" * 7 + b"\xFE"),
            (0x800A, b"\x0A\xFF"),
            (0x7FF0, b"\x01"),
            (0x9001, b"\x02"),
        ),
        local_set(
            0x30,
            (0x3C01, text("<A & B> \u00FCber\r\n\t\U0001F3AC")),
            (0x3C02, text("a\0b")),
            (0x3C03, struct.pack(">5H", 1, 2, 3, 4, 5)),
            (0x3C04, b""),
            (0x3C05, uid(0xB5)),
            (0x3C06, bytes(8)),
            (0x3C08, text("\x01\uFFFE") + b"\xD8\x00"),
            (0x3C09, uid(0xA1)),
            (0x3C0A, uid(2)),
        ),
        triplet(ul("060e2b34010101020301021001000000"), bytes(20)),
        local_set(0x18, (0x3C0A, uid(3)), (0x1901, many(uid(4), uid(0x44), uid(0xD2)))),
        local_set(
            0x36,
            (0x3C0A, uid(4)),
            (0x4401, bytes(range(0x60, 0x80))),
            (0x4402, text("P")),
            (0x4403, many(uid(5), uid(6), uid(5))),
            octets=9,
        ),
        local_set(
            0x3B,
            (0x3C0A, uid(5)),
            (0x4B01, struct.pack(">ii", 30000, -1001)),
            (0x4B02, struct.pack(">q", -5)),
            (0x4803, uid(7)),
            (0x4804, b"\xFF" * 4),
        ),
        local_set(0x3A, (0x3C0A, uid(6)), (0x4801, b"\0\0\0\1"), octets=1),
        local_set(0x3A, (0x3C0A, uid(6)), (0x4801, b"\0\0\0\2")),
        local_set(
            0x14,
            (0x3C0A, uid(7)),
            (0x0202, struct.pack(">q", -1)),
            (0x1502, b"\0\x19"),
            (0x1503, b"\1"),
            (0x1501, bytes(8)),
        ),
        local_set(
            0x29,
            (0x3C0A, uid(8)),
            (0x3401, b"R\x08G\x08B\x08" + bytes(10)),
            (0x3404, b"R\x08" * 6 + bytes(4)),
            (0x3403, b""),
            (0x3405, b"\2"),
            (0x3215, b"\4"),
            (0x320D, many(b"\0\0\0\x2A", b"\xFF\xFF\xFF\xF9", size=4)),
            (0x8001, many(uid(9), uid(5))),
            (0x3D02, b"\2"),
            (0x3D04, b"\x9C"),
        ),
        local_set(
            0x5A,
            (0x3C0A, uid(9)),
            (0x8002, b"\xFF\xFF"),
            (0x8003, many(b"\x07\x01\x02", b"\x08\x01\x01", size=3)),
            (0x8004, b"\x01\xFF\xFF\xFF\xFF\xAB"),
            (0x8005, b"\xC8"),
            (0x8006, b"de\xFC\0x"),
            (0x800B, uid(0xC0)[:15]),
        ),
        triplet(ul("8053080036210804b3b398a51c9011d4"), b"\x01\xAB", 9),
        local_set(ul(SET_KEY % 0x7F)[:13] + b"\x7E\x7E\x7E", (0x3C0A, uid(0xD2)), (0x800A, b"x")),
    ]


def small_file():
    body = b"".join(sets())
    primer = [(0x3C0A, ul("060e2b34010101010101150200000000"))] + sorted(DYNAMIC.items())
    primer = triplet(
        ul("060e2b34020501010d01020101050100"),
        many(*(struct.pack(">H", tag) + label for tag, label in primer), size=18),
    )
    metadata = primer + triplet(ul("060e2b34010101010301021001000000"), b"") + body
    pack = struct.pack(">HHIQQQQQIQI", 1, 3, 1, 0, 0, 0, len(metadata), 0, 0, 0, 0)
    pack += ul("060e2b34040101010d01020101010900") + many()
    return b"run-in" + triplet(ul("060e2b34020501010d01020101020400"), pack) + metadata


if __name__ == "__main__":
    import sys

    sys.stdout.buffer.write(small_file())
