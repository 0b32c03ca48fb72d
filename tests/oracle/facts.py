"""What is known of sets and properties: names, namespaces, classes, value types, static tags.

Two sources give the same facts: the SMPTE registers as CSV tables, and the project's own
dictionary text.
The registers come first, because the library never sees them.
"""
import csv
import glob
import os

from klv import INSTANCE_UID, unversioned

S377M = ("urn:SMPTE:S377M", "s377m")
RP210 = ("urn:SMPTE:RP210", "rp210")
REGISTER_SPACES = {
    "http://www.smpte-ra.org/reg/395/2014": S377M,
    "http://www.smpte-ra.org/reg/395/2014/13/1/aaf": S377M,
    "http://www.smpte-ra.org/reg/335/2012": RP210,
}
# The two identifiers that are written as attributes; the registers call them otherwise.
ATTRIBUTES = {"InstanceID": "InstanceUID", "LinkedGenerationID": "GenerationUID"}
BYTE_RUNS = {"DataValue", "DataStream", "Unknown", "none"}


class Element:
    """`space` is (URI, prefix), or the owner's register namespace where only the owner is known."""

    def __init__(self, label, tag, space, value_type):
        self.label, self.tag, self.space = label, tag, space
        self.type = "Bytes" if value_type in BYTE_RUNS else value_type
        self.index = None


class Group:
    def __init__(self, tag, space):
        self.tag, self.space, self.parent = tag, space, None
        self.own = {}  # label -> whether the property is required

    def lineage(self):
        group = self
        while group:
            yield group
            group = group.parent

    def find(self, label):
        """(distance to the class that lists the property, required), or None."""
        for distance, group in enumerate(self.lineage()):
            if label in group.own:
                return distance, group.own[label]
        return None


class Facts:
    def __init__(self, source):
        self.source = source
        self.groups, self.elements, self.static_tags = {}, {}, {}

    def group_of(self, key):
        """The class of a local set with 2-byte tags and lengths, None for any other key."""
        return self.groups.get(masked_key(key)) if key[5] == 0x53 else None

    def add_missing_instance_uids(self):
        for group in self.groups.values():
            if not group.find(INSTANCE_UID_LABEL):
                list(group.lineage())[-1].own[INSTANCE_UID_LABEL] = True


def masked_key(key):
    """A set key without its coding (byte 6) and its version (byte 8)."""
    return key[:5] + b"\0" + key[6:7] + b"\0" + key[8:]


INSTANCE_UID_LABEL = unversioned(INSTANCE_UID)


def label_bytes(text):
    return bytes.fromhex(text.replace(".", ""))


def from_registers(folder):
    def rows(name):
        with open(os.path.join(folder, name), encoding="utf-8", newline="") as file:
            return list(csv.DictReader(file))

    facts = Facts(folder)
    types = {row["type_symbol"]: row["value_type"] for row in rows("type_mapping.csv")}
    special = {row["element_ul"]: row["value_type"] for row in rows("element_overrides.csv")}
    elements = {row["ul"]: row for row in rows("elements.csv")}
    groups = {}
    for row in rows("groups.csv"):
        if row["practice"] == "not-header":
            continue  # Packs, index tables, data of streams: no header metadata holds them.
        space = row["namespace"]
        groups[row["ul"]] = Group(row["symbol"], REGISTER_SPACES.get(space, space))
        groups[row["ul"]].parent_ul = row["parent_ul"]
        facts.groups[masked_key(label_bytes(row["ul"]))] = groups[row["ul"]]
    for group in groups.values():
        group.parent = groups.get(group.parent_ul)
    for row in rows("group_elements.csv"):
        if row["group_ul"] not in groups:
            continue
        text = row["element_ul"]
        label = unversioned(label_bytes(text))
        groups[row["group_ul"]].own[label] = row["optional"] == "0"
        if row["local_tag"] and int(row["local_tag"], 16) < 0x8000:
            facts.static_tags[int(row["local_tag"], 16)] = label
        if label not in facts.elements:
            about = elements[text]
            symbol, space = about["symbol"], about["namespace"]
            facts.elements[label] = Element(
                label_bytes(text),
                ATTRIBUTES.get(symbol, symbol),
                REGISTER_SPACES.get(space, space),
                special.get(text) or types.get(about["type_symbol"], "none"),
            )
    facts.add_missing_instance_uids()
    return facts


