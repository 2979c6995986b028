"""The Internet statistics beside what ss and nstat tell, in a network of the test's own."""

import contextlib
import socket
import subprocess

from own_network import run, run_in_own_network
from tallowin_harness import TestCase, rows_of

STATES = {"SYN_RCVD": "SYN-RECV", "FIN_WAIT1": "FIN-WAIT-1", "FIN_WAIT2": "FIN-WAIT-2",
          "CLOSE_WAIT": "CLOSE-WAIT", "LAST_ACK": "LAST-ACK", "TIME_WAIT": "TIME-WAIT"}
COUNTERS = {  # by protocol, item and direction
    ("All", "datagrams received", "N/A"): "IpInReceives",
    ("All", "outgoing datagrams requested", "N/A"): "IpOutRequests",
    ("TCP", "active opens", "N/A"): "TcpActiveOpens",
    ("TCP", "segments received", "N/A"): "TcpInSegs",
    ("TCP", "outgoing resets", ""): "TcpOutRsts",
    ("UDP", "datagrams for which no port", "N/A"): "UdpNoPorts",
    ("ICMP", "destination unreachable messages", "In"): "IcmpInDestUnreachs",
    ("ICMP", "number of messages", "Out"): "IcmpOutMsgs",
}


def output_of(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def as_shown(end):
    """Ports from 32768 on show as 0, those that nobody has as nothing."""
    address, port = end.replace("[::ffff:", "").replace("]", "").rsplit(":", 1)
    address = {"*": "0.0.0.0"}.get(address, address).split("%")[0]
    return f"{address}:{'' if port == '*' else int(port) if int(port) < 32768 else 0}"


def connections_of_ss():
    rows = []
    for line in output_of("ss", "-H", "-tan").splitlines():
        state, _, _, here, there = line.split()[:5]
        if not here.startswith(("[::1]", "[::]")):
            rows.append((state, as_shown(here), as_shown(there)))
    return sorted(rows)


class Statistics(TestCase):
    def setUp(self):
        super().setUp()
        run("ip", "link", "set", "dev", "lo", "up")
        self.home.set_up({})
        self.program = self.start()
        self.program.send("click MainForm.inetstatsmnu")

    def refreshed(self, view):
        self.program.send("click Netstatfrm.Toolbar2 refresh")
        return rows_of(self.program, "Netstatfrm", view)

    def connections(self):
        rows = self.refreshed("NSview")
        return sorted((STATES.get(row[3], row[3]), row[1], row[2]) for row in rows if row[0] == "TCP")

    def test_connections_and_counters(self):
        self.assertEqual(rows_of(self.program, "Netstatfrm", "GeneralStats"), [])
        with contextlib.ExitStack() as sockets:
            plain = sockets.enter_context(socket.create_server(("127.0.0.1", 1025)))
            mapped = sockets.enter_context(
                socket.create_server(("::ffff:127.0.0.1", 1026), family=socket.AF_INET6,
                                     dualstack_ipv6=True))
            sockets.enter_context(socket.create_server(("::", 1028), family=socket.AF_INET6,
                                                       dualstack_ipv6=True))
            sockets.enter_context(socket.create_server(("::1", 1029), family=socket.AF_INET6))
            sockets.enter_context(socket.create_server(("::", 1030), family=socket.AF_INET6))
            for port, only_ipv6 in ((1031, True), (1032, False)):
                waits = sockets.enter_context(socket.socket(socket.AF_INET6, socket.SOCK_DGRAM))
                waits.setsockopt(socket.IPPROTO_IPV6, socket.IPV6_V6ONLY, only_ipv6)
                waits.bind(("::", port))
            for listener, port in ((plain, 1025), (mapped, 1026)):
                sockets.enter_context(socket.create_connection(("127.0.0.1", port)))
                sockets.enter_context(listener.accept()[0])
            with socket.create_connection(("127.0.0.1", 1025)), plain.accept()[0]:
                pass
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as nobody:
                nobody.sendto(b"to nobody", ("127.0.0.1", 1027))
                # Whoever listens to IPv6 alone has no place among addresses of IPv4.
                self.assertEqual([row[1] for row in self.refreshed("NSview") if row[0] == "UDP"],
                                 ["0.0.0.0:1032", as_shown("%s:%d" % nobody.getsockname())])
            self.assertEqual(self.connections(), connections_of_ss())
            for here in ("127.0.0.1:1025", "0.0.0.0:1028"):
                self.assertIn(("LISTEN", here, "0.0.0.0:"), connections_of_ss())
            rows = {(row[0], row[1], row[3] if len(row) > 3 else ""): int(row[2])
                    for row in self.refreshed("GeneralStats")}
            counted = dict(line.split()[:2] for line in output_of("nstat", "-asz").splitlines()[1:])
        self.assertEqual(len(rows), 69)
        self.assertEqual({key: rows[key] for key in COUNTERS},
                         {key: int(counted[name]) for key, name in COUNTERS.items()})
        self.assertGreater(rows["UDP", "datagrams for which no port", "N/A"], 0)


if __name__ == "__main__":
    run_in_own_network(Statistics)
