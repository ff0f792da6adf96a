#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""replay.py VARDA [TEST...]: a recording that is replayed gives what was there before."""

import json
import os
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

VARDA = Path(sys.argv.pop(1)).resolve()
SCENARIOS = Path(__file__).resolve().parents[2] / "simulator" / "scenarios"
OWNER = ("owner", "--simulate")

# Whatever goes wrong goes wrong again. What happens to the whole system is not here.
COMMANDS = {
    "healthy": (("dive", "3", "--json"), (
        "varda", "tidemar", "vskm", "sps", "merged", "split", "indicate", "notify-and-indicate",
        "credits", "other-service")),
    "content": (("log", "--json"), ("every-log-entry", "varda", "empty")),
    "bootloader": (("info", "--json"), ("bootloader", "firmware-resumed", "small-mtu")),
    "faulty": (("owner", "--json", "--retries", "1"), (
        "wrong-crc", "garbage", "garbage-between-frames", "flipped-bit", "lying-length",
        "notification-lost", "notifications-swapped", "connect-refused", "connect-dropped",
        "no-services", "no-cccd", "no-characteristic", "no-data-service",
        "neither-notify-nor-indicate", "subscribe-refused", "silent")),
}


def run(*arguments, folder):
    environment = {name: value for name, value in os.environ.items()
                   if not name.startswith(("QT_", "LC_"))}
    environment |= {"LANG": "C.UTF-8", "XDG_CONFIG_HOME": "/nonexistent", "XDG_DATA_HOME": folder}
    return subprocess.run([VARDA, *arguments], env=environment, stdin=subprocess.DEVNULL,
                          capture_output=True, text=True, check=False)


class Replay(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name
        self.file = os.path.join(folder.name, "trace.jsonl")

    def command(self, *arguments):
        return run(*arguments, folder=self.folder)

    def check_group(self, group):
        command, scenarios = COMMANDS[group]

        def twice(scenario):
            file = os.path.join(self.folder, f"{scenario}.jsonl")
            before = self.command(*command, "--simulate", str(SCENARIOS / f"{scenario}.json"),
                                  "--record", file, "--unredacted")
            return before, self.command(*command, "--replay", file, "--strict", "--speed", "0")

        # Most of the time they wait for an answer to be over.
        with ThreadPoolExecutor(4) as pool:
            for scenario, (before, after) in zip(scenarios, pool.map(twice, scenarios)):
                with self.subTest(scenario=scenario):
                    self.assertEqual((after.stdout, after.stderr, after.returncode),
                                     (before.stdout, before.stderr, before.returncode))

    def test_healthy(self):
        self.check_group("healthy")

    def test_content(self):
        self.check_group("content")

    def test_bootloader(self):
        self.check_group("bootloader")

    def test_faulty(self):
        self.check_group("faulty")

    def test_redacted(self):
        """What is private is another text of the same length, everything else is the same."""
        for model in ("varda", "tidemar", "vskm"):
            before = self.command("info", "--json", "--simulate", str(SCENARIOS / f"{model}.json"),
                                  "--record", self.file)
            after = self.command("info", "--json", "--replay", self.file, "--strict",
                                 "--speed", "0")
            self.assertEqual((after.returncode, after.stderr), (0, ""))
            old, new = json.loads(before.stdout), json.loads(after.stdout)
            changed = {key for key, value in old.items() if new[key] != value}
            self.assertLessEqual(changed, {"owner", "serialNumber", "address", "name", "device"})
            self.assertIn("owner", changed)
            self.assertEqual(len(new["owner"]), len(old["owner"]))

    def test_differences(self):
        """What was not recorded is reported; it is an error only if that is wanted."""
        self.command(*OWNER, "--record", self.file, "--unredacted")
        done = self.command("time", "--replay", self.file, "--no-retry", "--speed", "0")
        self.assertEqual(done.returncode, 5)
        self.assertIn("varda: replay: expected no request with this command, "
                      "got dcdc01007bbc000007; it is not answered\n", done.stderr)
        done = self.command("owner", "--replay", self.file, "--strict", "--speed", "0")
        self.assertEqual((done.stdout, done.returncode), ("Ada Lindqvist\n", 0))
        done = self.command("owner", "set", "Bob", "--replay", self.file, "--no-retry",
                            "--speed", "0")
        self.assertNotEqual(done.returncode, 0)
        self.command("log", "--simulate", "--record", self.file, "--unredacted")
        done = self.command("log", "--binary", "--replay", self.file, "--no-retry")
        self.assertEqual(done.returncode, 5)

    def test_strict(self):
        """Another number of a dive is another request; the nearest answer is given."""
        self.command("dive", "3", "--simulate", "--record", self.file, "--unredacted")
        loose = self.command("dive", "4", "--replay", self.file, "--speed", "0")
        self.assertIn("varda: replay: line ", loose.stderr)
        self.assertIn(": expected dcdc0300", loose.stderr)
        self.assertIn(", got dcdc0300", loose.stderr)
        strict = self.command("dive", "4", "--replay", self.file, "--speed", "0", "--strict")
        self.assertNotEqual(strict.returncode, 0)

    def test_set_time(self):
        """The time that is set is another one each time."""
        self.command("time", "set", "--simulate", "--record", self.file, "--unredacted")
        done = self.command("time", "set", "--replay", self.file, "--speed", "0", "--strict")
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_no_recording_of_a_replay(self):
        self.command(*OWNER, "--record", self.file)
        copy = os.path.join(self.folder, "copy.jsonl")
        done = self.command("owner", "--replay", self.file, "--record", copy)
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, "varda: a replay cannot be recorded, "
                                      "because it is no recording of a computer\n")
        self.assertFalse(os.path.exists(copy))
        # Nor by a program that does not know that it talks to one
        simulator = VARDA.with_name("varda-simulator")
        subprocess.run([simulator, "--replay", self.file, "--speed", "0", "--", VARDA, "owner",
                        "--record", copy], check=True, capture_output=True,
                       env=os.environ | {"XDG_CONFIG_HOME": "/nonexistent"})
        done = self.command("owner", "--replay", copy)
        self.assertEqual(done.returncode, 2)
        self.assertIn("this is the trace of a replay", done.stderr)

    def test_wrong_file(self):
        for text, reason in (
                ("", "line 1: this is not a trace"),
                ('{"format":"varda-trace","version":99}\n',
                 "line 1: version 99 of the format is not known"),
                ('{"format":"varda-trace","version":1}\n{"at":0,"event":"write","bytes":"x"}\n',
                 'line 2: "bytes" is not hexadecimal')):
            with open(self.file, "w", encoding="utf-8") as file:
                file.write(text)
            done = self.command("owner", "--replay", self.file)
            self.assertEqual((done.returncode, done.stdout), (2, ""))
            self.assertIn(reason, done.stderr)

    def test_old_versions(self):
        """A trace of each version of the format stays readable."""
        traces = sorted((Path(__file__).resolve().parent / "traces").glob("version-*.jsonl"))
        self.assertEqual([each.name for each in traces], ["version-1.jsonl"])
        for trace in traces:
            done = self.command("owner", "--replay", str(trace), "--strict", "--speed", "0")
            self.assertEqual((done.stdout, done.stderr, done.returncode),
                             ("Ada Lindqvist\n", "", 0))


if __name__ == "__main__":
    unittest.main()
