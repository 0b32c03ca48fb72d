"""The text that each value type has in XML, worked out from the bytes alone."""
import struct

from document import Node
from klv import hexpairs

TYPES = ("urn:SMPTE:Types:MXF", "types")
S422M = ("urn:SMPTE:S422MTypes:MXF", "s422mTypes")
INTEGERS = {
    "UInt8": "B",
    "Orientation": "B",
    "SignalStandard": "B",
    "UInt16": "H",
    "UInt32": "I",
    "UInt64": "Q",
    "Int8": "b",
    "Int16": "h",
    "Int32": "i",
    "Int64": "q",
    "Position": "q",
    "Length": "q",
    "VersionType": "H",
}
IDENTIFIERS = {
    "UUID": 16,
    "UniversalLabel": 16,
    "UMID32": 32,
    "UMID64": 64,
    "StrongReference": 16,
    "WeakReference": 16,
}
RECORDS = {
    "Rational": (">ii", ["Numerator", "Denominator"]),
    "ProductVersion": (">5H", ["Major", "Minor", "Patch", "Build", "Release"]),
    "Timestamp": (">H6B", ["Year", "Month", "Day", "Hour", "Minute", "Second", "mSec4"]),
}
SIZES = {
    **{name: struct.calcsize(code) for name, code in INTEGERS.items()},
    **IDENTIFIERS,
    **{name: struct.calcsize(code) for name, (code, _) in RECORDS.items()},
    "Boolean": 1,
    "RGBALayout": 16,
    "J2KPictureComponent": 3,
}
ENCODINGS = {"UTF16String": "utf-16-be", "ISO7String": "latin-1"}
AT_LEAST = {"J2KCodingStyleDefault": 5, "J2KQuantisationDefault": 1}


REPLACEMENT = "\uFFFD"


class Unfit(Exception):
    """The bytes do not fit the type."""


def hexdump(data):
    return data.hex().upper()


def xml_text(text):
    """The text with U+FFFD for each code unit that XML 1.0 forbids."""
    units, out, at = text.encode("utf-16-be", "surrogatepass"), [], 0
    while at < len(units):
        (unit,) = struct.unpack_from(">H", units, at)
        pair = units[at : at + 4]
        at += 2
        if 0xD800 <= unit < 0xDC00 and len(pair) == 4 and 0xDC <= pair[2] < 0xE0:
            out.append(pair.decode("utf-16-be"))
            at += 2
        elif unit in (9, 10, 13) or 0x20 <= unit < 0xD800 or 0xE000 <= unit < 0xFFFE:
            out.append(chr(unit))
        else:
            out.append(REPLACEMENT)
    return "".join(out)


def plain_text(value_type, data):
    """The text of a string up to its first zero, with whatever it holds; empty for other types."""
    if value_type == "UTF16String" and len(data) % 2:
        raise Unfit
    encoding = ENCODINGS.get(value_type)
    return data.decode(encoding, "surrogatepass").split("\0")[0] if encoding else ""


def collection_item(value_type):
    """The type of the items of a collection, else None."""
    return value_type[6:-1] if value_type[:6] in ("Array(", "Batch(") else None


def items(item_type, data):
    if len(data) < 8:
        raise Unfit
    count, size = struct.unpack_from(">II", data)
    if (size != SIZES[item_type] and (count or size)) or len(data) != 8 + count * SIZES[item_type]:
        raise Unfit
    return [data[at : at + size] for at in range(8, len(data), size)] if count else []


def number(space, name, value):
    return Node(space[1] + ":" + name, space[0], text=str(value))


def content(value_type, data):
    """(text, children) of an element with that value."""
    if value_type == "ProductVersion" and len(data) == 9:
        data = data[:8] + b"\0" + data[8:]  # One maker's release has one byte.
    if len(data) != SIZES.get(value_type, len(data)) or len(data) < AT_LEAST.get(value_type, 0):
        raise Unfit
    if value_type == "Bytes":
        return hexdump(data), []
    if value_type in INTEGERS:
        return str(struct.unpack(">" + INTEGERS[value_type], data)[0]), []
    if value_type in IDENTIFIERS:
        return hexpairs(data), []
    if value_type == "Boolean":
        if data[0] > 1:
            raise Unfit
        return str(data[0]), []
    if value_type in ENCODINGS:
        return xml_text(plain_text(value_type, data)), []
    if value_type in RECORDS:
        code, names = RECORDS[value_type]
        return "", [number(TYPES, *field) for field in zip(names, struct.unpack(code, data))]
    if value_type == "RGBALayout":
        if any(data[10:]):
            raise Unfit  # XML has room for five components.
        return "", [
            Node(
                "types:RGBAComponent",
                TYPES[0],
                children=[number(TYPES, "Code", data[at]), number(TYPES, "Depth", data[at + 1])],
            )
            for at in range(0, 10, 2)
        ]
    fields = {
        "J2KPictureComponent": lambda: zip(("Ssizi", "XRSizi", "YRSizi"), data),
        "J2KCodingStyleDefault": lambda: (
            ("Scod", data[0]),
            ("SGcod", int.from_bytes(data[1:5], "big")),
            ("Spcod", hexdump(data[5:])),
        ),
        "J2KQuantisationDefault": lambda: (("Sqcd", data[0]), ("SPgcd", hexdump(data[1:]))),
    }[value_type]()
    return "", [
        Node(
            "s422mTypes:" + value_type,
            S422M[0],
            children=[number(S422M, *field) for field in fields],
        )
    ]
