#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""manual.py PAGE SIMULATOR: whether a manual page is clean, and says what people look for.

What is not installed of man, mandoc and groff is left out; without groff the test is skipped.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

SKIPPED = 77

LINTERS = {
    "man": ["man", "--warnings", "-E", "UTF-8", "-l", "-Z"],
    "mandoc": ["mandoc", "-T", "lint"],
    "groff": ["groff", "-ww", "-man", "-z"],
}
# A date would change with each build, or be out of date.
ALLOWED = re.compile(r'missing date, using "": TH$')

SECTIONS = {
    "varda.1": [
        "NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS", "EXIT STATUS", "ENVIRONMENT",
        "FILES", "EXAMPLES", "SEE ALSO",
    ],
    "varda-simulator.1": [
        "NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "EXIT STATUS", "ENVIRONMENT", "FILES",
        "EXAMPLES", "SEE ALSO",
    ],
}
LINES = {
    "varda.1": [
        "varda - read diving computers over Bluetooth Low Energy",
        "varda scan",
        "varda dive N...",
        "varda layouts get INDEX",
        "-o, --output FILE",
        "varda superuser on|off",
        "varda help [COMMAND]...",
        "--mode MODE",
        "--simulate [SCENARIO]",
        "3 no computer found.",
        "6 no Bluetooth.",
        "7 the saved dives cannot be read or written.",
    ],
    "varda-simulator.1": [
        "varda-simulator - simulate a diving computer",
        "--radio [ADAPTER]",
    ],
}


def complaints(page):
    for name, command in LINTERS.items():
        if not shutil.which(name):
            continue
        done = subprocess.run([*command, page], capture_output=True, text=True)
        # mandoc prints them as its result, the others print the page there.
        said = done.stderr + (done.stdout if name == "mandoc" else "")
        lines = [line for line in said.splitlines() if line and not ALLOWED.search(line)]
        yield from (f"{name}: {line}" for line in lines)
        if done.returncode and not said:
            yield f"{name}: ends with {done.returncode}"


def rendered(page):
    """As people see it, without the breaks of lines, with one space between words."""
    done = subprocess.run(
        ["groff", "-man", "-Tascii", "-P-cbou", "-rLL=200n", page],
        capture_output=True, text=True, check=True,
    )
    return [re.sub(r"\s+", " ", line).strip() for line in done.stdout.splitlines()]


def options_in_help(program):
    text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    return set(re.findall(r"^ +(?:-\w, )?(--[a-z-]+)", text, re.MULTILINE))


def main():
    page, simulator = sys.argv[1:]
    if not shutil.which("groff"):
        sys.exit(SKIPPED)
    os.environ["LC_ALL"] = "C.UTF-8"
    name = Path(page).name
    wrong = list(complaints(page))
    source = Path(page).read_text(encoding="utf-8")
    if re.findall(r"^\.SH (.*)$", source, re.MULTILINE) != SECTIONS[name]:
        wrong.append("other sections")
    if re.search("@[A-Z_]+@", source):
        wrong.append("something was not filled in")
    lines = rendered(page)
    wrong += [f"not there: {line}" for line in LINES[name] if line not in lines]
    if name == "varda-simulator.1":
        listed = {each for line in lines for each in re.findall(r"^(?:-\w, )?(--[a-z-]+)", line)}
        options = options_in_help(simulator)
        wrong += [f"not the same options: {each}" for each in sorted(options ^ listed)]
    print("\n".join(wrong))
    sys.exit(bool(wrong))


main()
