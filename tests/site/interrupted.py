#!/usr/bin/env python3
"""System calls that are interrupted.

Sources and a COPY book are pipes that are fed and read slowly, so that the program waits in open,
read and write, and the library command takes its time. Meanwhile

- a build of the program's own code with a timer whose handler does not have calls restarted is
  interrupted in them over and over;
- the program itself is stopped, continued, and sent the signals that it ignores or survives.

Either way it has to write and to tell what it does when left alone.

usage: interrupted.py GROLOF GROLOF_WITH_TIMER
"""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

MOMENT = re.compile(rb"(GENERATED.* on |CHECK-NUMBER.* VALUE )[^\n]*")
STORM = (signal.SIGSTOP, signal.SIGCONT, signal.SIGPIPE, signal.SIGCHLD, signal.SIGWINCH,
         signal.SIGURG)
FORMS = 3
OF_BOOK = 1
BOOK = f"books/SCREEN-FORM{OF_BOOK}-{OF_BOOK}"  # a pipe
LEAST = 100  # interruptions
PIECES = 40


def form(number):
    """A form of 960 fields: its COPY book does not fit a pipe at once."""
    fields = "".join(
        f"FIELD\nNAME = 'F{row}-{column}'\nPOSITION_IMAGE ROW = {row} COLUMN = {column}\n"
        "DIMENSION WIDTH = 1\nEND_FIELD\n"
        for row in range(1, 25) for column in range(1, 80, 2))
    return f"FORM\nNAME = 'FORM{number}'\nNUMBER = {number}\n{fields}END_FORM\n".encode()


def lay_out(top, pipes):
    os.makedirs(os.path.join(top, "bin"))
    os.makedirs(os.path.join(top, "books"))
    with open(os.path.join(top, "bin", "scrlib"), "w", encoding="ascii") as script:
        script.write("#!/bin/sh\nexec sleep 0.1\n")
    os.chmod(os.path.join(top, "bin", "scrlib"), 0o755)
    for number in range(FORMS):
        path = os.path.join(top, f"form{number}")
        if pipes:
            os.mkfifo(path)
        else:
            with open(path, "wb") as file:
                file.write(form(number))
    if pipes:
        os.mkfifo(os.path.join(top, BOOK))


def feed(top, started, fed):
    """Writes the sources, piece by piece; tells of the first one's start and the book's end."""
    for number in range(FORMS):
        time.sleep(0.05)  # the program waits for the pipe to be opened
        text = form(number)
        with open(os.path.join(top, f"form{number}"), "wb", buffering=0) as pipe:
            started.set()
            for at in range(0, len(text), len(text) // PIECES):
                pipe.write(text[at:at + len(text) // PIECES])
                time.sleep(0.002)
        if number == OF_BOOK:
            fed.set()


def drain(top, books, fed):
    """Reads the COPY book, piece by piece, when the program has waited for that a while."""
    fed.wait()
    time.sleep(0.3)
    with open(os.path.join(top, BOOK), "rb", buffering=0) as pipe:
        while piece := pipe.read(2000):
            books.append(piece)
            time.sleep(0.002)


def pester(process, started):
    started.wait()
    while process.poll() is None:
        for which in STORM:
            process.send_signal(which)
            time.sleep(0.0005)


def outputs(top):
    found = {}
    for area in ("inst", "books"):
        for folder, _, names in os.walk(os.path.join(top, area)):
            for name in names:
                path = os.path.join(folder, name)
                if os.path.isfile(path):
                    with open(path, "rb") as file:
                        found[os.path.relpath(path, top)] = MOMENT.sub(rb"\1", file.read())
    return found


def run(top, program, pipes, storm=False):
    """Returns standard output, standard error and the outputs."""
    lay_out(top, pipes)
    environment = dict(os.environ, ZORROOT="inst", LC_ALL="C",
                       PATH=os.path.join(top, "bin") + ":/usr/bin:/bin")
    command = [program, "-w", "books", *(f"form{number}" for number in range(FORMS))]
    started, fed, book, helpers = threading.Event(), threading.Event(), [], []
    with open(os.path.join(top, "told"), "w+b") as told, \
            subprocess.Popen(command, cwd=top, env=environment, stdout=told,
                             stderr=subprocess.PIPE) as process:
        if pipes:
            helpers = [threading.Thread(target=feed, args=(top, started, fed), daemon=True),
                       threading.Thread(target=drain, args=(top, book, fed), daemon=True)]
        if storm:
            helpers.append(threading.Thread(target=pester, args=(process, started), daemon=True))
        for helper in helpers:
            helper.start()
        errors = process.communicate(timeout=300)[1]
        for helper in helpers:
            helper.join(timeout=10)
        told.seek(0)
        text = told.read()
    assert process.returncode == 0, (process.returncode, errors)
    found = outputs(top)
    if pipes:
        found[BOOK] = MOMENT.sub(rb"\1", b"".join(book))
    shutil.rmtree(top)
    return text, errors, found


def compare(expected, actual):
    assert actual[0] == expected[0], actual[0]
    for path in expected[2].keys() | actual[2].keys():
        assert actual[2].get(path) == expected[2].get(path), f"{path} differs"


def main(grolof, with_timer):
    with tempfile.TemporaryDirectory(prefix="grolof-") as top:
        top = os.path.join(top, "run")
        expected = run(top, grolof, pipes=False)
        assert len(expected[2][BOOK]) > 65536, "the COPY book fits a pipe"
        assert all(f"SCREEN-FORM{number}-".encode() in expected[0] for number in range(FORMS))
        timed = run(top, with_timer, pipes=True)
        compare(expected, timed)
        strikes = re.fullmatch(re.escape(expected[1]) + rb"(\d+) strikes\n", timed[1])
        assert strikes and int(strikes[1]) >= LEAST, timed[1]
        stormed = run(top, grolof, pipes=True, storm=True)
        compare(expected, stormed)
        assert stormed[1] == expected[1], stormed[1]
    print(f"{int(strikes[1])} interruptions, {len(expected[2])} outputs compared")
    return 0


if __name__ == "__main__":
    sys.exit(main(*map(os.path.abspath, sys.argv[1:])))
