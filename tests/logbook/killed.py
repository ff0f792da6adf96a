#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Disturbs a synchronisation at many points: killed.py SYNCHRONISE [--points N] [--dives N] [--jobs N] [--speed N]

At each point a synchronisation is ended with SIGKILL, or the disk is full from there on, or the link
is lost; then another one runs to its end. No dive may be missing then, none may be there twice, none
that was stored may have been asked for again, and the file has to be sound, before and after.
Without --points, each point counts."""

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
ADDRESS = "00:AA:01:01:00:0{}"
# STORE ADDRESS ADDRESS: one that is disturbed, and beside it one that is not, whose status counts.
BESIDE = """
    "$0" "$1" "$2" >"$1.disturbed" &
    env -u VARDA_TEST_KILL "$0" "$1" "$3"
    status=$?
    wait $!
    exit $status
"""
# What one run may take before it is taken for hanging.
HANGS = 300


def scenario(dives, computers=1, faults=()):
    """Computers with these dives, (number, begin), which are one computer at several addresses."""
    return {"devices": [
        {"name": "Varda", "address": ADDRESS.format(each), "known": True, "faults": list(faults),
         "dives": [{"number": number, "samples": SAMPLES, "header": {"stamp": begin}}
                   for number, begin in dives]}
        for each in range(computers)]}


class Disturbed:
    """A synchronisation with a computer that had some dives at the last one, and has others now."""

    def __init__(self, options, before, after):
        self.options = options
        self.folder = tempfile.TemporaryDirectory()
        self.now = after
        self.after = set(after)
        self.all = set(before) | self.after
        self.base = Path(self.folder.name, "base")
        self.base.mkdir()
        if before:
            self.synchronise(self.base, scenario(before))

    # What the settings differ in

    def disturb(self, folder, point):
        """A run that is disturbed at this point; whether it was."""
        raise NotImplementedError

    def count(self, run):
        """How many points such a run has that is left alone."""
        raise NotImplementedError

    # What they share

    def synchronise(self, folder, computers=None, environment=None, beside=False):
        record, world = folder / "record", folder / "scenario.json"
        world.write_text(json.dumps(computers or scenario(self.now)))
        program, store = self.options.bin / "varda-synchronise", folder / "logbook.sqlite"
        command = [program, store]
        if beside:
            command = ["sh", "-c", BESIDE, *command, ADDRESS.format(0), ADDRESS.format(1)]
        done = subprocess.run(
            [self.options.bin / "varda-simulator", "--scenario", world, "--record", record,
             "--", *command],
            env={**os.environ, "VARDA_TEST_SPEED": str(self.options.speed),
                 "QT_LOGGING_RULES": "*=false", **(environment or {})},
            stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=HANGS, check=False)
        run = Run(done, record)
        if done.returncode != 0 and not environment:
            raise AssertionError(f"it failed: {done.stderr}")
        record.unlink()
        world.unlink()
        return run

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
        """Disturbs it at this point; whether it was disturbed, and what is wrong then."""
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name, "store")
            shutil.copytree(self.base, folder)
            try:
                disturbed = self.disturb(folder, point)
                stored = self.stored(folder)
                asked = self.synchronise(folder).asked
                # Numbers of dives that have started again are asked for again, as others.
                known = {number for number, begin in stored if (number, begin) in self.after}
                again = known & set(asked)
                if again:
                    raise AssertionError(f"asked for again: {sorted(again)}")
                if sorted(self.stored(folder)) != sorted(self.all):
                    raise AssertionError(f"not each dive once: {sorted(self.stored(folder))}")
            except (AssertionError, sqlite3.Error, subprocess.TimeoutExpired) as error:
                return True, f"point {point}: {error}"
        return disturbed, None

    def points(self):
        with tempfile.TemporaryDirectory() as name:
            folder = Path(name, "store")
            shutil.copytree(self.base, folder)
            run = self.synchronise(folder)
        if run.syncs < run.added:
            raise AssertionError("not each dive was made to last")
        print(f"{self.count(run)} points, {run.syncs} times made to last, {run.added} dives")
        return self.count(run)


class Run:
    """What a synchronisation did."""

    def __init__(self, done, record):
        self.status, self.text = done.returncode, done.stderr
        self.asked = []
        self.notifications = 0
        for line in record.read_text().splitlines():
            with contextlib.suppress(json.JSONDecodeError):
                event = json.loads(line)
                self.notifications += event["event"] == "notification"
                if event["event"] == "frame":
                    frame = bytes.fromhex(event["hex"])
                    if frame[8] == READ_DIVE:
                        self.asked.append(int.from_bytes(frame[9:11], "little"))
        figures = list(map(int, re.findall(r"\d+", done.stdout)))
        self.points, self.syncs, self.writes, self.added = figures or [0] * 4


class Killed(Disturbed):
    def count(self, run):
        return run.points

    def disturb(self, folder, point):
        return self.synchronise(folder, environment={"VARDA_TEST_KILL": str(point)}).status != 0


class KilledBesideAnother(Disturbed):
    """Two processes with one file, and one computer at two addresses."""

    def count(self, run):
        return run.points

    def disturb(self, folder, point):
        run = self.synchronise(folder, scenario(self.now, 2),
                               {"VARDA_TEST_KILL": str(point)}, beside=True)
        if run.status:
            raise AssertionError(f"the other one failed: {run.text}")
        if sorted(self.stored(folder)) != sorted(self.all):
            raise AssertionError("the other one did not store each dive")
        disturbed = Path(folder, "logbook.sqlite.disturbed")
        was_killed = not disturbed.read_text()
        disturbed.unlink()
        return was_killed


class DiskFull(Disturbed):
    def count(self, run):
        return run.writes

    def disturb(self, folder, point):
        run = self.synchronise(folder, environment={"VARDA_TEST_FULL": str(point)})
        # Of the file that it maps SQLite says no more than the second. The library looks at the
        # disk then, which has room here.
        if run.status and not re.search("the disk is full|disk I/O error", run.text):
            raise AssertionError(f"another error: {run.text}")
        return run.status != 0


class LinkLost(Disturbed):
    """It connects again by itself, and goes on."""

    def count(self, run):
        return run.notifications

    def disturb(self, folder, point):
        fault = {"step": "notification", "nth": point, "times": 1, "kind": "drop"}
        run = self.synchronise(folder, scenario(self.now, faults=[fault]))
        twice = [number for number in set(run.asked) if run.asked.count(number) > 1]
        # The one that was on its way.
        if len(twice) > 1 or len(run.asked) > len(self.now) + 1:
            raise AssertionError(f"asked for again after the loss: {twice}")
        return True


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
    before = [(number, 1000 + number) for number in range(1, 4)]
    settings = {
        "killed, new file": Killed(options, [], later),
        "killed, numbers started again": Killed(options, before, later),
        "killed beside another process": KilledBesideAnother(options, [], later),
        "disk full": DiskFull(options, [], later),
        "disk full, numbers started again": DiskFull(options, before, later),
        "link lost": LinkLost(options, [], later),
        "link lost, numbers started again": LinkLost(options, before, later),
    }
    failures = []
    disturbed = tried = 0
    for name, setting in settings.items():
        print(f"{name}: ", end="", flush=True)
        last = setting.points()
        share = min(last, options.points // len(settings)) if options.points else last
        points = sorted({1 + i * last // share for i in range(share)})
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            for was_disturbed, failure in pool.map(setting.at, points):
                tried += 1
                disturbed += was_disturbed
                if failure:
                    failures.append(f"{name}, {failure}")
                    print(failures[-1], flush=True)
    print(f"disturbed {disturbed} times of {tried}, {len(failures)} failures")
    # The last points may come after the end, as the number of messages varies a little.
    return 1 if failures or disturbed < 0.8 * tried else 0


sys.exit(main())
