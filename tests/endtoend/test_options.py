"""The options, row by row, as a user of the terminal meets them."""

import unittest

from tallowin_harness import (
    CHAT, PORTS, REFUSE, SEND, SETTINGS, TestCase, call, free_ports, without_stamps,
)

# Box, its name in the store, menu item, the lines of the two switches; all but the first in verbose
# mode only.
SWITCHES = [
    ("VerboseChk", "Verbose Mode", None, "Verbose Mode Disabled", "Verbose Mode Enabled"),
    ("OnTopChk", "Always On Top", None, "Always On Top Disabled", "Always On Top Enabled"),
    ("PortChk", "Port Sentry", "portsntmnu", "Port Sentry Disactivated",
     "Port Sentry Disactivated"),
    ("ActiveMonChk", "Trojan Sentry", "ActiveMonMnu", "Trojan Sentry Disabled",
     "Trojan Sentry Enabled"),
    ("IdentDChk", "IdentD", "identmnu", "IdentD Server Deactivated", None),
]
# Control, name in the store, what the user gives it, what is stored.
FIELDS = [
    ("PortNumTxt", "Socket Number", "-42", -42),
    ("PortDescrip", "Port Description", "a <b>port</b>", "a <b>port</b>"),
    ("ActionCombo", "Action", SEND, SEND),
    ("TextToSend", "Packet To Send", r"two\r\nlines", "two\nlines"),
    ("SirenChk", "Sound Siren", "1", 1),
    ("WhoisChk", "Whois Hacker", "1", 1),
    ("TraceRouteChk", "Trace Route Hacker", "1", 1),
    ("HangupChk", "Hang Up Modem", "1", 1),
    ("ShutDownChk", "ShutDown", "1", 1),
    ("VisualAlert", "Visual Warning", "1", 1),
]


class Options(TestCase):
    def open(self, slots, **settings):
        self.home.set_up(slots, **settings)
        program = self.start()
        self.assertEqual(program.ask("click MainForm.prefsmnu"), [])
        return program

    def use(self, program, *controls):
        """Sets or clicks controls of the form; gives the messages."""
        return without_stamps(program.ask(*[
            f"set Options.{line}" if " " in line else f"click Options.{line}"
            for line in controls]))

    def assert_stored(self, key, name, value):
        data = self.home.reg("get", key, name).stdout.decode().removesuffix("\n")
        if isinstance(value, int):
            data = int(data) - (1 << 32 if int(data) >> 31 else 0)
        self.assertEqual(data, value, name)

    def test_switches_act_at_once_and_ok_keeps_them(self):
        program = self.open({}, Port_Sentry=0, Verbose_Mode=0)
        for value in (1, 0):
            # Verbose mode is on while the others are switched.
            for box, name, item, *lines in SWITCHES[::1 if value else -1]:
                messages = self.use(program, f"{box} {value}")
                if lines[value]:
                    self.assertEqual(messages[0], lines[value])
                if item:
                    self.assertEqual(program.get(f"MainForm.{item}"), "checked" if value else "")
                self.assert_stored(SETTINGS, name, 1 - value)
            messages = self.use(program, "Command1")
            self.assertEqual(messages[-1:], ["Port Sentry Activated"][:value])
            for _, name, *_ in SWITCHES:
                self.assert_stored(SETTINGS, name, value)
            program.ask("click MainForm.prefsmnu")

    def test_fields_of_a_slot(self):
        program = self.open({1: (7, CHAT, "")}, Port_Sentry=0)
        self.assertIn("Frame2\tFrame\t\t\tOn Connnection Attempt", program.ask("show Options"))
        self.use(program, "Command4(1)",
                 *[f"{control} {typed}" for control, _, typed, _ in FIELDS], "Command4(0)")
        # The box of the trace route still shows what the second slot holds.
        shown = [program.get(f"Options.{control}") for control, *_ in FIELDS]
        self.assertEqual(shown, ["7", "slot 1", CHAT, "", "0", "0", "1", "0", "0", "0"])
        self.use(program, "Command1")
        for _, name, _, value in FIELDS:
            self.assert_stored(f"{PORTS}2", name, value)
        self.assert_stored(f"{PORTS}1", "Trace Route Hacker", 0)

    def test_listeners_follow_ok_and_cancel(self):
        old, new = free_ports(2)
        program = self.open({1: (old, SEND, "old")})
        rebuilt = ["Port Sentry Deactivated", "Port Sentry Activated"]
        self.assertEqual(self.use(program, f"PortNumTxt {new}", "TextToSend new", "Command2"),
                         rebuilt)
        self.assertEqual(call(old), (b"old", "end"))
        program.ask("click MainForm.prefsmnu")
        self.assertEqual(self.use(program, f"PortNumTxt {new}", "TextToSend new", "Command1"),
                         rebuilt)
        self.assertEqual(call(new), (b"new", "end"))
        with self.assertRaises(ConnectionRefusedError):
            call(old)

    def test_conflict(self):
        program = self.open({1: (7, REFUSE, ""), 15: (9, REFUSE, "")}, Port_Sentry=0)
        self.assertEqual(program.ask("set Options.PortNumTxt 9", "click Options.Command1", "ok"), [
            "[?] Conflicting Ports",
            "You have two or more conflicting sockets, please resolve the problem and try again",
            "ok"])
        self.assertEqual(program.ask("forms")[1], "Options\tForm\t\t\tTallowin Options")

    def test_load_defaults(self):
        self.home.place_presets()
        program = self.open({1: (7, CHAT, "")}, Port_Sentry=0)
        self.use(program, "PortNumTxt 8", "Command3")
        self.assertEqual(program.get("Options.PortNumTxt"), "8")
        self.use(program, "Command4(1)", "Command4(0)")
        self.assertEqual(program.get("Options.PortNumTxt"), "1080")
        self.use(program, "Command2")
        self.assert_stored(f"{PORTS}1", "Socket Number", 1080)
        program.ask("click MainForm.prefsmnu")
        self.assertEqual(program.get("Options.PortNumTxt"), "7")


if __name__ == "__main__":
    unittest.main()
