"""What the document of an MXF file must hold, derived from the bytes alone."""
import facts as knowledge
import klv
from document import Node
from klv import hexpairs, unversioned
from values import REPLACEMENT, TYPES, Unfit, collection_item, content, hexdump, items, plain_text

GROUPS = ("urn:SMPTE:Groups:MXF", "groups")
S377M, RP210 = knowledge.S377M, knowledge.RP210
IDENTIFIERS = ("InstanceUID", "GenerationUID")  # attributes of their set, one of each
REFERENCES = ("StrongReference", "WeakReference")


def named(space, tag, **rest):
    return Node("%s:%s" % (space[1], tag), space[0], **rest)


def identity(node):
    """What distinguishes the element of a set from its neighbours."""
    if node.name == "groups:DarkMetadata":
        return node.name, node.attribute(GROUPS[0], "Key"), node.text
    return node.name, node.attribute(RP210[0], "InstanceUID")


class Entry:
    """One KLV of the header metadata with the element that the document must hold for it."""

    def __init__(self, triplet, group):
        self.triplet = triplet
        self.group = group if triplet.properties is not None else None
        self.is_dark_group = not self.group and triplet.uid is not None and triplet.primer_holds_all
        self.uid = triplet.uid if self.group or self.is_dark_group else None
        self.node, self.targets = None, []  # targets: (entry, whether the reference is strong)

    def name(self):
        return "%s %s" % (
            self.group.tag if self.group else "dark set",
            hexpairs(self.uid or self.triplet.key),
        )


class Expectation:
    """The elements of all sets, and the order that they must have."""

    def __init__(self, partition, facts):
        self.facts, self.primer = facts, partition.primer
        self.entries = [Entry(item, facts.group_of(item.key)) for item in partition.sets]
        self.by_uid = {}
        for entry in self.entries:
            if entry.uid:
                self.by_uid.setdefault(entry.uid, []).append(entry)
        self.holds_values = False  # some value is text, not as an attribute or a link
        self.forbidden = False  # some text holds what XML cannot
        for entry in self.entries:
            self.describe(entry) if entry.group else self.describe_dark(entry)
        self.preface = next(
            (e for e in self.entries if e.group and e.triplet.is_a(klv.PREFACE)), None
        )

    def describe_dark(self, entry):
        self.holds_values = True
        entry.node = named(
            GROUPS,
            "DarkMetadata",
            text=hexdump(entry.triplet.value),
            attributes={
                (GROUPS[0], "groups:Key"): hexpairs(entry.triplet.key),
                (GROUPS[0], "groups:BEROctetCount"): str(entry.triplet.ber_octets),
            },
        )

    def describe(self, entry):
        entry.node = node = named(entry.group.space, entry.group.tag)
        invalid, valid, seen = [], [], set()
        for tag, value in entry.triplet.properties:
            label = self.primer.get(tag) or self.facts.static_tags.get(tag)
            key = label and unversioned(label)
            element = self.facts.elements.get(key)
            in_place = element and entry.group.find(key) and key not in seen
            targets = []
            try:
                if not element or (not in_place and element.tag in IDENTIFIERS):
                    raise Unfit
                made = self.property(element, value, targets, in_place and entry.group.find(key)[1])
            except Unfit:
                made, in_place, targets = self.dark_element(tag, value), False, []
            if in_place and element.tag in IDENTIFIERS:
                node.attributes[RP210[0], made.name] = made.text
                made = None
            seen.update([key] if in_place else [])
            if made and in_place:
                valid.append((element.index, made, targets))
            elif made:
                invalid.append((made, targets))
        valid = [item[1:] for item in sorted(valid, key=lambda item: item[0])]
        if invalid:
            node.children.append(
                named(GROUPS, "ExtensionElements", children=[m for m, _ in invalid])
            )
        node.children += [made for made, _ in valid]
        entry.targets = [target for _, targets in invalid + valid for target in targets]

    def dark_element(self, tag, value):
        self.holds_values = True
        if tag < 0x8000 or tag not in self.primer:
            about = ("groups:StaticLocalTag", hexpairs(tag.to_bytes(2, "big")))
        else:
            about = ("groups:UniversalLabel", hexpairs(self.primer[tag]))
        return named(
            GROUPS, "DarkElement", text=hexdump(value), attributes={(GROUPS[0], about[0]): about[1]}
        )

    def property(self, element, value, targets, required):
        """The element of a property; None where it is an empty collection that may be left out."""
        node = named(element.space, element.tag)
        item_type = collection_item(element.type)
        kind = item_type or element.type
        parts = items(kind, value) if item_type else [value]
        if item_type and not parts:
            return node if required else None
        if kind in REFERENCES:
            if any(len(part) != 16 for part in parts):
                raise Unfit
            node.children = [self.link(part, kind == "StrongReference", targets) for part in parts]
            return node
        self.holds_values = True
        if item_type:
            for part in parts:
                text, children = content(kind, part)
                node.children.append(named(element.space, "Element", text=text, children=children))
        else:
            node.text, node.children = content(kind, value)
            self.forbidden |= REPLACEMENT in node.text and REPLACEMENT not in plain_text(
                kind, value
            )
        return node

    def link(self, uid, strong, targets):
        found = self.by_uid.get(uid, [])
        if found and (strong or found[0].is_dark_group):
            targets.append((found[0], strong))
        attributes = {(TYPES[0], "types:TargetInstance"): hexpairs(uid)}
        if not found or found[0].is_dark_group:
            return named(S377M, "Dangling_REF", attributes=attributes)
        space = found[0].group.space
        if len(found) > 1:
            return Node("MULTIPLE_METADATASETS_REF", space[0], attributes=attributes)
        return named(space, found[0].group.tag + "_REF", attributes=attributes)

    def walk(self, start, written):
        """What writing `start` writes, in depth-first order of the strong references."""
        out, pending = [], [start]
        while pending:
            entry = pending.pop()
            if entry not in written:
                written.add(entry)
                out.append(entry)
                pending += [target for target, _ in reversed(entry.targets)]
        return out

    def strongly_reached(self):
        reached, pending = set(), [self.preface]
        while pending:
            entry = pending.pop()
            if entry not in reached:
                reached.add(entry)
                pending += [target for target, strong in entry.targets if strong]
        return reached

    def layout(self, floating):
        """The entries under the root and those under the floating container.

        Which of the sets outside the Preface's tree comes first is the library's choice, so the
        document's own order (`floating`, its nodes) is followed where it is a possible one."""
        first_pass = self.walk(self.preface, set())
        main = [entry for entry in first_pass if entry.group]
        rest = [entry for entry in first_pass if not entry.group]
        rest += [entry for entry in self.entries if not entry.group and not entry.is_dark_group]
        tree, written = self.strongly_reached(), set()
        work = [e for e in self.entries if e not in tree and (e.group or e.is_dark_group)]
        while work:
            at = floating[len(rest)] if len(rest) < len(floating) else None
            chosen = next((e for e in work if at and identity(e.node) == identity(at)), work[0])
            rest += self.walk(chosen, written)
            work = [entry for entry in work if entry not in written]
        return main, rest
