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
from pathlib import Path

from tallowin_harness import DEADLINE, Like, TestCase, run_sleeper

RUN = r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run"
ERROR = "[?] Error Removing (Possible) Virus"


class Hunt(TestCase):
    def answer(self, program, place, question, answer):
        """The hunt looks at all programs of the machine. One that cannot be read for a moment is
        told of, and then the hunt starts anew."""
        either = Like(f"{re.escape(question)}|{re.escape(ERROR)}")
        while True:
            place = program.wait_for(either, start=place) + 1
            if program.messages[place - 1] == question:
                program.send(answer)
                return place
            program.send("ok")

    def test_an_offender_under_two_other_names(self):
        self.home.set_up({}, Trojan_Sentry=1)
        offender = self.home.path / "offender"
        offender.write_bytes(Path("/bin/sleep").read_bytes() + os.urandom(16))
        offender.chmod(0o700)
        program = self.start(until="Trojan Sentry Activated")
        copies = [shutil.copy(offender, self.home.path / name) for name in ("first name", "second")]
        # They are asked about in the order of their ids, which start anew from time to time.
        running = sorted(((run_sleeper(self, path), path) for path in copies),
                         key=lambda one: one[0].pid)
        (killed, deleted), (spared, kept) = running
        innocent = self.home.path / "folder" / "offender"
        innocent.parent.mkdir()
        bystander = run_sleeper(self, shutil.copy("/bin/sleep", innocent))

        self.home.write({RUN: {"offender": str(offender)}})
        place = 0
        for question, answer in (("[?] Remove Registry Entry?", "no"), ("[?] Kill Process?", "yes"),
                                 ("[?] Delete File?", "yes"), ("[?] Kill Process?", "no")):
            place = self.answer(program, place, question, answer)
        self.assertEqual(killed.wait(DEADLINE), -9)
        self.assertFalse(deleted.exists())
        self.assertIsNone(spared.poll())
        self.assertIsNone(bystander.poll())
        self.assertTrue(kept.exists() and offender.exists())

    def test_the_bait_is_what_the_script_makes(self):
        script = Path(__file__).resolve().parents[2] / "tools" / "make-test-programs"
        subprocess.run([sys.executable, str(script), "--check"], check=True)


if __name__ == "__main__":
    unittest.main()
