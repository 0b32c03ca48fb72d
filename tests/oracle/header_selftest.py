"""Shows that check_header.py can fail: damages a correct header, byte after byte.

    header_selftest.py CORVID
"""
import os
import subprocess
import sys
import tempfile

import check_header
import facts as knowledge
import klv
from klv import unversioned

SAMPLE = os.path.join(knowledge.ROOT, "examples", "sample.mxf")
STEP = 3  # every so many bytes; a divisor of no size that recurs
SKIP = 77


def takes_no_part(data, at):
    """The version byte of the key of the primer pack, or of a fill."""
    key = data[at - 7 : at + 9]
    return any(unversioned(key) == unversioned(each) for each in (klv.PRIMER, klv.FILL))


def complaints(damaged, scratch, facts):
    with open(scratch, "wb") as file:
        file.write(damaged)
    try:
        return list(check_header.differences(SAMPLE, scratch, facts))
    except klv.Unreadable as fault:
        return [str(fault)]


def main():
    facts = knowledge.load()
    if not facts:
        print("skipped: no dictionary text")
        return SKIP
    with tempfile.TemporaryDirectory() as folder:
        document, header = (os.path.join(folder, name) for name in ("a.xml", "a.mxf"))
        subprocess.run([sys.argv[1], "to-xml", SAMPLE, "-o", document], check=True)
        subprocess.run([sys.argv[1], "from-xml", document, "-o", header], check=True)
        with open(header, "rb") as file:
            data = file.read()
        found = complaints(data, header, facts)
        missed = []
        for at in range(0, len(data), STEP):
            damaged = data[:at] + bytes([data[at] ^ 0x10]) + data[at + 1 :]
            if not takes_no_part(data, at) and not complaints(damaged, header, facts):
                missed.append(at)
        for what, size in (("cut", len(data) - 512), ("lengthened", len(data) + 512)):
            if not complaints(data[:size].ljust(size, b"\0"), header, facts):
                missed.append(what)
    print("the sound header: %s; not noticed: %s" % (found or "nothing amiss", missed or "nothing"))
    return 1 if found or missed else 0


if __name__ == "__main__":
    sys.exit(main())
