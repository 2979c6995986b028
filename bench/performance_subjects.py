"""What stands on the page of figures: the subjects, and in each which figure stands beside which."""

from dataclasses import dataclass


@dataclass(frozen=True)
class Figure:
    name: str
    field: str = "seconds"

    def of(self, figures):
        return figures.get(self.name, {}).get(self.field)


@dataclass(frozen=True)
class Fixed:
    """A limit that is no measurement."""

    value: float

    def of(self, _figures):
        return self.value


@dataclass(frozen=True)
class Row:
    what: str
    ours: Figure
    beside_what: str
    beside: Figure | Fixed
    kind: str = "time"


@dataclass(frozen=True)
class Subject:
    title: str
    why: tuple  # lines
    rows: tuple


def attempts(treatment):
    ours = f"{treatment}, tallowin-console"
    for beside_what, beside in (("bare loop with name and echo", "bare loop with name and echo"),
                                ("bare loop", "bare loop")):
        yield Row(f"{treatment}, attempts", Figure(ours, "per_second"), beside_what,
                  Figure(f"{treatment}, {beside}", "per_second"), "rate")
    yield Row(f"{treatment}, processor time of one", Figure(ours, "cpu_seconds"),
              "bare loop with name and echo",
              Figure(f"{treatment}, bare loop with name and echo", "cpu_seconds"))


def starts(program):
    yield Row(f"`{program}`, start to listening", Figure(program, "start_seconds"),
              "start and end of a process that does nothing", Figure("nothing", "start_seconds"))
    yield Row(f"`{program}`, processor at rest", Figure(program, "idle_share"),
              "our limit", Fixed(0.01), "share")
    yield Row(f"`{program}`, memory at rest", Figure(program, "resident_bytes"),
              "our limit", Fixed(100e6), "bytes")


def per_row(name):
    for count in (1000, 10000):
        yield Row(f"`{name}`, a row of {count:,}", Figure(f"{name}/{count}", "per_row"),
                  "a row of 100", Figure(f"{name}/100", "per_row"))


SUBJECTS = (
    Subject("Attempts on a port", (
        "How many callers a second are logged, looked up, pinged and treated, when eight threads call",
        "one port as fast as they can. Beside it a bare loop of C that accepts, looks the name up,",
        "sends one echo, writes a line and closes, and one without name and echo: this is what a scan",
        "or a flood can cost the owner at least.",
    ), (*attempts("refused"), *attempts("answered"))),
    Subject("Memory of many attempts", (
        "What 100,000 answered attempts leave in memory. The log is kept on the screen until it is",
        "cleared, so its text is the limit; the list of callers is the rest.",
    ), (Row("grown", Figure("memory, answered", "grown"), "text of the log",
            Figure("memory, answered", "text"), "bytes"),)),
    Subject("Mails to the owner", (
        "200 callers at once, each of whom is told of by a mail that the server takes 0.1 s for. The",
        "program stands still while it sends, so this time is the limit. Fails if a caller, a line or a",
        "mail is lost. With two thousand callers and a second for each mail `bench/mail_flood.py` takes",
        "more than half an hour, and has no place on this page.",
    ), (Row("one caller and mail", Figure("mail flood", "seconds_each"), "the mail alone",
            Figure("mail flood", "mail_seconds")),
        Row("most memory", Figure("mail flood", "most_bytes"), "memory before",
            Figure("mail flood", "before_bytes"), "bytes"))),
    Subject("The status log", (
        "One line with a long log must cost what it costs with an empty one. Each line lets the loop of",
        "events run once; that pass must not depend on how many ports listen.",
    ), (Row("a line behind 1,000,000", Figure("StatusLine/lines_before:1000000"),
            "a line behind none", Figure("StatusLine/lines_before:0")),
        Row("a pass with 12 listeners", Figure("IdlePass/12"), "a pass with none",
            Figure("IdlePass/0")))),
    Subject("Start and rest", (
        "From the start of the process until the twelve ports of the presets listen, and what the",
        "program costs while nobody calls, for which we have set ourselves limits.",
    ), (*starts("tallowin-console"), *starts("tallowin"))),
    Subject("The watch of the autostart places", (
        "One tick, three times a second, with 200 entries and nothing changed, beside the least that",
        "polling can cost; and the full look behind a change.",
    ), (Row("a tick", Figure("TickThatPolls"), "one `stat` of each folder",
            Figure("StatOfEachFolder")),
        Row("a full look", Figure("FullLook"), "the 300 ms between two ticks", Fixed(0.3)))),
    Subject("Looking at files", (
        "The rating of a file by its words, the checksum, the report of a whole file, and the hunt for",
        "the program behind a change over 300 processes more than the machine has.",
    ), (Row("rating of 256 MB", Figure("GetFileSuspicion", "bytes_per_second"),
            "`grep` for the same words", Figure("Grep", "bytes_per_second"), "rate of bytes"),
        Row("rating of 256 MB", Figure("GetFileSuspicion", "bytes_per_second"), "a copy in memory",
            Figure("CopyInMemory", "bytes_per_second"), "rate of bytes"),
        *(Row(f"checksum of {text}", Figure(f"Ours/{size}", "bytes_per_second"), "zlib",
              Figure(f"Zlib/{size}", "bytes_per_second"), "rate of bytes")
          for text, size in (("1 kB", 1 << 10), ("1 MB", 1 << 20), ("256 MB", 1 << 28))),
        Row("report of 500 MB", Figure("report"), "`cksum`", Figure("cksum")),
        Row("first report of 500 MB", Figure("first report"), "`cksum`", Figure("cksum")),
        Row("a hunt", Figure("Hunt"), "reading each program file once",
            Figure("ReadEachProgramOnce")))),
    Subject("Lists and tables", (
        "The process list with 500 processes more than the machine has, and tables as text: a row must",
        "cost the same however many there are.",
    ), (Row("process list", Figure("GetProcessesIntoLV"), "`ps -e`", Figure("Ps")),
        *per_row("AlignColumns"), *per_row("LVFromString"))),
)
