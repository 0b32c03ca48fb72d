"""Verifies a whole document that `corvid to-xml` wrote (references as links) against the MXF file.

    check_xml.py FILE.mxf DOCUMENT.xml [--registers DIR]

Prints every difference with set, property, expected and found; exit status 1 if there is one.
"""
import argparse
import difflib
import sys

import facts as knowledge
import klv
from document import Malformed, Node, parse
from expectation import GROUPS, S377M, Expectation, identity
from values import S422M, TYPES

CONTAINERS = ("groups:FloatingDarkMetadata", "groups:ExtensionElements")
SKIP = 77


class Check:
    def __init__(self, expectation, root):
        self.expected, self.root, self.complaints = expectation, root, []

    def complain(self, where, what, expected, found):
        self.complaints.append("%s: %s: expected %s, found %s" % (where, what, expected, found))

    def run(self):
        root = self.root
        if (root.name, root.uri) != ("s377m:MetadataSets", S377M[0]):
            self.complain(
                "document", "root", "s377m:MetadataSets", "%s in %s" % (root.name, root.uri)
            )
        if root.attributes or root.text.strip():
            self.complain(
                "document",
                "root",
                "no attribute and no text",
                sorted(root.attributes) or repr(root.text[:40]),
            )
        containers = [child for child in root.children if child.name == CONTAINERS[0]]
        floating = containers[0] if containers else Node(CONTAINERS[0], GROUPS[0])
        main, rest = self.expected.layout(floating.children)
        if len(containers) > 1 or (containers and root.children[-1] is not floating):
            self.complain("document", CONTAINERS[0], "one, as the last child", "another place")
        if bool(containers) != bool(rest):
            self.complain(
                "document",
                CONTAINERS[0],
                "to be there" if rest else "none",
                "it" if containers else "none",
            )
        if containers and (
            floating.uri != GROUPS[0] or floating.attributes or floating.text.strip()
        ):
            self.complain(
                "document", CONTAINERS[0], "plain container in " + GROUPS[0], floating.uri
            )
        self.sequence("root", main, [child for child in root.children if child not in containers])
        self.sequence(CONTAINERS[0], rest, floating.children)
        self.declarations([entry.node for entry in main + rest])
        return self.complaints

    def sequence(self, place, entries, found):
        """Every entry at its place, compared with the node that is there."""
        wanted = [identity(entry.node)[:2] for entry in entries]
        actual = [identity(node)[:2] for node in found]
        missing, spare = [], []
        for tag, i, j, k, l in difflib.SequenceMatcher(None, wanted, actual, False).get_opcodes():
            if tag == "equal":
                for entry, node in zip(entries[i:j], found[k:l]):
                    self.compare(entry.name(), node.name, entry.node, node)
                continue
            missing += range(i, j)
            spare += range(k, l)
        for i in missing:
            k = next((k for k in spare if actual[k] == wanted[i]), None)
            if k is None:
                self.complain(entries[i].name(), "set", "in %s at place %d" % (place, i), "nothing")
                continue
            spare.remove(k)
            self.complain(
                entries[i].name(), "set", "in %s at place %d" % (place, i), "it at place %d" % k
            )
            self.compare(entries[i].name(), found[k].name, entries[i].node, found[k])
        for k in spare:
            self.complain("%s %s" % actual[k], "set", "nothing in %s" % place, "it at place %d" % k)

    def compare(self, where, path, expected, found):
        if (expected.name, expected.uri) != (found.name, found.uri):
            self.complain(
                where,
                path,
                "%s in %s" % (expected.name, expected.uri),
                "%s in %s" % (found.name, found.uri),
            )
        for key in sorted(set(expected.attributes) | set(found.attributes)):
            if expected.attributes.get(key) != found.attributes.get(key):
                self.complain(
                    where,
                    "%s/@%s" % (path, key[1]),
                    repr(expected.attributes.get(key)),
                    repr(found.attributes.get(key)),
                )
        if found.text != expected.text:
            self.complain(where, path, repr(expected.text), repr(found.text))
        wanted, actual = [c.name for c in expected.children], [c.name for c in found.children]
        for tag, i, j, k, l in difflib.SequenceMatcher(None, wanted, actual, False).get_opcodes():
            if tag == "equal":
                for one, other in zip(expected.children[i:j], found.children[k:l]):
                    self.compare(where, "%s/%s" % (path, one.name), one, other)
            else:
                self.complain(
                    where,
                    path,
                    "children %s" % (wanted[i:j] or "none more"),
                    "%s" % (actual[k:l] or "none"),
                )

    def declarations(self, nodes):
        """Everything is declared on the root, and nothing that is not used by the metadata."""
        wanted = {S377M[0]: S377M[1]}
        pending = list(nodes)
        while pending:
            node = pending.pop()
            pending += node.children
            if node.name not in CONTAINERS and node.space[1]:
                wanted.setdefault(*node.space)
            for uri, name in node.attributes:
                wanted.setdefault(uri, name.partition(":")[0])
        if self.expected.holds_values:
            wanted.update([TYPES, S422M])
        found = {uri: prefix for prefix, uri in self.root.declarations.items()}
        for uri in sorted(set(wanted) | set(found)):
            if wanted.get(uri) != found.get(uri):
                self.complain("document", "prefix of %s" % uri, wanted.get(uri), found.get(uri))
        pending = list(self.root.children)
        while pending:
            node = pending.pop()
            pending += node.children
            unbound = (
                {"groups": GROUPS[0]}
                if node.name in CONTAINERS and GROUPS[0] not in wanted
                else ({"": node.uri} if node.name == "MULTIPLE_METADATASETS_REF" else {})
            )
            if node.declarations not in ({}, unbound):
                self.complain(
                    "document", node.name, "declarations on the root only", node.declarations
                )


def differences(path, document, facts):
    """The complaints about a document (bytes) that should be the one of the file."""
    try:
        expectation = Expectation(klv.choose(klv.read(path)), facts)
        if not expectation.preface:
            return ["file: no Preface, so there should be no document"]
        return Check(expectation, parse(document)).run()
    except (klv.Unreadable, Malformed) as fault:
        return ["%s: %s" % ("file" if isinstance(fault, klv.Unreadable) else "document", fault)]


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("file")
    parser.add_argument("document")
    parser.add_argument("--registers")
    arguments = parser.parse_args()
    facts = knowledge.load(arguments.registers)
    if not facts:
        print("skipped: no dictionary text")
        return SKIP
    with open(arguments.document, "rb") as document:
        complaints = differences(arguments.file, document.read(), facts)
    for line in complaints:
        print(line)
    print("%s: %d differences" % (arguments.document, len(complaints)))
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
