"""Makes the edits that people ask for in real files, with `corvid apply`, and looks at the
result with other programs.

    run_edits.py --corvid PATH [--ffmpeg PATH] [--ffprobe PATH] [--mediainfo PATH] FILE...

Each edit is made in place; in place where the metadata must grow; and in a grown copy. Each time
everything beside header metadata must be as before (partitions.py), ffprobe and mediainfo must say
the same but for the edit, sizes and bit rates, and see the edit where they show it, and all frames
that ffmpeg decodes, after a seek too, must be the same. A program that is not given is left out.
Exit status 77 without files.
"""
import argparse
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

import partitions

SECONDS = 120
LONG = "x" * 30000  # longer than any fill in a small file

MCA = """<s377m:SoundfieldGroupLabelSubDescriptor rp210:InstanceUID="01.02.03.04.05.06.47.08.89.0a.0b.0c.0d.0e.0f.10">
    <rp210:MCALabelDictionaryID>06.0e.2b.34.04.01.01.0d.03.02.02.01.00.00.00.00</rp210:MCALabelDictionaryID>
    <rp210:MCATagSymbol>sg51</rp210:MCATagSymbol>
    <rp210:MCALinkID>82.3b.44.4e.a6.58.40.79.b3.14.c0.78.13.1b.bb.25</rp210:MCALinkID>
    <rp210:RFC5646SpokenLanguage>fr-CA</rp210:RFC5646SpokenLanguage>
  </s377m:SoundfieldGroupLabelSubDescriptor>
  """
MCA_REFERENCE = (
    "<rp210:SubDescriptors><s377m:SoundfieldGroupLabelSubDescriptor_REF types:TargetInstance="
    '"01.02.03.04.05.06.47.08.89.0a.0b.0c.0d.0e.0f.10"/></rp210:SubDescriptors>'
)


class Edit:
    def __init__(self, name, what, by, shown=(), seen=()):
        self.name = name
        self.what = re.compile(what, re.S)
        self.by = by
        self.shown = re.compile("|".join(shown) or "(?!)")  # keys of programs that show it
        self.seen = seen  # (key, value) of ffprobe after the edit


PICTURE = r"(<s377m:(?:CDCI|RGBA|MPEGVideo)Descriptor [^>]*>)"
EDITS = [
    Edit(
        "package name",
        r"(<s377m:MaterialPackage .*?</rp210:PackageID>\n)(?: *<rp210:PackageName>[^\n]*\n)?",
        r"\1    <rp210:PackageName>Camera 1</rp210:PackageName>\n",
        ["material_package_name", "PackageName", "^General.*Title"],
        [("material_package_name", "Camera 1")],
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
    ),
    Edit(
        "track name",
        r"(<s377m:TimelineTrack [^>]*>\n)(?: *<rp210:TrackName>[^\n]*\n)?",
        r"\1    <rp210:TrackName>Clean feed</rp210:TrackName>\n",
        ["track_name", "Title"],
    ),
    Edit(
        "start timecode",
        r"(<rp210:StartTimecode>)[^<]*",
        r"\g<1>90000",
        ["timecode", "TimeCode", "Delay"],
        [("timecode", "01:00:00")],
    ),
    Edit(
        "aspect ratio",
        r"(<rp210:ImageAspectRatio>\s*<types:Numerator>)\d+(</types:Numerator>\s*<types:Denominator>)\d+",
        r"\g<1>21\g<2>9",
        ["aspect_ratio", "AspectRatio"],
    ),
    Edit(
        "primaries and transfer",
        PICTURE,
        r"\1<rp210:ColorPrimaries>06.0e.2b.34.04.01.01.06.04.01.01.01.03.03.00.00</rp210:ColorPrimaries>"
        r"<rp210:TransferCharacteristic>06.0e.2b.34.04.01.01.01.04.01.01.01.01.02.00.00"
        r"</rp210:TransferCharacteristic>",
        ["color_", "colour_", "transfer", "primaries", "Colour"],
    ),
    Edit(
        "operational pattern",
        r"(OperationalPattern>[0-9a-f.]*)01\.0[19]\.00<",
        r"\g<1>02.0d.00<",
        ["operational_pattern", "Format_Profile", "Format_Commercial"],
    ),
    Edit(
        "company and product",
        r"(ApplicationSupplierName>)[^<]*(<[^>]*>\s*<rp210:ApplicationName>)[^<]*",
        r"\1Company\2Product",
        ["company_name", "product_name", "Encoded_"],
        [("company_name", "Company"), ("product_name", "Product")],
    ),
    Edit(
        "video line map",
        r"(<rp210:VideoLineMap>\s*<rp210:Element>)\d+",
        r"\g<1>21",
        ["field_order", "ScanOrder"],
    ),
    Edit(
        "active format",
        PICTURE,
        r"\1<rp210:ActiveFormatDescriptor>80</rp210:ActiveFormatDescriptor>",
        ["ActiveFormat", "AspectRatio", "aspect_ratio"],
    ),
    Edit(
        "spoken language and MCA labels",
        r"(<s377m:\w+Descriptor rp210:InstanceUID=\"[^\"]*\">)(.*?)(?=<s377m:EssenceData )",
        r"\1" + MCA_REFERENCE + r"\2" + MCA,
        ["language", "Language", "ChannelLayout", "ChannelPositions", "Title", "Matrix", "extra"],
    ),
]

