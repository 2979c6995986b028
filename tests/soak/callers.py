"""Callers of all kinds, each of whom comes from an address of its own."""

import collections
import contextlib
import itertools
import random
import socket
import struct
import threading

from servers import reset
from tallowin_harness import REFUSE, SEND

LOG = "Only tell me"  # an action that the program does not know: neither accepted nor refused
PATIENCE = 120  # seconds; a mail server that is silent holds the program up for 30
KINDS = {"polite": 8, "hasty": 4, "resets": 3, "junk": 4, "long_text": 1, "half_closed": 2,
         "half_open": 1, "slow": 1, "lingers": 1, "crowd": 0.3}
numbers = itertools.count()


def own_address():
    number = next(numbers)
    return f"127.{64 + (number >> 16)}.{number >> 8 & 255}.{number & 255}"


def checksum(data):
    total = sum(struct.unpack(f"!{len(data) // 2}H", data))
    total = (total >> 16) + (total & 0xFFFF)
    return ~(total + (total >> 16)) & 0xFFFF


class Callers:
    """Threads that call the ports, {port: action}, until `close`; `rest` stops them for a while."""

    def __init__(self, ports, threads, pause, ident_reply):
        self.made = collections.Counter()  # connections by port
        self.addresses = []
        self.ends = collections.Counter()
        self.failures = []
        self.half_open_calls = 0
        self.ident_answers = 0
        self._ports = ports
        self._pause = pause
        self._ident_reply = ident_reply
        self._lock = threading.Lock()
        self._may_call = threading.Event()
        self._ended = threading.Event()
        self._threads = [threading.Thread(target=self._guarded, args=(job, seed), daemon=True)
                         for seed, job in enumerate([self._call_on] * threads +
                                                    [self._ask_ident] * bool(ident_reply))]
        self._at_work = len(self._threads)
        self._idle = threading.Condition()
        for thread in self._threads:
            thread.start()

    def resume(self):
        self._may_call.set()

    def rest(self):
        """Gives when nobody calls any more."""
        self._may_call.clear()
        with self._idle:
            if not self._idle.wait_for(lambda: self._at_work == 0, 3 * PATIENCE):
                self.failures.append("callers are stuck")

    def close(self):
        self._ended.set()
        self._may_call.set()
        for thread in self._threads:
            thread.join(PATIENCE)

    def _guarded(self, job, seed):
        chance = random.Random(seed)
        while self._wait_for_leave():
            try:
                job(chance)
            except (OSError, AssertionError) as error:
                self.failures.append(f"{job.__name__}: {error!r}")
            self._hold(chance.expovariate(1 / self._pause))

    def _wait_for_leave(self):
        with self._idle:
            self._at_work -= 1
            self._idle.notify_all()
        self._may_call.wait()
        with self._idle:
            self._at_work += 1
        return not self._ended.is_set()

    def _hold(self, seconds):
        """Waits, but no longer than until the next rest."""
        step = 0.25
        while seconds > 0 and self._may_call.is_set() and not self._ended.wait(min(step, seconds)):
            seconds -= step

    def _call_on(self, chance):
        kind, = chance.choices(list(KINDS), list(KINDS.values()))
        port = chance.choice(list(self._ports))
        getattr(self, kind)(port, chance)

    def _connect(self, port):
        address = own_address()
        caller = socket.socket()
        caller.settimeout(PATIENCE)
        caller.bind((address, 0))
        # A caller may be refused so quickly that this tells of a reset and not of a connection.
        with contextlib.suppress(ConnectionResetError):
            caller.connect(("127.0.0.1", port))
        with self._lock:
            self.made[port] += 1
            self.addresses.append(address)
        return caller

    def _read_to_end(self, caller, port):
        """A caller whom nobody accepts or ends waits for a moment only."""
        if self._ports[port] not in (REFUSE, SEND):
            caller.settimeout(1)
        try:
            while caller.recv(65536):
                pass
            end = "closed"
        except TimeoutError:
            end = "left open"
        except OSError:
            end = "reset"
        with self._lock:
            self.ends[self._ports[port], end] += 1

    def polite(self, port, _chance):
        with self._connect(port) as caller:
            self._read_to_end(caller, port)

    def hasty(self, port, _chance):
        self._connect(port).close()

    def resets(self, port, _chance):
        reset(self._connect(port))

    def junk(self, port, chance):
        with self._connect(port) as caller:
            with contextlib.suppress(OSError):
                for _ in range(chance.randrange(1, 4)):
                    caller.sendall(chance.randbytes(chance.randrange(1, 2000)))
            self._read_to_end(caller, port)

    def long_text(self, port, chance):
        """More than is read at once."""
        with self._connect(port) as caller:
            with contextlib.suppress(OSError):
                caller.sendall(b"A" * chance.randrange(8_000, 100_000))
            self._read_to_end(caller, port)

    def half_closed(self, port, _chance):
        with self._connect(port) as caller:
            with contextlib.suppress(OSError):
                caller.shutdown(socket.SHUT_WR)
            self._read_to_end(caller, port)

    def half_open(self, port, chance):
        """A first packet and no more, as a scanner sends it. Nobody has called then."""
        here, there = socket.inet_aton("127.0.0.1"), socket.inet_aton("127.0.0.1")
        packet = struct.pack("!HHIIBBHHH", chance.randrange(1024, 32768), port, 1, 0, 5 << 4, 2,
                             1024, 0, 0)
        whole = here + there + struct.pack("!BBH", 0, socket.IPPROTO_TCP, len(packet)) + packet
        packet = packet[:16] + struct.pack("!H", checksum(whole)) + packet[18:]
        with socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_TCP) as raw:
            raw.sendto(packet, ("127.0.0.1", 0))
        with self._lock:
            self.half_open_calls += 1

    def slow(self, port, _chance):
        with self._connect(port) as caller, contextlib.suppress(OSError):
            for _ in range(20):
                caller.sendall(b"a")
                self._hold(0.5)

    def lingers(self, port, chance):
        with self._connect(port):
            self._hold(chance.uniform(5, 20))

    def crowd(self, port, chance):
        callers = [self._connect(port) for _ in range(chance.randrange(20, 120))]
        for caller in callers:
            with caller:
                if chance.random() < 0.5:
                    self._read_to_end(caller, port)

    def _ask_ident(self, chance):
        query = b"%d, 23\r\n" % chance.randrange(65536)
        with contextlib.suppress(ConnectionRefusedError):  # behind an exchange it is closed a while
            with socket.create_connection(("127.0.0.1", 113), timeout=PATIENCE) as caller:
                caller.sendall(query)
                reply = b"".join(iter(lambda: caller.recv(4096), b""))
            assert reply == query + b" : USERID: UNIX: " + self._ident_reply, reply
            self.ident_answers += 1
        self._hold(2)
