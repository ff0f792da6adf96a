#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""serveclient.py VARDA [TEST...]: the Python client and its example, against simulated computers."""

import asyncio
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

VARDA = Path(sys.argv.pop(1)).resolve()
ROOT = Path(__file__).resolve().parents[2]
CLIENT = ROOT / "tools/python/varda.py"
EXAMPLE = ROOT / "examples/python/download_logbook.py"
os.environ |= {"XDG_CONFIG_HOME": "/nonexistent", "XDG_DATA_HOME": "/dev/null", "LANG": "C.UTF-8",
               "PATH": f"{VARDA.parent}{os.pathsep}{os.environ['PATH']}"}
SLOW = ROOT / "tests/cli/scenarios/slow-dives.json"
sys.dont_write_bytecode = True
sys.path.insert(0, str(CLIENT.parent))

from varda import Varda, VardaError  # noqa: E402


class Client(unittest.IsolatedAsyncioTestCase):
    async def test_requests(self):
        """Results, events and errors reach whoever waits for them."""
        async with Varda("--simulate") as varda:
            self.assertIn("dives", varda.hello["methods"])
            owner = varda.request("owner", "00:AA:01:01:00:01")
            dives = varda.request("dive", "00:AA:01:01:00:01", numbers=[2, 3])
            missing = varda.request("dive", "00:AA:01:01:00:01", numbers=[99])
            kinds = [event["type"] async for event in dives]
            self.assertEqual(kinds.count("dive"), 2)
            self.assertIn("progress", kinds)
            self.assertEqual((await owner)["owner"], "Ada Lindqvist")
            for _ in range(2):  # more than once
                self.assertEqual([each["diveNumber"] for each in (await dives)["dives"]], [2, 3])
                with self.assertRaises(VardaError) as failure:
                    await missing
            self.assertEqual(failure.exception.code, "NoSuchDive")
            self.assertEqual(failure.exception.kind, "Refused")
            self.assertEqual(str(failure.exception), "there is no dive 99 in the logbook")
            self.assertFalse(failure.exception.outcome_unknown)
            self.assertEqual([event async for event in dives], [])

    async def test_cancel(self):
        """A request can be cancelled, or the task that awaits it."""
        async with Varda(f"--simulate={SLOW}") as varda:
            dives = varda.request("dives")
            async for event in dives:
                if event.get("bytes"):
                    dives.cancel()
                    break
            with self.assertRaises(VardaError) as failure:
                await dives
            self.assertEqual(failure.exception.kind, "Cancelled")
            again = varda.request("dives")
            with self.assertRaises(asyncio.TimeoutError):
                await asyncio.wait_for(again, 0.5)
            with self.assertRaises(VardaError) as failure:
                await again
            self.assertEqual(failure.exception.code, "ByCaller")

    async def test_left(self):
        """What is under way when the block is left ends, and so does what is asked for later."""
        async with Varda(f"--simulate={SLOW}") as varda:
            dives = varda.request("dives")
        with self.assertRaises(VardaError) as failure:
            await dives
        self.assertEqual(failure.exception.kind, "Cancelled")
        with self.assertRaises(VardaError) as failure:
            await varda.request("dives")
        self.assertEqual(failure.exception.code, "ServeEnded")

    async def test_killed(self):
        """If varda serve ends, all requests do."""
        async with Varda(f"--simulate={SLOW}") as varda:
            dives = varda.request("dives")
            varda._process.kill()
            with self.assertRaises(VardaError) as failure:
                await dives
            self.assertEqual(failure.exception.code, "ServeEnded")

    async def test_no_serve(self):
        """What is not varda serve is not taken for it."""
        for program in (["true"], ["echo", '{"type": "hello", "protocol": 2}']):
            with self.assertRaises(VardaError):
                async with Varda(program=program):
                    pass

    def test_document(self):
        """The example in the document runs."""
        text = (ROOT / "docs/serve.md").read_text(encoding="utf-8")
        code = re.search(r"```python\n(.*?)```", text, re.DOTALL)[1]
        done = subprocess.run([sys.executable, "-B", "-"], input=code, text=True, check=True,
                              capture_output=True, env=os.environ | {"PYTHONPATH": CLIENT.parent})
        self.assertRegex(done.stdout, "'owner': 'Ada Lindqvist'}\n11\n12\n$")

    def test_example(self):
        """The example downloads a logbook, and the second time nothing."""
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "dives.jsonl")
            scenario = Path(folder, "scenario.json")
            scenario.write_text('{"devices": [{"dives": {"count": 3, "samples": 30}}]}')
            command = [sys.executable, "-B", EXAMPLE, file, f"--simulate={scenario}"]
            numbers = [1, 2, 3]
            for shown in (numbers, []):
                done = subprocess.run(command, capture_output=True, text=True, check=True)
                lines = ["Varda (00:AA:01:01:00:01)", *(f"dive {number}" for number in shown)]
                self.assertEqual((done.stdout.splitlines(), done.stderr), (lines, ""))
                saved = [json.loads(line) for line in file.read_text().splitlines()]
                self.assertEqual([dive["diveNumber"] for dive in saved], numbers)

    def test_size(self):
        """It stays small enough to be copied and read."""
        self.assertLessEqual(len(CLIENT.read_text(encoding="utf-8").splitlines()), 200)

    def test_types(self):
        """All types fit."""
        if not shutil.which("mypy"):
            self.assertNotIn("CI", os.environ)
            self.skipTest("mypy is not installed")
        with tempfile.TemporaryDirectory() as cache:
            done = subprocess.run(["mypy", "--strict", "--cache-dir", cache, CLIENT, EXAMPLE],
                                  capture_output=True, text=True, check=False,
                                  env=os.environ | {"MYPYPATH": str(CLIENT.parent)})
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)


if __name__ == "__main__":
    unittest.main()
