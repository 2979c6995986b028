"""Asks the installed tallowin-helper for what it is there for and for what it must refuse. For
tools/check-package, as a member of the group tallowin. It never asks for the clock to be set."""

import socket
import struct
import subprocess
import sys
import time

HELPER = "/usr/libexec/tallowin/tallowin-helper"
BIND, RAW, CLOCK, EINVAL = 1, 2, 3, 22
failures = 0


def request(kind, port=0, seconds=0, nanoseconds=0):
    return struct.pack("=IIqq", kind, port, seconds, nanoseconds)


def status_when_shut_in(process):
    """What the kernel tells of the privileges of a helper that waits for its request."""
    for _ in range(500):
        with open(f"/proc/{process}/status", encoding="ascii") as status:
            lines = [line for line in status if line.startswith(("Cap", "NoNewPrivs"))]
        if "NoNewPrivs:\t1\n" in lines:
            break
        time.sleep(0.01)
    return "".join(lines)


def ask(message, look=False):
    """The helper's answer as (errno, has a socket), None where it gives none."""
    ours, theirs = socket.socketpair(socket.AF_UNIX, socket.SOCK_SEQPACKET)
    with ours, theirs:
        helper = subprocess.Popen([HELPER], stdin=theirs, stderr=subprocess.DEVNULL)
        theirs.close()
        if look:
            print(status_when_shut_in(helper.pid), end="")
        ours.send(message)
        try:
            reply, descriptors, _, _ = socket.recv_fds(ours, 64, 4)
        except ConnectionResetError:
            reply = b""
        helper.wait(5)
        for one in descriptors if reply else ():
            socket.close(one)
        return (struct.unpack("=i", reply)[0], len(descriptors)) if reply else None


for what, message, wanted in (
        ("port 79", request(BIND, 79), (0, 1)),
        ("port 1023", request(BIND, 1023), (0, 1)),
        ("raw ICMP", request(RAW), (0, 1)),
        ("port 0", request(BIND, 0), (EINVAL, 0)),
        ("port 1024", request(BIND, 1024), (EINVAL, 0)),
        ("port 65616", request(BIND, 65616), (EINVAL, 0)),
        ("kind 0", request(0), (EINVAL, 0)),
        ("kind 4", request(4), (EINVAL, 0)),
        ("clock before 1970", request(CLOCK, 0, -1), (EINVAL, 0)),
        ("clock with too many nanoseconds", request(CLOCK, 0, 0, 1_000_000_000), (EINVAL, 0)),
        ("half a request", request(BIND, 79)[:12], None),
        ("more than a request", request(BIND, 79) + b"x", None)):
    answer = ask(message, look=what == "port 79")
    good = answer == wanted
    failures += not good
    print(f"  {what}: {answer}{'' if good else f', wanted {wanted}'}")
sys.exit(failures != 0)
