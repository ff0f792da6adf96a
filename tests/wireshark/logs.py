#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""logs.py VARDA [TEST...]: traces out of Bluetooth logs, and the reverse."""

import json
import os
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

VARDA = Path(sys.argv.pop(1)).resolve()
EPOCH = 0x00E03AB44A676000

UP = "043e1301004000000001000001aa00180000002a0000"
DOWN = "040504004000" + "13"
BY_US = "040504004000" + "16"
# Two services, of which the second carries the data; one characteristic and its descriptor.
DISCOVERY = [
    ("<", "0240000b000700040010" + "0100ffff0028"),
    (">", "02402012000e00040011" + "06" + "010007000018" + "080009000a18"),
    ("<", "0240000b000700040010" + "0a00ffff0028"),
    (">", "0240201a001600040011" + "14" + "0a00ffff" + "55e405d2af9fa98fe54a7dfe43535349"),
    ("<", "0240000b000700040008" + "0a00ffff0328"),
    (">", "0240201b001700040009" + "15" + "0b001c0c00" + "16962447c62361bad94b4d1e43535349"),
    ("<", "02400009000500040004" + "0d000d00"),
    (">", "0240200a000600040005" + "01" + "0d000229"),
]
SUBSCRIPTION = [("<", "02400009000500040012" + "0d000100"), (">", "02402005000100040013")]
IDENTIFICATION = "dcdc0100bddc000001"
ANSWER = "dcdc0600339a000001620204010b"
ASKED = [("<", "02400010000c000400520c00" + IDENTIFICATION),
         (">", "024020150011000400" + "1b0c00" + ANSWER)]


def record(direction, packet, at, missing=0):
    data = bytes.fromhex(packet)
    is_data = data[0] == 2
    flags = (direction == ">") | (not is_data) << 1
    return struct.pack(">IIIIQ", len(data) + missing, len(data), flags, 0, EPOCH + at) + data


def log(packets, link=1002):
    """Packets a millisecond apart."""
    head = b"btsnoop\0" + struct.pack(">II", 1, link)
    return head + b"".join(record(*packet, 1000 * i) for i, packet in enumerate(packets))


def environment():
    kept = {n: v for n, v in os.environ.items() if not n.startswith(("QT_", "LC_"))}
    return kept | {"LANG": "C.UTF-8", "XDG_CONFIG_HOME": "/nonexistent"}


