"""A network and a mount table for one script alone.

The script runs itself again in them, so that all it makes is invisible to the rest of the machine
and goes with the last process of the test, however that ends.
"""

import os
import shutil
import subprocess
import sys
import unittest
from pathlib import Path

from tallowin_harness import RUNS_AS_ROOT

INSIDE = "TALLOWIN_TEST_OWN_NETWORK"  # "root", or "user" where the root here is one in name only


def enter_own_network():
    """Starts this script again in namespaces of its own, or gives the reason why it cannot."""
    os.environ["PATH"] += ":/usr/sbin:/sbin"
    needed = [tool for tool in ("unshare", "nsenter", "setpriv", "ip") if not shutil.which(tool)]
    if needed:
        return "these programs are missing: " + " ".join(needed)
    reason = ""
    for kind in ("root", "user") if RUNS_AS_ROOT else ("user",):
        own = ["unshare", "--mount", "--net"]
        own += ["--user", "--map-root-user"] if kind == "user" else []
        trial = "mount -t tmpfs none /run && ip netns add a && ip -n a link add name v type veth"
        trial += " && echo 1 > /proc/sys/net/ipv4/ip_forward"
        tried = subprocess.run([*own, "sh", "-c", trial], capture_output=True, check=False)
        if tried.returncode == 0:
            os.environ[INSIDE] = kind
            os.execvp(own[0], [*own, sys.executable, "-B", *sys.argv])
        reason = tried.stderr.decode(errors="replace").strip()
    return "network namespaces cannot be made here: " + reason


def run(*command):
    subprocess.run(command, check=True, timeout=30)


def run_in_own_network(case):
    """The main routine of a script with one test case, which is skipped where this cannot be."""
    if INSIDE not in os.environ:
        unittest.skip(enter_own_network())(case)
    unittest.main()


def name_hosts(folder, names):
    """Makes these hosts known, {address: name}. Gives the file that names the name server."""
    run("mount", "-t", "tmpfs", "none", "/run")
    hosts = "".join(f"{address} {name}\n" for address, name in names.items())
    replace("/etc/hosts", folder, "127.0.0.1 localhost\n" + hosts)
    replace("/etc/nsswitch.conf", folder, "hosts: files dns\n")
    return replace("/etc/resolv.conf", folder, "nameserver 127.0.0.1\n")


def replace(path, folder, text):
    """Puts another file in the place of this one, for the eyes of this test alone."""
    file = Path(folder) / Path(path).name
    file.write_text(text, encoding="ascii")
    place = Path(path).resolve()
    if place.is_relative_to("/run"):  # which is empty here
        place.parent.mkdir(parents=True, exist_ok=True)
        place.touch()
    run("mount", "--bind", str(file), str(place))
    return file
