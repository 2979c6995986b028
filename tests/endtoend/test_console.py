"""The program in a terminal, from its start to its end, with real callers."""

import contextlib
import os
import re
import signal
import socket
import struct
import unittest

from tallowin_harness import (
    CHAT, DEADLINE, PORTS, REFUSE, REFUSED, SEND, SENT, SETTINGS, STAMP, SUITE, Path, TestCase,
    attempt, call, free_ports, log_text, wait_until, without_stamps,
)

QUIET_START = [
    "Verbose Mode Disabled",
    "Port Sentry Deactivated",
    "Port Sentry Activated",
    "Trojan Sentry Deactivated",
    "IdentD Server Deactivated",
]


class Start(TestCase):
    def test_first_start_imports_the_presets_and_no_later_one_does(self):
        self.home.place_presets()
        program = self.start()
        # Another program on this machine may hold one of the preset ports.
        messages = [m for m in program.messages if not m.startswith("Error Initialising Port ")]
        self.assertEqual(messages, [*QUIET_START[:-1], "Trojan Sentry Activated", QUIET_START[-1]])
        self.assertIn("MainForm\tForm\t\thidden\tTallowin 1", program.ask("forms"))
        self.assertEqual(program.quit(), 0)
        self.assertEqual(program.errors, b"")
        self.home.reg("delete", SETTINGS)
        self.home.reg("delete", f"{PORTS}1")
        program = self.start(until=None)
        self.assertEqual(program.get("Options.PortChk"), "2")
        self.assertEqual(program.quit(), 0)
        self.assertNotIn(b"Setting 1]", self.home.reg("list", PORTS.rsplit("\\", 1)[0]).stdout)

    def test_presets_that_cannot_be_imported_are_told_of_and_tried_again(self):
        self.home.imported.unlink()
        for spoilt in (b"", self.home.presets.read_bytes() + b"spoilt\r\n"):
            if spoilt:
                self.home.imported.write_bytes(spoilt)
            program = self.start(until=None)
            self.assertEqual(program.get("Options.PortChk"), "2")
            program.quit()
            self.assertRegex(program.errors, rb"^tallowin-console: the presets in .*\n$")
            self.assertEqual(self.home.reg("list", SUITE, check=False).returncode, 1)

    def test_a_port_number_that_cannot_be_held_ends_the_table_there(self):
        first, third = free_ports(2)
        for wrong in (70000, 32768, "no number"):
            with self.subTest(wrong=wrong):
                self.home.set_up({1: (first, SEND, "one"), 3: (third, SEND, "three")})
                self.home.write({f"{PORTS}2": {"Socket Number": wrong}})
                program = self.start()
                self.assertEqual(program.messages, QUIET_START)
                self.assertEqual(call(first), (b"one", "end"))
                with self.assertRaises(ConnectionRefusedError):
                    call(third)
                program.quit()

    def test_a_taken_port_leaves_the_others(self):
        with socket.create_server(("0.0.0.0", free_ports(1)[0])) as other:
            taken, free = other.getsockname()[1], free_ports(1)[0]
            self.home.set_up({2: (taken, SEND, "x"), 3: (free, SEND, "up")}, Verbose_Mode=1)
            program = self.start()
            place = program.messages.index("Error Initialising Port 2")
            self.assertRegex(program.messages[place - 1], r"^Error: 10048 \S")
            self.assertEqual(program.messages[place + 1], f"Port {taken} Initialised")
            self.assertIn("Port Sentry Activated", program.messages)
            self.assertEqual(call(free), (b"up", "end"))

    def test_a_port_that_needs_a_privilege(self):
        with open("/proc/sys/net/ipv4/ip_unprivileged_port_start", encoding="ascii") as limit:
            if int(limit.read()) < 80:
                self.skipTest("this system asks no privilege for any port")
        self.home = self.make_home(as_nobody=True)
        free = free_ports(1)[0]
        self.home.set_up({1: (79, SEND, "x"), 2: (free, SEND, "up")}, Verbose_Mode=1)
        program = self.start()
        place = program.messages.index("Error Initialising Port 1")
        self.assertRegex(program.messages[place - 1], r"^Error: 10013 \S")
        self.assertEqual(call(free), (b"up", "end"))


