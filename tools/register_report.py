"""docs/registers.md: what of the SMPTE registers Corvid knows, and what it leaves out and why."""

import textwrap
from collections import defaultdict

import register_texts

TITLE = """\
# What Corvid knows of the SMPTE registers

[The dictionary](dictionary.md) defines every set that header metadata can hold, with all
properties that the registers give it. [corvid dictionary](dictionary-command.md) explains these and
all other entries of the registers (SMPTE ST 335, ST 395, ST 400, ST 2003). `tools/compare-dictionary.py --write`
makes this page from the registers' tables.
"""


def table(head, rows):
    lines = ["| " + " | ".join(map(str, row)) + " |\n" for row in [head, *rows]]
    return "\n" + "".join(lines[:1] + ["|---" * len(head) + "|\n"] + lines[1:])


def names(rows):
    return textwrap.fill(", ".join(row["symbol"] for row in rows), 100,
                         break_on_hyphens=False) + "\n"


def text(tables, in_header):
    """tables: gives the rows of a table by its name. in_header: the keys of the groups that the
    dictionary of header metadata holds."""
    groups, properties, types = tables("groups.csv"), tables("elements.csv"), tables("types.csv")
    users = defaultdict(set)
    for row in tables("group_elements.csv"):
        users[row["element_ul"]].add(row["group_ul"] in in_header)
    defined = [row for row in properties if True in users[row["ul"]]]
    elsewhere = [row for row in properties if users[row["ul"]] == {False}]
    unlisted = [row for row in properties if not users[row["ul"]]]
    left_out = [group for group in groups if group["ul"] not in in_header]
    result = TITLE + table(
        ["register", "entries", "defined for header metadata", "no part of it"],
        [["groups", len(groups), len(groups) - len(left_out), len(left_out)],
         ["properties", len(properties), len(defined), len(elsewhere) + len(unlisted)]])
    result += (f"\nAll {len(types)} types with their {len(tables('type_members.csv'))} members are "
               f"there, and all {len(tables('labels.csv'))} labels.\n")
    result += "\n## Groups that header metadata does not hold\n"
    for reason, words in register_texts.REASONS.items():
        group_rows = [group for group in left_out
                      if register_texts.place_of(group, in_header) == reason]
        codings = defaultdict(int)
        for group in group_rows:
            codings[group["klv_syntax"].replace(" ", " and ") or "none"] += 1
        counts = ", ".join(f"{coding} ({count})" for coding, count in sorted(codings.items()))
        result += f"\n### {words}: {len(group_rows)}\n\nCoding (byte 6 of the key): {counts}.\n\n"
        result += names(group_rows)
    result += ("\n## Properties that no set of header metadata has\n\n"
               f"### Only groups listed above have them: {len(elsewhere)}\n\n" + names(elsewhere) +
               f"\n### No group of the registers has them: {len(unlisted)}\n\n" + names(unlisted))
    return result
