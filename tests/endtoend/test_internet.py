"""Clock, ident and report with servers and clients in a network of the test's own."""

import os
import socket
import tempfile
import threading
import time
import unittest
from pathlib import Path

from mails import MailServer
from mocked_bus import MockedBus
from own_network import INSIDE, enter_own_network, name_hosts, run
from tallowin_harness import DEADLINE, TestCase, wait_until

SERVERS = {
    "127.0.0.2": "time.marrowind.example",
    "127.0.0.3": "whois.apnic.net",
    "127.0.0.4": "whois.ripe.net",
    "127.0.0.5": "whois.radb.net",
    "127.0.0.6": "whois.arin.net",
}
CAP_SYS_TIME = 1 << 25
ADJUSTED = "Local time adjusted to remote clock"
TODAY = time.gmtime().tm_yday
SUMMER_NOW = f"CET-1CEST,{(TODAY - 10) % 365},{(TODAY + 100) % 365}"
IDENTD_ON = "IdentD Server Activated"


def seconds_of_day(text):
    hours, minutes, seconds = map(int, text.split(":"))
    return (hours * 60 + minutes) * 60 + seconds


class Internet(TestCase):
    def setUp(self):
        super().setUp()
        # Nothing here may set the clock of the machine, whoever runs it.
        self.home.as_user = ["setpriv", "--inh-caps=-sys_time", "--bounding-set=-sys_time"]

    def start_safely(self, **settings):
        self.home.set_up({}, Verbose_Mode=1, **settings)
        program = self.start(
            until=IDENTD_ON if settings.get("IdentD") else "IdentD Server Deactivated")
        status = Path(f"/proc/{program.process.pid}/status").read_text(encoding="ascii")
        rights = [int(line.split()[1], 16) for line in status.splitlines()
                  if line.startswith(("CapEff", "CapBnd"))]
        self.assertEqual([right & CAP_SYS_TIME for right in rights], [0, 0])
        return program

    def serve_whois(self, address, answer):
        server = socket.create_server((address, 43))

        def serve():
            caller, _ = server.accept()
            with caller:
                caller.recv(64)
                caller.sendall(answer)

        thread = threading.Thread(target=serve, daemon=True)
        thread.start()
        self.addCleanup(thread.join, DEADLINE)
        self.addCleanup(server.close)


