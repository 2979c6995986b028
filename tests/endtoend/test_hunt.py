"""The hunt for the running program behind a change, and the bait of the infection check.

The offender is a copy of a small program that no other file on the machine equals, so that nothing
but what a test has started can be taken for it.
"""

import os
import re
import shutil
import subprocess
import sys
import unittest
import zlib
from pathlib import Path

from tallowin_harness import DEADLINE, Like, TestCase, wait_until

RUN = r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run"
FOUND = "[?] Remove Registry Entry?"
KILL = "[?] Kill Process?"
DELETE = "[?] Delete File?"
ERROR = "[?] Error Removing (Possible) Virus"
WATCHED = "Trojan Sentry Activated"


class Hunt(TestCase):
    def setUp(self):
        super().setUp()
        self.home.set_up({}, Trojan_Sentry=1)
        self.offender = self.home.path / "offender"
        shutil.copy(os.path.realpath("/bin/sleep"), self.offender)
        with self.offender.open("ab") as file:
            file.write(os.urandom(16))

    def copy(self, name):
        path = self.home.path / name
        shutil.copy(self.offender, path)
        return path

    def run_copy(self, path):
        """Has it running under its own path when it returns."""
        process = subprocess.Popen([str(path), "1000"])  # pylint: disable=consider-using-with
        self.addCleanup(lambda: (process.kill(), process.wait()))
        wait_until(lambda: os.readlink(f"/proc/{process.pid}/exe") == str(path.resolve()),
                   f"{path} runs")
        return process

    def install(self, path, name="offender"):
        """What a program does that wants to be started from now on."""
        self.home.write({RUN: {name: str(path)}})

    def answer(self, program, place, *dialogue):
        """Waits for each question and gives its answer."""
        for question, answer in dialogue:
            place = self.wait_for_question(program, question, place) + 1
            program.send(answer)
        return place

    @staticmethod
    def wait_for_question(program, question, place, deadline=DEADLINE):
        """The hunt looks at all programs of the machine. One that cannot be read for a moment is
        told of, and then the hunt starts anew."""
        either = Like(f"{re.escape(question)}|{re.escape(ERROR)}")
        while True:
            place = program.wait_for(either, start=place, deadline=deadline)
            if program.messages[place] == question:
                return place
            program.send("ok")
            place += 1

    def changed(self, program):
        """The change itself is found and kept; behind that the hunt begins."""
        place = program.wait_for(FOUND)
        program.send("no")
        return place + 1

    def assert_hunt_is_over(self, program, place):
        """The watch goes on: it finds the next change, and no question stands before that one."""
        end = self.find_another_change(program, place)
        asked = [message for message in program.messages[place:end] if message.startswith("[?]") and message != ERROR]
        self.assertEqual(asked, [])
        program.send("no")
        program.get("Options.ActiveMonChk")  # taken when the tick is over
        return end + 1

    def find_another_change(self, program, place):
        """What changes while a hunt is still reading counts as accepted, so one may not do."""
        for attempt in range(10):
            other = self.home.path / f"plain {place} {attempt}"
            other.write_text("no program", encoding="ascii")
            self.install(other, other.name)
            try:
                return self.wait_for_question(program, FOUND, place, deadline=DEADLINE / 5)
            except AssertionError:
                pass
        raise AssertionError("the watch finds nothing any more")

    def test_an_offender_under_two_other_names(self):
        program = self.start(until=WATCHED)
        copies = [self.copy("first name"), self.copy("second")]
        running = [(self.run_copy(path), path) for path in copies]
        # They are asked about in the order of their ids, which start anew from time to time.
        processes, paths = zip(*sorted(running, key=lambda one: one[0].pid))
        innocent = self.home.path / "folder" / "offender"
        innocent.parent.mkdir()
        shutil.copy(os.path.realpath("/bin/sleep"), innocent)
        bystander = self.run_copy(innocent)
        self.install(self.offender)
        place = self.answer(program, self.changed(program), (KILL, "yes"), (DELETE, "yes"),
                            (KILL, "no"))
        self.assert_hunt_is_over(program, place)
        self.assertEqual(processes[0].wait(DEADLINE), -9)
        self.assertFalse(paths[0].exists())
        self.assertIsNone(processes[1].poll())
        self.assertTrue(paths[1].exists())
        self.assertIsNone(bystander.poll())
        self.assertTrue(self.offender.exists())

    def test_no_and_then_yes(self):
        program = self.start(until=WATCHED)
        process = self.run_copy(self.offender)
        self.install(self.offender)
        place = self.answer(program, self.changed(program), (KILL, "no"))
        place = self.assert_hunt_is_over(program, place)
        self.assertIsNone(process.poll())
        self.install(self.offender, "once more")
        self.answer(program, place, (FOUND, "no"), (KILL, "yes"), (DELETE, "no"))
        self.assertEqual(process.wait(DEADLINE), -9)
        self.assertTrue(self.offender.exists())

    def test_a_file_deleted_first(self):
        program = self.start(until=WATCHED)
        process = self.run_copy(self.offender)
        copy = self.copy("copy")
        self.install(self.offender)
        place = program.wait_for(FOUND) + 1
        self.offender.unlink()
        program.send("no")
        place = self.assert_hunt_is_over(program, place)
        self.assertIsNone(process.poll())

        # Deleted behind the first question: what the second one would delete has gone. The hunt
        # starts anew, and then there is nothing left to find.
        running = self.run_copy(copy)
        original = shutil.copy(copy, self.home.path / "original")
        self.install(original, "again")
        place = self.answer(program, place, (FOUND, "no"), (KILL, "yes"))
        place = program.wait_for(DELETE, start=place)
        self.assertEqual(running.wait(DEADLINE), -9)
        copy.unlink()
        program.send("yes")
        place = program.wait_for(ERROR, start=place)
        place = program.wait_for("File not found", start=place)
        program.send("ok")
        self.assert_hunt_is_over(program, place)

    def test_an_unreadable_file_is_told_until_it_can_be_read(self):
        program = self.start(until=WATCHED)
        process = self.run_copy(self.copy("running"))
        self.offender.write_bytes(b"")  # as unreadable as can be for root too
        self.install(self.offender)
        place = self.answer(program, self.changed(program), (ERROR, "ok"), (ERROR, "ok"))
        os.replace(shutil.copy(self.home.path / "running", self.home.path / "ready"),
                   self.offender)
        while True:
            place = program.wait_for(Like(r"\[\?\] (Error Removing|Kill Process).*"), start=place) + 1
            if program.messages[place - 1] == KILL:
                break
            program.send("ok")
        program.send("no")
        self.assert_hunt_is_over(program, place)
        self.assertIsNone(process.poll())


class InfectionCheck(TestCase):
    def test_clicks_leave_bait_and_a_program_that_goes_on(self):
        self.home.set_up({})
        program = self.start()
        clicks = 300
        program.send(*["click MainForm.ExeInfectChk"] * clicks)
        program.wait_for("Waiting 10 Seconds For Infection...", count=clicks)
        drive = self.home.path / "data" / "tallowin" / "drive_c"
        for extension in ("exe", "com"):
            files = list(drive.glob(f"TW*.{extension}"))
            # Two pairs may come by the same name: only that of the temporary file is kept free.
            self.assertGreater(len(files), clicks - 10)
            self.assertEqual(len({zlib.crc32(file.read_bytes()) for file in files}), 1)
        self.assertEqual(program.get("Options.VerboseChk"), "0")
        self.assertEqual(program.quit(), 0)

    def test_the_bait_is_what_the_script_makes(self):
        script = Path(__file__).resolve().parents[2] / "tools" / "make-test-programs"
        subprocess.run([sys.executable, str(script), "--check"], check=True)


if __name__ == "__main__":
    unittest.main()
