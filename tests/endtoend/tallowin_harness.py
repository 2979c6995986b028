"""Runs the built programs in a home that is made for one test and goes with it.

The environment variable TALLOWIN_BIN names the folder of the built programs. They are linked or
copied into the temporary home first, because the program keeps its logs beside itself.
"""

import os
import random
import re
import shutil
import socket
import subprocess
import tempfile
import threading
import time
import unittest
from pathlib import Path

DEADLINE = 60.0  # seconds; generous, since nothing waits for it when all is well
SUITE = r"HKEY_CURRENT_USER\Software\Marrowind Software\Tallowin"
SETTINGS = SUITE + r"\Settings"
PORTS = SUITE + r"\Ports\Setting "
REFUSE = "Don't accept connection"
SEND = "Accept connection send packet then disconnect"
CHAT = "Let me talk to the hacker"
RUNS_AS_ROOT = os.geteuid() == 0
NOBODY = 65534

# Day, month, year and time of day, as every line of the status log begins.
STAMP = re.compile(r"^\S.*? \d\d:\d\d:\d\d [^ :]+ :")


def locale_name():
    """A locale with the twelve-hour clock if there is one."""
    known = subprocess.run(["locale", "-a"], capture_output=True, text=True, check=False).stdout
    return "en_US.UTF-8" if "en_US.utf8" in known.split() else "C.UTF-8"


def wait_until(condition, what, deadline=DEADLINE):
    """Gives the first true value of the condition."""
    end = time.monotonic() + deadline
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise AssertionError(f"not within {deadline} s: {what}")
        time.sleep(0.005)


claims = []


def free_ports(count):
    """Ports that a decoy can have: below those that the system gives to callers. No other test that
    runs beside this one gets them, whether the decoy listens or not."""
    ports = []
    while len(ports) < count:
        port = random.randrange(10000, 32768)
        claim = socket.socket(socket.AF_UNIX)
        try:
            claim.bind(f"\0tallowin-test-{port}")  # which no file stands for
            with socket.socket() as candidate:
                candidate.bind(("0.0.0.0", port))
        except OSError:
            claim.close()
            continue
        claims.append(claim)
        ports.append(port)
    return ports


def without_stamps(lines):
    """The messages of the log; lines in the middle of a message stay as they are."""
    return [STAMP.sub("", line, count=1) for line in lines]


def escaped(text):
    return text.replace("\\", "\\\\").replace('"', '\\"')


def value_line(name, data):
    if isinstance(data, int):
        return f'"{name}"=dword:{data & 0xFFFFFFFF:08x}'
    if "\n" not in data:
        return f'"{name}"="{escaped(data)}"'
    return f'"{name}"=hex(1):' + ",".join(f"{byte:02x}" for byte in data.encode("utf-16-le"))


class Like:
    """Equals each text that the pattern matches as a whole."""

    def __init__(self, pattern):
        self.pattern = pattern

    def __eq__(self, other):
        if isinstance(other, Like):
            return self.pattern == other.pattern
        return re.fullmatch(self.pattern, other) is not None

    def __repr__(self):
        return f"Like({self.pattern!r})"


def looked_up(address):
    """The messages of the two tools that run for every caller."""
    return [
        "",
        "Resolve DNS Started",
        Like(re.escape(address) + " Resolves to .+"),
        "Resolve DNS Complete",
        "",
        "Ping Started",
        f"Pinging Host: {address} ...",
        Like(r"Ping Complete\.\.\. Milliseconds: .+"),
        "Ping Completed",
    ]


def attempt(port, description, treatment):
    """The messages of one attempt on a port."""
    return [
        "",
        "----Connected Attempt Started----",
        f"Connection Attempted On Port {port}",
        f"Description Of This Port: {description}",
        "Malicious Users IP: 127.0.0.1",
        *treatment,
        *looked_up("127.0.0.1"),
        "----Connected Attempt Ended----",
    ]


REFUSED = ["Refusing Connection...", "Done", "Re-Initialising Socket", "Done"]
SENT = [
    "Connnection Accepted...",
    "Sending Specified Message...",
    "Done",
    "Closing Connection And Re-Initialising Socket",
]


def call(port, send=b""):
    """What a caller gets until the end: the bytes, and whether it was an end or a reset."""
    received = b""
    try:
        with socket.create_connection(("127.0.0.1", port), timeout=DEADLINE) as caller:
            if send:
                caller.sendall(send)
            while piece := caller.recv(65536):
                received += piece
    except (ConnectionResetError, BrokenPipeError):
        return received, "reset"
    return received, "end"


