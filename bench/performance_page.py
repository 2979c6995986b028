#!/usr/bin/env python3
"""Runs all benchmarks and writes their figures to one page.

    performance_page.py PROGRAM-FOLDER PAGE

Run it by bench/run --page. The figures come as JSON: from Google Benchmark as a whole, from the
others as one object a line.
"""

import json
import os
import platform
import re
import subprocess
import sys
import time
from pathlib import Path

from performance_subjects import SUBJECTS

BENCH = Path(__file__).parent
OPTIONS_IN_NAME = re.compile(r"/(iterations:\d+|real_time|min_time:[\d.]+)")
SECONDS_IN = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
COMMANDS = {
    "AttemptRate": ("{bin}/AttemptRate", "{bin}"),
    "start_and_idle": (sys.executable, "{bench}/start_and_idle.py", "{bin}"),
    "mail_flood": (sys.executable, "{bench}/mail_flood.py", "{bin}", "--calls", "200",
                   "--seconds", "0.1"),
    "file_report": (sys.executable, "{bench}/file_report.py", "{bin}"),
    **{name: (f"{{bin}}/{name}", "--benchmark_format=json")
       for name in ("StatusLineCost", "DoEventsCost", "AutostartTick", "Crc32Rate", "HuntCost",
                    "LocalTools")},
}


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def figures_of(text):
    """{name: {field: number}} in seconds and bytes."""
    if text.lstrip().startswith('{\n'):
        figures = {}
        for entry in json.loads(text)["benchmarks"]:
            if entry.get("error_occurred"):
                raise SystemExit(f"{entry['name']}: {entry['error_message']}")
            entry["seconds"] = entry["real_time"] * SECONDS_IN[entry["time_unit"]]
            figures[OPTIONS_IN_NAME.sub("", entry["name"])] = entry
        return figures
    return {entry["name"]: entry for entry in map(json.loads, text.splitlines())}


def measure(programs):
    figures = {}
    for name, command in COMMANDS.items():
        print(f"{time.strftime('%H:%M:%S')} {name}", file=sys.stderr)
        words = (word.format(bin=programs, bench=BENCH) for word in command)
        figures.update(figures_of(output_of(*words)))
    return figures


def scaled(value, units):
    """With three digits, in the largest unit that leaves something before the point."""
    factor, unit = next(((f, u) for f, u in units if abs(value) >= f), units[-1])
    number = value / factor
    places = 0 if abs(number) >= 100 else 1 if abs(number) >= 10 else 2
    return f"{number:,.{places}f} {unit}".rstrip()


TIMES = ((1, "s"), (1e-3, "ms"), (1e-6, "µs"), (1e-9, "ns"))
BYTES = ((1e9, "GB"), (1e6, "MB"), (1e3, "kB"), (1, "bytes"))
SHOWN = {
    "time": lambda value: scaled(value, TIMES),
    "bytes": lambda value: scaled(value, BYTES),
    "rate of bytes": lambda value: scaled(value, BYTES) + "/s",
    "rate": lambda value: scaled(value, ((1, ""),)) + " /s",
    "share": lambda value: f"{value * 100:.2f} %",
}


def table(rows, figures):
    yield "| what | ours | beside it | | ours to that |"
    yield "|---|---:|---|---:|---:|"
    for row in rows:
        ours = row.ours.of(figures)
        beside = row.beside.of(figures)
        if ours is None or beside is None:
            yield f"| {row.what} | not measured here | {row.beside_what} | | |"
            continue
        shown = SHOWN[row.kind]
        yield (f"| {row.what} | {shown(ours)} | {row.beside_what} | {shown(beside)} "
               f"| {ours / beside:.2f} |")


def compiler(programs):
    cache = (Path(programs).parent / "CMakeCache.txt").read_text(encoding="utf-8")
    path = re.search(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", cache, re.MULTILINE)[1]
    return output_of(path, "--version").splitlines()[0]


def processor():
    text = Path("/proc/cpuinfo").read_text(encoding="utf-8")
    return next((line.split(":", 1)[1].strip() for line in text.splitlines()
                 if line.startswith("model name")), platform.machine())


def quiet_load():
    """The load of the machine, once the build before has been forgotten; waits some minutes."""
    end = time.monotonic() + 240
    while (load := os.getloadavg()[0]) > 0.3 and time.monotonic() < end:
        time.sleep(5)
    return load


def page(figures, programs, load):
    yield from (
        "# Performance",
        "",
        "What the suite costs, each figure beside its limit, or beside what others do the same with,",
        "measured in the same run. The last column is our figure divided by that one: the more the",
        "better where something is counted by the second, the less the better elsewhere. Written by",
        "",
        "    bench/run --page",
        "",
        "which builds all benchmarks of [bench](../bench), runs them for some minutes and writes this",
        "file anew; it should have the machine to itself.",
        "",
        "| | |",
        "|---|---|",
        f"| processor | {processor()}, {os.cpu_count()} cores |",
        f"| system | Linux {'.'.join(platform.release().split('.')[:2])} |",
        f"| compiler | {compiler(programs)}, preset `bench` |",
        f"| date | {time.strftime('%Y-%m-%d')} |",
        f"| load before the run | {load:.2f} of {os.cpu_count()} |",
    )
    for subject in SUBJECTS:
        yield from ("", f"## {subject.title}", "", *subject.why, "")
        yield from table(subject.rows, figures)


def main():
    programs, target = sys.argv[1:]
    load = quiet_load()
    lines = page(measure(programs), programs, load)
    Path(target).write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
