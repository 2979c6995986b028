"""A desktop of the test's own: an X server, a window manager, a session bus, and panels."""

import os
import re
import subprocess

from mocked_bus import python_with_mocks
from tallowin_harness import DEADLINE, Path, place_file, wait_until

HERE = Path(__file__).parent


class Desktop:
    """Everything ends with the test."""

    def __init__(self, test, window_manager=True):
        self.test = test
        self.home = test.home
        place_file(Path(os.environ["TALLOWIN_BIN"]) / "tallowin", self.home.program / "tallowin")
        reading, writing = os.pipe()
        # Without -noreset it starts anew when its only client so far goes, and takes with it whoever
        # is just coming.
        self.run("Xvfb", "-displayfd", str(writing), "-screen", "0", "1024x768x24", "-noreset",
                 "-nolisten", "tcp", pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.home.environment["DISPLAY"] = ":" + number.readline().strip()
        self.home.environment["QT_QPA_PLATFORM"] = "xcb"
        socket = self.home.path / "session-bus"
        self.home.environment["DBUS_SESSION_BUS_ADDRESS"] = f"unix:path={socket}"
        self.run("dbus-daemon", "--session", "--nofork", f"--address=unix:path={socket}")
        wait_until(socket.exists, "the session bus")
        if window_manager:
            self.run("openbox", "--sm-disable", stderr=subprocess.DEVNULL)
            wait_until(lambda: "window id" in self.tell("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"),
                       "the window manager")

    def run(self, *command, **options):
        process = subprocess.Popen(command, env=self.home.environment, cwd=self.home.path,
                                   **{"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                                      **options})
        self.test.addCleanup(process.wait)
        self.test.addCleanup(process.kill)
        return process

    def start(self, *arguments):
        return self.run(self.home.program / "tallowin", *arguments)

    def tell(self, *command):
        try:
            return subprocess.run(command, env=self.home.environment, capture_output=True,
                                  text=True, timeout=DEADLINE / 4, check=False).stdout
        except subprocess.TimeoutExpired:
            return ""  # A window that waits for the focus may have been overtaken.

    def windows(self, name):
        """Those on the screen, whole names, embedded ones and menus among them."""
        found = re.findall(rf'(0x[0-9a-f]+) "{re.escape(name)}": \(',
                           self.tell("xwininfo", "-root", "-tree"))
        return [window for window in found
                if "IsViewable" in self.tell("xwininfo", "-id", window, "-stats")]

    def task_list(self):
        """The titles of the windows in the task list, minimised ones among them."""
        listed = re.findall(r"0x[0-9a-f]+", self.tell("xprop", "-root", "_NET_CLIENT_LIST"))
        titles = [self.tell("xprop", "-id", window, "WM_NAME") for window in listed]
        return [title.split('"')[1] for title in titles if '"' in title]

    def click(self, place, button, times=1):
        """On the screen, or in a window."""
        at = ["mousemove", *map(str, place)] if isinstance(place, tuple) else [
            "mousemove", "--window", place, "8", "8"]
        self.tell("xdotool", *at, "click", "--repeat", str(times), "--delay", "80", str(button))

    def panel(self):
        """One that takes icons as windows of their own."""
        return self.run("trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
                        "--height", "24", "--SetDockType", "false", stderr=subprocess.DEVNULL)

    def embedded_icon(self):
        """The icon's window in the panel."""
        return next(iter(self.windows("tallowin")), None)

    def notifier_host(self):
        return NotifierHost(self)


class NotifierHost:
    """A panel that shows the icons that are announced on the bus."""

    def __init__(self, desktop):
        self.process = desktop.run(python_with_mocks(), "-B", HERE / "notifier_host.py",
                                   stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        desktop.test.addCleanup(self.process.stdin.close)
        desktop.test.addCleanup(self.process.stdout.close)
        assert self.process.stdout.readline() == "ready\n"

    def ask(self, *words):
        """Gives the lines of the answer."""
        self.process.stdin.write("\t".join(words) + "\n")
        self.process.stdin.flush()
        lines = []
        while (line := self.process.stdout.readline()) not in ("done\n", ""):
            lines.append(line.rstrip("\n"))
        # An icon that is just coming or going is looked at again; what is done to it is done once.
        assert words[0] in ("icons", "menu") or not "".join(lines).startswith("error:"), lines
        return lines

    def icons(self):
        return self.ask("icons")
