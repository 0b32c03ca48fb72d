#!/usr/bin/env python3
"""Compares the dictionary's texts with tables of a release of the SMPTE metadata registers.

    tools/compare-dictionary.py REGISTERS_DIR [ROOT]
    tools/compare-dictionary.py --write REGISTERS_DIR FOLDER

The texts are the source and are changed by hand. This prints each row that the registers would give
and a text does not have ("new"), and each that a text has and the registers would not give ("only
here"); then it exits with 1. The order of rows, comments and the width of columns do not count.
REGISTERS_DIR holds groups.csv, group_elements.csv, elements.csv, types.csv, type_members.csv,
labels.csv, type_mapping.csv and element_overrides.csv; ROOT is the root of the sources unless given.
With --write it makes all texts anew below FOLDER, as a place to take rows from.

The texts are host/dictionary/smpte/*.dict, the definitions of header metadata (this file),
host/dictionary/registers/*.reg, all entries of the registers (register_texts.py), and
docs/registers.md, which says what is covered (register_report.py). Where REGISTERS_DIR also holds
beyond_groups.csv, beyond_elements.csv and beyond_labels.csv, so is host/dictionary/beyond, what is in
use but not registered (beyond_texts.py). What the registers do not say (names of namespaces, types,
who must write a property) is in the tables of these; everything else is derived by rule.
"""

import csv
import heapq
import sys
from collections import Counter, defaultdict
from pathlib import Path

sys.dont_write_bytecode = True
import beyond_texts
import register_report
import register_texts

# Which file a group's area goes to, what the file holds, and in this order they are loaded.
FILES = {
    "st377-1-structural": ("Structural metadata (SMPTE ST 377-1)", ["structural"]),
    "descriptors": ("Essence descriptors (SMPTE ST 377-1 and essence mappings)", ["descriptor"]),
    "subdescriptors": ("Sub-descriptors of the essence mappings", ["subdescriptor"]),
    "mca": ("Multichannel audio labels (SMPTE ST 377-4)", ["mca"]),
    "aaf": ("Structure and descriptors that come from AAF", ["aaf-structural", "aaf-descriptor"]),
    "definitions": ("Definition objects and their dictionary (SMPTE ST 377-2)", ["aaf-definition"]),
    "meta-dictionary": ("Classes, properties and types (SMPTE ST 377-2)", ["metadictionary"]),
    "dms-1": ("Descriptive metadata scheme 1 (SMPTE ST 380)", ["dms-1"]),
    "dms-crypto": ("Encryption (SMPTE ST 429-6)", ["dms-crypto"]),
    "dms-text": ("Text-based metadata (SMPTE RP 2057)", ["dms-text"]),
    "dms-eidr": ("EIDR identifiers (SMPTE RP 2089)", ["dms-eidr"]),
    "acquisition": ("Camera and lens metadata (SMPTE RDD 18)", ["acquisition"]),
    "as-03": ("AMWA AS-03", ["as-03"]),
    "as-07": ("FADGI AS-07, also published as SMPTE RDD 48", ["as-07"]),
    "as-10": ("AMWA AS-10", ["as-10"]),
    "as-11": ("AMWA AS-11 and the UK DPP's framework", ["as-11"]),
    "as-12": ("AMWA AS-12 and its slate", ["as-12"]),
    "bbc-archive": ("Archive preservation (BBC WHP 167 and 233)", ["bbc-archive"]),
    "ebucore": ("EBUCore (EBU Tech 3293)", ["ebucore"]),
}

# Register namespace to prefix and URI. The owner of a namespace is its last part.
SMPTE_GROUPS = ("s377m", "urn:SMPTE:S377M")
SMPTE_ELEMENTS = ("rp210", "urn:SMPTE:RP210")
GROUP_NAMESPACES = {"reg/395/2014": SMPTE_GROUPS, "reg/395/2014/13/1/aaf": SMPTE_GROUPS}
ELEMENT_NAMESPACES = {"reg/335/2012": SMPTE_ELEMENTS}
OWNERS = {
    "13/1/aaf": ("aaf", "urn:AMWA:AAF"),
    "13/1/amwa/as_common": ("amwa", "urn:AMWA:Common"),
    "13/1/amwa/as10": ("as10", "urn:AMWA:AS10"),
    "13/1/amwa/as11": ("as11", "urn:AMWA:AS11"),
    "13/1/amwa/as12": ("as12", "urn:AMWA:AS12"),
    "13/1/amwa/rules": ("amwaRules", "urn:AMWA:Rules"),
    "13/4/archive": ("bbcArchive", "urn:BBC:Archive"),
    "13/12/as11": ("ukdpp", "urn:UKDPP:AS11"),
    "13/13": ("adid", "urn:AdID:Slate"),
    "14/9": ("dolby", "urn:Dolby:MXF"),
    "avconservation": ("as07", "urn:FADGI:AS07"),
    "class13/group": ("ebucore", "urn:EBU:EBUCore"),
    "class13/element": ("ebucore", "urn:EBU:EBUCore"),
}

