#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""cases.py [TEXT...]: the library and the command against the real Linux Bluetooth stack.

Runs in the guest. A case is a function, in the order in which they stand; with arguments, those
whose names have one of the texts. hci0 is the host's adapter, hci1 the computer's.
"""

import contextlib
import hashlib
import json
import os
import queue
import re
import shutil
import signal
import struct
import subprocess
import sys
import threading
import time
from pathlib import Path

BIN = Path("/build/bin")
ADDRESS = "00:AA:01:01:00:01"
LONG = 120  # s; the machine is emulated, and what is on it has time-outs of its own

CLOCK = "2024-05-17T08:30:00"


class Wrong(Exception):
    """What a case found."""


def check(holds, text):
    if not holds:
        raise Wrong(text)


def equal(found, expected, what):
    check(found == expected, f"{what} is {found!r} and not {expected!r}")


def same(found, expected, what):
    """Of long texts only where they differ is shown."""
    at = len(os.path.commonprefix([found, expected]))
    equal(found[at:at + 80], expected[at:at + 80], f"{what}, from {at} on,")


# --- those who take part


class Process:
    """Somebody who is told lines, and tells lines."""

    def __init__(self, *command, **more):
        self.lines = queue.Queue()
        self.told = []
        self.process = subprocess.Popen(
            [str(each) for each in command], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, text=True, **more)
        threading.Thread(target=self.listen, daemon=True).start()
        people.append(self)

    def listen(self):
        for line in self.process.stdout:
            self.lines.put(line.rstrip("\n"))
        self.lines.put(None)

    def tell(self, order):
        self.told.append("> " + order)
        self.process.stdin.write(order + "\n")
        self.process.stdin.flush()

    def hear(self, *patterns, timeout=LONG):
        """The next line that is like one of these; all before it is passed over."""
        end = time.monotonic() + timeout
        while True:
            try:
                line = self.lines.get(timeout=max(0.0, end - time.monotonic()))
            except queue.Empty:
                raise Wrong(f"{' or '.join(patterns)} did not come within {timeout} s") from None
            if line is None:
                self.lines.put(None)
                raise Wrong(f"{' or '.join(patterns)} did not come before the end")
            self.told.append(line)
            if any(re.fullmatch(each, line) for each in patterns):
                return line

    def hears_nothing(self, pattern, seconds):
        try:
            line = self.hear(pattern, timeout=seconds)
        except Wrong:
            return
        raise Wrong(f"told: {line}")

    def heard(self):
        """All that has come meanwhile."""
        lines = []
        with contextlib.suppress(queue.Empty):
            while True:
                lines.append(self.lines.get_nowait())
        self.told += lines
        return lines

    def ask(self, question):
        self.tell(question)
        return self.hear(question + " .*").partition(" ")[2]

    def stop(self, number=signal.SIGTERM):
        self.process.send_signal(number)
        self.process.wait(LONG)


people = []


def scenario(**device):
    device = {"clock": CLOCK, **device}
    file = Path(f"/tmp/scenario-{len(people)}.json")
    file.write_text(json.dumps({"devices": [device]}))
    return file


class Radio(Process):
    """The computer through the system's own peripheral role."""

    def __init__(self, **device):
        self.record = Path("/tmp/record")
        super().__init__(BIN / "varda-simulator", "--radio", ADDRESS, "--record", self.record,
                         "--scenario", scenario(**device))
        self.hear(f"{ADDRESS} is on the air as .*")

    def frames(self):
        events = [json.loads(line) for line in self.record.read_text().splitlines()]
        return [bytes.fromhex(each["hex"]) for each in events if each["event"] == "frame"]


class Peripheral(Process):
    """The computer behind a controller without a stack, that can misbehave."""

    def __init__(self, *options, **device):
        super().__init__("/vm/peripheral.py", *options, scenario(**device))
        self.hear("advertising")


class Application(Process):
    """Uses the library."""

    def __init__(self, *before):
        super().__init__(*before, BIN / "varda-vm-application")

    def connect(self, order="auto gatt"):
        self.tell(order)
        self.hear("Connected")

    def job(self, name, end=None):
        self.tell(f"job {name}")
        self.hear(f"endCommand {end or name}")


