#!/usr/bin/env python3
"""Holds the COPY books against a COBOL compiler, GnuCOBOL's cobc.

  cobol_test.py GROLOF form NAME        the book of examples/NAME.fldp: compiled, run
  cobol_test.py GROLOF init NAME        its initialisation book: compiled, run, or refused
  cobol_test.py GROLOF maps NAME        the book of examples/NAME.bms: compiled, run
  cobol_test.py GROLOF construct NAME   constructs/NAME.fldp or .bms: refused or accepted as it says
  cobol_test.py GROLOF page cobol.md    the page in docs/ lists the constructs (needs no cobc)

Exit status: 0 passed, 1 failed, 77 no cobc on this machine.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from dataclasses import dataclass
from pathlib import Path

from forms import FORMS, MAP_SETS, Field, Image, Repeat
from program import Program, sample

HERE = Path(__file__).resolve().parent
PROJECT = HERE.parent.parent
TIME_LIMIT = 120  # seconds for one command
SKIPPED = 77
ENTRY = 20        # bytes of an entry in the field control area
WORD = 4

# The record's header: name (without prefix), bytes, whether the initialisation book sets it.
HEADER = [
    ("", 8, False), ("FILLER", 8, False), ("NUMBER", 4, True), ("NAME", 8, True),
    ("CHECK-NUMBER", 4, False), ("FCA-LENGTH", 2, True), ("FCA-COUNT", 2, True), ("", 4, False),
    ("NUMBER-ROWS", 2, True), ("NUMBER-COLS", 2, True), ("", 6, False),
    ("QUERY-STATUS", 2, False), ("WSDATA-LENGTH", 2, True), ("SOE-YCO", 2, True),
    ("SOE-XCO", 2, True), ("FUNCTIONKEY", 2, True), ("OUT-YCO", 2, True), ("OUT-XCO", 2, True),
    ("OUT-FID", 2, True), ("IN-YCO", 2, True), ("IN-XCO", 2, True), ("IN-FID", 2, True),
    ("VALID", 1, True), ("DYNAMIC", 1, True), ("BACKGROUND", 1, True), ("FOREGROUND", 1, True),
    ("INTENSITY", 1, True), ("HIGHLIGHT", 1, True), ("FONT", 1, True), ("EMPHASIS", 1, True),
    ("CNUM-VALIDATE", 1, True), ("", 3, False), ("SCREENFILE", 12, False),
]
HEADER_SIZE = sum(size for _, size, _ in HEADER)


class Failure(Exception):
    pass


class Workshop:
    """A directory of its own for one test, with converter and compiler."""

    def __init__(self, grolof, directory):
        self.grolof = grolof
        self.directory = Path(directory)
        self.books = self.directory / "books"
        self.books.mkdir()
        tools = self.directory / "bin"
        tools.mkdir()
        (tools / "scrlib").write_text("#!/bin/sh\nexit 0\n")
        (tools / "scrlib").chmod(0o755)
        self.environment = dict(
            os.environ, LC_ALL="C", TMPDIR=str(directory), ZORROOT=str(self.directory / "inst"),
            PATH=f"{tools}:{os.environ.get('PATH', '/usr/bin:/bin')}")

    def run(self, *command):
        return subprocess.run(
            [str(word) for word in command], cwd=self.directory, env=self.environment,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            encoding="latin-1", timeout=TIME_LIMIT)

    def convert(self, source, *options):
        """Converts; gives the names of the books written, the data book first."""
        done = self.run(self.grolof, *options, "-w", self.books, source)
        if done.returncode != 0:
            raise Failure(f"{source.name} is not converted:\n{done.stdout}")
        names = sorted(path.name for path in self.books.iterdir())
        if not names:
            raise Failure(f"{source.name} gives no book:\n{done.stdout}")
        return names

    def compile(self, program, dialect, run=False):
        """Compiles, or only checks; gives the compiler's status and words."""
        source = self.directory / "booktest.cob"
        source.write_text(program, encoding="latin-1")
        how = ("-x", "-o", self.directory / "booktest") if run else ("-fsyntax-only",)
        done = self.run("cobc", f"-std={dialect}", "-I", self.books, *how, source)
        return done.returncode, done.stdout

    def must_compile(self, program, dialect, run=False):
        status, words = self.compile(program, dialect, run)
        if status != 0:
            raise Failure(f"refused with -std={dialect}:\n{words}")

    def run_checks(self, program, dialect):
        """Compiles and runs; every check must have been made, and none have failed."""
        self.must_compile(program.text(), dialect, run=True)
        done = self.run(self.directory / "booktest")
        if done.returncode != 0 or f"CHECKS {program.count:06} 000000" not in done.stdout:
            lines = done.stdout.splitlines()
            raise Failure("\n".join([f"{program.count} checks wanted:", *lines[-1:], *lines[:20]]))
        print(f"-std={dialect}: {program.count} checks")


