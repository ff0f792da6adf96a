#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""serve.py VARDA [TEST...]: varda serve, as the programs that start it see it."""

import contextlib
import json
import os
import queue
import re
import signal
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

VARDA = Path(sys.argv.pop(1)).resolve()
SIMULATOR = VARDA.with_name("varda-simulator")
ROOT = Path(__file__).resolve().parents[2]
os.chdir(Path(__file__).resolve().parent)
SCHEMA = json.loads((ROOT / "docs/serve.schema.json").read_text(encoding="utf-8"))
FIRST, SECOND = "00:AA:01:01:00:01", "00:AA:01:01:00:42"
TWO = [{"dives": {"count": 2, "samples": 100}, "owner": "Ada", "pace": {"ms": 20}},
       {"dives": {"count": 3, "samples": 50}, "owner": "Grace", "pace": {"ms": 20},
        "name": "VSK-0042", "model": "vskm", "address": SECOND}]
# It takes some seconds.
SLOW = {"dives": {"count": 2, "samples": 400}, "pace": {"ms": 60}}

sys.path.append("/usr/lib/python3/dist-packages")  # for a Python that is not the system's
try:
    from jsonschema import Draft202012Validator
except ImportError:
    if "CI" in os.environ:
        raise
    Draft202012Validator = None  # the lines are not compared with the schema then


def complaint(value, *definition):
    """What the schema has to say against a value: a line, or what is at that place in $defs."""
    if Draft202012Validator is None:
        return None
    place = "#/$defs/" + "/".join(definition).replace(" ", "%20")
    schema = {"$ref": place, "$defs": SCHEMA["$defs"]} if definition else SCHEMA
    error = next(Draft202012Validator(schema).iter_errors(value), None)
    return error and f"{error.message[:500]} in {str(value)[:200]}"


def environment(**more):
    kept = {n: v for n, v in os.environ.items() if not n.startswith(("QT_", "LC_"))}
    return kept | {"LANG": "C.UTF-8", "XDG_CONFIG_HOME": "/nonexistent",
                   "XDG_DATA_HOME": "/dev/null"} | more


@contextlib.contextmanager
def simulator(*devices, **more):
    """A bus with these computers: an environment, and a function that returns the events so far."""
    with tempfile.TemporaryDirectory() as folder:
        record, scenario = Path(folder, "record"), Path(folder, "scenario.json")
        scenario.write_text(json.dumps({"devices": devices or [{}]} | more), encoding="utf-8")
        with subprocess.Popen(
            [SIMULATOR, "--scenario", scenario, "--record", record, "--exit-with-stdin"],
            env=environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
        ) as process:
            name, address = process.stdout.readline().strip().split("=", 1)
            yield environment(**{name: address}), lambda: [
                json.loads(line) for line in record.read_text(encoding="utf-8").splitlines()]


def links(events):
    """Addresses of the links that are up after these events."""
    up = set()
    for event in events:
        if event["event"] == "connected":
            up.add(event["address"])
        elif event["event"] == "disconnected":
            up.discard(event["address"])
    return up


def frames(events):
    """What arrived at the computers."""
    return [event["hex"] for event in events if event["event"] == "frame"]


def wait_for(condition):
    """CTest ends what takes too long."""
    while not condition():
        time.sleep(0.02)


