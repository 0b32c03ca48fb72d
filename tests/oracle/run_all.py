"""Runs `corvid to-xml` over every MXF file of the folders and checks each document, then `from-xml`
over the document and checks the header that this makes.

    run_all.py --corvid PATH [--xmllint PATH] [--ffprobe PATH] [--registers DIR] [--samples] [--small]
               [DIR...]

--samples stands for the folder of real files (CORVID_SAMPLES, else beside the project), --small for
the file of small_file.py.

Each file is written to a file, indented, with references as links and as values; and to standard
output, compact and in UTF-16. xmllint validates the former, the command itself the latter. A
file with characters that XML cannot hold must be refused without --replace-invalid. One line per file; exit status 1 if anything is amiss, 77 if there is nothing to check or to check with.
"""
import argparse
import glob
import os
import subprocess
import sys
import tempfile

import check_header
import check_xml
import facts as knowledge
import klv
from expectation import Expectation
from small_file import small_file

SECONDS_PER_FILE = 120


def run(command):
    """(exit status, standard output, messages)"""
    done = subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=SECONDS_PER_FILE
    )
    return done.returncode, done.stdout, done.stderr.decode("utf-8", "replace").strip()


def complaints_about(arguments, facts, path, target):
    """What is amiss with one file. Yields nothing when all is well."""
    expectation = Expectation(klv.choose(klv.read(path)), facts)
    command = [arguments.corvid, "to-xml", path]
    if expectation.forbidden:
        status, _, message = run(command + ["-o", target])
        if status != 1 or not message or os.path.exists(target):
            yield "forbidden character: expected status 1, message, no file; found %d, %r" % (
                status,
                message,
            )
        command.append("--replace-invalid")
    status, _, message = run(command + ["-o", target])
    if status:
        yield "status %d: %s" % (status, message)
        return
    with open(target, "rb") as document:
        text = document.read()
    yield from check_xml.differences(path, text, facts)
    if arguments.xmllint:
        status, _, message = run([arguments.xmllint, "--noout", "--nonet", target])
        if status:
            yield "xmllint: " + message
    status, _, message = run(command + ["-o", target[:-4] + ".values.xml", "--references", "values"])
    if status:
        yield "references as values: status %d: %s" % (status, message)
    status, text, message = run(command + ["--validate", "--compact", "--encoding", "utf-16"])
    if status:
        yield "compact, utf-16: status %d: %s" % (status, message)
        return
    if text[:2] not in (b"\xFF\xFE", b"\xFE\xFF"):
        yield "compact, utf-16: no byte order mark"
    for line in check_xml.differences(path, text, facts):
        yield "compact, utf-16: " + line
    yield from complaints_about_header(arguments, facts, path, target)


def complaints_about_header(arguments, facts, path, document):
    header = document + ".header"
    status, _, message = run([arguments.corvid, "from-xml", document, "-o", header])
    if status:
        yield "from-xml: status %d: %s" % (status, message)
        return
    for line in check_header.differences(path, header, facts):
        yield "from-xml: " + line
    if arguments.ffprobe:
        for line in check_header.probed(arguments.ffprobe, path, header, document + ".probed.mxf"):
            yield "from-xml: " + line


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--corvid", required=True)
    parser.add_argument("--xmllint")
    parser.add_argument("--ffprobe", help="for folders of whole files")
    parser.add_argument("--registers")
    parser.add_argument("--lines", type=int, default=20, help="differences to print per file")
    parser.add_argument(
        "--samples",
        dest="folders",
        action="append_const",
        const=knowledge.SAMPLES,
    )
    parser.add_argument("--small", action="store_true")
    parser.add_argument("more", nargs="*", metavar="DIR")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as folder:
        folders = (arguments.folders or []) + arguments.more
        if arguments.small:
            with open(os.path.join(folder, "small.mxf"), "wb") as file:
                file.write(small_file())
            folders.append(folder)
        return check(arguments, folders, folder)


def check(arguments, folders, scratch):
    files = [
        path
        for folder in folders
        for path in sorted(glob.glob(os.path.join(glob.escape(folder), "*.mxf")))
    ]
    facts = knowledge.load(arguments.registers)
    if not files or not facts:
        print("skipped: no %s" % ("dictionary text" if files else "files in " + ", ".join(folders)))
        return check_xml.SKIP
    print("facts from %s%s" % (facts.source, "" if arguments.xmllint else "; no xmllint"))
    bad = 0
    for number, path in enumerate(files):
        try:
            found = list(
                complaints_about(arguments, facts, path, os.path.join(scratch, "%d.xml" % number))
            )
        except (klv.Unreadable, subprocess.TimeoutExpired) as fault:
            found = [str(fault)]
        print(
            "%s: %s"
            % (
                os.path.basename(path),
                "%d differences" % len(found) if found else "as it should be",
            )
        )
        for line in found[: arguments.lines]:
            print("    " + line)
        bad += bool(found)
    print("%d of %d files as they should be" % (len(files) - bad, len(files)))
    return 1 if bad or invalid_documents(arguments, scratch) else 0


def invalid_documents(arguments, scratch):
    """Prints what xmllint finds in the documents, by the schemas that the command writes. All in
    one go, because to load the schemas takes longer than to validate most documents."""
    schemas = os.path.join(scratch, "schema")
    status, _, message = run([arguments.corvid, "schema", "-o", schemas])
    if status:
        print("corvid schema: status %d: %s" % (status, message))
        return True
    documents = sorted(glob.glob(os.path.join(glob.escape(scratch), "*.xml")))
    if not arguments.xmllint or not documents:
        return False
    schema = os.path.join(schemas, "s377m.xsd")
    status, _, message = run(
        [arguments.xmllint, "--noout", "--nonet", "--schema", schema] + documents
    )
    lines = [line for line in message.splitlines() if not line.endswith(" validates")]
    print("%d documents validated with xmllint: %s" % (len(documents), lines or "all are valid"))
    return status != 0


if __name__ == "__main__":
    sys.exit(main())
