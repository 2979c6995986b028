"""A message bus of the test's own, with services played by python-dbusmock."""

import json
import os
import re
import subprocess
import sys

from tallowin_harness import wait_until

BUS = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>system</type>
  <keep_umask/>
  <listen>unix:path={}</listen>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""


def python_with_mocks():
    """The system's own Python has them where the one that runs this test has not."""
    for python in (sys.executable, "/usr/bin/python3"):
        if subprocess.run([python, "-c", "import dbusmock"], capture_output=True,
                          check=False).returncode == 0:
            return python
    raise AssertionError("python3-dbusmock is not installed")


class MockedBus:
    """A message bus in the home of the test, and the services on it."""

    def __init__(self, test):
        self.test = test
        self.folder = test.home.path
        socket = self.folder / "system-bus"
        settings = self.folder / "system-bus.conf"
        settings.write_text(BUS.format(socket), encoding="ascii")
        self.environment = {**os.environ, "DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={socket}"}
        self.run("dbus-daemon", "--nofork", f"--config-file={settings}")
        wait_until(socket.exists, "the bus")
        test.home.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={socket}"

    def run(self, *command):
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL)
        self.test.addCleanup(process.wait)
        self.test.addCleanup(process.kill)

    def mock(self, name, template, parameters):
        """Gives a function that lists the calls so far."""
        log = self.folder / f"{name}.log"
        self.run(python_with_mocks(), "-m", "dbusmock", "--system", "--logfile", str(log),
                 "--template", template, "--parameters", json.dumps(parameters))
        answers = ["dbus-send", "--system", "--print-reply", f"--dest={name}", "/",
                   "org.freedesktop.DBus.Peer.Ping"]
        wait_until(lambda: subprocess.run(answers, env=self.environment, capture_output=True,
                                          check=False).returncode == 0, name)
        return lambda: re.findall(r"(?m)^\S+ (?!Get)(\w+.*)$", log.read_text(encoding="utf-8"))
