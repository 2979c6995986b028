"""Shutdown and hang-up where the services of the machine are odd, busy, dead or missing."""

import socket
import unittest
from pathlib import Path

from mocked_bus import MockedBus
from tallowin_harness import PORTS, SEND, TestCase, call, free_ports

LOGIN = "org.freedesktop.login1"
NETWORK = "org.freedesktop.NetworkManager"


class Services(TestCase):
    def attempt(self, **flags):
        port, = free_ports(1)
        self.home.set_up({1: (port, SEND, "Go away.")})
        self.home.write({f"{PORTS}1": {name.replace("_", " "): 1 for name in flags}})
        program = self.start()
        self.assertEqual(call(port), (b"Go away.", "end"))
        program.wait_for("----Connected Attempt Ended----")
        return program

    def template(self, name):
        return str(Path(__file__).with_name(name))

    def test_a_forced_shutdown_passes_over_inhibitors_and_a_missing_network_manager(self):
        login = MockedBus(self).mock(LOGIN, self.template("inhibited_login_template.py"), {})
        self.attempt(Hang_Up_Modem=1, ShutDown=1)
        self.assertEqual(login(), ["PowerOffWithFlags 16"])

    def test_what_counts_as_dialled(self):
        kinds = ["adsl", "bluetooth/panu", "bluetooth/dun", "serial", "cdma"]
        network = MockedBus(self).mock(NETWORK, self.template("dial_up_template.py"),
                                       {"links": [["", kind] for kind in kinds]})
        self.attempt(Hang_Up_Modem=1)
        self.assertEqual([line[-2] for line in network()], ["0", "2", "4"])

    def test_a_bus_that_says_nothing_costs_seconds(self):
        path = str(self.home.path / "dead-bus")
        with socket.socket(socket.AF_UNIX) as bus:
            bus.bind(path)
            bus.listen()
            self.home.environment["DBUS_SYSTEM_BUS_ADDRESS"] = f"unix:path={path}"
            program = self.attempt(Hang_Up_Modem=1)
        # The end of the program waits until the library has given up, which it does now.
        self.assertEqual(program.quit(), 0)


if __name__ == "__main__":
    unittest.main()
