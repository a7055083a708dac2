#!/usr/bin/env python3
"""Runs one whole-program case, a directory described in README.md, and shows what differs."""

import argparse
import difflib
import os
import pwd
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
from pathlib import Path

TIME_LIMIT = 60  # seconds for the command of a case
NOBODY = 65534
STAND_INS = Path(__file__).resolve().parent / "bin"
MONTHS = "JAN FEB MAR APR MAY JUN JUL AUG SEP OCT NOV DEC".split()


class Masks:
    """The parts of a text that differ from run to run, written @NAME@ in an expected file."""

    def __init__(self, sandbox, user, started, ended):
        moments = [time.gmtime(t) for t in range(int(started), int(ended) + 1)]
        self.allowed = {
            "@SANDBOX@": [str(sandbox)],
            "@USER@": [user],
            "@TIME@": [self.stamp(m, " at ") for m in moments],
            "@BMSTIME@": [self.stamp(m, "  ") for m in moments],
            "@SECONDS@": [str(m.tm_hour * 3600 + m.tm_min * 60 + m.tm_sec) for m in moments],
        }

    @staticmethod
    def stamp(moment, between):
        day = f"{moment.tm_mday:02} {MONTHS[moment.tm_mon - 1]} {moment.tm_year:04}"
        return f"{day}{between}{moment.tm_hour:02}:{moment.tm_min:02}:{moment.tm_sec:02}"

    def pattern(self, expected):
        """The bytes of an expected text as a regular expression."""
        text = expected.decode("latin-1")
        pieces = re.split("(" + "|".join(self.allowed) + ")", text)
        return "".join(
            "(?:" + "|".join(map(re.escape, self.allowed[piece])) + ")"
            if piece in self.allowed
            else re.escape(piece)
            for piece in pieces
        )

    def matches(self, expected, actual):
        return re.fullmatch(self.pattern(expected), actual.decode("latin-1"), re.DOTALL)


