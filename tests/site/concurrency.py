#!/usr/bin/env python3
"""Many processes at once in one installation.

Sixteen processes convert overlapping sets of sources into one fresh installation, round after
round. Every process must end well and say nothing on standard error, and at the end of a round
every output must be whole: the same as a single run over the same sources leaves behind, but for
the moment that a COPY book names.

usage: concurrency.py GROLOF EXAMPLES ROUNDS
"""

import os
import random
import re
import shutil
import subprocess
import sys
import tempfile

PROCESSES = 16
OPERANDS = 3
MOMENT = re.compile(rb"(GENERATED.* on |CHECK-NUMBER.* VALUE )[^\n]*")


def install(top):
    """Lays out a fresh installation and the stand-in commands; returns the environment."""
    os.makedirs(os.path.join(top, "inst"))
    os.makedirs(os.path.join(top, "bin"))
    for command in ("scrlib", "claimsrc"):
        path = os.path.join(top, "bin", command)
        with open(path, "w", encoding="ascii") as script:
            script.write("#!/bin/sh\nexit 0\n")
        os.chmod(path, 0o755)
    return {"ZORROOT": os.path.join(top, "inst"), "LC_ALL": "C",
            "PATH": os.path.join(top, "bin") + ":" + os.environ["PATH"]}


def commands(grolof, operands):
    """One command a dialect: a map set among the operands would switch the forms behind it."""
    forms = [name for name in operands if not name.endswith(".bms")]
    maps = [name for name in operands if name.endswith(".bms")]
    return [[grolof, "-r", "-w", "deep/in/the/copy", *names] for names in (forms, maps) if names]


def outputs(top):
    """Everything below the installation and the copy directory, moments masked."""
    found = {}
    for area in ("inst", "deep"):
        for folder, _, names in os.walk(os.path.join(top, area)):
            for name in names:
                path = os.path.join(folder, name)
                with open(path, "rb") as file:
                    found[os.path.relpath(path, top)] = MOMENT.sub(rb"\1", file.read())
    return found


def single_run(top, grolof, sources):
    environment = install(top)
    for command in commands(grolof, sources):
        subprocess.run(command, cwd=top, env=environment, check=True, stdout=subprocess.DEVNULL)
    return outputs(top)


def round_of_many(top, grolof, sources, dice):
    """Runs the processes of a round; returns what went wrong and what was converted."""
    environment = install(top)
    running, converted, wrong = [], set(), []
    for _ in range(PROCESSES):
        chosen = dice.sample(sources, OPERANDS)
        converted.update(chosen)
        for command in commands(grolof, chosen):
            running.append(subprocess.Popen(command, cwd=top, env=environment,
                                            stdout=subprocess.DEVNULL, stderr=subprocess.PIPE))
    for process in running:
        complaint = process.communicate()[1]
        if process.returncode != 0 or complaint:
            wrong.append(f"status {process.returncode}: {complaint.decode('latin-1')}")
    return wrong, converted


def main(grolof, examples, rounds):
    sources = sorted(os.path.join(examples, name) for name in os.listdir(examples)
                     if name.endswith((".fldp", ".bms")))
    assert len(sources) > OPERANDS, "not enough examples"
    dice = random.Random(1)
    with tempfile.TemporaryDirectory() as top:
        expected = single_run(os.path.join(top, "single"), grolof, sources)
        assert any(path.endswith(".t3z") for path in expected)
        for number in range(rounds):
            place = os.path.join(top, f"round{number}")
            wrong, converted = round_of_many(place, grolof, sources, dice)
            found = outputs(place)
            wrong += [f"{path} differs" for path, text in found.items()
                      if text != expected.get(path)]
            if len(converted) == len(sources):
                wrong += [f"{path} is missing" for path in expected.keys() - found.keys()]
            shutil.rmtree(place)
            if wrong:
                print(f"round {number}:", *wrong, sep="\n  ")
                return 1
    print(f"{rounds} rounds of {PROCESSES} processes, {len(expected)} outputs compared")
    return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2]), int(sys.argv[3])))