class Session:
    """varda serve under way; at the end every line is as the schema wants it."""

    def __init__(self, test, *options, env=None, reads=True):
        self.test, self.lines, self.methods = test, [], {}
        self._has_ended = False
        self._arrived = queue.Queue()
        self.process = subprocess.Popen(
            [VARDA, *options, "serve"], env=env or environment(), stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self._reader = threading.Thread(target=self._read, daemon=True)
        if reads:
            self.begin_to_read()

    def begin_to_read(self):
        self._reader.start()

    def _read(self):
        for line in self.process.stdout:
            self._arrived.put(json.loads(line.decode()))
        self._arrived.put(None)

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.process.stdin.close()
        if failure[0] is None:
            self.rest()
            self.check()
        else:
            self.process.kill()
        self.process.wait()
        self.process.stdout.close()
        self.process.stderr.close()

    def next(self):
        line = None if self._has_ended else self._arrived.get()
        if line is None:
            self._has_ended = True
        else:
            self.lines.append(line)
        return line

    def rest(self):
        while self.next() is not None:
            pass

    def send(self, *raw):
        """Lines as they are."""
        self.process.stdin.write(b"".join(line + b"\n" for line in raw))
        self.process.stdin.flush()

    def ask(self, number, method, computer=None, **params):
        request = {"id": number, "method": method, "params": params}
        if computer:
            request["computer"] = computer
        self.test.assertIsNone(complaint(request, "request"))
        self.methods[number] = method
        self.send(json.dumps(request).encode())

    def until(self, condition):
        """The line that meets the condition; those that came before count too."""
        for line in self.lines:
            if condition(line):
                return line
        while True:
            line = self.next()
            self.test.assertIsNotNone(line, "it has ended")
            if condition(line):
                return line

    def end_of(self, number):
        return self.until(lambda line: line.get("id") == number
                          and line["type"] in ("result", "error"))

    def result(self, method, computer=None, **params):
        number = f"{len(self.methods)} {method}"
        self.ask(number, method, computer, **params)
        end = self.end_of(number)
        self.test.assertEqual(end["type"], "result", end)
        return end["result"]

    def of(self, number, kind):
        return [line for line in self.lines if line.get("id") == number and line["type"] == kind]

    def check(self):
        """Each line is in order, and each request has one end."""
        self.test.assertEqual(self.lines[0]["type"], "hello")
        for line in self.lines:
            self.test.assertIsNone(complaint(line))
            if line["type"] == "result":
                self.test.assertIsNone(
                    complaint(line["result"], "results", self.methods[line["id"]]))
        for number in self.methods:
            of_it = [line["type"] for line in self.lines if line.get("id") == number]
            self.test.assertEqual(
                [kind for kind in of_it if kind in ("result", "error")], of_it[-1:], number)


# A method, its parameters, and the command that does the same; F is a folder, IMAGE an image.
LAYOUT = Path("images/layout.bin").read_bytes().hex()
SETTINGS = {"byte1": 1, "byte2": 2, "float1": 0.5, "byte3": 3, "float2": 1.25, "byte4": 4,
            "byte5": 5, "byte6": 255}
SAME = [
    ("info", {}, "info"),
    ("config", {}, "config"),
    ("config", {"basic": True}, "config --basic"),
    ("logbook", {}, "logbook"),
    ("logbook", {"known": [1, 2, 5]}, "logbook --known 1,2,5"),
    ("dive", {"numbers": [2]}, "dive 2"),
    ("dive", {"numbers": [99]}, "dive 99"),
    ("dives", {}, "dives"),
    ("dives", {"known": [1, 3]}, "dives --known 1,3"),
    ("sync", {"file": "F/serve.sqlite"}, "sync --logbook F/command.sqlite"),
    ("gases", {}, "gases"),
    ("tissues", {}, "tissues"),
    ("sensors", {}, "sensors"),
    ("battery", {}, "battery"),
    ("log", {}, "log"),
    ("log", {"binary": True}, "log --binary"),
    ("time", {}, "time"),
    ("owner", {}, "owner"),
    ("layouts", {}, "layouts"),
    ("layouts get", {"index": 1}, "layouts get 1"),
    ("layouts get", {"index": 200}, "layouts get 200"),
    ("layouts active", {}, "layouts active"),
    ("layouts activate", {"mode": 1, "index": -1}, "layouts activate 1 -1"),
    ("layouts add", {"layoutBlob": LAYOUT}, "layouts add images/layout.bin"),
    ("layouts remove", {"index": 1}, "layouts remove 1"),
    ("layouts clear", {"confirm": True}, "layouts clear --yes"),
    ("owner set", {"text": "Grace Höpper"}, "owner set Grace\xa0Höpper"),
    ("pressure", {"mbar": 950, "confirm": True}, "pressure 950 --yes"),
    ("settings", SETTINGS | {"confirm": True}, "settings 1 2 0.5 3 1.25 4 5 255 --yes"),
    ("superuser", {"on": True, "confirm": True}, "superuser on --yes"),
    ("superuser", {"on": False}, "superuser off"),
    ("delete", {"confirm": True}, "delete --yes"),
    ("erase", {"confirm": True}, "erase --yes"),
    ("reset", {"confirm": True}, "reset --yes"),
    ("firmware info", {"file": "images/application.bin"}, "firmware info images/application.bin"),
    ("firmware upload", {"file": "images/application.bin", "confirm": True},
     "firmware upload images/application.bin --yes"),
    ("time set", {}, "time set"),
]


class Serve(unittest.TestCase):
    def session(self, *options, **more):
        return Session(self, *options, **more)

    # What the results are

    def same_as_json(self, model):
        device = {"model": model, "dives": {"count": 3, "samples": 30},
                  "clock": "2024-05-17T08:30:00"}
        with tempfile.TemporaryDirectory() as folder:
            scenario = Path(folder, "scenario.json")
            scenario.write_text(json.dumps({"devices": [device]}), encoding="utf-8")

            def command(text):
                words = [word.replace("F/", folder + "/").replace("\xa0", " ")
                         for word in text.split(" ")]
                return subprocess.run(
                    [VARDA, *words, "--json", f"--simulate={scenario}"], env=environment(),
                    stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)

            with ThreadPoolExecutor(4) as pool, \
                    self.session(f"--simulate={scenario}") as serve:
                expected = [pool.submit(command, text) for _, _, text in SAME]
                for number, (method, params, _) in enumerate(SAME):
                    params = {key: value.replace("F/", folder + "/")
                              if isinstance(value, str) else value
                              for key, value in params.items()}
                    serve.ask(number, method, **params)
                for number, (method, _, text) in enumerate(SAME):
                    with self.subTest(text):
                        self.compare(serve.end_of(number), expected[number].result(), method)
                        if method in ("dive", "dives"):
                            events = [line["dive"] for line in serve.of(number, "dive")]
                            end = serve.end_of(number)
                            self.assertEqual(events, end.get("result", {}).get("dives", []))

    def compare(self, end, done, method):
        if end["type"] == "error":
            self.assertNotEqual(done.returncode, 0, end)
            self.assertEqual(done.stderr.splitlines()[0], "varda: " + end["error"]["text"])
            return
        self.assertEqual(done.returncode, 0, done.stderr)
        ours, theirs = dict(end["result"]), json.loads(done.stdout)
        if method == "sync":
            self.assertRegex(ours.pop("file") + theirs.pop("file"), "serve.sqlite.*command.sqlite")
        elif method == "firmware upload":
            self.assertGreater(ours.pop("uploadElapsed"), 0)
            self.assertGreater(theirs.pop("uploadElapsed"), 0)
        elif method == "time set":
            self.assertAlmostEqual(ours.pop("computerTime"), theirs.pop("computerTime"), delta=300)
        elif method == "erase":  # without the dive that was deleted before
            self.assertEqual(ours.pop("deleteResult"), {"resultA": 2, "resultB": 0})
            self.assertEqual(theirs.pop("deleteResult"), {"resultA": 3, "resultB": 0})
        self.assertEqual(ours, theirs)
        self.assertEqual(list(ours), list(theirs))

    def test_same_varda(self):
        """All that a Varda can do gives what the command gives."""
        self.same_as_json("varda")

    def test_same_tidemar(self):
        """The same of a Tidemar."""
        self.same_as_json("tidemar")

    def test_same_vskm(self):
        """The same of a VSKM."""
        self.same_as_json("vskm")

    def test_scan(self):
        """Devices come as they are found, and all of them in the end."""
        with self.session("--simulate=scenarios/two.json") as serve:
            found = serve.result("scan", seconds=1)["devices"]
            self.assertEqual([(each["name"], each["computer"]) for each in found],
                             [("Varda", True), ("VSK-0042", True)])
            events = [line["device"]["name"] for line in serve.lines if line["type"] == "device"]
            self.assertLessEqual({"Varda", "VSK-0042"}, set(events))
            found = serve.result("scan", seconds=1, all=True)["devices"]
            self.assertIn("Kettle", [each["name"] for each in found])

    def test_schema(self):
        """The schema has the methods of the hello, and the reasons and kinds of the library."""
        with self.session("--simulate=nobody") as serve:
            methods = serve.until(lambda line: True)["methods"]
        definitions = SCHEMA["$defs"]
        self.assertEqual(methods, list(definitions["params"]))
        self.assertEqual(methods, list(definitions["results"]))
        self.assertEqual(methods, definitions["request"]["properties"]["method"]["enum"])
        header = (ROOT / "include/varda/vardajob.h").read_text(encoding="utf-8")
        error = definitions["errorLine"]["properties"]["error"]["properties"]
        for name, listed in (("class Reason", error["code"]), ("Error", error["kind"]),
                             ("State", definitions["progress"]["properties"]["state"])):
            body = re.search(rf"enum {name} {{(.*?)\n    }};", header, re.DOTALL)[1]
            names = re.findall(r"^ +([A-Z]\w+),", body, re.MULTILINE)
            left_out = {"None", "NoError", "Finished"}
            self.assertEqual([each for each in names if each not in left_out],
                             listed["enum"][:len(names) - 1])

    # Several at once

    def test_two_at_once(self):
        """Two computers are read at the same time, each by its address in any spelling."""
        with simulator(*TWO) as (env, events), self.session(env=env) as serve:
            serve.ask(1, "dives", FIRST)
            serve.ask(2, "dives", SECOND.lower().replace(":", "-"))
            for number, count in ((1, 2), (2, 3)):
                self.assertEqual(len(serve.end_of(number)["result"]["dives"]), count)
                self.assertEqual(len(serve.of(number, "dive")), count)
            serve.ask(3, "owner", FIRST)
            serve.ask(4, "owner", SECOND)
            self.assertEqual(serve.end_of(3)["result"]["owner"], "Ada")
            self.assertEqual(serve.end_of(4)["result"]["owner"], "Grace")
            order = [event["address"] for event in events() if event["event"] == "notification"]
            # Both had begun before one had ended.
            self.assertLess(order.index(FIRST), len(order) - 1 - order[::-1].index(SECOND))
            self.assertLess(order.index(SECOND), len(order) - 1 - order[::-1].index(FIRST))
            self.assertEqual([each["event"] for each in events()].count("connected"), 2)

    def test_queue_and_cancel(self):
        """Requests wait for their turn; what is cancelled ends at once, and the others go on."""
        with simulator(SLOW) as (env, _), self.session(env=env) as serve:
            serve.ask(1, "dives")
            serve.ask(2, "owner")
            serve.ask(3, "owner")
            serve.until(lambda line: line.get("id") == 1 and line.get("bytes", 0) > 0)
            serve.ask(4, "cancel", request=2)
            self.assertEqual(serve.end_of(4)["result"], {})
            error = serve.end_of(2)["error"]
            self.assertEqual((error["kind"], error["code"]), ("Cancelled", "ByCaller"))
            serve.ask(5, "cancel", request=1)
            self.assertEqual(serve.end_of(1)["error"]["code"], "ByCaller")
            self.assertEqual(serve.end_of(3)["result"]["owner"], "Ada Lindqvist")
            serve.ask(6, "cancel", request=1)
            self.assertEqual(serve.end_of(6)["error"]["code"], "UnknownId")

    def test_link_lost(self):
        """One computer is lost for good; its request says so, and the other one is read."""
        lost = {"step": "answer", "command": "Fullsamples", "kind": "vanish"}
        gone = TWO[0] | {"faults": [lost]}
        with simulator(gone, TWO[1]) as (env, _), self.session("--no-retry", env=env) as serve:
            serve.ask(1, "dives", FIRST)
            serve.ask(2, "dives", SECOND)
            error = serve.end_of(1)["error"]
            self.assertIn((error["kind"], error["code"]),
                          {("LinkLost", "LinkFailed"), ("NotFound", "Silent")})
            self.assertEqual(len(serve.end_of(2)["result"]["dives"]), 3)

    def test_disconnect(self):
        """It lets one computer go, and what was asked of it ends."""
        with simulator(SLOW, TWO[1]) as (env, events), self.session(env=env) as serve:
            serve.result("owner", SECOND)
            serve.ask(1, "dives", FIRST)
            serve.until(lambda line: line.get("id") == 1 and line.get("bytes", 0) > 0)
            self.assertEqual(links(events()), {FIRST, SECOND})
            serve.ask(2, "disconnect", FIRST)
            self.assertEqual(serve.end_of(2)["result"], {})
            self.assertEqual(serve.end_of(1)["error"]["code"], "ByDisconnect")
            self.assertEqual(links(events()), {SECOND})
            self.assertEqual(serve.result("connect", FIRST)["device"]["address"], FIRST)
            self.assertEqual(links(events()), {FIRST, SECOND})

    # How it ends

    def test_input_closed(self):
        """All that is under way ends, all links go down, and the status is 0."""
        with simulator(SLOW, TWO[1]) as (env, events), self.session(env=env) as serve:
            serve.ask(1, "dives", FIRST)
            serve.ask(2, "owner", FIRST)
            serve.ask(3, "scan", seconds=3600)
            serve.ask(4, "owner", SECOND)
            serve.end_of(4)
            serve.until(lambda line: line.get("id") == 1 and line.get("bytes", 0) > 0)
            serve.process.stdin.close()
            serve.rest()
            for number in (1, 2, 3):
                self.assertEqual(serve.end_of(number)["error"]["kind"], "Cancelled")
            self.assertEqual(serve.process.wait(), 0)
            self.assertEqual(links(events()), set())

    def test_closed_before_the_end(self):
        """Closed input ends a synchronisation too, and what was saved stays."""
        with tempfile.TemporaryDirectory() as folder, simulator(SLOW) as (env, events), \
                self.session(env=env) as serve:
            serve.ask(1, "sync", file=folder + "/l.sqlite")
            serve.until(lambda line: line["type"] == "stored")
            serve.process.stdin.close()
            serve.rest()
            self.assertEqual(serve.end_of(1)["error"]["kind"], "Cancelled")
            self.assertEqual(links(events()), set())
            done = subprocess.run([VARDA, "dives", "--saved", "--json", "--logbook",
                                   folder + "/l.sqlite"], env=environment(), check=True,
                                  capture_output=True)
            saved = [dive["diveNumber"] for dive in json.loads(done.stdout)["dives"]]
            self.assertEqual(saved, [each["dive"]["diveNumber"] for each in serve.of(1, "stored")])

    def test_reader_gone(self):
        """If nobody reads any more, it lets all computers go too, even if it has nothing to say."""
        with simulator(SLOW) as (env, events):
            for ask in ({"id": 1, "method": "dives"}, {"id": 1, "method": "connect"}):
                with subprocess.Popen([VARDA, "serve"], env=env, stdin=subprocess.PIPE,
                                      stdout=subprocess.PIPE) as process:
                    process.stdin.write(json.dumps(ask).encode() + b"\n")
                    process.stdin.flush()
                    wait_for(lambda: links(events()))
                    process.stdout.close()
                    self.assertEqual(process.wait(), 141)
                    self.assertEqual(links(events()), set())

    def test_interrupt(self):
        """A signal ends it as it ends every command."""
        with simulator(SLOW) as (env, events), self.session(env=env) as serve:
            serve.ask(1, "dives")
            serve.until(lambda line: line.get("bytes", 0) > 0)
            serve.process.send_signal(signal.SIGTERM)
            serve.rest()
            self.assertEqual(serve.end_of(1)["error"]["kind"], "Cancelled")
            self.assertEqual(serve.process.wait(), 128 + signal.SIGTERM)
            self.assertEqual(links(events()), set())

    def test_slow_reader(self):
        """While nobody reads, the computer is served all the same."""
        device = {"dives": {"count": 3, "samples": 400}}
        with simulator(device) as (env, events), self.session(env=env, reads=False) as serve:
            with self.session(env=env) as other:
                other.result("owner")
            question = frames(events())[-1]
            serve.ask(1, "dives")
            serve.ask(2, "owner")
            # Far more lies ready than fits into the pipe.
            wait_for(lambda: frames(events()).count(question) > 1)
            serve.begin_to_read()
            self.assertEqual(len(serve.end_of(1)["result"]["dives"]), 3)
            self.assertEqual(serve.end_of(2)["result"]["owner"], "Ada Lindqvist")

    def test_download_waits(self):
        """If very much lies ready, the next dive is not read before somebody has read that."""
        device = {"dives": {"count": 3, "samples": 7000}}
        with simulator(device) as (env, events), self.session(env=env, reads=False) as serve:
            serve.ask(1, "dives", collect=False)
            before = 0
            while before < 7000 / 30 or before != len(events()):
                before = len(events())
                time.sleep(1.5)  # far longer than it takes to ask for the next one
            asked = len(frames(events()))
            serve.begin_to_read()
            self.assertNotIn("dives", serve.end_of(1)["result"])
            self.assertEqual(len(serve.of(1, "dive")), 3)
            self.assertGreater(len(frames(events())), asked)

    # What is wrong with requests

    HOSTILE = [
        (b"", "NotJson"),
        (b"hello", "NotJson"),
        (b'{"id": 1, "method": "info"', "NotJson"),
        (b'{"id": 1} {"id": 2}', "NotJson"),
        (b"\x00\x00\x00", "NotJson"),
        (b'{"id": "\x00", "method": "info"}', "NotJson"),
        (b'{"id": "\x1b", "method": "info"}', "NotJson"),
        (b'{"id": "\xff\xfe", "method": "info"}', "NotJson"),
        (b'{"id": 1, "method": "\xc3"}', "NotJson"),
        (b"[" * 500_000, "NotJson"),
        (b'{"id": 1, "params": ' + b'{"a":' * 100_000 + b"1" + b"}" * 100_001, "NotJson"),
        (b"x" * ((1 << 20) + 1), "LineTooLong"),
        (b'{"id": 1, "method": "' + b"x" * (3 << 20) + b'"}', "LineTooLong"),
        (b"17", "NotJson"),
        (b"null", "NotJson"),
        (b"[]", "BadRequest"),
        (b"{}", "BadRequest"),
        (b'{"method": "info"}', "BadRequest"),
        (b'{"id": null, "method": "info"}', "BadRequest"),
        (b'{"id": 1.5, "method": "info"}', "BadRequest"),
        (b'{"id": 1e300, "method": "info"}', "BadRequest"),
        (b'{"id": 9007199254740992, "method": "info"}', "BadRequest"),
        (b'{"id": [1], "method": "info"}', "BadRequest"),
        (b'{"id": "\\ud800", "method": "info"}', "BadRequest"),
        (b'{"id": "' + b"x" * 101 + b'", "method": "info"}', "BadRequest"),
        (b'{"id": 1}', "BadRequest"),
        (b'{"id": 1, "method": 2}', "BadRequest"),
        (b'{"id": 1, "method": ""}', "UnknownMethod"),
        (b'{"id": 1, "method": "Info"}', "UnknownMethod"),
        (b'{"id": 1, "method": "layouts  get"}', "UnknownMethod"),
        (b'{"id": 1, "method": "\\u202e\\u0007"}', "UnknownMethod"),
        (b'{"id": 1, "method": "info", "params": []}', "BadRequest"),
        (b'{"id": 1, "method": "info", "more": 1}', "BadRequest"),
        (b'{"id": 1, "method": "info", "computer": 1}', "BadRequest"),
        (b'{"id": 1, "method": "info", "computer": "Varda"}', "BadRequest"),
        (b'{"id": 1, "method": "info", "computer": ""}', "BadRequest"),
        (b'{"id": 1, "method": "scan", "computer": "00:AA:01:01:00:01"}', "BadRequest"),
        (b'{"id": 1, "method": "info", "params": {"x": 1}}', "BadArgument"),
        (b'{"id": 1, "method": "config", "params": {"basic": 1}}', "BadArgument"),
        (b'{"id": 1, "method": "scan", "params": {"seconds": 0}}', "BadArgument"),
        (b'{"id": 1, "method": "scan", "params": {"seconds": "1"}}', "BadArgument"),
        (b'{"id": 1, "method": "dive"}', "BadArgument"),
        (b'{"id": 1, "method": "dive", "params": {"numbers": []}}', "BadArgument"),
        (b'{"id": 1, "method": "dive", "params": {"numbers": [65536]}}', "BadArgument"),
        (b'{"id": 1, "method": "dives", "params": {"known": [-1]}}', "BadArgument"),
        (b'{"id": 1, "method": "dives", "params": {"known": "1-5"}}', "BadArgument"),
        (b'{"id": 1, "method": "owner set"}', "BadArgument"),
        (b'{"id": 1, "method": "owner set", "params": {"text": "a\\u0000b"}}', "BadArgument"),
        (b'{"id": 1, "method": "owner set", "params": {"text": "\\udc00"}}', "BadArgument"),
        (b'{"id": 1, "method": "layouts add", "params": {"layoutBlob": "0"}}', "BadArgument"),
        (b'{"id": 1, "method": "layouts add", "params": {"layoutBlob": "0g"}}', "BadArgument"),
        (b'{"id": 1, "method": "layouts add", "params": {"layoutBlob": ""}}', "BadArgument"),
        (b'{"id": 1, "method": "layouts get", "params": {"index": 256}}', "BadArgument"),
        (b'{"id": 1, "method": "layouts clear"}', "NotConfirmed"),
        (b'{"id": 1, "method": "delete", "params": {"confirm": false}}', "NotConfirmed"),
        (b'{"id": 1, "method": "delete", "params": {"confirm": "true"}}', "BadArgument"),
        (b'{"id": 1, "method": "erase"}', "NotConfirmed"),
        (b'{"id": 1, "method": "reset"}', "NotConfirmed"),
        (b'{"id": 1, "method": "superuser", "params": {"on": true}}', "NotConfirmed"),
        (b'{"id": 1, "method": "superuser"}', "BadArgument"),
        (b'{"id": 1, "method": "pressure", "params": {"mbar": 1000}}', "NotConfirmed"),
        (b'{"id": 1, "method": "pressure", "params": {"mbar": 10, "confirm": true}}',
         "BadArgument"),
        (b'{"id": 1, "method": "pressure", "params": {"mbar": -1, "confirm": true}}',
         "BadArgument"),
        (json.dumps({"id": 1, "method": "settings", "params": SETTINGS}).encode(), "NotConfirmed"),
        (json.dumps({"id": 1, "method": "settings",
                     "params": SETTINGS | {"float1": 1e300, "confirm": True}}).encode(),
         "BadArgument"),
        (json.dumps({"id": 1, "method": "settings",
                     "params": SETTINGS | {"byte1": 256, "confirm": True}}).encode(),
         "BadArgument"),
        (b'{"id": 1, "method": "firmware info", "params": {"file": "/nonexistent"}}',
         "BadArgument"),
        (b'{"id": 1, "method": "firmware info", "params": {"file": "/dev/zero"}}', "BadArgument"),
        (b'{"id": 1, "method": "firmware info", "params": {"file": "images/empty.bin"}}',
         "BadArgument"),
        (b'{"id": 1, "method": "firmware upload", "params": {"file": "images/application.bin"}}',
         "NotConfirmed"),
        (b'{"id": 1, "method": "sync", "params": {"file": "/dev"}}', "BadArgument"),
        (b'{"id": 1, "method": "cancel", "params": {"request": 5}}', "UnknownId"),
        (b'{"id": 1, "method": "cancel", "params": {"request": [1]}}', "UnknownId"),
        (b'{"id": 1, "method": "cancel"}', "BadArgument"),
    ]

    def test_hostile(self):
        """Whatever is wrong gets one line that says so; the computer never hears of it."""
        with simulator() as (env, events), self.session(env=env) as serve:
            serve.next()
            for line, code in self.HOSTILE:
                with self.subTest(line[:100]):
                    serve.send(line)
                    answer = serve.next()
                    self.assertEqual((answer["type"], answer["error"]["code"]), ("error", code))
                    self.assertEqual(answer["error"]["kind"], "Rejected")
                    known = line.startswith((b'{"id": 1,', b'{"id": 1}')) and code not in (
                        "NotJson", "LineTooLong")
                    self.assertEqual(answer["id"], 1 if known else None)
            self.assertEqual([each for each in events() if "address" in each], [])
            self.assertEqual(serve.result("owner")["owner"], "Ada Lindqvist")

    def test_duplicate_id(self):
        """An id belongs to one request until its end; 1 and "1" are two."""
        with simulator(SLOW) as (env, _), self.session(env=env) as serve:
            serve.ask(1, "dives")
            serve.send(b'{"id": 1, "method": "owner"}', b'{"id": 1, "method": "nonsense"}')
            for code in ("DuplicateId", "UnknownMethod"):
                error = serve.until(lambda line, code=code: line["type"] == "error"
                                    and line["error"]["code"] == code)
                self.assertIsNone(error["id"])
            serve.ask("1", "cancel", request=1)
            serve.end_of("1")
            serve.end_of(1)

    def test_too_many(self):
        """Requests are not piled up without an end."""
        with simulator(SLOW) as (env, _), self.session(env=env) as serve:
            serve.send(*(f'{{"id": {number}, "method": "owner"}}'.encode()
                         for number in range(1001)))
            self.assertEqual(serve.end_of(1000)["error"]["code"], "TooManyRequests")

    def test_which_computer(self):
        """Without an address it is that of --device; what writes takes no chances."""
        with simulator(*TWO) as (env, events):
            with self.session("--device", SECOND, env=env) as serve:
                self.assertEqual(serve.result("owner")["owner"], "Grace")
                self.assertEqual(serve.result("owner", SECOND)["owner"], "Grace")
            self.assertEqual([each["event"] for each in events()].count("connected"), 1)
            with self.session(env=env) as serve:
                serve.ask(1, "owner set", text="me")
                error = serve.end_of(1)["error"]
                self.assertEqual((error["kind"], error["code"]), ("Ambiguous", "ManyInReach"))
            with self.session("--device", "VSK", env=env) as serve:
                serve.rest()
                self.assertEqual(serve.process.wait(), 2)
                serve.lines.append({"type": "hello", "protocol": 1, "version": "", "qt": "",
                                    "methods": []})

    # The document

    def test_documentation(self):
        """Every example in the document runs, and gives what stands there."""
        text = (ROOT / "docs/serve.md").read_text(encoding="utf-8")
        examples = re.findall(r"```jsonl\n(.*?)```", text, re.DOTALL)
        self.assertGreater(len(examples), 3)
        for example in examples:
            with simulator({"clock": "2024-05-17T08:30:00"}) as (env, _), \
                    self.session(env=env) as serve:
                serve.next()
                for line in example.splitlines():
                    said = line[2:]
                    if line.startswith("→ "):
                        with contextlib.suppress(json.JSONDecodeError):
                            request = json.loads(said)
                            serve.methods[request["id"]] = request["method"]
                        serve.send(said.encode())
                        continue
                    pattern = re.compile(".*".join(map(re.escape, said.split("…"))))
                    serve.until(lambda line, pattern=pattern: pattern.fullmatch(
                        json.dumps(line, ensure_ascii=False)))


if __name__ == "__main__":
    unittest.main()
