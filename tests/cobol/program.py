"""A COBOL program that checks itself, put together piece by piece."""


class Program:
    """Working storage and the INIT-RECORD section are fixed format, as the books copied into them;
    the checks are free format, so that no line of theirs can be too long."""

    def __init__(self):
        self.storage = []
        self.init = []
        self.checks = []
        self.count = 0

    def say(self, line):
        self.checks.append(line)

    def is_text(self, what, got, wanted):
        """The characters of `got`, an identifier, are the text."""
        self.say(f"MOVE {got} TO GOT-TEXT MOVE {quoted(wanted)} TO WANTED-TEXT")
        self._compare(what, "TEXT")

    def is_number(self, what, got, wanted):
        """`got`, an identifier or a function, has the value."""
        self.say(f"COMPUTE GOT-NUMBER = {got} MOVE {wanted} TO WANTED-NUMBER")
        self._compare(what, "NUMBER")

    def is_half_word(self, what, got, wanted):
        """The two bytes `got` are a binary half word with the value."""
        self.say(f"MOVE {got} TO HALF-BYTES")
        self.is_number(what, "HALF-WORD", wanted)

    def is_true(self, what, condition):
        self.count += 1
        self.say(f"ADD 1 TO CHECKS-MADE IF NOT ({condition})")
        self.say(f"    ADD 1 TO CHECKS-FAILED DISPLAY {quoted('not true: ' + what)} END-IF")

    def _compare(self, what, kind):
        self.count += 1
        self.say(f"MOVE {quoted(what)} TO WHAT PERFORM COMPARE-{kind}")

    def text(self):
        return "\n".join([
            "       IDENTIFICATION DIVISION.",
            "       PROGRAM-ID. BOOKTEST.",
            "       DATA DIVISION.",
            "       WORKING-STORAGE SECTION.",
            *self.storage,
            "       01  GOT-TEXT               PIC X(2000).",
            "       01  WANTED-TEXT            PIC X(2000).",
            "       01  GOT-NUMBER             PIC S9(18)V9(9).",
            "       01  WANTED-NUMBER          PIC S9(18)V9(9).",
            "       01  HALF-WORD              PIC 9(4) COMP.",
            "       01  HALF-BYTES REDEFINES HALF-WORD PIC X(2).",
            "       01  WHAT                   PIC X(60).",
            "       01  CHECKS-MADE            PIC 9(6) VALUE 0.",
            "       01  CHECKS-FAILED          PIC 9(6) VALUE 0.",
            "       PROCEDURE DIVISION.",
            "       MAIN-PART SECTION.",
            "           PERFORM ALL-CHECKS.",
            "           DISPLAY 'CHECKS ' CHECKS-MADE ' ' CHECKS-FAILED.",
            "           STOP RUN.",
            "       INIT-RECORD SECTION.",
            *self.init,
            "           EXIT.",
            "      >>SOURCE FORMAT IS FREE",
            "COMPARE-TEXT SECTION.",
            "    ADD 1 TO CHECKS-MADE",
            "    IF GOT-TEXT NOT = WANTED-TEXT",
            "        ADD 1 TO CHECKS-FAILED",
            "        DISPLAY WHAT ' is ' QUOTE GOT-TEXT(1:80) QUOTE",
            "        DISPLAY '    wanted ' QUOTE WANTED-TEXT(1:80) QUOTE",
            "    END-IF.",
            "COMPARE-NUMBER SECTION.",
            "    ADD 1 TO CHECKS-MADE",
            "    IF GOT-NUMBER NOT = WANTED-NUMBER",
            "        ADD 1 TO CHECKS-FAILED",
            "        DISPLAY WHAT ' is ' GOT-NUMBER ', wanted ' WANTED-NUMBER",
            "    END-IF.",
            "ALL-CHECKS SECTION.",
            *("    " + line for line in self.checks),
            "    CONTINUE.",
            "",
        ])


def quoted(text):
    return '"' + text.replace('"', '""') + '"'


def sample(item, seed):
    """A value for a field: what a program moves and the characters that storage then holds.
    Different seeds give different values, so that a wrong place shows."""
    if not item.is_numeric:
        letters = "".join(chr(ord("A") + (seed * 7 + i * 3) % 26) for i in range(item.size))
        return quoted(letters), letters
    digits = "".join(str((seed + i * 3) % 10) for i in range(item.size))
    if item.size > 1:  # a zero in front is there only if the item is numeric
        digits = "0" + digits[1:]
    whole = item.size
    if "V" in item.picture:
        whole -= int(item.picture.rstrip(")").rsplit("(", 1)[1])
    if whole == item.size:
        return str(int(digits)), digits
    return f"{int(digits[:whole])}.{digits[whole:]}", digits
