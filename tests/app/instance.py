#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A second start raises the first app, and an app that was killed is in nobody's way.

instance.py APP"""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LIMIT = 60


def wait_for(what, found):
    end = time.monotonic() + LIMIT
    while not found():
        if time.monotonic() > end:
            sys.exit(f"{what}: not within {LIMIT} s")
        time.sleep(0.05)


def main(app):
    with tempfile.TemporaryDirectory() as folder:
        # The socket is in TMPDIR, and nothing of the user's own is touched.
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", TMPDIR=folder)
        for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"):
            environment[name] = folder
        # No computer is looked for before the user asks.
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={folder}/nobody"

        def start():
            return subprocess.Popen([app, "--simulated"], env=environment)

        def sockets():
            return {
                (each.stat().st_ino, each.stat().st_ctime_ns)
                for each in Path(folder).glob("varda-logbook-*")
            }

        def start_again():
            again = start()
            try:
                return again.wait(LIMIT) == 0
            except subprocess.TimeoutExpired:
                again.kill()
                return False

        first = start()
        try:
            wait_for("the first app", sockets)
            if not start_again() or first.poll() is not None:
                sys.exit("the second start did not leave it to the first")
            left = sockets()
            first.kill()
            first.wait(LIMIT)
            first = start()
            wait_for("the app after one that was killed", lambda: sockets() - left)
            if not start_again() or first.poll() is not None:
                sys.exit("the start after a killed app did not become the first")
        finally:
            first.kill()
            first.wait(LIMIT)
    print("one app")


if __name__ == "__main__":
    main(sys.argv[1])
