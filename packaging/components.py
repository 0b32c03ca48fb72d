#!/usr/bin/env python3
"""Usage: components.py PROJECT WORK VERSION NAME OUTPUT

Writes OUTPUT/NAME.spdx.json: what the command in the tarball is made of, with versions and licences
(SPDX 2.3). The licences themselves go to WORK/licences. tarball.sh has made WORK.
"""

import datetime
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys

# Name, licence (SPDX), where the version and the text of the licence are: a source package that was
# unpacked, a package of the sysroot, a package that was only unpacked, or one of npm.
PARTS = [
    ("xerces-c", "Apache-2.0", "source", "xerces-c"),
    ("expat", "MIT", "source", "expat"),
    ("libsodium", "ISC", "sysroot", "libsodium-dev"),
    ("boost", "BSL-1.0", "sysroot", "libboost-thread1.74-dev"),
    ("libstdc++", "GPL-3.0-or-later WITH GCC-exception-3.1", "sysroot", "libstdc++-10-dev"),
    ("cli11", "BSD-3-Clause", "headers", "libcli11-dev"),
    ("fmt", "MIT", "headers", "libfmt-dev"),
    ("nlohmann-json", "MIT", "headers", "nlohmann-json3-dev"),
    ("preact", "MIT", "npm", "preact"),
    ("@tanstack/virtual-core", "MIT", "npm", "@tanstack/virtual-core"),
]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout.strip()


def found_part(project, work, kind, package):
    """Version and file with the licence; no file where the command itself shows the licence."""
    if kind == "source":
        unpacked = work / "unpacked" / package
        return (output("dpkg-parsechangelog", "-l", str(unpacked / "debian/changelog"),
                       "-S", "Version"), unpacked / "debian/copyright")
    if kind == "sysroot":
        root = work / "sysroot"
        version = output("dpkg-query", f"--admindir={root}/var/lib/dpkg", "-W", "-f",
                         "${Version}", package)
        return version, root / "usr/share/doc" / package / "copyright"
    if kind == "headers":
        (deb,) = (work / "sources").glob(f"{package}_*.deb")
        return (output("dpkg-deb", "-f", str(deb), "Version"),
                work / "deps/usr/share/doc" / package / "copyright")
    lock = json.loads((project / "report/package-lock.json").read_text(encoding="utf-8"))
    return lock["packages"][f"node_modules/{package}"]["version"], None


def spdx_package(name, version, licence):
    return {
        "SPDXID": "SPDXRef-" + re.sub(r"[^A-Za-z0-9.]+", "-", name).strip("-"),
        "name": name,
        "versionInfo": version,
        "downloadLocation": "NOASSERTION",
        "filesAnalyzed": False,
        "licenseConcluded": licence,
        "licenseDeclared": licence,
        "copyrightText": "NOASSERTION",
    }


def main(project, work, version, name, target):
    project, work = pathlib.Path(project), pathlib.Path(work)
    licences = work / "licences"
    shutil.rmtree(licences, ignore_errors=True)
    licences.mkdir()
    own = spdx_package("corvid", version, "BSD-2-Clause")
    command = (work / name / "bin/corvid").read_bytes()
    own["checksums"] = [{"algorithm": "SHA256",
                         "checksumValue": hashlib.sha256(command).hexdigest()}]
    packages = [own]
    for part, licence, kind, package in PARTS:
        part_version, text = found_part(project, work, kind, package)
        packages.append(spdx_package(part, part_version, licence))
        if text:
            shutil.copyfile(text, licences / part)
    created = datetime.datetime.fromtimestamp(int(os.environ["SOURCE_DATE_EPOCH"]),
                                              datetime.timezone.utc)
    document = {
        "spdxVersion": "SPDX-2.3",
        "dataLicense": "CC0-1.0",
        "SPDXID": "SPDXRef-DOCUMENT",
        "name": name,
        "documentNamespace": "urn:sha256:" + own["checksums"][0]["checksumValue"],
        "creationInfo": {"created": created.strftime("%Y-%m-%dT%H:%M:%SZ"),
                         "creators": ["Organization: the Corvid developers"]},
        "packages": packages,
        "relationships": [
            {"spdxElementId": "SPDXRef-DOCUMENT", "relationshipType": "DESCRIBES",
             "relatedSpdxElement": own["SPDXID"]},
            *({"spdxElementId": own["SPDXID"], "relationshipType": "CONTAINS",
               "relatedSpdxElement": each["SPDXID"]} for each in packages[1:]),
        ],
    }
    text = json.dumps(document, indent=2) + "\n"
    pathlib.Path(target, f"{name}.spdx.json").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
