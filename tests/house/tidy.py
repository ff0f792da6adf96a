#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""tidy.py BUILD CACHE [--changed]: clang-tidy over the sources of a configured build, in parallel.

A file whose preprocessed text passed once under the same checks is not looked at again;
the markers lie in CACHE, which may be removed at any time.

A run over all that has nothing to complain about lists them in tests/house/linted. With
--changed, those that are still as listed there are left out: on a machine without a cache all
of them take twenty minutes.
"""

import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
TIDY = "clang-tidy-19"
LINTED = ROOT / "tests" / "house" / "linted"


def preprocessed(entry):
    """What the compiler sees, with the comments, since NOLINT is one."""
    command = shlex.split(entry["command"])
    if Path(command[0]).name == "ccache":
        del command[0]
    # An object file is not wanted, nor its dependencies.
    for flag, values in (("-o", 1), ("-c", 0), ("-MD", 0), ("-MF", 1), ("-MT", 1)):
        if flag in command:
            at = command.index(flag)
            del command[at : at + 1 + values]
    text = subprocess.run(
        command + ["-E", "-C"], cwd=entry["directory"], check=True, capture_output=True
    ).stdout
    # The same source in another checkout is the same source.
    return text.replace(str(ROOT).encode(), b".")


def tidy(entry, build, cache, salt):
    """The complaints about one source, empty when there are none."""
    try:
        marker = cache / hashlib.sha256(salt + preprocessed(entry)).hexdigest()
    except subprocess.CalledProcessError as error:
        return error.stderr.decode(errors="replace")
    if marker.exists():
        return ""
    run = subprocess.run(
        [TIDY, "--quiet", "-p", build, entry["file"]],
        stdin=subprocess.DEVNULL, capture_output=True, text=True,
    )
    if run.returncode:
        noise = re.compile(r"^\d+ warnings?.* generated\.$\n?", re.MULTILINE)
        return run.stdout + noise.sub("", run.stderr)
    marker.touch()
    return ""


def digest(data):
    return hashlib.sha256(data).hexdigest()[:16]


def listed(files, configurations):
    """The checks and the files as they are now, as they stand in the list."""
    checks = b"".join(file.read_bytes() for file in configurations)
    lines = [f"{digest(Path(file).read_bytes())} {Path(file).relative_to(ROOT)}" for file in files]
    return [f"{digest(checks)} .clang-tidy", *sorted(lines, key=lambda line: line.split()[1])]


def changed(files, configurations):
    """Those that differ from the list; all of them if the checks do."""
    known = set(LINTED.read_text().splitlines()) if LINTED.exists() else set()
    if listed([], configurations)[0] not in known:
        return list(files)
    return [file for file in files if listed([file], configurations)[1] not in known]


def main():
    build, cache = Path(sys.argv[1]).resolve(), Path(sys.argv[2])
    only_changed = sys.argv[3:] == ["--changed"]
    cache.mkdir(parents=True, exist_ok=True)
    version = subprocess.run([TIDY, "--version"], check=True, capture_output=True).stdout
    configurations = [ROOT / ".clang-tidy", *sorted(ROOT.glob("*/.clang-tidy"))]
    salt = version + b"".join(file.read_bytes() for file in configurations)
    entries = {
        entry["file"]: entry
        for entry in json.loads((build / "compile_commands.json").read_text())
        if not Path(entry["file"]).is_relative_to(ROOT / "build")
        and Path(entry["file"]).is_relative_to(ROOT)
    }
    every = sorted(entries)
    if only_changed:
        entries = {file: entries[file] for file in changed(every, configurations)}
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = list(
            filter(None, pool.map(lambda e: tidy(e, build, cache, salt), entries.values()))
        )
    print("\n".join(complaints), end="")
    print(f"clang-tidy: {len(entries)} of {len(every)} files, {len(complaints)} with complaints")
    if not only_changed and not complaints:
        LINTED.write_text("\n".join(listed(every, configurations)) + "\n")
    return 1 if complaints else 0


sys.exit(main())
