#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Rules of the house that no compiler knows: check.py CHECK [FILE...]; the checks are at the end"""

import os
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]

# What each room of src/ may include besides itself and the shared records.
ROOMS = {
    "transport": set(),
    "decoding": set(),
    "protocol": {"transport"},
    "session": {"protocol", "transport", "decoding"},
    "conversion": {"session", "protocol", "transport", "decoding"},
    "jobs": {"conversion", "session", "protocol", "transport", "decoding"},
}
# A room within a room, and what it may include of it besides itself.
INNER = {"src/jobs/link": {"src/jobs/jobend_p.h"}}
# The public headers that belong to a room; all others are records and enumerations for
# every room, and include nothing but each other.
PUBLIC = {
    "transport": {"bledevice.h", "bledeviceinfo.h", "blescanner.h"},
    "protocol": {"vardableprotocol.h"},
    "session": {"firmwareimage.h", "vardasession.h"},
    "decoding": {"bufferreader.h", "vardadata.h"},
    "conversion": {"diveprofile.h", "tidemardiveconverter.h"},
    "jobs": {
        "downloadjob.h", "firmwarejob.h", "searchjob.h", "vardaawait.h", "vardacheck.h",
        "vardacomputer.h", "vardadoctor.h", "vardajob.h", "vardareply.h", "vardatrace.h",
        "vardatracefile.h", "vardatraceframe.h",
    },
}
# Libraries beside the core, with public headers of their own.
BESIDE = ("formats", "logbook", "profile")
# Outside the library: what includes <varda/...> only, and what not even that.
GUESTS = (*BESIDE, "qml", "tools", "apps")
# Of these, what uses the records and what can be calculated from them, but no computer.
RECORDS_ONLY = ("formats", "profile")
CALCULATED = {"diveprofile.h"}
STRANGERS = ("simulator",)

SOURCE = {".cpp", ".h", ".py", ".sh", ".cmake", ".qml", ".in"}
SCRIPTS = {"dev", ".ci/run", ".clang-format", ".clang-tidy"}

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)


def files(*folders):
    for folder in folders or ("",):
        for path, names, found in os.walk(ROOT / folder):
            if Path(path) == ROOT:
                names[:] = [n for n in names if n not in (".git", "build")]
            yield from (Path(path) / name for name in sorted(found))


def includes(path):
    return INCLUDE.findall(path.read_text(encoding="utf-8"))


def room_of(path):
    """The room of a file of the library, None for what all rooms share."""
    inside = path.relative_to(ROOT)
    if inside.parts[0] == "include":
        return next((room for room, own in PUBLIC.items() if inside.name in own), None)
    return inside.parts[1] if len(inside.parts) > 2 else None


def target_of(path, quote, name):
    """The file of this repository that an include means, None for the system's."""
    places = [ROOT / "include", ROOT / "src", *(ROOT / each / "include" for each in BESIDE)]
    if quote == '"':
        places.insert(0, path.parent)
    for place in places:
        if (place / name).is_file():
            return (place / name).resolve()
    return None


def leaves(path, target):
    """Whether that include leads out of a room within a room."""
    inside = str(path.parent.relative_to(ROOT))
    wanted = str(target.relative_to(ROOT))
    if inside not in INNER or not wanted.startswith(str(Path(inside).parent)):
        return False
    return str(target.parent.relative_to(ROOT)) != inside and wanted not in INNER[inside]


def own(target, top):
    return target and target.relative_to(ROOT).parts[0] == top


def arrows():
    for path in files("src", "include"):
        if path.suffix not in (".cpp", ".h"):
            continue
        room = room_of(path)
        # The umbrella includes all, by its purpose.
        if path.name == "varda.h":
            continue
        allowed = ROOMS[room] | {room, None} if room else {None}
        for quote, name in includes(path):
            target = target_of(path, quote, name)
            if name == "varda/varda.h":
                yield path, f"includes {name}, which is for applications"
            elif target is None:
                if quote == '"' and not name.startswith("moc_") and not name.endswith(".moc"):
                    yield path, f'"{name}" is not in this repository'
            elif not {"src", "include"} & {target.relative_to(ROOT).parts[0]}:
                yield path, f"{name} is outside the library"
            elif room_of(target) not in allowed:
                yield path, f"{room or 'shared'} must not include {name} ({room_of(target)})"
            elif leaves(path, target):
                yield path, f"{path.parent.relative_to(ROOT)} must not include {name}"
    for path in files(*GUESTS, *STRANGERS):
        if path.suffix not in (".cpp", ".h"):
            continue
        top = path.relative_to(ROOT).parts[0]
        for quote, name in includes(path):
            target = target_of(path, quote, name)
            if name.startswith("varda/") and not own(target, top):
                if top in STRANGERS:
                    yield path, f"{top} must not know the library, includes {name}"
                elif target is None:
                    yield path, f"there is no public header {name}"
                elif top in RECORDS_ONLY and (own(target, "include") is False
                                              or room_of(target) and target.name not in CALCULATED):
                    yield path, f"{top} is for records only, includes {name}"
            elif target and not own(target, top):
                yield path, f"{top} must not include {name}"


