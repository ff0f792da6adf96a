#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""dissect.py VARDA DISSECTOR: what Wireshark makes of traces of all scenarios.

Each trace becomes a Bluetooth log and a trace again, with the same bytes. One run of tshark reads
all logs; it must find the frames that the command finds.
"""

import json
import os
import pwd
import shutil
import subprocess
import sys
import tempfile
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

VARDA, DISSECTOR = (Path(argument).resolve() for argument in sys.argv[1:3])
SCENARIOS = Path(__file__).resolve().parents[2] / "simulator/scenarios"
# They end by themselves only after minutes, or not at all.
TOO_LONG = {"endless", "large-logbook", "real-timing"}
MODELS = ("varda", "tidemar", "vskm", "sps", "oldest-layouts")
COMPARED = (("config",), ("dives",), ("log", "--binary"), ("layouts",))
COMMANDS = (
    ("log",), ("owner",), ("layouts", "get", "1"), ("layouts", "active"), ("sensors",),
    ("battery",), ("tissues",), ("gases",), ("time", "set"), ("owner", "set", "Jules"),
    ("export", "--live", "1"),
)
# Beside those that name the frame
FIELDS = ("firmwareVersion", "serialNumber", "owner", "pamb", "diveNumber", "surfacePressure",
          "syslog", "layoutName", "logType")
CODES = {
    "Identification": 1, "Syslog": 2, "Serialnumber": 3, "Computer": 5, "Time": 7, "Set_time": 8,
    "Sensors": 9, "Set_sensors": 10, "Diver": 17, "Logbook": 19, "Fullsamples": 20, "Owner": 22,
    "Set_owner": 23, "Computer_new": 24, "SimulParams": 28, "SyslogBin": 29,
    "BootloaderVersion": 33, "GetGases": 34, "LayoutList": 36, "LayoutGet": 37,
    "LayoutActiveGet": 41, "BatteryInformation": 238, "Reset": 254, "Close": 255,
}


def environment():
    kept = {n: v for n, v in os.environ.items() if not n.startswith(("QT_", "LC_"))}
    return kept | {"LANG": "C.UTF-8", "XDG_CONFIG_HOME": "/nonexistent",
                   "XDG_DATA_HOME": "/nonexistent"}


def run(*arguments):
    return subprocess.run(arguments, text=True, capture_output=True, check=False,
                          stdin=subprocess.DEVNULL, env=environment())


def nobody():
    """Tshark does not like to be root."""
    if os.getuid() != 0:
        return {}
    entry = pwd.getpwnam("nobody")
    return {"user": entry.pw_uid, "group": entry.pw_gid, "extra_groups": []}


def events_of(trace):
    lines = trace.read_text(encoding="utf-8").splitlines()
    return [json.loads(line) for line in lines[1:]]


def traffic(trace):
    return [(each["event"], each["bytes"], each.get("characteristic"))
            for each in events_of(trace) if "bytes" in each]


class Recorded:
    """A trace, and what becomes of it."""

    def __init__(self, folder, number, scenario, command):
        self.name = f"{scenario} {' '.join(command)}"
        self.trace = folder / f"{number}.jsonl"
        self.log = folder / f"{number}.btsnoop"
        self.back = folder / f"{number}-back.jsonl"
        self.printed = run(VARDA, *command, "--simulate", scenario, "--no-retry", "--json",
                           "--timeout", "8", "--record", self.trace, "--unredacted").stdout
        self.useful = self.trace.exists() and bool(traffic(self.trace))
        if self.useful:
            self.converted = [run(VARDA, "trace", "convert", self.trace, self.log),
                              run(VARDA, "trace", "convert", self.log, self.back)]
            self.shown = json.loads(run(VARDA, "trace", "show", "--json", self.trace).stdout)

    def frames(self):
        return [(line["what"] == "request", CODES[line["command"]],
                 line["fault"] != "the checksum is wrong")
                for line in self.shown["lines"] if line["command"]]


def record_all(folder):
    wanted = [(scenario.stem, ("info",)) for scenario in sorted(SCENARIOS.glob("*.json"))
              if scenario.stem not in TOO_LONG]
    wanted += [(model, command) for model in MODELS for command in COMPARED]
    wanted += [("varda", command) for command in COMMANDS]
    with ThreadPoolExecutor(os.cpu_count() * 2) as pool:
        recorded = pool.map(lambda each: Recorded(folder, each[0], *each[1]), enumerate(wanted))
        return [each for each in recorded if each.useful]


def tshark(folder, recorded):
    """The packets of each trace, in its order: lists of field values."""
    merged = folder / "all.pcapng"
    subprocess.run(["mergecap", "-a", "-I", "none", "-w", merged, *(r.log for r in recorded)],
                   check=True)
    fields = ["frame.interface_id", "varda.request", "varda.command", "varda.crc.good",
              "varda.unknown", "varda.payload", "_ws.expert.message", "_ws.malformed",
              *(f"varda.{field}" for field in FIELDS)]
    named = [argument for field in fields for argument in ("-e", field)]
    shutil.copy(DISSECTOR, folder / "varda.lua")
    folder.chmod(0o755)
    merged.chmod(0o644)
    home = folder / "home"
    home.mkdir()
    home.chmod(0o777)
    result = subprocess.run(
        ["tshark", "-2", "-r", merged, "-X", f"lua_script:{folder / 'varda.lua'}", "-T", "fields",
         "-E", "separator=/t", "-E", "aggregator=\x1f", "-E", "occurrence=a", *named],
        capture_output=True, text=True, check=False, cwd=folder,
        env=environment() | {"HOME": str(home)}, **nobody())
    packets = [[] for _ in recorded]
    for line in result.stdout.splitlines():
        values = dict(zip(fields, line.split("\t")))
        packets[int(values["frame.interface_id"])].append(
            {name: value.split("\x1f") if value else [] for name, value in values.items()})
    return packets, result.stderr


class Dissect(unittest.TestCase):
    """One recording of everything serves all tests."""

    @classmethod
    def setUpClass(cls):
        # pylint: disable-next=consider-using-with
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.recorded = record_all(Path(folder.name))
        cls.packets, cls.stderr = tshark(Path(folder.name), cls.recorded)

    def values(self, scenario, command, field):
        """All of a field in the trace of one command."""
        index = [each.name for each in self.recorded].index(f"{scenario} {command}")
        return [value for packet in self.packets[index] for value in packet[f"varda.{field}"]]

    def test_there_and_back(self):
        self.assertGreater(len(self.recorded), 50)
        for each in self.recorded:
            with self.subTest(each.name):
                for result in each.converted:
                    self.assertEqual(result.returncode, 0, result.stderr)
                self.assertEqual(traffic(each.back), traffic(each.trace))
                known = [event for event in events_of(each.trace)
                         if event["event"] == "characteristics"]
                self.assertEqual([{**event, "at": 0} for event in events_of(each.back)
                                  if event["event"] == "characteristics"],
                                 [{**event, "at": 0} for event in known])

    def test_same_frames(self):
        self.assertNotIn("ua", self.stderr.replace("dangerous", ""))
        total = 0
        for each, packets in zip(self.recorded, self.packets):
            found = []
            for packet in packets:
                self.assertEqual(packet["_ws.malformed"], [], each.name)
                # A packet has frames of one direction only.
                found += zip([value in ("1", "True") for value in packet["varda.request"]],
                             [int(value) for value in packet["varda.command"]],
                             [value in ("1", "True") for value in packet["varda.crc.good"]])
            with self.subTest(each.name):
                self.assertEqual(found, each.frames())
            total += len(found)
        self.assertGreater(total, 1000)

    def test_same_faults(self):
        """Healthy computers give no complaint, each fault gives its own."""
        for each, packets in zip(self.recorded, self.packets):
            messages = {message for packet in packets for message in packet["_ws.expert.message"]}
            messages = {message for message in messages if not message.startswith("Connection")}
            scenario = each.name.split()[0]
            with self.subTest(each.name):
                if scenario in MODELS:
                    self.assertEqual(messages, set())
                elif scenario == "wrong-crc":
                    self.assertIn("The checksum is wrong", messages)
                elif scenario == "garbage":
                    self.assertIn("These bytes begin no frame", messages)

    def test_fields(self):
        self.assertEqual(self.values("varda", "info", "firmwareVersion")[0], "0x01040262")
        self.assertEqual(self.values("varda", "owner", "owner"), ["Ada Lindqvist"])
        self.assertEqual(self.values("varda", "owner set Jules", "owner"), ["Jules"])
        for model in MODELS:
            with self.subTest(model):
                self.compare(model)

    def compare(self, model):
        """With what the library decodes."""
        def of(command):
            return next(json.loads(each.printed) for each in self.recorded
                        if each.name == f"{model} {command}")

        def numbers(command, field):
            return [int(value) for value in self.values(model, command, field)]

        self.assertEqual(self.values(model, "info", "serialNumber"), [of("info")["serialNumber"]])
        # The logbook, then the requests for the samples
        dives = [dive["diveNumber"] for dive in of("dives")["dives"]]
        self.assertEqual(numbers("dives", "diveNumber"), dives[::-1] + dives)
        pressure = of("config")["config"]["surfacePressure"]
        self.assertEqual(set(numbers("config", "surfacePressure")), {pressure})
        self.assertEqual(numbers("log --binary", "logType"),
                         [record["type"] for record in of("log --binary")["syslogBin"]])
        self.assertEqual(self.values(model, "layouts", "layoutName"),
                         [layout["name"] for layout in of("layouts")["layouts"]])


if not (shutil.which("tshark") and shutil.which("mergecap")):
    print("there is no tshark")
    sys.exit(77)
unittest.main(argv=sys.argv[:1])
