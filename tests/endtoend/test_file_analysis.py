"""All about one file, asked for in the terminal: the report and the texts of the string table."""

import glob
import os
import sys
import unittest
import zlib
from pathlib import Path

from tallowin_harness import Like, TestCase

sys.path.append("/usr/lib/python3/dist-packages")  # of the system, whoever runs this
try:
    import pefile
except ImportError:
    pefile = None

SAMPLE = Path(__file__).parents[2] / "fuzz/seeds/executable/sample-x86_64.dll"
# One with hundreds of texts, where such a package is installed; or any other by its path.
LIBRARIES = [os.environ.get("TALLOWIN_REAL_DLL", ""),
             *glob.glob("/usr/lib/*/wine/*-windows/crypt32.dll"), SAMPLE]
PROPERTIES = [
    "Full Path", "Short Path", "File Type", "Created", "Modified", "Accessed", "Read Only",
    "Archive", "Hidden", "System", "Compressed", "Temporary", "File Size", "Compressed File Size",
    "CRC32", "Product Name", "File Description", "File Version", "Legal Copyright", "Language",
    "Company Name", "Internal Name", "Language", "Original Filename", "Virii Found In File"]
DATE = Like(r".+ \d\d?:\d\d:\d\d.*")
MAYBE_DATE = Like(r".*")  # not every file system keeps the time of creation
SOME_TYPE = Like(r".+")


def crc(data):
    return f"{zlib.crc32(data):X}"


def printed(text):
    """A value as the terminal prints it in a table."""
    for character, escape in (("\\", "\\\\"), ("\r", "\\r"), ("\n", "\\n"), ("\t", "\\t")):
        text = text.replace(character, escape)
    return text


