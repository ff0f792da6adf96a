#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""behaviour.py VARDA [TEST...]: what a golden file cannot show."""

import contextlib
import fcntl
import json
import os
import pty
import re
import resource
import shutil
import signal
import socket
import stat
import struct
import subprocess
import sys
import tempfile
import termios
import time
import tty
import unittest
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

VARDA = Path(sys.argv.pop(1))
SIMULATOR = VARDA.with_name("varda-simulator")
os.chdir(Path(__file__).resolve().parent)


def environment(**more):
    wishes = ("COLUMNS", "LINES", "NO_COLOR")
    kept = {n: v for n, v in os.environ.items()
            if not n.startswith(("QT_", "LC_")) and n not in wishes}
    return kept | {"LANG": "C.UTF-8", "XDG_CONFIG_HOME": "/nonexistent",
                   "XDG_DATA_HOME": "/dev/null"} | more


def run(*arguments, **more):
    return subprocess.run(
        [VARDA, *arguments],
        **({"stdin": subprocess.DEVNULL, "text": True, "capture_output": True,
            "env": environment()} | more),
    )


def on_terminal(*arguments, answers=(), size=None, **more):
    """The status, what was printed on the terminal, and the result.

    Each of the answers is a question's end and what is typed then. The result goes to a pipe, but
    to a terminal of that size (rows, columns) too if one is given; there, without the status line.
    """
    ours, theirs = pty.openpty()
    answers = list(answers)
    result_end = subprocess.PIPE
    if size:
        fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", *size, 0, 0))
        result_end = theirs
    with subprocess.Popen(
        [VARDA, *arguments], env=environment(**{"TERM": "xterm", "NO_COLOR": "1"} | more),
        stdin=theirs, stdout=result_end, stderr=theirs, text=True,
    ) as command:
        os.close(theirs)
        shown = b""
        try:
            while part := os.read(ours, 4096):
                shown += part
                if answers and shown.endswith(answers[0][0]):
                    typed = answers.pop(0)[1]
                    if isinstance(typed, signal.Signals):
                        command.send_signal(typed)
                    else:
                        os.write(ours, typed)
        except OSError:  # the other end is closed
            pass
        result = command.stdout.read() if command.stdout else ""
    os.close(ours)
    if size:
        result = re.sub("\r\x1b\\[K[^\r\n]*(?=\r\x1b)|\r\x1b\\[K", "", shown.decode())
        result = result.replace("\r\n", "\n")
    return command.returncode, shown.decode(), result


def simulated(folder, *arguments, device=None, typed="", **more):
    """Runs the command under a simulator; what it prints, and the frames that arrived."""
    record = Path(folder, "record")
    scenario = Path(folder, "scenario.json")
    scenario.write_text(json.dumps({"devices": [device or {}]}))
    done = subprocess.run(
        [SIMULATOR, "--scenario", scenario, "--record", record, "--", VARDA, *arguments],
        env=environment(**more), input=typed, capture_output=True, text=True,
    )
    events = [json.loads(line) for line in record.read_text().splitlines()]
    return done, [bytes.fromhex(each["hex"]) for each in events if each["event"] == "frame"]


@contextlib.contextmanager
def serving(folder, **scenario):
    """A simulator; what a command in it needs, and a function that returns the events so far."""
    record = Path(folder, "record")
    file = Path(folder, "scenario.json")
    file.write_text(json.dumps({"devices": [{}]} | scenario))
    with subprocess.Popen(
        [SIMULATOR, "--scenario", file, "--record", record, "--exit-with-stdin"],
        env=environment(), stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
    ) as simulator:
        name, address = simulator.stdout.readline().strip().split("=", 1)
        more = {"env": environment(**{name: address}), "stdin": subprocess.DEVNULL, "text": True}
        yield more, lambda: [json.loads(line)["event"] for line in record.read_text().splitlines()]


def in_mount_namespace(script, *arguments, size="64k"):
    """Runs a shell script that may mount; nothing where there is no right to do so."""
    own = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]
    mount = f"mount -t tmpfs -o size={size} tmpfs /mnt"
    if subprocess.run([*own, "sh", "-c", mount], capture_output=True, check=False).returncode != 0:
        return None
    return subprocess.run(
        [*own, "sh", "-euc", f"{mount}\n{script}", "sh", *arguments],
        env=environment(), stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False,
    )


def saved_in(folder):
    """What a command needs that saves dives in this folder only."""
    return {"env": environment(XDG_DATA_HOME=str(folder))}


def numbers_in(file):
    """The numbers of the dives that are saved there."""
    done = run("dives", "--saved", "--json", "--logbook", file)
    assert done.returncode == 0, done.stderr
    return [dive["diveNumber"] for dive in json.loads(done.stdout)["dives"]]


# As large as they come
LARGE_LAYOUT = {"layouts": [{"index": 2, "name": "x", "blob": " ".join(["5a"] * 3000)}]}


