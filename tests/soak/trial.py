"""One program under load, with its home, its servers, its callers and its owner."""

import random
import re
import time

from account import ENDED, Account
from callers import LOG, Callers
from figures import take_sample
from owner import Owner
from servers import Mail
from tallowin_harness import CHAT, PORTS, REFUSE, SEND, Home, free_ports, wait_until

FLAGS = ("Sound Siren", "Visual Warning", "Whois Hacker", "Trace Route Hacker", "Hang Up Modem")
IDENT_REPLY = "me"
OWNER = "owner@home.example"
UNTIL_QUIET = 8  # seconds; a warning blinks for 7.2
UNTIL_IDLE = 33  # a thread that looks names up waits for 30 until it ends
# What the program keeps for each caller in the list of addresses, which only grows.
BYTES_OF_A_CALLER = 64
SLOTS = ((REFUSE, ()), (SEND, ()), (CHAT, ()), (LOG, ()), (REFUSE, FLAGS), (SEND, FLAGS),
         (CHAT, FLAGS[:2]), (LOG, FLAGS[2:3]), (SEND, FLAGS[3:4]))


class Trial:
    """Called by so many threads with such a pause between their calls. `ident` is whether IdentD is
    asked as well, for which there is one port only; `checker` is what the program runs under."""

    def __init__(self, name, seed, threads, pause, ident, as_nobody, checker=()):
        self.name = name
        self.rests = []
        self.samples = []
        self.account = Account()
        self.home = Home(as_nobody=as_nobody)
        self.home.as_user += checker
        # What is free goes back to the system at once, so that only what is in use shows.
        self.home.environment |= {"MALLOC_MMAP_THRESHOLD_": "131072",
                                  "MALLOC_TRIM_THRESHOLD_": "131072"}
        if checker:  # which cannot follow code that is made at run time
            self.home.environment["QT_ENABLE_REGEXP_JIT"] = "0"
        self.mail = Mail(seed)
        ports = free_ports(len(SLOTS))
        try:
            self.program = self._start(ports, ident)
        except BaseException:
            self.home.close()
            raise
        self.owner = Owner(self.home, self.program, seed)
        self.callers = Callers({port: action for port, (action, _) in zip(ports, SLOTS)}, threads,
                               pause, IDENT_REPLY.encode() if ident else None)
        self._chance = random.Random(seed)

    def _start(self, ports, ident):
        packets = ("Go away.", "login: ", "x" * 200_000)
        self.home.set_up({slot: (port, action, packets[slot % 3])
                          for slot, (port, (action, _)) in enumerate(zip(ports, SLOTS), 1)},
                         Trojan_Sentry=1, Verbose_Mode=1, IdentD=int(ident), Email=OWNER,
                         SMTPServer=f"127.0.0.1:{self.mail.port}", IdentDReply=IDENT_REPLY)
        self.home.write({f"{PORTS}{slot}": {flag: int(flag in flags) for flag in FLAGS}
                         for slot, (_, flags) in enumerate(SLOTS, 1)})
        program = self.home.start()
        wait_until(lambda: program.get("Options.IdentDTxt", 120) == IDENT_REPLY, "settings")
        return program

    def run(self, seconds, rest_every):
        """Rests at the end of each such time, the first of which is the warm-up."""
        end = time.monotonic() + seconds
        self.callers.resume()
        self.owner.warm_up()
        last = False
        while not last:
            self.callers.resume()
            self._load_until(time.monotonic() + rest_every)
            last = bool(self.rests) and time.monotonic() > end - rest_every / 2
            self._rest(UNTIL_IDLE if last or not self.rests else UNTIL_QUIET)
        return self

    def _load_until(self, end):
        sampled = 0
        while time.monotonic() < end:
            try:
                self.owner.act()
            except AssertionError as error:
                self.callers.failures.append(f"owner: {error}")
                self.owner.command()  # whatever is still asked gets an answer
            if time.monotonic() - sampled >= 10:
                sampled = time.monotonic()
                self.samples.append(take_sample(self.program.process.pid, self._logs))
            time.sleep(self._chance.uniform(0, 2))

    @property
    def _logs(self):
        return self.home.program / "Logs"

    def _rest(self, pause):
        """Until nothing is under way; then rebuilds the ports, which lets go of callers whom nobody
        accepted (and would of those who wait to be seen), and empties the log."""
        self.callers.rest()
        self._wait_for_ends()
        self.owner.tidy_up()
        self.owner.command("click ChatWindow.EndButton")
        self.owner.command("click MainForm.portsntmnu", "click MainForm.portsntmnu")
        self.owner.command("click MainForm.prefsmnu", "click Options.Command1")
        time.sleep(1.1)  # the name of a file tells the second
        self.owner.command("click MainForm.clearlog")
        self._read_log()
        self.account.text_emptied()
        self.rests.append(self._sample_at_rest(pause))
        self._tell(self.rests[-1])

    def _wait_for_ends(self):
        """Of all attempts and of the whois run behind the last of them."""
        made = sum(self.callers.made.values())

        def over():
            self._read_log()
            return self.account.lines[ENDED] >= made and self.account.whois_runs() <= 0
        wait_until(over, f"the end of all {made} attempts, and of whois", 600)

    def _tell(self, rest):
        print(f"{time.strftime('%H:%M:%S')} {self.name}, rest {len(self.rests)}: "
              f"{rest.attempts} calls, {rest.anonymous} kB anonymous, {rest.kept} kB kept, "
              f"{rest.descriptors} descriptors, {rest.wake_ups_at_rest:.1f} wake-ups a second",
              flush=True)

    def _read_log(self):
        self.account.read(self.program.take_messages())

    def _sample_at_rest(self, pause):
        pid = self.program.process.pid
        time.sleep(pause)
        before = take_sample(pid, self._logs)
        time.sleep(4)
        sample = take_sample(pid, self._logs)
        seconds = sample.when - before.when
        sample.cpu_at_rest = (sample.cpu_seconds - before.cpu_seconds) / seconds * 100
        sample.wake_ups_at_rest = (sample.wake_ups - before.wake_ups) / seconds
        sample.attempts = sum(self.callers.made.values())
        sample.kept = (self._chat_bytes() + sample.attempts * BYTES_OF_A_CALLER) // 1024
        return sample

    def _chat_bytes(self):
        """What was said in all chats is kept until the program ends."""
        long_text = re.search(r"ChatBox\t.* \((\d+) bytes\)", "\n".join(
            self.owner.command("show ChatWindow")))
        return int(long_text[1]) if long_text else 0

    def listed_callers(self):
        """The addresses in the program's list of those who have called."""
        rows = self.owner.command("show MainForm")
        begin = next(place for place, row in enumerate(rows) if row.startswith("LoggedIPs\t"))
        rows = rows[begin + 1:]
        return [row.split("\t")[2] for row in rows[:next(
            place for place, row in enumerate(rows) if not row.startswith("\t"))]]

    def finish(self):
        """Gives what does not add up. The program has ended then."""
        listed = self.listed_callers()
        status = self.program.quit()
        self.callers.close()
        faults = [f"{self.name}: {failure}" for failure in self.callers.failures]
        if status != 0:
            faults.append(f"{self.name}: ends with status {status}")
        faults += self.account.faults(self.callers, listed, self.mail.taken(), self._logs)
        return faults
