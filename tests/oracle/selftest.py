"""Shows that check_xml.py can fail: damages a correct document in ways that it must notice.

    selftest.py                   damages small.xml, the document, checked by hand, of small_file.py
    selftest.py FILE DOCUMENT     damages a document that the command wrote
"""
import copy
import os
import sys
import tempfile

import check_xml
import facts as knowledge
import klv
from document import Node, parse, serialise
from small_file import small_file

HERE = os.path.dirname(os.path.abspath(__file__))
LIMIT = 250  # elements to damage; those of a larger document are sampled evenly


def nodes(root):
    """(parent, index in it) of every element but the root."""
    found, pending = [], [root]
    while pending:
        parent = pending.pop()
        found += [(parent, index) for index in range(len(parent.children))]
        pending += parent.children
    return found


def other_character(text):
    return text[:-1] + ("1" if text[-1] != "1" else "2")


def drop(parent, index):
    del parent.children[index]


def duplicate(parent, index):
    parent.children.insert(index, copy.deepcopy(parent.children[index]))


def swap(parent, index):
    """With the element before it, unless the two are alike."""
    pair = parent.children[index - 1 : index + 1]
    if index == 0 or serialise(pair[0]) == serialise(pair[1]):
        return False
    if parent.name == check_xml.CONTAINERS[0] and not any(
        n.name == "groups:DarkMetadata" for n in pair
    ):
        return False  # The order of floating trees is free.
    parent.children[index - 1 : index + 1] = reversed(pair)


def add(parent, index):
    parent.children.insert(index, Node("rp210:NoSuchProperty", "", text="1"))


def rename(parent, index):
    parent.children[index].name += "X"


def strip_prefix(parent, index):
    node = parent.children[index]
    if ":" not in node.name:
        return False
    node.name = node.local


def change_prefix(parent, index):
    node = parent.children[index]
    node.name = ("rp210:" if node.name.startswith("s377m:") else "s377m:") + node.local


def change_text(parent, index):
    node = parent.children[index]
    if node.children:
        return False
    node.text = other_character(node.text) if node.text else "0"


def drop_text(parent, index):
    """Half of it: of a dark set, bytes."""
    node = parent.children[index]
    if not node.text:
        return False
    node.text = node.text[: len(node.text) // 2]


def add_space(parent, index):
    node = parent.children[index]
    if node.children:
        return False
    node.text += " "


def drop_attribute(parent, index):
    if not parent.children[index].attributes:
        return False
    parent.children[index].attributes.popitem()


def change_attribute(parent, index):
    attributes = parent.children[index].attributes
    for key in list(attributes)[:1]:
        attributes[key] = other_character(attributes[key])
    return None if attributes else False


def rename_attribute(parent, index):
    attributes = parent.children[index].attributes
    for uri, name in list(attributes)[:1]:
        attributes[uri, name + "X"] = attributes.pop((uri, name))
    return None if attributes else False


def add_attribute(parent, index):
    parent.children[index].attributes["", "extra"] = "1"


def lift(parent, index):
    """The children take the place of the element."""
    if not parent.children[index].children:
        return False
    parent.children[index : index + 1] = parent.children[index].children


def nest(parent, index):
    """The element moves into the one before it."""
    if index == 0:
        return False
    node = parent.children.pop(index)
    parent.children[index - 1].children.append(node)


DAMAGES = [
    drop,
    duplicate,
    swap,
    add,
    rename,
    strip_prefix,
    change_prefix,
    change_text,
    drop_text,
    add_space,
    drop_attribute,
    change_attribute,
    rename_attribute,
    add_attribute,
    lift,
    nest,
]


def damaged_roots(root):
    """Damages of the root element itself: its name and its namespace declarations."""
    for prefix in list(root.declarations):
        spoiled = copy.deepcopy(root)
        del spoiled.declarations[prefix]
        yield "without the declaration of " + prefix, spoiled
        spoiled = copy.deepcopy(root)
        spoiled.declarations[prefix] += ":X"
        yield "with another URI for " + prefix, spoiled
    spoiled = copy.deepcopy(root)
    spoiled.declarations["more"] = "urn:more"
    yield "with one declaration more", spoiled
    spoiled = copy.deepcopy(root)
    spoiled.name += "X"
    yield "with a renamed root", spoiled


def unnoticed(path, content, facts):
    """Yields (what was done, whether the check noticed)."""

    def noticed(text):
        return bool(check_xml.differences(path, text.encode("utf-8"), facts))

    intact = parse(content)
    for what, root in damaged_roots(intact):
        yield what, noticed(serialise(root))
    everything = len(nodes(intact))
    for damage in DAMAGES:
        for place in range(0, everything, -(-everything // LIMIT)):
            root = copy.deepcopy(intact)
            parent, index = nodes(root)[place]
            if damage(parent, index) is not False:
                yield "%s at element %d, in %s" % (damage.__name__, place, parent.name), noticed(
                    serialise(root)
                )
    text = serialise(intact)
    yield "cut short", noticed(text[:-1])
    yield "with a bare ampersand", noticed(text.replace("</", "&</", 1))


def run(path, content, facts):
    complaints = check_xml.differences(path, content, facts)
    for line in complaints:
        print("intact document: " + line)
    results = list(unnoticed(path, content, facts))
    for what, noticed in results:
        if not noticed:
            print("not noticed: " + what)
    missed = sum(not noticed for _, noticed in results)
    print("%d damages, %d not noticed" % (len(results), missed))
    return 1 if complaints or missed else 0


def main():
    facts = knowledge.load()
    if not facts:
        print("skipped: no dictionary text")
        return check_xml.SKIP
    if len(sys.argv) == 3:
        with open(sys.argv[2], "rb") as document:
            return run(sys.argv[1], document.read(), facts)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "small.mxf")
        with open(path, "wb") as file:
            file.write(small_file())
        with open(os.path.join(HERE, "small.xml"), "rb") as document:
            return run(path, document.read(), facts)


if __name__ == "__main__":
    sys.exit(main())
