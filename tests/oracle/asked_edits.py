"""The edits that people ask for, and the files that have what is changed.

Each edit is a change of the text of a document. A base makes of a file one that has what is
edited: that is an edit as well, or a change of the file's bytes.
"""
import re

import klv
import partitions

# --- bases --------------------------------------------------------------------------------------

UID = "01.02.03.04.05.06.47.08.89.0a.0b.0c.0d.0e.0f."

MCA_LABEL = (
    """<s377m:SoundfieldGroupLabelSubDescriptor rp210:InstanceUID="%s10">
    <rp210:MCALabelDictionaryID>06.0e.2b.34.04.01.01.0d.03.02.02.01.00.00.00.00</rp210:MCALabelDictionaryID>
    <rp210:MCATagSymbol>sg51</rp210:MCATagSymbol>
    <rp210:MCALinkID>82.3b.44.4e.a6.58.40.79.b3.14.c0.78.13.1b.bb.25</rp210:MCALinkID>
    <rp210:RFC5646SpokenLanguage>en</rp210:RFC5646SpokenLanguage>
  </s377m:SoundfieldGroupLabelSubDescriptor>
  """
    % UID
)
MCA_REFERENCE = (
    "<rp210:SubDescriptors><s377m:SoundfieldGroupLabelSubDescriptor_REF types:TargetInstance="
    '"%s10"/></rp210:SubDescriptors>' % UID
)

# A static track with a marker for the framework of each scheme.
TRACK = """<s377m:StaticTrack rp210:InstanceUID="{uid}{n}1">
    <rp210:EssenceTrackNumber>0</rp210:EssenceTrackNumber>
    <rp210:TrackID>500{n}</rp210:TrackID>
    <rp210:TrackSegment><s377m:Sequence_REF types:TargetInstance="{uid}{n}2"/></rp210:TrackSegment>
  </s377m:StaticTrack>
  <s377m:Sequence rp210:InstanceUID="{uid}{n}2">
    <rp210:ComponentDataDefinition>06.0e.2b.34.04.01.01.01.01.03.02.01.10.00.00.00</rp210:ComponentDataDefinition>
    <rp210:ComponentObjects><s377m:DescriptiveMarker_REF types:TargetInstance="{uid}{n}3"/></rp210:ComponentObjects>
  </s377m:Sequence>
  <s377m:DescriptiveMarker rp210:InstanceUID="{uid}{n}3">
    <rp210:ComponentDataDefinition>06.0e.2b.34.04.01.01.01.01.03.02.01.10.00.00.00</rp210:ComponentDataDefinition>
    <rp210:DescriptiveFrameworkObject><{framework}_REF types:TargetInstance="{uid}{n}4"/></rp210:DescriptiveFrameworkObject>
  </s377m:DescriptiveMarker>
  <{framework} rp210:InstanceUID="{uid}{n}4">{properties}</{framework}>
  {more}"""
AS_11 = TRACK.format(
    uid=UID,
    n=1,
    framework="as11:DM_AS_11_Core_Framework",
    properties="<as11El:AS_11_Series_Title>Series</as11El:AS_11_Series_Title>"
    "<as11El:AS_11_Programme_Title>Programme</as11El:AS_11_Programme_Title>"
    "<as11El:AS_11_Episode_Title_Number>Episode 1</as11El:AS_11_Episode_Title_Number>"
    "<as11El:AS_11_Shim_Name>UK DPP HD</as11El:AS_11_Shim_Name>",
    more="",
)
AS_07 = TRACK.format(
    uid=UID,
    n=2,
    framework="as07:AS_07_Core_DMS_Framework",
    properties="<as07El:AS_07_Core_DMS_ShimName>Shim</as07El:AS_07_Core_DMS_ShimName>"
    "<as07El:AS_07_Core_DMS_Identifiers>"
    '<as07:AS_07_DMS_Identifier_REF types:TargetInstance="%s25"/>'
    "</as07El:AS_07_Core_DMS_Identifiers>"
    "<as07El:AS_07_Core_DMS_WorkingTitle>Title</as07El:AS_07_Core_DMS_WorkingTitle>" % UID,
    more='<as07:AS_07_DMS_Identifier rp210:InstanceUID="%s25">'
    "<as07El:AS_07_DMS_IdentifierValue>0001</as07El:AS_07_DMS_IdentifierValue>"
    "</as07:AS_07_DMS_Identifier>" % UID,
)
NAMESPACES = (
    ' xmlns:as11="urn:AMWA:AS11:Groups" xmlns:as11El="urn:AMWA:AS11:Elements"'
    ' xmlns:as07="urn:FADGI:AS07:Groups" xmlns:as07El="urn:FADGI:AS07:Elements">'
)