class Logs(unittest.TestCase):
    def setUp(self):
        # pylint: disable-next=consider-using-with
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def run_varda(self, *arguments):
        return subprocess.run([VARDA, *arguments], text=True, capture_output=True, check=False,
                              stdin=subprocess.DEVNULL, env=environment())

    def convert(self, content, *options, name="phone.log", to="trace.jsonl"):
        (self.folder / name).write_bytes(content)
        (self.folder / to).unlink(missing_ok=True)
        return self.run_varda("trace", "convert", self.folder / name, self.folder / to, *options)

    def events(self, content, *options):
        result = self.convert(content, *options)
        self.assertEqual(result.returncode, 0, result.stderr)
        lines = (self.folder / "trace.jsonl").read_text(encoding="utf-8").splitlines()
        return [json.loads(line) for line in lines[1:]]

    def fails(self, content, *texts, options=()):
        result = self.convert(content, *options)
        self.assertEqual(result.returncode, 2, result.stderr)
        for text in texts:
            self.assertIn(text, result.stderr)
        self.assertFalse((self.folder / "trace.jsonl").exists())

    def test_phone(self):
        """A connection as an Android phone logs it, from the beginning to the end."""
        packets = [(">", UP), ("<", "0240000700030004000205" + "02"),
                   (">", "02402007000300040003f700"),
                   *DISCOVERY, *SUBSCRIPTION, *ASKED, (">", DOWN)]
        events = self.events(log(packets))
        self.assertEqual([each["event"] for each in events],
                         ["connect", "up", "services", "characteristics", "subscribe",
                          "subscribed", "write", "notification", "down"])
        connect, _, services, characteristics, subscribe, subscribed, write, notification, _ = events
        self.assertEqual(connect["address"], "00:AA:01:00:00:01")
        self.assertEqual(services["uuids"], ["00001800-0000-1000-8000-00805f9b34fb",
                                             "0000180a-0000-1000-8000-00805f9b34fb",
                                             "49535343-fe7d-4ae5-8fa9-9fafd205e455"])
        self.assertEqual(characteristics["service"], "49535343-fe7d-4ae5-8fa9-9fafd205e455")
        self.assertEqual(characteristics["characteristics"],
                         [{"uuid": "49535343-1e4d-4bd9-ba61-23c647249616", "cccd": True,
                           "flags": ["write-without-response", "write", "notify"]}])
        self.assertEqual(subscribe["value"], "0100")
        self.assertEqual(subscribed["mtu"], 247)
        self.assertEqual((write["bytes"], write["at"]), (IDENTIFICATION, 13))
        self.assertEqual((notification["bytes"], notification["at"]), (ANSWER, 14))

    def test_cached(self):
        """The program knows the handles from before, and so does the log at times."""
        events = self.events(log([(">", UP), *SUBSCRIPTION, *ASKED, (">", BY_US)]))
        self.assertEqual([each["event"] for each in events],
                         ["connect", "up", "services", "characteristics", "subscribe",
                          "subscribed", "write", "notification", "disconnect"])
        self.assertEqual(events[3]["service"], "49535343-fe7d-4ae5-8fa9-9fafd205e455")
        # The second value of the other kind of link gets a byte.
        credits_ = ("<", "02400008000400040052" + "0f00" + "20")
        events = self.events(log([(">", UP), *SUBSCRIPTION, credits_, *ASKED]))
        self.assertEqual(events[3]["service"], "2456e1b9-26e2-8f83-e744-f34f01e9d701")
        self.assertEqual(events[6]["characteristic"], "2456e1b9-26e2-8f83-e744-f34f01e9d704")
        # Found out in the first connection, used without a request in the second
        events = self.events(log([(">", UP), *DISCOVERY, (">", DOWN), (">", UP), *ASKED]))
        self.assertEqual([each["event"] for each in events],
                         ["connect", "up", "down", "connect", "up", "services",
                          "characteristics", "write", "notification"])
        self.assertEqual(events[6]["characteristics"][0]["flags"],
                         ["write-without-response", "write", "notify"])
        # The log begins in the middle of a connection.
        self.assertEqual([each["event"] for each in self.events(log(ASKED))],
                         ["connect", "up", "services", "characteristics", "write",
                          "notification"])

    def test_fragments(self):
        """A message in several packets, others between them, and one that is not all there."""
        whole = "11000400" + "1b0c00" + ANSWER
        parts = [(">", "0240200500" + whole[:10]), ASKED[0], (">", "0240100900" + whole[10:28]),
                 (">", "0240100700" + whole[28:])]
        events = self.events(log([ASKED[0], *parts]))
        self.assertEqual([each["bytes"] for each in events if each["event"] == "notification"],
                         [ANSWER])
        # Without its beginning it is left out.
        events = self.events(log([ASKED[0], *parts[2:]]))
        self.assertEqual([each["event"] for each in events][-1], "write")
        # So is what the phone has cut off.
        content = log([ASKED[0]]) + record(">", ASKED[1][1][:-8], 5000, missing=4)
        result = self.convert(content)
        self.assertEqual(result.returncode, 0)
        self.assertIn("has not kept all bytes of 1 packets", result.stderr)
        self.assertNotIn("notification", (self.folder / "trace.jsonl").read_text(encoding="utf-8"))

    def test_several(self):
        """Other devices are left out; of several computers one must be chosen."""
        other = [(">", UP.replace("4000000001", "4100000007")),
                 (">", "024120080004000400" + "1b0c0001")]
        events = self.events(log([(">", UP), *other, *ASKED]))
        self.assertEqual([each["event"] for each in events if each["event"] == "notification"],
                         ["notification"])
        second = [(">", UP.replace("4000000001", "4200000007")),
                  *[(way, "0242" + packet[4:]) for way, packet in ASKED]]
        both = log([(">", UP), *ASKED, *second])
        self.fails(both, "several computers", "00:AA:01:00:00:01", "00:AA:01:00:00:07")
        events = self.events(both, "--device", "00:aa:01:00:00:07")
        self.assertEqual([each.get("address") for each in events][0], "00:AA:01:00:00:07")
        self.fails(log([(">", UP)]), "no connection with a diving computer")

    def test_other_kinds(self):
        """The packets' types in the flags, and btmon's."""
        packets = [(">", UP), *ASKED]
        kinds = {(">", "04"): 3, ("<", "02"): 4, (">", "02"): 5}
        head = b"btsnoop\0" + struct.pack(">II", 1, 2001)
        # btmon notes much else.
        monitored = head + struct.pack(">IIIIQ", 3, 3, 12, 0, EPOCH) + b"bt\0"
        plain = b"btsnoop\0" + struct.pack(">II", 1, 1001)
        for i, (way, packet) in enumerate(packets):
            data = bytes.fromhex(packet)[1:]
            flags = (way == ">") | (packet[:2] == "04") << 1
            monitored += struct.pack(">IIIIQ", len(data), len(data), kinds[way, packet[:2]], 0,
                                     EPOCH + i) + data
            plain += struct.pack(">IIIIQ", len(data), len(data), flags, 0, EPOCH + i) + data
        for content in monitored, plain:
            events = self.events(content)
            self.assertEqual([each["bytes"] for each in events if "bytes" in each],
                             [IDENTIFICATION, ANSWER])

    def test_damaged(self):
        """Each error names the place; what a phone could not finish writing is left out."""
        good = log(ASKED)
        self.fails(good[:12], "at byte 8", "ends in its header")
        self.fails(good[:11] + b"\2" + good[12:], "at byte 8", "version 2")
        self.fails(good[:15] + b"\0" + good[16:], "at byte 12", "link type 768")
        self.fails(good[:16] + b"\xff" * 8 + good[24:], "at byte 16", "4294967295 bytes")
        self.fails(good[:16] + b"\0\0\0\1" + good[20:], "at byte 16")
        result = self.convert(good[:-3])
        self.assertEqual(result.returncode, 0)
        self.assertIn(f"at byte {16 + 24 + 21}", result.stderr)
        # Neither of the two formats
        self.fails(b"\x0a\x0d\x0d\x0a", "this is not a trace")
        # Packets that say they are longer or shorter than they are
        for packet in ("02", "0240", "02402000", "0240200400" "00000400", "0240200400" "ffff0400",
                       "02402005000100040011", "02402006000200040011" "00", "04", "043e", "0405",
                       "043e0d" "0d01", "043e0c" "0201" "0000" "010203040506" "ff"):
            self.events(log([*ASKED, (">", packet), ("<", packet)]))

    def test_words(self):
        """What people read of a log with a pause and faults."""
        packets = [(">", UP), *DISCOVERY, *SUBSCRIPTION, *ASKED]
        content = log(packets)
        content += record("<", ASKED[0][1], 3_000_000)
        content += record(">", ASKED[1][1].replace("339a", "339b"), 3_050_000)
        content += record("<", ASKED[0][1], 3_060_000)
        content += record(">", ASKED[1][1][:-8].replace("15001100", "11000d00"), 3_070_000)
        content += record(">", DOWN, 3_080_000)
        (self.folder / "phone.log").write_bytes(content)
        result = self.run_varda("trace", "show", self.folder / "phone.log")
        self.assertEqual((result.returncode, result.stderr), (0, ""))
        lines = [line.split(None, 1) for line in result.stdout.splitlines()]
        self.assertEqual([at for at, _ in lines][-6:],
                         ["0.012", "3.000", "3.050", "3.060", "3.070", "3.080"])
        said = [" ".join(what.split()) for _, what in lines]
        self.assertEqual(said, [
            "connect Varda, 00:AA:01:00:00:01",
            "up",
            "services 3 services",
            "characteristics 49535343-fe7d-4ae5-8fa9-9fafd205e455",
            "subscribe 49535343-1e4d-4bd9-ba61-23c647249616",
            "subscribed MTU 23",
            "> Identification",
            "< Identification Varda, firmware 1.4.2.b",
            "... 3.0 s",
            "> Identification",
            "< Identification !! the checksum is wrong",
            "> Identification",
            "< !! the frame has no end, 10 bytes have come",
            "down !! the link was lost",
        ])
        result = self.run_varda("trace", "show", "--json", self.folder / "phone.log")
        answer = [line for line in json.loads(result.stdout)["lines"] if line["what"] == "answer"][0]
        self.assertEqual(answer, {"at": 12, "what": "answer", "command": "Identification",
                                  "words": "Varda, firmware 1.4.2.b", "fault": "", "bytes": 14,
                                  "parts": 1})

    def test_stats(self):
        lines = [
            {"format": "varda-trace", "version": 1, "redacted": True},
            {"at": 0, "event": "job", "job": 1, "name": "identification"},
            {"at": 10, "event": "connect", "address": "00:AA:01:01:00:01", "name": "Varda"},
            {"at": 20, "event": "up"},
            {"at": 2000, "event": "write", "bytes": IDENTIFICATION},
            {"at": 2080, "event": "notification", "bytes": ANSWER},
            {"at": 2100, "event": "jobEnd", "job": 1, "error": "NoError", "reason": "None"},
            {"at": 2200, "event": "write", "bytes": IDENTIFICATION},
            {"at": 7200, "event": "silence"},
        ]
        trace = self.folder / "trace.jsonl"
        trace.write_text("".join(json.dumps(line) + "\n" for line in lines), encoding="utf-8")
        result = self.run_varda("trace", "stats", "--json", trace)
        self.assertEqual(json.loads(result.stdout), {
            "jobs": [{"name": "identification", "seconds": 2.1, "error": ""}],
            "commands": [{"command": "Identification", "requests": 2, "frames": 1, "faults": 0,
                          "bytes": 5, "firstAnswer": 0.08, "seconds": 0.08}],
            "seconds": 7.2, "received": 14, "notifications": 1, "longestSilence": 5,
            "faults": 1})
        result = self.run_varda("trace", "stats", trace)
        self.assertEqual(result.returncode, 0)
        self.assertIn("5.000 s, from 2.200 s on", result.stdout)
        self.assertRegex(result.stdout, r"Identification +2 +1 +0 +0.080 +0.080 +63 B")

    def test_into(self):
        """The format to write; a file that cannot be written leaves nothing behind."""
        self.assertEqual(self.convert(log(ASKED), to="new.btsnoop").returncode, 0)
        self.assertTrue((self.folder / "new.btsnoop").read_bytes().startswith(b"btsnoop\0"))
        self.assertEqual(self.convert(log(ASKED), "--format", "trace", to="new").returncode, 0)
        self.assertTrue((self.folder / "new").read_bytes().startswith(b'{"format"'))
        self.assertEqual(self.convert(log(ASKED), to="newer").returncode, 2)
        self.assertEqual(self.convert(log(ASKED), to="none/new.log").returncode, 1)
        long_ = {"at": 0, "event": "notification", "bytes": "00" * 65534}
        head = {"format": "varda-trace", "version": 1}
        content = f"{json.dumps(head)}\n{json.dumps(long_)}\n".encode()
        result = self.convert(content, to="long.log")
        self.assertEqual(result.returncode, 2)
        self.assertIn("event 1 of the trace has 65534 bytes", result.stderr)
        self.assertFalse((self.folder / "long.log").exists())
        # What fits comes back as it was.
        content = content.replace(b"00" * 65534, b"00" * 65532)
        self.assertEqual(self.convert(content, to="fits.log").returncode, 0)
        events = self.events((self.folder / "fits.log").read_bytes())
        self.assertEqual(events[-2]["bytes"], "00" * 65532)


unittest.main()
