"""What surrounds the terminal program: input that is there too early, output that nobody reads,
descriptors that are closed."""

import os
import signal
import subprocess
import unittest

from tallowin_harness import (
    DEADLINE, REFUSE, SETTINGS, TestCase, call, free_ports, wait_until,
)


class Terminal(TestCase):
    def test_commands_that_wait_already_run_behind_start_up(self):
        # A switch saves all settings: run in the middle of loading them, it would lose the rest.
        self.home.set_up({}, Email="me@example.org", IdentDReply="Bob", Trojan_Sentry=1)
        file = self.home.path / "commands"
        file.write_text("click MainForm.portsntmnu\nquit\n", encoding="ascii")
        with file.open("rb") as commands:
            done = subprocess.run([str(self.home.program / "tallowin-console")], stdin=commands,
                                  env=self.home.environment, capture_output=True, timeout=DEADLINE,
                                  check=False)
        self.assertEqual(done.returncode, 0)
        self.assertIn(b"Port Sentry Deactivated", done.stdout.splitlines()[-2])
        stored = self.home.reg("list", SETTINGS).stdout.decode()
        for line in ('"Email" REG_SZ me@example.org', '"IdentDReply" REG_SZ Bob',
                     '"Trojan Sentry" REG_DWORD 1', '"IdentD" REG_DWORD 0',
                     '"Port Sentry" REG_DWORD 0'):
            self.assertIn(line, stored.splitlines())

    def test_the_guard_goes_on_when_nobody_reads_its_output(self):
        port = free_ports(1)[0]
        self.home.set_up({1: (port, REFUSE, "")})
        process = subprocess.Popen([str(self.home.program / "tallowin-console")],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                   env=self.home.environment)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        wait_until(lambda: accepts(port), "the port is open")
        for _ in range(300):  # some 150 KB of status lines, more than a pipe holds
            self.assertEqual(call(port), (b"", "reset"))
        process.send_signal(signal.SIGTERM)
        self.assertEqual(process.wait(DEADLINE), 0)
        self.assertEqual(len(self.home.logs()), 1)

    def test_closed_descriptors_are_no_place_for_files_of_the_program(self):
        port = free_ports(1)[0]
        self.home.set_up({1: (port, REFUSE, "")})
        process = subprocess.Popen(
            ["sh", "-c", 'exec "$0" <&- >&- 2>&-', str(self.home.program / "tallowin-console")],
            env=self.home.environment)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        wait_until(lambda: accepts(port), "the port is open")
        for descriptor in range(3):
            self.assertEqual(os.readlink(f"/proc/{process.pid}/fd/{descriptor}"), "/dev/null")


def accepts(port):
    try:
        return call(port) == (b"", "reset")
    except ConnectionRefusedError:
        return False


if __name__ == "__main__":
    unittest.main()
