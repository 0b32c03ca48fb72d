"""The texts of host/dictionary/beyond: sets, properties and labels in use that no register lists."""

import re
from collections import defaultdict

# The owner in the tables to prefix, URN and words for the head. A name in use is the owner's, so
# each has a namespace of its own.
OWNERS = {
    "st2067-201": ("st2067-201", "urn:SMPTE:ST2067-201", "Immersive audio channels (SMPTE ST 2067-201)"),
    "st2067-206": ("st2067-206", "urn:SMPTE:ST2067-206", "Timed events (SMPTE ST 2067-206)"),
    "st2117-10": ("st2117-10", "urn:SMPTE:ST2117-10", "VC-6 pictures (SMPTE ST 2117-10)"),
    "st2131": ("st2131", "urn:SMPTE:ST2131", "Audio Definition Model in RIFF chunks (SMPTE ST 2131)"),
    "st2134": ("st2134", "urn:SMPTE:ST2134", "Time-related labels (SMPTE ST 2134)"),
    "apple": ("apple", "urn:Apple:MXF", "Apple"),
    "arri": ("arri", "urn:ARRI:MXF", "ARRI"),
    "avid": ("avid", "urn:Avid:MXF", "Avid"),
    "dolby": ("dolbyPimf", "urn:Dolby:PIMF", "Dolby's dynamic metadata in MXF"),
    "hdrvivid": ("hdrVivid", "urn:CUVA:HDRVivid", "HDR Vivid"),
    "legacy": ("legacy", "urn:SMPTE:Legacy", "Labels of early MXF that registered ones replaced"),
    "omneon": ("omneon", "urn:Omneon:MXF", "Omneon Video Networks"),
    "sony": ("sony", "urn:Sony:MXF", "Sony"),
}

# Whose labels there are beyond those of OWNERS.
LABEL_OWNERS = {
    "aaf": "AAF", "advss": "AdvSS", "arib": "ARIB TR-B48", "dbox": "D-BOX", "dms1": "SMPTE ST 380",
    "dolby": "Dolby", "ebu": "EBU Tech 3393", "fraunhofer": "Fraunhofer IIS",
    "hdrvivid": "HDR Vivid", "imf": "SMPTE ST 2067-21", "st2117-10": "SMPTE ST 2117-10",
    "st2131": "SMPTE ST 2131", "st2134": "SMPTE ST 2134", "st377-1": "SMPTE ST 377-1",
    "st422": "SMPTE ST 422",
}

SURE = {
    "bytes": "in real files",
    "stated2": "in several public projects",
    "stated1": "in one public project",
    "partial": "in one public project, in part",
}

# What is to be known of a row, by what its note begins with.
NOTES = {
    "type not in v86; place in the Types register = record": "a record of unpublished layout",
    "type not in v86": "type told from its place in the register",
    "sources disagree": "elsewhere an array of URIs",
    "record of UInt16 red": "UInt16 red, green, blue",
    "record of Rational PositionX": "Rational x, y, width, height",
    "array of records UInt8 did": "UInt8 DID, UInt8 SDID of each",
    "an AUID: a UL as is": "a label, or a UUID with its halves swapped; also MediaStreamPluginGUID",
    "enumeration 0 Unknown": "0 unknown, 1 constant, 2 variable bytes per element",
    "an old public reader": "elsewhere of 2 bytes",
    "pyaaf2 says": "also CommentMarkerUser",
    "stated for AAF": "of AAF files",
    "registered element": "registered for other uses",
    "16-byte items": "order and strength of the references are a guess",
    "byte 8 is not stated": "version byte unknown",
    "a label (byte 5": "the label of a coding, used as that of a property",
    "content light level": "of any file descriptor",
    "older label": "an older label of Packages",
    "preliminary": "preliminary",
}

HEAD = """\
# {title}
#
# Not in the SMPTE registers, but in use. One definition per row; columns are separated by blanks,
# names are prefix:name. A comment above each group of rows says where they were found.
#   namespace  prefix, URI
#   set        name, key as in files, name of the set it inherits from or -, concrete or abstract
#   extend     name of a registered set
#   property   of the set above: name, label, static local tag or -, value type, status, SchemaIndex
#   use        a property of the set above that another set has too: name, status
# Status: required, optional. SchemaIndex: 10000, 1000 for each ancestor of the set, and a number.
# This text is the source: rows are changed by hand, with where they were found.
"""

LABEL_HEAD = """\
# Labels in use that are not in the SMPTE registers
#
# One entry per row; columns are separated by blanks. The last may be several words. A comment above
# each group of rows says where they were found.
#   unregistered  whose the entries below it are
#   label         label, symbol, name in words
# This text is the source: rows are changed by hand, with where they were found.
"""


def is_local_set(key):
    return key.startswith("06.0e.2b.34.02.53.")


def matched(label):
    """What of a label takes part in matching."""
    return label[:21] + label[24:]


def note_of(row):
    return next((" # " + words for start, words in NOTES.items() if row["note"].startswith(start)),
                "")