class CommandLine(TestCase):
    def test_switches_need_nothing_between_them_and_last(self):
        self.home.set_up({})
        program = self.start("-DISABLESENTRY-Restored")
        program.wait_for("Port Sentry Deactivated", count=2)
        self.assertEqual(program.messages, [*QUIET_START, "Port Sentry Deactivated"])
        self.assertIn("MainForm\tForm\t\t\tTallowin 1", program.ask("forms"))
        program.quit()
        program = self.start()
        self.assertEqual(program.messages, [
            "Verbose Mode Disabled", "Port Sentry Deactivated", "Trojan Sentry Deactivated",
            "IdentD Server Deactivated"])
        self.assertEqual(program.get("MainForm.portsntmnu"), "")

    def test_help_ends_the_program_after_the_services_came_up(self):
        self.home.set_up({})
        program = self.start("-?")
        program.wait_for("ok")
        self.assertEqual(program.messages, [
            *QUIET_START,
            "[?] Command Line Arguments",
            "Command Line Parameters",
            "---",
            "-DisableMon\t- Disable Active Monitoring",
            "-DisableSentry\t- Disable Port Sentry",
            "-Restored\t\t- Start window restored",
            "ok",
        ])
        program.send("OK")
        self.assertEqual(program.wait_end(), 0)
        self.assertEqual(self.home.logs(), [])

    def test_second_instance(self):
        port = free_ports(1)[0]
        self.home.set_up({4: (port, SEND, "still here")})
        first = self.start()
        second = self.start(until=None)
        self.assertEqual(second.wait_end(), 0)
        log, = self.home.logs()
        self.assertEqual(second.messages, [f"Wrote Log To File: {log}"])
        self.assertEqual(log_text(log), "")
        self.assertEqual(call(port), (b"still here", "end"))
        first.wait_for("----Connected Attempt Ended----")
        self.assertEqual(first.messages, QUIET_START + attempt(port, "slot 4", SENT))


