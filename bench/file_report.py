#!/usr/bin/env python3
"""The report of a file of 500 MB, beside cksum on the same file.

    file_report.py PROGRAM-FOLDER [MEGABYTES]

Both read a file that the system holds in memory already; the first scan, which also has to get the
memory for the whole file, stands by itself. Prints one JSON object a line.
"""

import json
import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[1] / "tests" / "endtoend"))

SCANS = 5
PIECE = 1 << 20


def timed(action):
    begun = time.perf_counter()
    action()
    return time.perf_counter() - begun


def make_file(folder, megabytes):
    path = Path(folder) / "large"
    with path.open("wb") as file:
        for _ in range(megabytes):
            file.write(os.urandom(PIECE))
    return path


def scan_times(path):
    from tallowin_harness import Home

    home = Home()
    try:
        home.set_up({})
        program = home.start()
        program.wait_for("IdentD Server Deactivated")
        program.send("click MainForm.stringextractmnu")
        program.ask(f"set stringextractfrm.Text1 {path}")
        return [timed(lambda: program.ask("click stringextractfrm.Command2", deadline=600))
                for _ in range(SCANS)]
    finally:
        home.close()


def main():
    os.environ["TALLOWIN_BIN"] = sys.argv[1]
    megabytes = int(sys.argv[2]) if len(sys.argv) > 2 else 500
    with tempfile.TemporaryDirectory() as folder:
        path = make_file(folder, megabytes)
        peer = [timed(lambda: subprocess.run(["cksum", path], check=True, capture_output=True))
                for _ in range(SCANS)]
        scans = scan_times(path)
    for name, seconds in (("first report", scans[0]), ("report", min(scans[1:])),
                          ("cksum", min(peer))):
        print(json.dumps({"name": name, "megabytes": megabytes, "seconds": seconds}))


if __name__ == "__main__":
    main()
