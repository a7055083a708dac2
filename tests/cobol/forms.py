"""What the examples' COPY books must hold, worked out by hand from the sources in examples/.

Nothing here is taken from a book. Positions are those of the sources: a field inside an image
stands at the image's row and column plus its own, less 1; the first repetition is listed, and the
step to the next is the image's height (down) or its width and spacing (right). Pictures follow
from the width on the screen: less one for the decimal point, for a currency sign and for a
floating or trailing sign, then less one for every full group of four characters before the
decimals when delimiters are inserted. Named constant texts take no part: their text becomes
headings.
"""

from dataclasses import dataclass, field
import re


def size_of(picture):
    """Characters that an item of this picture takes: X(5), S9(9)V9(2), Z(7)9, ZZZ,ZZ9.99."""
    counted = re.sub(r"(.)\((\d+)\)", lambda m: m[1] * int(m[2]), picture)
    return len(counted.replace("V", "").replace("S", ""))


@dataclass
class Field:
    """A named field. `initial` is what its storage holds at first, if not blanks or zeros."""
    name: str
    picture: str
    row: int
    column: int
    initial: str = ""
    has_entry_name: bool = True  # False: its control area entry is FILLER

    @property
    def size(self):
        return size_of(self.picture)

    @property
    def is_numeric(self):
        return self.picture.lstrip("S").startswith("9")

    @property
    def first_value(self):
        return self.initial.ljust(self.size) if self.initial else (
            ("0" if self.is_numeric else " ") * self.size)


@dataclass
class Image:
    """A named image that does not repeat: an entry of its own, then its children."""
    name: str
    row: int
    column: int
    width: int
    children: list
    has_entry_name: bool = True


@dataclass
class Repeat:
    index: str
    count: int
    step: tuple  # rows and columns from one repetition to the next
    children: list


@dataclass
class Form:
    name: str
    number: int
    body: list = field(default_factory=list)
    cursor: tuple = (0, 0, 0)  # row, column, entry
    prefixed: bool = False     # names begin with S<number>-
    rows: int = 24
    columns: int = 80

    @property
    def prefix(self):
        return f"S{self.number}-" if self.prefixed else ""


@dataclass
class MapField:
    """A named field of a map; `sent` and `seen`: a value moved to the output item, and the
    characters that the input area must then hold, where the output picture edits."""
    name: str
    picture: str
    out: str = ""
    sent: str = ""
    seen: str = ""
    initial: str = ""

    @property
    def size(self):
        return size_of(self.picture)

    @property
    def is_numeric(self):
        return self.picture.lstrip("S").startswith("9")


@dataclass
class Map:
    name: str
    fields: list


@dataclass
class MapSet:
    name: str
    maps: list