def with_labels(document):
    """With the labels of sound channels of SMPTE ST 377-4, below the first descriptor."""
    return re.sub(
        r"(<s377m:\w+Descriptor rp210:InstanceUID=\"[^\"]*\">)(.*?)(?=<s377m:EssenceData )",
        lambda found: found[1] + MCA_REFERENCE + found[2] + MCA_LABEL,
        document,
        count=1,
        flags=re.S,
    )


def with_schemes(document):
    """With a track for the titles of AS-11 and one for those of AS-07."""
    references = "".join(
        '<s377m:StaticTrack_REF types:TargetInstance="%s%d1"/>' % (UID, number) for number in (1, 2)
    )
    document = re.sub(r"(<s377m:MetadataSets [^>]*)>", r"\1" + NAMESPACES, document, count=1)
    return re.sub(
        r"(<s377m:MaterialPackage .*?)(</rp210:PackageTracks>.*?</s377m:MaterialPackage>)",
        lambda found: found[1] + references + found[2] + AS_11 + AS_07,
        document,
        count=1,
        flags=re.S,
    )


def with_open_header(data):
    """As a recorder leaves it: the header is open, incomplete and knows no durations; the footer
    has the metadata."""
    _, parts, _ = partitions.walk(data)
    header, footer = parts[0], parts[-1]
    metadata = data[slice(*header.metadata)]
    unknown = re.sub(
        rb"\x02\x02\x00\x08.{8}", b"\x02\x02\x00\x08" + 8 * b"\xff", metadata, flags=re.S
    )
    status = 14  # in the key of a pack
    pack = klv.Triplet(data, footer.at)
    counted = pack.end - pack.length + 32  # HeaderByteCount
    return b"".join(
        [
            data[: header.at + status],
            b"\x01",
            data[header.at + status + 1 : header.metadata[0]],
            unknown,
            data[header.metadata[1] : footer.at + status],
            b"\x04",
            data[footer.at + status + 1 : counted],
            len(metadata).to_bytes(8, "big"),
            data[counted + 8 : footer.metadata[0]],
            metadata,
            data[footer.metadata[1] :],
        ]
    )


# --- edits --------------------------------------------------------------------------------------


class Edit:
    def __init__(self, name, what, by, shown=(), seen=(), traced=None, base=None, options=()):
        self.name = name
        self.what = re.compile(what, re.S)
        self.by = by
        self.shown = re.compile("|".join(shown) or "(?!)")  # keys of programs that show it
        self.seen = seen  # (key, value) after the edit; the key begins with the program's name
        # A line of mediainfo's trace of the bytes, for what no program has in its summary.
        self.traced = traced and re.compile(traced)
        self.base = base
        self.options = list(options)


