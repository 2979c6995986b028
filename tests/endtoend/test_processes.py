"""The process manager beside what other tools of this machine tell."""

import os
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from tallowin_harness import DEADLINE, RUNS_AS_ROOT, Like, TestCase, rows_of, run_sleeper, wait_until


class ProcessManager(TestCase):
    def setUp(self):
        super().setUp()
        self.home.set_up({})

    def opened(self, home=None):
        program = (home or self.home).start()
        program.wait_for("IdentD Server Deactivated")
        program.send("click MainForm.procman")
        return program

    def sleeper(self, name):
        """A program of its own that runs under its path when this returns."""
        path = self.home.path / name
        return run_sleeper(self, shutil.copy("/bin/sleep", path)), path

    def choose(self, program, process):
        program.send("click ProcessManFrm.Toolbar1 refresh")
        rows = rows_of(program, "ProcessManFrm", "ProcView1")
        program.send("select ProcessManFrm.ProcView1 "
                     f"{next(i for i, row in enumerate(rows) if row[1] == str(process.pid))}")

    def test_processes_modules_and_their_end(self):
        program = self.opened()
        process, path = self.sleeper("one")
        self.choose(program, process)
        text = Path(f"/proc/{process.pid}/maps").read_text("utf-8")
        maps = [line.split() for line in text.splitlines()]
        modules = rows_of(program, "ProcessManFrm", "ThreadsView1")
        base = next(line[0].split("-")[0] for line in maps if line[-1] == str(path))
        self.assertEqual(modules[0], [str(path), str(int(base, 16))])
        self.assertEqual({row[0] for row in modules},
                         {line[5] for line in maps if "x" in line[1] and line[-1][0] == "/"})
        listed = {row[1]: row[0] for row in rows_of(program, "ProcessManFrm", "ProcView1")}
        own = subprocess.run(["ps", "--no-headers", "-o", "pid,comm", "--ppid", str(os.getpid())],
                             capture_output=True, text=True, check=True).stdout
        for line in own.splitlines():
            pid, name = line.split(None, 1)
            if name != "ps":
                self.assertTrue(os.path.basename(listed[pid]).startswith(name), line)

        place = len(program.messages)
        program.send("click ProcessManFrm.Toolbar1 copy")
        program.wait_for("[?] Add current threads?", start=place)
        program.send("yes")
        program.wait_for(Like(rf"{re.escape(str(path))} +{int(base, 16)} *"), start=place)
        logged = "\n".join(program.messages[place:] + [log.read_text("utf-8") for log in self.home.logs()])
        self.assertRegex(logged, rf"{re.escape(str(path))} +{process.pid} +\d\d \w")

        program.send("click ProcessManFrm.Toolbar1 terminate")
        program.wait_for("[?] Terminate Process?", start=place)
        program.send("yes")
        self.assertEqual(process.wait(DEADLINE), -9)
        process, path = self.sleeper("two")
        self.choose(program, process)
        program.send("click ProcessManFrm.Toolbar1 terminateanddel")
        program.wait_for("[?] Terminate Process and Delete Program?", start=place)
        program.send("removefile")
        self.assertEqual(process.wait(DEADLINE), -9)
        wait_until(lambda: not path.exists(), "the file is deleted")

    @unittest.skipUnless(RUNS_AS_ROOT, "needs another user")
    def test_an_ordinary_user_cannot_end_what_belongs_to_root(self):
        process, path = self.sleeper("roots")
        home = self.make_home(as_nobody=True)
        home.set_up({})
        program = self.opened(home)
        self.choose(program, process)
        self.assertEqual(rows_of(program, "ProcessManFrm", "ThreadsView1"), [])
        program.send("click ProcessManFrm.Toolbar1 terminateanddel", "REMOVEFILE")
        # Nobody may know what it runs, and so no file is named.
        program.wait_for("[?] Error")
        program.send("ok")
        self.assertIn(["roots", str(process.pid)],
                      [row[:2] for row in rows_of(program, "ProcessManFrm", "ProcView1")])
        self.assertIsNone(process.poll())
        self.assertTrue(path.exists())


if __name__ == "__main__":
    unittest.main()
