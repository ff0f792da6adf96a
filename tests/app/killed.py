#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The app is killed while its page synchronises; nothing is lost then, and nothing there twice.

killed.py TST_APP VARDA"""

import contextlib
import json
import os
import sqlite3
import subprocess
import sys
import tempfile
import time
from pathlib import Path

PAGE = Path(__file__).resolve().parent / "killed.qml"
DIVES = list(range(1, 21))
# It is killed each time that this many dives have been saved.
SAVED = (1, 8)
LIMIT = 250


def stored(file):
    """What was saved when: (id, number, time) of each dive."""
    with contextlib.closing(sqlite3.connect(f"file:{file}?mode=ro", uri=True)) as database:
        return database.execute('SELECT "id", "number", "stored" FROM "dive"').fetchall()


def count(file):
    try:
        return len(stored(file))
    except sqlite3.Error:  # nothing is there yet
        return 0


def kill_at(saved, start, file):
    app = start()
    try:
        end = time.monotonic() + LIMIT
        while count(file) < saved:
            if app.poll() is not None:
                sys.exit(f"the app ended with {app.returncode} before {saved} dives were saved")
            if time.monotonic() > end:
                sys.exit(f"{saved} dives were not saved within {LIMIT} s")
            time.sleep(0.01)
    finally:
        app.kill()
        app.wait(LIMIT)
    with contextlib.closing(sqlite3.connect(file)) as database:
        if database.execute("PRAGMA integrity_check").fetchall() != [("ok",)]:
            sys.exit("the file is damaged")
    if count(file) >= len(DIVES):
        sys.exit("the app was killed too late")


def main(tst_app, varda):
    with tempfile.TemporaryDirectory() as folder:
        file = Path(folder, "dives.sqlite")
        environment = {**os.environ, "VARDA_TEST_STORE": str(file), "QT_LOGGING_RULES": "*=false"}

        def start():
            return subprocess.Popen([tst_app, "-silent", "-input", PAGE], env=environment)

        before = []
        for saved in SAVED:
            kill_at(saved, start, file)
            now = stored(file)
            if not set(before) <= set(now):
                sys.exit(f"lost or read again: {sorted(set(before) - set(now))}")
            before = now
        if start().wait(LIMIT) != 0:
            sys.exit("the last synchronisation failed")
        if not set(before) <= set(stored(file)):
            sys.exit("the last synchronisation has changed what was saved")
        listed = subprocess.run(
            [varda, "dives", "--saved", "--logbook", file, "--json"],
            capture_output=True, text=True, check=True)
        numbers = sorted(dive["diveNumber"] for dive in json.loads(listed.stdout)["dives"])
        if numbers != DIVES:
            sys.exit(f"not each dive once: {numbers}")
    print("nothing was lost")


main(*sys.argv[1:])
