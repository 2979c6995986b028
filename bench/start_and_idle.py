#!/usr/bin/env python3
"""From process start to listening on the twelve ports of the presets, and what idling costs.

    start_and_idle.py PROGRAM-FOLDER [SECONDS-OF-IDLING]

Both programs are measured, the desktop one only where there is a display. Beside each start stands
the time that the same machine takes to start a process which does nothing. Prints one JSON object a
line.
"""

import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

STARTS = 10
PORTS = 12
LISTENING = "0A"


def listening_ports(pid):
    """The ports on which the sockets of this very process listen."""
    inodes = set()
    for descriptor in os.listdir(f"/proc/{pid}/fd"):
        try:
            target = os.readlink(f"/proc/{pid}/fd/{descriptor}")
        except OSError:
            continue
        if target.startswith("socket:["):
            inodes.add(target[8:-1])
    count = 0
    with open("/proc/net/tcp", encoding="ascii") as table:
        next(table)
        for row in map(str.split, table):
            if row[3] != LISTENING:  # those come first, and the rest may be very long
                break
            count += row[9] in inodes
    return count


def start(home, program):
    environment = {**os.environ, "HOME": home}
    for name in ("XDG_CONFIG_HOME", "XDG_DATA_HOME"):
        environment.pop(name, None)
    return subprocess.Popen([os.path.join(home, program)], env=environment,
                            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL)


def end(process):
    process.terminate()
    process.wait(timeout=10)


def milliseconds_to_listening(home, program):
    begin = time.perf_counter()
    process = start(home, program)
    while listening_ports(process.pid) < PORTS:
        if process.poll() is not None or time.perf_counter() - begin > 20:
            raise SystemExit(f"{program} does not come up")
        time.sleep(0.001)
    taken = (time.perf_counter() - begin) * 1000
    end(process)
    return taken


def milliseconds_of_nothing():
    begin = time.perf_counter()
    subprocess.run(["true"], check=True)
    return (time.perf_counter() - begin) * 1000


def cpu_seconds(pid):
    with open(f"/proc/{pid}/stat", encoding="ascii") as stat:
        fields = stat.read().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def resident_megabytes(pid):
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        line = next(line for line in status if line.startswith("VmRSS:"))
    return int(line.split()[1]) / 1024


def measure(home, program, seconds):
    starts = [milliseconds_to_listening(home, program) for _ in range(STARTS)]
    process = start(home, program)
    while listening_ports(process.pid) < PORTS:
        time.sleep(0.01)
    time.sleep(2)
    before = cpu_seconds(process.pid)
    time.sleep(seconds)
    cpu = (cpu_seconds(process.pid) - before) / seconds * 100
    memory = resident_megabytes(process.pid)
    end(process)
    print(json.dumps({"name": program, "start_seconds": statistics.median(starts) / 1000,
                      "slowest_seconds": max(starts) / 1000, "idle_share": cpu / 100,
                      "resident_bytes": memory * 2**20}), flush=True)


def main():
    programs = sys.argv[1]
    seconds = float(sys.argv[2]) if len(sys.argv) > 2 else 30
    nothing = statistics.median(milliseconds_of_nothing() for _ in range(STARTS))
    print(json.dumps({"name": "nothing", "start_seconds": nothing / 1000}))
    with tempfile.TemporaryDirectory() as home:
        wanted = ["tallowin-console"] + (["tallowin"] if os.environ.get("DISPLAY") else [])
        for name in ["tallowin-reg", "defaults.reg", *wanted]:
            shutil.copy(os.path.join(programs, name), home)
        subprocess.run([os.path.join(home, "tallowin-reg"), "import", "defaults.reg"], cwd=home,
                       env={"HOME": home, "PATH": os.environ["PATH"]}, check=True)
        for program in wanted:
            measure(home, program, seconds)


if __name__ == "__main__":
    main()
