"""The responses to a caller: lookups, warning, siren, hang-up and shutdown, and their simulation.

The login manager and the network manager are played by python-dbusmock on a bus of the test's own.
"""

import os
import unittest
from pathlib import Path

from mocked_bus import MockedBus
from tallowin_harness import (
    CHAT, PORTS, REFUSE, REFUSED, SEND, SENT, TestCase, attempt, call, free_ports, wait_until,
)

EVENTS = r"HKEY_CURRENT_USER\AppEvents\Schemes"
NAMELESS = "/org/freedesktop/NetworkManager/ActiveConnection/"
ONLY_A_TEST = [
    "[?] Tallowin",
    "Tallowin will now test itself by simulating a hacker connecting to your computer. Do not "
    "panic if an alarm sounds or a visual warning appears on your screen as this is only a test.",
    "ok",
]


class Responses(TestCase):
    def with_responses(self, **flags):
        self.port, = free_ports(1)
        self.home.set_up({1: (self.port, SEND, "Go away.")})
        names = {name.replace("_", " "): value for name, value in flags.items()}
        self.home.write({f"{PORTS}1": names})

    def attempt(self, program):
        self.assertEqual(call(self.port), (b"Go away.", "end"))
        end = program.wait_for("----Connected Attempt Ended----")
        start = program.messages.index("----Connected Attempt Started----") - 1
        return program.messages[start:end + 1]

    def test_off_and_grey_are_only_the_two_lookups(self):
        bus = MockedBus(self)
        login = bus.mock("org.freedesktop.login1", "logind", {})
        self.with_responses(Sound_Siren=2, Visual_Warning=2, Hang_Up_Modem=2, ShutDown=2)
        program = self.start()
        self.assertEqual(self.attempt(program), attempt(self.port, "slot 1", SENT))
        self.assertEqual(login(), [])

    def test_every_response_that_needs_no_network(self):
        bus = MockedBus(self)
        login = bus.mock("org.freedesktop.login1", "logind", {})
        template = str(Path(__file__).with_name("dial_up_template.py"))
        links = [["My provider", "gsm"], ["", "802-3-ethernet"], ["", "ppp"], [" ", "gsm"]]
        network = bus.mock("org.freedesktop.NetworkManager", template, {"links": links})
        self.with_responses(Sound_Siren=1, Visual_Warning=1, Hang_Up_Modem=1, ShutDown=1)
        program = self.start()
        self.assertNotIn("libcanberra", self.maps(program))
        threads = self.threads(program)
        self.assertEqual(self.attempt(program), attempt(self.port, "slot 1", SENT))
        self.assertIn("libcanberra", self.maps(program))
        self.assertEqual(threads, 1)
        # Those without a name are dropped, and what was not dialled is not looked at.
        self.assertEqual(network(), [f'DeactivateConnection "{NAMELESS}{i}"' for i in (2, 3)])
        self.assertEqual(login(), ["PowerOff False"])
        # It blinks.
        wait_until(lambda: {"BigMSG\tForm\t\t\tTallowin Warning",
                            "Label1\tLabel\t\t\tWARNING\\r\\nConnection Attempted"}
                   <= set(program.ask("show BigMSG")), "the warning")
        self.assertEqual(program.quit(), 0)

    def maps(self, program):
        return Path(f"/proc/{program.process.pid}/maps").read_text(encoding="utf-8")

    def threads(self, program):
        return len(os.listdir(f"/proc/{program.process.pid}/task"))

    def test_a_machine_without_the_services_and_the_sounds(self):
        self.with_responses(Sound_Siren=1, ShutDown=1)
        (self.home.program / "hacker.wav").unlink()
        program = self.start()
        self.assertEqual(self.attempt(program), attempt(self.port, "slot 1", SENT))
        self.assertNotIn("libcanberra", self.maps(program))
        self.assertEqual(program.quit(), 0)

    def test_sound_events_are_registered_and_the_users_choice_stays(self):
        def stored(key):
            return self.home.reg("get", rf"{EVENTS}\{key}", "").stdout.decode()

        hacker = r"Apps\Tallowin\Hacker Detected\.current"
        self.home.set_up({})
        self.start().quit()
        self.assertIn(str(self.home.program / "hacker.wav"), stored(hacker))
        self.assertIn(str(self.home.program / "trojan.wav"),
                      stored(r"Apps\Tallowin\Trojan Detected\.current"))
        self.assertIn("Tallowin", stored("Tallowin"))
        self.home.reg("set", rf"{EVENTS}\{hacker}", "", "REG_SZ", "/my/own.wav")
        self.start().quit()
        self.assertIn("/my/own.wav", stored(hacker))


class Simulation(TestCase):
    def simulate(self, program):
        self.assertEqual(program.ask("click MainForm.simhack", "ok")[:3], ONLY_A_TEST)

    def assert_ready_again(self, program):
        wait_until(lambda: "disabled" not in self.item(program), "simhack can be chosen again")

    def item(self, program):
        return next(line for line in program.ask("show MainForm") if line.startswith("simhack\t"))

    def test_the_first_used_slot_is_called_again_and_again(self):
        ports = free_ports(2)
        for action, treatment in ((REFUSE, REFUSED), (SEND, SENT)):
            with self.subTest(action):
                self.home.set_up({4: (ports[0], action, "Go away."), 5: (ports[1], SEND, "x")})
                program = self.start()
                before = len(program.messages)
                for run in (1, 2):
                    self.simulate(program)
                    program.wait_for("----Connected Attempt Ended----", count=run)
                    self.assert_ready_again(program)
                logged = "\n".join(program.messages[before:])
                self.assertEqual(logged.count(f"Connection Attempted On Port {ports[0]}"), 2)
                self.assertEqual(logged.count("Malicious Users IP: 127.0.0.1"), 2)
                self.assertEqual(logged.count(treatment[0]), 2)
                self.assertEqual(program.get("MainForm.LoggedIPs"), "127.0.0.1")
                program.quit()

    def test_a_chat_lasts_until_the_user_ends_it(self):
        port, = free_ports(1)
        self.home.set_up({2: (port, CHAT, "")})
        program = self.start()
        for run in (1, 2):
            self.simulate(program)
            program.wait_for("----Connected Attempt Ended----", count=run)
            self.assertIn(f"Chat Initialised With Port {port}", program.messages)
            program.ask("set ChatWindow.SendBox nobody reads this", "click ChatWindow.SendButton")
            self.assertIn("disabled", self.item(program))
            program.ask("click ChatWindow.EndButton")
            self.assert_ready_again(program)

    def test_a_closed_port_is_silent_and_an_empty_table_is_not(self):
        self.home.set_up({1: (free_ports(1)[0], SEND, "x")})
        program = self.start()
        program.ask("click Form1.disableprotectmnu")
        self.simulate(program)
        self.assert_ready_again(program)
        program.ask("click MainForm.portsntmnu")
        self.assertEqual(program.ask("click MainForm.simhack", "ok"), [
            "[?] Cannot Simulate Hack", "Port Sentry Is Not Enabled", "ok"])
        program.quit()
        self.home.set_up({}, Port_Sentry=1)
        program = self.start()
        self.assertEqual(program.ask("click MainForm.simhack", "ok", "ok"), [
            *ONLY_A_TEST, "[?] Cannot Simulate Hack", "You do not have any ports setup", "ok"])
        self.assertIn("disabled", self.item(program))


if __name__ == "__main__":
    unittest.main()
