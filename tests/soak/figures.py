"""What a process has in use, and how that grows."""

import os
import time
from dataclasses import dataclass
from pathlib import Path

TICKS = os.sysconf("SC_CLK_TCK")


@dataclass
class Sample:
    """Memory in kilobytes."""

    when: float
    resident: int
    proportional: int
    anonymous: int
    descriptors: int
    threads: int
    cpu_seconds: float
    wake_ups: int
    log_files: int  # bytes
    attempts: int = 0
    kept: int = 0  # what the program keeps on purpose, in kilobytes
    cpu_at_rest: float = 0  # percent of a core
    wake_ups_at_rest: float = 0  # in a second; a timer that nobody stopped shows here

    @property
    def unexplained(self):
        return self.anonymous - self.kept


def numbers_of(path):
    lines = (line.split() for line in path.read_text(encoding="ascii", errors="replace").splitlines())
    return {line[0]: int(line[1]) for line in lines if len(line) > 1 and line[1].isdigit()}


def take_sample(pid, log_folder):
    process = Path(f"/proc/{pid}")
    memory = numbers_of(process / "smaps_rollup")
    status = numbers_of(process / "status")
    stat = (process / "stat").read_text(encoding="ascii").rsplit(")", 1)[1].split()
    return Sample(
        when=time.monotonic(),
        resident=memory["Rss:"],
        proportional=memory["Pss:"],
        anonymous=memory["Anonymous:"],
        descriptors=len(os.listdir(process / "fd")),
        threads=status["Threads:"],
        cpu_seconds=(int(stat[11]) + int(stat[12])) / TICKS,
        wake_ups=status["voluntary_ctxt_switches:"],
        log_files=sum(file.stat().st_size for file in log_folder.glob("*.log")),
    )


def slope_per_hour(samples, value):
    """The least squares."""
    hours = [sample.when / 3600 for sample in samples]
    values = [value(sample) for sample in samples]
    middle, mean = sum(hours) / len(hours), sum(values) / len(values)
    spread = sum((hour - middle) ** 2 for hour in hours)
    return sum((hour - middle) * (number - mean)
               for hour, number in zip(hours, values)) / spread if spread else 0


ROWS = (
    ("resident, MB", lambda s: s.resident / 1024, 1),
    ("proportional share, MB", lambda s: s.proportional / 1024, 1),
    ("anonymous, MB", lambda s: s.anonymous / 1024, 2),
    ("of it kept on purpose, MB", lambda s: s.kept / 1024, 2),
    ("anonymous but for that, MB", lambda s: s.unexplained / 1024, 2),
    ("descriptors", lambda s: s.descriptors, 0),
    ("threads", lambda s: s.threads, 0),
    ("CPU at rest, % of a core", lambda s: s.cpu_at_rest, 2),
    ("wake-ups a second at rest", lambda s: s.wake_ups_at_rest, 1),
    ("log files, MB", lambda s: s.log_files / 1e6, 1),
    ("attempts so far", lambda s: s.attempts, 0),
)


def table(rests):
    """The rests of the program, the first one behind its warm-up."""
    lines = [f"{'':28}{'warmed up':>12}{'at the end':>12}{'most':>12}{'per hour':>12}"]
    for name, value, places in ROWS:
        numbers = [value(rests[0]), value(rests[-1]), max(map(value, rests)),
                   slope_per_hour(rests, value)]
        lines.append(f"{name:28}" + "".join(f"{number:12.{places}f}" for number in numbers))
    return "\n".join(lines)