class Callers(TestCase):
    def test_refused_and_answered_line_by_line(self):
        refusing, sending, odd = free_ports(3)
        slots = {1: (refusing, REFUSE, ""), 5: (sending, SEND, "Go away.\r\n\u00e4"),
                 6: (odd, "no such action", "")}
        self.home.set_up(slots)
        program = self.start()
        self.assertEqual(call(refusing), (b"", "reset"))
        program.wait_for("----Connected Attempt Ended----")
        self.assertEqual(call(sending), ("Go away.\r\n\u00e4".encode(), "end"))
        program.wait_for("----Connected Attempt Ended----", count=2)
        socket.create_connection(("127.0.0.1", odd)).close()
        program.wait_for("----Connected Attempt Ended----", count=3)
        expected = [*QUIET_START, *attempt(refusing, "slot 1", REFUSED),
                    *attempt(sending, "slot 5", SENT), *attempt(odd, "slot 6", [])]
        self.assertEqual(program.messages, expected)
        rows = [line for line in program.ask("show MainForm") if re.match(r"\t\d", line)]
        self.assertEqual(rows, [f"\t{row}\t127.0.0.1" for row in range(3)])
        self.assertEqual(program.quit(), 0)
        log, = self.home.logs()
        lines = log_text(log).split("\r\n")
        self.assertEqual(without_stamps(lines), [*expected, ""])
        self.assertEqual(program.messages[-1], f"Wrote Log To File: {log}")
        # What opens a block is a stamped empty line; the line behind it is the only one without.
        bare = [line for line in lines if line and not STAMP.match(line)]
        self.assertEqual(bare, ["----Connected Attempt Started----", "Resolve DNS Started",
                                "Ping Started"] * 3)

    def test_chat(self):
        ports = free_ports(2)
        self.home.set_up({1: (ports[0], CHAT, ""), 2: (ports[1], CHAT, "")})
        program = self.start()
        callers = []
        for port in ports:
            callers.append(socket.create_connection(("127.0.0.1", port), timeout=DEADLINE))
            self.addCleanup(callers[-1].close)
            program.wait_for(f"Chat Initialised With Port {port}")
        self.assertIn("ChatWindow\tForm\t\t\tChat With Hacker", program.ask("forms"))
        callers[0].sendall(b"hello\r\n")
        said = f"Port {ports[0]}: hello\\r\\n\\r\\n"
        wait_until(lambda: program.get("ChatWindow.ChatBox") == said, "the caller's word")
        program.ask("set ChatWindow.SendBox who is there?", "click ChatWindow.SendButton")
        program.ask("click ChatWindow.SendButton")
        expected = b"Host: who is there?\r\nHost: \r\n"
        for caller in callers:
            self.assertEqual(caller.recv(len(expected), socket.MSG_WAITALL), expected)
        self.assertEqual(program.get("ChatWindow.ChatBox"),
                         said + "Host: who is there?\\r\\nHost: \\r\\n")
        program.ask("click ChatWindow.EndButton")
        for caller in callers:
            self.assertEqual(caller.recv(1), b"")
        self.assertIn("ChatWindow\tForm\t\thidden\tChat With Hacker", program.ask("forms"))
        self.assertNotIn("who is there?", program.get("MainForm.Status"))

    def test_a_chat_that_is_reset_leaves_its_port_ready(self):
        port = free_ports(1)[0]
        self.home.set_up({1: (port, CHAT, "")})
        program = self.start()
        shown = "ChatWindow\tForm\t\t\tChat With Hacker"
        for turn in (1, 2, 3):
            with socket.create_connection(("127.0.0.1", port), timeout=DEADLINE) as caller:
                program.wait_for(f"Chat Initialised With Port {port}", count=turn)
                self.assertIn(shown, program.ask("forms"))
                caller.sendall(b"turn %d" % turn)
                wait_until(lambda: f"turn {turn}" in program.get("ChatWindow.ChatBox"), "the word")
                caller.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
            wait_until(lambda: shown not in program.ask("forms"), "the end of the chat")

    def call_while_it_stands_still(self, program, port, data):
        """So that the caller's data is there before the program takes the call."""
        os.kill(program.process.pid, signal.SIGSTOP)
        stat = Path(f"/proc/{program.process.pid}/stat")
        wait_until(lambda: ") T " in stat.read_text("utf-8"), "standstill")
        caller = socket.create_connection(("127.0.0.1", port), timeout=DEADLINE)
        self.addCleanup(caller.close)
        caller.sendall(data)
        os.kill(program.process.pid, signal.SIGCONT)
        return caller

    def test_hostile_bytes_are_kept_and_shown_harmless(self):
        port = free_ports(1)[0]
        self.home.set_up({1: (port, SEND, "x")})
        program = self.start()
        hostile = b"\x1b]0;owned\x07\x1b[2J\0\x9b5m\xff\xfe\xc3\xa4\xe2\x80\xae\r\n[?] <b>&x\t\x7f"
        self.call_while_it_stands_still(program, port, hostile)
        program.wait_for("----Connected Attempt Ended----")
        shown = "\n".join(program.messages)
        self.assertIn("{\\x1b]0;owned\\x07\\x1b[2J\\x00\\x9b5m\\xff\\xfe\u00e4\\xe2\\x80\\xae\n"
                      "[?] <b>&x\t\\x7f}", shown)
        self.assertIn("{\\x1b]0;owned\\x07\\x1b[2J\\x00", program.get("MainForm.Status"))
        program.quit()
        self.assertIn(b"{" + hostile + b"}\r\n", self.home.logs()[-1].read_bytes())

    def test_megabytes_and_callers_who_never_read(self):
        sending, chat = free_ports(2)
        self.home.set_up({1: (sending, SEND, "x" * 5000), 2: (chat, CHAT, "")})
        program = self.start()
        self.assertEqual(call(sending, b"GET / " * 10)[0][:1], b"x")
        with socket.create_connection(("127.0.0.1", chat), timeout=DEADLINE) as caller:
            caller.sendall(b"\x1b[31m\0" * 500_000)
            wait_until(lambda: " bytes)" in "".join(program.ask("show ChatWindow")), "the chat")
            program.ask("set ChatWindow.SendBox " + "y" * 100_000,
                        *["click ChatWindow.SendButton"] * 20)
        for _ in range(50):
            # At once away again. Who comes while another is being answered is reset, and on a busy
            # machine before he has seen himself connected.
            with contextlib.suppress(ConnectionResetError):
                socket.create_connection(("127.0.0.1", sending), timeout=DEADLINE).close()
        self.call_while_it_stands_still(program, sending, b"z" * 3000)
        program.wait_for("----Connected Attempt Ended----", count=53)
        self.assertEqual(program.quit(), 0)


