"""The watch of the autostart places, from the change to the answer."""

import os
import time
import unittest

from tallowin_harness import SETTINGS, TestCase

RUN = r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run"
THIRD_OF_A_SECOND = 0.34
SLOW_MACHINE = 2.0  # what a loaded machine may take on top


def registry_question(name, data):
    return [
        "[?] Remove Registry Entry?",
        "Tallowin has detected that a program has put itself into an autostart section of your "
        "registry.",
        "This will cause the program to automatically load next time windows is booted.",
        "If you have just installed a legimate program, you should choose yes.",
        "If you have installed a program from an unknown source, or think it may be suspicious, "
        "please choose no.",
        "It is recommended that you disconnect your system from the internet as soon as possible, "
        "until you have removed the trojan.",
        "Details Of The Entry:",
        "",
        "Registry Key: " + RUN,
        "Value Name: " + name,
        "Value Data: " + data,
        "yes / no",
    ]


def ini_question(file, old, new):
    return [
        "[?] Restore old INI value?",
        "Tallowin has detected that a program has put itself into an autostart section of an INI "
        "file.",
        "This will cause the program to automatically load next time windows is booted.",
        "If you have just installed a legimate program, you should choose no.",
        "If you have installed a program from an unknown source, or think it may be suspicious, "
        "please choose yes.",
        "It is recommended that you disconnect your system from the internet as soon as possible, "
        "until you have removed the trojan.",
        "Details Of The Entry:",
        "",
        f"INI File: {str(file).upper()}",
        "Section: [Windows]",
        "Value Name: Run",
        "Old Value: " + old,
        "New Value: " + new,
        "yes / no",
    ]