# The two identifiers that the document writes as attributes bear the names of SMPTE ST 377-1.
RENAMED = {"InstanceID": "InstanceUID", "LinkedGenerationID": "GenerationUID"}

# Bytes that no value type describes stay a run of bytes.
BYTES = "DataStream"
AS_BYTES = {"none", "DataValue", "Unknown"}

# Who must write or understand a property, where SMPTE ST 377-1 says more than the register's flag
# "optional", by the symbol of the class that lists it.
STATUS = {
    "required": [
        "Component.ComponentDataDefinition", "EssenceData.EssenceStreamID",
        "FileDescriptor.SampleRate", "FileDescriptor.ContainerFormat",
        "Identification.FileModificationDate", "SourceReference.SourcePackageID",
        "SourceClip.StartPosition", "Track.EssenceTrackNumber",
    ],
    "decoder-required": [
        "PictureDescriptor.PictureCompression", "SoundDescriptor.SoundCompression",
        "DataEssenceDescriptor.DataEssenceCoding",
    ],
    "best-effort": [
        "Component.ComponentLength", "PictureDescriptor.StoredWidth",
        "PictureDescriptor.StoredHeight", "PictureDescriptor.FrameLayout",
        "PictureDescriptor.ImageAspectRatio", "PictureDescriptor.VideoLineMap",
        "CDCIDescriptor.ComponentDepth", "CDCIDescriptor.HorizontalSubsampling",
        "RGBADescriptor.PixelLayout", "SoundDescriptor.AudioSampleRate",
        "SoundDescriptor.ChannelCount", "SoundDescriptor.QuantizationBits",
    ],
}

HEAD = """\
# {title}
#
# One definition per row; columns are separated by blanks, names are prefix:name.
#   namespace  prefix, URI
#   set        name, key as in files, name of the set it inherits from or -, concrete or abstract
#   property   of the set above: name, label, static local tag or -, value type, status, SchemaIndex
#   use        a property of the set above that is elsewhere as well: name, status
# Status: required, encoder-required, decoder-required, best-effort, optional.
""" + register_texts.ORIGIN


def read(folder, name):
    with open(folder / name, newline="", encoding="utf-8") as table:
        return list(csv.DictReader(table))


def namespace_of(uri, known, suffix):
    """The prefix and URI for a register's namespace."""
    tail = uri.split("//", 1)[1].split("/", 1)[1]
    if tail in known:
        return known[tail]
    for end, (prefix, urn) in OWNERS.items():
        if tail.endswith("/" + end) or tail == end:
            return prefix + ("El" if suffix == "Elements" else ""), f"{urn}:{suffix}"
    sys.exit(f"no prefix for namespace {tail}")


