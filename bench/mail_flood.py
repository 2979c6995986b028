#!/usr/bin/env python3
"""Many callers at once, each of whom is told of by a mail that takes its time.

    mail_flood.py PROGRAM-FOLDER [--calls COUNT] [--seconds PER-MAIL]

The program stands still while a mail is sent, so this takes the product of both. Fails if a caller,
a line of the log or a mail is lost, or if the program does not answer by itself at the end. A caller
who comes in the middle of another on the same port is turned away, but told of like any other.
Prints a JSON object, and what happens meanwhile to the standard error.
"""

import argparse
import collections
import json
import os
import resource
import selectors
import socket
import sys
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "tests" / "endtoend"))

STARTED = "----Connected Attempt Started----"
ENDED = "----Connected Attempt Ended----"
WELL = "SMTP Notification Successful"
TEXT = b"Go away."
SERVED = "served"
TURNED_AWAY = "turned away"
OWNER = "owner@home.example"
SPARE = 300  # seconds beside those that the mails take


class Callers:
    """Connects all at once, and notes how each was treated."""

    def __init__(self, port, count):
        self.outcomes = collections.Counter()
        self.slowest = 0.0
        self._begin = time.monotonic()
        self._selector = selectors.DefaultSelector()
        self._received = {}
        for _ in range(count):
            caller = socket.socket()
            caller.setblocking(False)
            caller.connect_ex(("127.0.0.1", port))
            self._selector.register(caller, selectors.EVENT_READ)
            self._received[caller] = b""

    def waiting(self):
        return len(self._received)

    def serve(self, timeout):
        for key, _ in self._selector.select(timeout):
            self._read(key.fileobj)

    def _read(self, caller):
        try:
            piece = caller.recv(4096)
        except ConnectionResetError:
            self._end(caller, TURNED_AWAY)
            return
        except OSError as error:
            self._end(caller, error.strerror)
            return
        self._received[caller] += piece
        if not piece:
            self._end(caller, SERVED if self._received[caller] == TEXT else "cut short")

    def _end(self, caller, outcome):
        self.outcomes[outcome] += 1
        self.slowest = time.monotonic() - self._begin
        self._selector.unregister(caller)
        del self._received[caller]
        caller.close()


def resident_megabytes(pid):
    status = Path(f"/proc/{pid}/status").read_text(encoding="ascii")
    return int(status.split("VmRSS:")[1].split()[0]) / 1024


def say(begin, text):
    print(f"{time.monotonic() - begin:7.0f} s  {text}", file=sys.stderr, flush=True)


def wait_for_all(program, callers, options):
    begin, told = time.monotonic(), time.monotonic()
    end = begin + options.calls * options.seconds + SPARE
    most = 0.0
    while program.messages.count(WELL) < options.calls:
        if time.monotonic() > end or program.process.poll() is not None:
            raise SystemExit("lost: " + "\n".join(program.lines[-30:]))
        callers.serve(0.05) if callers.waiting() else time.sleep(0.05)
        most = max(most, resident_megabytes(program.process.pid))
        if time.monotonic() - told >= 60:
            told = time.monotonic()
            say(begin, f"{program.messages.count(STARTED)} begun, {program.messages.count(WELL)} "
                       f"told of, {callers.waiting()} callers wait, {most:.0f} MB")
    return time.monotonic() - begin, most


def check(program, callers, server, options):
    """Gives what is wrong."""
    # The program is idle again: a command and one more caller are answered at once.
    begin = time.monotonic()
    answered = program.get("Options.EmailTxt") == OWNER
    seconds = time.monotonic() - begin
    counts = {line: program.messages.count(line) for line in (STARTED, ENDED, WELL)}
    ended = program.quit() == 0
    mails = server.all()
    print(f"callers: {dict(callers.outcomes)}, the last after {callers.slowest:.0f} s; log: "
          f"{counts}; mails: {len(mails)}; a command is answered in {seconds * 1000:.0f} ms",
          file=sys.stderr)
    if callers.outcomes[SERVED] + callers.outcomes[TURNED_AWAY] != options.calls:
        yield "callers"
    if set(counts.values()) != {options.calls}:
        yield "lines of the log"
    if len(mails) != options.calls or any(ENDED not in mail.text for mail in mails):
        yield "mails"
    if not answered or not ended:
        yield "an answer"


def flood(home, options):
    from mails import MailServer
    from tallowin_harness import SEND, free_ports, wait_until

    server = MailServer("--delay", str(options.seconds))
    port, = free_ports(1)
    home.set_up({1: (port, SEND, TEXT.decode())}, Email=OWNER, SMTPServer=server.address,
                IdentDReply="loaded")
    program = home.start()
    wait_until(lambda: program.get("Options.IdentDTxt") == "loaded", "settings")
    # For the callers, not for the program, which has the limit that its user has.
    _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (most, most))
    before = resident_megabytes(program.process.pid)
    callers = Callers(port, options.calls)
    taken, most = wait_for_all(program, callers, options)
    after = resident_megabytes(program.process.pid)
    print(json.dumps({"name": "mail flood", "calls": options.calls, "mail_seconds": options.seconds,
                      "seconds_each": taken / options.calls, "before_bytes": before * 2**20,
                      "most_bytes": most * 2**20, "after_bytes": after * 2**20}))
    while callers.waiting():
        callers.serve(10)
    return list(check(program, callers, server, options))


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", metavar="PROGRAM-FOLDER")
    parser.add_argument("--calls", type=int, default=2000)
    parser.add_argument("--seconds", type=float, default=1.0)
    options = parser.parse_args()
    os.environ["TALLOWIN_BIN"] = options.programs
    from tallowin_harness import Home

    home = Home()
    try:
        lost = flood(home, options)
    finally:
        home.close()
    if lost:
        raise SystemExit("lost: " + ", ".join(lost))
    print("nothing is lost", file=sys.stderr)


if __name__ == "__main__":
    main()