PICTURE = r"(<s377m:(?:CDCI|RGBA|MPEGVideo)Descriptor [^>]*>)"
SOUND = ["language", "Language", "ChannelLayout", "ChannelPositions", "Title", "Matrix", "extra"]
EDITS = [
    Edit(
        "spoken language",
        r"(<rp210:RFC5646SpokenLanguage>)[^<]*",
        r"\1fr-CA",
        SOUND,
        [("mediainfo.*Language", "fr-CA")],
        base=with_labels,
    ),
    Edit(
        "MCA tag symbol",
        r"(<rp210:MCATagSymbol>)[^<]*",
        r"\1sgST",
        SOUND,
        traced="MCA Tag Symbol - sgST ",
        base=with_labels,
    ),
    Edit(
        "MCA label",
        r"(<rp210:MCALabelDictionaryID>)[^<]*",
        r"\g<1>06.0e.2b.34.04.01.01.0d.03.02.02.02.00.00.00.00",
        SOUND,
        traced="MCA Label Dictionary ID - 060E2B34-0401-010D-0302-020200000000 ",
        base=with_labels,
    ),
    Edit(
        "aspect ratio",
        r"(<rp210:ImageAspectRatio>\s*<types:Numerator>)\d+(</types:Numerator>\s*<types:Denominator>)\d+",
        r"\g<1>21\g<2>9",
        ["aspect_ratio", "AspectRatio"],
        [("ffprobe.*display_aspect_ratio", "7:3"), ("mediainfo.*/DisplayAspectRatio$", "2.333")],
    ),
    Edit(
        "primaries and transfer",
        PICTURE,
        r"\1<rp210:ColorPrimaries>06.0e.2b.34.04.01.01.06.04.01.01.01.03.03.00.00</rp210:ColorPrimaries>"
        r"<rp210:TransferCharacteristic>06.0e.2b.34.04.01.01.01.04.01.01.01.01.02.00.00"
        r"</rp210:TransferCharacteristic>",
        ["color_", "colour_", "transfer", "primaries", "Colour"],
        [("ffprobe.*color_primaries", "bt709"), ("mediainfo.*/colour_primaries$", "BT.709")],
    ),
    Edit(
        "start timecode",
        r"(<rp210:StartTimecode>)[^<]*",
        r"\g<1>90000",
        ["timecode", "TimeCode", "Delay"],
        [("ffprobe.*timecode", "01:00:00"), ("mediainfo.*TimeCode_FirstFrame", "01:00:00")],
    ),
    Edit(
        "tape name",
        r"(<s377m:SourcePackage .*?</rp210:PackageID>\n)(?: *<rp210:PackageName>[^\n]*\n)?",
        r"\1    <rp210:PackageName>Tape 17</rp210:PackageName>\n",
        [
            "file_package_name",
            "reel_name",
            "PackageName",
            "^General.*Title",
            "Delay_Settings",
            "TimeCode_Settings",
        ],
        [("ffprobe", "Tape 17"), ("mediainfo", "Tape 17")],
    ),
    Edit(
        "track name",
        r"(<s377m:TimelineTrack [^>]*>\n)(?: *<rp210:TrackName>[^\n]*\n)?",
        r"\1    <rp210:TrackName>Clean feed</rp210:TrackName>\n",
        ["track_name", "Title"],
        [("mediainfo.*Title", "Clean feed")],
    ),
    Edit(
        "operational pattern",
        r"(OperationalPattern>[0-9a-f.]*)01\.0[19]\.00<",
        r"\g<1>02.0d.00<",
        ["operational_pattern", "Format_Profile", "Format_Commercial"],
        [("ffprobe.*operational_pattern_ul", "060e2b34.04010101.0d010201.01020d00")],
    ),
    Edit(
        "open header closed",
        r"\Z",
        "",
        ["Format_Settings", "Duration", "FrameCount", "SamplingCount", "duration", "_LastFrame"],
        [("mediainfo.*Format_Settings$", "Closed / Complete")],
        base=with_open_header,
        options=["--close-header"],
    ),
    Edit(
        "AS-07 and AS-11 titles and identifiers",
        r"(<as11El:AS_11_Programme_Title>)[^<]*(.*<as07El:AS_07_Core_DMS_WorkingTitle>)[^<]*"
        r"(.*<as07El:AS_07_DMS_IdentifierValue>)[^<]*",
        r"\1Another programme\2Another title\g<3>0002",
        ["ProgrammeTitle"],
        [("mediainfo.*ProgrammeTitle", "Another programme")],
        base=with_schemes,
    ),
    Edit(
        "video line map",
        r"(<rp210:VideoLineMap>\s*<rp210:Element>)\d+",
        r"\g<1>21",
        ["field_order", "ScanOrder"],
        traced="VideoLineMapEntry: +21 ",
    ),
    Edit(
        "active format",
        PICTURE,
        r"\1<rp210:ActiveFormatDescriptor>80</rp210:ActiveFormatDescriptor>",
        ["ActiveFormat", "AspectRatio", "aspect_ratio"],
        [("mediainfo.*ActiveFormatDescription$", "10")],
    ),
    Edit(
        "package name",
        r"(<s377m:MaterialPackage .*?</rp210:PackageID>\n)(?: *<rp210:PackageName>[^\n]*\n)?",
        r"\1    <rp210:PackageName>Camera 1</rp210:PackageName>\n",
        ["material_package_name", "PackageName", "^General.*Title"],
        [("ffprobe.*material_package_name", "Camera 1")],
    ),
    Edit(
        "company and product",
        r"(ApplicationSupplierName>)[^<]*(<[^>]*>\s*<rp210:ApplicationName>)[^<]*",
        r"\1Company\2Product",
        ["company_name", "product_name", "Encoded_"],
        [("ffprobe.*company_name", "Company"), ("ffprobe.*product_name", "Product")],
    ),
]
