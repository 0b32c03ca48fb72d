"""Damages a small file in every way that partitions.py must notice."""
import struct
import sys

import partitions
from klv import FILL, PACK, PRIMER, RANDOM_INDEX


def klv(key, value):
    return key + b"\x83" + len(value).to_bytes(3, "big") + value


def pack(kind, this, previous, footer, header_bytes, sid):
    fields = struct.pack(
        ">HHIQQQQQIQI", 1, 3, 1, this, previous, footer, header_bytes, 0, 0, 0, sid
    )
    return klv(PACK + bytes([kind, 4, 0]), fields + bytes(16) + struct.pack(">II", 0, 16))


def small(fill=10, footer=None):
    """Header, body with essence, footer and random index pack."""
    metadata = klv(PRIMER, struct.pack(">II", 0, 18)) + klv(FILL, bytes(fill))
    essence = klv(bytes.fromhex("060e2b34010201010d01030115010500"), b"essence")
    size = len(pack(2, 0, 0, 0, 0, 0))
    body = 7 + size + len(metadata) - 7
    end = body + size + len(essence)
    data = b"run in!" + pack(2, 0, 0, end, len(metadata), 0) + metadata
    data += pack(3, body, 0, end, 0, 1) + essence
    data += pack(4, end, body, end if footer is None else footer, 0, 0)
    entries = struct.pack(">IQIQIQ", 0, 0, 1, body, 0, end)
    return data + klv(RANDOM_INDEX, entries + struct.pack(">I", 20 + len(entries) + 4))


def main():
    whole = small()
    failures = []
    if partitions.faults_in(whole) or partitions.differences(whole, whole):
        failures.append("a sound file has faults")
    if partitions.differences(whole, small(100)) or partitions.faults_in(small(100)):
        failures.append("growth is a fault")
    if not partitions.faults_in(small(footer=5)):
        failures.append("a wrong FooterPartition is none")
    base, parts, index = partitions.walk(whole)
    metadata = range(*parts[0].metadata)
    for at in range(len(whole)):
        damaged = whole[:at] + bytes([whole[at] ^ 1]) + whole[at + 1 :]
        try:
            noticed = partitions.differences(whole, damaged) or partitions.faults_in(damaged)
        except partitions.Unreadable:
            noticed = True
        # Metadata may change; so may what a pack repeats of it: its status, pattern and containers.
        repeated = any(
            at == part.at + 14 or part.at + 20 + 64 <= at < part.at + part.head for part in parts
        )
        if not noticed and at not in metadata and not repeated and at != index + 7:
            failures.append("another byte %d is not noticed" % at)
    for cut in (1, 30):
        if not partitions.differences(whole, whole[:-cut]):
            failures.append("%d missing bytes are not noticed" % cut)
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
