"""Compares the two sources of facts: the registers and the project's dictionary text."""
import sys

import facts
from klv import hexpairs

SKIP = 77


def differences(registers, dictionary):
    owners = {}

    def same_space(kind, owner, space):
        """A namespace that the registers name must be kept; each other owner must have one of
        its own for sets and one for properties."""
        if not isinstance(owner, str):
            return owner == space
        return owners.setdefault((kind, owner), space) == space

    for kind, mine, theirs in (
        ("set", registers.groups, dictionary.groups),
        ("property", registers.elements, dictionary.elements),
    ):
        for key in sorted(set(mine) | set(theirs)):
            ours, other = mine.get(key), theirs.get(key)
            if not (ours and other):
                yield "%s %s %s: only in the %s" % (
                    kind,
                    hexpairs(key),
                    (ours or other).tag,
                    "registers" if ours else "dictionary",
                )
                continue
            where = "%s %s" % (kind, ours.tag)
            if ours.tag != other.tag:
                yield "%s: named %s in the dictionary" % (where, other.tag)
            if not same_space(kind, ours.space, other.space):
                yield "%s: %s in the registers, %s in the dictionary" % (
                    where,
                    ours.space,
                    other.space,
                )
            if kind == "property":
                if ours.type != other.type:
                    yield "%s: %s in the registers, %s in the dictionary" % (
                        where,
                        ours.type,
                        other.type,
                    )
                if other.index is None:
                    yield "%s: no SchemaIndex" % where
                continue
            lines = [[g.tag for g in group.lineage()] for group in (ours, other)]
            if lines[0] != lines[1]:
                yield "%s: ancestors %s in the registers, %s in the dictionary" % (where, *lines)
            for label in sorted(set(ours.own) ^ set(other.own)):
                yield "%s: %s is listed in the %s only" % (
                    where,
                    name_of(label, registers, dictionary),
                    "registers" if label in ours.own else "dictionary",
                )
            for label in sorted(set(ours.own) & set(other.own)):
                # Only collections show it in XML; the standard may ask for less, never for more.
                collection = registers.elements[label].type.startswith(("Array", "Batch"))
                if collection and other.own[label] and not ours.own[label]:
                    yield "%s: the registers let %s be left out" % (
                        where,
                        name_of(label, registers, dictionary),
                    )
    for tag in sorted(set(registers.static_tags) | set(dictionary.static_tags)):
        if registers.static_tags.get(tag) != dictionary.static_tags.get(tag):
            yield "static tag %04x stands for different properties" % tag
    spaces = list(owners.values())
    for space in sorted(set(spaces)):
        if spaces.count(space) > 1:
            yield "%s stands for several owners" % (space,)
    yield from disorder(dictionary)


def name_of(label, *sources):
    return next(
        (known.elements[label].tag for known in sources if label in known.elements), hexpairs(label)
    )


def disorder(dictionary):
    """Properties of an ancestor that are not before those of its descendants."""
    for group in dictionary.groups.values():
        newest = None
        for ancestor in group.lineage():
            indexes = [dictionary.elements[label].index for label in ancestor.own]
            if newest is not None and indexes and max(indexes) > newest:
                yield "%s: a property of its ancestor %s is after its own" % (
                    group.tag,
                    ancestor.tag,
                )
            newest = min(indexes + ([] if newest is None else [newest]), default=newest)
    taken = [element.index for element in dictionary.elements.values()]
    if len(set(taken)) != len(taken):
        yield "two properties have one SchemaIndex"


def main():
    folder, files = facts.registers_folder(), facts.dictionary_files()
    if not folder or not files:
        print("skipped: no %s" % ("registers" if files else "dictionary text"))
        return SKIP
    found = list(differences(facts.from_registers(folder), facts.from_dictionary(files)))
    for line in found:
        print(line)
    print("%d differences between the registers and the dictionary" % len(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