class Jobs(Process):
    """Uses the library's jobs, which connect by themselves."""

    def __init__(self, *before):
        super().__init__(*before, BIN / "varda-vm-computer-application")

    def ends(self, name, how="NoError None"):
        equal(self.hear(f"ended {name} .*", timeout=5 * LONG), f"ended {name} {how}", "the end")

    def job(self, name, how="NoError None"):
        self.tell(f"job {name}")
        self.ends(name, how)

    def letgo(self):
        self.tell("letgo")
        self.ends("letgo")


def varda(*arguments, status=0, seconds=LONG * 5):
    """The command; its two outputs."""
    done = subprocess.run([str(BIN / "varda"), *arguments], stdin=subprocess.DEVNULL, text=True,
                          capture_output=True, timeout=seconds, check=False)
    check(done.returncode == status,
          f"varda {' '.join(arguments)}: status {done.returncode} and not {status}: {done.stderr}")
    return done.stdout, done.stderr


def bluez(*call):
    return subprocess.run(["busctl", "--system", *call], capture_output=True, text=True, check=False)


def power(on):
    bluez("set-property", "org.bluez", "/org/bluez/hci0", "org.bluez.Adapter1", "Powered", "b",
          "true" if on else "false")


def bluetoothd(order):
    done = subprocess.run(["sh", "-c", f". /vm/guest/bluetooth; bluetoothd_{order}"],
                          stdin=subprocess.DEVNULL, capture_output=True, text=True, check=False)
    check(done.returncode == 0, f"bluetoothd: {done.stdout}{done.stderr}")


def forget():
    """As if the two had never met: bluetoothd keeps what it was connected to, also on its disk."""
    for adapter, device in (("hci0", "00_AA_01_01_00_01"), ("hci1", "00_AA_01_00_00_00")):
        bluez("call", "org.bluez", f"/org/bluez/{adapter}", "org.bluez.Adapter1", "RemoveDevice",
              "o", f"/org/bluez/{adapter}/dev_{device}")
    for cache in Path("/var/lib/bluetooth").glob("*/cache"):
        shutil.rmtree(cache)


# --- what is done in several cases

# In this order, so that what is changed is read before and after; the link ends with the last.
JOBS = {
    **{name: name for name in (
        "Identification", "BootloaderVersion", "Serialnumber", "Time", "Sensors", "SimulParams",
        "Computer", "Computer_new", "Diver", "Owner", "Syslog", "SyslogBin")},
    "SetTime": "Set_time", "SetPressure": "Set_sensors", "SetOwner": "Set_owner",
    "Gases0": "GetGases", "Gases1": "GetGases", "Marlo": "MarloSet",
    "Battery": "BatteryInformation", "Logbook": "Logbook", "Samples": "Fullsamples",
    "LayoutGet": "LayoutGet", "LayoutActiveGet": "LayoutActiveGet",
    "LayoutActiveSet": "LayoutActiveSet", "LayoutAdd": "LayoutAdd", "LayoutRemove": "LayoutRemove",
    "LayoutRemoveAll": "LayoutRemoveAll", "LayoutList": "LayoutList",
    "DeleteLastDive": "DeleteLastDive", "EraseDives": "DeleteLastDive",
    "OldFirmware": "End_program", "Firmware": "End_program", "Bootloader": "End_program",
}


def all_jobs(application, mode):
    """What the session has learned after each."""
    application.connect(f"auto {mode}")
    learned = {}
    for name, end in JOBS.items():
        application.job(name, end)
        learned[name] = application.ask("digest")
    application.tell("job SuperUser")  # of whose end nobody is told
    application.job("Identification")
    application.tell("job Reset")
    application.hear("disconnectController")
    return learned


