"""Ping, trace route and lookups through a chain of routers.

All of them, and the names, stand in a network of the test's own.
"""

import os
import re
import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

from own_network import INSIDE, name_hosts, run, run_in_own_network
from tallowin_harness import NOBODY, place_file

ROUTERS = 6
SILENT = 4
TARGET = f"10.77.{ROUTERS + 1}.2"
UNREACHABLE = "10.99.0.1"
SWALLOWED = "10.98.0.1"
NAMES = {"10.77.2.2": "two.test", TARGET: "target.test"}


def inside(node):
    return ["nsenter", f"--net=/run/netns/n{node}"]


def set_up(node, setting, value):
    run(*inside(node), "sh", "-c", f"echo {value} > /proc/sys/net/ipv4/{setting}")


def make_chain():
    """The caller n0, the routers n1 to n6 and the target n7; link k joins n(k-1) and n(k)."""
    target = ROUTERS + 1
    for node in range(target + 1):
        run("ip", "netns", "add", f"n{node}")
        run("ip", "-n", f"n{node}", "link", "set", "dev", "lo", "up")
    for link in range(1, target + 1):
        near, far = f"n{link - 1}", f"n{link}"
        run("ip", "-n", near, "link", "add", "name", "front", "type", "veth",
            "peer", "name", "back", "netns", far)
        run("ip", "-n", near, "address", "add", f"10.77.{link}.1/24", "dev", "front")
        run("ip", "-n", near, "link", "set", "dev", "front", "up")
        run("ip", "-n", far, "address", "add", f"10.77.{link}.2/24", "dev", "back")
        run("ip", "-n", far, "link", "set", "dev", "back", "up")
    for node in range(target + 1):
        onward = f"10.77.{node + 1}.2" if node < target else f"10.77.{target}.1"
        run("ip", "-n", f"n{node}", "route", "add", "default", "via", onward)
        if 1 < node < target:
            run("ip", "-n", f"n{node}", "route", "add", "10.77.1.0/24", "via", f"10.77.{node}.1")
        set_up(node, "ip_forward", 1)
        set_up(node, "icmp_ratelimit", 0)
    # What the silent router would say itself is dropped, what it forwards is not.
    run("ip", "-n", f"n{SILENT}", "rule", "add", "iif", "lo", "blackhole")
    run("ip", "-n", f"n{ROUTERS}", "route", "add", "unreachable", f"{UNREACHABLE}/32")
    run("ip", "-n", f"n{ROUTERS}", "route", "add", "blackhole", f"{SWALLOWED}/32")


class Traces(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="tallowin-test-"))
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        cls.folder.chmod(0o755)
        cls.tool = cls.folder / "ask-nettools"
        place_file(os.environ["TALLOWIN_ASK_NETTOOLS"], cls.tool)
        cls.resolver = name_hosts(cls.folder, NAMES)

    def setUp(self):
        # New for each test, since not every setting of a network can be taken back.
        self.addCleanup(run, "ip", "-all", "netns", "delete")
        make_chain()

    def ask(self, tool, host, privileged=True):
        """What the host has become, and the lines of the result."""
        user = []
        if not privileged and os.environ[INSIDE] == "root":
            user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        elif not privileged:
            user = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"]
        ran = subprocess.run([*inside(0), *user, str(self.tool), tool, host], capture_output=True,
                             timeout=50, check=True)
        became, *lines = ran.stdout.decode().removesuffix("\r\n").split("\r\n")
        return became, lines

    @staticmethod
    def let_everybody_ping():
        group = NOBODY if os.environ[INSIDE] == "root" else 0
        set_up(0, "ping_group_range", f"0 {group}")

    def hops(self):
        """The routers that answer, without the first, and the target."""
        asked = [f"10.77.{node}.2" for node in range(2, ROUTERS + 2)]
        return [address for address in asked if address != f"10.77.{SILENT}.2"]

    def expected(self):
        return [f"Hop #{number}  {address} - {NAMES.get(address, 'Lookup failed')}"
                for number, address in enumerate(self.hops())]

    def test_trace_with_a_raw_socket(self):
        self.assertEqual(self.ask("trace", "target.test"), (TARGET, self.expected()))

    def test_trace_of_an_ordinary_user(self):
        self.let_everybody_ping()
        result = self.ask("trace", TARGET, privileged=False)
        self.assertEqual(result, (TARGET, self.expected()))

    def test_the_same_hops_as_another_program(self):
        if not shutil.which("traceroute"):
            self.skipTest("the program traceroute is missing")
        ran = subprocess.run([*inside(0), "traceroute", "-I", "-n", "-f2", "-q1", "-w1", TARGET],
                             capture_output=True, text=True, timeout=50, check=True)
        answers = re.findall(r"^ *\d+ +(\S+)", ran.stdout, re.MULTILINE)
        _, lines = self.ask("trace", TARGET)
        self.assertEqual([line.split()[2] for line in lines], [a for a in answers if a != "*"])

    def test_ping(self):
        for privileged in (True, False):
            if not privileged:
                self.let_everybody_ping()
            host, result = self.ask("ping", "target.test", privileged)
            self.assertEqual(host, TARGET)
            self.assertRegex(result[0], r"^\d+$")
            _, result = self.ask("ping", UNREACHABLE, privileged)
            self.assertEqual(result, ["Destination Host Not Reachable"])
            host, result = self.ask("ping", "nobody.test", privileged)
            self.assertEqual((host, result), ("Lookup failed", ["Bad Destination"]))
        begun = time.monotonic()
        self.assertEqual(self.ask("ping", f"10.77.{SILENT}.2")[1], ["Request Timed Out"])
        self.assertGreaterEqual(time.monotonic() - begun, 2.7)

    def test_this_machine_is_no_hop_on_the_way_to_a_neighbour_that_does_not_exist(self):
        # So that it takes a moment, and not seconds, until one is known not to exist.
        set_up(0, "neigh/front/retrans_time_ms", 20)
        for privileged in (True, False):
            if not privileged:
                self.let_everybody_ping()
            absent = "10.77.1.99"
            self.assertEqual(self.ask("ping", absent, privileged)[1],
                             ["Destination Host Not Reachable"])
            self.assertEqual(self.ask("trace", absent, privileged)[1],
                             ["", "Trace Route to Long."])

    def test_a_user_who_may_not_send_echoes_is_told(self):
        self.assertEqual(self.ask("ping", TARGET, privileged=False)[1], ["General Failure"])
        route = self.ask("trace", TARGET, privileged=False)[1]
        self.assertEqual(route, ["", "Trace Route to Long."])

    def test_lookups(self):
        for host, result in {"127.0.0.1": "localhost", "two.test": "10.77.2.2",
                             "10.77.2.2": "two.test", "10.77.3.2": "Lookup failed"}.items():
            self.assertEqual(self.ask("lookup", host)[1], [result])

    def test_a_dead_name_server_is_given_up_soon(self):
        self.resolver.write_text(f"nameserver {SWALLOWED}\n")
        self.addCleanup(self.resolver.write_text, "nameserver 127.0.0.1\n")
        begun = time.monotonic()
        self.assertEqual(self.ask("lookup", "10.77.3.2")[1], ["Lookup failed"])
        self.assertLess(time.monotonic() - begun, 9, "of 10 that the resolver takes by itself")


if __name__ == "__main__":
    run_in_own_network(Traces)
