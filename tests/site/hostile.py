#!/usr/bin/env python3
"""Names and environments that mean harm.

1,000 generated texts (shell metacharacters, quotes, newlines, "../", control and high bytes, 1 to
5,000 bytes) are used as form names, groups and COPY names, as names of operands, as arguments of
-w and -g, and as values of the environment variables that the program or a shell looks at. Of
every run it is checked that

- the commands are exactly those that the program has to start, with exactly the expected
  arguments, in the expected directory: the command path leads to stand-ins that note them, and to
  a "canary" that the texts try to start;
- standard output tells exactly the expected paths, each written or, with a reason, not;
- the files that are new or changed are exactly those told as written, and every new directory is
  on the way to an output;
- no sanitizer has complained.

usage: hostile.py GROLOF
"""

import os
import random
import shlex
import shutil
import subprocess
import sys
import tempfile

NOBODY = 65534
DEPTH = 12  # directories above the working directory: more than all "../" of a run together
MOST_UPS = 3  # in one text
LONGEST = 255  # bytes of a path or command
ROOT_AREA = 128

FORM = b"NUMBER = 7\nFIELD\nNAME = 'CODE'\nPOSITION_IMAGE ROW = 3 COLUMN = 10\n" \
       b"DIMENSION WIDTH = 4\nEND_FIELD\nEND_FORM\n"
DEFINITION = b'Number="7"\nHeight="24"\nWidth="80"\n>\n<DpsField\nName="CODE"\nHeight="1"\n' \
             b'Width="4"\nColumn="10"\nRow="3"\n>\n</DpsField>\n</DpsForm>\n'

# --- the texts ---------------------------------------------------------------------------------

PIECES = [b"$(canary)", b"`canary`", b";canary;", b"|canary", b"&&canary&", b"\ncanary\n",
          b"'", b"''", b"'\\''", b'"', b"\\", b"\\'", b"';canary;'", b'";canary;"', b"$IFS",
          b"${PATH}", b">pwned", b"<pwned", b">>pwned ", b"*", b"?", b"[!a]", b"{a,b}", b"~", b"#",
          b"!", b"%s%n", b"%d", b"(canary)", b"../", b"..", b"./", b"/", b"//", b"-", b"--", b" ",
          b"\t", b"\r", b"\x01", b"\x1b[2J", b"\x7f", b"\x80", b"\xff", b"\xc3\xa4", b"&", b"^",
          b"=", b",", b":", b"\n", b"A", b"bc", b"Name", b"7", b"\v\f", b"<", b"</DpsForm>"]


class Texts:
    def __init__(self, seed):
        self.dice = random.Random(seed)
        self.used = {b"", b".", b".."}
        self.made = 0

    def length(self):
        low, high = self.dice.choice([(1, 12), (8, 40), (8, 60), (40, 200), (150, 300),
                                      (300, 5000)])
        return self.dice.randint(low, high)

    def text(self, without=b"", most=5000):
        """A text that was not given out before. It is no absolute path, so that what goes astray
        stays in the sandbox."""
        text = b""
        while text in self.used:
            text = self.compose(min(self.length(), most), without)
        self.used.add(text)
        self.made += 1
        return text

    def compose(self, length, without):
        text = b""
        while len(text) < length:
            text += self.dice.choice(PIECES)
        text = bytes(byte for byte in text[:length] if byte not in without)
        while text.count(b"..") > MOST_UPS:
            text = text.replace(b"..", b"._", 1)
        return text.replace(b".bms", b".BMS").replace(b".t3b", b".T3B").lstrip(b"/")


# --- what has to happen ------------------------------------------------------------------------

def above_blank(text):
    return text != b"" and 33 <= text[0] < 128


def normal(path):
    """A slash swallows the one behind it; a slash at the end goes."""
    result, at = bytearray(), 0
    while at < len(path):
        result.append(path[at])
        at += 2 if path[at:at + 2] == b"//" else 1
    return bytes(result.removesuffix(b"/"))