def compare_jobs(**device):
    """Every job gives what it gives against the simulated daemon."""
    mode = device.get("mode", "gatt")
    simulated = all_jobs(Application(BIN / "varda-simulator", "--scenario", scenario(**device),
                                     "--"), mode)
    real = all_jobs(Application(), mode)
    for name, learned in simulated.items():
        equal(real[name], learned, f"what {name} has learned")
    check(len(set(simulated.values())) > 15, "the jobs have learned too little")


def image(size):
    """A firmware with its header at byte 512."""
    data = bytearray(hashlib.shake_128(b"firmware").digest(size))
    struct.pack_into("<III", data, 512, 0xDEADBEEF, 0, 0x02000161)
    file = Path("/tmp/firmware.bin")
    file.write_bytes(data)
    return file, bytes(data)


def works(application, peripheral=None):
    """A new connection is as good as the first."""
    application.connect()
    application.job("Owner")
    application.tell("letgo")
    application.hear("disconnectController")
    if peripheral:
        peripheral.hear("link down .*")


# The same for jobs, which end one after the other with what each has read or written.
READ = ("Identification", "Time", "Sensors", "Computer", "Computer_new", "Diver", "Owner", "Syslog",
        "SyslogBin", "Gases", "Battery", "Logbook", "Samples", "Dives", "LayoutList", "LayoutGet",
        "LayoutActiveGet")
WRITTEN = ("SetTime", "SetPressure", "SetOwner", "Marlo", "SuperUser", "LayoutActiveSet",
           "LayoutAdd", "LayoutRemove", "LayoutList", "LayoutActiveGet", "LayoutRemoveAll",
           "LayoutList", "DeleteLastDive", "Logbook", "EraseDives", "Logbook", "Time", "Sensors",
           "Owner", "OldFirmware", "Firmware", "Bootloader", "Identification", "Reset", "Owner")


def all_computer_jobs(application):
    """What each has reported, as (name, report)."""
    reports = []
    for name in READ + WRITTEN:
        application.job(name)
        reports.append((name, application.ask("digest")))
    application.letgo()
    return reports


def simulated(*arguments, **device):
    return Jobs(BIN / "varda-simulator", "--scenario", scenario(**device), "--", *arguments)


def compare_computer_jobs(**device):
    expected = all_computer_jobs(simulated(**device))
    for one, other in zip(all_computer_jobs(Jobs()), expected):
        same(one[1], other[1], f"what {one[0]} has reported")
    check(len({report for _, report in expected}) > 20, "the jobs have reported too little")


def dives_of(application):
    application.job("Dives")
    return application.ask("digest")


def computer_works(application, peripheral):
    """The next job is as good as the first."""
    application.job("Owner")
    application.letgo()
    peripheral.hear("link down .*")


# --- through the system's peripheral role


def radio_scan():
    Radio()
    out, _ = varda("scan", "--json", "--timeout", "8")
    found = {each["address"]: each for each in json.loads(out)["devices"]}
    equal(found[ADDRESS]["name"], "Varda", "the name")


def radio_jobs_gatt():
    Radio()
    compare_jobs()


def radio_jobs_sps():
    Radio(mode="sps", model="tidemar")
    compare_jobs(mode="sps", model="tidemar")


def radio_information():
    for model in ("varda", "vskm"):
        radio = Radio(model=model)
        out, _ = varda("info", "--json")
        simulated, _ = varda("info", "--json", "--simulate", str(scenario(model=model)))
        radio.stop()
        real, expected = json.loads(out), json.loads(simulated)
        equal(real["device"]["address"], expected["device"]["address"], "the address")
        real.pop("device"), expected.pop("device")
        equal(real, expected, f"the information of {model}")
        forget()


def radio_hundred_dives():
    dives = {"count": 100, "samples": 150}
    Radio(dives=dives)
    # Beside it, for both wait a second after each dive.
    with subprocess.Popen([BIN / "varda", "dives", "--json", "--simulate", scenario(dives=dives)],
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE) as simulated:
        out, _ = varda("dives", "--json", seconds=1200)
        expected = json.load(simulated.stdout)["dives"]
    real = json.loads(out)["dives"]
    equal(len(real), 100, "the number of dives")
    for one, other in zip(real, expected):
        equal(one, other, "a dive")


