#!/usr/bin/env python3
"""The terminal program under mixed load, for an hour or as long as you like.

    soak.py [MINUTES]

Run it by tools/soak. In a network, a mount table and a home of its own: callers of all kinds on
ports with each action, whois and mail servers that misbehave, changes to what the watch looks at
with both answers, forms, the log saved and cleared. Every twelfth of the time all rests, and what
the program has in use then is compared. In the last sixth a second program runs beside it under
valgrind. Fails if something grows that is not kept on purpose, if a descriptor or an attempt is
lost, or if valgrind finds an error or a leak.
"""

import argparse
import os
import re
import signal
import sys
import tempfile
import threading
import time
from collections import Counter
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "endtoend"))

from own_network import INSIDE, enter_own_network, name_hosts, run  # noqa: E402

GROWTH_LIMIT = 2048  # kilobytes between the first rest and the last
SETTINGS_OF_NETWORK = {  # so that a program without privileges may ping and open port 113
    "ping_group_range": "0 65535",
    "ip_unprivileged_port_start": "0",
}
CHECKER = ("valgrind", "--leak-check=full", "--errors-for-leak-kinds=definite,indirect",
           "--show-leak-kinds=definite,indirect", "--track-fds=yes", "--num-callers=30",
           "--child-silent-after-fork=yes", "--run-libc-freeres=no", "--error-exitcode=99",
           f"--suppressions={Path(__file__).with_name('valgrind.supp')}")
OPEN_AT_END = "Open file descriptor"  # the program ends at once, with all that it uses still open


def set_up_network(folder):
    from servers import WHOIS_HOSTS
    run("ip", "link", "set", "dev", "lo", "up")
    name_hosts(folder, WHOIS_HOSTS)
    for name, value in SETTINGS_OF_NETWORK.items():
        Path(f"/proc/sys/net/ipv4/{name}").write_text(value, encoding="ascii")


def growth_faults(trial):
    first, last = trial.rests[0], trial.rests[-1]
    grown = last.unexplained - first.unexplained
    if grown > GROWTH_LIMIT:
        yield f"{trial.name}: memory grows by {grown} kB that are not kept on purpose"
    for what in ("descriptors", "threads"):
        before, after = getattr(first, what), getattr(last, what)
        if after > before:
            yield f"{trial.name}: {before} {what} at first, {after} in the end"
    if last.wake_ups_at_rest > 2 * first.wake_ups_at_rest + 5:
        yield f"{trial.name}: a timer runs on at rest"


class Checked(threading.Thread):
    """A second program under the memory checker, with a smaller load, because it is slow there."""

    def __init__(self, seconds, as_nobody):
        super().__init__()
        self.trial = None
        self.faults = ["the program under valgrind did not come to its end"]
        self.report = ""
        self._seconds = seconds
        self._as_nobody = as_nobody

    def run(self):
        from trial import Trial
        self.trial = Trial("under valgrind", seed=2, threads=2, pause=4, ident=False,
                           as_nobody=self._as_nobody, checker=CHECKER)
        try:
            self.trial.run(self._seconds, max(20, self._seconds / 4))
            # What the checker itself has in use grows with what it has seen.
            grown = [fault for fault in growth_faults(self.trial) if "memory" not in fault]
            self.faults = grown + self.trial.finish()
            self.report = self._report()
        finally:
            self.trial.home.close()

    def _report(self):
        """What the checker said, but for what is open at the end if no descriptor is lost."""
        said = re.sub("(?m)^==[0-9]+== ?", "", self.trial.program.errors.decode(errors="replace"))
        lost = any("descriptors" in fault for fault in self.faults)
        return "\n\n".join(part for part in said.split("\n\n") if lost or OPEN_AT_END not in part)


def say_all(trial):
    from figures import table
    account, callers = trial.account, trial.callers
    print(f"\n== {trial.name}: {len(trial.rests)} rests, {len(trial.samples)} samples under load, "
          f"{max(s.resident for s in trial.samples) / 1024:.1f} MB resident and "
          f"{max(s.descriptors for s in trial.samples)} descriptors at most")
    print(table(trial.rests))
    print(f"calls: {sum(callers.made.values())}, in the log {sum(account.attempts.values())}; "
          f"{account.emptied_with_text} were logged while the log was emptied, "
          f"{account.replaced_files()} in files replaced within their second")
    for (action, end), count in sorted(callers.ends.items()):
        print(f"  {count} callers: {action}: {end}")
    print(f"{callers.half_open_calls} half-open calls, {callers.ident_answers} answers of IdentD")
    for line, count in account.lines.items():
        print(f"  {count} lines: {line}")
    print(f"ways of the mail server: {dict(trial.mail.served)}")
    print(f"questions answered: {trial.owner.answered}, changes accepted without one: "
          f"{trial.owner.not_asked}; slowest answer to a command {trial.owner.slowest:.1f} s")


def soak(minutes):
    from servers import Whois, WHOIS_HOSTS
    from trial import Trial
    as_nobody = os.environ[INSIDE] == "root"
    whois = [Whois((address, 43), seed) for seed, address in enumerate(WHOIS_HOSTS)]
    seconds = minutes * 60
    every = max(20, seconds / 12)
    trial = Trial("plain", seed=1, threads=6, pause=4, ident=True, as_nobody=as_nobody)
    checked = Checked(seconds / 6, as_nobody)
    starter = threading.Timer(seconds * 5 / 6, checked.start)
    starter.start()
    try:
        trial.run(seconds, every)
        faults = list(growth_faults(trial)) + trial.finish()
    finally:
        starter.cancel()
        if checked.ident:  # it has begun
            checked.join()
        trial.home.close()
    for server in whois:
        server.close()
    say_all(trial)
    if checked.trial and checked.trial.rests:
        say_all(checked.trial)
    print(f"ways of the whois servers: {dict(sum((server.served for server in whois), Counter()))}")
    print(f"the plain program says: {trial.program.errors.decode(errors='replace') or '(nothing)'}")
    print(f"valgrind says:\n{checked.report or '(nothing)'}")
    return faults + checked.faults


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("minutes", type=float, nargs="?", default=60, metavar="MINUTES")
    options = parser.parse_args()
    if INSIDE not in os.environ:
        raise SystemExit(enter_own_network())
    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended from outside"))
    begun = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="tallowin-soak-") as folder:
        set_up_network(folder)
        faults = soak(options.minutes)
    print(f"\n{(time.monotonic() - begun) / 60:.1f} minutes")
    if faults:
        raise SystemExit("FAILED:\n" + "\n".join(faults))
    print("nothing grows, nothing is lost")


if __name__ == "__main__":
    main()
