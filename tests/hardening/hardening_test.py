#!/usr/bin/env python3
"""Usage: hardening_test.py READELF FILE...

Tells what ELF files lack of the hardening that distributions ask for; status 1 if anything.
"""

import re
import subprocess
import sys

# What readelf prints, by what it proves; the command line of readelf beside it.
EVIDENCE = {
    "position-independent": (["-h"], r"Type:\s+DYN"),
    "read-only relocations": (["-lW"], r"GNU_RELRO"),
    "all symbols bound at the start": (["-dW"], r"BIND_NOW|FLAGS_1.*\bNOW\b"),
    "stack that holds no code": (["-lW"], r"GNU_STACK\s.*\sRW\s"),
    "stack protector": (["-sW"], r"\b__stack_chk_fail\b"),
}
# Proves fortify; not every library calls a function that has a checked twin.
CHECKED_FUNCTION = r"\b__(?!stack)\w+_chk\b"


def main(readelf, files):
    def told(arguments, file):
        return subprocess.run([readelf, *arguments, file], check=True, capture_output=True,
                              text=True).stdout

    failures = [
        f"{file}: no {name}"
        for file in files
        for name, (arguments, pattern) in EVIDENCE.items()
        if not re.search(pattern, told(arguments, file))
    ]
    if not any(re.search(CHECKED_FUNCTION, told(["-sW"], file)) for file in files):
        failures.append("no file calls a checked function (fortify)")
    print("\n".join(failures) or f"{len(files)} files are hardened")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
