#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The linter of QML finds nothing in the app: lint.py QMLLINT --imports=FOLDER-OF-MODULES"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

APP = Path(__file__).resolve().parents[2] / "apps/logbook"
# Every component of the app is used where it is written, so it knows the names around it. The linter
# believes that if it is said; but an engine of Qt 6.4 that reads it refuses each Loader.
BOUND = "pragma ComponentBehavior: Bound\n"


def main(qmllint, imports):
    modules = imports.removeprefix("--imports=")
    with tempfile.TemporaryDirectory() as folder:
        files = []
        for page in sorted(APP.rglob("*.qml")):
            files.append(Path(folder, page.relative_to(APP)))
            files[-1].parent.mkdir(exist_ok=True)
            files[-1].write_text(BOUND + page.read_text(encoding="utf-8"), encoding="utf-8")
        if not files:
            sys.exit(f"no QML in {APP}")
        # What a control shows has a name in many places here, and is made at once then.
        options = ["--deferred-property-id", "disable", "-I", modules]
        lint = subprocess.run([qmllint, *options, *files], capture_output=True, text=True)
    output = lint.stdout + lint.stderr
    if lint.returncode or re.search("^(Warning|Error)", output, re.MULTILINE):
        sys.exit(output or f"qmllint ended with {lint.returncode}")


main(*sys.argv[1:])
