#!/usr/bin/env python3
"""Usage: documentationLinks.py FOLDER

Lists the links of the Markdown files in a folder that lead to no file or heading; status 1 if any.
"""

import pathlib
import re
import sys

LINK = re.compile(r"\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+\s+(.*)$", re.MULTILINE)
FENCED = re.compile(r"^```.*?^```", re.MULTILINE | re.DOTALL)


def anchors(page):
    """The names that headings have in links."""
    plain = FENCED.sub("", page.read_text(encoding="utf-8"))
    for heading in HEADING.findall(plain):
        words = re.sub(r"[^\w\- ]", "", heading.lower().strip())
        yield words.replace(" ", "-")


def broken_links(page):
    for link in LINK.findall(FENCED.sub("", page.read_text(encoding="utf-8"))):
        if re.match(r"[a-z]+:", link):
            continue
        name, _, anchor = link.partition("#")
        target = page.parent / name if name else page
        if not target.exists():
            yield link
        elif anchor and target.suffix == ".md" and anchor not in anchors(target):
            yield link


def main(folder):
    pages = sorted(pathlib.Path(folder).rglob("*.md"))
    broken = [f"{page}: {link}" for page in pages for link in broken_links(page)]
    print("\n".join(broken) or f"the links of {len(pages)} pages lead somewhere")
    return 1 if broken or not pages else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