def from_dictionary(files):
    """The project's dictionary: rows of columns, explained at the head of each file."""
    facts = Facts(", ".join(files))
    spaces, groups, elements, parents, uses = {}, {}, {}, [], []

    def named(name):
        prefix, tag = name.split(":")
        return tag, (spaces[prefix], prefix)

    for path in files:
        with open(path, encoding="utf-8") as file:
            rows = [line.split("#")[0].split() for line in file]
        group = None
        for row in filter(None, rows):
            if row[0] == "namespace":
                spaces[row[1]] = row[2]
            elif row[0] == "extend":
                group = groups[row[1]]
            elif row[0] == "set":
                group = groups[row[1]] = Group(*named(row[1]))
                facts.groups[masked_key(label_bytes(row[2]))] = group
                parents.append((group, row[3]))
            elif row[0] == "property":
                name, label, tag, value_type, status, index = row[1:7]
                element = elements[name] = Element(label_bytes(label), *named(name), value_type)
                element.index = int(index)
                facts.elements[unversioned(element.label)] = element
                if tag != "-":
                    facts.static_tags[int(tag.replace(".", ""), 16)] = unversioned(element.label)
                uses.append((group, name, status))
            elif row[0] == "use":
                uses.append((group, row[1], row[2]))
            else:
                raise ValueError("%s: unknown row %s" % (path, row[0]))
    for group, parent in parents:
        group.parent = None if parent == "-" else groups[parent]
    for group, name, status in uses:
        group.own[unversioned(elements[name].label)] = status in ("required", "encoder-required")
    facts.add_missing_instance_uids()
    return facts


ROOT = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
SAMPLES = os.environ.get("CORVID_SAMPLES") or os.path.join(ROOT, "..", "shared", "samples")


def registers_folder():
    """The folder of the registers, or None: beside the project unless CORVID_REGISTERS names it."""
    folder = os.environ.get("CORVID_REGISTERS") or os.path.join(ROOT, "..", "shared", "registers")
    return folder if os.path.isfile(os.path.join(folder, "groups.csv")) else None


def dictionary_files(part="smpte"):
    """The texts of what the registers hold (smpte), or of what is in use besides (beyond)."""
    folder = os.environ.get("CORVID_DICTIONARY_TEXT") or os.path.join(ROOT, "host", "dictionary")
    return sorted(glob.glob(os.path.join(folder, part, "*.dict")))


def load(registers=None):
    """The registers' facts, completed by what only the dictionary decides: the order of properties,
    what is required, the namespaces of owners other than SMPTE, and what is in use besides. Without
    registers the dictionary's. None without a dictionary."""
    folder, files = registers or registers_folder(), dictionary_files()
    if not files:
        return None
    dictionary = from_dictionary(files + dictionary_files("beyond"))
    if not folder:
        return dictionary
    facts = from_registers(folder)
    for mine, theirs in ((facts.elements, dictionary.elements), (facts.groups, dictionary.groups)):
        for key, entry in mine.items():
            other = theirs.get(key)
            if not other:
                raise ValueError("the dictionary lacks %s" % entry.tag)
            if isinstance(entry.space, str):
                entry.space = other.space
    for label, element in facts.elements.items():
        element.index = dictionary.elements[label].index
    for key, group in facts.groups.items():
        own = dictionary.groups[key].own
        group.own = {label: own.get(label, flag) for label, flag in group.own.items()}
        group.own.update(
            (label, flag) for label, flag in own.items() if label not in facts.elements
        )
    for mine, theirs in ((facts.elements, dictionary.elements), (facts.groups, dictionary.groups)):
        for key in theirs.keys() - mine.keys():
            mine[key] = theirs[key]
    return facts
