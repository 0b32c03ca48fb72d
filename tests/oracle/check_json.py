"""Runs `corvid to-json` over every MXF file of the folders and validates what it writes with the
JSON Schema that `corvid schema --json` writes; the validator is python3-jsonschema.

    check_json.py --corvid PATH [--samples] [DIR...]

--samples stands for the folder of real files (CORVID_SAMPLES, else beside the project). Each file is
written with references as links and as values. Before that, JSON that is damaged in several ways
must be refused. Exit status 1 if anything is amiss, 77 if there is nothing to check or to check
with.
"""
import argparse
import copy
import glob
import json
import os
import subprocess
import sys
import tempfile

SKIP = 77
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
SAMPLE = os.path.join(ROOT, "examples", "sample.mxf")


def quick(jsonschema):
    """A validator that looks up which of the hundreds of classes a set has, instead of asking for
    one after the other. Other lists of schemas are as they are."""
    plain = jsonschema.Draft202012Validator
    known = {}

    def all_of(validator, schemas, instance, schema):
        if not all(set(each) == {"if", "then"} for each in schemas):
            yield from plain.VALIDATORS["allOf"](validator, schemas, instance, schema)
            return
        if id(schemas) not in known:
            known[id(schemas)] = {
                each["if"]["properties"]["class"]["const"]: each["then"] for each in schemas
            }
        name = instance.get("class") if isinstance(instance, dict) else None
        if name in known[id(schemas)]:
            yield from validator.descend(instance, known[id(schemas)][name])

    return jsonschema.validators.extend(plain, {"allOf": all_of})


def first_set(document, name):
    return next(each for each in document["sets"] if each["class"] == name)


def damaged(document):
    """(what is wrong, the document with it)"""

    def change(what, do):
        other = copy.deepcopy(document)
        do(other)
        return what, other

    track = lambda other: first_set(other, "TimelineTrack")["properties"]
    yield change("no format", lambda d: d.pop("format"))
    yield change("another version", lambda d: d.update(version=2))
    yield change("a member too much", lambda d: d.update(more=1))
    yield change("a class that nobody knows", lambda d: d["sets"][0].update({"class": "None"}))
    yield change("an identifier that is none", lambda d: d["sets"][0].update(id="12"))
    yield change("a property of another class", lambda d: track(d).update(PackageName="a"))
    yield change("a number as text", lambda d: track(d).update(TrackID="1"))
    yield change("a number out of range", lambda d: track(d).update(TrackID=1 << 32))
    yield change("half a rational", lambda d: track(d)["EditRate"].pop("denominator"))
    yield change("a reference without class", lambda d: track(d)["TrackSegment"].pop("class"))
    yield change("no zone", lambda d: first_set(d, "Preface")["properties"].update(
        FileLastModified="2020-02-21T22:40:51.000Z"))
    yield change("a name that no enumeration has", lambda d: first_set(d, "MPEGVideoDescriptor")[
        "properties"]["FrameLayout"].update(name="Full"))
    yield change("a property beside the others without reason",
                 lambda d: d["sets"][0].update(other=[{"property": None}]))
    yield change("a dark set without key", lambda d: d["floating"].append(
        {"class": None, "id": None, "name": None, "berLength": 4, "hex": ""}))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--corvid", required=True)
    parser.add_argument("--samples", action="store_true")
    parser.add_argument("folders", nargs="*", metavar="DIR")
    arguments = parser.parse_args()
    try:
        import jsonschema
    except ImportError:
        print("skipped: no python3-jsonschema")
        return SKIP
    folders = list(arguments.folders)
    if arguments.samples:
        folders.append(os.environ.get("CORVID_SAMPLES")
                       or os.path.join(ROOT, "..", "shared", "samples"))
    files = [path for folder in folders
             for path in sorted(glob.glob(os.path.join(glob.escape(folder), "*.mxf")))]
    if not files:
        print("skipped: no files in " + ", ".join(folders))
        return SKIP

    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([arguments.corvid, "schema", "--json", "-o", folder],
                       check=True, stderr=subprocess.DEVNULL)
        with open(os.path.join(folder, "corvid-metadata.schema.json")) as file:
            schema = json.load(file)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = quick(jsonschema)(schema)

    def written(path, *options):
        return json.loads(subprocess.run([arguments.corvid, "to-json", path, *options], check=True,
                                         stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout)

    bad = 0
    sample = written(SAMPLE)
    # The whole of the schema, without a short cut.
    for error in jsonschema.Draft202012Validator(schema).iter_errors(sample):
        print("sample: %s" % error.message[:200])
        bad += 1
    for what, document in damaged(sample):
        if validator.is_valid(document):
            print("not refused: " + what)
            bad += 1
    for path in files:
        for references in "links", "values":
            errors = list(validator.iter_errors(written(path, "--references", references)))
            for error in errors[:5]:
                print("%s, %s: %s: %s" % (os.path.basename(path), references,
                                          "/".join(map(str, error.absolute_path)),
                                          error.message[:200]))
            bad += bool(errors)
    print("%d files, %d complaints" % (len(files), bad))
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
