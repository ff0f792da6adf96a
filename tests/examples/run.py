#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""run.py CASE SIMULATOR PROGRAM: runs an example against the simulated computer and compares what it says."""

import json
import os
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
DIVES = {"dives": {"count": 3, "seed": 2}}
DROPPED = {"step": "answer", "command": "Fullsamples", "nth": 2, "kind": "drop"}
DAMAGED = {"step": "answer", "command": "Fullsamples", "nth": 1, "kind": "wrongCrc"}
IMAGE = ROOT / "tests/cli/images/application.bin"


def device(**keys):
    return {"devices": [keys]}


def refusing(command, kind):
    return device(faults=[{"step": "answer", "command": command, "kind": kind}])


# A scenario, then each run: arguments, exit status, the last lines of what is printed.
CASES = {
    "shortest": (device(owner="Ada"), [([], 0, ["Ada"])]),
    "nobody-in-reach": ({"devices": []}, [([], 6, ["no computer found within 60 s"])]),
    "adapter-off": (
        {"adapter": {"powered": False}, "devices": []}, [([], 11, ["Bluetooth is switched off"])],
    ),
    "no-adapter": (
        {"adapter": {"present": False}, "devices": []}, [([], 11, ["no Bluetooth adapter found"])],
    ),
    "refused": (
        device(faults=[{"step": "connect", "kind": "refuse"}]),
        [([], 9, ["could not connect to Varda (00:AA:01:01:00:01): Unknown Error"])],
    ),
    "silent": (
        refusing("Owner", "silent"),
        [([], 5, ["owner: no answer from Varda (00:AA:01:01:00:01)"])],
    ),
    "downloader": (
        device(**DIVES),
        [
            ([], 0, ["3/3", "all dives are here"]),
            ([], 0, ["0/0", "all dives are here"]),
        ],
    ),
    "downloader-lost-link": (
        device(**DIVES, faults=[DROPPED]), [([], 0, ["3/3", "all dives are here"])],
    ),
    "downloader-damaged": (
        device(**DIVES, faults=[DAMAGED]), [([], 0, ["3/3", "all dives are here"])],
    ),
    "coroutine": (device(**DIVES), [([], 0, ["dive 1", "dive 2", "dive 3"])]),
    "qcoro": (device(owner="Ada"), [([], 0, ["Ada"])]),
    "future": (device(), [([], 0, ["battery records: 5"])]),
    "firmware-update": (device(), [([str(IMAGE)], 0, ["1000 of 1000 bytes"])]),
    "firmware-update-refused": (
        refusing("BeginUpdate", "refuse"),
        [([str(IMAGE)], 2, ["firmware: the computer refused it at the beginning", ""])],
    ),
}


def main():
    case, simulator, program = sys.argv[1:]
    scenario, runs = CASES[case]
    environment = os.environ | {"QT_LOGGING_RULES": "*=false\ndefault=true", "LC_ALL": "C.UTF-8"}
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder) / "scenario.json"
        file.write_text(json.dumps(scenario))
        for arguments, status, last in runs:
            done = subprocess.run(
                [simulator, "--scenario", file, "--", program, *arguments],
                cwd=folder, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.STDOUT, text=True,
            )
            lines = done.stdout.removesuffix("\n").split("\n")
            if done.returncode != status or lines[-len(last):] != last:
                sys.exit(f"status {done.returncode} instead of {status}; it said:\n{done.stdout}")


main()