def radio_firmware():
    radio = Radio()
    file, data = image(32 * 1024)
    varda("firmware", "upload", str(file), "--yes")
    blocks = [each[9:] for each in radio.frames() if each[8] == 31]
    equal(hashlib.sha256(b"".join(blocks)).hexdigest(), hashlib.sha256(data).hexdigest(),
          "the image's checksum")


def radio_reconnect_at_once():
    Radio()
    application = Application()
    application.connect()
    for _ in range(2):
        application.tell("letgo")
        application.connect()
        application.job("Owner")
    application.tell("forget")
    application.connect(f"to {ADDRESS} gatt")
    application.job("Owner")


def radio_commands_at_once():
    Radio()
    for _ in range(3):
        out, _ = varda("owner")
        equal(out, "Ada Lindqvist\n", "the owner")


# --- against a peripheral that can misbehave


def scan_of_unknown():
    Peripheral()
    out, _ = varda("scan", "--json", "--timeout", "8")
    equal([each["address"] for each in json.loads(out)["devices"]], [ADDRESS], "what is in range")


def jobs_gatt():
    Peripheral(model="vskm")
    compare_jobs(model="vskm")


def firmware():
    peripheral, application = Peripheral(), Application()
    file, data = image(8 * 1024)
    application.connect()
    application.job("Identification")
    application.job("BootloaderVersion")
    application.tell(f"upload {file}")
    application.hear("endCommand End_program")
    equal(peripheral.ask("firmware"), data.hex(), "the image")


def credits_counted():
    Peripheral(mode="sps", credits="counted")
    varda("owner", "--mode", "sps")
    application = Application()
    application.connect("auto sps")
    application.job("Identification")


def small_mtu():
    Peripheral(mtu=64, dives=3)
    out, _ = varda("dives", "--json")
    expected, _ = varda("dives", "--json", "--simulate", str(scenario(dives=3)))
    equal(json.loads(out)["dives"], json.loads(expected)["dives"], "the dives")


def dropped_when_connected():
    peripheral, application = Peripheral(), Application()
    application.tell("auto gatt")
    peripheral.hear("link up")
    peripheral.tell("drop")
    application.hear("disconnectController", "NotCreated")
    application.tell("forget")
    works(application, peripheral)


def dropped_when_subscribed():
    peripheral, application = Peripheral(), Application()
    application.tell("auto gatt")
    peripheral.hear("cccd data 0100")
    peripheral.tell("drop")
    application.hear("disconnectController", "NotCreated")
    application.tell("forget")
    works(application, peripheral)


def dropped_instead_of_an_answer():
    Peripheral(faults=[{"step": "answer", "command": "Owner", "nth": 1, "kind": "drop"}])
    application = Application()
    application.connect()
    application.tell("job Owner")
    application.hear("message Device disconnected")
    application.hear("disconnectController")
    application.connect("reconnect")
    application.job("Owner")


def dropped_within_an_answer():
    Peripheral(dives=6, faults=[{"step": "notification", "command": "Fullsamples", "nth": 60,
                                 "kind": "drop"}])
    out, error = varda("dives", "--no-retry", status=4)
    check(1 < out.count("\n") < 7, f"{out.count(chr(10)) - 1} dives came")
    equal(error.splitlines()[0], f"varda: the link to Varda ({ADDRESS}) was lost", "the reason")
    out, _ = varda("dives")
    equal(out.count("\n"), 7, "the number of lines")


def dropped_within_an_upload():
    peripheral = Peripheral(faults=[{"step": "answer", "command": "ProgramUpdate", "nth": 20,
                                     "kind": "drop"}])
    file, data = image(8 * 1024)
    varda("firmware", "upload", str(file), "--yes", "--no-retry", status=4)
    equal(peripheral.ask("firmware"), "", "the image so far")
    varda("firmware", "upload", str(file), "--yes")
    equal(peripheral.ask("firmware"), data.hex(), "the image")


