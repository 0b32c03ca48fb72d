"""The texts of host/dictionary/registers: what the SMPTE registers say of each of their entries."""

from collections import defaultdict

# Where a label is, by its bytes from the ninth on; a label belongs to the longest of these
# that it begins with. Each file has its own; what all labels begin with is in the last one.
LABEL_FILES = {
    "labels-operational-patterns": ("Operational patterns (SMPTE ST 377-1, ST 378, ST 390 and others)", {
        "0d.01.02.01": "Operational patterns of MXF",
        "0d.01.02.01.01.01": "OP1a, single item, single package",
        "0d.01.02.01.01.02": "OP1b, single item, ganged packages",
        "0d.01.02.01.01.03": "OP1c, single item, alternate packages",
        "0d.01.02.01.02.01": "OP2a, playlist items, single package",
        "0d.01.02.01.02.02": "OP2b, playlist items, ganged packages",
        "0d.01.02.01.02.03": "OP2c, playlist items, alternate packages",
        "0d.01.02.01.03.01": "OP3a, edit items, single package",
        "0d.01.02.01.03.02": "OP3b, edit items, ganged packages",
        "0d.01.02.01.03.03": "OP3c, edit items, alternate packages",
        "0d.01.02.01.10": "OP-Atom",
        "0d.01.12": "Operational patterns of AAF",
    }),
    "labels-essence-containers": ("Essence containers (SMPTE ST 379-1, ST 379-2 and the mappings)", {
        "0d.01.03.01": "Essence containers of MXF",
        "0d.01.03.01.02": "Generic container",
        "0d.01.03.01.02.01": "D-10",
        "0d.01.03.01.02.02": "DV",
        "0d.01.03.01.02.03": "D-11",
        "0d.01.03.01.02.05": "Uncompressed picture",
        "0d.01.03.01.02.06": "AES3 and Broadcast Wave sound",
        "0d.01.03.01.02.0b": "Encrypted essence",
        "0d.01.03.01.02.0c": "JPEG 2000",
        "0d.01.03.01.02.11": "VC-3",
        "0d.01.03.01.02.12": "VC-1",
        "0d.01.03.01.02.13": "Timed text and auxiliary data of digital cinema",
        "0d.01.03.01.02.14": "TIFF/EP",
        "0d.01.03.01.02.15": "VC-2",
        "0d.01.03.01.02.19": "ACES",
        "0d.01.03.01.02.1b": "VC-5",
        "0d.01.03.01.02.1e": "DNx",
        "0d.01.03.01.02.21": "JPEG XS",
        "0d.01.03.01.02.22": "ARRIRAW",
        "0d.01.03.01.02.23": "FFV1",
        "0d.01.03.01.02.25": "Metadata-guided audio",
        "0d.01.03.01.03": "Generic stream",
        "0d.01.13": "Essence containers of AAF",
        "0e.09.06.05": "Immersive audio",
        "0e.09.06.07": "Image metadata and ISXD",
    }),
    "labels-essence-containers-mpeg": ("Essence containers of MPEG streams (SMPTE ST 381 and its parts)", {
        "0d.01.03.01.02.04": "MPEG elementary streams",
        "0d.01.03.01.02.07": "MPEG packetised elementary streams",
        "0d.01.03.01.02.08": "MPEG programme streams",
        "0d.01.03.01.02.09": "MPEG transport streams",
        "0d.01.03.01.02.0f": "AVC NAL unit streams",
        "0d.01.03.01.02.10": "AVC byte streams",
        "0d.01.03.01.02.16": "AAC, ADIF",
        "0d.01.03.01.02.17": "AAC, ADTS",
        "0d.01.03.01.02.18": "AAC, LATM/LOAS",
        "0d.01.03.01.02.1f": "HEVC NAL unit streams",
        "0d.01.03.01.02.20": "HEVC byte streams",
    }),
    "labels-picture": ("Coding and colour of pictures", {
        "04.01": "Picture essence",
        "04.01.01.01.01": "Transfer characteristics",
        "04.01.01.01.02": "Coding equations",
        "04.01.01.01.03": "Colour primaries",
        "04.01.01.01.04": "Alternative center cuts",
        "04.01.02": "Picture codings",
        "04.01.02.01": "Uncompressed picture codings",
        "04.01.02.02": "Compressed picture codings",
        "04.01.02.02.01": "MPEG picture codings",
        "04.01.02.02.01.31": "AVC picture codings",
        "04.01.02.02.01.32": "AVC intra picture codings",
        "04.01.02.02.02": "DV picture codings",
        "04.01.02.02.03.01": "JPEG 2000 picture codings",
        "04.01.02.02.03.08": "JPEG XS picture codings",
        "04.01.02.02.70": "D-11 picture codings",
        "04.01.02.02.71": "VC-3 picture codings",
        "04.01.02.02.72": "VC-1 picture codings",
        "04.01.02.10": "Stereoscopic picture tracks",
    }),
    "labels-sound": ("Coding and channel assignment of sound", {
        "04.02": "Sound essence",
        "04.02.02.01": "Uncompressed sound codings",
        "04.02.02.02": "Compressed sound codings",
        "04.02.02.10": "Channel assignments",
        "04.02.02.10.01": "Channel assignments of SMPTE ST 2035",
        "04.02.02.10.02": "Channel assignments of SMPTE ST 320",
        "04.02.02.10.03": "Channel assignments of SMPTE ST 429-2",
        "04.02.02.10.04": "Channel assignments of SMPTE ST 2067-2",
        "0e.09.06.04": "Immersive audio codings",
    }),
    "labels-channels": ("Audio channels and soundfields (SMPTE ST 377-4)", {
        "03.02": "Multichannel audio labels",
        "03.02.01": "Audio channels",
        "03.02.02": "Soundfield groups",
        "03.02.03": "Groups of soundfield groups",
        "0e.09.01.01": "Multichannel audio labels for private use",
        "0e.09.01.01.04": "Audio channels",
        "0e.09.01.01.05": "Soundfield groups",
    }),
    "labels-data": ("Kinds of tracks, coding of data and timecode", {
        "01.03.02": "Kinds of tracks",
        "04.03": "Data essence",
        "04.03.01": "Subtitles and captions",
        "04.04": "Metadata coding",
        "04.04.01.02.01": "Timecode",
        "04.04.01.02.02": "Dynamic metadata for colour volume transforms",
        "04.04.02": "Payloads of audio metadata",
        "0e.09.06.06": "Text codings",
    }),
    "labels-schemes": ("Descriptive metadata schemes", {
        "0d.01.04": "Descriptive metadata schemes of MXF",
        "0d.01.04.01.01": "DMS-1",
        "0d.01.07": "Descriptive metadata schemes of AMWA",
        "0d.02.01": "EBUCore",
        "0d.04.01": "Archive preservation",
        "0d.0c.01": "UK DPP",
    }),
    "labels-other": ("Labels of no other file", {
        "01": "Identification and location",
        "01.01": "Formats of files",
        "02": "Administration",
        "02.09": "Encryption and hashes",
        "03": "Interpretation",
        "04": "Parameters",
        "04.10": "Viewing environments",
        "05": "Process",
        "05.10": "Automatic exposure",
        "0d": "Organisations, for public use",
        "0d.01": "AMWA and AAF",
        "0d.01.01.02": "Categories and usages of AAF",
        "0d.01.08": "AMWA's rules-based specifications",
        "0d.0a.01": "Audio decision lists",
        "0d.0e.01": "FADGI AS-07",
        "0d.0f.03": "Digital cinema",
        "0e": "Organisations, for private use",
    }),
}