def licence():
    for path in files():
        inside = str(path.relative_to(ROOT))
        if path.suffix in SOURCE or path.name == "CMakeLists.txt" or inside in SCRIPTS:
            with path.open(encoding="utf-8") as text:
                head = [text.readline() for _ in range(2)]
            if head[0].startswith("#!"):
                head = head[1:]
            if "SPDX-License-Identifier: MIT" not in head[0]:
                yield path, "the first line is not the SPDX line"


def names():
    """Headers in src/ are private and say so; nobody takes one for a public one of the same name."""
    for path in files("src"):
        if path.suffix == ".h" and not path.stem.endswith("_p"):
            yield path, f"a header in src/ is called {path.stem}_p.h"


# Of a function or an initializer.
BODY = re.compile(r"[)>=]\s*((const|noexcept|override)\s*)*\{|\w\{")


def lines_of_declarations(text):
    """The lines of a header outside function bodies, each with its number and the next line."""
    lines = text.split("\n")
    depth = body = 0
    for number, line in enumerate(lines):
        code = re.sub(r'"(\\.|[^"\\])*"|//.*', "", line)
        if not body:
            yield number + 1, line, lines[number + 1] if number + 1 < len(lines) else ""
        for sign in re.findall(r"[{}]", code):
            depth += 1 if sign == "{" else -1
            if sign == "{" and not body and BODY.search(code):
                body = depth
            elif sign == "}" and depth < body:
                body = 0


def style():
    """How Qt is included, in every folder; how declarations are commented on, inside and outside."""
    for path in files("include", "src", *GUESTS, "simulator", "tests", "fuzz"):
        if path.suffix not in (".cpp", ".h") or "consumer" in path.parts:
            continue
        for _, name in includes(path):
            if re.match(r"Qt\w+/[A-Z]|Q[A-Z]", name):
                yield path, f"includes <{name}> instead of the file, <QtModule/qname.h>"
    for path in files("src", "formats", "profile", "simulator"):
        if path.suffix not in (".cpp", ".h"):
            continue
        text = path.read_text(encoding="utf-8")
        if re.search(r"^\s*// ?[-=*]{3}", text, re.MULTILINE):
            yield path, "has a ruler in a comment; a file with chapters is several files"
        if path.suffix == ".cpp":
            continue
        for number, line, following in lines_of_declarations(text):
            # A comment without a full stop is the heading of what follows.
            if re.match(r"\s*//(?!/|\s*NOLINT).*\.$", line) and re.match(r"\s*[\w\[~]", following):
                yield path, f"{number}: a declaration's comment is /** */"
            elif re.search(r"[;,]\s*//(?!/|\s*NOLINT)", line):
                yield path, f"{number}: a comment behind a member or enumerator is ///<"


def umbrella():
    folder = ROOT / "include/varda"
    named = {name for _, name in includes(folder / "varda.h")}
    for header in sorted(folder.glob("*.h")):
        # The awaiter needs C++20.
        apart = ("varda.h", "vardaexport.h", "vardaawait.h")
        if header.name not in apart and f"varda/{header.name}" not in named:
            yield folder / "varda.h", f"does not include {header.name}"


def links(library):
    dynamic = subprocess.run(
        ["readelf", "-d", library], check=True, capture_output=True, text=True
    ).stdout
    needed = set(re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic))
    # Qt Bluetooth itself links D-Bus on Linux.
    allowed = r"libQt6(Core|Bluetooth|DBus)\.|libstdc\+\+\.|libc\+\+|lib[cm]\.so|libgcc_s\.|ld-linux"
    for name in sorted(needed):
        if not re.match(allowed, name):
            yield Path(library), f"needs {name}"


def soname(library, version):
    """Below 1.0 a minor version may break what was linked against the one before."""
    dynamic = subprocess.run(
        ["readelf", "-d", library], check=True, capture_output=True, text=True
    ).stdout
    major, minor = version.split(".")[:2]
    wanted = f"libvarda.so.{major}.{minor}" if major == "0" else f"libvarda.so.{major}"
    if f"[{wanted}]" not in dynamic:
        yield Path(library), f"its soname is not {wanted}"


def hardening(*binaries):
    for binary in binaries:
        text = subprocess.run(
            ["readelf", "-hldW", "--dyn-syms", binary], check=True, capture_output=True, text=True
        ).stdout
        wanted = {
            "is no position independent code": r"Type:\s+DYN",
            "has an executable stack": r"GNU_STACK .* RW ",
            "has writable relocations": r"GNU_RELRO",
            "binds its symbols late": r"BIND_NOW|Flags:.*NOW",
            "has no stack protector": r"__stack_chk_fail",
        }
        for what, pattern in wanted.items():
            if not re.search(pattern, text):
                yield Path(binary), what


def main():
    check, *arguments = sys.argv[1:]
    found = [
        f"{path.relative_to(ROOT) if path.is_relative_to(ROOT) else path}: {what}"
        for path, what in {
            "arrows": arrows,
            "hardening": hardening,
            "licence": licence,
            "links": links,
            "names": names,
            "soname": soname,
            "style": style,
            "umbrella": umbrella,
        }[check](*arguments)
    ]
    print("\n".join(found) if found else f"{check}: ok")
    return 1 if found else 0


sys.exit(main())
