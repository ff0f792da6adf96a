#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""needed.py BUILD CTEST-ARGUMENT...: the files in BUILD that the tests need which ctest would run"""

import json
import re
import subprocess
import sys
from pathlib import Path

ADD_TEST = re.compile(r"^add_test\(\[(=*)\[(.*?)\]\1\] (.*)\)$", re.MULTILINE)
ARGUMENT = re.compile(r'"((?:[^"\\]|\\.)*)"')


def commands(build):
    """The command of each test. ctest itself hides those of programs that are not built yet."""
    found = {}
    for file in build.rglob("CTestTestfile.cmake"):
        for _, name, command in ADD_TEST.findall(file.read_text(encoding="utf-8")):
            found[name] = [re.sub(r"\\(.)", r"\1", each) for each in ARGUMENT.findall(command)]
    return found


def main():
    build = Path(sys.argv[1]).resolve()
    listed = subprocess.run(
        ["ctest", "--test-dir", build, *sys.argv[2:], "--show-only=json-v1"],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True,
    )
    if listed.returncode:
        return listed.returncode
    command_of = commands(build)
    needed = set()
    for test in json.loads(listed.stdout)["tests"]:
        needed.update(command_of[test["name"]])
        for each in test["properties"]:
            if each["name"] == "REQUIRED_FILES":
                needed.update(each["value"])
    for file in sorted(needed):
        if build in Path(file).parents:
            print(Path(file).relative_to(build))
    return 0


sys.exit(main())