TYPE_FILES = {
    "types": ("Types of SMPTE", ["01", "02", "03", "04", "05"]),
    "types-organisations": ("Types of AMWA, BBC, UK DPP and FADGI",
                            ["0d.01", "0d.04", "0d.0c", "0d.0e"]),
    "types-ebucore": ("Types of EBUCore (EBU Tech 3293)", ["0d.02"]),
}

PROPERTY_FILES = {
    "properties-identification": ("Identification and location (SMPTE ST 335, class 1)", ["01"]),
    "properties-administration": ("Administration (SMPTE ST 335, class 2)", ["02"]),
    "properties-interpretation": ("Interpretation (SMPTE ST 335, class 3)", ["03"]),
    "properties-parameters": ("Parameters of essence (SMPTE ST 335, class 4)", ["04"]),
    "properties-process": ("Process (SMPTE ST 335, class 5)", ["05"]),
    "properties-relations": ("Relations (SMPTE ST 335, class 6)", ["06"]),
    "properties-space-and-time": ("Space and time (SMPTE ST 335, class 7)", ["07"]),
    "properties-organisations": ("Properties of AMWA, AAF, BBC, UK DPP, Ad-ID, FADGI and others",
                                 ["0d.01", "0d.04", "0d.0b", "0d.0c", "0d.0d", "0d.0e", "0e"]),
    "properties-ebucore": ("Properties of EBUCore (EBU Tech 3293)", ["0d.02"]),
}