def quoted(text):
    return text.replace(b"'", b"'\\''")


def bare(text):
    plain = all(byte < 128 and (chr(byte).isalnum() or byte in b"_./-+,@%:=") for byte in text)
    return text if plain else b"'" + quoted(text) + b"'"


class Expected:
    """Follows the rules of placement for one run, and compares."""

    def __init__(self, sandbox, environment, copy=b"", group=b"ZOR$Y$"):
        self.sandbox, self.environment, self.copy = sandbox, environment, copy
        self.upper = group[:8].upper()
        self.lower = self.upper.lower()
        root = environment[b"ZORROOT"]
        self.files = root + (b"" if root.endswith(b"/") else b"/") + b"zorfiles"
        self.calls = []
        self.steps = []  # (texts that may stand next on standard output, the path they tell of)
        self.paths = []

    def exists(self, path):
        return os.path.exists(os.path.join(self.sandbox.here, path))

    def has_cpy(self, place):
        return len(place + b"/cpy") > LONGEST or self.exists(place + b"/cpy")

    def copy_directory(self):
        site, root = self.environment.get(b"ZORSITE"), self.environment[b"ZORROOT"]
        files_copy = self.files + b"/copy"
        if above_blank(self.copy):
            return self.copy
        if b"DPSOUTDIR" in self.environment:
            return self.environment[b"DPSOUTDIR"]
        if site is not None and self.has_cpy(site):
            return site + b"/cpy"
        if os.path.isdir(os.path.join(self.sandbox.here, files_copy)):
            return files_copy
        if site is not None:
            return b"."
        if not self.exists(files_copy) and self.exists(b"../cpy"):
            return b"../cpy"
        return root + b"/cpy" if self.has_cpy(root) else b"."

    def output(self, good, bad, path):
        self.steps.append(([good + path + b"\n", bad + path + b"\n"], path))

    def say(self, text):
        self.steps.append(([text], None))

    def placed(self, path):
        """The path as the making of its directories leaves it."""
        self.paths.append(path)
        if len(path) > LONGEST:
            return path
        self.paths.append(normal(path))
        return normal(path)

    def command(self, text, call):
        if len(text) <= LONGEST:
            self.calls.append(call)
        return len(text) <= LONGEST

    def check_out(self, path, name, here):
        """A read-only COPY book that the check-out leaves so: the book goes here instead."""
        directory, book = os.path.dirname(path), b"SCREEN-" + name + b"-7"
        place = os.path.realpath(os.path.join(self.sandbox.here, directory))
        change, slot = b"cd " + bare(directory) + b"; ", b"SCREEN-" + bare(name) + b"-7"
        self.command(change + b"claimsrc " + slot, (b"claimsrc", place, [book]))
        self.command(change + b"chmod a+rw " + slot, (b"chmod", place, [b"a+rw", book]))
        self.say(b"No write permission for: " + path + b"\n")
        return here

    def screen(self, name, numbered=False):
        """The outputs of a form with the number 7."""
        book = b"SCREEN-" + name + b"-7"
        path = self.placed(self.copy_directory() + b"/" + book)
        if path in self.sandbox.read_only:
            path = self.check_out(path, name, b"./" + book)
        path = self.placed(path)
        self.output(b"Wrote DPS COPY book: ", b"Problem writing COPY: ", path)
        self.screen_and_format(b"DPS00007" if numbered else name)

    def map(self, name, copy_name):
        """The outputs of a map; its COPY book's path is told as it was formed."""
        path = self.copy_directory() + b"/" + copy_name
        self.placed(self.placed(path))
        self.output(b"Wrote BMS COPY book: ", b"Problem trying to write: ", path)
        self.screen_and_format(name)

    def screen_and_format(self, name):
        path = self.placed(self.files + b"/sfg/" + self.lower + b"/" + name + b".t3b")
        self.output(b"  Wrote screen file: ", b"Problem trying to write: ", path)
        group = self.files + b"/mcs/" + self.upper
        path = self.placed(group + b"/" + name + b".t3z")
        self.output(b"   Wrote MCS format: ", b"Problem trying to write: ", path)
        enter = b"scrlib IUQ '" + quoted(path) + b"'"
        if not self.command(enter, (b"scrlib", self.sandbox.here, [b"IUQ", path])):
            self.say(b"Problem doing '" + enter + b"'\n")
        self.command(b"touch '" + quoted(group) + b"'", (b"touch", self.sandbox.here, [group]))

    # --- comparison ---------------------------------------------------------------------------

    def cannot_be_written(self, path):
        full = os.path.join(self.sandbox.here, path)
        return (len(path) > LONGEST or os.path.isdir(full)
                or not os.path.isdir(os.path.dirname(full)))

    def told(self, output):
        """Goes along standard output; returns the real paths of what it tells as written."""
        written = set()
        for choices, path in self.steps:
            text = next((choice for choice in choices if output.startswith(choice)), None)
            assert text is not None, f"told {output[:600]!r}\ninstead of {choices!r}"
            output = output[len(text):]
            if path is not None and text is choices[0]:
                written.add(os.path.realpath(os.path.join(self.sandbox.here, path)))
            elif path is not None:
                assert self.cannot_be_written(path), f"no reason to refuse {path!r}"
        assert output == b"", f"told besides: {output[:600]!r}"
        return written

    def ways(self):
        """Every directory on the way to an output."""
        found = set()
        for path in self.paths:
            slashes = [at for at, byte in enumerate(path[:LONGEST]) if byte == ord("/")]
            found.update(os.path.realpath(os.path.join(self.sandbox.here, path[:slash]))
                         for slash in slashes if slash > 0)
        return found

    def compare(self, output):
        calls = self.sandbox.calls()
        for call, expected in zip(calls, self.calls):
            assert call == expected, f"started {call!r}\ninstead of {expected!r}"
        assert len(calls) == len(self.calls), f"started {calls!r}\ninstead of {self.calls!r}"
        written = self.told(output)
        before, after = self.sandbox.before, self.sandbox.tree()
        changed = {path for path, text in after.items()
                   if text is not None and before.get(path) != text}
        assert changed == written, f"differ: {changed ^ written!r}"
        assert before.keys() <= after.keys(), f"gone: {before.keys() - after.keys()!r}"
        made = {path for path, text in after.items() if text is None and path not in before}
        assert made <= self.ways(), f"made besides: {made - self.ways()!r}"
        return len(written)


