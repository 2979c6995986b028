"""Whois and mail servers that misbehave at random."""

import collections
import random
import socket
import threading
import time

from mails import MailServer

WHOIS_HOSTS = {"127.0.0.11": "whois.apnic.net", "127.0.0.12": "whois.ripe.net",
               "127.0.0.13": "whois.radb.net", "127.0.0.14": "whois.arin.net"}
ANSWER = (b"% Information related to the address\r\n\r\nnetname: EXAMPLE-%d\r\n"
          b"abuse-mailbox: mailto:abuse@isp.example\r\ne-mail: noc@isp.example\r\n")
LONG_SILENCE = 31  # the program gives a mail 30 s


def reset(connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
    connection.close()


class Misbehaving:
    """Serves each connection in one of the ways, {name: weight}, which are methods."""

    WAYS = {}

    def __init__(self, address, seed):
        self.served = collections.Counter()
        self._address = address
        self._random = random.Random(seed)
        self._ended = threading.Event()
        self._listener = socket.create_server(address)
        self.port = self._listener.getsockname()[1]
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def _serve(self):
        while not self._ended.is_set():
            try:
                connection, _ = self._listener.accept()
            except OSError:
                return
            way, = self._random.choices(list(self.WAYS), list(self.WAYS.values()))
            self.served[way] += 1
            with connection:
                connection.settimeout(60)
                try:
                    getattr(self, way)(connection)
                except OSError:
                    pass  # a client may go at any moment

    def refuse(self, connection):
        """Nobody listens for a while, as after a crash."""
        self._listener.close()
        reset(connection)
        self._ended.wait(2)
        self._listener = socket.create_server((self._address[0], self.port))

    def silent(self, _connection):
        self._ended.wait(self._random.uniform(1, 6))

    def reset(self, connection):
        reset(connection)

    def junk(self, connection):
        connection.sendall(self._random.randbytes(self._random.randrange(1, 8000)))

    def close(self):
        self._ended.set()
        try:
            self._listener.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        self._thread.join(10)
        self._listener.close()


class Whois(Misbehaving):
    WAYS = {"well": 6, "refuse": 1, "silent": 1, "reset": 1, "junk": 2, "half": 2, "endless": 1,
            "short_lines": 1}

    def well(self, connection):
        connection.recv(100)
        connection.sendall(ANSWER.replace(b"%d", b"%d" % self._random.randrange(1000)))

    def half(self, connection):
        connection.recv(100)
        connection.sendall(ANSWER[:self._random.randrange(len(ANSWER))])
        time.sleep(0.2)
        reset(connection)

    def endless(self, connection):
        connection.recv(100)
        for _ in range(200):
            connection.sendall(b"remarks: " + b"x" * 60 + b"\r\n")
            time.sleep(0.01)

    def short_lines(self, connection):
        """With a line end each that becomes two bytes, what is read at once is longer than a line
        of the log may be. So it goes to a file of its own, and a new text of the log begins."""
        connection.recv(100)
        connection.sendall(b"x\n" * 4500)


class Mail(Misbehaving):
    """Stands before a real mail server, and leads to it those whom it serves well."""

    WAYS = {"well": 900, "slow": 20, "refuse": 3, "silent": 3, "reset": 20, "junk": 10,
            "busy": 10, "no_mailbox": 10, "half": 10, "endless": 5, "long_silence": 0.3}

    def __init__(self, seed):
        self._behind = MailServer()
        super().__init__(("127.0.0.1", 0), seed)

    def taken(self):
        """How many mails the server has said yes to. It is at its end then."""
        self.close()
        return len(self._behind.all())

    def well(self, connection, pause=0):
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        with socket.create_connection(("127.0.0.1", self._behind.port)) as server:
            server.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
            back = threading.Thread(target=copy, args=(server, connection, pause), daemon=True)
            back.start()
            copy(connection, server, pause)
            back.join()

    def slow(self, connection):
        self.well(connection, 0.05)

    def long_silence(self, _connection):
        self._ended.wait(LONG_SILENCE)

    def busy(self, connection):
        connection.sendall(b"421 too busy\r\n")

    def no_mailbox(self, connection):
        self._talk(connection, [b"220 mail.test\r\n", b"250 mail.test\r\n", b"250 OK\r\n",
                                b"550 no such mailbox\r\n", b"250 OK\r\n"])

    def half(self, connection):
        """Takes the text of the mail and goes before it has said so."""
        self._talk(connection, [b"220 mail.test\r\n", b"250 mail.test\r\n", b"250 OK\r\n",
                                b"250 OK\r\n", b"354 go on\r\n"])
        reset(connection)

    def endless(self, connection):
        for _ in range(5000):
            connection.sendall(b"220-" + b"x" * 100 + b"\r\n")

    def _talk(self, connection, replies):
        for reply in replies:
            connection.sendall(reply)
            connection.recv(4096)


def copy(source, target, pause):
    try:
        while piece := source.recv(65536):
            time.sleep(pause)
            target.sendall(piece)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass
