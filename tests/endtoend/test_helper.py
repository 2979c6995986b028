"""The privileged helper: what it does for a program of the suite, and whom and what it refuses."""

import os
import shutil
import socket
import struct
import subprocess
import unittest
from pathlib import Path

from own_network import INSIDE, run, run_in_own_network
from tallowin_harness import DEADLINE, NOBODY, REFUSE, Home, call

HELPER = Path(os.environ["TALLOWIN_BIN"]) / "tallowin-helper"
AS_NOBODY = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
BIND, RAW, CLOCK = 1, 2, 3
REFUSED, DENIED, NOT_PERMITTED = 22, 13, 1  # as errno has them
CAPABILITIES = "cap_net_bind_service,cap_net_raw,cap_sys_time=ep"


def request(kind, port=0, seconds=0, nanoseconds=0):
    return struct.pack("=IIqq", kind, port, seconds, nanoseconds)


def make_pair(user):
    """Sockets that bear the mark of this user."""
    os.seteuid(user)
    try:
        return socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
    finally:
        os.seteuid(0)


def ask(message, program=HELPER, before=(), user=0):
    """What the helper answers: its error, and the socket; no error where it says nothing."""
    ours, theirs = make_pair(user)
    with ours, theirs:
        ours.send(message)
        command = [*before, str(program)]
        ended = subprocess.run(command, stdin=theirs, capture_output=True, timeout=DEADLINE,
                               check=False)
        theirs.close()
        try:
            reply, descriptors, _, _ = socket.recv_fds(ours, 64, 4)
        except ConnectionResetError:  # it went without taking the request
            reply = b""
        if not reply:
            return None, ended.stderr
        passed = [socket.socket(fileno=one) for one in descriptors]
        return struct.unpack("=i", reply)[0], passed[0] if passed else None


def ask_as_nobody(message, program, before=()):
    return ask(message, program, [*before, *AS_NOBODY], NOBODY)


class PrivilegedHelper(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if os.environ[INSIDE] != "root":
            raise unittest.SkipTest("only root gives capabilities to a file")
        run("ip", "link", "set", "lo", "up")
        cls.home = Home(as_nobody=True)
        cls.addClassCleanup(cls.home.close)
        cls.capable = cls.home.program / "tallowin-helper"
        shutil.copy(HELPER, cls.capable)
        run("setcap", CAPABILITIES, str(cls.capable))

    def test_it_answers_its_parent_and_nobody_else(self):
        for command in ([], ["-?"]):
            ended = subprocess.run([str(HELPER), *command], stdin=subprocess.DEVNULL,
                                   capture_output=True, timeout=DEADLINE, check=False)
            self.assertEqual((ended.returncode, ended.stdout), (2, b""))
            self.assertIn(b"not by hand", ended.stderr)
        # A shell, which did not make the pair of sockets; and a pair that another user made.
        for error, why in (ask(request(BIND, 79), before=["sh", "-c", '"$0"; :']),
                           ask(request(BIND, 79), user=NOBODY)):
            self.assertIsNone(error)
            self.assertIn(b"not by hand", why)

    def test_it_refuses_what_it_was_not_made_for(self):
        for message in (request(BIND, 0), request(BIND, 1024), request(BIND, 65536 + 80),
                        request(0), request(4), request(CLOCK, 0, -1),
                        request(CLOCK, 0, 0, 1_000_000_000), request(CLOCK, 0, 0, -1)):
            self.assertEqual(ask_as_nobody(message, self.capable), (REFUSED, None), message)
        for message in (b"x", request(BIND, 79)[:-1], request(BIND, 79) + b"x"):
            error, why = ask(message)
            self.assertIsNone(error)
            self.assertIn(b"no request", why)

    def test_it_has_no_more_rights_than_its_file(self):
        for message, error in ((request(BIND, 79), DENIED), (request(RAW), NOT_PERMITTED),
                               (request(CLOCK), NOT_PERMITTED)):
            # Whatever its file may say, the clock of this machine is not for a test to set.
            self.assertEqual(ask_as_nobody(message, HELPER, ["setpriv", "--bounding-set=-sys_time"]),
                             (error, None), message)

    def test_it_opens_what_a_user_may_not(self):
        error, bound = ask_as_nobody(request(BIND, 79), self.capable)
        with bound:
            self.assertEqual((error, bound.getsockname()), (0, ("0.0.0.0", 79)))
            bound.listen()
            self.assertEqual(ask_as_nobody(request(BIND, 79), self.capable)[0], 98)
        error, raw = ask_as_nobody(request(RAW), self.capable)
        with raw:
            self.assertEqual((error, raw.type), (0, socket.SOCK_RAW))

    def test_a_program_without_rights_has_its_decoys_and_pings(self):
        Path("/proc/sys/net/ipv4/ping_group_range").write_text("1 0", encoding="ascii")
        self.home.set_up({1: (23, REFUSE, ""), 2: (113, REFUSE, "")})
        program = self.home.start()
        program.wait_for("Port Sentry Activated")
        status = Path(f"/proc/{program.process.pid}/status").read_text(encoding="ascii")
        for kind in ("CapPrm", "CapEff", "CapAmb"):
            self.assertIn(f"{kind}:\t0000000000000000", status)
        for port in (23, 113):
            self.assertEqual(call(port), (b"", "reset"))
        # Once for each of the two callers, over a raw socket, as no group may open the other kind.
        end = program.wait_for("----Connected Attempt Ended----", count=2)
        pings = [line for line in program.messages[:end] if line.startswith("Ping Complete...")]
        self.assertEqual(len(pings), 2)
        program.quit()
        run("setcap", "-r", str(self.capable))
        self.addCleanup(run, "setcap", CAPABILITIES, str(self.capable))
        program = self.home.start()
        end = program.wait_for("Port Sentry Activated")
        self.assertIn("Error Initialising Port 1", program.messages[:end])


if __name__ == "__main__":
    run_in_own_network(PrivilegedHelper)