class Registers:
    """The groups that can be in header metadata, and their elements."""

    def __init__(self, folder):
        self.groups = [g for g in read(folder, "groups.csv")
                       if "53" in g["klv_syntax"].split() and g["practice"] != "not-header"]
        by_ul = {g["ul"]: g for g in self.groups}
        self.types = {t["type_ul"]: t["value_type"] for t in read(folder, "type_mapping.csv")}
        self.overrides = {o["element_ul"]: o["value_type"]
                          for o in read(folder, "element_overrides.csv")}
        self.elements = {e["ul"]: e for e in read(folder, "elements.csv")}
        self.rank = {ul: place for place, ul in enumerate(self.elements)}
        self.parent = {g["ul"]: by_ul.get(g["parent_ul"]) for g in self.groups}
        self.uses = defaultdict(list)
        self.tags = {}
        for row in read(folder, "group_elements.csv"):
            if row["group_ul"] in by_ul:
                self.uses[row["group_ul"]].append((row["element_ul"], row["optional"] == "1"))
                tag = int(row["local_tag"] or "8000", 16)
                if tag < 0x8000:
                    self.tags[row["element_ul"]] = f"{tag >> 8:02x}.{tag & 255:02x}"
        self.instance_id = next(
            ul for ul, e in self.elements.items()
            if e["symbol"] == "InstanceID" and e["namespace"].endswith("335/2012"))
        for group in self.groups:
            if group["concrete"] == "1" and self.instance_id not in self.inherited(group):
                self.uses[group["ul"]].insert(0, (self.instance_id, False))

    def inherited(self, group):
        labels = set()
        while group:
            labels.update(ul for ul, _ in self.uses[group["ul"]])
            group = self.parent[group["ul"]]
        return labels

    def value_type(self, label):
        element = self.elements[label]
        found = self.overrides.get(label) or self.types.get(element["type_ul"], "none")
        return BYTES if found in AS_BYTES else found

    def order(self):
        """One number per property, so that within each set the ancestors' properties come first
        and each class's own are in the register's order; where that leaves a choice, as there too."""
        after, waits = defaultdict(set), defaultdict(int)

        def put_in_order(first, then):
            if then not in after[first]:
                after[first].add(then)
                waits[then] += 1

        for group in self.groups:
            own = sorted((label for label, _ in self.uses[group["ul"]]), key=self.rank.get)
            above = self.parent[group["ul"]]
            while above and not self.uses[above["ul"]]:
                above = self.parent[above["ul"]]
            for first, _ in self.uses[above["ul"]] if above else []:
                for then in own:
                    put_in_order(first, then)
            for first, then in zip(own, own[1:]):
                put_in_order(first, then)
        used = {label for rows in self.uses.values() for label, _ in rows}
        ready = [self.rank[label] for label in used if not waits[label]]
        heapq.heapify(ready)
        labels = list(self.elements)
        result = {}
        while ready:
            label = labels[heapq.heappop(ready)]
            result[label] = len(result) + 1
            for then in after[label]:
                waits[then] -= 1
                if not waits[then]:
                    heapq.heappush(ready, self.rank[then])
        if len(result) != len(used):
            sys.exit("the order of ancestors contradicts itself for " + ", ".join(
                sorted(self.elements[label]["symbol"] for label in used - set(result))))
        return result


def group_name(group):
    return namespace_of(group["namespace"], GROUP_NAMESPACES, "Groups"), group["symbol"]


def element_name(element):
    symbol = RENAMED.get(element["symbol"], element["symbol"])
    return namespace_of(element["namespace"], ELEMENT_NAMESPACES, "Elements"), symbol


def file_rows(registers, areas, order, refined, defined):
    """The rows of one file as lists of columns, and the namespaces that they name."""
    rows, spaces = [], {}

    def qualified(name):
        (prefix, uri), symbol = name
        spaces[prefix] = uri
        return f"{prefix}:{symbol}"

    for group in registers.groups:
        if group["area"] not in areas:
            continue
        parent = registers.parent[group["ul"]]
        rows.append(["set", qualified(group_name(group)), group["mxf_key"],
                     qualified(group_name(parent)) if parent else "-",
                     "concrete" if group["concrete"] == "1" else "abstract"])
        for label, optional in registers.uses[group["ul"]]:
            element = registers.elements[label]
            status = refined.get(f"{group['symbol']}.{element['symbol']}",
                                 "optional" if optional else "required")
            if label == registers.instance_id:
                status = "required"
            name = qualified(element_name(element))
            if label in defined:
                rows.append(["use", name, status])
                continue
            defined.add(label)
            rows.append(["property", name, label, registers.tags.get(label, "-"),
                         registers.value_type(label), status, str(order[label])])
    return rows, spaces


def text_of(title, rows, spaces):
    lines = [HEAD.format(title=title)]
    width = max(map(len, spaces))
    lines += [f"namespace  {prefix.ljust(width)}  {spaces[prefix]}\n" for prefix in sorted(spaces)]
    names = max(len(row[1]) for row in rows)
    types = max((len(row[4]) for row in rows if row[0] == "property"), default=0)
    for row in rows:
        cells = [row[0].ljust(8), row[1].ljust(names)] + row[2:]
        if row[0] == "property":
            cells[3:6] = cells[3].ljust(5), cells[4].ljust(types), cells[5].ljust(16)
        lines.append(("\n" if row[0] == "set" else "") + "  ".join(cells).rstrip() + "\n")
    return "".join(lines)


def write(texts):
    for path, text in texts.items():
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


# Rows that say something of a row above them.
DETAILS = {".dict": {"property", "use"}, ".reg": {"member", "use", "reason", "deprecated"}}


