#!/usr/bin/env python3
"""One run over 2,000 operands: every one is converted, memory stays flat, time is linear.

Operands 10, 100, 1,000 and 2,000 are pipes. The program waits at each until this script writes a
form into it, and meanwhile its peak memory and the processor time that it used by itself (without
the commands that it started) can be read.

What 2,000 operands may need more than 10 is a quarter of a megabyte, 128 bytes an operand: nothing
of a screen outlives it. The second thousand may take twice the first one's time, and a little for
the clock's grain.

usage: many_operands.py GROLOF EXAMPLES
"""

import os
import subprocess
import sys
import tempfile

STOPS = (10, 100, 1000, 2000)
ROOM = 256  # kilobytes
GRAIN = 0.1  # seconds


def peak_memory(process):
    """Kilobytes. The system's account of an ended process would not do: it begins with the memory
    of the process that started it."""
    with open(f"/proc/{process.pid}/status", encoding="ascii") as status:
        return next(int(line.split()[1]) for line in status if line.startswith("VmHWM:"))


def own_time(process):
    """Seconds in the program and in the system on its behalf."""
    with open(f"/proc/{process.pid}/stat", encoding="ascii") as stat:
        fields = stat.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def lay_out(top, sources):
    """Stand-in commands, and the operands with a pipe at every stop; returns the operands."""
    os.makedirs(os.path.join(top, "bin"))
    for command in ("scrlib", "touch"):
        os.symlink("/bin/true", os.path.join(top, "bin", command))
    operands = (sources * STOPS[-1])[:STOPS[-1]]
    for stop in STOPS:
        operands[stop - 1] = os.path.join(top, f"pipe{stop}")
        os.mkfifo(operands[stop - 1])
    return operands


def measure(process, top, form):
    """Peak memory and processor time at every stop."""
    measured = []
    for stop in STOPS:
        with open(os.path.join(top, f"pipe{stop}"), "wb") as pipe:  # waits for the program
            measured.append((peak_memory(process), own_time(process)))
            pipe.write(form)
    return measured


def main(grolof, examples):
    sources = sorted(os.path.join(examples, name) for name in os.listdir(examples)
                     if name.endswith(".fldp"))
    with open(sources[0], "rb") as file:
        form = file.read()
    with tempfile.TemporaryDirectory() as top, tempfile.TemporaryFile() as output:
        operands = lay_out(top, sources)
        environment = {"ZORROOT": top, "LC_ALL": "C", "PATH": os.path.join(top, "bin")}
        with subprocess.Popen([grolof, "-w", "copy", *operands], env=environment, cwd=top,
                              stdout=output) as process:
            measured = measure(process, top, form)
        output.seek(0)
        written = output.read().count(b"   Wrote MCS format: ")
    for stop, (peak, seconds) in zip(STOPS, measured):
        print(f"{stop:5} operands: peak {peak} kB, own time {seconds:.2f} s")
    (first, _), (_, _), (_, half), (last, whole) = measured
    assert process.returncode == 0, process.returncode
    assert written == STOPS[-1], f"{written} formats of {STOPS[-1]} operands"
    assert last <= first + ROOM, "memory grows"
    assert whole - half <= 2 * half + GRAIN, "time is not linear"
    return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])))
