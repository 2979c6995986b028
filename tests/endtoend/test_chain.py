"""One call on a port with every response on, as one list of all that comes of it."""

import socket
import tempfile
import threading
from pathlib import Path

from mails import MailServer
from mocked_bus import MockedBus
from own_network import name_hosts, run, run_in_own_network
from tallowin_harness import (
    DEADLINE, PORTS, SEND, SENT, STAMP, TestCase, attempt, call, free_ports, wait_until,
    without_stamps,
)

FLAGS = ["Sound Siren", "Visual Warning", "Whois Hacker", "Trace Route Hacker", "Hang Up Modem",
         "ShutDown"]
NAMES = {"127.0.0.11": "whois.apnic.net", "127.0.0.12": "whois.ripe.net",
         "127.0.0.13": "whois.radb.net", "127.0.0.14": "whois.arin.net"}
LINK = "/org/freedesktop/NetworkManager/ActiveConnection/0"
ENDED = "----Connected Attempt Ended----"
WELL = "SMTP Notification Successful"
HARVESTED = "Whois Results For 127.0.0.1 Completed"


class WhoisServer:
    """Answers one query, as soon as it may."""

    def __init__(self, address, answer, may_answer):
        self.asked = b""
        self._answer = answer
        self._may_answer = may_answer
        self._listener = socket.create_server((address, 43))
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def _serve(self):
        caller, _ = self._listener.accept()
        with caller, self._listener:
            self._may_answer.wait(DEADLINE)
            self.asked = caller.recv(100)
            caller.sendall(self._answer)

    def close(self):
        self._thread.join(DEADLINE)


class Chain(TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="tallowin-test-")
        cls.addClassCleanup(folder.cleanup)
        name_hosts(folder.name, NAMES)
        run("ip", "link", "set", "dev", "lo", "up")

    def setUp(self):
        super().setUp()
        # The program writes its lines there, and the services on the bus write theirs in between:
        # so the list is in the order in which things happened.
        self.journal = self.home.path / "journal"
        self.home.as_user = ["sh", "-c", f'exec "$0" "$@" >> "{self.journal}"']
        self.port, = free_ports(1)

    def start_with_everything(self, mail_server):
        bus = MockedBus(self)
        for name, template, more in (("login1", "login_template.py", {}),
                                     ("NetworkManager", "dial_up_template.py",
                                      {"links": [["", "gsm"], ["My provider", "gsm"]]})):
            bus.mock(f"org.freedesktop.{name}", str(Path(__file__).with_name(template)),
                     {"journal": str(self.journal), **more})
        self.home.set_up({1: (self.port, SEND, "Go away.")}, Email="owner@home.example",
                         SMTPServer=mail_server.address, ICQ="12345", IdentDReply="loaded")
        self.home.write({f"{PORTS}1": dict.fromkeys(FLAGS, 1)})
        program = self.start(until=None)
        program.send("get Options.IdentDTxt")
        self.wait_for("loaded")
        return program

    def lines(self):
        return self.journal.read_text(encoding="utf-8").split("\n")[:-1]

    def messages(self, first, last):
        """From the first line to the last one, without the stamps."""
        messages = without_stamps(self.lines())
        end = len(messages) - messages[::-1].index(last)
        return messages[messages.index(first) - 1:end]

    def wait_for(self, message, count=1):
        wait_until(lambda: without_stamps(self.lines()).count(message) >= count, message)

    def test_every_response_in_its_order(self):
        mail_server = MailServer()
        self.addCleanup(mail_server.close)
        may_answer = threading.Event()
        # Nobody listens at the second one.
        whois = [WhoisServer(f"127.0.0.1{number}", answer, may_answer) for number, answer in (
            (1, b"e-mail: noc@net.example"), (3, b""), (4, b"abuse@isp.example"))]
        program = self.start_with_everything(mail_server)

        self.assertEqual(call(self.port), (b"Go away.", "end"))
        self.wait_for(WELL, 2)
        expected = attempt(self.port, "slot 1", SENT)
        self.assertEqual(self.messages("----Connected Attempt Started----", WELL), [
            *expected[:-1],
            "",
            "Whois Results For 127.0.0.1 Started",
            "",
            "",
            "Traceroute Started",
            "Tracing route to 127.0.0.1",
            "Hop #0  127.0.0.1 - localhost",
            "Traceroute Complete",
            f"hang-up of {LINK}",
            "shutdown",
            ENDED,
            WELL,
            WELL,
        ])

        may_answer.set()
        self.wait_for(HARVESTED)
        self.assertEqual(self.messages("Whois results...:", HARVESTED)[1:], [
            "Whois results...:",
            "e-mail: noc@net.example",
            "Error On Whois Sock 2 - 10061 Connection refused",
            "Whois results...:",
            "abuse@isp.example",
            HARVESTED,
        ])
        self.assertEqual([server.asked for server in whois], [b"127.0.0.1\r\n"] * 3)
        self.assert_warns(program)
        self.assert_mails(mail_server)
        self.assertIn("libcanberra",
                      Path(f"/proc/{program.process.pid}/maps").read_text(encoding="utf-8"))
        self.assertEqual(program.quit(), 0)

    def assert_warns(self, program):
        def warned():
            program.send("show BigMSG")
            return "Label1\tLabel\t\t\tWARNING\\r\\nConnection Attempted" in self.lines()

        wait_until(warned, "the warning")

    def assert_mails(self, server):
        """Both end with what stood in the log until the closing line."""
        log = [line for line in self.lines() if not line.startswith(("hang-up", "shutdown"))]
        end = [line.endswith(ENDED) for line in log].index(True)
        self.assertRegex(log[end], STAMP)
        owner, pager = server.all()
        self.assertEqual(owner.recipients, ["owner@home.example"])
        self.assertEqual(pager.recipients, ["12345@pager.marrowind.example"])
        for mail in (owner, pager):
            self.assertEqual(mail.text.split("\n"), [
                "Tallowin has automatically sent you this message because an event has occured",
                "Below are the last 20 lines of the log", *log[end - 19:end + 1],
                "", "", "Thank you for using Tallowin", ""])


if __name__ == "__main__":
    run_in_own_network(Chain)