def source_of(row):
    """Where it was found, without what only an index of files knows."""
    return re.sub(r"stored public file \d+ \(([^,]*),[^)]*\)", r"a public \1", row["source"])


def found(row):
    return f"# {SURE[row['sure']]}: {source_of(row)}\n"


class Beyond:
    """The tables of what is in use, as additions to the registers' dictionary."""

    def __init__(self, tables, registered_sets, registered_properties, as_bytes):
        """registered_sets: key without version to (qualified name, URI, parent's key without
        version or None). registered_properties: label to (qualified name, URI, whether a registered
        set has it). as_bytes: the value types that stay bytes."""
        self.sets = {matched(key): value for key, value in registered_sets.items()}
        self.known = {matched(label): value for label, value in registered_properties.items()}
        self.as_bytes = as_bytes
        self.groups = [g for g in tables("beyond_groups.csv")
                       if is_local_set(g["key"]) and g["parent_key"]]
        for group in self.groups:
            prefix, urn, _ = OWNERS[group["namespace_owner"]]
            self.sets[matched(group["key"])] = (f"{prefix}:{group['symbol']}", urn + ":Groups",
                                                matched(group["parent_key"]))
        self.rows = defaultdict(list)
        last = defaultdict(int)
        for row in tables("beyond_elements.csv"):
            key = matched(row["group_key"])
            if key in self.sets:
                depth = self.depth(key)
                last[depth] += 1
                self.rows[row["namespace_owner"], key].append(
                    (row, 10000 + 1000 * depth + last[depth]))

    def depth(self, key):
        parent = self.sets[key][2]
        return 0 if parent is None else 1 + self.depth(parent)

    def property_row(self, owner, row, place, spaces):
        prefix, urn, _ = OWNERS[owner]
        name, uri, is_defined = self.known.get(
            matched(row["ul"]), (f"{prefix}El:{row['unique_symbol']}", urn + ":Elements", False))
        spaces[name.split(":")[0]] = uri
        status = "optional" if row["optional"] == "1" else "required"
        if is_defined:
            return ["use", name, status + note_of(row)]
        kind = "DataStream" if row["value_type"] in self.as_bytes else row["value_type"]
        tag = row["local_tag"].lower()
        return ["property", name, row["ul"], f"{tag[:2]}.{tag[2:]}" if tag else "-", kind,
                status, str(place) + note_of(row)]

    def text(self, owner):
        spaces, blocks = {}, []
        for group in self.groups:
            if group["namespace_owner"] == owner:
                key = matched(group["key"])
                name, uri, parent = self.sets[key]
                spaces[name.split(":")[0]] = uri
                spaces[self.sets[parent][0].split(":")[0]] = self.sets[parent][1]
                head = ["set", name, group["key"], self.sets[parent][0],
                        ("concrete" if group["concrete"] == "1" else "abstract") + note_of(group)]
                blocks.append((group, head, self.rows.pop((owner, key), [])))
        for (row_owner, key), rows in self.rows.items():
            if row_owner == owner:
                name, uri, _ = self.sets[key]
                spaces[name.split(":")[0]] = uri
                blocks.append((rows[0][0], ["extend", name], rows))
        written = []
        for origin, head, rows in blocks:
            written += ["\n" + found(origin), head]
            source = found(origin)
            for row, place in rows:
                if found(row) != source:
                    source = found(row)
                    written.append(source)
                written.append(self.property_row(owner, row, place, spaces))
        width = max(map(len, spaces))
        lines = [f"namespace  {prefix.ljust(width)}  {spaces[prefix]}\n" for prefix in sorted(spaces)]
        cells = [row for row in written if isinstance(row, list)]
        names = max(len(row[1]) for row in cells)
        types = max((len(row[4]) for row in cells if row[0] == "property"), default=0)
        for row in written:
            if isinstance(row, str):
                lines.append(row)
                continue
            padded = [row[0].ljust(8), row[1].ljust(names)] + row[2:]
            if row[0] == "property":
                padded[3:6] = row[3].ljust(5), row[4].ljust(types), row[5].ljust(8)
            lines.append("  ".join(padded).rstrip() + "\n")
        return HEAD.format(title=OWNERS[owner][2]) + "".join(lines)

    def texts(self):
        return {owner: self.text(owner) for owner in OWNERS}


def label_text(rows):
    lines = [LABEL_HEAD]
    groups = defaultdict(list)
    for row in rows:
        owner = row["namespace_owner"]
        groups[LABEL_OWNERS.get(owner) or OWNERS[owner][2], source_of(row)].append(row)
    last = None
    for (owner, source), members in sorted(groups.items()):
        lines.append("\n")
        if owner != last:
            lines.append(f"unregistered  {owner}\n")
            last = owner
        lines.append(f"# {source}\n")
        for row in members:
            lines.append(f"label     {row['ul']}  {row['symbol'].replace(' ', '_')}  "
                         f"{row['name'] or row['symbol']}\n")
    return "".join(lines)
