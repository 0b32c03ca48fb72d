"""Makes the edits that people ask for in real files, with `corvid apply`, and looks at the
result with other programs.

    run_edits.py --corvid PATH [--ffmpeg PATH] [--ffprobe PATH] [--mediainfo PATH] FILE...

Each edit is made in place; in place where the metadata must grow; and in a grown copy. Each time
everything beside header metadata must be as before (partitions.py), ffprobe and mediainfo must say
the same but for the edit, sizes and bit rates, and see the edit: in their summaries or, where no
summary has it, in the trace of the bytes that mediainfo prints. All frames that ffmpeg decodes,
after a seek too, must be the same. A program that is not given is left out.
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
from asked_edits import EDITS, with_open_header

SECONDS = 120
LONG = "x" * 30000  # longer than any fill in a small file

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


def is_traced(programs, path, line):
    """Whether mediainfo's trace of a file has a line."""
    return line.search(run([programs.mediainfo, "--Details=1", path])[1]) is not None


def frames(programs, path):
    if not programs.ffmpeg:
        return []
    begin = [programs.ffmpeg, "-hide_banner", "-loglevel", "error", "-nostdin"]
    end = ["-i", path, "-f", "framemd5", "-"]
    lines = (run(begin + end)[1] + run(begin + ["-ss", "0.2"] + end)[1]).splitlines()
    # The head repeats the shape of a pixel, which is metadata.
    return [line for line in lines if not line.startswith("#")]


def write(path, text):
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)


class Clip:
    """A clip before its edits: its document, and what other programs say of it."""

    def __init__(self, programs, path):
        self.path = path
        with open(path, "rb") as file:
            self.data = file.read()
        status, self.document, error = run([programs.corvid, "to-xml", path])
        if status:
            raise RuntimeError("%s: %s" % (path, error))
        self.shown = shown_by(programs, path)
        self.frames = frames(programs, path)


def based_on(programs, path, base, folder):
    """The clip that has what is edited."""
    target = os.path.join(folder, "%s-%s" % (base.__name__, os.path.basename(path)))
    if base is with_open_header:
        with open(path, "rb") as file, open(target, "wb") as out:
            out.write(base(file.read()))
        return target
    edited = os.path.join(folder, "base.xml")
    write(edited, base(run([programs.corvid, "to-xml", path])[1]))
    # A later edit in place finds its room.
    command = ["apply", edited, path, "-o", target, "--no-identification", "--allow-technical"]
    status, _, error = run([programs.corvid] + command + ["--reserve", "20000"])
    if status:
        raise RuntimeError("%s: %s" % (path, error))
    return target


def complaints_about(programs, edit, before, folder):
    """What is amiss with an edit, made in three ways."""
    edited = edit.what.sub(edit.by, before.document, count=1)
    long = re.sub(r"(<rp210:ApplicationPlatform>)[^<]*", r"\g<1>" + LONG, edited)
    clip, new = os.path.join(folder, "clip.mxf"), os.path.join(folder, "new.mxf")
    for way, text, target in (
        ("in place", edited, clip),
        ("longer", long, clip),
        ("longer copy", long, new),
    ):
        shutil.copyfile(before.path, clip)
        path = os.path.join(folder, "edited.xml")
        write(path, text)
        command = [programs.corvid, "apply", path, clip, "--no-identification", "--allow-technical"]
        command += edit.options
        status, _, error = run(command + (["--in-place"] if target == clip else ["-o", target]))
        if status:
            yield "%s: status %d: %s" % (way, status, error)
            continue
        with open(target, "rb") as file:
            changed = file.read()
        if changed == before.data:
            yield "%s: nothing has changed" % way
        if (len(changed) > len(before.data)) != (text is long):
            yield "%s: %d bytes, then %d" % (way, len(before.data), len(changed))
        for problem in partitions.differences(before.data, changed) + partitions.faults_in(changed):
            yield "%s: %s" % (way, problem)
        now = shown_by(programs, target)
        for key in sorted(set(before.shown) | set(now)):
            if (
                before.shown.get(key) != now.get(key)
                and not ALWAYS.search(key)
                and not edit.shown.search(key)
            ):
                yield "%s: %s was %s, is %s" % (way, key, before.shown.get(key), now.get(key))
        for key, value in edit.seen:
            program = key.split(".")[0]
            if getattr(programs, program) and not any(
                re.search(key, k) and str(v).startswith(value) for k, v in now.items()
            ):
                yield "%s: %s is not seen in %s" % (way, value, key)
        if edit.traced and programs.mediainfo:
            if is_traced(programs, before.path, edit.traced):
                yield "%s: the trace has '%s' before" % (way, edit.traced.pattern)
            if not is_traced(programs, target, edit.traced):
                yield "%s: the trace lacks '%s'" % (way, edit.traced.pattern)
        if frames(programs, target) != before.frames:
            yield "%s: ffmpeg decodes other frames" % way


def edit_all(programs, path, folder):
    """Makes all edits for which a file has something to change.

    Yields each edit with what is amiss."""
    clips = {}
    for edit in EDITS:
        if edit.base not in clips:
            start = based_on(programs, path, edit.base, folder) if edit.base else path
            clips[edit.base] = Clip(programs, start)
        if edit.what.search(clips[edit.base].document):
            yield edit, list(complaints_about(programs, edit, clips[edit.base], folder))


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
        with tempfile.TemporaryDirectory() as folder:
            for edit, complaints in edit_all(programs, path, folder):
                made.add(edit.name)
                for complaint in complaints:
                    failed = True
                    print("%s: %s: %s" % (os.path.basename(path), edit.name, complaint))
    if not files:
        print("there are no files to edit")
        return 77
    unseen = [edit.name for edit in EDITS if not edit.seen and not edit.traced]
    if unseen:
        failed = True
        print("no other program looks at: " + ", ".join(unseen))
    missing = {edit.name for edit in EDITS} - made
    if missing:
        failed = True
        print("no file has what is changed: " + ", ".join(sorted(missing)))
    print("%d edits in %d files, each in 3 ways" % (len(made), len(files)))
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