# Why a group is none of header metadata, by its area. The first column names a reason, each of
# which is one row; the groups of an area all have the same.
REASONS = {
    "partition": "Packs that frame partitions: partition packs, primer pack, random index pack",
    "index-table": "Segments of index tables, which follow the header metadata",
    "message": "Messages between the devices of digital cinemas",
    "essence": "Metadata that accompanies essence, frame by frame, in its container or stream",
    "no-coding": "Classes for which the registers name no coding as KLV",
}
REASON_OF_AREA = {
    "partition": "partition",
    "index": "index-table",
    "dcinema-message": "message",
    "aux-data": "message",
    "dmcvt": "essence",
    "hdr-pack": "essence",
    "audio-metadata-pack": "essence",
    "streaming-data": "essence",
    "encrypted-triplet": "essence",
    "register-2045": "no-coding",
}

# Whose other names are of use to people who read a standard, and where they are.
ALIAS_DOCUMENTS = {"AAF": "AAF Object Specification", "DMS-Crypto": "SMPTE ST 429-6"}

# The end of each text's head.
ORIGIN = """\
# This text is the source: rows are changed by hand. tools/compare-dictionary.py compares them with a
# release of the registers.
"""

HEAD = """\
# {title}
#
# What the SMPTE registers say, one entry per row; columns are separated by blanks. The last may be
# several words. Lines that begin with a number sign are comments.
{columns}#   document    that defines the entries below it, or -
#   deprecated  says so of the entry or member above it
""" + ORIGIN

LABEL_COLUMNS = """\
#   branch      first bytes of labels from the ninth on, what such labels name
#   label       label, symbol, name in words
"""
TYPE_COLUMNS = """\
#   type        label, symbol, kind, the type it is made of or the group it refers to or -,
#               bytes (of a fixed array: items) or -, value type or -, path to targets if any
#   member      of the type above: symbol, then its type, its value or the label it stands for
"""
PROPERTY_COLUMNS = """\
#   property    label, symbol, type or -, name in words
"""
GROUP_COLUMNS = """\
#   reason      why a group does not belong in header metadata, in words
#   group       key of any coding, symbol, parent or -, concrete or abstract, codings (byte 6 of
#               keys) or -, header or a reason, name in words
#   use         a property of the group above, for groups that are elsewhere: label, local tag
#               or -, required or optional
"""
ALIAS_COLUMNS = """\
#   alias       name in the dictionary, the other name in the document
"""

KINDS = {"strong_ref": "strong-reference", "weak_ref": "weak-reference",
         "global_ref": "global-reference"}


def body(label):
    """The bytes from the ninth on: the place in the register."""
    return label[24:]


def file_of(label, files):
    return max(((len(prefix), name) for name, (_, prefixes) in files.items() for prefix in prefixes
                if body(label).startswith(prefix)), default=(0, None))[1]


class Text:
    """The rows of one file."""

    def __init__(self, title, columns):
        self.lines = [HEAD.format(title=title, columns=columns)]
        self.document = None

    def add(self, kind, *cells):
        words = [cell or "-" for cell in cells]
        self.lines.append("  ".join([kind.ljust(8)] + words).rstrip() + "\n")

    def entry(self, row, kind, *cells):
        document = row["defining_document"]
        if document != self.document:
            self.lines.append("\n")
            self.add("document", document)
            self.document = document
        self.add(kind, *cells)
        if row["deprecated"] == "1":
            self.add("deprecated")