class Case:
    def __init__(self, directory, program):
        self.directory = directory
        self.program = program
        self.top = Path(os.path.realpath(tempfile.mkdtemp(prefix="grolof-")))
        self.sandbox = self.top / "sandbox"
        self.problems = []
        self.drops = (directory / "ordinary-user").exists() and os.geteuid() == 0

    def expected(self, name, default):
        path = self.directory / name
        return path.read_bytes() if path.exists() else default

    # --- before -------------------------------------------------------------------------------

    def prepare(self):
        self.top.chmod(0o755)
        self.sandbox.mkdir()
        if (self.directory / "in").is_dir():
            shutil.copytree(self.directory / "in", self.sandbox, dirs_exist_ok=True)
        programs = self.top / "bin"
        programs.mkdir()
        for source in (STAND_INS, self.directory / "bin"):
            for tool in source.iterdir() if source.is_dir() else ():
                shutil.copy(tool, programs / tool.name)
                (programs / tool.name).chmod(0o755)
        # An ordinary user may not reach the build directory, so gets copies.
        for name in ("grolof", "t3zplay"):
            program = self.program.with_name(name)
            if self.drops:
                shutil.copy(program, programs / name)
            else:
                (programs / name).symlink_to(program)
        (programs / "bmsgrolof").symlink_to("grolof")
        self.even_out_modes()

    def even_out_modes(self):
        """A checkout keeps the executable bit only; the rest depends on somebody's umask."""
        for path in [self.sandbox, *self.sandbox.rglob("*")]:
            executable = path.is_dir() or path.stat().st_mode & stat.S_IXUSR
            path.chmod(0o755 if executable else 0o644)
            if self.drops:
                os.chown(path, NOBODY, NOBODY)

    # --- the run ------------------------------------------------------------------------------

    def environment(self):
        kept = {k: v for k, v in os.environ.items() if k.endswith("SAN_OPTIONS")}
        return kept | {
            "PATH": f"{self.top}/bin:/usr/bin:/bin",
            "GROLOF": "grolof",
            "BMSGROLOF": "bmsgrolof",
            "T3ZPLAY": "t3zplay",
            "SANDBOX": str(self.sandbox),
            "HOME": str(self.top),
            "ZORROOT": "inst",
            "ZORPATH": "/bin",
            "SHELL": "/bin/starter",
            "LC_ALL": "C",
            "TZ": "UTC",
        }

    def run(self):
        stdin = self.directory / "stdin"
        identity = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if self.drops else {}
        with open(stdin if stdin.exists() else os.devnull, "rb") as source:
            process = subprocess.Popen(
                ["/bin/sh", "-c", (self.directory / "cmd").read_text()],
                cwd=self.sandbox, env=self.environment(), umask=0o022, start_new_session=True,
                stdin=source, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **identity)
            try:
                output, errors = process.communicate(timeout=TIME_LIMIT)
            except subprocess.TimeoutExpired:
                os.killpg(process.pid, signal.SIGKILL)
                output, errors = process.communicate()
                self.problems.append(f"still running after {TIME_LIMIT} seconds")
        return output, errors, process.returncode

    # --- after --------------------------------------------------------------------------------

    def compare(self, what, expected, actual):
        if self.masks.matches(expected, actual):
            return
        lines = [text.decode("utf-8", "backslashreplace").splitlines(keepends=True)
                 for text in (expected, actual)]
        self.problems.append(
            "".join(line if line.endswith("\n") else line + "\n\\ no line end\n"
                    for line in difflib.unified_diff(*lines, f"{what} (expected)", what)))

    def expected_tree(self):
        """The lines of `tree` by path: (mode, mark)."""
        lines = self.expected("tree", b"").decode().splitlines()
        fields = [line.split(" ", 2) for line in lines if line and not line.startswith("#")]
        return {path: (mode, mark) for mode, mark, path in fields}

    def actual_tree(self, expected):
        tree = {}
        for path in self.sandbox.rglob("*"):
            name = shown(path.relative_to(self.sandbox))
            status = path.lstat()
            mark = "?" if expected.get(name, ("", ""))[1] == "?" else "="
            if stat.S_ISDIR(status.st_mode):
                mark = "/"
            tree[name] = (stat.filemode(status.st_mode), mark)
        return tree

    def compare_tree(self):
        expected = self.expected_tree()
        actual = self.actual_tree(expected)
        texts = [
            "".join(f"{mode} {mark} {name}\n" for name, (mode, mark) in sorted(tree.items()))
            for tree in (expected, actual)
        ]
        if texts[0] != texts[1]:
            self.problems.append("".join(difflib.unified_diff(
                *(text.splitlines(keepends=True) for text in texts), "tree (expected)", "tree")))
        for path in sorted(self.sandbox.rglob("*")):
            relative = path.relative_to(self.sandbox)
            if path.is_file() and expected.get(shown(relative), ("", ""))[1] == "=":
                self.compare_content(relative)

    def compare_content(self, relative):
        for source in ("out", "in"):
            expected = self.directory / source / relative
            if expected.is_file():
                actual = (self.sandbox / relative).read_bytes()
                self.compare(str(relative), expected.read_bytes(), actual)
                return
        self.problems.append(f"{relative}: marked = but neither in out/ nor in in/\n")

    def user(self):
        try:
            name = pwd.getpwuid(NOBODY if self.drops else os.getuid()).pw_name
        except KeyError:
            name = ""
        return name[:15].upper()

    def play(self):
        self.prepare()
        started = time.time()
        output, errors, status = self.run()
        self.masks = Masks(self.sandbox, self.user(), started, time.time())
        self.compare("stdout", self.expected("stdout", b""), output)
        self.compare("stderr", self.expected("stderr", b""), errors)
        expected_status = self.expected("status", b"0\n")
        self.compare("status", expected_status, f"{status}\n".encode())
        self.compare_tree()

    def clean_up(self):
        for path in [self.top, *self.top.rglob("*")]:
            if path.is_dir() and not path.is_symlink():
                path.chmod(0o755)
        shutil.rmtree(self.top)


def shown(path):
    """A path as `tree` writes it: bytes outside printable ASCII, and backslashes, as \\xNN."""
    return "".join(chr(b) if 32 <= b < 127 and b != 92 else f"\\x{b:02x}"
                   for b in os.fsencode(path))


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("program", type=Path, help="the built grolof")
    parser.add_argument("cases", type=Path, nargs="+", help="case directories")
    parser.add_argument("--keep", action="store_true", help="leave the sandbox for a look")
    arguments = parser.parse_args()
    failed = 0
    for directory in arguments.cases:
        if not (directory / "cmd").exists():
            continue  # the stand-ins, when all directories are given
        case = Case(directory.resolve(), arguments.program.resolve())
        try:
            case.play()
        finally:
            if arguments.keep:
                print(f"{directory.name}: sandbox {case.sandbox}")
            else:
                case.clean_up()
        for problem in case.problems:
            print(problem, end="" if problem.endswith("\n") else "\n")
        print(f"{'FAILED' if case.problems else 'passed'}: {directory.name}")
        failed += bool(case.problems)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
