"""The watch of the autostart places, from the change to the answer."""

import os
import unittest

from tallowin_harness import SETTINGS, TestCase

RUN = r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run"
REMOVE = "[?] Remove Registry Entry?"


class TrojanSentry(TestCase):
    def watch(self):
        self.home.set_up({}, Port_Sentry=0, Trojan_Sentry=1)
        return self.start()

    def answer(self, program, start, details, answer, done=None):
        """Answers the question behind line `start`, and sees that it is about this."""
        end = program.wait_for("yes / no", start=start)
        self.assertEqual(program.lines[end - len(details):end], details)
        program.send(answer)
        if done:
            program.wait_for(done, start=end)
            program.send("ok")
        # What changes before the end of the tick counts as accepted with it.
        for _ in range(2):  # the first may come in the pass of the loop that brings the answer
            program.get("MainForm.ActiveMonMnu")

    def undo(self, program, start, name, data):
        self.answer(program, start, [f"Registry Key: {RUN}", f"Value Name: {name}",
                                     f"Value Data: {data}"],
                    "yes", "Successfully Removed Possible Trojan From Registry")

    def nothing_but_a_marker(self, program):
        """Makes a change of its own and sees that it is the only one that is told."""
        start = len(program.lines)
        self.home.reg("set", RUN, "Marker", "REG_SZ", "marker")
        self.undo(program, start, "Marker", "marker")
        self.assertEqual(program.messages[start], REMOVE)

    def stored(self, name):
        return self.home.reg("get", RUN, name, check=False).returncode == 0

    def test_a_new_value_is_asked_about_once(self):
        program = self.watch()
        start = len(program.lines)
        self.home.reg("set", RUN, "Trojan", "REG_SZ", "evil.exe /s")
        self.answer(program, start, ["Value Name: Trojan", "Value Data: evil.exe /s"], "no")
        self.nothing_but_a_marker(program)
        self.assertTrue(self.stored("Trojan"))
        self.assertFalse(self.stored("Marker"))

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

    def test_run_line_of_win_ini(self):
        windows = self.home.path / "data" / "tallowin" / "drive_c" / "windows"
        windows.mkdir(parents=True)
        file = windows / "Win.ini"
        file.write_bytes(b"[windows]\r\n; mine\r\nrun=old.exe\r\n")
        program = self.watch()
        for answer, done, after in (
                ("yes", "Successfully Removed Possible Trojan From INI", b"old.exe"),
                ("no", None, b"evil.exe")):
            start = len(program.lines)
            # In one step, as the watch may look at any moment.
            new = file.with_name("new.tmp")
            new.write_bytes(b"[windows]\r\n; mine\r\nrun=evil.exe\r\n")
            new.replace(file)
            self.answer(program, start, [
                f"INI File: {str(windows / 'win.ini').upper()}", "Section: [Windows]",
                "Value Name: Run", "Old Value: old.exe", "New Value: evil.exe"], answer, done)
            self.nothing_but_a_marker(program)
            self.assertEqual(file.read_bytes(), b"[windows]\r\n; mine\r\nrun=%s\r\n" % after)

    def test_disablemon(self):
        self.watch().quit()
        program = self.start("-disablemon")
        program.wait_for("Trojan Sentry Deactivated", count=2)
        self.home.reg("set", RUN, "Trojan", "REG_SZ", "evil.exe")
        self.assertIn('"Trojan Sentry" REG_DWORD 0',
                      self.home.reg("list", SETTINGS).stdout.decode().splitlines())
        program.ask("click MainForm.ActiveMonMnu")
        self.nothing_but_a_marker(program)  # what came while it was off is accepted
        self.assertTrue(self.stored("Trojan"))


if __name__ == "__main__":
    unittest.main()
