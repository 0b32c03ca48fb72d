"""Applies documents to the clips that they are of.

    run_unedited.py --corvid PATH [--samples] [FOLDER...]

A document that is not edited changes nothing, in place or in a copy. One with another title and the
one before, after each other, leave metadata that says the same, and all else as it was
(partitions.py). Exit status 77 without files.
"""
import argparse
import glob
import os
import re
import shutil
import sys
import tempfile

import facts as knowledge
import partitions
from run_edits import run, write


def read(path):
    with open(path, "rb") as file:
        return file.read()


def with_another_name(document):
    """With another name in the first Identification. Some files have a set several times."""
    first = re.search(r'<s377m:Identification rp210:InstanceUID="([^"]*)', document)
    return (
        document
        if not first
        else re.sub(
            r'(<s377m:Identification rp210:InstanceUID="%s(?:(?!</s377m:Identification>).)*<rp210:ApplicationName>)[^<]*'
            % first[1],
            r"\g<1>Other",
            document,
            flags=re.S,
        )
    )


def without_document(corvid, clip):
    """Metadata with characters that XML can't hold has no document without loss."""
    if run([corvid, "to-xml", "--replace-invalid", clip])[0]:
        yield "to-xml fails"


def complaints_about(corvid, before, folder):
    clip, new = os.path.join(folder, "clip.mxf"), os.path.join(folder, "new.mxf")
    document, edited = os.path.join(folder, "doc.xml"), os.path.join(folder, "edited.xml")
    shutil.copyfile(before, clip)
    os.utime(clip, (1, 1))
    data = read(before)
    if run([corvid, "to-xml", clip, "-o", document])[0]:
        yield from without_document(corvid, clip)
        return

    def apply(text, *more):
        status, said, error = run([corvid, "apply", text, clip, "--no-identification"] + list(more))
        return "" if status == 0 else "apply: status %d: %s%s" % (status, said, error)

    yield apply(document, "--in-place")
    yield apply(document, "-o", new)
    if read(clip) != data or os.stat(clip).st_mtime != 1:
        yield "a document that is not edited changes the clip"
    if read(new) != data:
        yield "a document that is not edited gives another copy"
    text = open(document, encoding="utf-8", newline="").read()
    other = with_another_name(text)
    if other == text:
        return
    write(edited, other)
    yield apply(edited, "--in-place")
    changed = read(clip)
    if changed == data:
        yield "an edited document changes nothing"
    yield apply(document, "--in-place")
    status, said, error = run([corvid, "diff", before, clip])
    if status:
        yield "after the edit and the one back: %s%s" % (said, error)
    for after in (changed, read(clip)):
        yield from partitions.differences(data, after)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--corvid", required=True)
    parser.add_argument("--samples", dest="folders", action="append_const", const=knowledge.SAMPLES)
    parser.add_argument("more", nargs="*")
    options = parser.parse_args()
    files = [
        path
        for folder in (options.folders or []) + options.more
        for path in sorted(glob.glob(os.path.join(glob.escape(folder), "*.mxf")))
    ]
    failed = False
    for path in files:
        with tempfile.TemporaryDirectory() as folder:
            for complaint in filter(None, complaints_about(options.corvid, path, folder)):
                failed = True
                print("%s: %s" % (os.path.basename(path), complaint))
    print("%d files" % len(files))
    return 77 if not files else 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
