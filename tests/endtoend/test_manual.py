"""The manual: the help file, the pages beside it, and the way there."""

import os
import re
import shutil
import subprocess
import unittest
from pathlib import Path

from tallowin_harness import TestCase, wait_until

BIN = Path(os.environ["TALLOWIN_BIN"])
PAGES = BIN / "tallowinhlp"


class ManualTest(TestCase):
    def test_each_link_leads_to_a_page_and_each_page_is_reached(self):
        pages = {file.name: file.read_text(encoding="utf-8") for file in PAGES.glob("*.html")}
        reached = set()
        for name, text in pages.items():
            links = re.findall(r'(?:href|src)="([^"]+)"', text)
            missing = [link for link in links if not (PAGES / link).is_file()]
            self.assertEqual(missing, [], name)
            reached.update(links)
        self.assertEqual(set(pages) - reached, set())

    def test_the_help_file_holds_the_pages_and_their_contents(self):
        out = self.home.path / "help"
        subprocess.run(["extract_chmLib", BIN / "tallowinhlp.chm", out], check=True,
                       capture_output=True)
        pages = list(PAGES.iterdir())
        for page in pages:
            self.assertEqual((out / page.name).read_bytes(), page.read_bytes(), page.name)
        contents = re.findall(r'"Local" value="([^"]+)"',
                              (out / "contents.hhc").read_text(encoding="utf-8"))
        self.assertEqual(set(contents), {page.name for page in pages if page.suffix == ".html"})

    def test_f1_hands_it_to_the_desktop(self):
        shutil.copytree(PAGES, self.home.program / "tallowinhlp")
        opened = self.home.path / "opened"
        opener = self.home.path / "xdg-open"
        opener.write_text(f'#!/bin/sh\necho "$@" > {opened}.part; mv {opened}.part {opened}\n',
                          encoding="ascii")
        opener.chmod(0o700)
        self.home.environment["PATH"] = f"{self.home.path}:{self.home.environment['PATH']}"
        self.home.set_up({})
        program = self.start()
        self.assertEqual(program.ask("click MainForm.hlpmnu"), [])
        wait_until(opened.exists, "the opener")
        self.assertEqual(opened.read_text(encoding="utf-8").strip(),
                         str(self.home.program / "tallowinhlp" / "index.html"))


if __name__ == "__main__":
    unittest.main()
