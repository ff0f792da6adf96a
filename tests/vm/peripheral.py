#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A peripheral that speaks to the controller itself: no bluetoothd, no kernel stack on its side.

It takes an adapter for itself, advertises, and serves the simulated computer's attributes, so it
can do what a well-behaved stack never does. What happens is printed, a line each; the lines
"drop", "lose", "off" and "on" on standard input are orders, "state" and "firmware" questions to the
computer.
"""

import argparse
import collections
import ctypes
import fcntl
import json
import os
import select
import signal
import socket
import struct
import subprocess
import sys
import time
from pathlib import Path

COMPUTER = "/build/bin/varda-vm-computer"

CCCD = "00002902-0000-1000-8000-00805f9b34fb"
PROPERTIES = {"broadcast": 0x01, "read": 0x02, "write-without-response": 0x04, "write": 0x08,
              "notify": 0x10, "indicate": 0x20}

HCI_CHANNEL_USER = 1
HCIDEVDOWN = 0x400448CA
COMMAND, ACL, EVENT = 1, 2, 4
ENDED_BY_PEER, LOST = 0x13, 0x08


def say(*words):
    print(*words, flush=True)


class Controller:
    """HCI over the user channel of an adapter."""

    def __init__(self, index):
        self.socket = self.take(index)
        self.kept = collections.deque()  # what came while something else was waited for

    @staticmethod
    def take(index):
        control = socket.socket(socket.AF_BLUETOOTH, socket.SOCK_RAW, socket.BTPROTO_HCI)
        libc = ctypes.CDLL(None, use_errno=True)
        address = struct.pack("<HHH", socket.AF_BLUETOOTH, index, HCI_CHANNEL_USER)
        for _ in range(100):  # bluetoothd lets go of it some time after it was told
            try:
                fcntl.ioctl(control.fileno(), HCIDEVDOWN, index)
            except OSError:
                pass
            mine = socket.socket(socket.AF_BLUETOOTH, socket.SOCK_RAW | socket.SOCK_CLOEXEC,
                                 socket.BTPROTO_HCI)
            if libc.bind(mine.fileno(), address, len(address)) == 0:
                return mine
            mine.close()
            time.sleep(0.05)
        sys.exit(f"peripheral: hci{index}: {os.strerror(ctypes.get_errno())}")

    def send(self, packet):
        self.socket.send(packet)

    def receive(self, timeout):
        if self.kept:
            return self.kept.popleft()
        return self.fresh(timeout)

    def fresh(self, timeout):
        ready = select.select([self.socket], [], [], timeout)[0]
        return self.socket.recv(4096) if ready else None

    def command(self, group, number, data=b"", must=True):
        code = group << 10 | number
        self.send(struct.pack("<BHB", COMMAND, code, len(data)) + data)
        end = time.monotonic() + 10
        while time.monotonic() < end:
            packet = self.fresh(1)
            if not packet:
                continue
            # Complete, or a status
            if packet[:2] == b"\x04\x0e" and struct.unpack_from("<H", packet, 4)[0] == code:
                result = packet[6:]
            elif packet[:2] == b"\x04\x0f" and struct.unpack_from("<H", packet, 5)[0] == code:
                result = packet[3:4]
            else:
                self.kept.append(packet)
                continue
            if must and result[:1] != b"\0":
                say(f"HCI command {code:#06x} failed: {result.hex()}")
            return result
        sys.exit(f"peripheral: no answer to HCI command {code:#06x}")


def uuid(text):
    """As it stands in attributes; a Bluetooth one in its short form."""
    if isinstance(text, int):
        return struct.pack("<H", text)
    if text.endswith("-0000-1000-8000-00805f9b34fb") and text.startswith("0000"):
        return struct.pack("<H", int(text[4:8], 16))
    return bytes.fromhex(text.replace("-", ""))[::-1]


class Attribute:
    def __init__(self, handle, kind, value, flags=("read",), role="none"):
        self.handle, self.kind, self.value = handle, uuid(kind), value
        self.readable = "read" in flags
        self.writable = "write" in flags or "write-without-response" in flags
        self.role = role
        self.end = handle  # of a service
        self.of = None     # the attribute that a CCCD belongs to


def attributes(services):
    table = []

    def add(*arguments, **more):
        table.append(Attribute(len(table) + 1, *arguments, **more))
        return table[-1]

    for service in services:
        head = add(0x2800, uuid(service["uuid"]))
        for each in service["characteristics"]:
            properties = sum(PROPERTIES.get(flag, 0) for flag in each["flags"])
            add(0x2803, struct.pack("<BH", properties, len(table) + 2) + uuid(each["uuid"]))
            value = add(each["uuid"], bytes.fromhex(each["value"]), each["flags"], each["role"])
            for descriptor in each["descriptors"]:
                extra = add(descriptor, b"\0\0", ("read", "write"))
                extra.of = value if descriptor == CCCD else None
        head.end = len(table)
    return table


class Peripheral:
    def __init__(self, options):
        self.options = options
        self.computer = subprocess.Popen([COMPUTER, options.scenario], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE)
        self.shown = json.loads(self.computer.stdout.readline())
        self.inputs = {self.computer.stdout.fileno(): (b"", self.from_computer),
                       sys.stdin.fileno(): (b"", self.order)}
        self.hci = Controller(options.hci)
        self.hci.command(3, 0x03)                         # Reset
        self.hci.command(3, 0x01, b"\xff" * 7 + b"\x3f")  # Set Event Mask
        self.hci.command(8, 0x01, b"\xff" * 8)            # LE Set Event Mask
        size = self.hci.command(8, 0x02)                  # LE Read Buffer Size
        self.acl_size, self.acl_total = struct.unpack_from("<HB", size, 1)
        self.on = True
        self.link_gone()
        self.advertise()

    def link_gone(self):
        self.link, self.mtu, self.inbox = None, 23, b""
        self.credits, self.later, self.queue = self.acl_total, collections.deque(), collections.deque()
        self.table = attributes(self.shown["services"])

    def advertise(self):
        name = self.shown["name"].encode()
        named = bytes([len(name) + 1, 9]) + name if name else b""
        data, response = b"\x02\x01\x06", b""
        if len(data) + len(named) > 31:
            response = named
        else:
            data += named
        self.silence()
        # LE Set Extended Advertising Parameters, Data, Scan Response Data, Enable
        self.hci.command(8, 0x36, struct.pack("<BH3s3sBBB6sBbBBBBB", 0, 0x13, b"\xa0\0\0", b"\xa0\0\0",
                                              7, 0, 0, bytes(6), 0, 127, 1, 0, 1, 0, 0))
        self.hci.command(8, 0x37, bytes([0, 3, 1, len(data)]) + data)
        self.hci.command(8, 0x38, bytes([0, 3, 1, len(response)]) + response)
        self.hci.command(8, 0x39, b"\1\1\0\0\0\0")
        say("advertising")

    def silence(self):
        self.hci.command(8, 0x39, b"\0\0", must=False)

    # --- the computer, and orders

    def tell(self, line):
        self.computer.stdin.write(line.encode() + b"\n")
        self.computer.stdin.flush()

    def from_computer(self, line):
        what, _, rest = line.partition(" ")
        if what == "notify":
            self.queue.append(bytes.fromhex(rest))
        elif what == "drop":
            self.queue.append(None)  # behind what was said before
        else:
            say(line)

    def order(self, line):
        if line == "drop":
            self.drop(ENDED_BY_PEER)
        elif line == "lose":
            self.drop(LOST)  # btvirt hands any reason on
        elif line == "off":  # as somebody who takes the battery out
            self.on = False
            self.drop(LOST)
            self.silence()
            say("off")
        elif line == "on":
            self.on = True
            self.advertise()
        else:
            self.tell(line)

    def drop(self, reason):
        if self.link is not None:
            say("dropping the link")
            self.hci.command(1, 0x06, struct.pack("<HB", self.link, reason))

    # --- sending

    def pdu(self, channel, data):
        whole = struct.pack("<HH", len(data), channel) + data
        flags = 0x0000
        while whole:
            while self.credits == 0 and self.link is not None:
                packet = self.hci.receive(5)
                if packet is None:
                    return say("the controller takes no more")
                if packet[0] == EVENT and packet[1] == 0x13:
                    self.event(packet[1], packet[3:])
                else:
                    self.later.append(packet)
                    if packet[0] == EVENT and packet[1] == 0x05:
                        return None
            if self.link is None:
                return None
            part, whole = whole[:self.acl_size], whole[self.acl_size:]
            self.credits -= 1
            self.hci.send(struct.pack("<BHH", ACL, self.link | flags, len(part)) + part)
            flags = 0x1000
        return None

    def answer(self, data):
        self.pdu(4, data)

    def refuse(self, request, handle, code):
        self.answer(struct.pack("<BBHB", 1, request, handle, code))

    def send_first(self):
        value = self.queue.popleft()
        if value is None:
            return self.drop(ENDED_BY_PEER)
        for each in self.table:
            if each.of and each.of.role == "data" and each.value[:1] == b"\1":
                # What does not fit is cut, as stacks do it.
                return self.answer(struct.pack("<BH", 0x1B, each.of.handle) + value[:self.mtu - 3])
        return say("not notified: not subscribed")

    # --- attributes

    def request(self, data):
        code = data[0]
        if self.options.mute:
            return say(f"not answered: {data.hex()}")
        answer = {0x02: self.exchange_mtu, 0x04: self.find_information, 0x06: self.find_by_value,
                  0x08: self.read_by_type, 0x10: self.read_by_type, 0x0A: self.read,
                  0x0C: self.read, 0x12: self.write, 0x52: self.write}.get(code)
        if answer:
            return answer(code, data)
        if not code & 0x41:  # a request, not a command and not an answer
            self.refuse(code, 0, 0x06)
        return None

    def exchange_mtu(self, _, data):
        self.answer(struct.pack("<BH", 0x03, self.shown["mtu"]))
        self.mtu = max(23, min(struct.unpack_from("<H", data, 1)[0], self.shown["mtu"]))

    def within(self, data):
        first, last = struct.unpack_from("<HH", data, 1)
        return [each for each in self.table if first <= each.handle <= last], first

    def find_information(self, code, data):
        found, first = self.within(data)
        if not found:
            return self.refuse(code, first, 0x0A)
        size, out = len(found[0].kind), b""
        for each in found:
            if len(each.kind) != size or len(out) + 2 + size > self.mtu - 2:
                break
            out += struct.pack("<H", each.handle) + each.kind
        return self.answer(bytes([0x05, 1 if size == 2 else 2]) + out)

    def find_by_value(self, code, data):
        found, first = self.within(data)
        out = b"".join(struct.pack("<HH", each.handle, each.end) for each in found
                       if each.kind == data[5:7] and each.value == data[7:])
        if not out:
            return self.refuse(code, first, 0x0A)
        return self.answer(b"\x07" + out[:(self.mtu - 1) // 4 * 4])

    def read_by_type(self, code, data):
        found, first = self.within(data)
        found = [each for each in found if each.kind == data[5:]]
        if not found:
            return self.refuse(code, first, 0x0A)
        room, out, size = self.mtu - 2, b"", None
        for each in found:
            head = struct.pack("<H", each.handle)
            if code == 0x10:
                head += struct.pack("<H", each.end)
            item = (head + each.value)[:min(room, 255)]
            size = size or len(item)
            if len(item) != size or len(out) + size > room:
                break
            out += item
        return self.answer(bytes([code + 1, size]) + out)

    def read(self, code, data):
        handle, = struct.unpack_from("<H", data, 1)
        offset = struct.unpack_from("<H", data, 3)[0] if code == 0x0C else 0
        found = self.attribute(handle)
        if not found or not found.readable or offset > len(found.value):
            return self.refuse(code, handle, 0x01 if not found else 0x07 if found.readable else 0x02)
        return self.answer(bytes([code + 1]) + found.value[offset:offset + self.mtu - 1])

    def write(self, code, data):
        handle, = struct.unpack_from("<H", data, 1)
        found, value = self.attribute(handle), data[3:]
        error = 0x01 if not found else 0x00 if found.writable else 0x03
        if found and found.of:
            say(f"cccd {found.of.role} {value.hex()}")
            if self.options.ignore_cccd:
                return
            error = self.options.refuse_cccd
        if code == 0x12:
            if error:
                self.refuse(code, handle, error)
            else:
                self.answer(b"\x13")
        if error:
            return
        found.value = value
        if found.role != "none":
            self.tell(f"{found.role} {value.hex()}")

    def attribute(self, handle):
        return self.table[handle - 1] if 0 < handle <= len(self.table) else None

    # --- receiving

    def l2cap(self, channel, data):
        if channel == 4:
            self.request(data)
        elif channel == 5 and data[0] not in (0x01, 0x13):  # signals: not understood
            self.pdu(5, struct.pack("<BBHH", 1, data[1], 2, 0))
        elif channel == 6 and data[0] == 0x01:  # pairing is not supported
            say("asked to pair")
            self.pdu(6, b"\x05\x05")

    def event(self, code, data):
        if code == 0x13:  # Number Of Completed Packets
            for i in range(data[0]):
                self.credits += struct.unpack_from("<H", data, 1 + 2 * data[0] + 2 * i)[0]
        elif code == 0x05:
            say(f"link down {data[3]:#04x}")
            self.link_gone()
            self.tell("down")
            if self.on:
                self.advertise()
        elif code == 0x3E:
            self.le_event(data[0], data)

    def le_event(self, code, data):
        if code in (0x01, 0x0A) and data[1] == 0:
            self.link_gone()
            self.link, = struct.unpack_from("<H", data, 2)
            self.tell("up")
            say("link up")
        elif code == 0x05:  # there is no key
            self.hci.command(8, 0x1B, data[1:3])
        elif code == 0x06:  # connection parameters: any
            self.hci.command(8, 0x20, struct.pack(
                "<HHHHHHH", *struct.unpack_from("<HHHHH", data, 1), 0, 0))

    def acl(self, packet):
        continued = struct.unpack_from("<H", packet)[0] & 0x3000 == 0x1000
        self.inbox = self.inbox + packet[4:] if continued else packet[4:]
        while len(self.inbox) >= 4:
            size, channel = struct.unpack_from("<HH", self.inbox)
            if len(self.inbox) < 4 + size:
                return
            whole, self.inbox = self.inbox[4:4 + size], self.inbox[4 + size:]
            self.l2cap(channel, whole)

    def run(self):
        while True:
            packet = self.later.popleft() if self.later else self.hci.receive(0)
            if packet is None:
                busy = bool(self.queue) and self.link is not None
                ready = select.select([self.hci.socket, *self.inputs], [], [], 0 if busy else None)[0]
                for each in ready:
                    if each in self.inputs:
                        self.read_lines(each)
                if busy and not ready:
                    self.send_first()
            elif packet[0] == EVENT:
                self.event(packet[1], packet[3:])
            elif packet[0] == ACL:
                self.acl(packet[1:])

    def read_lines(self, source):
        rest, use = self.inputs[source]
        part = os.read(source, 65536)
        if not part:
            sys.exit(0)
        *lines, rest = (rest + part).split(b"\n")
        self.inputs[source] = (rest, use)
        for line in lines:
            use(line.decode())

    def leave(self):
        """btvirt would leave the other end of a link up for ever."""
        self.drop(LOST)
        self.silence()
        self.computer.kill()


def main():
    parser = argparse.ArgumentParser(description=__doc__.partition("\n")[0])
    parser.add_argument("scenario", type=Path)
    parser.add_argument("--hci", type=int, default=1)
    parser.add_argument("--refuse-cccd", type=lambda text: int(text, 0), default=0)
    parser.add_argument("--ignore-cccd", action="store_true")
    parser.add_argument("--mute", action="store_true", help="answers nothing at all")
    peripheral = Peripheral(parser.parse_args())
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    try:
        peripheral.run()
    finally:
        signal.signal(signal.SIGTERM, signal.SIG_IGN)
        peripheral.leave()


main()