class Program:
    """A running tallowin-console."""

    def __init__(self, home, arguments):
        self.process = subprocess.Popen(
            [*home.as_user, str(home.program / "tallowin-console"), *arguments],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            env=home.environment,
            cwd=home.path,
        )
        self.lines = []
        self.messages = []  # the lines without their stamps
        self.errors = b""
        self._changed = threading.Condition()
        self._readers = [
            threading.Thread(target=self._read_output, daemon=True),
            threading.Thread(target=self._read_errors, daemon=True),
        ]
        for reader in self._readers:
            reader.start()

    def _read_output(self):
        for line in self.process.stdout:
            text = line.rstrip(b"\n").decode("utf-8", "surrogateescape")
            with self._changed:
                self.lines.append(text)
                self.messages += without_stamps([text])
                self._changed.notify_all()

    def _read_errors(self):
        self.errors = self.process.stderr.read()

    def take_messages(self):
        """Gives the messages so far and forgets them, for a program that runs long."""
        with self._changed:
            taken = list(self.messages)
            self.messages.clear()
            self.lines.clear()
        return taken

    def wait_for(self, wanted, count=1, start=0, deadline=DEADLINE):
        """Waits for lines with this message, and gives the index of the last of them."""
        end = time.monotonic() + deadline
        place = start
        with self._changed:
            while True:
                while place == len(self.messages):
                    left = end - time.monotonic()
                    if left <= 0:
                        shown = "\n".join(self.lines[-30:])
                        raise AssertionError(f"{wanted!r} is missing after {deadline} s:\n{shown}")
                    self._changed.wait(left)
                count -= self.messages[place] == wanted
                if count == 0:
                    return place
                place += 1

    def send(self, *lines):
        for line in lines:
            data = line if isinstance(line, bytes) else line.encode("utf-8", "surrogateescape")
            self.process.stdin.write(data + b"\n")
        self.process.stdin.flush()

    def ask(self, *commands, deadline=DEADLINE):
        """Sends commands and gives what is printed until they are done."""
        start = len(self.lines)
        token = f"done{random.getrandbits(64)}"
        self.send(*commands, token)
        end = self.wait_for(
            f'error: there is no command "{token}"; "help" lists them', start=start,
            deadline=deadline,
        )
        return self.lines[start:end]

    def get(self, control, deadline=DEADLINE):
        return self.ask(f"get {control}", deadline=deadline)[-1]

    def wait_end(self, deadline=DEADLINE):
        """Waits for the end of the program and of its output, and gives its status."""
        status = self.process.wait(deadline)
        for reader in self._readers:
            reader.join(deadline)
        return status

    def quit(self):
        self.send("quit")
        return self.wait_end()

    def descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.wait_end()
        self.process.stdin.close()
        self.process.stdout.close()
        self.process.stderr.close()