class Behaviour(unittest.TestCase):
    def test_status_line(self):
        """On a terminal it says what it does, and leaves nothing of that behind."""
        status, terminal, result = on_terminal("info", "--simulate")
        self.assertEqual(status, 0)
        self.assertNotIn("\x1b", result)
        self.assertIn("Serial number     00420017-3138510D-37373934\n", result)
        shown = terminal.split("\r\x1b[K")
        for text in ("Looking for a computer", "Connecting", "Connected to Varda", "Reading the owner", "Disconnecting"):
            self.assertIn(text, shown)
        self.assertEqual(shown[0], "")
        self.assertEqual(shown[-1], "")
        self.assertNotIn("\n", terminal)

    def test_download_status(self):
        """While dives come in it says which, how much, and how long the rest will take."""
        status, terminal, result = on_terminal("dives", "--simulate=scenarios/slow-dives.json")
        self.assertEqual(status, 0)
        self.assertEqual(result.count("\n"), 3, result)
        self.assertRegex(terminal, r"Reading dive 1, 1 of 2, \d+(\.\d)? k?B\r")
        self.assertRegex(terminal, r"Reading dive 2, 2 of 2, \d+:\d\d left, \d+(\.\d)? k?B\r")

    def test_sync_status(self):
        """While dives are saved, a bar shows how much is done, how fast, and how long it takes."""
        with tempfile.TemporaryDirectory() as folder:
            status, terminal, result = on_terminal(
                "sync", "--simulate=scenarios/slow-dives.json", XDG_DATA_HOME=folder)
        self.assertEqual((status, result), (0, "2 new, 0 known\n"))
        self.assertRegex(terminal, r"\[-{28}\] 1 of 2, \d+(\.\d)? k?B/s\r")
        self.assertRegex(terminal, r"\[#{14}-{14}\] 2 of 2, \d+(\.\d)? k?B/s, \d+:\d\d left\r")

    def test_sync_narrow(self):
        """The line fits a narrow terminal, with a shorter bar or none."""
        with tempfile.TemporaryDirectory() as folder:
            _, terminal, _ = on_terminal("sync", "--simulate=scenarios/slow-dives.json",
                                         size=(24, 40), XDG_DATA_HOME=folder)
        lines = [part for part in re.split("\r\x1b\\[K|\r\n", terminal) if " of 2, " in part]
        self.assertTrue(lines)
        for line in lines:
            self.assertLess(len(line), 40)

    def test_sync_interrupted(self):
        """What is saved stays, and the next time the rest comes."""
        slow = json.loads(Path("scenarios/slow-dives.json").read_text(encoding="utf-8"))
        with tempfile.TemporaryDirectory() as folder, serving(folder, **slow) as (more, _):
            file = Path(folder, "a logbook.sqlite")
            with subprocess.Popen([VARDA, "sync", "--logbook", file, "--verbose"], **more,
                                  stdout=subprocess.PIPE, stderr=subprocess.PIPE) as command:
                while not file.exists() or numbers_in(file) != [1]:
                    time.sleep(0.01)
                command.send_signal(signal.SIGINT)
                result, said = command.communicate()
            self.assertEqual(command.returncode, 128 + signal.SIGINT)
            self.assertEqual(result, "1 new, 0 known\n")
            self.assertTrue(said.endswith("varda: interrupted\n"), said)
            done = run("sync", "--logbook", file, **more)
            self.assertEqual((done.stdout, done.stderr), ("1 new, 1 known\n", ""))
            self.assertEqual(numbers_in(file), [1, 2])

    def test_sync_twice_at_once(self):
        """Two that save the same dives at once double none of them."""
        with tempfile.TemporaryDirectory() as folder, ThreadPoolExecutor() as pool:
            both = [pool.submit(run, "sync", "--simulate", **saved_in(folder)) for _ in range(2)]
            both = [each.result() for each in both]
            self.assertEqual([each.returncode for each in both], [0, 0], both)
            added = [int(each.stdout.split(" new")[0]) for each in both]
            self.assertEqual(sum(added), 12, both)
            self.assertEqual(numbers_in(Path(folder, "varda", "simulated.sqlite")),
                             list(range(1, 13)))
            self.assertFalse(Path(folder, "varda", "logbook.sqlite").exists())

    def test_sync_full_disk(self):
        """A full disk ends it; what was saved before is there."""
        script = """
            "$1" import data/dives.json --logbook /mnt/l.sqlite
            head -c 10000000 /dev/zero >/mnt/rest 2>/dev/null || true
            "$1" sync --simulate --logbook /mnt/l.sqlite || echo "exit $?"
            rm /mnt/rest
            "$1" dives --saved --logbook /mnt/l.sqlite | tail -n 1
            """
        done = in_mount_namespace(script, VARDA, size="1m")
        if done is None:
            self.assertNotIn("CI", os.environ, "CI has to have the right to mount")
            self.skipTest("there is no right to mount")
        self.assertEqual(done.stderr, "varda: /mnt/l.sqlite: the disk is full\n       "
                                      "Make room on it and try again. Nothing was lost.\n")
        self.assertEqual(done.stdout, "4 new, 0 known\nexit 7\n"
                         "@4      12  2024-05-07 13:53:20     17:00  41.1 m   19.4 m\n")

    def test_store_read_only(self):
        """A file that cannot be written is read, and nothing is saved in it."""
        script = """
            "$1" import data/dives.json --logbook /mnt/l.sqlite
            mount -o remount,ro /mnt
            "$1" dives --saved --logbook /mnt/l.sqlite | tail -n 1
            "$1" import data/others.json --logbook /mnt/l.sqlite || echo "exit $?"
            "$1" sync --simulate --logbook /mnt/new.sqlite || echo "exit $?"
            """
        done = in_mount_namespace(script, VARDA, size="1m")
        if done is None:
            self.assertNotIn("CI", os.environ, "CI has to have the right to mount")
            self.skipTest("there is no right to mount")
        remedy = "       Make the file and its folder writable, or use a copy elsewhere.\n"
        self.assertEqual(done.stderr, f"varda: /mnt/l.sqlite: cannot be written\n{remedy}"
                                      f"varda: /mnt/new.sqlite: cannot be written\n{remedy}")
        self.assertEqual(done.stdout, "4 new, 0 known\n"
                         "@4      12  2024-05-07 13:53:20     17:00  41.1 m   19.4 m\n"
                         "exit 7\nexit 7\n")

    def test_store_damaged(self):
        """What is damaged is reported, and nothing is written to it."""
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "l.sqlite")
            run("import", "data/dives.json", "--logbook", file)
            whole = file.read_bytes()
            file.write_bytes(whole[:4096] + b"\x5a" * (len(whole) - 4096))
            for arguments in (("dives", "--saved"), ("import", "data/others.json"), ("export",),
                              ("sync", "--simulate")):
                done = run(*arguments, "--logbook", file)
                self.assertEqual((done.returncode, done.stdout), (7, ""), arguments)
                self.assertTrue(done.stderr.startswith(f"varda: {file}: the file is damaged\n"
                                                       "       Use a backup, "), done.stderr)
            self.assertEqual(file.read_bytes()[4096:], b"\x5a" * (len(whole) - 4096))

    def test_export_import(self):
        """What was exported and imported is exported as the same again, and nothing is doubled."""
        with tempfile.TemporaryDirectory(prefix="a folder ") as folder:
            run("import", "data/dives.json", **saved_in(folder))
            for ending in ("uddf", "csv", "json"):
                first, second = Path(folder, f"1.{ending}"), Path(folder, f"2.{ending}")
                other = Path(folder, f"{ending}.sqlite")
                self.assertEqual(run("export", "-o", first, **saved_in(folder)).returncode, 0)
                done = run("import", first, "--logbook", other)
                self.assertEqual((done.stdout, done.stderr), ("4 new, 0 known\n", ""))
                done = run("import", first, "--logbook", other)
                self.assertEqual((done.stdout, done.stderr), ("0 new, 4 known\n", ""))
                run("export", "-o", second, "--logbook", other)
                self.assertEqual(first.read_bytes(), second.read_bytes())
            piped = run("import", "-", "--logbook", Path(folder, "piped.sqlite"), stdin=None,
                        input=first.read_text(encoding="utf-8"))
            self.assertEqual((piped.stdout, piped.stderr), ("4 new, 0 known\n", ""))

    def test_import_then_sync(self):
        """The computer's dives replace those of a file, also one whose begin the file lacks."""
        with tempfile.TemporaryDirectory() as folder:
            file, saved = Path(folder, "dives.uddf"), Path(folder, "l.sqlite")
            simulated_dives = ("--simulate=scenarios/dives.json",)
            run("export", "--live", "-o", file, *simulated_dives)
            self.assertEqual(run("import", file, "--logbook", saved).stdout, "4 new, 0 known\n")
            done = run("sync", "--logbook", saved, *simulated_dives)
            self.assertEqual((done.stdout, done.stderr), ("4 new, 0 known\n", ""))
            self.assertEqual(numbers_in(saved), [9, 7, 8, 12])
            self.assertEqual(run("import", file, "--logbook", saved).stdout, "0 new, 4 known\n")

    def test_pictures(self):
        """They are drawn without a display, each in a file of its own."""
        with tempfile.TemporaryDirectory() as folder:
            env = saved_in(folder)["env"] | {"QT_QPA_PLATFORM": "xcb", "DISPLAY": ":none"}
            run("import", "data/others.json", env=env)
            run("import", "data/dives.json", env=env)
            for ending, begin in (("svg", b"<svg "), ("png", b"\x89PNG"), ("pdf", b"%PDF-")):
                file = Path(folder, f"dive.{ending}")
                done = run("dive", "9", "--saved", "--plot", file, env=env)
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                self.assertTrue(done.stdout.endswith(f"\nPicture        {file}\n"), done.stdout)
                self.assertTrue(file.read_bytes().startswith(begin))
                done = run("export", "@4", "--format", ending, env=env, text=False)
                self.assertTrue(done.stdout.startswith(begin))
            done = run("export", "--format", "svg", "-o", f"{folder}/new/", env=env)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout, f"6 dives written to {folder}/new/\n")
            self.assertEqual(sorted(os.listdir(Path(folder, "new"))),
                             ["dive-12.svg", "dive-12@2.svg", "dive-7.svg", "dive-8.svg",
                              "dive-8@1.svg", "dive-9.svg"])
            status, terminal, _ = on_terminal("export", "9", "--format", "png", size=(24, 80),
                                              XDG_DATA_HOME=folder)
            self.assertEqual(status, 2)
            self.assertIn("varda: a terminal cannot show a picture", terminal)

    def test_no_gui(self):
        """Qt's graphical part is there for pictures only, and is missed only for them."""
        with tempfile.TemporaryDirectory() as folder:
            command = Path(folder, "command")
            shutil.copy(VARDA, command)
            run("import", "data/dives.json", **saved_in(folder))
            for arguments, status in ((("dives", "--saved"), 0), (("dive", "7", "--saved"), 0),
                                      (("dive", "7", "--saved", "--plot", "x.svg"), 2)):
                done = subprocess.run([command, *arguments], **saved_in(folder), cwd=folder,
                                      stdin=subprocess.DEVNULL, capture_output=True, text=True)
                self.assertEqual(done.returncode, status, done.stderr)
            self.assertIn("varda: pictures cannot be drawn: ", done.stderr)
            self.assertFalse(Path(folder, "x.svg").exists())

    def test_export_full_disk(self):
        """An existing file stays as it was if there is no room for the new one."""
        script = """
            for name in dives.json dive.svg; do printf old >/mnt/$name; done
            head -c 100000 /dev/zero >/mnt/rest 2>/dev/null || true
            for name in dives.json dive.svg; do
                "$1" export 8 --logbook "$2" -o /mnt/$name || echo "exit $?"
                cat /mnt/$name
                echo
            done
            ls /mnt
            """
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "l.sqlite")
            run("import", "data/dives.json", "--logbook", file)
            done = in_mount_namespace(script, VARDA, file)
        if done is None:
            self.assertNotIn("CI", os.environ, "CI has to have the right to mount")
            self.skipTest("there is no right to mount")
        self.assertEqual(done.stderr, "".join(
            f'varda: "/mnt/{name}" cannot be written: No space left on device\n'
            for name in ("dives.json", "dive.svg")))
        self.assertEqual(done.stdout, "exit 1\nold\nexit 1\nold\ndive.svg\ndives.json\nrest\n")

    def test_export_pipe(self):
        """A pipe is written to, and stays what it is; who stops reading ends it."""
        with tempfile.TemporaryDirectory() as folder:
            run("import", "data/dives.json", **saved_in(folder))
            pipe = Path(folder, "pipe")
            os.mkfifo(pipe)
            reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
            done = run("export", "8", "-o", pipe, **saved_in(folder))
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertTrue(os.read(reader, 100).startswith(b"<?xml "))
            self.assertTrue(stat.S_ISFIFO(os.stat(pipe).st_mode))
            os.close(reader)
            ours, theirs = os.pipe()
            os.close(ours)
            done = run("export", "8", "-o", "-", **saved_in(folder), capture_output=False,
                       stdout=theirs, stderr=subprocess.PIPE)
            os.close(theirs)
            self.assertEqual((done.returncode, done.stderr), (128 + signal.SIGPIPE, ""))

    def test_doctor_report(self):
        with tempfile.TemporaryDirectory() as folder:
            report = Path(folder, "report.json")
            device = {"model": "vskm", "name": "VSK-1234567", "owner": "Grace Hopper",
                      "faults": [{"step": "answer", "kind": "silent"}]}
            done, _ = simulated(folder, "doctor", "--report", report, device=device, VARDA_RFKILL="")
            self.assertEqual(done.returncode, 5, done.stderr)
            text = report.read_text(encoding="utf-8")
            found = json.loads(text)
            self.assertLessEqual({"varda", "qt", "system", "kernel", "architecture"}, set(found))
            self.assertFalse(found["healthy"])
            self.assertEqual([(each["check"], each["reason"]) for each in found["checks"]
                              if each["state"] == "Fault"], [("Answer", "NoAnswer")])
            self.assertEqual(len(found["checks"]), 19)
            self.assertEqual(run("version").stdout.split()[-1], found["varda"])
            trace = [json.loads(line) for line in found["trace"]]
            self.assertEqual((trace[0]["format"], trace[0]["redacted"]), ("varda-trace", True))
            self.assertGreater(len(trace), 5)
            secrets = ("1234567", "Grace", "Hopper", "00:AA:01", str(Path.home()), folder)
            self.assertEqual([each for each in secrets if each in text], [])

    def test_doctor_report_not_written(self):
        """The checks are shown all the same, and nothing is left of the file."""
        with tempfile.TemporaryDirectory() as folder:
            done, _ = simulated(folder, "doctor", "--report", Path(folder, "none", "report.json"),
                                VARDA_RFKILL="")
            self.assertEqual(done.returncode, 1)
            self.assertRegex(done.stderr, "report.json\" cannot be written")
            self.assertIn("the computer answers", done.stdout)
            self.assertFalse(Path(folder, "none").exists())

    def test_doctor_by_name(self):
        """A name that cannot be looked up is no reason to stop looking."""
        with tempfile.TemporaryDirectory() as folder:
            done, _ = simulated(folder, "doctor", "--device", "varda", VARDA_RFKILL="")
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            done, _ = simulated(folder, "doctor", "--device", "kett", "--timeout", "1",
                                VARDA_RFKILL="")
            self.assertEqual(done.returncode, 3)
            self.assertRegex(done.stdout, r"\nReach +Fault: the computer is not in reach")
        done = run("doctor", "--device", "varda", "--simulate", "adapter-off")
        self.assertEqual(done.returncode, 6)
        self.assertRegex(done.stdout, r"\nPower +Fault: Bluetooth is switched off \(hci0 off\)")

    def test_time_left(self):
        """It counts down while a dive comes in, too."""
        _, terminal, _ = on_terminal("dives", "--simulate=scenarios/slow-dives.json")
        left = re.findall(r"Reading dive 2, 2 of 2, (\d+:\d\d) left", terminal)
        self.assertGreater(len(set(left)), 1, left)
        self.assertEqual(left, sorted(left, reverse=True))

    def test_wide_name(self):
        """The status line is never wider than the terminal, whatever stands in it."""
        scenario = {"devices": [{"name": "VSK-" + "深" * 40}]}
        with tempfile.NamedTemporaryFile("w", suffix=".json") as file:
            json.dump(scenario, file)
            file.flush()
            _, terminal, _ = on_terminal("owner", f"--simulate={file.name}", size=(24, 40))
        lines = [part for part in re.split("\r\x1b\\[K|\r\n", terminal) if "深" in part]
        self.assertTrue(lines)
        for line in lines:
            self.assertLess(len(line) + line.count("深"), 40)

    def test_narrow_terminal(self):
        """There are fewer columns rather than lines that wrap."""
        _, _, dives = on_terminal("dives", "--simulate=scenarios/dives.json", size=(24, 40))
        self.assertIn("\nNUMBER  BEGIN                  DEPTH\n", dives)
        self.assertIn("\n    12  2024-05-07 13:53:20   41.1 m\n", dives)
        for command in (["logbook"], ["dive", "8"], ["dive", "8", "--samples"], ["battery"]):
            status, _, result = on_terminal(
                *command, "--simulate=scenarios/dives.json", size=(24, 40))
            self.assertEqual(status, 0, result)
            for line in result.splitlines():
                self.assertLessEqual(len(line), 40, result)

    def test_columns_in_a_pipe(self):
        """COLUMNS counts where there is no terminal; without it, nothing is left out."""
        arguments = ("logbook", "--simulate=scenarios/dives.json")
        narrow = run(*arguments, env=environment(COLUMNS="40")).stdout
        self.assertEqual(narrow.splitlines()[0], "NUMBER  BEGIN                GASES")
        self.assertEqual(narrow.splitlines()[2], "     8  2024-05-06 18:26:40  18/45, EAN…")
        self.assertIn("18/45, EAN50, Oxygen", run(*arguments).stdout)
        samples = run("dive", "8", "--samples", "--simulate=scenarios/dives.json").stdout
        self.assertGreater(max(map(len, samples.splitlines())), 100)

    def test_plot_height(self):
        """What there is to say of a dive fills the terminal, and no more."""
        arguments = ("dive", "8", "--simulate=scenarios/dives.json")
        for rows, curve in ((24, 9), (50, 35), (500, 40), (5, 6)):
            _, _, result = on_terminal(*arguments, size=(rows, 80))
            self.assertEqual(len(re.findall("[│┤]", result)), curve, result)
        result = run(*arguments, env=environment(LINES="50")).stdout
        self.assertEqual(len(re.findall("[│┤]", result)), 35)
        self.assertEqual(len(re.findall("[│┤]", run(*arguments).stdout)), 16)

    def test_colours(self):
        """They are for terminals that have them, and for users who want them."""
        dives = ("dives", "--simulate=scenarios/dives.json")
        heading, warning = "\x1b[1mNUMBER ", "\x1b[1;33mvarda:\x1b[m the logbook has no dives"
        _, terminal, _ = on_terminal(*dives, size=(24, 80), NO_COLOR="")
        self.assertIn(heading, terminal)
        self.assertIn(warning, terminal)
        _, terminal, result = on_terminal(*dives, NO_COLOR="")
        self.assertIn(warning, terminal)
        self.assertNotIn("\x1b", result)
        _, terminal, _ = on_terminal("info", "more", NO_COLOR="")
        self.assertTrue(
            terminal.startswith('\x1b[1;31mvarda:\x1b[m unexpected argument "more"'), terminal)
        _, terminal, _ = on_terminal("help", size=(24, 80), NO_COLOR="")
        self.assertIn("\x1b[1mCommands\x1b[m:", terminal)
        for unwanted in ({"NO_COLOR": "1"}, {"NO_COLOR": "", "TERM": "dumb"}):
            _, terminal, _ = on_terminal(*dives, size=(24, 80), **unwanted)
            self.assertNotIn("\x1b[1", terminal)
        done = run(*dives)
        self.assertNotIn("\x1b", done.stdout + done.stderr)

    def test_upload_status(self):
        status, terminal, result = on_terminal(
            "firmware", "upload", "images/application.bin", "--yes",
            "--simulate=scenarios/slow-answers.json")
        self.assertEqual(status, 0)
        self.assertRegex(result, r"\nUploaded 1000 bytes of firmware 1\.4\.3\.c in \d+\.\d s\.\n$")
        self.assertRegex(terminal, r"Uploading 13 %, 128 B of 1\.0 kB\r")
        self.assertRegex(
            terminal, r"Uploading \d\d %, \d+ B of 1\.0 kB, \d+(\.\d)? k?B/s, 0:\d\d left\r")
        self.assertIn("Uploading 100 %, 1.0 kB of 1.0 kB, ", terminal)

    def test_upload_arrives(self):
        """The image is what the computer gets, byte for byte, in both ways of sending it."""
        for name, block, end in (("application.bin", 31, 32), ("VARDA.1.4.3.c.bin", 14, 15)):
            image = Path("images", name).read_bytes()
            with tempfile.TemporaryDirectory() as folder:
                done, frames = simulated(folder, "firmware", "upload", "--yes", f"images/{name}")
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual(b"".join(each[9:] for each in frames if each[8] == block), image)
            self.assertEqual([each[8] for each in frames][-2:], [end, 255])

    def test_confirmed(self):
        """What cannot be undone is asked for on a terminal; question and result name the computer."""
        question = b"Delete all dives of Varda (00:AA:01:01:00:01)? [y/N] "
        for typed in (b"y\n", b" YES \n"):
            status, terminal, result = on_terminal(
                "erase", "--simulate=scenarios/dives.json", answers=[(question, typed)])
            self.assertEqual(status, 0, terminal)
            self.assertEqual(result, "Varda (00:AA:01:01:00:01):\n"
                             "Deleted all dives. The computer's answer: 4, 0\n")

    def test_other_questions(self):
        """What could harm a diver is asked for as well."""
        name = b"Varda (00:AA:01:01:00:01)"
        for arguments, question in (
                (("pressure", "990"), b"Set the surface pressure of " + name + b" to 990 mbar?"),
                (("settings", *"12345678"), b"Write these settings to " + name + b"?"),
                (("superuser", "on"), b"Turn on the super-user mode of " + name + b"?")):
            for typed, status in ((b"y\n", 0), (b"n\n", 1)):
                with self.subTest(arguments[0], typed=typed):
                    got, terminal, result = on_terminal(
                        *arguments, "--simulate", answers=[(question + b" [y/N] ", typed)])
                    self.assertEqual(got, status, terminal)
                    self.assertEqual(result.startswith(name.decode() + ":\n"), status == 0, result)

    def test_chosen(self):
        """Of several computers in range one is chosen on a terminal; that one is written into."""
        status, terminal, result = on_terminal(
            "owner", "set", "Eve", "--simulate=scenarios/two.json",
            answers=[(b"Which computer? [1-2] ", b"2\n")])
        self.assertEqual(status, 0, terminal)
        self.assertIn(" 1  00:AA:01:01:00:01   -80 dBm  Varda\r\n"
                      " 2  00:AA:01:01:00:42   -51 dBm  VSK-0042\r\n", terminal)
        self.assertEqual(result, "VSK-0042 (00:AA:01:01:00:42):\nEve\n")

    def test_not_chosen(self):
        for typed in (b"\n", b"3\n", b"0\n", b"x\n", b"\x04"):
            status, terminal, result = on_terminal(
                "erase", "--yes", "--simulate=scenarios/two.json",
                answers=[(b"Which computer? [1-2] ", typed)])
            self.assertEqual(status, 1, terminal)
            self.assertEqual(result, "")
            self.assertIn("varda: no computer was chosen, nothing was changed\r\n", terminal)

    def test_not_confirmed(self):
        question = b"Restart Varda (00:AA:01:01:00:01)? [y/N] "
        for typed in (b"\n", b"n\n", b"\x04"):
            status, terminal, result = on_terminal(
                "reset", "--simulate", answers=[(question, typed)])
            self.assertEqual(status, 1, terminal)
            self.assertEqual(result, "")
            self.assertIn("varda: not confirmed, nothing was changed\r\n", terminal)

    def test_interrupted_question(self):
        question = b"Delete the last dive of Varda (00:AA:01:01:00:01)? [y/N] "
        status, terminal, result = on_terminal(
            "delete", "--simulate", answers=[(question, signal.SIGINT)])
        self.assertEqual(status, 128 + signal.SIGINT, terminal)
        self.assertEqual(result, "")

    def test_known(self):
        """Only so many of the newest are sent as fit in a write; none is listed."""
        with tempfile.TemporaryDirectory() as folder:
            done, frames = simulated(folder, "logbook", "--known", "3,1-2,4-100",
                                     device={"dives": {"count": 102}, "mtu": 131})
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual([line.split()[0] for line in done.stdout.splitlines()],
                         ["NUMBER", "101", "102"])
        request = next(each for each in frames if each[8] == 19)
        self.assertEqual(request[9:], b"".join(bytes((n, 0)) for n in range(42, 101)))

    def test_known_file(self):
        """The numbers may be in a file as a program writes them, or come through a pipe."""
        device = {"dives": {"count": 9}}
        with tempfile.TemporaryDirectory() as folder:
            numbers = Path(folder, "numbers")
            numbers.write_text("1\n2, 3\r\n5-7\n")
            done, _ = simulated(folder, "logbook", "--known", numbers, "--known", "9",
                                device=device)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual([line.split()[0] for line in done.stdout.splitlines()],
                             ["NUMBER", "4", "8"])
        for text, left in (("1-8\n", ["NUMBER", "9"]), ("", ["NUMBER", *"123456789"])):
            with tempfile.TemporaryDirectory() as folder:
                done, _ = simulated(folder, "logbook", "--known", "-", device=device, typed=text)
            self.assertEqual(done.returncode, 0, done.stderr)
            self.assertEqual([line.split()[0] for line in done.stdout.splitlines()], left)

    def test_defaults(self):
        """What is set once holds for the commands after it, until it is unset."""
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "varda", "defaults")
            self.assertEqual(run("defaults", env=environment(XDG_CONFIG_HOME=folder)).stdout,
                             f"Device  -\nUnits   metric\nFile    {file}\n")
            for arguments in (("device", "VSK-0042"), ("units", "imperial")):
                done = run("defaults", "set", *arguments, env=environment(XDG_CONFIG_HOME=folder))
                self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout, f"Device  VSK-0042\nUnits   imperial\nFile    {file}\n")
            self.assertEqual(file.read_text(), "device = VSK-0042\nunits = imperial\n")

            def output_of(*arguments):
                done = subprocess.run(
                    [SIMULATOR, "--scenario", "scenarios/two.json", "--", VARDA, *arguments],
                    env=environment(XDG_CONFIG_HOME=folder), stdin=subprocess.DEVNULL,
                    capture_output=True, text=True)
                self.assertEqual((done.returncode, done.stderr), (0, ""))
                return done.stdout

            self.assertEqual(output_of("owner", "set", "Eve"), "VSK-0042 (00:AA:01:01:00:42):\nEve\n")
            self.assertEqual(output_of("owner", "set", "Eve", "--device", "Varda"),
                             "Varda (00:AA:01:01:00:01):\nEve\n")
            self.assertIn("Maximum depth  206.7 ft\n", output_of("dive", "6", "--device", "Varda"))
            self.assertIn("Maximum depth  63.0 m\n",
                          output_of("dive", "6", "--device", "Varda", "--units", "metric"))
            # A simulated computer is another one.
            done = run("owner", "--simulate", env=environment(XDG_CONFIG_HOME=folder))
            self.assertEqual((done.returncode, done.stdout), (0, "Ada Lindqvist\n"))

            run("defaults", "unset", "device", env=environment(XDG_CONFIG_HOME=folder))
            self.assertEqual(file.read_text(), "units = imperial\n")

    def test_defaults_file(self):
        """What is in the file and is not ours stays; what is wrong in it is said."""
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "varda", "defaults")
            file.parent.mkdir()
            file.write_text("# mine\n\n device=00aa01010042\nunits = metric\n")
            env = environment(XDG_CONFIG_HOME=folder)
            self.assertEqual(json.loads(run("defaults", "--json", env=env).stdout),
                             {"file": str(file),
                              "defaults": {"device": "00aa01010042", "units": "metric"}})
            run("defaults", "set", "units", "Imperial", env=env)
            self.assertEqual(file.read_text(),
                             "# mine\n\n device=00aa01010042\nunits = Imperial\n")
            file.write_text("# mine\nunits = feet\n")
            for arguments in (("owner", "--simulate"), ("defaults", "set", "device", "Varda")):
                done = run(*arguments, env=env)
                self.assertEqual((done.returncode, done.stdout), (2, ""))
                self.assertIn(
                    f'"{file}", line 2: "units = feet" is not a valid default\n', done.stderr)
            self.assertEqual(file.read_text(), "# mine\nunits = feet\n")

    def test_defaults_not_written(self):
        """A file that cannot be written is as it was."""
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "varda").write_text("")
            done = run("defaults", "set", "units", "imperial",
                       env=environment(XDG_CONFIG_HOME=folder))
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertIn("cannot be written", done.stderr)

    def test_layout_file(self):
        """A layout goes into the file that was named, whatever the computer calls it."""
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "layout file")
            device = {"layouts": [{"index": 2, "name": "../x", "blob": "00 ff 0a"}]}
            done, _ = simulated(folder, "layouts", "get", "2", "-o", file, device=device)
            self.assertEqual(done.stdout, f"3 bytes written to {file}\n")
            self.assertEqual(file.read_bytes(), b"\x00\xff\x0a")
            done, _ = simulated(folder, "layouts", "get", "2", "-o", Path(folder, "no", "file"),
                                device=device)
            self.assertEqual(done.returncode, 1)
            self.assertIn("cannot be written", done.stderr)
            self.assertEqual(sorted(os.listdir(folder)), ["layout file", "record", "scenario.json"])

    def test_layout_full_disk(self):
        """What was there survives a disk that is full."""
        script = """
            printf old >/mnt/layout
            head -c 100000 /dev/zero >/mnt/rest 2>/dev/null || true
            "$1" layouts get 0 --simulate -o /mnt/layout || echo "exit $?"
            cat /mnt/layout
            echo
            ls /mnt
            """
        done = in_mount_namespace(script, VARDA)
        if done is None:
            self.assertNotIn("CI", os.environ, "CI has to have the right to mount")
            self.skipTest("there is no right to mount")
        self.assertEqual(
            done.stderr, 'varda: "/mnt/layout" cannot be written: No space left on device\n')
        self.assertEqual(done.stdout, "exit 1\nold\nlayout\nrest\n")

    def test_layout_too_large(self):
        """Nor does a file begin that the system does not let grow."""
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (2000, 2000))
        with tempfile.TemporaryDirectory() as folder, \
                serving(folder, devices=[LARGE_LAYOUT]) as (more, _):
            file = Path(folder, "layout")
            file.write_text("old")
            done = run("layouts", "get", "2", "-o", file, **more, preexec_fn=limit)
            self.assertEqual(done.returncode, 1)
            self.assertEqual(done.stdout, "")
            self.assertEqual(done.stderr, f'varda: "{file}" cannot be written: File too large\n')
            self.assertEqual(file.read_text(), "old")
            self.assertEqual(sorted(os.listdir(folder)), ["layout", "record", "scenario.json"])

    def test_layout_link(self):
        """A symbolic link stays one, also to another, also to a file that is still to come."""
        with tempfile.TemporaryDirectory() as folder:
            for name, target in (("one", "two"), ("two", "file"), ("new", "nobody")):
                Path(folder, name).symlink_to(target)
            Path(folder, "file").write_text("old")
            for name in ("one", "new"):
                done = run("layouts", "get", "3", "-o", Path(folder, name),
                           "--simulate=scenarios/layouts.json")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
            links = {name: os.readlink(Path(folder, name)) for name in ("one", "two", "new")}
            self.assertEqual(links, {"one": "two", "two": "file", "new": "nobody"})
            for name in ("file", "nobody"):
                self.assertFalse(Path(folder, name).is_symlink())
                self.assertEqual(Path(folder, name).read_bytes(), b"\0\1\2\3")

    def test_layout_no_file(self):
        """What is no regular file is written to, and stays what it is."""
        def get(name):
            return run("layouts", "get", "3", "-o", name, "--simulate=scenarios/layouts.json")
        with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX) as server:
            pipe = Path(folder, "pipe")
            os.mkfifo(pipe)
            # Without waiting: if the pipe was replaced, nothing is ever written to it.
            reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
            done = get(pipe)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(done.stdout, f"4 bytes written to {pipe}\n")
            self.assertEqual(os.read(reader, 100), b"\0\1\2\3")
            self.assertTrue(stat.S_ISFIFO(os.stat(pipe).st_mode))
            os.close(reader)

            ours, device = pty.openpty()
            os.set_blocking(ours, False)
            tty.setraw(device)
            link = Path(folder, "device")
            link.symlink_to(os.ttyname(device))
            self.assertEqual(get(link).returncode, 0)
            self.assertEqual(os.read(ours, 100), b"\0\1\2\3")
            self.assertTrue(link.is_char_device())
            self.assertTrue(link.is_symlink())
            os.close(ours)
            os.close(device)

            name = Path(folder, "socket")
            server.bind(str(name))
            done = get(name)
            self.assertEqual(done.returncode, 1)
            self.assertEqual(
                done.stderr, f'varda: "{name}" cannot be written: No such device or address\n')
            self.assertTrue(name.is_socket())

    def test_layout_output(self):
        """The bytes as the result, in a pipe or in a file; nothing else is printed then."""
        get = ("layouts", "get", "3", "--simulate=scenarios/layouts.json", "-o")
        for name in ("-", "/dev/stdout"):
            done = run(*get, name)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "\0\1\2\3", ""))
            with tempfile.TemporaryFile() as file:
                done = run(*get, name, capture_output=False, stdout=file)
                self.assertEqual(done.returncode, 0)
                file.seek(0)
                self.assertEqual(file.read(), b"\0\1\2\3")
            done = run(*get, name, "--json")
            self.assertEqual((done.returncode, done.stdout), (2, ""))

    def test_layout_folder(self):
        """A layout's name becomes a file's, but leads nowhere else."""
        with tempfile.TemporaryDirectory() as folder:
            inner = Path(folder, "inner")
            inner.mkdir()
            for index in (0, 1):
                done = run("layouts", "get", str(index), "-o", inner, "--simulate", "nasty-names")
                self.assertEqual((done.returncode, done.stderr), (0, ""))
            self.assertEqual(os.listdir(folder), ["inner"])
            self.assertEqual(
                sorted(os.listdir(inner)), ["0-______etc.layout", "1-__0_x_.layout"]
            )

    def test_layout_arrives(self):
        blob = Path("images/layout.bin").read_bytes()
        with tempfile.TemporaryDirectory() as folder:
            done, frames = simulated(folder, "layouts", "add", "images/layout.bin")
        self.assertEqual(done.returncode, 0, done.stderr)
        chunks = [each[9:] for each in frames if each[8] == 38]
        self.assertEqual([each[0] for each in chunks], [1, 0, 0, 2])
        self.assertEqual(b"".join(each[1:] for each in chunks), blob)

    def test_cut_answers(self):
        """Wherever the link cuts, dives of one length and one depth arrive, each as it is."""
        dives = [{"number": n, "profile": [{"depth": 100, "aux1": n}] * 94} for n in (1, 2, 3)]
        with tempfile.TemporaryDirectory() as folder:
            uncut, _ = simulated(folder, "dives", "--json", device={"dives": dives})
            self.assertEqual(uncut.returncode, 0, uncut.stderr)
            self.assertEqual(uncut.stdout.count('"aux1Value": 2'), 94)
            for link in ({"split": 30}, {"split": 57, "merge": True}, {"merge": True}):
                done, _ = simulated(folder, "dives", "--json", device={"dives": dives} | link)
                self.assertEqual((done.stderr, done.returncode), ("", 0), link)
                self.assertEqual(done.stdout, uncut.stdout, link)

    def test_repeated_answers(self):
        """If everything comes twice, nothing is taken, and that is reported once."""
        fault = {"step": "notification", "command": "Fullsamples", "kind": "duplicate"}
        for link in ({}, {"split": 57, "merge": True}):
            with tempfile.TemporaryDirectory() as folder:
                done, _ = simulated(folder, "dives", device={"dives": 3, "faults": [fault]} | link)
            self.assertEqual(done.returncode, 1, link)
            self.assertEqual(done.stdout.count("\n"), 1, link)
            self.assertEqual(done.stderr.splitlines()[0],
                             "varda: Varda (00:AA:01:01:00:01) sends everything more than once")
            self.assertEqual(done.stderr.count("sends everything more than once"), 1)

    def test_repeated_in_part(self):
        """A frame that came twice is found by asking once more."""
        fault = {"step": "notification", "command": "Syslog", "nth": 2, "times": 1,
                 "kind": "duplicate"}
        log = {"logText": ["one", "two", "three"]}
        with tempfile.TemporaryDirectory() as folder:
            done, frames = simulated(folder, "log", device=log | {"faults": [fault]})
            self.assertEqual((done.stdout, done.returncode), ("one\ntwo\nthree\n", 0), done.stderr)
            self.assertEqual([each[8] for each in frames], [2, 2])
            # Lines can be equal, too.
            done, _ = simulated(folder, "log", device={"logText": ["one", "two", "two"]})
            self.assertEqual((done.stdout, done.returncode), ("one\ntwo\ntwo\n", 0), done.stderr)

    def test_late_rest(self):
        """A pause within a frame loses the rest: nothing makes a result of what there is."""
        cases = {
            "dive 1": ("Fullsamples", "dive", "1"), "logbook": ("Logbook", "logbook"),
            "layout 0": ("LayoutGet", "layouts", "get", "0"),
            "list of layouts": ("LayoutList", "layouts"), "log": ("Syslog", "log"),
            "battery history": ("BatteryInformation", "battery"), "owner": ("Owner", "owner"),
            "tissues": ("Diver", "tissues"), "configuration": ("Computer_new", "config"),
        }
        layout = {"index": 0, "name": "x" * 40, "blob": "00" * 100}

        def late(name, *more):
            command, *arguments = cases[name]
            fault = {"step": "notification", "command": command, "nth": 2, "times": 1,
                     "kind": "late", "ms": 1500}
            device = {"split": 22, "dives": 1, "layouts": [layout], "faults": [fault]}
            with tempfile.TemporaryDirectory() as folder:
                return simulated(folder, *arguments, *more, device=device)[0]

        with ThreadPoolExecutor() as pool:
            for name, done in zip(cases, pool.map(lambda name: late(name, "--no-retry"), cases)):
                self.assertEqual((done.stdout, done.returncode), ("", 1), name + done.stderr)
                self.assertEqual(done.stderr.splitlines()[0],
                                 f"varda: {name}: the computer's answer lacks a part, "
                                 "which came too late or not at all")
            for name, done in zip(cases, pool.map(late, cases)):
                self.assertEqual((done.stderr, done.returncode), ("", 0), name)
                self.assertNotEqual(done.stdout, "", name)

    def test_link_restored(self):
        """A link that is lost on the way is restored; no dive is missing or comes twice."""
        fault = {"step": "notification", "command": "Fullsamples", "nth": 12, "times": 1,
                 "kind": "drop"}
        device = {"dives": {"count": 3}, "split": 60, "faults": [fault]}
        with tempfile.TemporaryDirectory() as folder:
            whole, _ = simulated(folder, "dives", device=device | {"faults": []})
            done, _ = simulated(folder, "dives", device=device)
            self.assertEqual((done.stdout, done.stderr, done.returncode), (whole.stdout, "", 0))
            done, _ = simulated(folder, "dives", "--no-retry", device=device)
            self.assertEqual(done.returncode, 4)
            self.assertTrue(whole.stdout.startswith(done.stdout))

    def test_long_answer(self):
        """An answer arrives whole, also one of more packets than a session keeps."""
        with tempfile.TemporaryDirectory() as folder:
            done, _ = simulated(folder, "log", device={"split": 16, "logText": ["x" * 7] * 4097})
            self.assertEqual((done.stderr, done.returncode), ("", 0))
            self.assertEqual(done.stdout, "xxxxxxx\n" * 4097)

    def test_set_time(self):
        """The computer gets the local wall-clock time, as if it were that of Greenwich."""
        done = run("time", "set", "--simulate", "--json", env=environment(TZ="Asia/Kathmandu"))
        self.assertEqual(done.returncode, 0, done.stderr)
        # Nobody runs a test for an hour; Nepal is 5:45 ahead.
        ahead = json.loads(done.stdout)["computerTime"] - time.time()
        self.assertAlmostEqual(ahead, 5.75 * 3600, delta=600)

    def test_long_owner(self):
        """33 bytes: the computer says no; 201 bytes: no write could carry them."""
        done = run("owner", "set", "x" * 33, "--simulate")
        self.assertEqual((done.returncode, done.stderr),
                         (1, "varda: owner: the computer refused\n"))
        self.assertEqual(run("owner", "set", "x" * 201, "--simulate").returncode, 2)

    def interrupted(self, more, *arguments, until, signals):
        """Sends signals to a command that has said something; its status and the rest it says."""
        with subprocess.Popen([VARDA, *arguments, "--verbose"], **more, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE) as command:
            said = ""
            for line in command.stderr:
                said += line
                if until in line:
                    signals(command)
            return command.wait(), command.stdout.read(), said

    def test_interrupt(self):
        """Ctrl-C lets the computer go before the process ends, also with two signals for one."""
        silent = {"faults": [{"step": "answer", "command": "Owner", "kind": "silent"}]}
        for signals in ([signal.SIGINT], [signal.SIGINT, signal.SIGTERM]):
            def send(command, signals=signals):
                for each in signals:
                    command.send_signal(each)
            with tempfile.TemporaryDirectory() as folder, \
                    serving(folder, devices=[silent], disconnectDelay=1000) as (more, events):
                status, result, said = self.interrupted(
                    more, "info", until="-> dc dc 01 00 6b be 00 00 16", signals=send)
                self.assertEqual(events()[-2:], ["Disconnect", "disconnected"], said)
            # Two threads may take two signals at the same time.
            self.assertIn(status, [128 + each for each in signals], said)
            self.assertEqual(result, "")
            self.assertEqual(said.count("varda: interrupted\n"), 1)

    def test_interrupt_connecting(self):
        """Also when it is still about to connect."""
        slow = {"faults": [{"step": "discover", "kind": "silent"}]}
        with tempfile.TemporaryDirectory() as folder, \
                serving(folder, devices=[slow], disconnectDelay=1000) as (more, events):
            with subprocess.Popen([VARDA, "info"], **more, stderr=subprocess.PIPE) as command:
                while "connected" not in events():
                    time.sleep(0.01)
                command.send_signal(signal.SIGINT)
                self.assertEqual(command.wait(), 128 + signal.SIGINT)
            self.assertEqual(events()[-2:], ["Disconnect", "disconnected"])

    def test_interrupt_again(self):
        """Who does not want to wait for a link that stays up sends another one."""
        stuck = {"faults": [{"step": "answer", "command": "Owner", "kind": "silent"},
                            {"step": "disconnect", "kind": "silent"}]}
        with tempfile.TemporaryDirectory() as folder, \
                serving(folder, devices=[stuck]) as (more, events):
            def twice(command):
                command.send_signal(signal.SIGINT)
                while "Disconnect" not in events():
                    time.sleep(0.01)
                time.sleep(0.5)  # two within that time count as one
                command.send_signal(signal.SIGINT)
            status, _, said = self.interrupted(
                more, "info", until="-> dc dc 01 00 6b be 00 00 16", signals=twice)
            self.assertEqual(status, -signal.SIGINT, said)

    def test_interrupted_document(self):
        """What has been printed is a whole document."""
        with tempfile.TemporaryDirectory() as folder:
            slow = json.loads(Path("scenarios/slow-dives.json").read_text(encoding="utf-8"))
            with serving(folder, **slow) as (more, _), \
                    subprocess.Popen([VARDA, "dives", "--json"], **more, stdout=subprocess.PIPE,
                                     stderr=subprocess.PIPE) as command:
                result = ""
                for line in command.stdout:
                    result += line
                    # The last of the first dive: a write that waits for its reader may be cut off.
                    if line == '            "count": 1\n':
                        command.send_signal(signal.SIGTERM)
                        command.send_signal(signal.SIGTERM)
                self.assertEqual(command.wait(), 128 + signal.SIGTERM)
                self.assertEqual(command.stderr.read(), "varda: interrupted\n")
        self.assertEqual([each["diveNumber"] for each in json.loads(result)["dives"]], [1])

    def test_link_end(self):
        """A command ends after its link, also where the session was done with that before."""
        for arguments, fault, status in (
                (("reset", "--yes"), None, 0),
                (("owner",), {"step": "write", "command": "Owner", "kind": "refuse"}, 1),
                (("owner",), {"step": "answer", "command": "Owner", "kind": "wrongCrc"}, 1),
                (("owner",), {"step": "answer", "command": "Owner", "kind": "silent"}, 5)):
            with self.subTest(arguments=arguments, fault=fault), \
                    tempfile.TemporaryDirectory() as folder:
                device = {"faults": [fault] if fault else []}
                with serving(folder, devices=[device], disconnectDelay=1000) as (more, events):
                    done = run(*arguments, **more)
                    self.assertEqual(events()[-1], "disconnected")
                    self.assertEqual(done.returncode, status, done.stderr)
                    done = run("time", **more)
                    self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_verbose(self):
        """The frames are shown where they do not mix with the result."""
        done = run("info", "--simulate", "--verbose")
        self.assertEqual(done.returncode, 0)
        self.assertRegex(
            done.stderr, r"(?m)^ +\d+\.\d{3} varda\.wire: -> dc dc 01 00 bd dc 00 00 01$")
        self.assertRegex(done.stderr, r"(?m)^ +\d+\.\d{3} varda\.wire: <- dc dc ")
        self.assertNotIn("varda.", done.stdout)
        self.assertEqual(run("info", "--simulate").stderr, "")

    def test_record(self):
        """What happened is in the file, and nothing private unless it is wanted."""
        with tempfile.TemporaryDirectory() as folder:
            file = os.path.join(folder, "trace.jsonl")
            for extra, private in ((), False), (("--unredacted",), True):
                done = run("owner", "--simulate", "--record", file, *extra)
                self.assertEqual((done.returncode, done.stdout, done.stderr),
                                 (0, "Ada Lindqvist\n", ""))
                with open(file, encoding="utf-8") as trace:
                    text = trace.read()
                lines = [json.loads(line) for line in text.splitlines()]
                self.assertEqual(lines[0]["format"], "varda-trace")
                self.assertEqual(lines[0]["redacted"], not private)
                self.assertEqual([line["name"] for line in lines[1:] if line["event"] == "job"],
                                 ["owner"])
                self.assertEqual("00:AA:01:01:00:01" in text, private)
                self.assertEqual(b"Ada Lindqvist".hex() in text, private)

    def test_record_nowhere(self):
        """A recording that cannot be is reported, before or afterwards, and costs no result."""
        done = run("owner", "--simulate", "--record", "/dev/full")
        self.assertEqual((done.returncode, done.stdout), (0, "Ada Lindqvist\n"))
        self.assertEqual(done.stderr, "varda: the recording has ended: No space left on device\n")
        done = run("owner", "--simulate", "--record", "/nowhere/trace")
        self.assertEqual((done.returncode, done.stdout), (2, ""))
        self.assertEqual(done.stderr, 'varda: "/nowhere/trace" cannot be written: '
                                      "No such file or directory\n")
        done = run("dives", "--saved", "--record", "/dev/null")
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr, "varda: there is nothing to record, "
                                      "because no computer is used\n")
        done = run("owner", "--simulate", "--unredacted")
        self.assertEqual(done.returncode, 2)
        self.assertEqual(done.stderr, 'varda: "--unredacted" needs "--record FILE"\n')

    def test_record_into_pipe(self):
        """A reader who has gone or does not read holds nothing up."""
        with tempfile.TemporaryDirectory() as folder:
            pipe = os.path.join(folder, "pipe")
            os.mkfifo(pipe)
            reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
            fcntl.fcntl(reader, fcntl.F_SETPIPE_SZ, 4096)
            done = run("dives", "--simulate", "--json", "--record", pipe)
            self.assertEqual(done.returncode, 0)
            self.assertEqual(len(json.loads(done.stdout)["dives"]), 12)
            self.assertIn("varda: the recording has ended: ", done.stderr)
            os.close(reader)

    def test_full_disk(self):
        """A result that is not written is not a success; the system's reason is said."""
        for arguments in (("info", "--simulate"), ("info", "--simulate", "--json"),
                          ("dives", "--simulate=scenarios/dives.json", "--json"),
                          ("scan", "--simulate", "--timeout=1"), ("--help",), ("--version",)):
            with open("/dev/full", "w", encoding="utf-8") as full:
                done = run(*arguments, capture_output=False, stdout=full, stderr=subprocess.PIPE)
            self.assertEqual(done.returncode, 1, arguments)
            self.assertEqual(done.stderr, "varda: the result could not be written: "
                                          "No space left on device\n", arguments)

    def test_reader_gone(self):
        """Nor is one that nobody waits for; but that is said by the status alone."""
        ours, theirs = os.pipe()
        os.close(ours)
        for arguments in (("info", "--simulate"), ("dives", "--simulate", "--json"),
                          ("scan", "--simulate", "--timeout=1")):
            done = run(*arguments, capture_output=False, stdout=theirs, stderr=subprocess.PIPE)
            self.assertEqual((done.returncode, done.stderr), (128 + signal.SIGPIPE, ""))
        os.close(theirs)

    def test_head(self):
        """Who has seen enough ends it; the computer is let go in order."""
        with tempfile.TemporaryDirectory() as folder, \
                serving(folder, devices=[{"dives": {"count": 30}}]) as (more, events):
            with subprocess.Popen([VARDA, "dives"], **more, stdout=subprocess.PIPE,
                                  stderr=subprocess.PIPE) as command:
                self.assertTrue(command.stdout.readline().startswith("NUMBER"))
                command.stdout.close()
                self.assertEqual(command.stderr.read(), "")
                self.assertEqual(command.wait(), 128 + signal.SIGPIPE)
            self.assertEqual(events()[-1], "disconnected")

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
                 '"$0" info --json && "$0" info --json', VARDA],
                env=environment(), stdin=subprocess.DEVNULL, capture_output=True, text=True,
            )
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.returncode, 0)
        self.assertEqual(done.stdout.count('"serialNumber"'), 2)

    def test_odd_temporary_folder(self):
        """Where the simulation's socket is to lie, there may be any folder."""
        for name in ("with a space", ",;%&<", "a" * 100):
            with self.subTest(name), tempfile.TemporaryDirectory() as folder:
                place = Path(folder, name)
                place.mkdir()
                done = run("owner", "--simulate", env=environment(TMPDIR=str(place)))
                self.assertEqual(done.stderr, "")
                self.assertEqual(done.stdout, "Ada Lindqvist\n")


RESULT = unittest.main(exit=False).result
sys.exit(77 if RESULT.skipped else not RESULT.wasSuccessful())
