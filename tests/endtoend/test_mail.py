"""The mails that tell the owner of a caller, sent to a real mail server."""

import os
import subprocess
import tempfile
import threading
import unittest
from pathlib import Path

from mails import MailServer
from tallowin_harness import (
    DEADLINE, PORTS, SEND, TestCase, call, free_ports, wait_until,
)

SENDER = "notify@tallowin.marrowind.example"
ENDED = "----Connected Attempt Ended----"
WELL = "SMTP Notification Successful"
FAILED = "SMTP Notification Failed"
REFUSED = "SMTP Error: 43"  # before anything is sent


class Certificates:
    """An authority, and certificates by it and by nobody in particular."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.authority = self.make("authority", "/CN=authority", [])
        self.good = self.signed("good", "IP:127.0.0.1")
        self.other_name = self.signed("other", "DNS:mail.example")
        self.unknown = self.make("unknown", "/CN=127.0.0.1",
                                 ["-addext", "subjectAltName=IP:127.0.0.1"])

    def make(self, name, subject, more):
        certificate = str(self.folder / f"{name}.pem")
        subprocess.run(
            ["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
             "-nodes", "-days", "2", "-subj", subject, "-keyout", certificate + ".key",
             "-out", certificate, *more],
            check=True, capture_output=True, timeout=DEADLINE)
        return certificate

    def signed(self, name, who):
        return self.make(name, f"/CN={name}",
                         ["-addext", f"subjectAltName={who}", "-CA", self.authority,
                          "-CAkey", self.authority + ".key"])


class MailTest(TestCase):
    """With one decoy port."""

    def setUp(self):
        super().setUp()
        self.port = free_ports(1)[0]

    def serve(self, *arguments):
        server = MailServer(*arguments)
        self.addCleanup(server.close)
        return server

    def start_with(self, server, **settings):
        """Starts, and waits for the last of the settings: a caller who comes earlier is not
        mailed about, as the ports open before the addresses are read."""
        values = {"Email": "owner@home.example", "SMTPServer": server, "Verbose_Mode": 1,
                  "IdentDReply": "loaded", **settings}
        self.home.set_up({1: (self.port, SEND, "Go away.")}, **values)
        program = self.start()
        wait_until(lambda: program.get("Options.IdentDTxt") == "loaded", "settings")
        return program

    def call_and_expect(self, program, *outcome):
        """Calls, and waits for these lines and no others about the mail."""
        start = len(program.messages)
        call(self.port)
        end = place = program.wait_for(ENDED, start=start)
        for line in outcome:
            place = program.wait_for(line, start=place + 1)
        said = [line for line in program.messages[end:place + 1] if line.startswith("SMTP ")]
        self.assertEqual(said, list(outcome))


class Notification(MailTest):
    def test_owners_and_pager(self):
        server = self.serve()
        owners = 'Zo\u00eb <a@one.example>, "Doe, \\"J\\"" <b@two.example>, c@three.example, '
        program = self.start_with(server.address, Email=owners, ICQ="12345")
        self.call_and_expect(program, WELL, WELL)
        mails = server.all()
        self.assertEqual([mail.recipients for mail in mails],
                         [["a@one.example", "b@two.example", "c@three.example"],
                          ["12345@pager.marrowind.example"]])
        self.assertEqual([who.display_name for who in mails[0].message["To"].addresses],
                         ["Zo\u00eb", 'Doe, "J"', ""])
        for mail in mails:
            self.assertEqual(mail.sender, SENDER)
            self.assertEqual(mail.message["From"], SENDER)
            self.assertEqual(mail.message["Subject"], "Tallowin Event Notification")
            self.assertIsNotNone(mail.message["Date"].datetime.utcoffset())
            self.assertEqual(mail.message.get_content_charset(), "utf-8")
            self.assertTrue(mail.text.endswith(ENDED + "\n\n\nThank you for using Tallowin\n"))
        self.assertNotEqual(*[mail.message["Message-ID"] for mail in mails])

    def test_dots_and_foreign_text_arrive_whole(self):
        server = self.serve()
        program = self.start_with(server.address)
        for count, (text, expected) in enumerate([
            ("a\r\n.\r\nQUIT\r\n..x", "a\n.\nQUIT\n..x\n"),
            ("\x1b[2JGr\u00fc\u00dfe\r\n.\r\n" + "x" * 3000,
             "\\x1b[2JGr\u00fc\u00dfe\n.\n" + "x" * 3000 + "\n"),
        ], 1):
            self.home.write({PORTS + "1": {"Port Description": text}})
            self.call_and_expect(program, WELL)
            self.assertIn(":Description Of This Port: " + expected, server.first(count)[-1].text)
        self.assertEqual([mail.recipients for mail in server.all()], [["owner@home.example"]] * 2)

    def test_texts_that_smuggle_send_nothing(self):
        server = self.serve()
        program = self.start_with(server.address,
                                  Email="owner@home.example\r\nBcc: x@y.example",
                                  ICQ="1@home.example>\r\nRCPT TO:<x@y.example")
        self.call_and_expect(program, *[FAILED, REFUSED] * 2)
        program.ask("set Options.EmailTxt owner@home.example")
        self.call_and_expect(program, WELL, FAILED, REFUSED)
        mail, = server.all()
        self.assertNotIn(b"x@y.example", mail.content)

    def test_many_callers_while_the_server_takes_its_time(self):
        server = self.serve("--delay", "0.05")
        program = self.start_with(server.address)
        callers = [threading.Thread(target=call, args=(self.port,)) for _ in range(40)]
        for caller in callers:
            caller.start()
        for caller in callers:
            caller.join(DEADLINE)
        program.wait_for(WELL, count=40)
        self.assertEqual(program.messages.count(ENDED), 40)
        self.assertEqual(len(server.all()), 40)
        self.assertEqual(program.get("Options.ICQtxt"), "")


class Failure(MailTest):
    def test_a_refused_recipient_is_told_and_the_pager_is_served(self):
        server = self.serve("--refuse", "owner@home.example")
        program = self.start_with(server.address, ICQ="12345")
        self.call_and_expect(program, FAILED, "SMTP Error: 55", WELL)
        self.assertEqual([mail.recipients for mail in server.all()],
                         [["12345@pager.marrowind.example"]])
        program.ask("set Options.VerboseChk 0", "set Options.ICQtxt ")
        self.call_and_expect(program, FAILED)
        program.quit()
        self.assertEqual(program.messages.count("SMTP Error: 55"), 1)


class Encryption(MailTest):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="tallowin-test-")
        cls.addClassCleanup(folder.cleanup)
        cls.certificates = Certificates(folder.name)

    def serve_with(self, certificate, *more):
        return self.serve("--certificate", certificate, "--key", certificate + ".key", *more)

    def send(self, server):
        """The status of a sending that trusts the authority."""
        sent = subprocess.run([os.environ["TALLOWIN_SEND_MAIL"], self.certificates.authority,
                               server], capture_output=True, check=True, timeout=DEADLINE)
        return int(sent.stdout)

    def test_a_good_certificate(self):
        server = self.serve_with(self.certificates.good)
        at_once = self.serve_with(self.certificates.good, "--at-once")
        for address in (server.address, f"smtp://me:secret@{server.address}/",
                        f"smtps://{at_once.address}"):
            self.assertEqual(self.send(address), 0, address)
        mails = server.all() + at_once.all()
        self.assertEqual([mail.encrypted for mail in mails], [True] * 3)
        self.assertEqual([mail.user for mail in mails], [None, "me:secret", None])

    def test_a_bad_certificate_is_a_failure_and_nothing_goes_in_the_clear(self):
        for certificate in (self.certificates.unknown, self.certificates.other_name):
            for scheme, more in (("smtp", []), ("smtps", ["--at-once"])):
                with self.subTest(certificate=certificate, scheme=scheme):
                    server = self.serve_with(certificate, *more)
                    self.assertEqual(self.send(f"{scheme}://{server.address}"), 60)
                    self.assertEqual(server.all(), [])

    def test_the_program_trusts_nobody_whom_the_system_does_not_know(self):
        # Not even one whom its environment names.
        self.home.environment["SSL_CERT_FILE"] = self.certificates.authority
        server = self.serve_with(self.certificates.good)
        program = self.start_with(server.address)
        self.call_and_expect(program, FAILED, "SMTP Error: 60")
        self.assertEqual(server.all(), [])

    def test_the_program_gives_no_password_to_a_server_without_encryption(self):
        server = self.serve()
        program = self.start_with(f"smtp://me:secret@{server.address}")
        self.call_and_expect(program, FAILED, "SMTP Error: 64")
        self.assertEqual(server.all(), [])


if __name__ == "__main__":
    unittest.main()
