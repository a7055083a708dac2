#!/usr/bin/env python3
"""Mutation run: does a test notice when a line of the converter is wrong?

Flips comparisons, conditions and constants in src/, one at a time, in a copy of the tree, and
runs the tests against each: first the unit tests of the room that was changed, then, for those
that survive, the whole-program cases, then the unit tests of the rooms that use it. Prints every
survivor with its line, to be read one by one. The sample is drawn by a seed, so a run can be
repeated.

usage: tests/mutation.py [--mutants N] [--seed S] [--jobs J] [--room ROOM] [--only FILE:LINE]
"""

import argparse
import concurrent.futures
import os
import random
import re
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
ROOMS = ("support", "model", "fldp", "bms", "screendef", "mcs", "copybook", "driver")

# What is changed into what. Operators stand between blanks in this tree, so templates, arrows and
# references are left alone.
SWAPS = [(r" == ", " != "), (r" != ", " == "), (r" < ", " <= "), (r" <= ", " < "),
         (r" > ", " >= "), (r" >= ", " > "), (r" && ", " || "), (r" \|\| ", " && "),
         (r" \+ ", " - "), (r" - ", " + "), (r" \+= ", " -= "), (r" -= ", " += "),
         (r" \* ", " + "), (r" % ", " * "), (r" & ", " | "), (r" \|= ", " &= "),
         (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"\(!", "("), (r" !(?=[a-zA-Z])", " "),
         (r"\bbreak;", ";"), (r"\bcontinue;", ";")]
NUMBER = re.compile(r"(?<![\w.'])(\d+)(?![\w.'])")
PASSED_OVER = re.compile(r"^\s*(//|#|static_assert|\}|\{|using |namespace |template)|^\s*$")


def code_of(line):
    """The line up to its comment; the insides of literals blanked out, so they stay as they are."""
    line = re.sub(r"\"(?:\\.|[^\"\\])*\"|'(?:\\.|[^'\\])'", lambda m: "\x01" * len(m.group()), line)
    return line.split("//")[0]


def mutants_of(path):
    """Every change that can be made in a file, as (line number, new line)."""
    found = []
    with open(os.path.join(ROOT, path), encoding="utf-8") as file:
        lines = file.read().split("\n")
    for number, line in enumerate(lines):
        code = code_of(line)
        if PASSED_OVER.search(code):
            continue
        for pattern, other in SWAPS:
            for match in re.finditer(pattern, code):
                found.append((number, line[:match.start()] + other + line[match.end():]))
        for match in NUMBER.finditer(code):
            value = str(int(match.group()) + 1)
            found.append((number, line[:match.start()] + value + line[match.end():]))
    return found


def run(command, where, seconds):
    """True when a command ends well in time."""
    try:
        return subprocess.run(command, cwd=where, stdin=subprocess.DEVNULL, timeout=seconds,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              check=False).returncode == 0
    except subprocess.TimeoutExpired:
        return False


class Worker:
    """A copy of the tree with a build of its own."""

    def __init__(self, top, number):
        self.tree = os.path.join(top, f"tree{number}")
        self.build = os.path.join(self.tree, "build", "mutation")
        shutil.copytree(ROOT, self.tree, ignore=shutil.ignore_patterns("build", ".git"))
        subprocess.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                        "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
                        "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1"],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["ninja", "-C", self.build], check=True, stdout=subprocess.DEVNULL)
        self.limits = {room: self.time_of(room) for room in ROOMS}
        if not self.tests("^cases"):
            sys.exit("the tests fail without any change")

    def time_of(self, room):
        """Seconds that a room's tests may take with a mutant: much more than without one."""
        started = time.monotonic()
        if not self.unit_tests(room, 3600):
            sys.exit(f"the tests of {room} fail without any change")
        return 30 + 5 * (time.monotonic() - started)

    def tests(self, pattern, jobs="1"):
        return run(["ctest", "-j", jobs, "--timeout", "30", "--stop-on-failure", "-R", pattern],
                   self.build, 600)

    def unit_tests(self, room, seconds):
        for folder, _, names in os.walk(os.path.join(self.build, "tests", room)):
            if f"test_{room}" in names:
                return run([os.path.join(folder, f"test_{room}"), "--gtest_brief=1",
                            "--gtest_fail_fast"], self.build, seconds)
        return True

    def passes_elsewhere(self, changed):
        """True when the unit tests of all other rooms pass."""
        rooms = [room for room in ROOMS if room != changed]
        return (run(["ninja", "-C", self.build] + [f"test_{room}" for room in rooms],
                    self.build, 900)
                and all(self.unit_tests(room, self.limits[room]) for room in rooms))

    def try_mutant(self, path, number, line):
        """What became of a mutant: "killed", "refused" by the compiler, or "survived"."""
        target = os.path.join(self.tree, path)
        with open(target, encoding="utf-8") as file:
            text = file.read()
        lines = text.split("\n")
        lines[number] = line
        try:
            with open(target, "w", encoding="utf-8") as file:
                file.write("\n".join(lines))
            room = path.split("/")[1]
            if not run(["ninja", "-C", self.build, f"test_{room}", "grolof", "t3zplay"],
                       self.build, 300):
                return "refused"
            passed = self.unit_tests(room, self.limits[room]) and self.tests("^cases")
            return "survived" if passed and self.passes_elsewhere(room) else "killed"
        finally:
            with open(target, "w", encoding="utf-8") as file:
                file.write(text)


def sample(options):
    chosen = []
    for room in ROOMS if options.room is None else [options.room]:
        folder = os.path.join("src", room)
        for name in sorted(os.listdir(os.path.join(ROOT, folder))):
            if name.endswith((".cpp", ".h")) and not name.endswith("main.cpp"):
                path = os.path.join(folder, name)
                chosen += [(path, number, line) for number, line in mutants_of(path)]
    if options.only:
        path, number = options.only.rsplit(":", 1)
        return [m for m in chosen if m[0] == path and m[1] == int(number) - 1]
    random.Random(options.seed).shuffle(chosen)
    return chosen[:options.mutants]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--mutants", type=int, default=300)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--room", choices=ROOMS)
    parser.add_argument("--only", metavar="FILE:LINE")
    options = parser.parse_args()
    mutants = sample(options)
    counts = {"killed": 0, "refused": 0, "survived": 0}
    with tempfile.TemporaryDirectory() as top:
        shares = [mutants[number::options.jobs] for number in range(options.jobs)]

        def work(number):
            worker = Worker(top, number)
            for path, at, line in shares[number]:
                result = worker.try_mutant(path, at, line)
                counts[result] += 1
                if result == "survived":
                    print(f"survived: {path}:{at + 1}: {line.strip()}", flush=True)

        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            list(pool.map(work, range(options.jobs)))
    tried = counts["killed"] + counts["survived"]
    print(f"{len(mutants)} mutants, seed {options.seed}: {counts['killed']} killed of {tried} "
          f"that compile ({100 * counts['killed'] / max(tried, 1):.1f} %), "
          f"{counts['survived']} survived, {counts['refused']} refused by the compiler")
    return 0


if __name__ == "__main__":
    sys.exit(main())