# --- a run -------------------------------------------------------------------------------------

class Sandbox:
    """A directory of its own for a run, far enough below the one that is looked at."""

    def __init__(self, harness):
        self.harness = harness
        self.area = os.path.join(harness.top, b"area")
        self.inputs = os.path.join(harness.top, b"inputs")
        self.log = harness.log
        self.here = os.path.join(self.area, *[b"%d" % level for level in range(DEPTH)])
        self.read_only = set()
        os.makedirs(self.here)
        os.makedirs(self.inputs)
        self.put(os.path.join(self.here, b"witness"), b"stays")

    def put(self, path, text):
        with open(os.path.join(self.here, path), "wb") as file:
            file.write(text)
        return path

    def lock(self, path):
        """Puts a read-only file at a path relative to the working directory, if that is one."""
        try:
            for at, byte in enumerate(path):
                if byte == ord("/"):
                    os.makedirs(os.path.join(self.here, path[:at]), exist_ok=True)
            os.chmod(self.put_new(path), 0o444)
            self.read_only.add(path)
        except OSError:
            pass

    def put_new(self, path):
        full = os.path.join(self.here, path)
        os.close(os.open(full, os.O_CREAT | os.O_EXCL | os.O_WRONLY))
        return full

    def tree(self):
        """What stands in the sandbox: the contents of files, None for directories."""
        found = {}
        for folder, folders, names in os.walk(self.area):
            found.update((os.path.join(folder, name), None) for name in folders)
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    found[os.path.join(folder, name)] = file.read()
        return found

    def calls(self):
        """What the stand-ins noted: (command, directory, arguments)."""
        if not os.path.exists(self.log):
            return []
        with open(self.log, "rb") as file:
            words = iter(file.read().split(b"\0")[:-1])
        return [(word, os.path.realpath(next(words)),
                 [next(words) for _ in range(int(next(words)))]) for word in words]

    def run(self, environment, *arguments):
        """Returns status, standard output and standard error."""
        self.harness.give_away(self.area)
        self.before = self.tree()
        done = subprocess.run([self.harness.program, *arguments], cwd=self.here, check=False,
                              env=environment, capture_output=True, timeout=120,
                              stdin=subprocess.DEVNULL, umask=0o022, **self.harness.identity)
        for complaint in (b"Sanitizer", b"runtime error"):
            assert complaint not in done.stderr, done.stderr.decode("latin-1")
        return done.returncode, done.stdout, done.stderr

    def remove(self):
        shutil.rmtree(self.area)
        shutil.rmtree(self.inputs)
        if os.path.exists(self.log):
            os.unlink(self.log)