class Clock(Internet):
    def serve_time(self):
        """Gives a function that ends it."""
        self.requests = []
        server = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        server.bind(("127.0.0.2", 13))

        def serve():
            with server:
                while self.reply is not None:
                    request, caller = server.recvfrom(64)
                    self.requests.append(request)
                    server.sendto(self.reply or b"", caller)

        def stop():
            self.reply = None
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as last:
                last.sendto(b"", ("127.0.0.2", 13))
            thread.join(DEADLINE)

        self.reply = b""
        thread = threading.Thread(target=serve, daemon=True)
        thread.start()
        return stop

    def sync(self, program, reply):
        start = len(program.messages)
        self.reply = reply
        program.send("click MainForm.synctimenowmnu")
        return start, program.wait_for(ADJUSTED, start=start)

    def set_to(self, calls, count):
        """What the two calls behind the first `count` would set: seconds of the day, and date."""
        wait_until(lambda: len(calls()) >= count + 2, "the clock")
        walls = [time.localtime(int(call.split()[1]) // 1000000) for call in calls()[count:]]
        return (seconds_of_day(time.strftime("%H:%M:%S", walls[0])),
                (walls[1].tm_year, walls[1].tm_mon, walls[1].tm_mday))

    def mocked_clock(self):
        return MockedBus(self).mock("org.freedesktop.timedate1",
                                    str(Path(__file__).with_name("clock_template.py")), {})

    def zone(self, zone):
        self.home.environment["TZ"] = os.environ["TZ"] = zone
        time.tzset()

    def test_every_day_of_a_month_however_it_is_written(self):
        self.zone("UTC0")
        calls = self.mocked_clock()
        stop = self.serve_time()
        program = self.start_safely()
        count = 0
        for day in range(1, 32):
            for blanks, end in (("%2d", "\r\n"), ("%d", "")):
                text = f"Mon Dec {blanks % day} 12:34:56 2026{end}"
                self.sync(program, text.encode())
                # With two digits the time is read a column too early, and that stays.
                seconds = seconds_of_day("12:34:56" if day < 10 else "12:34:05")
                self.assertEqual(self.set_to(calls, count), (seconds, (2026, 12, day)), text)
                count += 2
        stop()
        self.assertEqual(set(self.requests), {b"TimeRequest", b""})

    def test_zones(self):
        for zone, hours in (("IST-5:30", 6), ("AFT-4:30", 4), ("NST3:30", -4), (SUMMER_NOW, 1)):
            with self.subTest(zone):
                self.setUp()
                self.zone(zone)
                calls = self.mocked_clock()
                stop = self.serve_time()
                program = self.start_safely()
                self.sync(program, b"Tue Mar  9 23:30:01 2027\r\n")
                program.wait_for(f"Bias from UTC: {hours} hours")
                at = seconds_of_day("23:30:01") + hours * 3600
                self.assertEqual(self.set_to(calls, 0),
                                 (at % 86400, (2027, 3, 9 + at // 86400)))
                stop()

    def test_nobody_who_may_set_it_nobody_who_answers_and_no_server(self):
        program = self.start_safely()
        program.send("click MainForm.synctimenowmnu")
        program.wait_for("Error retrieving time: 10054 Connection reset by peer")
        stop = self.serve_time()
        _, end = self.sync(program, b"Tue Mar  9 23:30:01 2027\r\n")
        program.wait_for("Error: 70 Permission denied Code#: 0", start=end)
        stop()


class Ident(Internet):
    def connect(self):
        try:
            return socket.create_connection(("127.0.0.1", 113), timeout=DEADLINE)
        except ConnectionRefusedError:
            return None

    def test_a_client(self):
        self.start_safely(IdentD=1, IdentDReply="me")
        for query in (b"6193, 23\r\n", b"6194, 23\r\n"):
            # Behind an exchange it takes a moment until the port is open again.
            with wait_until(self.connect, "the port") as client:
                client.sendall(query)
                reply = b"".join(iter(lambda: client.recv(4096), b""))
            self.assertEqual(reply, query + b" : USERID: UNIX: me")


class Report(Internet):
    def test_to_three_addresses_that_a_whois_run_found(self):
        for address in list(SERVERS)[1:5]:
            self.serve_whois(address, b"% noc@whois.example\ne-mail: abuse@one.example\n"
                                      b"see mailto:noc@two.example b@three.example\n")
        mails = MailServer()
        self.addCleanup(mails.close)
        program = self.start_safely(Email="me@home.example", SMTPServer=mails.address)
        program.send("set MainForm.LoggedIPs 192.0.2.7", "click MainForm.Toolbar1 whois")
        program.wait_for("Whois Results For 192.0.2.7 Completed")
        program.ask("click MainForm.reporthackmnu", "set reporthacker.fromname Zo\u00eb Doe",
                    *[f"select reporthacker.emaillist {i}" for i in range(3)],
                    "click reporthacker.Command1")
        self.assertEqual(program.get("reporthacker.totxt"),
                         r"abuse@one.example\r\nnoc@two.example\r\nb@three.example")
        program.wait_for("SMTP Notification Successful")
        mail, = mails.all()
        self.assertEqual(mail.recipients,
                         ["abuse@one.example", "noc@two.example", "b@three.example"])
        self.assertEqual(mail.sender, "me@home.example")
        self.assertEqual(mail.message["From"], "Zo\u00eb Doe <me@home.example>")
        self.assertEqual(mail.message["Subject"], "Hacking attempt made on my machine.")
        self.assertTrue(mail.text.startswith("Dear Sir/Madam,\n\nI have been using"))
        self.assertTrue(mail.text.rstrip().endswith(
            "Yours Sincerely,\nZo\u00eb Doe <me@home.example>"))
        self.assertFalse(mail.message.is_multipart(), "no log goes with it")


if __name__ == "__main__":
    if INSIDE in os.environ:
        with tempfile.TemporaryDirectory(prefix="tallowin-test-") as own:
            run("ip", "link", "set", "dev", "lo", "up")
            name_hosts(own, SERVERS)
            unittest.main()
    else:
        reason = enter_own_network()
        for case in (Clock, Ident, Report):
            unittest.skip(reason)(case)
        unittest.main()