FORMS = {
    # CREDIT-LIMIT: 16 less point less currency sign = 14; 12 integer places hold 3 commas.
    # BALANCE: 16 less point less sign = 14, less 3 commas. OPEN-ITEMS: 7 less 1 comma.
    "edits": Form("PAYTERMS", 1250, prefixed=True, cursor=(3, 17, 1), body=[
        Field("ACCOUNT", "X(12)", 3, 17),
        Field("E-MAIL", "X(32)", 3, 47),
        Field("ACCOUNT-KIND", "A(12)", 4, 17, initial="DEBTOR"),
        Field("HOLD-NOTICE", "X(9)", 4, 71, initial="ON HOLD"),
        Field("NET-DAYS", "9(3)", 7, 17),
        Field("CREDIT-LIMIT", "9(9)V9(2)", 7, 59),
        Field("DUNNING-LEVEL", "9(1)", 8, 17),
        Field("FIXED-FEE", "9(5)V9(2)", 8, 59),
        Field("RATING", "9(2)", 9, 17),
        Field("DISCOUNT-RATE", "9(2)V9(3)", 9, 59),
        Field("OPEN-ITEMS", "9(6)", 12, 17),
        Field("BALANCE", "S9(9)V9(2)", 12, 59),
        Field("LAST-BOOKING", "S9(9)V9(2)", 13, 59),
        Field("PAY-NOTE", "X(60)", 15, 8),
        Field("PAY-MESSAGE", "X(74)", 22, 2),
    ]),
    "helptext": Form("HELPTEXT", 900),
    # HIT-BALANCE: 14 less point less sign = 12; 10 integer places hold 2 commas.
    "inquiry": Form("CUSTINQ", 220, prefixed=True, cursor=(3, 15, 1), body=[
        Field("SEARCH-WORD", "X(24)", 3, 15),
        Field("PAGE-NO", "9(3)", 3, 73),
        Repeat("HIT", 12, (1, 0), [
            Field("HIT-MARK", "X(1)", 7, 4),
            Field("HIT-CUST-NO", "9(8)", 7, 8),
            Field("HIT-NAME", "X(28)", 7, 18),
            Field("HIT-TOWN", "X(15)", 7, 48),
            Field("HIT-BALANCE", "S9(8)V9(2)", 7, 65),
        ]),
        Field("INQ-MESSAGE", "X(60)", 22, 2),
    ]),
    # The form names its cursor field in lower case: it is MENU-OPTION.
    "menu": Form("MAINMENU", 42, cursor=(17, 26, 3), body=[
        Field("MENU-TITLE", "X(18)", 1, 29, initial="CLAIMS - MAIN MENU"),
        Field("MENU-USER", "X(8)", 1, 71),
        Field("MENU-OPTION", "9(2)", 17, 26),
        Field("MENU-CLAIM-NO", "X(12)", 19, 26),
        Field("MENU-MESSAGE", "X(76)", 22, 2),
    ]),
    # UNIT-PRICE: 13 less point = 12, 10 integer places hold 2 commas. LINE-AMOUNT: 16 less point
    # less sign = 14, 12 hold 3. ORDER-AMOUNT: the same with the currency sign.
    "order": Form("ORDENT", 210, prefixed=True, cursor=(5, 15, 3), body=[
        Field("ORDER-NO", "9(8)", 4, 15),
        Field("ORDER-DATE", "X(10)", 4, 56, initial="DD.MM.YYYY"),
        Field("CUST-NO", "9(8)", 5, 15),
        Field("CUST-NAME", "A(30)", 5, 40),
        Field("SHIP-TO", "X(22)", 6, 15),
        Field("CUST-ORDER-REF", "X(12)", 6, 56),
        Repeat("ORDER-LINE", 5, (1, 0), [
            Field("LINE-NO", "9(2)", 10, 2),
            Field("ITEM-NO", "X(13)", 10, 5),
            Field("ITEM-TEXT", "X(24)", 10, 19),
            Field("QTY", "9(5)", 10, 44),
            Field("UNIT-PRICE", "9(8)V9(2)", 10, 50),
            Field("LINE-AMOUNT", "S9(9)V9(2)", 10, 64),
        ]),
        Field("DISCOUNT-PCT", "9(2)V9(1)", 16, 15),
        Field("ORDER-AMOUNT", "9(9)V9(2)", 16, 64),
        Field("CONFIRM", "X(1)", 19, 31, initial="N"),
        Field("ORDER-MSG", "X(70)", 22, 2),
    ]),
    # People are two rows high; a day is 5 columns wide with 2 between two days.
    "planner": Form("WEEKPLAN", 230, cursor=(3, 7, 1), body=[
        Field("PLAN-WEEK", "9(2)", 3, 7),
        Field("PLAN-YEAR", "9(4)", 3, 13),
        Repeat("PERSON", 6, (2, 0), [
            Field("PERSON-NAME", "X(21)", 6, 2),
            Repeat("WDAY", 7, (0, 7), [
                Field("SHIFT-CODE", "X(2)", 6, 25),
                Field("SHIFT-HRS", "9(2)", 6, 28),
            ]),
        ]),
        Repeat("TDAY", 7, (0, 7), [Field("DAY-HOURS", "9(5)", 19, 25)]),
        Field("PLAN-MESSAGE", "X(60)", 23, 2),
    ]),
    # PREMIUM: 16 less point = 15; 13 integer places hold 3 commas. The linked images have an
    # entry without a name.
    "policy": Form("POLICY", 1240, prefixed=True, cursor=(1, 71, 1), body=[
        Field("POLICY-NO", "X(10)", 1, 71),
        Image("HOLDER", 5, 4, 74, [
            Field("HOLDER-NAME", "X(40)", 5, 18),
            Field("HOLDER-STREET", "X(40)", 6, 18),
            Field("HOLDER-ZIP", "9(5)", 7, 18),
            Field("HOLDER-TOWN", "X(34)", 7, 24),
        ]),
        Image("VEHICLE", 10, 4, 74, has_entry_name=False, children=[
            Field("PLATE", "X(12)", 10, 18),
            Field("CAR-MAKE", "X(24)", 11, 18),
            Field("FIRST-YEAR", "9(4)", 11, 65),
            Field("NO-CLAIM-YEARS", "9(2)", 12, 18),
        ]),
        Image("PAYMENT", 15, 4, 74, has_entry_name=False, children=[
            Field("IBAN", "X(22)", 15, 18),
            Repeat("PREM", 3, (0, 20), [Field("PREMIUM", "9(10)V9(2)", 17, 18)]),
        ]),
    ]),
    "signon": Form("SIGNON", 7, cursor=(6, 41, 3), body=[
        Field("RUN-DATE", "X(8)", 1, 2),
        Field("RUN-TIME", "X(8)", 1, 72),
        Field("USER-ID", "X(8)", 6, 41),
        Field("PASS-WORD", "X(10)", 8, 41),
        Field("NEW-PASS-WORD", "X(10)", 10, 41),
        Field("BRANCH-NO", "9(4)", 12, 41),
        Field("MESSAGE-LINE", "X(70)", 22, 2),
    ]),
    # The screen handler finds the page counts by their type, so their entries have no name.
    "siteinfo": Form("SITEINFO", 3, body=[
        Field("TRANS-CODE", "X(8)", 1, 73),
        Field("PROCESS-ID", "X(4)", 15, 13),
        Field("LOGICAL-PID", "X(4)", 15, 45),
        Field("PAGE-CURRENT", "9(3)", 17, 9, has_entry_name=False),
        Field("PAGE-TOTAL", "9(3)", 17, 16, has_entry_name=False),
        Field("PAGE-DATA", "9(3)", 17, 40, has_entry_name=False),
        Field("PAGE-INDEX", "9(3)", 17, 65, has_entry_name=False),
        Field("SITE-NAME", "X(20)", 19, 10),
        Field("NEXT-SCREEN", "X(8)", 22, 17),
    ]),
    # ADJ-BOOKED: 9 hold 2 commas. ADJ-DIFF: 8 less its sign.
    "stock": Form("STKADJ", 88, cursor=(3, 14, 1), body=[
        Field("WAREHOUSE", "X(4)", 3, 14),
        Field("BIN-NO", "9(5)", 3, 31),
        Field("COUNTED-BY", "X(20)", 5, 14),
        Repeat("ADJ", 8, (1, 0), [
            Field("ADJ-ITEM", "X(16)", 8, 4),
            Field("ADJ-BOOKED", "9(7)", 8, 24),
            Field("ADJ-COUNTED", "9(7)", 8, 37),
            Field("ADJ-DIFF", "S9(7)", 8, 49),
            Field("ADJ-REASON", "X(3)", 8, 60, initial="CNT"),
        ]),
        Field("STK-MSG", "X(60)", 21, 2),
    ]),
}