class TrojanSentry(TestCase):
    def watch(self, **settings):
        self.home.set_up({}, **{"Port_Sentry": 0, "Trojan_Sentry": 1, **settings})
        return self.start()

    def block(self, program, title, start):
        """The lines of the question that comes behind line `start`."""
        begin = program.wait_for("[?] " + title, start=start)
        end = program.wait_for("yes / no", start=begin)
        return program.lines[begin : end + 1]

    def nothing_but_a_marker(self, program):
        """Makes a change of its own and sees that it is the only one that is told."""
        start = len(program.lines)
        self.home.reg("set", RUN, "Marker", "REG_SZ", "marker")
        self.assertEqual(self.block(program, "Remove Registry Entry?", start),
                         registry_question("Marker", "marker"))
        self.assertEqual(program.messages[start], "[?] Remove Registry Entry?")
        program.send("yes")
        program.wait_for("ok", start=start)
        self.end_tick(program, "ok")

    def end_tick(self, program, answer):
        """What changes before the end of the tick counts as accepted with it."""
        program.send(answer)
        for _ in range(2):  # the first may come in the pass of the loop that brings the answer
            program.get("MainForm.ActiveMonMnu")

    def stored(self, name):
        return self.home.reg("get", RUN, name, check=False).returncode == 0

    def test_a_new_value_is_asked_about_once(self):
        program = self.watch()
        for answer, stays in (("no", True), ("yes", False)):
            with self.subTest(answer=answer):
                start = len(program.lines)
                self.home.reg("set", RUN, "Trojan" + answer, "REG_SZ", "evil.exe /s")
                changed = time.monotonic()
                block = self.block(program, "Remove Registry Entry?", start)
                self.assertLess(time.monotonic() - changed, THIRD_OF_A_SECOND + SLOW_MACHINE)
                self.assertEqual(block, registry_question("Trojan" + answer, "evil.exe /s"))
                if answer == "no":
                    self.end_tick(program, answer)
                else:
                    program.send(answer)
                    end = program.wait_for("ok", start=start)
                    self.assertEqual(program.lines[end - 2 : end], [
                        "[?] Item Removed",
                        "Successfully Removed Possible Trojan From Registry"])
                    self.end_tick(program, "ok")
                self.nothing_but_a_marker(program)
                self.assertEqual(self.stored("Trojan" + answer), stays)
        log = [m for m in program.messages if "Sentry" in m]
        self.assertEqual(log, ["Port Sentry Deactivated", "Trojan Sentry Deactivated",
                               "Trojan Sentry Activated"])

    def undo(self, program, start, name, data):
        self.assertEqual(self.block(program, "Remove Registry Entry?", start),
                         registry_question(name, data))
        program.send("yes")
        end = program.wait_for("ok", start=start)
        self.assertEqual(program.lines[end - 1],
                         "Successfully Removed Possible Trojan From Registry")
        self.end_tick(program, "ok")

    def copies_of(self, path):
        undone = self.home.path / "data" / "tallowin" / "undone"
        return [each / path.relative_to("/") for each in undone.iterdir()
                if os.path.lexists(each / path.relative_to("/"))]

    def test_what_this_system_starts(self):
        program = self.watch()
        config = self.home.path / "config"
        entry = config / "autostart" / "evil.desktop"
        entry.parent.mkdir()
        start = len(program.lines)
        entry.write_text("[Desktop Entry]\nType=Application\nExec=/opt/evil --quiet\n")
        self.undo(program, start, f"XDG autostart: {entry}", "/opt/evil --quiet")
        self.assertFalse(entry.exists())
        self.assertEqual(len(self.copies_of(entry)), 1)
        self.nothing_but_a_marker(program)

        unit = config / "systemd" / "user" / "evil.service"
        link = unit.parent / "default.target.wants" / "evil.service"
        link.parent.mkdir(parents=True)
        unit.write_text("[Service]\nExecStart=/opt/evil --daemon\n")
        start = len(program.lines)
        link.symlink_to("../evil.service")
        self.undo(program, start, f"systemd unit: {link}", "/opt/evil --daemon")
        self.assertFalse(link.is_symlink())
        self.assertTrue(unit.exists())
        self.assertEqual(len(self.copies_of(link)), 1)
        self.nothing_but_a_marker(program)
        program.quit()

    def test_run_line_of_win_ini(self):
        windows = self.home.path / "data" / "tallowin" / "drive_c" / "windows"
        windows.mkdir(parents=True)
        file = windows / "Win.ini"
        file.write_bytes(b"[windows]\r\n; mine\r\nrun=old.exe\r\n")
        program = self.watch()
        for answer, after in (("yes", "old.exe"), ("no", "evil.exe")):
            start = len(program.lines)
            file.write_bytes(b"[windows]\r\n; mine\r\nrun=evil.exe\r\n")
            self.assertEqual(self.block(program, "Restore old INI value?", start),
                             ini_question(windows / "win.ini", "old.exe", "evil.exe"))
            if answer == "no":
                self.end_tick(program, answer)
            else:
                program.send(answer)
                end = program.wait_for("ok", start=start)
                self.assertEqual(program.lines[end - 2 : end], [
                    "[?] Item Removed", "Successfully Removed Possible Trojan From INI"])
                self.end_tick(program, "ok")
            self.nothing_but_a_marker(program)
            self.assertEqual(file.read_bytes(),
                             b"[windows]\r\n; mine\r\nrun=%s\r\n" % after.encode())

    def test_switches(self):
        program = self.watch(Verbose_Mode=1)
        self.assertEqual(program.messages[-5:], [
            "Trojan Sentry Enabled", "Trojan Sentry Deactivated", "Trojan Sentry Activated",
            "Always On Top Disabled", "IdentD Server Deactivated"])
        off = ["Trojan Sentry Disabled", "Trojan Sentry Deactivated"]
        on = ["Trojan Sentry Enabled", "Trojan Sentry Deactivated", "Trojan Sentry Activated"]
        for command, lines, ticked, value in (
            ("click MainForm.ActiveMonMnu", off, "", "0"),
            ("set Options.ActiveMonChk 1", on, "checked", "1"),
            ("set Options.ActiveMonChk 0", off, "", "0"),
            ("click MainForm.ActiveMonMnu", on, "checked", "1"),
        ):
            with self.subTest(command=command):
                start = len(program.messages)
                program.ask(command)
                self.assertEqual(program.messages[start : start + len(lines)], lines)
                self.assertEqual(program.get("MainForm.ActiveMonMnu"), ticked)
                self.assertEqual(program.get("Options.ActiveMonChk"), value)
        self.nothing_but_a_marker(program)
        program.quit()

    def test_disablemon(self):
        self.watch().quit()
        program = self.start("-disablemon")
        program.wait_for("Trojan Sentry Deactivated", count=2)
        self.assertEqual(program.messages, [
            "Verbose Mode Disabled", "Port Sentry Deactivated", "Trojan Sentry Deactivated",
            "Trojan Sentry Activated", "IdentD Server Deactivated", "Trojan Sentry Deactivated"])
        self.home.reg("set", RUN, "Trojan", "REG_SZ", "evil.exe")
        self.assertIn('"Trojan Sentry" REG_DWORD 0',
                      self.home.reg("list", SETTINGS).stdout.decode().splitlines())
        program.ask("click MainForm.ActiveMonMnu")
        self.nothing_but_a_marker(program)  # what came while it was off is accepted
        self.assertTrue(self.stored("Trojan"))


if __name__ == "__main__":
    unittest.main()