def rows_of(path, text):
    """How often a text has each row, with the name that it belongs to."""
    if path.suffix == ".md":
        return Counter(text.splitlines())
    rows, owner = Counter(), ""
    for line in text.splitlines():
        cells = line.split(" # ")[0].split()
        if not cells or cells[0].startswith("#"):
            continue
        if cells[0] in DETAILS[path.suffix]:
            cells.append(f"(of {owner})")
        else:
            owner = cells[1]
        rows[" ".join(cells)] += 1
    return rows


def compare(texts):
    """Prints where the texts differ from what the registers give; True if anywhere."""
    differs = False
    for path, text in texts.items():
        old = path.read_text(encoding="utf-8") if path.exists() else ""
        here, there = rows_of(path, old), rows_of(path, text)
        for what, rows in (("new", there - here), ("only here", here - there)):
            for row in rows.elements():
                differs = True
                print(f"{path.parent.name}/{path.name}: {what}: {row}")
    return differs


def definitions(registers):
    """The texts of host/dictionary/smpte."""
    refined = {place: status for status, places in STATUS.items() for place in places}
    listed = {f"{g['symbol']}.{registers.elements[label]['symbol']}"
              for g in registers.groups for label, _ in registers.uses[g["ul"]]}
    if set(refined) - listed:
        sys.exit("no such property: " + ", ".join(sorted(set(refined) - listed)))
    placed = {area for _, areas in FILES.values() for area in areas}
    unplaced = {g["area"] for g in registers.groups} - placed
    if unplaced:
        sys.exit("no file for area " + ", ".join(sorted(unplaced)))
    order, defined = registers.order(), set()
    return {name: text_of(title, *file_rows(registers, areas, order, refined, defined))
            for name, (title, areas) in FILES.items()}


def named_rows(registers):
    """The dictionary's groups and properties under their names there."""
    rows = [(group_name(group), group) for group in registers.groups]
    used = {label for uses in registers.uses.values() for label, _ in uses}
    rows += [(element_name(element), element) for label, element in registers.elements.items()
             if label in used]
    return [(f"{prefix}:{symbol}", row) for ((prefix, _), symbol), row in rows]


def beyond(registers, folder):
    """The texts of host/dictionary/beyond."""
    def name(owned):
        (prefix, uri), symbol = owned
        return f"{prefix}:{symbol}", uri

    sets = {}
    for group in registers.groups:
        parent = registers.parent[group["ul"]]
        sets[group["mxf_key"]] = (*name(group_name(group)),
                                  beyond_texts.matched(parent["mxf_key"]) if parent else None)
    used = {label for uses in registers.uses.values() for label, _ in uses}
    properties = {label: (*name(element_name(element)), label in used)
                  for label, element in registers.elements.items()
                  if element["namespace"].endswith("reg/335/2012")}
    texts = beyond_texts.Beyond(lambda table: read(folder, table), sets, properties, AS_BYTES).texts()
    return ({owner + ".dict": text for owner, text in texts.items()} |
            {"labels.reg": beyond_texts.label_text(read(folder, "beyond_labels.csv"))})


def all_texts(folder):
    """Every file by its path below the root."""
    registers = Registers(folder)
    in_header = {group["ul"] for group in registers.groups}
    value_types = {label: BYTES if name in AS_BYTES else name
                   for label, name in registers.types.items()}

    def tables(name):
        return read(folder, name)

    at = Path("host", "dictionary")
    texts = {at / "smpte" / (name + ".dict"): text for name, text in definitions(registers).items()}
    entries = register_texts.all_texts(tables, in_header, value_types, named_rows(registers))
    texts |= {at / "registers" / (name + ".reg"): text for name, text in entries.items()}
    texts[Path("docs", "registers.md")] = register_report.text(tables, in_header)
    if (folder / "beyond_groups.csv").exists():
        texts |= {at / "beyond" / name: text for name, text in beyond(registers, folder).items()}
    return texts


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--write"]
    writes = "--write" in sys.argv
    if len(arguments) not in ((2,) if writes else (1, 2)):
        sys.exit(__doc__)
    root = Path(arguments[1]) if len(arguments) == 2 else Path(__file__).resolve().parent.parent
    texts = {root / path: text for path, text in all_texts(Path(arguments[0])).items()}
    if writes:
        write(texts)
    elif compare(texts):
        sys.exit(1)


if __name__ == "__main__":
    main()
