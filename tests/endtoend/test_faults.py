"""Damaged settings, sudden ends and floods."""

import asyncio
import collections
import os
import random
import re
import socket
import subprocess
import time
import unittest

from tallowin_harness import (
    DEADLINE, PORTS, REFUSE, REFUSED, SEND, SENT, SUITE, Like, TestCase, attempt, call,
    free_ports, looked_up, wait_until,
)

# Messages that are not the same at each attempt.
MEASURED = [line for line in looked_up("127.0.0.1") if isinstance(line, Like)]


class Settings(TestCase):
    def assert_runs_without_settings(self):
        program = self.start(until=None)
        self.assertEqual(program.get("Options.PortChk"), "2")
        self.assertEqual(program.get("MainForm.Status"), "")
        self.assertEqual(program.quit(), 0)
        return program.errors.decode()

    def damage(self, change):
        """Gives the bytes of a well-filled registry after the change."""
        self.home.set_up({1: (free_ports(1)[0], SEND, "x" * 3000)})
        content = bytearray(self.home.registry.read_bytes())
        self.assertGreater(len(content), 8192)
        content = bytes(change(content))
        self.home.registry.write_bytes(content)
        return content

    def test_damaged_registry_is_set_aside_and_told_of(self):
        noise = random.Random(1)
        damages = {
            "noise": lambda content: noise.randbytes(len(content)),
            "truncated": lambda content: content[: len(content) // 2 + 100],
            "a text": lambda content: b"this is no database\n" * 400,
            "head only": lambda content: content[:4096] + noise.randbytes(len(content) - 4096),
        }
        for name, change in damages.items():
            with self.subTest(name):
                self.home = self.make_home()
                content = self.damage(change)
                errors = self.assert_runs_without_settings()
                self.assertRegex(errors, r"^tallowin-console: .*\n$")
                place = errors.rstrip("\n").rsplit(" ", 1)[1]
                with open(place, "rb") as kept:
                    self.assertEqual(kept.read(), content)
                port = free_ports(1)[0]
                self.home.set_up({2: (port, SEND, "again")})
                program = self.start()
                self.assertEqual(call(port), (b"again", "end"))
                program.quit()
                self.assertEqual(program.errors, b"")

    def test_empty_registry(self):
        self.home.registry.parent.mkdir(parents=True, exist_ok=True)
        self.home.registry.write_bytes(b"")
        self.assert_runs_without_settings()

    def test_registry_without_rights(self):
        self.home = self.make_home(as_nobody=True)
        content = self.damage(lambda whole: whole)
        self.home.registry.chmod(0)
        self.assert_runs_without_settings()
        self.home.registry.chmod(0o600)
        self.assertEqual(self.home.registry.read_bytes(), content)
        self.home.registry.unlink()
        self.home.registry.parent.chmod(0o500)
        self.addCleanup(self.home.registry.parent.chmod, 0o700)
        self.assert_runs_without_settings()

    def test_full_disk(self):
        port = free_ports(1)[0]
        self.home.set_up({1: (port, SEND, "still here")})
        # No file can grow: what a full disk does to those who write.
        self.home.as_user = ["sh", "-c", 'trap "" XFSZ; ulimit -f 0; exec "$0" "$@"']
        program = self.start(until=None)
        # Settings that cannot be read count as missing; those that can be read hold.
        if program.get("Options.PortChk") == "1":
            self.assertEqual(call(port), (b"still here", "end"))
        program.ask("click MainForm.portsntmnu", "click MainForm.savelog", "ok")
        self.assertEqual(program.quit(), 0)
        self.assertRegex(program.messages[-1], "^Wrote Log To File: ")
        self.assertEqual(sum(log.stat().st_size for log in self.home.logs()), 0)
        self.home.as_user = []
        program = self.start()
        self.assertEqual(program.get("Options.PortChk"), "1")
        self.assertEqual(program.errors + program.messages[0].encode(), b"Verbose Mode Disabled")

    def test_kill_in_the_middle_of_saving_with_two_writers(self):
        self.home.set_up({})
        old, new = "o" * 2000, "n" * 2000
        for name, text in (("old", old), ("new", new)):
            lines = ["Windows Registry Editor Version 5.00"]
            for slot in range(1, 16):
                lines += [f"[{PORTS}{slot}]", f'"Packet To Send"="{text}"']
            (self.home.path / name).write_text("\r\n".join(lines) + "\r\n", encoding="utf-16")
        self.home.reg("import", str(self.home.path / "old"))
        moments = random.Random(2)
        for _ in range(12):
            program = self.start(until="Verbose Mode Disabled")
            program.send(*["click MainForm.portsntmnu"] * 400)
            writer = subprocess.Popen(
                ["sh", "-c", 'while :; do "$0" import new; "$0" import old; done',
                 str(self.home.program / "tallowin-reg")],
                env=self.home.environment, cwd=self.home.path, start_new_session=True,
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(moments.uniform(0.02, 0.25))  # any moment will do
            program.process.kill()
            os.killpg(writer.pid, 9)
            writer.wait(DEADLINE)
            program.wait_end()
            self.assert_each_value_is_old_or_new({old, new})
        self.assertEqual(list(self.home.registry.parent.glob("*damaged*")), [])

    def assert_each_value_is_old_or_new(self, packets):
        exported = self.home.path / "exported.reg"
        self.home.reg("export", str(exported), SUITE)
        content = exported.read_bytes()
        text = content.decode("utf-16" if content[:2] == b"\xff\xfe" else "utf-8")
        found = re.findall(r'"Packet To Send"="(.*)"', text)
        self.assertEqual(len(found), 15)
        self.assertLessEqual(set(found), packets)
        self.assertRegex(text, r'"Port Sentry"=dword:0000000[01]')
        self.assertRegex(text, r'"IdentDReply"="Anonymous"')


class Flood(TestCase):
    CALLERS = 2_000  # each of whom is looked up and pinged
    with open("/proc/sys/net/core/somaxconn", encoding="ascii") as most_queued:
        AT_ONCE = min(500, int(most_queued.read()) // 2)

    async def one_caller(self, port):
        loop = asyncio.get_running_loop()
        with socket.socket() as caller:
            caller.setblocking(False)
            received = b""
            try:
                await loop.sock_connect(caller, ("127.0.0.1", port))
                while piece := await loop.sock_recv(caller, 4096):
                    received += piece
            except ConnectionResetError:
                return "reset"
            return received

    async def all_callers(self, ports):
        waiting = iter([ports[i % len(ports)] for i in range(self.CALLERS)])
        outcomes = collections.Counter()

        async def calls():
            for port in waiting:
                outcomes[await self.one_caller(port)] += 1

        await asyncio.wait_for(asyncio.gather(*[calls() for _ in range(self.AT_ONCE)]), 120)
        return outcomes

    def flood(self, slots):
        self.home.set_up(slots)
        program = self.start()
        before = program.descriptors()
        most = 0

        async def watch_and_call():
            nonlocal most
            callers = asyncio.ensure_future(self.all_callers([slot[0] for slot in slots.values()]))
            while not callers.done():
                most = max(most, program.descriptors())
                await asyncio.wait([callers], timeout=0.05)
            return callers.result()

        outcomes = asyncio.run(watch_and_call())
        program.wait_for("----Connected Attempt Ended----", count=self.CALLERS, deadline=120)
        self.assertEqual(sum(outcomes.values()), self.CALLERS)
        self.assert_every_attempt_is_whole(program, slots)
        self.assertLess(most, self.AT_ONCE + 100)
        wait_until(lambda: program.descriptors() <= before + 2 * len(slots), "closed callers")
        self.assertEqual(program.quit(), 0)
        return outcomes

    def assert_every_attempt_is_whole(self, program, slots):
        start = program.messages.index("IdentD Server Deactivated") + 1
        expected = collections.Counter(program.messages[:start])
        each = self.CALLERS // len(slots)
        extra = self.CALLERS - each * len(slots)
        for place, (slot, (port, action, _)) in enumerate(slots.items()):
            lines = attempt(port, f"slot {slot}", REFUSED if action == REFUSE else SENT)
            for line in lines:
                if line not in MEASURED:
                    expected[line] += each + (place < extra)
        steady = [line for line in program.messages if line not in MEASURED]
        self.assertEqual(collections.Counter(steady), expected)
        self.assertEqual(len(program.messages) - len(steady), len(MEASURED) * self.CALLERS)

    def test_one_port(self):
        outcomes = self.flood({1: (free_ports(1)[0], REFUSE, "")})
        self.assertEqual(outcomes, {"reset": self.CALLERS})

    def test_spread_over_twelve(self):
        ports = free_ports(12)
        self.flood({slot: (port, REFUSE if slot % 2 else SEND, "Go away.")
                    for slot, port in enumerate(ports, 1)})


if __name__ == "__main__":
    unittest.main()