ALWAYS = re.compile(
    "(?i)size|bit_?rate|filename|probe_score|application_platform|platform|proportion|file_modified|"
    "file_created|CompleteName|FolderName|FileName|Duration_Last|Encoded_Library|Encoded_Application_Name"
)


def run(command, **options):
    done = subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=SECONDS, **options
    )
    return (
        done.returncode,
        done.stdout.decode("utf-8", "replace"),
        done.stderr.decode("utf-8", "replace"),
    )


def flat(value, name=""):
    """The leaves of JSON by their paths."""
    if isinstance(value, dict):
        return {
            k: v for key, part in value.items() for k, v in flat(part, name + "/" + key).items()
        }
    if isinstance(value, list):
        return {
            k: v
            for at, part in enumerate(value)
            for k, v in flat(part, "%s/%d" % (name, at)).items()
        }
    return {name: value}


def shown_by(programs, path):
    """What ffprobe and mediainfo say of a file."""
    said = {}
    if programs.ffprobe:
        out = run(
            [programs.ffprobe, "-v", "error", "-show_format", "-show_streams", "-of", "json", path]
        )[1]
        said.update(flat(json.loads(out), "ffprobe"))
    if programs.mediainfo:
        out = run([programs.mediainfo, "--Output=JSON", path])[1]
        said.update(flat(json.loads(out)["media"]["track"], "mediainfo"))
    return said


def frames(programs, path):
    if not programs.ffmpeg:
        return []
    begin = [programs.ffmpeg, "-hide_banner", "-loglevel", "error", "-nostdin"]
    end = ["-i", path, "-f", "framemd5", "-"]
    lines = (run(begin + end)[1] + run(begin + ["-ss", "0.2"] + end)[1]).splitlines()
    # The head repeats the shape of a pixel, which is metadata.
    return [line for line in lines if not line.startswith("#")]


def complaints_about(programs, edit, before, document, folder):
    """What is amiss with an edit, made in three ways."""
    edited = edit.what.sub(edit.by, document, count=1)
    long = re.sub(r"(<rp210:ApplicationPlatform>)[^<]*", r"\g<1>" + LONG, edited)
    clip, new = os.path.join(folder, "clip.mxf"), os.path.join(folder, "new.mxf")
    old, old_frames = shown_by(programs, before), frames(programs, before)
    for way, text, target in (
        ("in place", edited, clip),
        ("longer", long, clip),
        ("longer copy", long, new),
    ):
        shutil.copyfile(before, clip)
        path = os.path.join(folder, "edited.xml")
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        command = [programs.corvid, "apply", path, clip, "--no-identification", "--allow-technical"]
        status, out, error = run(command + (["--in-place"] if target == clip else ["-o", target]))
        if status:
            yield "%s: status %d: %s" % (way, status, error)
            continue
        with open(before, "rb") as one, open(target, "rb") as other:
            data, changed = one.read(), other.read()
        if (len(changed) > len(data)) != (text is long):
            yield "%s: %d bytes, then %d" % (way, len(data), len(changed))
        for problem in partitions.differences(data, changed) + partitions.faults_in(changed):
            yield "%s: %s" % (way, problem)
        now = shown_by(programs, target)
        for key in sorted(set(old) | set(now)):
            if (
                old.get(key) != now.get(key)
                and not ALWAYS.search(key)
                and not edit.shown.search(key)
            ):
                yield "%s: %s was %s, is %s" % (way, key, old.get(key), now.get(key))
        for key, value in edit.seen if programs.ffprobe else ():
            if not any(key in k and str(v).startswith(value) for k, v in now.items()):
                yield "%s: %s is not seen in %s" % (way, value, key)
        if frames(programs, target) != old_frames:
            yield "%s: ffmpeg decodes other frames" % way


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--corvid", required=True)
    for program in ("ffmpeg", "ffprobe", "mediainfo"):
        parser.add_argument("--" + program)
    parser.add_argument("files", nargs="*")
    programs = parser.parse_args()
    files = [path for path in programs.files if os.path.exists(path)]
    failed, made = False, set()
    for path in files:
        status, document, error = run([programs.corvid, "to-xml", path])
        if status:
            print("%s: %s" % (path, error))
            return 1
        for edit in EDITS:
            if not edit.what.search(document):
                continue
            made.add(edit.name)
            with tempfile.TemporaryDirectory() as folder:
                for complaint in complaints_about(programs, edit, path, document, folder):
                    failed = True
                    print("%s: %s: %s" % (os.path.basename(path), edit.name, complaint))
    if not files:
        print("there are no files to edit")
        return 77
    missing = {edit.name for edit in EDITS} - made
    if missing:
        failed = True
        print("no file has what is changed: " + ", ".join(sorted(missing)))
    print("%d edits in %d files" % (len(made), len(files)))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