class FileAnalysis(TestCase):
    def open_form(self, **traits):
        self.home = self.make_home(**traits)
        self.home.set_up({})
        self.program = self.start()
        self.program.send("click MainForm.stringextractmnu")
        self.files = self.home.path / "files"
        self.files.mkdir()

    def rows(self, view):
        """The rows of a table, without their numbers."""
        lines = self.program.ask("show stringextractfrm")
        first = next(i for i, line in enumerate(lines) if line.startswith(view + "\t")) + 2
        last = next(i for i in range(first, len(lines)) if not lines[i].startswith("\t"))
        return [line.split("\t")[2:] for line in lines[first:last]]

    def scan(self, path, deadline=60):
        """The values of the report of a file."""
        typed = os.fsencode(path).replace(b"\\", b"\\\\")
        self.program.ask(b"set stringextractfrm.Text1 " + typed, "click stringextractfrm.Command2",
                         deadline=deadline)
        rows = self.rows("VersionInfoView")
        self.assertEqual([row[0] for row in rows], PROPERTIES)
        return [(row + [""])[1] for row in rows]

    def assert_report(self, path, size, checksum, archive="True", version=(), shown=None):
        shown = shown or os.fspath(path)
        self.assertEqual(self.scan(path), [
            shown, shown, SOME_TYPE, MAYBE_DATE, DATE, DATE, "False", archive, "False", "False",
            "False", "False", size, "File is not compressed", checksum,
            *(version or [""] * 9), "No Virii Found"])

    def make(self, name, data=b""):
        path = self.files / name
        path.write_bytes(data)
        return path

    def test_every_kind_of_file_has_all_rows(self):
        self.open_form()
        data = SAMPLE.read_bytes()
        full = ["Sample", "Tools über alles", "4.1 beta", "Public domain", "None", "Example Works",
                "sample", "English (United States)", "SAMPLE.DLL"]
        copy = self.make("sample.dll", data)
        self.assert_report(copy, "5.00KB (5,120 bytes)", crc(data), version=full)
        self.assertGreater(len(self.rows("StringTableView")), 5)
        text = self.make("text.txt", b"x" * 1023)
        self.assert_report(text, "1,023 bytes", crc(b"x" * 1023))
        self.assertEqual(self.rows("StringTableView"), [], "nothing stays of the scan before")
        elf = self.make("elf", Path(sys.executable).read_bytes()[:8192])
        self.assert_report(elf, "8.00KB (8,192 bytes)", crc(elf.read_bytes()))
        empty = self.make("empty")
        self.assert_report(empty, "0 bytes", "0")

        # A folder is no file: nothing happens, and what was found stays.
        self.program.ask(f"set stringextractfrm.Text1 {self.files}",
                         "click stringextractfrm.Command2")
        self.assertEqual(self.rows("VersionInfoView")[0][1], str(empty))

        link = self.files / "link"
        link.symlink_to("nowhere")
        self.assert_report(link, "7 bytes", "0", archive="False")
        name = os.fsencode(self.files) + b"/b\xff\xc3.txt"
        Path(os.fsdecode(name)).write_bytes(b"abc")
        self.assert_report(name, "3 bytes", crc(b"abc"), shown=f"{self.files}/b\\xff\\xc3.txt")
        # More than any memory holds; the size is the low half of it, with a sign.
        huge = self.make("huge")
        os.truncate(huge, (4 << 40) + (3 << 30))
        self.assert_report(huge, "-1,073,741,824 bytes", "0")

        self.assertEqual(self.program.ask("close stringextractfrm"), [])
        self.program.send("click MainForm.stringextractmnu")
        self.assertEqual(self.rows("VersionInfoView"), [], "it opens empty")

    def test_a_file_without_rights_keeps_its_rows(self):
        self.open_form(as_nobody=True)
        secret = self.make("secret.txt", b"secret")
        if self.home.as_user:
            secret.chmod(0o600)  # and it belongs to root
            self.home.path.chmod(0o755)
        else:
            secret.chmod(0)
        report = self.scan(secret)
        self.assertEqual((report[0], report[12], report[14]), (str(secret), "6 bytes", "0"))

    def test_a_library_has_the_texts_that_another_reader_finds(self):
        if pefile is None:
            self.skipTest("needs python3-pefile")
        path = next(path for path in LIBRARIES if os.path.exists(path))
        self.open_form()
        self.scan(path)
        shown = [(int(row[0]), row[1]) for row in self.rows("StringTableView")]
        bundles = texts_of(pefile.PE(os.fspath(path)))
        texts = {id: text for bundle in bundles.values() for id, text in bundle.items()}
        # A bundle is asked for ids one higher than it holds: its first text comes only where the
        # bundle before it exists, and id 0 never.
        wanted = [(id, printed(texts[id][:254])) for number in bundles
                  for id in range((number - 1) * 16 + 1, number * 16 + 1) if texts.get(id)]
        self.assertEqual([id for id, _ in shown], [id for id, _ in wanted])
        for (id, text), (_, other) in zip(shown, wanted):
            self.assertEqual(text[:120], other[:120] if "... (" not in text else text[:120], id)
        missed = sorted(set(texts) - {id for id, _ in shown})
        self.assertTrue(all(id % 16 == 0 for id in missed), missed)
        print(f"{path}: {len(texts)} texts, {len(shown)} shown; missed {missed}", file=sys.stderr)


def texts_of(file):
    """{bundle: {id: text}} in the order of the file, in the language that American users get."""
    types = [entry for entry in file.DIRECTORY_ENTRY_RESOURCE.entries if entry.id == 6]
    bundles = {}
    for bundle in types[0].directory.entries if types else []:
        if bundle.id is None:  # a name; those are found by their number only
            continue
        languages = {entry.id: entry.data for entry in bundle.directory.entries}
        data = next((languages[id] for id in (0, 0x409, 9) if id in languages),
                    next(iter(languages.values())))
        bundles[bundle.id] = texts_of_bundle(bundle.id, file.get_data(data.struct.OffsetToData,
                                                                      data.struct.Size))
    return bundles


def texts_of_bundle(number, data):
    texts = {}
    place = 0
    for id in range((number - 1) * 16, number * 16):
        length = 2 * int.from_bytes(data[place:place + 2], "little")
        if length:
            texts[id] = data[place + 2:place + 2 + length].decode("utf-16-le", "replace")
        place += 2 + length
    return texts


if __name__ == "__main__":
    unittest.main()
