#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Kills a synchronisation at many points: killed.py SYNCHRONISE [--points N] [--dives N] [--jobs N] [--speed N]

At each point a synchronisation is ended with SIGKILL, then another one runs to its end. No dive may
be missing then, none may be there twice, none that was stored may have been asked for again, and the
file has to be sound, before and after. Without --points, each point counts."""

import argparse
import concurrent.futures
import contextlib
import json
import os
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

SAMPLES = 10
READ_DIVE = 0x14
# What one run may take before it is taken for hanging.
HANGS = 300


def scenario(dives):
    """A computer with these dives, (number, begin)."""
    return {"devices": [{"known": True, "dives": [
        {"number": number, "samples": SAMPLES, "header": {"stamp": begin}}
        for number, begin in dives]}]}


class Kill:
    def __init__(self, options, before, after):
        """A computer that had BEFORE at the last synchronisation, and has AFTER now."""
        self.options = options
        self.folder = tempfile.TemporaryDirectory()
        self.after = set(after)
        self.all = set(before) | self.after
        self.scenario = Path(self.folder.name, "after.json")
        self.base = Path(self.folder.name, "base")
        self.base.mkdir()
        if before:
            self.scenario.write_text(json.dumps(scenario(before)))
            self.synchronise(self.base)
        self.scenario.write_text(json.dumps(scenario(after)))

    def synchronise(self, folder, point=0):
        """One run; its exit status, what it printed, and the dives that it asked for."""
        record = Path(folder, "record")
        environment = {**os.environ, "VARDA_TEST_SPEED": str(self.options.speed),
                       "VARDA_TEST_KILL": str(point), "QT_LOGGING_RULES": "*=false"}
        done = subprocess.run(
            [self.options.bin / "varda-simulator", "--scenario", self.scenario, "--record", record,
             "--", self.options.bin / "varda-synchronise", folder / "logbook.sqlite"],
            env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True,
            timeout=HANGS, check=False)
        asked = []
        for line in record.read_text().splitlines():
            with contextlib.suppress(json.JSONDecodeError):
                event = json.loads(line)
                if event["event"] == "frame":
                    frame = bytes.fromhex(event["hex"])
                    if frame[8] == READ_DIVE:
                        asked.append(int.from_bytes(frame[9:11], "little"))
        record.unlink()
        if done.returncode != 0 and not point:
            raise AssertionError(f"it failed: {done.stderr}")
        return done.returncode, done.stdout, asked

    def stored(self, folder):
        """The dives in a copy of the file; it is sound, and every dive in it is whole."""
        with tempfile.TemporaryDirectory() as copy:
            for file in folder.iterdir():
                shutil.copy(file, copy)
            if not Path(copy, "logbook.sqlite").exists():
                return []
            with contextlib.closing(sqlite3.connect(Path(copy, "logbook.sqlite"))) as database:
                def rows(sql):
                    return database.execute(sql).fetchall()
                if rows("PRAGMA integrity_check") != [("ok",)] or rows("PRAGMA foreign_key_check"):
                    raise AssertionError("the file is damaged")
                if not rows("SELECT name FROM sqlite_master"):
                    return []
                parts = ("(SELECT count(*) FROM sample s WHERE s.dive = d.id)",
                         "(SELECT count(*) FROM line l WHERE l.dive = d.id)",
                         "(SELECT count(*) FROM header h WHERE h.dive = d.id)",
                         "(SELECT count(*) FROM record r WHERE r.dive = d.id)")
                dives = rows(f'SELECT number, "begin", {", ".join(parts)} FROM dive d')
        for dive in dives:
            if dive[2:] != (SAMPLES, SAMPLES, 1, 1):
                raise AssertionError(f"dive {dive[0]} is not whole: {dive[2:]}")
        return [dive[:2] for dive in dives]

    def at(self, point):
        """Kills it at this point; whether it was killed, and what is wrong then."""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name, "store")
            shutil.copytree(self.base, folder)
            try:
                status, _, _ = self.synchronise(folder, point)
                stored = self.stored(folder)
                _, _, asked = self.synchronise(folder)
                # Numbers of dives that have started again are asked for again, as others.
                known = {number for number, begin in stored if (number, begin) in self.after}
                again = known & set(asked)
                if again:
                    raise AssertionError(f"asked for again: {sorted(again)}")
                if sorted(self.stored(folder)) != sorted(self.all):
                    raise AssertionError(f"not each dive once: {sorted(self.stored(folder))}")
            except (AssertionError, sqlite3.Error, subprocess.TimeoutExpired) as error:
                return True, f"point {point}: {error}"
        return status != 0, None

    def points(self):
        """How many there are in a run that is left alone."""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name, "store")
            shutil.copytree(self.base, folder)
            _, printed, _ = self.synchronise(folder)
        points, syncs, added = map(int, re.findall(r"\d+", printed))
        print(f"{points} points, {syncs} times made to last, {added} dives")
        if syncs < added:
            raise AssertionError("not each dive was made to last")
        return points


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("synchronise", type=Path, help="varda-synchronise, beside varda-simulator")
    parser.add_argument("--points", type=int, help="at most so many of all settings together")
    parser.add_argument("--dives", type=int, default=14)
    parser.add_argument("--jobs", type=int, default=4 * (os.cpu_count() or 1))
    parser.add_argument("--speed", type=int, default=10)
    options = parser.parse_args()
    options.bin = options.synchronise.resolve().parent

    count = options.dives
    later = [(number, 5000 + number) for number in range(1, count + 1)]
    settings = {
        "new file": Kill(options, [], later),
        "numbers started again": Kill(
            options, [(number, 1000 + number) for number in range(1, 4)], later),
    }
    failures = []
    killed = tried = 0
    for name, setting in settings.items():
        print(f"{name}: ", end="", flush=True)
        last = setting.points()
        share = options.points // len(settings) if options.points else last
        points = sorted({1 + i * last // share for i in range(share)})
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            for was_killed, failure in pool.map(setting.at, points):
                tried += 1
                killed += was_killed
                if failure:
                    failures.append(f"{name}, {failure}")
                    print(failures[-1], flush=True)
    print(f"killed {killed} times, {len(failures)} failures")
    # The last points may come after the end, as the number of messages varies a little.
    return 1 if failures or killed < 0.8 * tried else 0


sys.exit(main())