MAP_SETS = {
    "csmenus": MapSet("CSMENUS", [
        Map("CSMENU", [
            MapField("DATUM", "X(10)"),
            MapField("CHOICE", "9", out="9", sent="7", seen="7"),
            MapField("CUSTNO", "9(7)"),
            MapField("MSG", "X(79)", initial="MAKE YOUR CHOICE AND PRESS ENTER"),
        ]),
    ]),
    "ordset": MapSet("ORDSET", [
        Map("ORDHDR", [
            MapField("CUSTNO", "9(8)", out="Z(7)9", sent="4711", seen="    4711"),
            MapField("CUSTNM", "X(40)"),
            MapField("REQDAY", "9(2)"),
            MapField("REQMON", "9(2)"),
            MapField("REQYR", "9(4)"),
            MapField("TERMS", "X(60)",
                     initial="NET THIRTY DAYS, TWO PER CENT DISCOUNT WITHIN TEN DAYS"),
        ]),
        Map("ORDLIN", [
            *(item for line in "1234" for item in (
                MapField("ITEM" + line, "9(6)"),
                MapField("QTY" + line, "9(5)", out="ZZZZ9", sent="12", seen="   12"),
                MapField("PRICE" + line, "X(10)", out="ZZZ,ZZ9.99", sent="1234.5",
                         seen="  1,234.50"))),
            MapField("LINES", "X(3)"),
            MapField("TOTAL", "X(12)", out="Z,ZZZ,ZZ9.99", sent="0.05", seen="        0.05"),
        ]),
        Map("ORDCNF", [
            MapField("ORDNO", "X(9)", out="9(9)", sent="815", seen="000000815"),
            MapField("REPLY", "X(1)"),
        ]),
    ]),
    "signset": MapSet("signset", [
        Map("signon", [
            MapField("oper", "X(8)"),
            MapField("passwd", "X(8)"),
            MapField("branch", "9(4)", out="9(4)", sent="12", seen="0012", initial="0001"),
        ]),
        Map("signmsg", [MapField("text", "X(60)")]),
    ]),
    "stkset": MapSet("STKSET", [
        Map("STKINQ", [
            MapField("ITEM", "9(6)"),
            MapField("DESCR", "X(40)"),
            MapField("ONHAND", "9(9)", out="Z(8)9", sent="0", seen="        0"),
            MapField("NOTICE", "X(79)",
                     initial="QUANTITIES ARE THOSE OF LAST NIGHT; NOT OF THIS MOMENT"),
        ]),
        Map("STKCHG", [
            MapField("CHITEM", "9(6)"),
            MapField("CHQTY", "9(9)", out="Z(8)9", sent="30", seen="       30"),
            MapField("REASON", "X(30)"),
        ]),
    ]),
}
