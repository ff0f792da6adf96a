#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes each program of docs/qml.md into a folder, and looks at all QML that people see."""

import argparse
import re
import subprocess
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("qmllint")
    parser.add_argument("--imports", action="append", required=True)
    parser.add_argument("--folder", type=Path, required=True)
    options = parser.parse_args()
    text = (ROOT / "docs/qml.md").read_text(encoding="utf-8")
    programs = re.findall(r"^```qml\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    files = []
    options.folder.mkdir(parents=True, exist_ok=True)
    for number, program in enumerate(programs):
        files.append(options.folder / f"Document{number}.qml")
        files[-1].write_text(program, encoding="utf-8")
    example = ROOT / "examples/qml-reader/Main.qml"
    if programs[0] != example.read_text(encoding="utf-8"):
        sys.exit("the first program is not examples/qml-reader")
    lines = [line for line in programs[0].splitlines() if line and not line.startswith("//")]
    if len(lines) > 20:
        sys.exit(f"the first program has {len(lines)} lines, and 20 were promised")
    files += [ROOT / "tests/consumer/qml/Main.qml", *sorted((ROOT / "tests/qml").glob("*.qml"))]
    imports = [word for folder in options.imports for word in ("-I", folder)]
    lint = subprocess.run([options.qmllint, *imports, *files], capture_output=True, text=True)
    output = lint.stdout + lint.stderr
    if lint.returncode or "Warning" in output or "Error" in output:
        sys.exit(output or f"qmllint ended with {lint.returncode}")


main()
