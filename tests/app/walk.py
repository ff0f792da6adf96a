#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A diver walks through the app: with what a screen reader sees, and a keyboard.

walk.py APP SIMULATOR"""

import json
import os
import subprocess
import sys
import time
from pathlib import Path

from desktop import SPACE, Desktop, missing

ADDRESS = "00:AA:01:01:00:01"
# After the time that the computer starts with
NEXT_DAY = 1716021000
# The fourth dive never comes.
STUCK = [{"step": "answer", "command": "Fullsamples", "nth": 4, "times": 0, "kind": "silent"}]
# The computer is out of reach from the middle of a dive on.
GONE = [{"step": "notification", "command": "Fullsamples", "nth": 30, "kind": "drop"},
        {"step": "connect", "nth": 2, "times": 0, "kind": "refuse"}]


def call_simulator(method, argument):
    return subprocess.run(
        ["dbus-send", f"--bus={os.environ['DBUS_SYSTEM_BUS_ADDRESS']}", "--print-reply=literal",
         "--dest=org.varda.Simulator", "/org/varda/Simulator", f"org.varda.Simulator1.{method}",
         f"string:{argument}"], check=True, stdout=subprocess.PIPE, text=True).stdout


def load(faults):
    device = {"address": ADDRESS, "dives": 8, "clock": "2024-05-17T08:30:00", "faults": faults}
    call_simulator("Load", json.dumps({"devices": [device]}))


def synchronise(reader):
    """Cancels it, loses the link, and gets all dives in the end."""
    load(STUCK)
    reader.press("push button", "Go to the computer")
    reader.press("push button", "Search")
    reader.press("push button", "Varda")
    reader.press("push button", "Synchronise")
    reader.wanted("label", "Dive 4 of 8")
    reader.press("push button", "Cancel the synchronisation")
    reader.wanted("alert", "Cancelled. 3 new dives saved.")

    load(GONE)
    reader.press("push button", "Synchronise")
    card = reader.wanted("panel", "Connection")
    lost = reader.wanted("alert", "The connection was lost", card)
    reader.wanted("alert", "1 new dive saved.", card)
    load([])
    reader.press("push button", "Try again", lost)
    reader.wanted("alert", "4 new dives saved.", card)
    if reader.find("alert", "The connection was lost", card):
        sys.exit("the failure is still shown")


def set_clock(reader):
    card = reader.wanted("panel", "Clock")
    reader.wanted("label", "5/17/24", card)
    reader.press("push button", "Set to now", card)
    reader.wanted("alert", "The clock is set.", card)
    reader.wanted("label", "The same as on this machine.", card)
    clock = json.loads(call_simulator("State", ADDRESS))["clock"]
    if clock < NEXT_DAY:
        sys.exit(f"the clock is at {clock}")


def export(reader):
    """Opens a dive and writes it to a file, in the place of another one."""
    # The app was started there, and its dialog begins there.
    file = Path(os.environ["HOME"], "eighth.json")
    file.write_text("precious")
    reader.press("push button", "Show the dives")
    reader.press("list item", "Dive 8, ")
    reader.wanted("heading", "Dive 8")
    reader.press("push button", "Export")
    dialog = reader.wanted("dialog", "Export 1 dive")
    reader.press("radio button", "JSON", dialog)
    reader.press("push button", "Choose a place", dialog)
    label = reader.wanted("label", "File name")
    chooser = label.get_parent()
    reader.type(reader.wanted("text", "", chooser), "eighth.json")
    reader.focus(reader.wanted("push button", "Save", chooser))
    reader.key(SPACE)
    question = reader.wanted("dialog", "Replace this file?")
    if file.read_text() != "precious":
        sys.exit("the file was replaced before the question")
    reader.press("push button", "Replace", question)
    reader.wanted("alert", f"1 dive written to {file}")
    dives = json.loads(file.read_text())["dives"]
    found = [(dive["diveNumber"], dive["tenths1"]) for dive in dives]
    if found != [(8, 21.0)]:
        sys.exit(f"another dive was written: {found}")
    reader.press("push button", "Close", reader.wanted("dialog", "Export 1 dive"))


def main(app, simulator):
    lacks = missing()
    if lacks:
        print(f"left out: {lacks}")
        sys.exit(1 if "CI" in os.environ else 77)
    begin = time.monotonic()
    with Desktop(simulator) as desktop:
        # Qt counts what has to be scrolled to as hidden; in a high window that is little.
        running = desktop.run(
            [app, "--simulated", "-qwindowgeometry", "1200x1600+0+0"], cwd=desktop.folder)
        reader = desktop.reader
        try:
            for step in (synchronise, set_clock, export):
                step(reader)
                print(f"{step.__name__}, after {time.monotonic() - begin:.0f} s", flush=True)
            if running.poll() is not None:
                sys.exit(f"the app ended with {running.returncode}")
        except BaseException:
            print(reader.describe(), file=sys.stderr)
            picture = Path("walk.png").resolve()
            desktop.take_picture(picture)
            print(f"what was seen then: {picture}", file=sys.stderr)
            raise


main(*sys.argv[1:])