class Home:
    """A user's home with the programs in it."""

    def __init__(self, as_nobody=False):
        self.path = Path(tempfile.mkdtemp(prefix="tallowin-test-"))
        self.program = self.path / "program"
        self.program.mkdir()
        source = Path(os.environ["TALLOWIN_BIN"])
        for name in ("tallowin-console", "tallowin-reg", "hacker.wav", "trojan.wav"):
            place_file(source / name, self.program / name)
        # A first start imports nothing but the key: the ports of the real presets are for the tests
        # that ask for them.
        self.presets = self.path / "presets.reg"
        place_file(source / "defaults.reg", self.presets)
        self.imported = self.program / "defaults.reg"
        self.imported.write_text(f"REGEDIT4\n[{SUITE}]\n", encoding="ascii")
        for folder in ("config", "data", "state", "cache", "runtime"):
            (self.path / folder).mkdir(mode=0o700)
        self.environment = {
            "PATH": os.environ.get("PATH", "/usr/bin:/bin"),
            "HOME": str(self.path),
            "LANG": locale_name(),
            "XDG_CONFIG_HOME": str(self.path / "config"),
            "XDG_DATA_HOME": str(self.path / "data"),
            "XDG_STATE_HOME": str(self.path / "state"),
            "XDG_CACHE_HOME": str(self.path / "cache"),
            "XDG_RUNTIME_DIR": str(self.path / "runtime"),
            # Nobody listens there: no test may reach the services of the machine that it runs on,
            # the login manager least of all, which shuts the machine down when it is asked to.
            "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={self.path}/no-system-bus",
            "CANBERRA_DRIVER": "null",  # and nobody is to hear the siren
        }
        self.as_user = []
        if as_nobody and RUNS_AS_ROOT:
            self.as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
            self.own_all()
        self.programs = []

    def own_all(self):
        """Gives the folders to the user of this home; the linked programs stay whose they are."""
        for folder, _, _ in os.walk(self.path):
            os.chown(folder, NOBODY, NOBODY)

    @property
    def registry(self):
        return self.path / "config" / "tallowin" / "registry.sqlite"

    def start(self, *arguments):
        program = Program(self, arguments)
        self.programs.append(program)
        return program

    def reg(self, *arguments, check=True):
        result = subprocess.run(
            [*self.as_user, str(self.program / "tallowin-reg"), *arguments],
            env=self.environment, cwd=self.path, capture_output=True, timeout=DEADLINE,
            check=False,
        )
        if check and result.returncode != 0:
            raise AssertionError(f"tallowin-reg {arguments}: {result.stderr.decode()}")
        return result

    def place_presets(self):
        """For a first start, and for the button "Load Defaults"."""
        self.imported.unlink()
        place_file(self.presets, self.imported)

    def import_presets(self):
        self.reg("import", str(self.presets))

    def write(self, keys):
        """Writes {key: {name: number, text, or None to delete}}."""
        lines = ["Windows Registry Editor Version 5.00"]
        for key, values in keys.items():
            lines += ["", f"[{key}]"]
            for name, data in values.items():
                lines.append(f'"{name}"=-' if data is None else value_line(name, data))
        file = self.path / "settings.reg"
        file.write_bytes(("\r\n".join(lines) + "\r\n").encode("utf-16"))
        self.reg("import", str(file))

    def set_settings(self, **values):
        """Names with an underscore for each blank: Verbose_Mode=1."""
        self.write({SETTINGS: {name.replace("_", " "): data for name, data in values.items()}})

    def set_up(self, slots, **settings):
        """The presets with this table instead of theirs: {slot: (port, action, packet)}.

        Trojan Sentry is off unless it is asked for: what changes on the machine around a test is
        none of its business.
        """
        self.import_presets()
        keys = {f"{PORTS}{slot}": {"Socket Number": 0} for slot in range(1, 16)}
        for slot, (port, action, packet) in slots.items():
            keys[f"{PORTS}{slot}"] = {
                "Socket Number": port,
                "Port Description": f"slot {slot}",
                "Action": action,
                "Packet To Send": packet,
            }
        settings = {"Trojan_Sentry": 0, **settings}
        keys[SETTINGS] = {name.replace("_", " "): data for name, data in settings.items()}
        self.write(keys)

    def logs(self):
        """The log files, by age."""
        files = (self.program / "Logs").glob("*.log")
        return sorted(files, key=lambda file: file.stat().st_mtime_ns)

    def close(self):
        for program in self.programs:
            program.close()
        shutil.rmtree(self.path)


def place_file(source, target):
    try:
        os.link(source, target)
    except OSError:
        shutil.copy2(source, target)


def log_text(file):
    """The text of a log file without its header and its last line end."""
    header, text = file.read_bytes().split(b"\r\n", 1)
    assert header.startswith(b"Tallowin Log - "), header
    assert text.endswith(b"\r\n"), text[-80:]
    return text[:-2].decode("utf-8", "surrogateescape")


def rows_of(program, form, view):
    """The rows of a list, without their numbers."""
    lines = program.ask(f"show {form}", deadline=4 * DEADLINE)
    rows = lines[lines.index(next(line for line in lines if line.startswith(f"{view}\t"))) + 2:]
    end = next((i for i, line in enumerate(rows) if not line.startswith("\t")), len(rows))
    return [row.split("\t")[2:] for row in rows[:end]]


def run_sleeper(test, path):
    """A copy of sleep that runs under its own path, with all its libraries, when this returns."""
    process = subprocess.Popen([str(path), "1000"])
    test.addCleanup(lambda: (process.kill(), process.wait()))
    folder = Path(f"/proc/{process.pid}")
    wait_until(lambda: os.readlink(folder / "exe") == str(path.resolve()) and
               "(sleeping)" in (folder / "status").read_text(encoding="utf-8"), f"{path} sleeps")
    return process


class TestCase(unittest.TestCase):
    """With a home for each test."""

    def setUp(self):
        self.home = self.make_home()

    def make_home(self, **traits):
        home = Home(**traits)
        self.addCleanup(home.close)
        return home

    def start(self, *arguments, until="IdentD Server Deactivated"):
        """Starts the program and waits until the line that comes last at a start is there."""
        program = self.home.start(*arguments)
        if until:
            program.wait_for(until)
        return program
