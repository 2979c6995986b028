"""Whether every attempt is found again: in the log as it was shown, in the list of callers, in the
files of the log, and among the mails."""

import collections
import re
from dataclasses import dataclass

STARTED = "----Connected Attempt Started----"
ENDED = "----Connected Attempt Ended----"
CALLED = re.compile(r"Connection Attempted On Port (\d+)")
CALLED_IN_FILE = re.compile(rb" :Connection Attempted On Port \d+\r\n")
WROTE = "Wrote Log To File: "
EMPTIED = "Status Continued From Last Log"
MAILED = "SMTP Notification Successful"
NOT_MAILED = "SMTP Notification Failed"
WHOIS_STARTED = re.compile(r"Whois Results For \S+ Started")
WHOIS_ENDED = re.compile(r"(Whois Results For \S+ Completed|End Of Whois Results For \S+)")
WHOIS_BUSY = "Error 360 occured"
COUNTED = (STARTED, ENDED, MAILED, NOT_MAILED, WHOIS_BUSY)


@dataclass
class Write:
    """Of a file of the log. What the user saves is in a later file too; where the text was emptied
    behind the write, the file alone holds it."""

    path: str
    attempts: int
    emptied: bool = False


class Account:
    """Reads the messages of the program in the order in which they come.

    Two kinds of attempts stand in no file, and both are known limits of the log: what is logged
    between the writing of a file and the emptying of the text that went into it goes with that
    text, and a file that is written in the same second as another replaces that one.
    """

    def __init__(self):
        self.attempts = collections.Counter()  # by port
        self.lines = collections.Counter()
        self.emptied_with_text = 0
        self._in_text = 0  # attempts in the text of the log
        self._writes = []

    def read(self, messages):
        for message in messages:
            if called := CALLED.fullmatch(message):
                self.attempts[int(called[1])] += 1
                self._in_text += 1
            elif message.startswith(WROTE):
                self._writes.append(Write(message.removeprefix(WROTE), self._in_text))
            elif message == EMPTIED:
                self.text_emptied()
            elif WHOIS_STARTED.fullmatch(message):
                self.lines["whois started"] += 1
            elif WHOIS_ENDED.fullmatch(message):
                self.lines["whois ended"] += 1
            elif message in COUNTED:
                self.lines[message] += 1

    def text_emptied(self):
        """The last file that was written holds what the text was then, unless the text has been
        emptied since."""
        last = self._writes[-1]
        self.emptied_with_text += self._in_text - (0 if last.emptied else last.attempts)
        last.emptied = True
        self._in_text = 0

    def whois_runs(self):
        return self.lines["whois started"] - self.lines[WHOIS_BUSY] - self.lines["whois ended"]

    def replaced_files(self):
        """How many attempts stood in files that others replaced."""
        last = self._last_writes()
        return sum(write.attempts for write in self._writes
                   if write.emptied and last[write.path] is not write)

    def in_files(self, folder):
        """How many attempts stand in the files that alone hold them."""
        last = self._last_writes()
        return sum(len(CALLED_IN_FILE.findall(file.read_bytes()))
                   for file in folder.glob("*.log")
                   if str(file) in last and last[str(file)].emptied)

    def _last_writes(self):
        return {write.path: write for write in self._writes}

    def faults(self, callers, listed, taken_mails, folder):
        """Gives what does not add up. `listed` are the addresses in the program's list of them."""
        total = sum(self.attempts.values())
        if self.attempts != callers.made:
            yield f"calls by port: {dict(callers.made)}, in the log {dict(self.attempts)}"
        if collections.Counter(listed) != collections.Counter(callers.addresses):
            missing = set(callers.addresses) - set(listed)
            yield f"{len(callers.addresses)} callers, {len(listed)} in the list, without {missing}"
        for line in (STARTED, ENDED):
            if self.lines[line] != total:
                yield f"{total} attempts, but {self.lines[line]} lines {line!r}"
        if self.lines[MAILED] + self.lines[NOT_MAILED] != total:
            yield f"mails: {self.lines[MAILED]} sent and {self.lines[NOT_MAILED]} not for {total}"
        if self.lines[MAILED] != taken_mails:
            yield f"mails: {self.lines[MAILED]} sent, the server took {taken_mails}"
        if self.whois_runs() != 0:
            yield f"whois: {self.whois_runs()} runs have not ended"
        found = self.in_files(folder) + self.emptied_with_text + self.replaced_files()
        if found != total:
            yield f"files of the log: {found} attempts instead of {total}"