def lost_while_idle():
    peripheral, application = Peripheral(), Application()
    application.connect()
    peripheral.tell("lose")
    application.hear("disconnectController")
    application.connect("reconnect")
    application.job("Owner")


def cccd_refused(code):
    peripheral, application = Peripheral("--refuse-cccd", code), Application()
    application.tell("auto gatt")
    application.hear("NotCreated", "disconnectController")
    application.tell("forget")
    peripheral.hear("link down .*")
    _, error = varda("owner", status=4)
    check(f"could not connect to Varda ({ADDRESS})" in error or "was lost" in error, error)


def cccd_not_permitted():
    cccd_refused("0x03")


def cccd_wants_pairing():
    cccd_refused("0x05")


def cccd_refused_by_application():
    cccd_refused("0x80")


def cccd_silent():
    peripheral, application = Peripheral("--ignore-cccd"), Application()
    application.tell("auto gatt")
    application.hear("message BLE error: Notifications activation timed out — peripheral not "
                     "responding")
    application.hear("NotCreated")
    peripheral.hear("link down .*")
    _, error = varda("owner", status=4)
    check("its notifications could not be switched on" in error, error)


def mute():
    Peripheral("--mute")
    _, error = varda("owner", "--timeout", "50", status=5)
    check("was found, but not connected within 50 s" in error, error)


def off_and_unknown():
    peripheral = Peripheral()
    peripheral.tell("off")
    peripheral.hear("off")
    varda("owner", status=3)


def off_while_known():
    peripheral, application = Peripheral(), Application()
    works(application, peripheral)
    peripheral.tell("off")
    peripheral.hear("off")
    out, _ = varda("scan", "--timeout", "5")
    check(re.search(f"{ADDRESS} +-  Varda", out), f"the scan tells: {out}")
    application.tell(f"to {ADDRESS} gatt")
    application.hear("NotCreated")
    varda("owner", status=4)
    peripheral.tell("on")
    peripheral.hear("advertising")
    works(application, peripheral)


def reconnect_at_once():
    peripheral, application = Peripheral(), Application()
    application.connect()
    application.tell("letgo")
    application.connect(f"to {ADDRESS} gatt")
    application.job("Owner")
    peripheral.tell("drop")
    application.hear("disconnectController")
    application.connect("reconnect")
    application.job("Owner")


def bluetoothd_killed():
    """A session learns it from its own time-out; the command waits for the service to come back."""
    peripheral, application = Peripheral(dives=8), Application()
    application.connect()
    bluetoothd("down KILL")
    application.hears_nothing("disconnectController|message .*", 5)
    application.tell("job Owner")
    application.hear("message Receive timeout")
    application.hear("disconnectController")
    bluetoothd("up")
    peripheral.hear("link down .*")
    application.tell("forget")
    works(application, peripheral)
    application.stop()

    command = Process(BIN / "varda", "dives")
    command.hear(" +1 .*")
    bluetoothd("down KILL")
    command.hear("varda: the system's Bluetooth service does not run, or has ended")
    equal(command.process.wait(LONG), 6, "the status")
    bluetoothd("up")
    peripheral.hear("link down .*")

    command = Process(BIN / "varda", "dives")
    command.hear(" +1 .*")
    bluetoothd("down KILL")
    bluetoothd("up")
    command.hear(" +8 .*")
    equal(command.process.wait(LONG), 0, "the status")


def bluetoothd_restarted():
    peripheral, application = Peripheral(), Application()
    application.connect()
    bluetoothd("down")  # in order: it ends its links before
    application.hear("disconnectController")
    peripheral.hear("link down .*")
    bluetoothd("up")
    application.tell("forget")
    works(application, peripheral)
    application.stop()
    varda("owner")


def no_bluetoothd():
    bluetoothd("down")
    try:
        application = Application()
        application.tell("auto gatt")
        application.hear("Error")
        _, error = varda("owner", status=6)
        check("Bluetooth service does not run" in error, error)
    finally:
        bluetoothd("up")


