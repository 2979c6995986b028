"""A mail server of the test's own, and the mails that it takes."""

import base64
import email
import email.policy
import json
import subprocess
import threading
from pathlib import Path

from tallowin_harness import DEADLINE, wait_until

SYSTEM_PYTHON = "/usr/bin/python3"  # the one that Debian's packages of libraries are for


class Mail:
    def __init__(self, line):
        taken = json.loads(line)
        self.sender = taken["from"]
        self.recipients = taken["to"]
        self.encrypted = taken["encrypted"]
        self.user = taken["user"]
        self.content = base64.b64decode(taken["content"])
        self.message = email.message_from_bytes(self.content, policy=email.policy.default)
        # Other mail readers count on line ends as they are in the text, so undo what Python did.
        self.text = self.message.get_content().replace("\r\n", "\n")


class MailServer:
    def __init__(self, *arguments):
        self.process = subprocess.Popen(
            [SYSTEM_PYTHON, str(Path(__file__).with_name("mail_server.py")), *arguments],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self._mails = []
        self.port = int(self.process.stdout.readline())
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    @property
    def address(self):
        return f"127.0.0.1:{self.port}"

    def _read(self):
        for line in self.process.stdout:
            self._mails.append(Mail(line))

    def first(self, count):
        """The first mails; there may be more."""
        return wait_until(lambda: len(self._mails) >= count and self._mails[:count], "mails")

    def all(self):
        """Every mail that was taken. The server is at its end then."""
        self.close()
        return self._mails

    def close(self):
        if self.process.returncode is not None:
            return
        self.process.stdin.close()
        self.process.wait(DEADLINE)
        self._reader.join(DEADLINE)
        self.process.stdout.close()
