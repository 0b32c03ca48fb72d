#!/usr/bin/env python3
"""Usage: check_packages.py FOLDER VERSION

Compares the Debian packages in a folder with what they are to depend on and to contain; status 1 if
anything differs.
"""

import pathlib
import re
import subprocess
import sys
import tempfile

LIBRARY = r"usr/lib/[^/]+/"
# For each package: the packages that it depends on, those that it recommends, what it must contain, and a pattern that all its
# files match but for those that every package has.
PACKAGES = {
    "corvid": (
        {"libc6", "libcorvid0.1", "libexpat1", "libgcc-s1", "libsodium23", "libstdc++6",
         "libxerces-c3.2"},
        {"libcurl4", "libcurl3-gnutls"},
        ["usr/bin/corvid", LIBRARY + "corvid/corvid-xml.so",
         "usr/share/corvid/corvid-metadata.schema.json", r"usr/share/man/man1/corvid-info\.1\.gz",
         "usr/share/bash-completion/completions/corvid"],
        rf"usr/bin/corvid|{LIBRARY}corvid/.*|usr/share/(corvid|man|bash-completion|zsh|fish)/.*",
    ),
    "libcorvid0.1": (
        {"libc6", "libexpat1", "libgcc-s1", "libsodium23", "libstdc++6",
         "libxerces-c3.2"},
        set(),
        [LIBRARY + rf"libCorvid{name}\.so\.0\.1{end}"
         for name in ("", "_XMLUtils", "_XMLBuilder", "_Editing", "_Inspection")
         for end in ("", r"\.\d+")],
        LIBRARY + r"libCorvid\w*\.so\.[0-9.]+",
    ),
    "libcorvid-dev": (
        {"libcorvid0.1", "libxerces-c-dev"},
        set(),
        ["usr/include/corvid/Corvid/Version.h", LIBRARY + r"libCorvid_Editing\.so",
         LIBRARY + "cmake/Corvid/CorvidConfig.cmake",
         LIBRARY + "pkgconfig/corvid-inspection.pc"],
        rf"usr/include/corvid/.*|{LIBRARY}(libCorvid\w*\.so|cmake/Corvid/.*|pkgconfig/.*\.pc)",
    ),
    "corvid-doc": (
        set(),
        set(),
        ["usr/share/doc/corvid/README.md", "usr/share/doc/corvid/docs/format.md",
         "usr/share/doc/corvid/examples/printMetadata.cpp"],
        "usr/share/doc/corvid/.*",
    ),
}


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def names(relation):
    """The packages of a field such as Depends."""
    return {re.split(r"[ (:]", each.strip())[0] for each in re.split("[,|]", relation) if each.strip()}


def files(package):
    lines = output("dpkg-deb", "-c", package).splitlines()
    paths = [line.split(maxsplit=5)[5].split(" -> ")[0].removeprefix("./") for line in lines]
    return [path for path in paths if path and not path.endswith("/")]


def run_paths(package):
    """Where the files of a package look for libraries beside where all programs do."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["dpkg-deb", "-x", package, folder], check=True)
        for path in sorted(pathlib.Path(folder).rglob("*")):
            if path.is_file() and not path.is_symlink() and path.read_bytes()[:4] == b"\x7fELF":
                for found in re.findall(r"R(?:UN)?PATH.*\[(.*)\]", output("readelf", "-d", str(path))):
                    yield from found.split(":")


def problems(package, version):
    field = {name: output("dpkg-deb", "-f", package, name).strip()
             for name in ("Package", "Version", "Pre-Depends", "Depends", "Recommends")}
    name = field["Package"]
    if name not in PACKAGES:
        yield "nobody has asked for this package"
        return
    depends, recommends, required, allowed = PACKAGES[name]
    if field["Version"].rsplit("-", 1)[0] != version:
        yield f"has the version {field['Version']}, expected {version}"
    found = names(field["Pre-Depends"]) | names(field["Depends"])
    if found != depends:
        yield f"depends on {sorted(found)}, expected {sorted(depends)}"
    if names(field["Recommends"]) != recommends:
        yield f"recommends {field['Recommends']}, expected {sorted(recommends)}"
    if any("xqilla" in each for each in found | names(field["Recommends"])):
        yield "needs XQilla, which Debian 12 does not have"
    common = [f"usr/share/doc/{name}/copyright", f"usr/share/doc/{name}/changelog.Debian.gz"]
    contents = files(package)
    for pattern in required + common:
        if not any(re.fullmatch(pattern, path) for path in contents):
            yield f"has no {pattern}"
    for path in contents:
        if path not in common and not re.fullmatch(allowed, path):
            yield f"should not have {path}"
    control = output("dpkg-deb", "-I", package)
    for path in run_paths(package):
        if not re.fullmatch(r"\$ORIGIN/\.\./lib/[^/]+/corvid", path):
            yield f"looks for libraries in {path}, expected only its own folder"
    has_libraries = name == "libcorvid0.1"
    for member in ("shlibs", "triggers"):
        if (re.search(rf"\b{member}\b", control) is not None) != has_libraries:
            yield f"{'has no' if has_libraries else 'should not have'} {member}"
    for member in ("preinst", "postinst", "prerm", "postrm"):
        if re.search(rf"\b{member}\b", control):
            yield f"should not have a {member}"
    if has_libraries:
        shlibs = output("dpkg-deb", "-I", package, "shlibs")
        if len(shlibs.splitlines()) != 5 or "libCorvid 0.1 libcorvid0.1 (>= " not in shlibs:
            yield f"has other shlibs than one line for each library: {shlibs}"
        if "ldconfig" not in output("dpkg-deb", "-I", package, "triggers"):
            yield "does not trigger ldconfig"


def main(folder, version):
    packages = sorted(pathlib.Path(folder).glob("*.deb"))
    found = [output("dpkg-deb", "-f", str(package), "Package").strip() for package in packages]
    messages = [f"{folder}: has no package {name}" for name in PACKAGES if name not in found]
    for package in packages:
        messages += [f"{package.name}: {message}" for message in problems(str(package), version)]
    print("\n".join(messages) or f"{len(packages)} packages are as they should be")
    return 1 if messages else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