def adapter_off_and_on():
    peripheral, application = Peripheral(), Application()
    application.connect()
    power(False)
    application.hear("disconnectController")
    application.tell("auto gatt")
    application.hear("Error")
    _, error = varda("owner", status=6)
    check("Bluetooth is switched off" in error, error)
    power(True)
    peripheral.hear("link down .*")
    works(application, peripheral)
    application.stop()
    varda("owner")


def application_killed():
    """bluetoothd keeps the link, and the next one goes on with it."""
    peripheral = Peripheral()
    for _ in range(2):
        application = Application()
        application.connect()
        application.job("Owner")
        application.stop(signal.SIGKILL)
    heard = peripheral.heard()
    equal([each for each in heard if each.startswith("link")], ["link up"], "what became of the link")
    varda("owner")


def command_killed():
    peripheral = Peripheral(dives=40)
    command = Process(BIN / "varda", "dives")
    command.hear(" +1 .*")
    command.stop(signal.SIGKILL)
    varda("owner")
    peripheral.hear("link down .*")


def command_interrupted():
    peripheral = Peripheral(dives=40)
    command = Process(BIN / "varda", "dives")
    command.hear(" +1 .*")
    command.stop(signal.SIGINT)
    equal(command.process.returncode, 128 + signal.SIGINT, "the status")
    peripheral.hear("link down .*")
    varda("owner")


def second_program():
    """bluetoothd keeps the subscription of a program that lives, and tells everybody twice."""
    peripheral, application = Peripheral(dives=3), Application()
    works(application, peripheral)
    _, error = varda("dives", status=1)
    check("sends everything more than once" in error, error)
    peripheral.hear("link down .*")
    application.stop()
    out, _ = varda("dives")
    equal(out.count("\n"), 4, "the number of lines")


# --- jobs: they connect by themselves, and again if the link is lost


def radio_computer_gatt():
    Radio()
    compare_computer_jobs()


def radio_computer_sps():
    Radio(mode="sps", model="tidemar")
    compare_computer_jobs(mode="sps", model="tidemar")


def computer_gatt():
    Peripheral(model="vskm")
    compare_computer_jobs(model="vskm")


def computer_credits_counted():
    Peripheral(mode="sps", credits="counted")
    Jobs().job("Owner")


def computer_small_mtu():
    for mtu, gases in ((64, "NoError None"), (23, "Damaged SmallMtu")):
        peripheral, application = Peripheral(mtu=mtu, dives=2), Jobs()
        same(dives_of(application), dives_of(simulated(mtu=mtu, dives=2)),
             f"what was read at an MTU of {mtu}")
        application.job("Gases", gases)
        application.stop()
        peripheral.stop()
        forget()


def computer_firmware():
    peripheral, application = Peripheral(), Jobs()
    file, data = image(8 * 1024)
    application.tell(f"upload {file}")
    application.ends("upload")
    equal(peripheral.ask("firmware"), data.hex(), "the image")


def computer_reconnect_at_once():
    peripheral, application = Peripheral(), Jobs()
    for _ in range(3):
        application.tell("job Owner")
        application.tell("letgo")
        application.ends("Owner", "Cancelled ByDisconnect")
        application.ends("letgo")
        application.job("Owner")
    peripheral.tell("drop")
    application.hear("lost")
    application.job("Owner")


def computer_dropped_when_connected():
    peripheral, application = Peripheral(), Jobs()
    application.tell("job Owner")
    peripheral.hear("link up")
    peripheral.tell("drop")
    application.ends("Owner")


def computer_dropped_when_subscribed():
    peripheral, application = Peripheral(), Jobs()
    application.tell("job Owner")
    peripheral.hear("cccd data 0100")
    peripheral.tell("drop")
    application.ends("Owner")


def computer_lost_while_idle():
    peripheral, application = Peripheral(), Jobs()
    application.job("Owner")
    peripheral.tell("lose")
    application.hear("lost")
    computer_works(application, peripheral)


def drops(places):
    """A new computer for each of these places, whose link it drops there once."""
    for step, command, nth in places:
        fault = {"step": step, "command": command, "nth": nth, "kind": "drop"}
        yield f"the {step} {nth} of {command}", [fault]


