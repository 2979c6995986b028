"""What the owner of the machine does: answers questions, looks at forms, saves and clears the log.

The only one who talks to the program. Nobody else changes what the program watches, so it asks about
nothing but what is done here.
"""

import os
import random
import time

from tallowin_harness import NOBODY, wait_until

RUN = r"HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run"
PATIENCE = 180  # seconds; under the memory checker, with a mail server that is silent
MILDEST = {"ok": "ok", "yes / no": "no", "a text / cancel": "cancel",
           "the name of a file / cancel": "cancel"}
LOOKS = (
    ("click MainForm.procman", "click ProcessManFrm.Toolbar1 refresh", "show ProcessManFrm",
     "close ProcessManFrm"),
    ("click MainForm.inetstatsmnu", "click Netstatfrm.Toolbar2 refresh", "show Netstatfrm",
     "close Netstatfrm"),
    ("click MainForm.stringextractmnu", "set stringextractfrm.Text1 {program}/tallowin-reg",
     "click stringextractfrm.Command2", "close stringextractfrm"),
    ("click MainForm.reporthackmnu", "show reporthacker", "close reporthacker"),
    ("click MainForm.aboutmnu", "close frmAbout"),
    ("click MainForm.Toolbar1 ping",),
    ("click MainForm.Toolbar1 dnslookup",),
    ("click MainForm.Toolbar1 traceroute",),
    ("set ChatWindow.SendBox who are you?", "click ChatWindow.SendButton"),
    ("click ChatWindow.EndButton",),
)


class Owner:
    def __init__(self, home, program, seed):
        self.answered = 0
        self.not_asked = 0
        self.slowest = 0.0
        self._home = home
        self._program = program
        self._random = random.Random(seed)
        self._changes = 0
        self._added = []  # what was accepted, to be taken away when the program is at rest
        self._autostart = home.path / "config" / "autostart"
        self._win_ini = home.path / "data" / "tallowin" / "drive_c" / "windows" / "win.ini"
        for folder in (self._autostart, self._win_ini.parent):
            folder.mkdir(parents=True, exist_ok=True)
        self._win_ini.write_bytes(b"[windows]\r\nrun=\r\n")
        self._give_to_user()

    def warm_up(self):
        """Everything once, so that what is set up at first use is there."""
        for look in LOOKS:
            self._look(look)
        for change in self._kinds_of_change():
            for answer in ("yes", "no"):
                self._change_and_answer(change, answer)

    def act(self):
        """Does something at random."""
        chance = self._random.random()
        if chance < 0.4:
            self._change_and_answer(self._random.choice(self._kinds_of_change()),
                                    self._random.choice(("yes", "no")))
        elif chance < 0.5:
            self.command("click MainForm.savelog")
        else:
            self._look(self._random.choice(LOOKS))

    def _look(self, look):
        self.command(*(line.format(program=self._home.program) for line in look))

    def _kinds_of_change(self):
        return self._add_value, self._add_entry, self._change_ini

    def command(self, *lines):
        """Sends commands, or an answer, and gives what is printed until the program takes the next
        command. Whatever it asks meanwhile gets the mildest answer."""
        begun = time.monotonic()
        messages = self._program.messages
        place = start = len(messages)
        self._program.send(*lines)
        while True:
            token = f"done{random.getrandbits(64)}"
            self._program.send(token)
            place, message = self._next(place, lambda text: text in MILDEST or token in text)
            if message not in MILDEST:
                self.slowest = max(self.slowest, time.monotonic() - begun)
                return messages[start:place - 1]
            self._program.send(MILDEST[message])

    def _next(self, place, wanted, patience=PATIENCE):
        """The place behind the next message that is wanted, and the message."""
        messages = self._program.messages

        def look():
            nonlocal place
            while place < len(messages):
                place += 1
                if wanted(messages[place - 1]):
                    return True
            return False

        wait_until(look, "an answer of the program", patience)
        return place, messages[place - 1]

    def tidy_up(self):
        """Takes away what was accepted. The watch counts, so it must have looked once before the
        next one comes."""
        for take_away in self._added:
            take_away()
        self._added.clear()
        time.sleep(1)

    def _change_and_answer(self, change, answer):
        """A change to a watched place, and the answer to the question about it. A change that falls
        into a tick is accepted without a word, so that now and then nothing is asked."""
        self._changes += 1
        place = len(self._program.messages)
        remains, take_away = change(f"soak{self._changes}")
        try:
            self._next(place, "yes / no".__eq__, 60)
        except AssertionError:
            self.not_asked += 1
            self._added.append(take_away)
            return
        if answer == "yes":
            place = len(self._program.messages)
            self._program.send(answer)
            place, _ = self._next(place, "[?] Item Removed".__eq__)
            self._next(place, "ok".__eq__)
            self.command("ok")
            assert not remains(), "a change that was undone is still there"
        else:
            self.command(answer)
            assert remains(), "a change that was accepted has gone"
            self._added.append(take_away)
        self.answered += 1

    def _add_value(self, name):
        self._home.reg("set", RUN, name, "REG_SZ", f"/opt/{name} --evil")
        return (lambda: self._home.reg("get", RUN, name, check=False).returncode == 0,
                lambda: self._home.reg("delete", RUN, name))

    def _add_entry(self, name):
        entry = self._autostart / f"{name}.desktop"
        new = entry.with_suffix(".new")
        new.write_text(f"[Desktop Entry]\nType=Application\nExec=/opt/{name}\n", encoding="ascii")
        new.rename(entry)
        return entry.exists, entry.unlink

    def _change_ini(self, name):
        new = self._win_ini.with_suffix(".new")
        new.write_bytes(b"[windows]\r\nrun=%s.exe\r\n" % name.encode())
        self._give_to_user(new)
        new.rename(self._win_ini)
        return lambda: name.encode() in self._win_ini.read_bytes(), lambda: None

    def _give_to_user(self, file=None):
        if self._home.as_user and os.geteuid() == 0:
            self._home.own_all()
            os.chown(file or self._win_ini, NOBODY, NOBODY)
