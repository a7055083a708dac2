#!/usr/bin/env python3
"""A screen definition file that changes while it is read.

The program is stopped in the middle of a long file, the file is truncated, replaced, removed or
overwritten, and the program goes on. What it has read and still reads is converted, as if the file
had been so from the start; the screen file that it writes shows which fields it saw.

usage: changing.py GROLOF
"""

import glob
import os
import signal
import subprocess
import sys
import tempfile
import time

HEAD = b'<DpsForm\n    Name="SCREEN"\n    Number="7"\n    Height="24"\n    Width="80"\n    >\n'
TAIL = b"</DpsForm>\n"
PADDING = b"\n" * (8 << 20)  # empty lines say nothing, but take their time
ATTEMPTS = 50


def field(name, row):
    return (b'<DpsField\n    Name="%s"\n    Height="1"\n    Width="4"\n    Column="10"\n'
            b'    Row="%d"\n    >\n</DpsField>\n' % (name, row))


LAST = field(b"LAST-FIELD", 4) + TAIL
WHOLE = HEAD + field(b"FIRST-FIELD", 3) + PADDING + LAST
BOTH = {b"FIRST-FIELD", b"LAST-FIELD"}

# --- the changes -------------------------------------------------------------------------------


def truncate(path):
    os.truncate(path, 0)


def cut_last(path):
    """Cuts the file within the last field's start tag."""
    os.truncate(path, len(WHOLE) - len(LAST) + len(b"<DpsF"))


def replace(path):
    with open(path + ".new", "wb") as file:
        file.write(HEAD + field(b"OTHER-FIELD", 3) + TAIL)
    os.rename(path + ".new", path)


def overwrite(text):
    def change(path):
        with open(path, "r+b") as file:
            file.seek(len(WHOLE) - len(LAST))
            file.write(text)
    return change


def write_anew(path):
    """As an editor does that keeps the file: first empty, then shorter than before."""
    with open(path, "wb") as file:
        file.write(HEAD + field(b"OTHER-FIELD", 3) + TAIL)


CHANGES = [  # change, names of the fields that are seen
    (lambda path: None, BOTH),
    (truncate, {b"FIRST-FIELD"}),
    (cut_last, {b"FIRST-FIELD"}),
    (replace, BOTH),
    (os.unlink, BOTH),
    (write_anew, {b"FIRST-FIELD"}),
    (overwrite(field(b"NEWS-FIELD", 4) + TAIL), {b"FIRST-FIELD", b"NEWS-FIELD"}),
    (overwrite(bytes(range(256)) * 40), {b"FIRST-FIELD"}),
]

# --- a run -------------------------------------------------------------------------------------


def position(process, path):
    """How far the program has read the file; none while it is not open."""
    for descriptor in glob.glob(f"/proc/{process.pid}/fd/*"):
        try:
            if os.readlink(descriptor) == path:
                with open(descriptor.replace("/fd/", "/fdinfo/"), encoding="ascii") as info:
                    return int(info.readline().split()[1])
        except OSError:
            pass  # closed meanwhile
    return None


def stop_in_the_middle(process, path):
    """Stops the program between the blocks of the file. False when it was faster."""
    while process.poll() is None:
        process.send_signal(signal.SIGSTOP)
        while process.poll() is None and state(process) not in "TtZ":
            time.sleep(0.0002)
        if process.poll() is None and (position(process, path) or 0) > 0:
            return position(process, path) < len(WHOLE) - len(LAST) - (64 << 10)
        process.send_signal(signal.SIGCONT)
        time.sleep(0.001)
    return False


def state(process):
    with open(f"/proc/{process.pid}/stat", encoding="latin-1") as stat:
        return stat.read().rpartition(")")[2].split()[0]


def attempt(grolof, top, change):
    """Returns standard output, standard error and the written screen file; none when the program
    could not be stopped in time."""
    path = os.path.join(top, "screen.t3b")
    with open(path, "wb") as file:
        file.write(WHOLE)
    environment = dict(os.environ, ZORROOT="inst", LC_ALL="C",
                       PATH=os.path.join(top, "bin") + ":/usr/bin:/bin")
    with subprocess.Popen([grolof, "-w", "books", "-d", path], cwd=top, env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE) as process:
        stopped = stop_in_the_middle(process, path)
        if stopped:
            change(path)
        if process.poll() is None:
            process.send_signal(signal.SIGCONT)
        output, errors = process.communicate(timeout=60)
    assert process.returncode == 0, (process.returncode, errors)
    if not stopped:
        return None
    with open(os.path.join(top, "inst/zorfiles/sfg/zor$y$/SCREEN.t3b"), "rb") as file:
        return output, errors, file.read()


def main(grolof):
    with tempfile.TemporaryDirectory(prefix="grolof-") as top:
        top = os.path.realpath(top)
        os.makedirs(os.path.join(top, "bin"))
        os.symlink("/bin/true", os.path.join(top, "bin", "scrlib"))
        told = (f"Loaded SCREEN from file: {top}/screen.t3b\n"
                "Wrote DPS COPY book: books/SCREEN-SCREEN-7\n"
                "  Wrote screen file: inst/zorfiles/sfg/zor$y$/SCREEN.t3b\n"
                "   Wrote MCS format: inst/zorfiles/mcs/ZOR$Y$/SCREEN.t3z\n").encode()
        for change, fields in CHANGES:
            results = (attempt(grolof, top, change) for _ in range(ATTEMPTS))
            result = next((result for result in results if result is not None), None)
            assert result is not None, "never stopped in the middle"
            output, errors, written = result
            assert (output, errors) == (told, b""), (output, errors)
            seen = {line.split(b'"')[1] for line in written.splitlines() if b"-FIELD" in line}
            assert seen == fields, (seen, fields)
            assert written.endswith(b"\n" + TAIL), written[-200:]
    print(f"{len(CHANGES)} changes")
    return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
