#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""coverage.py SUMMARY: lines and branches of each folder under src/, from gcovr's JSON summary.

Ends with 1 when a folder has less than it must.
"""

import json
import sys
from collections import Counter

# In percent of lines and of branches. The transport waits for what a platform does, and parts of
# it for what this platform does not.
LEAST = {
    "src/protocol": (100, 95),
    "src/decoding": (100, 95),
    "src/conversion": (100, 95),
    "src/session": (100, 95),
    "src/jobs": (100, 95),
    # Objects and lists that are built in one expression have branches that nothing reaches.
    "src/jobs/doctor": (100, 80),
    "src/jobs/trace": (100, 80),
}


def percent(counts, kind):
    total = counts[f"{kind}_total"]
    return 100 * counts[f"{kind}_covered"] / total if total else 0.0


def cell(counts, kind):
    share = f"{counts[f'{kind}_covered']} of {counts[f'{kind}_total']}"
    # Cut, not rounded: 100 % is all of them.
    return f"{share:>14}{int(percent(counts, kind) * 10) / 10:7.1f} %"


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        files = json.load(file)["files"]
    kinds = [f"{what}_{count}" for what in ("line", "branch") for count in ("covered", "total")]
    folders = {}
    for entry in files:
        counts = {kind: entry[kind] for kind in kinds}
        # A room within a room counts for it, unless it has a line of its own above.
        rooms = entry["filename"].removeprefix("../../").split("/")[:-1]
        name = "/".join(rooms) if "/".join(rooms) in LEAST else "/".join(rooms[:2])
        for key in (name, "all"):
            folders.setdefault(key, Counter()).update(counts)

    print(f"{'':16}{'lines':>14}{'branches':>23}")
    for name in sorted(folders, key=lambda name: (name == "all", name)):
        print(f"{name:16}{cell(folders[name], 'line')}{cell(folders[name], 'branch')}")

    short = [
        name
        for name, (lines, branches) in LEAST.items()
        if percent(folders.get(name, Counter()), "line") < lines
        or percent(folders.get(name, Counter()), "branch") < branches
    ]
    for name in short:
        lines, branches = LEAST[name]
        print(f"{name} is below {lines} % of lines or {branches} % of branches")
    sys.exit(1 if short else 0)


main()
