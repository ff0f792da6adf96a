#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""behaviour.py VARDA [TEST...]: what a golden file cannot show."""

import json
import os
import pty
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

VARDA = Path(sys.argv.pop(1))
SIMULATOR = VARDA.with_name("varda-simulator")


def environment(**more):
    kept = {n: v for n, v in os.environ.items() if not n.startswith(("QT_", "LC_"))}
    return kept | {"LANG": "C.UTF-8"} | more


def run(*arguments, **more):
    return subprocess.run(
        [VARDA, *arguments], env=environment(), stdin=subprocess.DEVNULL, text=True,
        **({"capture_output": True} | more),
    )


class Behaviour(unittest.TestCase):
    def test_status_line(self):
        """On a terminal it says what it does, and leaves nothing of that behind."""
        ours, theirs = pty.openpty()
        with subprocess.Popen(
            [VARDA, "info", "--simulate"], env=environment(TERM="xterm"), stdin=theirs,
            stdout=subprocess.PIPE, stderr=theirs, text=True,
        ) as command:
            os.close(theirs)
            status = b""
            try:
                while part := os.read(ours, 4096):
                    status += part
            except OSError:  # the other end is closed
                pass
            result = command.stdout.read()
        os.close(ours)
        self.assertEqual(command.returncode, 0)
        self.assertNotIn("\x1b", result)
        self.assertIn("Serial number     00420017-3138510D-37373934\n", result)
        shown = status.decode().split("\r\x1b[K")
        for text in ("Scan Devices", "Varda found", "Reading the owner", "Disconnecting"):
            self.assertIn(text, shown)
        self.assertEqual(shown[0], "")
        self.assertEqual(shown[-1], "")
        self.assertNotIn("\n", status.decode())

    def test_interrupt(self):
        """Ctrl-C lets the computer go before the process ends."""
        with tempfile.TemporaryDirectory() as folder:
            record = Path(folder, "record")
            scenario = Path(folder, "scenario.json")
            scenario.write_text(json.dumps({"devices": [
                {"faults": [{"step": "answer", "command": "Owner", "kind": "silent"}]}]}))
            command = subprocess.Popen(
                [SIMULATOR, "--scenario", scenario, "--record", record, "--",
                 VARDA, "info", "--verbose"],
                env=environment(), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                stderr=subprocess.PIPE, text=True,
            )
            said = ""
            for line in command.stderr:
                said += line
                if "-> dc dc 01 00 6b be 00 00 16" in line:  # asks for the owner
                    command.send_signal(signal.SIGINT)
            self.assertEqual(command.stdout.read(), "")
            self.assertEqual(command.wait(), 128 + signal.SIGINT, said)
            command.stdout.close()
            command.stderr.close()
            self.assertIn("varda: interrupted\n", said)
            events = [json.loads(line)["event"] for line in record.read_text().splitlines()]
            self.assertIn("Disconnect", events)

    def test_verbose(self):
        """The frames are shown where they do not mix with the result."""
        done = run("info", "--simulate", "--verbose")
        self.assertEqual(done.returncode, 0)
        self.assertRegex(
            done.stderr, r"(?m)^ +\d+\.\d{3} varda\.wire: -> dc dc 01 00 bd dc 00 00 01$")
        self.assertRegex(done.stderr, r"(?m)^ +\d+\.\d{3} varda\.wire: <- dc dc ")
        self.assertNotIn("varda.", done.stdout)
        self.assertEqual(run("info", "--simulate").stderr, "")

    def test_full_disk(self):
        """A result that is not written is not a success."""
        with open("/dev/full", "w", encoding="utf-8") as full:
            done = run("info", "--simulate", capture_output=False, stdout=full,
                       stderr=subprocess.PIPE)
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr, "varda: the result could not be written\n")

    def test_reader_gone(self):
        """Nor is one that nobody waits for; but the link goes down in order."""
        ours, theirs = os.pipe()
        os.close(ours)
        done = run("info", "--simulate", capture_output=False, stdout=theirs,
                   stderr=subprocess.PIPE)
        os.close(theirs)
        self.assertEqual(done.returncode, 1)

    def test_refused_connection(self):
        """The reason is Qt's and has not the same words in every version."""
        done = run("info", "--simulate", "connect-refused")
        self.assertEqual(done.returncode, 4)
        self.assertTrue(done.stderr.startswith(
            "varda: could not connect to Varda (00:AA:01:01:00:01): "), done.stderr)
        self.assertEqual(done.stdout, "")

    def test_two_in_a_row(self):
        """The next command finds no link that is about to go."""
        scenario = {"disconnectDelay": 2000, "devices": [{}]}
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            json.dump(scenario, file)
            file.flush()
            done = subprocess.run(
                [SIMULATOR, "--scenario", file.name, "--", "sh", "-c",
                 f"{VARDA} info --json && {VARDA} info --json"],
                env=environment(), stdin=subprocess.DEVNULL, capture_output=True, text=True,
            )
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout.count('"serialNumber"'), 2)


unittest.main()
