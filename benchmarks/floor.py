#!/usr/bin/env python3
"""The converter as a whole program against a floor that only moves the same bytes.

One run over 1,000 operands (the example forms, again and again) is timed against the floor
program (floor.cpp), which reads and writes the same bytes and starts the same commands, in
pairs, each first in turn. Prints the median of both and of the ratio pair by pair: wall time, and
the program's own processor time without the commands that it starts.

usage: benchmarks/floor.py [BUILD DIRECTORY [PAIRS [OPERANDS]]]
"""

import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
WRITTEN = {"Wrote DPS COPY book: ": "book", "  Wrote screen file: ": "screen",
           "   Wrote MCS format: ": "format"}


def own_seconds(process):
    """Processor time of a finished process itself, from the scheduler's books."""
    os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
    with open(f"/proc/{process.pid}/schedstat", encoding="ascii") as books:
        return int(books.read().split()[0]) / 1e9


def timed(command, environment, top):
    """Wall time and own processor time of one run, in seconds."""
    started = time.perf_counter()
    process = subprocess.Popen(command, cwd=top, env=environment, stdout=subprocess.DEVNULL)
    own = own_seconds(process)
    wall = time.perf_counter() - started
    assert process.wait() == 0, command
    return wall, own


def manifest(top, operands, printed):
    """The actions of a run, from what it was given and what it printed."""
    lines, names = [], iter(operands)
    for line in printed.splitlines():
        head = next((text for text in WRITTEN if line.startswith(text)), None)
        if head is None:
            continue
        path = line[len(head):]
        if WRITTEN[head] == "book":
            lines.append(f"read {next(names)}")
        lines.append(f"write {os.path.getsize(os.path.join(top, path))} {path}")
        lines.append(f"print {line}")
        if WRITTEN[head] == "screen":
            lines.append(f"chmod {path}")
        if WRITTEN[head] == "format":
            lines += [f"chmod {path}", f"run scrlib IUQ '{path}'", f"chmod {path}",
                      f"run touch '{os.path.dirname(path)}'"]
    return "\n".join(lines) + "\n"


def lay_out(top):
    os.makedirs(os.path.join(top, "bin"))
    scrlib = os.path.join(top, "bin", "scrlib")
    os.symlink("/bin/true", scrlib)
    return {"ZORROOT": os.path.join(top, "inst"), "LC_ALL": "C",
            "PATH": os.path.join(top, "bin") + ":/usr/bin:/bin"}


def show(what, runs, unit=1000):
    converter, floor = ([pair[side] * unit for pair in runs] for side in (0, 1))
    ratio = statistics.median(a / b for a, b in runs)
    print(f"{what}: converter {statistics.median(converter):8.1f} ms, "
          f"floor {statistics.median(floor):8.1f} ms, ratio {ratio:.2f}")


def main(build=os.path.join(ROOT, "build", "release"), pairs="9", count="1000"):
    examples = os.path.join(ROOT, "examples")
    forms = sorted(os.path.join(examples, name) for name in os.listdir(examples)
                   if re.search(r"\.fldp$", name))
    operands = (forms * int(count))[:int(count)]
    with tempfile.TemporaryDirectory() as top:
        environment = lay_out(top)
        converter = [os.path.join(os.path.abspath(build), "grolof"), "-w", "copy", *operands]
        printed = subprocess.run(converter, cwd=top, env=environment, check=True,
                                 stdout=subprocess.PIPE).stdout.decode("latin-1")
        actions = os.path.join(top, "manifest")
        with open(actions, "w", encoding="latin-1") as file:
            file.write(manifest(top, operands, printed))
        floor = [os.path.join(os.path.abspath(build), "floor"), actions]
        wall, own = [], []
        for number in range(int(pairs)):
            order = (converter, floor) if number % 2 == 0 else (floor, converter)
            times = {id(command): timed(command, environment, top) for command in order}
            wall.append((times[id(converter)][0], times[id(floor)][0]))
            own.append((times[id(converter)][1], times[id(floor)][1]))
    print(f"{count} operands, {pairs} pairs")
    show("wall time", wall)
    show("own CPU  ", own)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