def after_a_drop(peripheral, application, place):
    peripheral.ask("state")
    equal(peripheral.told.count("dropping the link"), 1, f"the number of drops at {place}")
    application.stop()
    peripheral.stop()
    forget()


def computer_download_dropped():
    expected = dives_of(simulated(dives=3))
    for place, faults in drops(DOWNLOAD):
        peripheral, application = Peripheral(dives=3, faults=faults), Jobs()
        application.tell("job Dives")
        application.ends("Dives")
        equal([line for line in application.told if line.startswith("dive ")],
              ["dive 1", "dive 2", "dive 3"], f"what was read with a drop at {place}")
        same(application.ask("digest"), expected, f"what was read with a drop at {place}")
        after_a_drop(peripheral, application, place)


def computer_upload_dropped():
    file, data = image(8 * 1024)
    for place, faults in drops(UPLOAD):
        peripheral, application = Peripheral(faults=faults), Jobs()
        application.tell(f"upload {file}")
        application.ends("upload")
        equal(peripheral.ask("firmware"), data.hex(), f"the image with a drop at {place}")
        after_a_drop(peripheral, application, place)


def computer_cccd_refused(code):
    peripheral, application = Peripheral("--refuse-cccd", code), Jobs()
    application.job("Owner", "NotConnected LinkFailed")
    peripheral.hear("link down .*")


def computer_cccd_not_permitted():
    computer_cccd_refused("0x03")


def computer_cccd_wants_pairing():
    computer_cccd_refused("0x05")


def computer_cccd_refused_by_application():
    computer_cccd_refused("0x80")


def computer_cccd_silent():
    peripheral, application = Peripheral("--ignore-cccd"), Jobs()
    application.job("Owner", "NotConnected LinkFailed")
    peripheral.hear("link down .*")


def computer_mute():
    Peripheral("--mute")
    Jobs().job("Owner", "TimedOut ConnectLimit")


def computer_off_and_on():
    peripheral, application = Peripheral(), Jobs()
    peripheral.tell("off")
    peripheral.hear("off")
    application.job("Owner", "NotFound Silent")
    peripheral.tell("on")
    peripheral.hear("advertising")
    computer_works(application, peripheral)
    peripheral.tell("off")
    peripheral.hear("off")
    application.job("Owner", "NotConnected LinkFailed")
    peripheral.tell("on")
    peripheral.hear("advertising")
    computer_works(application, peripheral)


def computer_bluetoothd_killed():
    """While nothing is asked, and while dives are read."""
    expected = dives_of(simulated(dives=6))
    peripheral, application = Peripheral(dives=6), Jobs()
    application.job("Owner")
    for how in ("KILL", ""):
        bluetoothd(f"down {how}")
        application.hear("lost")
        application.job("Owner", "NoBluetooth ServiceGone")
        bluetoothd("up")
        peripheral.hear("link down .*")
        application.tell("job Dives")
        application.hear("dive 2")
        bluetoothd(f"down {how}")
        bluetoothd("up")
        application.ends("Dives")
        same(application.ask("digest"), expected, "what was read")
        peripheral.hear("link down .*")


def computer_bluetoothd_gone():
    """A download waits for it, but not for ever."""
    peripheral, application = Peripheral(dives=6), Jobs()
    application.tell("job Dives")
    application.hear("dive 2")
    bluetoothd("down KILL")
    try:
        application.ends("Dives", "NoBluetooth ServiceGone")
    finally:
        bluetoothd("up")
    peripheral.hear("link down .*")
    application.job("Dives")


def computer_adapter_off_and_on():
    peripheral, application = Peripheral(), Jobs()
    application.job("Owner")
    power(False)
    application.hear("lost")
    application.job("Owner", "NoBluetooth AdapterOff")
    power(True)
    peripheral.hear("link down .*")
    computer_works(application, peripheral)


def computer_application_killed():
    Peripheral()
    for _ in range(3):
        application = Jobs()
        application.job("Owner")
        application.stop(signal.SIGKILL)