def split(rows, files, columns, add):
    """The texts of a register: each row in the file for its label."""
    texts = {name: Text(title, columns) for name, (title, _) in files.items()}
    for row in rows:
        name = file_of(row["ul"], files)
        if name is None:
            raise SystemExit(f"no file for {row['ul']} {row['symbol']}")
        add(texts[name], row)
    return texts


def label_texts(rows):
    texts = split(rows, LABEL_FILES, LABEL_COLUMNS, lambda text, row: text.entry(
        row, "label", row["ul"], row["symbol"], row["name"]))
    for name, (_, branches) in LABEL_FILES.items():
        lines = [f"branch    {prefix.ljust(17)}  {words}\n" for prefix, words in branches.items()]
        texts[name].lines[1:1] = ["\n"] + lines
    return texts


def kind_of(row):
    if row["kind"] == "integer":
        return "signed-integer" if row["signed"] == "1" else "unsigned-integer"
    return KINDS.get(row["kind"], row["kind"].replace("_", "-"))


def type_texts(rows, member_rows, value_types):
    members = defaultdict(list)
    for row in member_rows:
        members[row["type_ul"]].append(row)

    def add(text, row):
        text.entry(row, "type", row["ul"], row["symbol"], kind_of(row),
                   row["base_symbol"] or row["target_symbol"], row["size"],
                   value_types.get(row["ul"]), *filter(None, [row["target_path"]]))
        for member in members[row["ul"]]:
            text.add("member", member["member_symbol"],
                     member["value"] or member["member_type_symbol"])
            if member["deprecated"] == "1":
                text.add("deprecated")

    return split(rows, TYPE_FILES, TYPE_COLUMNS, add)


def property_texts(rows):
    return split(rows, PROPERTY_FILES, PROPERTY_COLUMNS, lambda text, row: text.entry(
        row, "property", row["ul"], row["symbol"], row["type_symbol"], row["name"]))


def place_of(group, in_header):
    return "header" if group["ul"] in in_header else REASON_OF_AREA[group["area"]]


def group_text(rows, use_rows, in_header):
    text = Text("Groups: sets and packs (SMPTE ST 395)", GROUP_COLUMNS)
    text.lines.append("\n")
    for reason, words in REASONS.items():
        text.add("reason", reason.ljust(11), words)
    uses = defaultdict(list)
    for row in use_rows:
        uses[row["group_ul"]].append(row)
    for row in rows:
        text.entry(row, "group", row["ul"], row["symbol"], row["parent_symbol"],
                   "concrete" if row["concrete"] == "1" else "abstract",
                   row["klv_syntax"].replace(" ", ","), place_of(row, in_header), row["name"])
        for use in [] if row["ul"] in in_header else uses[row["ul"]]:
            tag = use["local_tag"].lower()
            text.add("use", use["element_ul"], tag and f"{tag[:2]}.{tag[2:]}",
                     "optional" if use["optional"] == "1" else "required")
    return text


def alias_text(named_rows):
    """Other names that the registers mention.

    named_rows: pairs of a name in the dictionary and a row of groups or properties."""
    text = Text("Names that other standards use", ALIAS_COLUMNS)
    for owner, document in ALIAS_DOCUMENTS.items():
        text.lines.append("\n")
        text.add("document", document)
        for name, row in named_rows:
            for application in row["applications"].split():
                user, _, alias = application.partition("~")
                if user.split("[")[0] == owner and alias not in ("", row["symbol"]):
                    text.add("alias", name, alias)
    return text


def all_texts(tables, in_header, value_types, named_rows):
    """The name of each file and its text.

    tables: gives the rows of a table by its name. in_header: the keys of the groups that the
    dictionary of header metadata holds. value_types: by type label. named_rows: see alias_text."""
    texts = label_texts(tables("labels.csv"))
    texts.update(type_texts(tables("types.csv"), tables("type_members.csv"), value_types))
    texts.update(property_texts(tables("elements.csv")))
    texts["groups"] = group_text(tables("groups.csv"), tables("group_elements.csv"), in_header)
    texts["aliases-aaf"] = alias_text(named_rows)
    return {name: "".join(text.lines) for name, text in texts.items()}
