#!/usr/bin/env python3
"""Writes the manual pages and completions from what `corvid --describe` prints.

    tools/manual/make_manual.py [--check] CORVID

CORVID is the command. --check writes nothing, lists the files that would change, and exits with
status 1 if there are any.
"""
import argparse
import json
import pathlib
import subprocess
import sys

import bash_completion
import fish_completion
import man_pages
import zsh_completion

SHARE = pathlib.Path(__file__).resolve().parent / "share"


def files_of(command):
    """What each file is to hold, by its path below share/."""
    return {
        **{f"man/man1/{name}.1": text for name, text in man_pages.pages_of(command)},
        "bash-completion/completions/corvid": bash_completion.completion_of(command),
        "fish/vendor_completions.d/corvid.fish": fish_completion.completion_of(command),
        "zsh/vendor-completions/_corvid": zsh_completion.completion_of(command),
    }


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--check", action="store_true")
    parser.add_argument("corvid")
    arguments = parser.parse_args()
    described = subprocess.run(
        [arguments.corvid, "--describe"], check=True, stdout=subprocess.PIPE
    )
    wanted = files_of(json.loads(described.stdout))
    there = {
        str(path.relative_to(SHARE)): path.read_text()
        for path in SHARE.rglob("*")
        if path.is_file()
    }
    changed = sorted(
        name for name in {*wanted, *there} if wanted.get(name) != there.get(name)
    )
    if arguments.check:
        for name in changed:
            print(f"tools/manual/share/{name} is not what {__file__} makes", file=sys.stderr)
        return 1 if changed else 0
    for name in changed:
        path = SHARE / name
        if name in wanted:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(wanted[name])
        else:
            path.unlink()
    return 0


if __name__ == "__main__":
    sys.exit(main())
