#!/usr/bin/env python3
"""Runs the examples of the manual pages.

usage: manual_examples.py PROGRAM PROJECT

docs/grolof.1: every example block whose first line begins with "$ " is run as a shell command in a
fresh installation, and its standard output must be the block's other lines.
docs/t3b.5: the screen in its EXAMPLES section, loaded and rewritten, must come out unchanged.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def blocks(page):
    """The example blocks of a page's EXAMPLES section, as plain text."""
    section = page.read_text().split(".SH EXAMPLES\n", 1)[1].split("\n.SH ", 1)[0]
    for block in re.findall(r"^\.EX\n(.*?)^\.EE$", section, re.S | re.M):
        yield block.replace("\\-", "-")


def run(command, directory, program, project):
    environment = {
        "PATH": f"{program.parent}:{project / 'examples/bin'}:{os.environ['PATH']}",
        "ZORROOT": "inst",
    }
    return subprocess.run(command, shell=True, cwd=directory, env=environment, text=True,
                          stdin=subprocess.DEVNULL, capture_output=True, timeout=60)


def check(what, expected, got):
    if expected == got:
        return True
    print(f"{what}\n--- the page says\n{expected}--- the program says\n{got}")
    return False


def check_program_page(directory, program, project):
    passed, count = True, 0
    for block in blocks(project / "docs/grolof.1"):
        if not block.startswith("$ "):
            continue
        command, expected = block[2:].split("\n", 1)
        result = run(command, directory, program, project)
        passed &= check(f"$ {command} (status {result.returncode})\n{result.stderr}",
                        expected, result.stdout)
        passed &= result.returncode == 0 and result.stderr == ""
        count += 1
    return passed and count >= 4


def check_format_page(directory, program, project):
    (text,) = blocks(project / "docs/t3b.5")
    (directory / "example.t3b").write_text(text)
    run("grolof -x -g claims example.t3b", directory, program, project)
    return check("docs/t3b.5", text, (directory / "inst/zorfiles/sfg/claims/A.t3b").read_text())


def main():
    program, project = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    with tempfile.TemporaryDirectory() as name:
        directory = pathlib.Path(name)
        (directory / "inst/zorfiles/copy").mkdir(parents=True)
        (directory / "books").mkdir()
        for source in (project / "examples").glob("*.fldp"):
            shutil.copy(source, directory)
        passed = check_program_page(directory, program, project)
        passed &= check_format_page(directory, program, project)
    return 0 if passed else 1


if __name__ == "__main__":
    sys.exit(main())