class Harness:
    """The program, the stand-ins and the plain environment. Without privileges, because nothing is
    read-only to root."""

    def __init__(self, program, top):
        self.top = os.path.realpath(os.fsencode(top))
        os.chmod(self.top, 0o755)
        self.is_root = os.geteuid() == 0
        self.identity = {}
        if self.is_root:
            self.identity = {"user": NOBODY, "group": NOBODY, "extra_groups": []}
        programs, notes = os.path.join(self.top, b"bin"), os.path.join(self.top, b"notes")
        os.makedirs(programs)
        os.makedirs(notes)
        self.give_away(notes)
        self.log = os.path.join(notes, b"log")
        self.program = os.path.join(self.top, b"grolof")
        shutil.copy(program, self.program)
        for name in (b"scrlib", b"claimsrc", b"chmod", b"touch", b"canary"):
            path = os.path.join(programs, name)
            with open(path, "wb") as file:
                file.write(b"#!/bin/sh\nprintf '%s\\0' " + name + b" \"$PWD\" $# \"$@\" >>"
                           + os.fsencode(shlex.quote(os.fsdecode(self.log))) + b"\n")
            os.chmod(path, 0o755)
        sanitizers = {name: value for name, value in os.environb.items()
                      if name.endswith(b"SAN_OPTIONS")}
        self.environment = sanitizers | {b"PATH": programs, b"LC_ALL": b"C", b"ZORROOT": b"inst"}

    def give_away(self, place):
        for folder, _, names in os.walk(place) if self.is_root else ():
            for path in [folder, *(os.path.join(folder, name) for name in names)]:
                os.chown(path, NOBODY, NOBODY)