class Simulation(TestCase):
    def simulate(self, program):
        self.assertEqual(program.ask("click MainForm.simhack", "ok")[0], "[?] Tallowin")

    def wait_until_it_can_be_chosen(self, program):
        wait_until(lambda: "disabled" not in next(
            line for line in program.ask("show MainForm") if line.startswith("simhack\t")), "simhack")

    def test_the_first_used_slot_is_called_again_and_again(self):
        port, other = free_ports(2)
        for action, treatment in ((REFUSE, REFUSED), (SEND, SENT)):
            with self.subTest(action):
                self.home.set_up({4: (port, action, "Go away."), 5: (other, SEND, "x")})
                program = self.start()
                for run in (1, 2):
                    self.simulate(program)
                    program.wait_for("----Connected Attempt Ended----", count=run)
                    self.wait_until_it_can_be_chosen(program)
                self.assertEqual(program.messages.count(f"Connection Attempted On Port {port}"), 2)
                self.assertEqual(program.messages.count(treatment[0]), 2)
                program.quit()

    def test_a_closed_port_is_silent(self):
        self.home.set_up({1: (free_ports(1)[0], SEND, "x")})
        program = self.start()
        program.ask("click Form1.disableprotectmnu")
        self.simulate(program)
        self.wait_until_it_can_be_chosen(program)


class Log(TestCase):
    def test_save_clear_remove(self):
        self.home.set_up({})
        program = self.start()
        saved = program.ask("click MainForm.savelog", "ok")
        self.assertEqual(without_stamps(saved)[1:],
                         ["[?] Tallowin", "Log file has been saved", "ok"])
        log, = self.home.logs()
        self.assertEqual(saved[0].split("To File: ")[1], str(log))
        self.assertEqual(without_stamps(log_text(log).split("\r\n")), [*QUIET_START, ""])
        program.ask("click MainForm.clearlog")
        self.assertEqual(program.get("MainForm.Status"), "")
        (self.home.program / "Logs" / "kept.txt").touch()
        program.ask("click MainForm.Removelogs", "no")
        self.assertNotEqual(self.home.logs(), [])
        self.assertEqual(program.ask("click MainForm.Removelogs", "Yes", "ok"), [
            "[?] Clear All Logs",
            "Are you sure you wish to remove all existing logs (will not clear the currently "
            "displayed log)?",
            "yes / no",
            "[?] Clear All Logs",
            "Logs successfully removed",
            "ok",
        ])
        self.assertEqual(self.home.logs(), [])
        self.assertTrue((self.home.program / "Logs" / "kept.txt").exists())

class End(TestCase):
    def test_exit_asks(self):
        self.home.set_up({})
        program = self.start()
        block = ["[?] Are you sure?", "Are you sure you want to quit? Your system may be vunerable "
                 "to malicious users.", "yes / no"]
        self.assertEqual(program.ask("click MainForm.exittwmnu", "perhaps", "NO"),
                         [*block, "error: the answers are: yes / no"])
        program.send("click MainForm.exittwmnu", "y")
        self.assertEqual(program.wait_end(), 0)
        self.assertEqual(len(self.home.logs()), 1)

    def test_end_of_input_leaves_it_running_until_it_is_told(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            with self.subTest(number):
                port = free_ports(1)[0]
                self.home.set_up({1: (port, SEND, "here")})
                program = self.start()
                program.process.stdin.close()
                self.assertEqual(call(port), (b"here", "end"))
                program.wait_for("----Connected Attempt Ended----")
                before = len(self.home.logs())
                program.process.send_signal(number)
                self.assertEqual(program.wait_end(), 0)
                self.assertRegex(program.messages[-1], "^Wrote Log To File: ")
                self.assertGreaterEqual(len(self.home.logs()), max(before, 1))


if __name__ == "__main__":
    unittest.main()
