# SPDX-License-Identifier: MIT
"""A desktop of its own for one program: a display, the buses, a keyboard, and what a screen reader sees."""

import contextlib
import os
import shutil
import socket
import struct
import subprocess
import sys
import tempfile
import time
import warnings
import zlib
from pathlib import Path

# Generous, as other tests may have the processor; what goes well takes no time of it.
LIMIT = 120
SPACE = 0x20


def wait_for(what, found):
    """What FOUND returns, as soon as it is something."""
    end = time.monotonic() + LIMIT
    while True:
        result = found()
        if result:
            return result
        if time.monotonic() > end:
            raise TimeoutError(f"{what}: not within {LIMIT} s")
        time.sleep(0.1)


def missing():
    """What is not installed, or nothing."""
    if not shutil.which("Xvfb"):
        return "Xvfb"
    try:
        import gi

        gi.require_version("Atspi", "2.0")
    except (ImportError, ValueError) as error:
        return str(error)
    return ""


def process_behind(path):
    """The id of the one that listens there, or None."""
    with socket.socket(socket.AF_UNIX) as client:
        try:
            client.connect(path)
        except OSError:
            return None
        credentials = client.getsockopt(socket.SOL_SOCKET, socket.SO_PEERCRED, 12)
    return struct.unpack("3i", credentials)[0]


class Desktop(contextlib.ExitStack):
    def __init__(self, simulator):
        super().__init__()
        self.folder = Path(self.enter_context(tempfile.TemporaryDirectory(ignore_cleanup_errors=True)))
        # Nothing of the user's own is read, shown or touched.
        for name in ("WAYLAND_DISPLAY", "DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS"):
            os.environ.pop(name, None)
        for name in ("HOME", "TMPDIR", "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_RUNTIME_DIR"):
            os.environ[name] = str(self.folder)
        os.environ.update(
            LC_ALL="C.UTF-8", QT_QPA_PLATFORM="xcb", QT_QUICK_BACKEND="software", GSETTINGS_BACKEND="memory")
        os.environ["DISPLAY"] = self.start_display()
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self.start(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"])
        os.environ["DBUS_SYSTEM_BUS_ADDRESS"] = self.start([simulator, "--exit-with-stdin"]).partition("=")[2]
        self.reader = Reader()

    def run(self, command, **keys):
        """Ends when this does."""
        process = subprocess.Popen(command, stdin=subprocess.PIPE, **keys)
        self.callback(process.wait)
        self.callback(process.terminate)
        return process

    def start(self, command):
        """The first line that it prints."""
        process = self.run(command, stdout=subprocess.PIPE, text=True)
        line = process.stdout.readline().strip()
        if not line:
            sys.exit(f"{command[0]} did not start")
        return line

    def start_display(self):
        # Two servers that start at the same time may both take a number, and one does not get it.
        for _ in range(10):
            there, here = os.pipe()
            server = self.run(
                ["Xvfb", "-displayfd", str(here), "-screen", "0", "1200x1600x24", "-nolisten", "tcp",
                 "-fbdir", self.folder], pass_fds=(here,))
            os.close(here)
            with os.fdopen(there) as reported:
                number = reported.readline().strip()
            if number and process_behind(f"/tmp/.X11-unix/X{number}") == server.pid:
                return f":{number}"
            server.terminate()
            server.wait()
        sys.exit("Xvfb did not start")

    def take_picture(self, file):
        """Of the whole display, as a PNG."""
        data = (self.folder / "Xvfb_screen0").read_bytes()
        size, _, _, _, width, height, _, _, _, _, _, _, line, _, _, _, _, _, _, colors = struct.unpack_from(">20I", data)
        pixels = memoryview(data)[size + 12 * colors:]
        rows = bytearray()
        for y in range(height):
            row = pixels[y * line:y * line + 4 * width]
            rgb = bytearray(3 * width)
            rgb[0::3], rgb[1::3], rgb[2::3] = row[2::4], row[1::4], row[0::4]
            rows += b"\0" + rgb

        def chunk(kind, content):
            return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))

        Path(file).write_bytes(
            b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(bytes(rows))) + chunk(b"IEND", b""))


class Reader:
    """Finds what is shown by its role and name, presses it, and types."""

    def __init__(self):
        # Looks at the environment once.
        import gi

        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, Gio, GLib

        warnings.simplefilter("ignore", DeprecationWarning)
        self.atspi, self.gone = Atspi, GLib.Error
        # As the one that a desktop starts.
        Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
            "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
            GLib.Variant("(ssv)", ("org.a11y.Status", "IsEnabled", GLib.Variant("b", True))), None, 0, -1)
        Atspi.init()

    def nodes(self, node=None, depth=0):
        """All that is shown from there on, each with its depth."""
        if node is None:
            desktop = self.atspi.get_desktop(0)
            children = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
            for child in children:
                if child:
                    child.set_cache_mask(self.atspi.Cache.NONE)
        else:
            if not node.get_state_set().contains(self.atspi.StateType.VISIBLE):
                return
            yield depth, node
            children = (node.get_child_at_index(i) for i in range(node.get_child_count()))
        for child in children:
            if child:
                yield from self.nodes(child, depth + 1)

    def find(self, role, name, within=None):
        """Something whose name begins so, or None."""
        try:
            for _, node in self.nodes(within):
                if node.get_role_name() == role and node.get_name().startswith(name):
                    return node
        except self.gone:  # The page changed meanwhile.
            pass
        return None

    def wanted(self, role, name, within=None):
        return wait_for(f'{role} "{name}"', lambda: self.find(role, name, within))

    def act(self, node, action):
        count = self.atspi.Action.get_n_actions(node)
        names = [self.atspi.Action.get_action_name(node, i) for i in range(count)]
        if action not in names:
            raise LookupError(f'{node.get_role_name()} "{node.get_name()}" has no "{action}", only {names}')
        self.atspi.Action.do_action(node, names.index(action))

    def press(self, role, name, within=None):
        node = self.wanted(role, name, within)
        wait_for(f'{role} "{name}" enabled',
                 lambda: node.get_state_set().contains(self.atspi.StateType.SENSITIVE))
        self.act(node, "Press")

    def focus(self, node):
        self.act(node, "SetFocus")
        wait_for("the focus", lambda: node.get_state_set().contains(self.atspi.StateType.FOCUSED))

    def type(self, node, text):
        self.focus(node)
        self.atspi.generate_keyboard_event(0, text, self.atspi.KeySynthType.STRING)
        wait_for(f'"{text}" typed', lambda: self.atspi.Text.get_text(node, 0, -1) == text)

    def key(self, symbol):
        self.atspi.generate_keyboard_event(symbol, None, self.atspi.KeySynthType.SYM)

    def describe(self):
        """All that is shown, a line each."""
        try:
            return "\n".join(f'{"  " * depth}{node.get_role_name()} "{node.get_name()}" {node.get_description()}'
                             for depth, node in self.nodes())
        except self.gone as error:
            return f"… {error}"