def computer_second_program():
    peripheral, other, application = Peripheral(dives=3), Application(), Jobs()
    works(other, peripheral)
    application.job("Dives", "Repeated OtherSubscriber")
    application.letgo()
    other.stop()
    application.job("Dives")


# Where a link is dropped, of the requests in their order. The three dives come in 28, 27 and 32
# notifications, the image in 64 blocks.
DOWNLOAD = [
    ("answer", "Identification", 1), ("answer", "Logbook", 1), ("notification", "Logbook", 2),
    ("notification", "Logbook", 4), ("answer", "Fullsamples", 1),
    ("notification", "Fullsamples", 14), ("notification", "Fullsamples", 28),
    ("answer", "Fullsamples", 2), ("notification", "Fullsamples", 60),
    ("notification", "Fullsamples", 87),
]
UPLOAD = [
    ("answer", "Identification", 1), ("answer", "BootloaderVersion", 1),
    ("answer", "BeginUpdate", 1), ("answer", "ProgramUpdate", 1), ("answer", "ProgramUpdate", 2),
    ("answer", "ProgramUpdate", 20), ("answer", "ProgramUpdate", 40),
    ("answer", "ProgramUpdate", 63), ("answer", "ProgramUpdate", 64), ("answer", "EndUpdate", 1),
]

CASES = [
    radio_scan, radio_jobs_gatt, radio_jobs_sps, radio_information, radio_hundred_dives,
    radio_firmware, radio_reconnect_at_once, radio_commands_at_once,
    scan_of_unknown, jobs_gatt, firmware, credits_counted, small_mtu,
    dropped_when_connected, dropped_when_subscribed, dropped_instead_of_an_answer,
    dropped_within_an_answer, dropped_within_an_upload, lost_while_idle,
    cccd_not_permitted, cccd_wants_pairing, cccd_refused_by_application, cccd_silent, mute,
    off_and_unknown, off_while_known, reconnect_at_once,
    bluetoothd_killed, bluetoothd_restarted, no_bluetoothd, adapter_off_and_on,
    application_killed, command_killed, command_interrupted, second_program,
    radio_computer_gatt, radio_computer_sps, computer_gatt, computer_credits_counted,
    computer_small_mtu, computer_firmware, computer_reconnect_at_once,
    computer_dropped_when_connected, computer_dropped_when_subscribed, computer_lost_while_idle,
    computer_download_dropped, computer_upload_dropped, computer_cccd_not_permitted,
    computer_cccd_wants_pairing, computer_cccd_refused_by_application, computer_cccd_silent,
    computer_mute, computer_off_and_on, computer_bluetoothd_killed, computer_bluetoothd_gone,
    computer_adapter_off_and_on, computer_application_killed, computer_second_program,
]


def run(case):
    name = case.__name__.replace("_", "-")
    begin = time.monotonic()
    why = None
    try:
        case()
    except Wrong as wrong:
        why = str(wrong)
    except Exception as error:  # a case that is wrong itself, or what it started
        why = f"{type(error).__name__}: {error}"
    took = f"({time.monotonic() - begin:.0f} s)"
    print(f"PASS {name} {took}" if why is None else f"FAIL {name}: {why} {took}", flush=True)
    with open(f"/logs/{name}.log", "w", encoding="utf-8") as log:
        for each in reversed(people):  # the computer last
            each.process.terminate()
        for each in people:
            each.process.wait()
            while (line := each.lines.get()) is not None:
                each.told.append(line)
            log.write(f"# {each.process.args}\n" + "".join(f"{line}\n" for line in each.told))
    people.clear()
    forget()
    return why is None


def main():
    os.environ["QT_LOGGING_RULES"] = "varda.*=false"
    texts = sys.argv[1:]
    chosen = [each for each in CASES
              if not texts or any(text in each.__name__.replace("_", "-") for text in texts)]
    passed = sum(run(each) for each in chosen)
    print(f"{passed} passed, {len(chosen) - passed} failed", flush=True)
    return 0 if passed == len(chosen) else 1


sys.exit(main())
