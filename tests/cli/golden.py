#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""golden.py VARDA FILE: runs the commands in FILE, the lines that begin with "$ ", and compares what
they print, which stands below each.

They share a folder for what they save, which is $DATA in the file. VARDA_UPDATE_GOLDEN=1 writes what
they print into the file instead: look at the difference, then commit it. A new test is a file with
the commands only.
"""

import difflib
import os
import re
import shlex
import subprocess
import sys
import tempfile
from pathlib import Path

HERE = Path(__file__).resolve().parent

# What takes time takes another time each time.
VARYING = re.compile(r'(?<= in )[0-9.]+(?= s\.\n)|(?<="uploadElapsed": )[0-9.e-]+')

WISHES = ("LANG", "TERM", "COLUMNS", "LINES", "NO_COLOR")


def environment(data):
    """The same everywhere: no radio of this machine, no terminal, no wishes of its user."""
    kept = {
        name: value
        for name, value in os.environ.items()
        if not name.startswith(("QT_", "LC_")) and name not in WISHES
    }
    return kept | {
        "LANG": "C.UTF-8",
        "XDG_CONFIG_HOME": "/nonexistent",
        "XDG_DATA_HOME": data,
        "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus",
    }


def transcript(varda, line, data):
    words = [each.replace("$DATA", data) for each in shlex.split(line.removeprefix("$ "))]
    env = environment(data)
    while "=" in words[0]:
        name, value = words.pop(0).split("=", 1)
        env[name] = value
    if words[0] != "varda":
        sys.exit(f"the line is not \"$ varda ...\": {line}")
    done = subprocess.run(
        [varda, *words[1:]], cwd=HERE, env=env, stdin=subprocess.DEVNULL, capture_output=True
    )
    text = line + "\n" + VARYING.sub("#", done.stdout.decode("utf-8"))
    if done.stderr:
        text += "[stderr]\n" + done.stderr.decode("utf-8")
    return text.replace(data, "$DATA") + f"[exit {done.returncode}]\n"


def main():
    varda, file = sys.argv[1], Path(sys.argv[2])
    # Line ends are compared as well.
    wanted = file.read_bytes().decode("utf-8")
    lines = [line for line in wanted.splitlines() if line.startswith("$ ")]
    with tempfile.TemporaryDirectory() as data:
        got = "".join(transcript(varda, line, data) for line in lines)
    if os.environ.get("VARDA_UPDATE_GOLDEN") == "1":
        # A full disk does not leave half of it.
        new = file.with_suffix(".new")
        new.write_bytes(got.encode("utf-8"))
        new.replace(file)
    elif got != wanted:
        difference = difflib.unified_diff(
            wanted.splitlines(), got.splitlines(), str(file), "what it prints", lineterm=""
        )
        print("\n".join(difference))
        print("(as seen by repr, if they look alike)" if got.split() == wanted.split() else "")
        sys.exit(1)


main()
