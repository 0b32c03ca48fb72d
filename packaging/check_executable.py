#!/usr/bin/env python3
"""Usage: check_executable.py FILE

Reads off the command of the tarball that it needs only the C library, and no newer one than promised;
status 1 otherwise.
"""

import re
import subprocess
import sys

NEWEST_GLIBC = (2, 28)
LIBRARIES = {"libc.so.6", "libm.so.6", "libpthread.so.0", "libdl.so.2", "ld-linux-x86-64.so.2"}


def main(file):
    text = subprocess.run(["objdump", "-pT", file], check=True, capture_output=True, text=True).stdout
    needed = set(re.findall(r"^\s*NEEDED\s+(\S+)", text, re.MULTILINE))
    versions = {tuple(map(int, version.split("."))) for version in
                re.findall(r"\bGLIBC_([0-9.]+)", text)}
    problems = [f"{file}: needs {library}" for library in sorted(needed - LIBRARIES)]
    if re.search(r"^\s*R(UN)?PATH", text, re.MULTILINE):
        problems.append(f"{file}: has a run path")
    if not versions:
        problems.append(f"{file}: needs no version of the C library, so this test looks at nothing")
    elif max(versions) > NEWEST_GLIBC:
        problems.append(f"{file}: needs version {max(versions)} of the C library, expected at most "
                        f"{NEWEST_GLIBC}")
    others = re.findall(r"\b(?:GLIBCXX|CXXABI|GCC)_[0-9.]+", text)
    if others:
        problems.append(f"{file}: needs {sorted(set(others))}")
    newest = ".".join(map(str, max(versions))) if versions else ""
    print("\n".join(problems) or f"report: the command needs {', '.join(sorted(needed))} and glibc {newest}")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