def bare_program(names, storage=(), statements=()):
    """A program that has the books, the data book first, and does next to nothing."""
    return "\n".join([
        "       IDENTIFICATION DIVISION.",
        "       PROGRAM-ID. BOOKTEST.",
        "       DATA DIVISION.",
        "       WORKING-STORAGE SECTION.",
        *storage,
        f'           COPY "{names[0]}".',
        "       PROCEDURE DIVISION.",
        *(f'           COPY "{name}".' for name in names[1:]),
        *(f"           {statement}" for statement in statements),
        "           STOP RUN.",
        "",
    ])


# --- DPS forms ----------------------------------------------------------------------------------

@dataclass
class Place:
    """One field or image as it stands in the record, once for every repetition."""
    item: object
    entry: int     # its number in the field control area, from 1
    row: int
    column: int
    data: int      # its offset in the data area
    indices: list  # index names and values, outermost first
    group: str     # storage group of the outermost repeat image, "" outside
    group_entry: int  # entry and data offset at which that group begins
    group_data: int


class Layout:
    """The record of a form, laid out from the form's description alone."""

    def __init__(self, form):
        self.form = form
        self.places = []
        self.entries = 0
        self.data = 0
        self.groups = []  # (number, entries, data bytes, repetitions)
        self.repeats = 0
        self._walk(form.body, (0, 0), [], None)

    def _walk(self, items, shift, indices, group):
        for item in items:
            if isinstance(item, Repeat):
                self._repeat(item, shift, indices, group)
                continue
            self.entries += 1
            number, entry, data = group or ("", 0, 0)
            self.places.append(Place(item, self.entries, item.row + shift[0],
                                     item.column + shift[1], self.data, indices, number, entry,
                                     data))
            if isinstance(item, Image):
                self._walk(item.children, shift, indices, group)
            else:
                self.data += -(-item.size // WORD) * WORD

    def _repeat(self, repeat, shift, indices, group):
        entries, data = self.entries, self.data
        if not group:
            self.repeats += 1
            number = self.repeats
        for i in range(repeat.count):
            moved = (shift[0] + i * repeat.step[0], shift[1] + i * repeat.step[1])
            self._walk(repeat.children, moved, [*indices, (repeat.index, i + 1)],
                       group or (str(number), entries, data))
        if not group:
            self.groups.append((number, self.entries - entries, self.data - data, repeat.count))
            self.repeats += nested_repeats(repeat)


def nested_repeats(repeat):
    """Repeat images inside take numbers too."""
    return sum(1 + nested_repeats(child) for child in repeat.children if isinstance(child, Repeat))


class FormBook:
    """The names that a form's book gives to things."""

    def __init__(self, form):
        self.form = form
        self.record = f"SCREEN-{form.name}-{form.number}"
        self.header = f"S{form.number}-"

    def fca(self, offset, size):
        return f"{self.record}-FCA({offset + 1}:{size})"

    def data(self, offset, size):
        return f"{self.record}-DATA({offset + 1}:{size})"

    def fca_storage(self, number):
        return f"{self.form.prefix}REPEAT-{number}-FCA-ST"

    def data_storage(self, number):
        return f"{self.header}REPEAT-{number}-DATA-ST"

    def named(self, place, suffix, block):
        """The item by its own name, with the index names of its repeat images."""
        indices = ", ".join(f"{self.form.prefix}{name}-{block}" for name, _ in place.indices)
        return f"{self.form.prefix}{place.item.name}{suffix}" + (f"({indices})" if indices else "")

    def set_indices(self, program, place, block):
        for name, value in place.indices:
            program.say(f"SET {self.form.prefix}{name}-{block} TO {value}")


def check_header(program, book, layout):
    form, name = book.form, book.header
    program.is_number("NUMBER", name + "NUMBER", form.number)
    program.is_text("NAME", name + "NAME", f"DPS{form.number:05}")
    program.is_number("NUMBER-ROWS", name + "NUMBER-ROWS", form.rows)
    program.is_number("NUMBER-COLS", name + "NUMBER-COLS", form.columns)
    program.is_number("FCA-COUNT", name + "FCA-COUNT", layout.entries)
    program.is_number("FCA-LENGTH", name + "FCA-LENGTH", layout.entries * ENTRY // WORD)
    program.is_number("WSDATA-LENGTH", name + "WSDATA-LENGTH", layout.data // WORD)
    for suffix, value in zip(("YCO", "XCO", "FID"), form.cursor):
        program.is_number(f"OUT-{suffix}", f"{name}OUT-{suffix}", value)
    program.is_text("the mark", name + "FILLER", "$DPS$SWS")
    program.is_text("SCREENFILE", name + "SCREENFILE", "SCREEN$FILE ")
    program.is_true("CHECK-NUMBER is a time of day", f"{name}CHECK-NUMBER < 86400")


def check_lengths(program, book, layout):
    record, header = book.record, book.header
    total = HEADER_SIZE + layout.entries * ENTRY + layout.data
    program.is_number("header", f"FUNCTION LENGTH({record}-HEADER)", HEADER_SIZE)
    program.is_number("record", f"FUNCTION LENGTH({record})", total)
    if layout.entries == 0:
        return
    for group in ("-FCA", "-FCA-END"):
        length = f"FUNCTION LENGTH({record}{group})"
        program.is_number(group, length, layout.entries * ENTRY)
        program.is_number(f"{group} by FCA-COUNT", f"{length} - {header}FCA-COUNT * {ENTRY}", 0)
    length = f"FUNCTION LENGTH({record}-DATA)"
    program.is_number("-DATA", length, layout.data)
    program.is_number("-DATA by WSDATA-LENGTH", f"{length} - {header}WSDATA-LENGTH * {WORD}", 0)


def check_groups(program, book, layout):
    """The group that names a repetition lies exactly over the storage of all repetitions."""
    for number, entries, data, count in layout.groups:
        for what, storage, size in (
                ("FCA", book.fca_storage(number), entries * ENTRY),
                ("DATA", book.data_storage(number), data)):
            overlay = storage.removesuffix("-ST")
            program.is_number(storage, f"FUNCTION LENGTH({storage})", size)
            program.is_number(f"{overlay}-END", f"FUNCTION LENGTH({overlay}-END)", size)
            program.is_number(f"{overlay} of {what}", f"FUNCTION LENGTH({overlay}(1))",
                              size // count)


def check_entry(program, book, place):
    """An entry's place, position and length; by its name too, where it has one."""
    item, at = place.item, (place.entry - 1) * ENTRY
    size = item.width if isinstance(item, Image) else item.size
    values = {"-YCO": place.row, "-XCO": place.column, "-CHAR": size, "-FID": place.entry}
    for i, (suffix, value) in enumerate(values.items()):
        program.is_half_word(f"entry {place.entry} {suffix}", book.fca(at + 4 + 2 * i, 2), value)
    if not item.has_entry_name:
        return
    book.set_indices(program, place, "FCA")
    for suffix, value in values.items():
        if place.indices and suffix != "-FID":
            continue  # the overlay is exact, so one item shows where all are
        name = book.named(place, suffix, "FCA")
        program.is_number(f"{name} {place.entry}", name, value)
    # A status moved by name is found in the block, and in the storage group.
    program.say(f"MOVE {1000 + place.entry} TO {book.named(place, '-STAT', 'FCA')}")
    program.is_half_word(f"status {place.entry}", book.fca(at, 2), 1000 + place.entry)
    if place.group:
        inside = at - place.group_entry * ENTRY
        program.is_half_word(f"status {place.entry} stored",
                             f"{book.fca_storage(place.group)}({inside + 1}:2)",
                             1000 + place.entry)


def check_data(program, book, place):
    item = place.item
    name = book.named(place, "", "DATA")
    what = f"{item.name} {[value for _, value in place.indices]}"
    moved, held = sample(item, place.entry)
    book.set_indices(program, place, "DATA")
    program.is_text(f"{what} first", book.data(place.data, item.size), item.first_value)
    program.say(f"MOVE {moved} TO {name}")
    program.is_text(f"{what} moved", book.data(place.data, item.size), held)
    if place.group:
        inside = place.data - place.group_data
        storage = f"{book.data_storage(place.group)}({inside + 1}:{item.size})"
        program.is_text(f"{what} stored", storage, held)


def check_data_again(program, book, place):
    """When every field has been moved to, each still holds its own value."""
    _, held = sample(place.item, place.entry)
    program.is_text(f"{place.item.name} at the end", book.data(place.data, place.item.size), held)


def fields_of(layout):
    return [place for place in layout.places if isinstance(place.item, Field)]


def known(table, name):
    if name not in table:
        raise Failure(f"forms.py does not say what the book of {name} holds")
    return table[name]


def test_form(workshop, name):
    form = known(FORMS, name)
    book, layout = FormBook(form), Layout(form)
    names = workshop.convert(PROJECT / "examples" / f"{name}.fldp")
    if names != [book.record]:
        raise Failure(f"books: {names}")
    program = Program()
    program.storage = [f'           COPY "{book.record}".']
    check_header(program, book, layout)
    check_lengths(program, book, layout)
    check_groups(program, book, layout)
    for place in layout.places:
        check_entry(program, book, place)
    for place in fields_of(layout):
        check_data(program, book, place)
    for place in fields_of(layout):
        check_data_again(program, book, place)
    for dialect in ("mf", "ibm"):
        workshop.must_compile(bare_program([book.record]), dialect)
    workshop.run_checks(program, "default")


# --- initialisation books -------------------------------------------------------------------------

def initialised_ranges(layout):
    """Offset and size of every item that the initialisation book sets, by name."""
    at = 0
    for name, size, is_set in HEADER:
        if is_set:
            yield name, at, size
        at += size
    for place in layout.places:
        if place.item.has_entry_name and not place.group:
            yield f"entry {place.entry}", HEADER_SIZE + (place.entry - 1) * ENTRY, ENTRY
    for place in fields_of(layout):
        if not place.group:
            at = HEADER_SIZE + layout.entries * ENTRY + place.data
            yield place.item.name, at, place.item.size


def test_init(workshop, name):
    """What the initialisation book sets is overwritten; when it has run, the record is again as
    its VALUE clauses made it."""
    form = known(FORMS, name)
    book, layout = FormBook(form), Layout(form)
    names = workshop.convert(PROJECT / "examples" / f"{name}.fldp", "-r")
    if names != [book.record, f"{book.record}-INIT"]:
        raise Failure(f"books: {names}")
    size = HEADER_SIZE + layout.entries * ENTRY + layout.data
    program = Program()
    program.storage = [
        "       01  WHOLE-RECORD.",
        f'           COPY "{book.record}".',
        f"       01  FIRST-RECORD PIC X({size}).",
    ]
    program.init = [f'           COPY "{book.record}-INIT".']
    program.is_number("record", "FUNCTION LENGTH(WHOLE-RECORD)", size)
    program.say("MOVE WHOLE-RECORD TO FIRST-RECORD")
    ranges = list(initialised_ranges(layout))
    for _, at, length in ranges:
        program.say(f"MOVE ALL 'z' TO WHOLE-RECORD({at + 1}:{length})")
    program.say("PERFORM INIT-RECORD")
    for what, at, length in ranges:
        part = f"({at + 1}:{length})"
        program.is_true(f"{what} set again", f"WHOLE-RECORD{part} = FIRST-RECORD{part}")
    program.is_true("nothing else changed", "WHOLE-RECORD = FIRST-RECORD")
    if form.prefixed or layout.entries == 0:
        workshop.run_checks(program, "default")
    else:
        must_refuse_unprefixed(workshop, program, book, layout)


def must_refuse_unprefixed(workshop, program, book, layout):
    """Without the prefix in the data book, the procedure's names stand for nothing."""
    status, words = workshop.compile(program.text(), "default")
    name = f"{book.header}{layout.places[0].item.name}-STAT"
    if status == 0 or f"'{name}' is not defined" not in words:
        raise Failure(f"should be refused for {name}, which is not defined:\n{words}")
    print(f"refused as it should be: {name} is not defined")


# --- BMS maps -------------------------------------------------------------------------------------

MAP_START = 12   # bytes before the first field
FIELD_START = 5  # bytes of a field before its data


def check_map(program, the_map, is_first):
    area_in, area_out = the_map.name + "I", the_map.name + "O"
    at = MAP_START
    for number, item in enumerate(the_map.fields, 1):
        def part(area, offset, size):
            return f"{area}({at + offset + 1}:{size})"

        def name(suffix, area):
            return f"{item.name}{suffix} OF {area}"

        what = f"{the_map.name} {item.name}"
        if is_first:  # only the first map's area has VALUE clauses that count
            program.is_number(f"{what} length", name("L", area_in), item.size)
            first = item.initial.ljust(item.size) if item.initial else (
                ("0" if item.is_numeric else " ") * item.size)
            program.is_text(f"{what} first", name("I", area_in), first)
        moved, held = (item.sent, item.seen) if item.sent else sample(item, number)
        program.say(f"MOVE {moved} TO {name('O', area_out)}")
        program.is_text(f"{what} read", part(area_in, FIELD_START, item.size), held)
        program.is_text(f"{what} item read", f"{item.name}I OF {area_in}(1:{item.size})", held)
        moved, held = sample(item, number + 5)
        program.say(f"MOVE {moved} TO {name('I', area_in)}")
        program.is_text(f"{what} back", part(area_out, FIELD_START, item.size), held)
        # Attribute and flag are one byte; colour and highlighting lie over the two behind it.
        program.say(f"MOVE 'a' TO {name('A', area_in)}")
        program.is_text(f"{what} flag", name("F", area_in), "a")
        program.is_text(f"{what} flag in output", part(area_out, 2, 1), "a")
        program.say(f"MOVE 'c' TO {name('C', area_out)} MOVE 'h' TO {name('H', area_out)}")
        program.is_text(f"{what} colours", part(area_in, 2, 3), "ach")
        program.say(f"MOVE {number} TO {name('L', area_in)}")
        program.is_half_word(f"{what} length in output", part(area_out, 0, 2), number)
        at += FIELD_START + item.size
    for area in (area_in, area_out):
        program.is_number(area, f"FUNCTION LENGTH({area})", at)


def test_maps(workshop, name):
    maps = known(MAP_SETS, name)
    names = workshop.convert(PROJECT / "examples" / f"{name}.bms")
    if names != [maps.name]:
        raise Failure(f"books: {names}")
    program = Program()
    program.storage = [f'           COPY "{maps.name}".']
    for number, the_map in enumerate(maps.maps):
        check_map(program, the_map, number == 0)
    for number, (one, other) in enumerate(zip(maps.maps, maps.maps[1:])):
        program.say(f"MOVE {number} TO {other.name}I(1:1)")
        program.is_text(f"{other.name} over {one.name}", f"{one.name}O(1:1)", str(number))
    if len(maps.maps) == 1:
        workshop.must_compile(program.text(), "default")
    for dialect in ("mf", "ibm"):
        workshop.run_checks(program, dialect)


# --- constructs -----------------------------------------------------------------------------------

class Construct:
    """A source and, in its comments, what the compiler does with its book:

        refused: DIALECT...     these refuse
        accepted: DIALECT...    these accept
        at: TEXT                a line that is refused contains this
        options: OPTION...      for the converter
        statement: TEXT         also in the program, e.g. a DISPLAY
        prints: TEXT            what the accepted program prints
        without: 01             the program supplies no level 01 before the book
    """

    def __init__(self, path):
        self.path = path
        self.said = {}
        for key, value in re.findall(r"^[@*]\s+([a-z]+): (.*\S)", path.read_text("latin-1"), re.M):
            self.said.setdefault(key, []).append(value)

    def words(self, key):
        return " ".join(self.said.get(key, [])).split()


def construct_program(construct, names):
    supplies_01 = "-r" in construct.words("options") and "without" not in construct.said
    return bare_program(names, ["       01  WHOLE-RECORD."] if supplies_01 else [],
                        construct.said.get("statement", []))


def refused_lines(workshop, words):
    """The text of the lines that the compiler's errors name."""
    for name, number in re.findall(r"^(.*?):(\d+): error:", words, re.M):
        lines = (workshop.directory / name).read_text("latin-1").splitlines()
        yield lines[int(number) - 1]


def test_construct(workshop, name):
    paths = [path for path in (HERE / "constructs").glob(name + ".*")]
    if len(paths) != 1:
        raise Failure(f"{len(paths)} constructs have this name")
    construct = Construct(paths[0])
    refused, accepted = construct.words("refused"), construct.words("accepted")
    if not refused and not accepted:
        raise Failure("it does not say who refuses or accepts it")
    names = workshop.convert(paths[0], *construct.words("options"))
    program = construct_program(construct, names)
    for dialect in refused:
        must_refuse(workshop, construct, program, dialect)
    for dialect in accepted:
        prints = "prints" in construct.said
        workshop.must_compile(program, dialect, run=prints)
        if prints:
            must_print(workshop, "\n".join(construct.said["prints"]) + "\n")
    print(f"refused: {refused}, accepted: {accepted}")


def must_refuse(workshop, construct, program, dialect):
    status, words = workshop.compile(program, dialect)
    if status == 0:
        raise Failure(f"accepted with -std={dialect}:\n{words}")
    lines = list(refused_lines(workshop, words))
    wanted = construct.said.get("at", [])
    if not wanted:
        raise Failure("it does not say which line is refused")
    for text in wanted:
        if not any(text in line for line in lines):
            raise Failure(f"-std={dialect} does not refuse the line with {text!r}:\n{words}")


def must_print(workshop, wanted):
    done = workshop.run(workshop.directory / "booktest")
    if done.returncode != 0 or done.stdout != wanted:
        raise Failure(f"it prints {done.stdout!r}, not {wanted!r}")


def test_page(_, name):
    """The page names every construct, and none that is not there."""
    page = (PROJECT / "docs" / name).read_text("utf-8")
    listed = set(re.findall(r"`([a-z0-9]+(?:-[a-z0-9]+)+)`", page)) - {"ibm-strict"}
    there = {path.stem for path in (HERE / "constructs").iterdir()}
    if listed != there:
        raise Failure(f"only in the page: {sorted(listed - there)}, "
                      f"only in constructs: {sorted(there - listed)}")


TESTS = {"form": test_form, "init": test_init, "maps": test_maps, "construct": test_construct,
         "page": test_page}


def main():
    if len(sys.argv) != 4 or sys.argv[2] not in TESTS:
        sys.exit(__doc__)
    _, grolof, kind, name = sys.argv
    if kind != "page" and not shutil.which("cobc"):
        print(f"skipped {kind} {name}: no cobc on this machine (Debian: gnucobol3)")
        return SKIPPED
    with tempfile.TemporaryDirectory(prefix="grolof-cobol-") as directory:
        try:
            TESTS[kind](Workshop(Path(grolof).resolve(), os.path.realpath(directory)), name)
        except Failure as failure:
            print(f"FAILED {kind} {name}: {failure}")
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