class Trial:
    """The runs; each counts its conversions and outputs."""

    def __init__(self, harness, texts):
        self.harness, self.texts = harness, texts
        self.conversions = self.outputs = 0

    def play(self, prepare):
        """One run in a sandbox of its own: `prepare` fills it and returns the arguments and what
        has to happen."""
        sandbox = Sandbox(self.harness)
        arguments, expected = prepare(sandbox)
        status, output, _ = sandbox.run(expected.environment, *arguments)
        assert status == 0, f"status {status}"
        self.outputs += expected.compare(output)
        self.conversions += 1
        sandbox.remove()

    def definition(self, sandbox, number, kind, *lines):
        """A screen file; its own name is hostile as well."""
        name = self.texts.text(without=b"/", most=200) + b"%d.t3b" % number
        text = b"\n".join([b"<DpsForm", b'FormType="' + kind + b'"', *lines, DEFINITION])
        return sandbox.put(os.path.join(sandbox.inputs, name), text)

    def attribute(self, name, text):
        return name + b'="' + text + b'"'

    def name_of_definition(self):
        return self.texts.text(without=b'"\n\r\0', most=2400)

    def names(self, count):
        """Names and groups of forms from screen files; some COPY books stand there read-only."""
        def prepare(sandbox):
            names = [self.name_of_definition() for _ in range(count)]
            for name in names[::3]:
                path = b"books/SCREEN-" + name + b"-7"
                if len(path) <= LONGEST:
                    sandbox.lock(normal(path))
            expected = Expected(sandbox, self.harness.environment, b"books")
            operands = []
            for number, name in enumerate(names):
                group = self.attribute(b"Group", self.name_of_definition())
                operands.append(self.definition(sandbox, number, b"DPS",
                                                self.attribute(b"Name", name), group))
                expected.say(b"Loaded " + name + b" from file: " + operands[-1] + b"\n")
                expected.screen(name)
            return [b"-d", b"-N", b"-w", b"books", b"--", *operands], expected
        self.play(prepare)

    def sources(self, count):
        """Names of forms from sources, as long literals over many lines."""
        def prepare(sandbox):
            expected = Expected(sandbox, self.harness.environment, b"books")
            operands = []
            for number in range(count):
                name = self.texts.text(without=b"\n\0")
                pieces = [name[at:at + 60].replace(b"'", b"''") for at in range(0, len(name), 60)]
                literal = b" &&\n".join(b"'" + piece + b"'" for piece in pieces)
                operands.append(sandbox.put(os.path.join(sandbox.inputs, b"%d.fldp" % number),
                                            b"FORM\nNAME = " + literal + b"\n" + FORM))
                expected.screen(name)
            return [b"-N", b"-w", b"books", *operands], expected
        self.play(prepare)

    def maps(self):
        """A map's name, or the name of its COPY book."""
        def prepare(sandbox):
            name, copy_name = self.name_of_definition(), b"BOOK"
            if self.texts.dice.random() < 0.5:
                name, copy_name = b"MENU", name
            expected = Expected(sandbox, self.harness.environment, b"books")
            operand = self.definition(sandbox, 0, b"BMS", self.attribute(b"Name", name),
                                      self.attribute(b"CopyName", copy_name))
            expected.say(b"Loaded BMS " + name + b" from file: " + operand + b"\n")
            expected.map(name, copy_name)
            return [b"-d", b"-w", b"books", b"--", operand], expected
        self.play(prepare)

    def operands(self, count):
        """Sources under hostile names."""
        def prepare(sandbox):
            expected = Expected(sandbox, self.harness.environment, b"books")
            names = [self.texts.text(without=b"/", most=250) for _ in range(count)]
            for name in names:
                sandbox.put(name, b"FORM\nNAME = 'MENU'\n" + FORM)
                expected.screen(b"MENU", numbered=True)
            return [b"-w", b"books", b"--", *names], expected
        self.play(prepare)

    def missing_sources(self, count):
        """Operands that name no file: one line of standard error for each, and nothing else."""
        sandbox = Sandbox(self.harness)
        names = [name for name in (self.texts.text() for _ in range(count))
                 if not os.path.exists(os.path.join(sandbox.here, name))]
        status, output, errors = sandbox.run(self.harness.environment, b"--", *names)
        assert (status, output) == (0, b""), (status, output)
        for name in names:
            reasons = [name + b": " + os.fsencode(reason) + b"\n"
                       for reason in ("No such file or directory", "File name too long")]
            line = next((reason for reason in reasons if errors.startswith(reason)), None)
            assert line is not None, f"{errors[:600]!r}\ninstead of {reasons!r}"
            errors = errors[len(line):]
        assert errors == b"", errors
        Expected(sandbox, self.harness.environment).compare(b"")
        sandbox.remove()

    def missing_definitions(self, count):
        """The same for screen names, paths and groups."""
        sandbox = Sandbox(self.harness)
        group = self.texts.text()
        expected = Expected(sandbox, self.harness.environment, group=group)
        names = [name for name in (self.texts.text() for _ in range(count))
                 if not name[:1].isdigit() and not expected.exists(name)]
        for name in names:
            path = name if b"/" in name else \
                expected.files + b"/sfg/" + expected.lower + b"/" + name.upper() + b".t3b"
            expected.say(b"No such file: " + path + b"\n")
        status, output, _ = sandbox.run(self.harness.environment, b"-d", b"-g", group, b"--",
                                        *names)
        assert status == 0, status
        expected.compare(output)
        sandbox.remove()

    def copy_directory(self):
        def prepare(sandbox):
            copy = self.texts.text()
            expected = Expected(sandbox, self.harness.environment, copy)
            operand = sandbox.put(os.path.join(sandbox.inputs, b"menu"),
                                  b"FORM\nNAME = 'MENU'\n" + FORM)
            expected.screen(b"MENU", numbered=True)
            return [b"-w", copy, operand], expected
        self.play(prepare)

    def group(self):
        def prepare(sandbox):
            group = self.texts.text()
            expected = Expected(sandbox, self.harness.environment, b"books", group)
            operand = sandbox.put(os.path.join(sandbox.inputs, b"menu"),
                                  b"FORM\nNAME = 'MENU'\n" + FORM)
            expected.screen(b"MENU", numbered=True)
            return [b"-w", b"books", b"-g", group, operand], expected
        self.play(prepare)

    def variable(self, name):
        """A hostile value of an environment variable. A site has its cpy directory now and then."""
        sandbox = Sandbox(self.harness)
        value = self.texts.text()
        standing = self.harness.environment[b"PATH"] + b":" if name == b"PATH" else b""
        environment = self.harness.environment | {name: standing + value}
        if name == b"ZORSITE" and len(value) < 200 and self.texts.dice.random() < 0.7:
            os.makedirs(os.path.join(sandbox.here, value, b"cpy"), exist_ok=True)
        operand = sandbox.put(os.path.join(sandbox.inputs, b"menu"),
                              b"FORM\nNAME = 'MENU'\n" + FORM)
        expected = Expected(sandbox, environment)
        root = environment[b"ZORROOT"]
        too_long = len(expected.files) - len(b"zorfiles") + len(b"zorboot.sys") >= ROOT_AREA
        if not too_long:
            expected.screen(b"MENU", numbered=True)
        status, output, errors = sandbox.run(environment, operand)
        assert status == (1 if too_long else 0), status
        assert not too_long or errors == root + b": too long\n", errors
        self.outputs += expected.compare(output)
        self.conversions += 1
        sandbox.remove()


VARIABLES = [b"DPSOUTDIR"] * 3 + [b"ZORSITE"] * 3 + [b"ZORROOT"] * 3 + [
    b"ZORPATH", b"PATH", b"SHELL", b"IFS", b"ENV", b"HOME", b"LANG", b"LC_CTYPE", b"TZ", b"CDPATH"]


def main(program):
    texts = Texts(seed=20)
    with tempfile.TemporaryDirectory(prefix="grolof-") as top:
        trial = Trial(Harness(program, top), texts)
        for _ in range(8):
            trial.names(14)
            trial.sources(14)
            trial.operands(10)
        for _ in range(2):
            trial.missing_sources(50)
            trial.missing_definitions(49)
        for _ in range(40):
            trial.maps()
        for _ in range(60):
            trial.copy_directory()
        for _ in range(40):
            trial.group()
        for name in VARIABLES * 5:
            trial.variable(name)
    print(f"{texts.made} texts, {trial.outputs} files written as told")
    assert texts.made >= 1000, "too few texts"
    return 0


if __name__ == "__main__":
    sys.exit(main(os.path.abspath(sys.argv[1])))
