"""tallowin-reg as a user meets it: words in, text, messages and exit status out."""

import os
import sqlite3
import unittest
from pathlib import Path

from tallowin_harness import PORTS, SETTINGS, TestCase

PROGRAMS = Path(os.environ["TALLOWIN_BIN"])


class TallowinRegTest(TestCase):
    def run_reg(self, *words, status=0):
        """Standard output and standard error, after a look at the exit status."""
        done = self.home.reg(*words, check=False)
        self.assertEqual(done.returncode, status, (words, done.stdout, done.stderr))
        if status != 0:
            self.assertTrue(done.stderr, words)
        return done.stdout.decode(), done.stderr.decode()

    def test_the_presets_are_complete_and_fit_a_desktop(self):
        self.run_reg("import", PROGRAMS / "defaults.reg")
        listed, _ = self.run_reg("list", SETTINGS)
        self.assertEqual(len(listed.splitlines()), 10)
        self.assertIn('"Port Sentry" REG_DWORD 1\n', listed)
        self.assertIn('"IdentDReply" REG_SZ Anonymous\n', listed)
        ports, actions = [], set()
        for slot in range(1, 16):
            listed, _ = self.run_reg("list", PORTS + str(slot))
            self.assertEqual(len(listed.splitlines()), 10)
            ports.append(int(self.run_reg("get", PORTS + str(slot), "Socket Number")[0]))
            actions.add(self.run_reg("get", PORTS + str(slot), "Action")[0])
        self.assertEqual(ports[12:], [0, 0, 0])
        self.assertEqual(len(set(ports[:12])), 12)
        self.assertTrue(all(1023 < port <= 32767 for port in ports[:12]), ports)
        self.assertEqual(actions, {"Don't accept connection\n", "Let me talk to the hacker\n",
                                   "Accept connection send packet then disconnect\n"})

    def test_values_of_each_type_come_back_as_they_were_written(self):
        for kind, data, shown in (("REG_SZ", "a text", "a text"),
                                  ("REG_EXPAND_SZ", "%HOME%", "%HOME%"),
                                  ("REG_DWORD", "0xffffffff", "4294967295"),
                                  ("REG_DWORD", "8080", "8080"),
                                  ("REG_BINARY", "00FF", "00ff"),
                                  ("REG_MULTI_SZ", r"a\0b", r"a\0b")):
            self.run_reg("set", r"HKCU\New\Key", "v", kind, data)
            self.assertEqual(self.run_reg("get", r"hkcu\new\KEY", "V")[0], shown + "\n")
            self.assertEqual(self.run_reg("list", r"HKCU\New\Key")[0], f'"v" {kind} {shown}\n')
        self.assertEqual(self.run_reg("list", r"HKCU\New")[0], "[Key]\n")

        self.run_reg("delete", r"HKCU\New\Key", "v")
        self.run_reg("get", r"HKCU\New\Key", "v", status=1)
        self.run_reg("delete", r"HKCU\New\Key", "v", status=1)
        self.run_reg("delete", r"HKCU\New")
        self.run_reg("list", r"HKCU\New\Key", status=1)

    def test_failures_and_wrong_usage_differ_in_the_exit_status(self):
        for words in (["get", SETTINGS, "Email"], ["list", SETTINGS], ["delete", SETTINGS],
                      ["delete", "HKCU"], ["import", "none.reg"], ["export", "x.reg", SETTINGS]):
            self.run_reg(*words, status=1)
        for words in ([], ["frob"], ["get", SETTINGS], ["list", r"HKEY_NOWHERE\x"],
                      ["set", SETTINGS, "v", "REG_WORD", "1"],
                      ["set", SETTINGS, "v", "REG_DWORD", "4294967296"],
                      ["set", SETTINGS, "v", "REG_DWORD", "-1"],
                      ["set", SETTINGS, "v", "REG_DWORD", "12x"],
                      ["set", SETTINGS, "v", "REG_BINARY", "123"]):
            self.run_reg(*words, status=2)
        self.assertFalse(self.home.registry.exists())
        self.assertIn("Usage:", self.run_reg("--help")[0])

    def test_an_export_writes_into_a_pipe_or_device_and_does_not_replace_it(self):
        self.run_reg("import", PROGRAMS / "defaults.reg")
        self.run_reg("export", "file.reg")
        self.assertEqual((self.home.path / "file.reg").stat().st_mode & 0o777, 0o600)
        pipe = self.home.path / "pipe"
        os.mkfifo(pipe)
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reader)
        self.run_reg("export", "pipe")
        self.assertTrue(pipe.is_fifo())
        self.assertEqual(os.read(reader, 65536), (self.home.path / "file.reg").read_bytes())

    def test_stored_control_characters_do_not_reach_the_terminal(self):
        evil = "\x1b]0;x\x07\r\nsecond\x9b31m"
        self.run_reg("set", r"HKCU\K", "v", "REG_SZ", evil)
        for words in (["list", r"HKCU\K"], ["get", r"HKCU\K", "v"]):
            shown, _ = self.run_reg(*words)
            for character in "\x1b\x07\r\x9b":
                self.assertNotIn(character, shown)
        self.assertEqual(self.run_reg("list", r"HKCU\K")[0].count("\n"), 1)
        self.run_reg("export", "evil.reg")
        self.run_reg("delete", r"HKCU\K")
        self.run_reg("import", "evil.reg")
        with sqlite3.connect(self.home.registry) as store:
            self.assertEqual(store.execute("SELECT data FROM entries").fetchall(),
                             [(evil.encode(),)])

    def test_a_list_tells_stored_backslashes_from_line_ends(self):
        for kind, data, listed in (("REG_SZ", "C:\\new", r"C:\\new"), ("REG_SZ", "C:\new", r"C:\new"),
                                   ("REG_MULTI_SZ", r"C:\a\0C:\b", r"C:\\a\0C:\\b")):
            self.run_reg("set", r"HKCU\K", "v", kind, data)
            self.assertEqual(self.run_reg("list", r"HKCU\K")[0], f'"v" {kind} {listed}\n')
            self.assertEqual(self.run_reg("get", r"HKCU\K", "v")[0], data + "\n")


if __name__ == "__main__":
    unittest.main()
