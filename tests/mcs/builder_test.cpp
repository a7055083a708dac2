// The builder: header, movement, headings, images, refusals. Expected bytes are worked out by
// hand from the rules of the format; "1 + 2" style remarks tell how.
#include "mcs/dpsmcs.h"

#include <functional>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "common/testing.h"
#include "mcs/big_endian.h"
#include "mcs/mcs_testing.h"

namespace grolof {
namespace {

using namespace testing_support;

constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

std::string HeaderOf(List& screen, std::size_t offset, std::size_t count) {
    const Bytes bytes = Uncompacted(screen);
    if (bytes.size() < kMcsHeaderSize)
        return "refused";
    return Hex(std::span(bytes).subspan(offset, count));
}

std::string TextOf(List& screen, std::size_t offset) {
    const Bytes bytes = FromHex(HeaderOf(screen, offset, 8));
    return {bytes.begin(), bytes.end()};
}

// --- The header -------------------------------------------------------------------------------

TEST(McsHeader, OfAnEmptyForm) {
    Screen screen;
    screen.TheForm->Group = "ORDERS";
    const Bytes bytes = Uncompacted(screen);
    // 17 bytes of stream: see Movement.FinishesAnEmptyForm.
    EXPECT_EQ(Hex(std::span(bytes).first(48)), "00 00 00 00 00 00 00 00 " // sums
                                               "18 50 00 00 "             // 24, 80, no fields
                                               "4F 52 44 45 52 53 20 20 " // ORDERS
                                               "54 45 53 54 20 20 20 20 " // TEST
                                               "C1 80 3A 01 "             // justification kept
                                               "00 00 00 00 00 00 00 11 " // no cursor, 17
                                               "02 02 02 02 00 00 FF 00");
}

TEST(McsHeader, Sizes) {
    Screen screen;
    screen.TheForm->Height = 0x12F; // the low byte
    screen.TheForm->Width = 132;
    EXPECT_EQ(HeaderOf(screen, 8, 2), "2F 84");
}

TEST(McsHeader, Group) {
    Screen screen;
    EXPECT_EQ(TextOf(screen, 12), "ZOR$Y$  "); // none
    const std::pair<const char*, const char*> cases[] = {
        {"", "ZOR$Y$  "},
        {" A", "ZOR$Y$  "},
        {"\x01", "ZOR$Y$  "},
        {"\xE4"
         "B",
         "ZOR$Y$  "},
        {"!", "!       "},
        {"ABCDEFGH", "ABCDEFGH"},
        {"ABCDEFGHI", "ABCDEFGH"},
        {"a b", "a b     "},
    };
    for (const auto& [group, stored] : cases) {
        screen.TheForm->Group = group;
        EXPECT_EQ(TextOf(screen, 12), stored) << group;
    }
}

TEST(McsHeader, Name) {
    Screen screen;
    Form& form = *screen.TheForm;
    form.Name = "";
    EXPECT_EQ(TextOf(screen, 20), "        ");
    form.Name = std::nullopt;
    EXPECT_EQ(TextOf(screen, 20), "        ");
    form.Name = "LONGER-NAME";
    EXPECT_EQ(TextOf(screen, 20), "LONGER-N");
    EXPECT_EQ(HeaderOf(screen, 28, 1), "C1");
    form.NumericName = 1;
    const std::pair<int, const char*> cases[] = {
        {0, "DPS00000"},      {7, "DPS00007"},  {12345, "DPS12345"},
        {123456, "DPS12345"}, {-1, "DPS-0001"}, {kLowest, "DPS-2147"},
    };
    for (const auto& [number, stored] : cases) {
        form.Number = number;
        EXPECT_EQ(TextOf(screen, 20), stored) << number;
    }
}

TEST(McsHeader, FormFlags) {
    Screen screen;
    Form& form = *screen.TheForm;
    EXPECT_EQ(HeaderOf(screen, 29, 1), "80");
    form.FormType = FormKind::Bms;
    EXPECT_EQ(HeaderOf(screen, 29, 1), "90");
    form.IgnoreJustification = 1;
    EXPECT_EQ(HeaderOf(screen, 29, 1), "10");
    form.FormType = FormKind::Sfs;
    EXPECT_EQ(HeaderOf(screen, 29, 1), "00");
}

TEST(McsHeader, DisplayCodes) {
    struct Case {
        int Intensity, Highlight;
        const char* Code;
    };
    const Case cases[] = {
        {4, 1, "01"}, {4, 2, "01"}, {3, 1, "03"}, {3, 2, "03"}, {1, 2, "04"}, {2, 2, "04"},
        {1, 3, "05"}, {5, 3, "05"}, {1, 1, "02"}, {0, 0, "02"}, {2, 4, "02"}, {-4, -2, "02"},
    };
    for (const Case& c : cases) {
        Screen screen;
        screen.TheForm->Intensity = c.Intensity;
        screen.TheForm->Highlight = c.Highlight;
        const std::string code = c.Code;
        EXPECT_EQ(HeaderOf(screen, 40, 4), code + " " + code + " " + code + " " + code);
        // The closing blank bears the form's code.
        EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 15 14 00 FF D0 01 93 " + code + " 20 00 14 00");

        Screen withItems;
        Field& field = AddField(withItems, 1, 1, 1);
        Heading& heading = AddHeading(withItems, 1, 2, "X");
        Field& system = AddField(withItems, 1, 3, 1);
        system.Contents = 4;
        system.Value = 2;
        for (std::int32_t* intensity : {&field.Intensity, &heading.Intensity, &system.Intensity})
            *intensity = c.Intensity;
        for (std::int32_t* highlight : {&field.Highlight, &heading.Highlight, &system.Highlight})
            *highlight = c.Highlight;
        EXPECT_EQ(StreamOf(withItems),
                  "01 02 " + code + " 01 93 " + code + " 58 01 9C " + code + " " + TailFrom(4));
    }
}

TEST(McsHeader, SumsAreThoseOfTheOrdinaryFields) {
    Screen screen;
    AddField(screen, 1, 1, 5);                // buffer 8
    AddField(screen, 1, 10, 4).Protected = 1; // buffer 4
    AddField(screen, 1, 20, 1);               // buffer 4
    AddField(screen, 1, 30, 0);               // a field of no width counts
    AddField(screen, 1, 40, 9).Contents = 4;  // a system value does not
    AddHeading(screen, 1, 50, "NOR A HEADING");
    EXPECT_EQ(HeaderOf(screen, 0, 12), "00 10 00 00 00 0A 00 06 18 50 00 04");
    EXPECT_EQ(HeaderOf(screen, 34, 4), "00 0A 00 00");
}

TEST(McsHeader, SumsOfEditedFieldsCountDigits) {
    Screen screen;
    Field& field = AddField(screen, 1, 1, 12);
    field.DataType = 3;
    field.Decimals = 2;         // 12 - 1 for the point
    field.InsertDelimiters = 1; // 11 - 2 = 9: 2 commas
    EXPECT_EQ(HeaderOf(screen, 0, 12), "00 0C 00 00 00 09 00 09 18 50 00 01");
}

TEST(McsHeader, FirstUnprotectedField) {
    Screen screen;
    AddField(screen, 1, 1, 5).Protected = 1;
    AddField(screen, 2, 3, 5).Contents = 4;
    EXPECT_EQ(HeaderOf(screen, 44, 2), "00 00");
    AddField(screen, 3, 7, 5);
    AddField(screen, 4, 9, 5);
    EXPECT_EQ(HeaderOf(screen, 44, 2), "03 07");
}

TEST(McsHeader, AFirstPositionIsTakenWithOneOfItsBytesZero) {
    Screen screen;
    screen.TheForm->Width = 300;
    AddField(screen, 1, 256, 5); // column 256: its low byte is 0
    AddField(screen, 3, 7, 5);
    EXPECT_EQ(HeaderOf(screen, 44, 2), "01 00");
    Screen high;
    high.TheForm->Height = 300;
    AddField(high, 256, 4, 5);
    AddField(high, 257, 7, 5);
    EXPECT_EQ(HeaderOf(high, 44, 2), "00 04");
}

TEST(McsHeader, PositionsAreThoseOnTheScreen) {
    Screen screen;
    Image& image = AddImage(screen, 3, 11);
    Field& field = AddField(ChildrenOf(image), 2, 75, 1);
    field.InitialCursor = 1;
    // k = 10 - 1 + 75 = 84: row 2 + 2 + 1, column 84 mod 80 + 1.
    EXPECT_EQ(HeaderOf(screen, 44, 2), "05 05");
    EXPECT_EQ(HeaderOf(screen, 32, 2), "05 05");
}

TEST(McsHeader, InitialCursor) {
    Screen screen;
    AddField(screen, 1, 1, 5).Name = "FIRST";
    AddField(screen, 2, 7, 5).Name = "Second";
    AddField(screen, 3, 9, 5);
    EXPECT_EQ(HeaderOf(screen, 32, 2), "00 00");
    screen.TheForm->ImageName = "sECOND";
    EXPECT_EQ(HeaderOf(screen, 32, 2), "02 07");
    screen.TheForm->ImageName = "SECOND-";
    EXPECT_EQ(HeaderOf(screen, 32, 2), "00 00");
    screen.TheForm->ImageName = "";
    EXPECT_EQ(HeaderOf(screen, 32, 2), "00 00"); // a field without a name is not named ""
    screen.TheForm->ImageName = "SECOND";
    AddField(screen, 4, 11, 5).InitialCursor = 1; // the last that asks for it gets it
    EXPECT_EQ(HeaderOf(screen, 32, 2), "04 0B");
}

TEST(McsHeader, ASystemValueTakesNoCursor) {
    Screen screen;
    Field& field = AddField(screen, 2, 2, 5);
    field.Contents = 4;
    field.InitialCursor = 1;
    EXPECT_EQ(HeaderOf(screen, 32, 2), "00 00");
}

// --- Movement ---------------------------------------------------------------------------------

TEST(Movement, FinishesAnEmptyForm) {
    Screen screen;
    // Column 81: 80 = 63 + 17; row 1; rows 2 to 23: 1 + 21; column 80: 79 = 63 + 16; row 24.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 15 14 00 FF D0 01 93 02 20 00 14 00");
    screen.TheForm->_24x79Unprotected = 1; // column 79, and one more to column 81
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 15 14 00 FF CF 01 93 02 20 C1 00 14 00");
}

TEST(Movement, AnEmptyChildListMovesToItsLastPosition) {
    Screen screen;
    screen.Children();
    // Row 24 column 79 first (78 = 63 + 15), then one column more.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 15 14 00 FF CF C1 01 93 02 20 00 14 00");
}

TEST(Movement, SkipsOfUpTo63Columns) {
    const std::pair<int, const char*> cases[] = {
        {2, "C1 "},      {63, "FE "},        {64, "FF "}, {65, "FF C1 "},
        {127, "FF FF "}, {128, "FF FF C1 "}, {1, ""},
    };
    for (const auto& [column, skips] : cases) {
        Screen screen;
        screen.TheForm->Width = 200;
        AddField(screen, 1, column, 1);
        EXPECT_TRUE(StreamOf(screen).starts_with(std::string(skips) + "01 02 02 "))
            << column << ": " << StreamOf(screen);
    }
}

TEST(Movement, RowsInBetweenAreOneEmptyRowRepeated) {
    Screen screen;
    AddField(screen, 3, 1, 1);
    AddField(screen, 7, 1, 1);
    // Row 1 to 3: row 1 with its skips, row 2. Row 3 to 7: its skips to column 81 (79), row 3's
    // line item, then one for rows 4, 5 and 6. Row 7 to 24: 17 rows, 1 + 1 + 15.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 00 14 00 01 02 02 "
                                "FF D0 00 14 00 02 14 00 01 02 02 "
                                "FF D0 00 14 00 0F 14 00 FF D0 01 93 02 20 00 14 00");
}

TEST(Movement, ToTheNextRowTakesOneLineItem) {
    Screen screen;
    AddField(screen, 2, 1, 80);
    AddField(screen, 3, 1, 1);
    // A row that is full to its last column needs no skip.
    EXPECT_TRUE(StreamOf(screen).starts_with("FF D1 00 14 00 50 02 02 00 14 00 01 02 02 "))
        << StreamOf(screen);
}

TEST(Movement, NeverGoesBack) {
    Screen screen;
    AddField(screen, 5, 40, 2);
    AddField(screen, 5, 30, 3); // stands behind it, at column 42
    AddField(screen, 2, 1, 4);  // and this at column 45
    // Row 5: 1 + 3 rows; column 40: 39; from 49 to 81: 32.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 02 14 00 E7 02 02 02 03 02 02 04 02 02 "
                                "E0 00 14 00 11 14 00 FF D0 01 93 02 20 00 14 00");
}

TEST(Movement, WrapsColumnsOverTheWidth) {
    Screen screen;
    AddField(screen, 2, 85, 1); // row 3, column 5
    EXPECT_TRUE(StreamOf(screen).starts_with("FF D1 00 14 00 00 14 00 C4 01 02 02 "));
    Screen narrow;
    narrow.TheForm->Width = 10;
    AddField(narrow, 1, 31, 1); // k = 30: row 4, column 1
    EXPECT_TRUE(StreamOf(narrow).starts_with("CA 00 14 00 01 14 00 01 02 02 "));
}

TEST(Movement, AFieldPastTheWidthEndsItsRow) {
    Screen screen;
    AddField(screen, 1, 79, 10); // to column 88
    AddField(screen, 2, 1, 1);
    EXPECT_TRUE(StreamOf(screen).starts_with("FF CF 0A 02 02 00 14 00 01 02 02 "));
}

TEST(Movement, RowsBeyondTheLast) {
    Screen screen;
    AddField(screen, 26, 3, 1);
    // Row 1 to 26: 1 + 24 rows. Nothing goes back to row 24: the blank stands on row 26, at
    // column 80 (from 4: 76 = 63 + 13), and no line item ends it.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 17 14 00 C2 01 02 02 FF CD 01 93 02 20");
}

TEST(Movement, AFormNarrowerThanItsLastPosition) {
    Screen screen;
    screen.TheForm->Width = 40;
    screen.Children();
    // The last position is row 24 + 78 / 40, column 78 mod 40 + 1: row 25, column 39. The blank
    // at column 80 follows on that row.
    EXPECT_EQ(StreamOf(screen), "E8 00 14 00 16 14 00 E6 E9 01 93 02 20");
}

TEST(Movement, AFormWiderThanItsLastPosition) {
    Screen screen;
    screen.TheForm->Width = 132;
    // 132 = 63 + 63 + 6 columns of row 1; the blank at 80, and 133 - 81 = 52 columns behind it.
    EXPECT_EQ(StreamOf(screen), "FF FF C6 00 14 00 15 14 00 FF D0 01 93 02 20 F4 00 14 00");
}

TEST(Movement, HugeAndNegativePlaces) {
    Screen far;
    AddField(far, kHighest, 1, 1);
    // The rows between: 2147483647 - 2 - 1 = 7FFFFFFC, of which the low byte is stored.
    EXPECT_EQ(StreamOf(far), "FF D1 00 14 00 FC 14 00 01 02 02 FF CF 01 93 02 20");
    Screen before;
    AddField(before, kLowest, -5, 1); // k = -6: row -2147483648, column -5: where it stands
    EXPECT_EQ(StreamOf(before), "01 02 02 " + TailFrom(2));
    EXPECT_EQ(HeaderOf(before, 44, 2), "00 FB");
    Screen right;
    AddField(right, 1, kHighest, 1); // k = 7FFFFFFE: row 1 + 1999999 (hex), column 47;
    // between: 199999A - 2 - 1 = 1999997
    EXPECT_TRUE(StreamOf(right).starts_with("FF D1 00 14 00 97 14 00 EE 01 02 02 "))
        << StreamOf(right);
}

TEST(Movement, NegativeWidthOfAForm) {
    Screen screen;
    screen.TheForm->Width = -80;
    // No row has a column beyond its width: no skips.
    AddField(screen, 2, 1, 1);
    EXPECT_EQ(StreamOf(screen), "00 14 00 01 02 02 00 14 00 14 14 00 FF D0 01 93 02 20 00 14 00");
}

// --- Headings ---------------------------------------------------------------------------------

TEST(Headings, InTheWalkStandWhereTheyAreMet) {
    Screen screen;
    List& children = screen.Children();
    AddHeading(children, 1, 10, "AB");
    AddHeading(children, 1, 5, "C"); // not by position: behind the first
    AddField(children, 1, 20, 1);
    // Column 10: 9; from 13 to 20: 7. The last position is 24, 79: 60 = 81 - 21.
    EXPECT_EQ(StreamOf(screen), "C9 02 93 02 41 42 01 93 02 43 C7 01 02 02 "
                                "FC 00 14 00 15 14 00 FF CF C1 01 93 02 20 00 14 00");
}

TEST(Headings, AtTheEndStandByPosition) {
    Screen screen;
    List& children = screen.Children();
    AddField(children, 1, 5, 1);
    AddField(children, 1, 20, 1);
    AddHeading(children, 1, 1, "A");
    AddHeading(children, 1, 10, "B");
    AddHeading(children, 1, 30, "C");
    EXPECT_EQ(StreamOf(screen), "01 93 02 41 C3 01 02 02 C4 01 93 02 42 C9 01 02 02 "
                                "C9 01 93 02 43 F2 00 14 00 15 14 00 FF CF C1 01 93 02 20 "
                                "00 14 00");
}

TEST(Headings, StandBeforeAFieldStrictly) {
    Screen screen;
    List& children = screen.Children();
    AddField(children, 1, 5, 1);
    AddHeading(children, 1, 5, "A"); // the same place: behind the field, at column 6
    EXPECT_TRUE(StreamOf(screen).starts_with("C4 01 02 02 01 93 02 41 "));
}

TEST(Headings, OutOfOrderHoldBackThoseBehind) {
    Screen screen;
    List& children = screen.Children();
    AddField(children, 3, 1, 1);
    AddHeading(children, 5, 1, "A");
    AddHeading(children, 1, 1, "B"); // would stand before the field; comes behind A
    // Row 3, the field; row 5 (79 columns to 81, 1 + 0 rows), A, B; 81 - 3 = 78 columns, row 24.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 00 14 00 01 02 02 "
                                "FF D0 00 14 00 00 14 00 01 93 02 41 01 93 02 42 "
                                "FF CF 00 14 00 11 14 00 FF CF C1 01 93 02 20 00 14 00");
}

TEST(Headings, InTheWalkDoNotBringOutPendingOnes) {
    Screen screen;
    List& children = screen.Children();
    AddHeading(children, 2, 1, "A");
    AddField(children, 2, 5, 1);
    AddHeading(children, 1, 1, "B"); // pending when A is met: comes out before the field
    EXPECT_TRUE(
        StreamOf(screen).starts_with("FF D1 00 14 00 01 93 02 41 01 93 02 42 C2 01 02 02 "));
}

TEST(Headings, TheFirstPendingOneComesOutAtAPositionOnTheScreen) {
    Screen screen;
    List& children = screen.Children();
    AddField(ChildrenOf(AddImage(children, 4, 1)), 1, 1, 1); // on the screen: row 4
    AddHeading(children, 3, 1, "A");
    EXPECT_TRUE(StreamOf(screen).starts_with(
        "FF D1 00 14 00 00 14 00 01 93 02 41 FF D0 00 14 00 01 02 02 "));
}

TEST(Headings, IgnoreTheImagesAroundThem) {
    Screen screen;
    List& inside = ChildrenOf(AddImage(screen.Children(), 4, 11));
    AddHeading(inside, 1, 3, "A");
    AddField(inside, 1, 1, 1);
    EXPECT_TRUE(StreamOf(screen).starts_with(
        "C2 01 93 02 41 FF CE 00 14 00 01 14 00 CA 01 02 02 ")); // 81 - 4 = 77, row 4, column 11
}

TEST(Headings, TheirColumnsDoNotWrap) {
    Screen screen;
    List& children = screen.Children();
    AddHeading(children, 1, 90, "A"); // column 90 of row 1: 89 = 63 + 26
    EXPECT_TRUE(StreamOf(screen).starts_with("FF DA 01 93 02 41 00 14 00 "));
}

TEST(Headings, FillTheirWidth) {
    const auto item = [](Text text, int width) {
        Screen screen;
        Heading& heading = Append<Heading>(screen, CreateHeading());
        heading.InitialValue = std::move(text);
        heading.Width = width;
        std::string stream = StreamOf(screen);
        const std::string tail = TailFrom(1 + width);
        EXPECT_TRUE(stream.ends_with(" " + tail)) << stream;
        stream.resize(stream.size() - std::min(stream.size(), tail.size() + 1));
        return stream;
    };
    EXPECT_EQ(item("ABC", 3), "03 93 02 41 42 43");
    EXPECT_EQ(item("ABC", 2), "02 93 02 41 42"); // cut
    EXPECT_EQ(item("AB", 4), "04 93 02 41 42 20 20");
    EXPECT_EQ(item("", 1), "01 93 02 20");
    EXPECT_EQ(item(std::nullopt, 2), "02 93 02 20 20");
    EXPECT_EQ(item("ABC", 0), "00 93 02");
    EXPECT_EQ(item(">A", 2), "02 93 02 3E 41"); // only fields have an entry mark
    EXPECT_EQ(item("ABC", -1), "FF 93 02");     // and the column goes back by one
}

std::vector<std::string> ChildTexts(const Screen& screen) {
    std::vector<std::string> texts;
    for (Record& record : *screen.TheForm->Children)
        texts.push_back(record.Type == RecordType::Heading ? *AsHeading(record).InitialValue : "-");
    return texts;
}

TEST(Headings, GoBackInTheOrderInWhichTheyWerePainted) {
    using Texts = std::vector<std::string>;
    Screen screen;
    List& children = screen.Children();
    AddHeading(children, 2, 1, "W"); // in the walk: stays
    AddField(children, 10, 1, 1);
    AddHeading(children, 12, 1, "A");
    AddHeading(children, 11, 1, "B");
    AddHeading(children, 24, 78, "C");
    AddHeading(children, 24, 79, "D"); // never painted
    AddHeading(children, 25, 1, "E");
    EXPECT_FALSE(Compacted(screen).empty());
    EXPECT_EQ(ChildTexts(screen), (Texts{"W", "-", "A", "B", "C"}));
}

TEST(Headings, ThatNeverComeOutHoldBackTheRest) {
    using Texts = std::vector<std::string>;
    Screen screen;
    List& children = screen.Children();
    AddField(children, 1, 1, 1);
    AddHeading(children, 2, 1, "A");
    AddHeading(children, 30, 1, "B");
    AddHeading(children, 3, 1, "C");
    EXPECT_FALSE(Compacted(screen).empty());
    EXPECT_EQ(ChildTexts(screen), (Texts{"-", "A"}));
}

TEST(Headings, OfAFormWithNothingElse) {
    Screen screen;
    AddHeading(screen.Children(), 24, 79, "D");
    EXPECT_TRUE(StreamOf(screen).starts_with("FF D1 00 14 00 15 14 00 FF CF C1 01 93 02 20"));
    EXPECT_EQ(ListCount(screen.Children()), 0);
}

// --- Images -----------------------------------------------------------------------------------

TEST(Images, AddUpAndAreLeftAgain) {
    Screen screen;
    List& children = screen.Children();
    Image& outer = AddImage(children, 2, 11);
    Image& inner = AddImage(ChildrenOf(outer), 2, 11);
    AddField(ChildrenOf(inner), 1, 1, 1); // row 3, column 21
    AddField(ChildrenOf(outer), 3, 1, 1); // row 4, column 11
    AddField(children, 5, 1, 1);
    AddImage(children, 9, 9); // without children: nothing
    // Columns left to 81: from 22, 59; from 12, 69 = 63 + 6.
    EXPECT_TRUE(StreamOf(screen).starts_with("FF D1 00 14 00 00 14 00 D4 01 02 02 "
                                             "FB 00 14 00 CA 01 02 02 "
                                             "FF C6 00 14 00 01 02 02 "));
}

TEST(Images, RepeatDownwards) {
    Screen screen;
    Image& image = AddRepeat(screen, 2, 3, 3);
    image.Height = 2;
    image.Spacing = 7; // does not count downwards
    AddField(ChildrenOf(image), 1, 1, 1);
    // Rows 2, 4, 6, column 3; 81 - 4 = 77 columns behind each; 1 + 0 rows between.
    EXPECT_EQ(StreamOf(screen), "FF D1 00 14 00 C2 01 02 02 "
                                "FF CE 00 14 00 00 14 00 C2 01 02 02 "
                                "FF CE 00 14 00 00 14 00 C2 01 02 02 "
                                "FF CE 00 14 00 10 14 00 FF D0 01 93 02 20 00 14 00");
}

TEST(Images, RepeatSideways) {
    for (const int direction : {0, 2, -1}) {
        Screen screen;
        Image& image = AddRepeat(screen, 1, 3, 3);
        image.Direction = direction;
        image.Width = 4;
        image.Spacing = 1;
        AddField(ChildrenOf(image), 1, 1, 2);
        // Columns 3, 8, 13.
        EXPECT_EQ(StreamOf(screen), "C2 02 02 02 C3 02 02 02 C3 02 02 02 " + TailFrom(15));
    }
}

TEST(Images, RepeatWithinRepeats) {
    Screen screen;
    Image& rows = AddRepeat(screen, 1, 1, 2);
    Image& columns = AddRepeat(ChildrenOf(rows), 1, 1, 2);
    columns.Direction = 2;
    columns.Width = 10;
    AddField(ChildrenOf(columns), 1, 1, 1);
    EXPECT_TRUE(StreamOf(screen).starts_with("01 02 02 C9 01 02 02 FF C6 00 14 00 "
                                             "01 02 02 C9 01 02 02 FF C6 00 14 00 "));
}

TEST(Images, OfNoCountOrNoChildrenAreNotPlayed) {
    for (const int count : {0, -1, kLowest}) {
        Screen screen;
        AddField(ChildrenOf(AddRepeat(screen, 1, 1, count)), 1, 1, 1);
        EXPECT_EQ(StreamOf(screen), TailFrom(1)) << count;
    }
    Screen screen;
    AddRepeat(screen, 5, 5, kHighest);
    EXPECT_EQ(StreamOf(screen), TailFrom(1));
}

// --- Several forms, flat screens --------------------------------------------------------------

TEST(Walk, RecordsBehindTheForm) {
    Screen screen;
    screen.TheForm->FormType = FormKind::Bms;
    AddHeading(screen, 1, 2, "A");
    AddField(screen, 1, 5, 3);
    AddHeading(screen, 1, 1, "B"); // in list order, at column 8
    EXPECT_EQ(StreamOf(screen), "C1 01 93 02 41 C2 03 02 02 01 93 02 42 " + TailFrom(9));
}

TEST(Walk, ChildrenComeBeforeTheRecordsBehindTheForm) {
    Screen screen;
    AddField(screen.Children(), 1, 1, 1);
    AddField(screen, 1, 1, 2);
    // The children end with the last position, 24, 79: the second field stands there.
    EXPECT_EQ(StreamOf(screen), "01 02 02 FF D0 00 14 00 15 14 00 FF CF 02 02 02 "
                                "01 93 02 20 00 14 00");
}

TEST(Walk, UnknownRecordsAreNothing) {
    Screen screen;
    Field& field = AddField(screen, 1, 1, 1);
    field.Type = static_cast<RecordType>(9);
    EXPECT_EQ(StreamOf(screen), TailFrom(1));
    field.Type = RecordType::Field; // so that it is destroyed
}

TEST(Walk, ASecondFormStartsTheStreamAgain) {
    Screen screen;
    Field& first = AddField(screen, 2, 5, 3);
    first.InitialCursor = 1;
    Form& second = Append<Form>(screen, CreateForm());
    second.Name = "SECOND";
    AddField(screen, 2, 20, 1).Protected = 1;
    // Row 2 and column 8 stay; the stream starts again: 12 columns to column 20. Flags are added
    // to what stands there: "FF D1 00 14 00 C4 03 02 02" was written before. B0 is CC, the skip;
    // then 01, 80 | 00 and type 2 over "00 14", in full: B1 was 00, B2 14 keeps its high nibble.
    EXPECT_EQ(StreamOf(screen), "CC 01 82 12 FC 00 14 00 14 14 00 FF D0 01 93 02 20 00 14 00");
    EXPECT_EQ(TextOf(screen, 20), "SECOND  ");
    EXPECT_EQ(HeaderOf(screen, 32, 2), "02 05"); // of the first form
    EXPECT_EQ(HeaderOf(screen, 44, 2), "00 00"); // begun anew
    EXPECT_EQ(HeaderOf(screen, 10, 2), "00 01");
}

TEST(Walk, StartsFromACleanBuffer) {
    Screen first;
    AddField(first, 1, 1, 3).InitialValue = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    EXPECT_NE(StreamOf(first), "refused");
    Screen second;
    AddField(second, 1, 1, 1);
    EXPECT_EQ(StreamOf(second), "01 02 02 " + TailFrom(2));
    EXPECT_EQ(HeaderOf(second, 32, 2), "00 00");
}

TEST(Walk, TakesTheCompactedLengthIntoTheHeader) {
    Screen screen;
    for (int row = 1; row <= 4; ++row)
        AddHeading(screen.Children(), row, 1, "ABC");
    const Bytes bytes = Compacted(screen);
    // Four equal rows are one, shown three more times. Then rows 5 to 23 (the line item behind
    // row 4 is the fourth row's own): 1 + 18 rows; 78 + 1 columns to the blank: "FF CF C1", of
    // which the last two merge to 16.
    EXPECT_EQ(Hex(std::span(bytes).subspan(48)),
              "03 93 02 41 42 43 FF CE 03 14 00 12 14 00 FF D0 01 93 02 20 00 14 00");
    EXPECT_EQ(Get16(&bytes[38]), 23);
    EXPECT_EQ(bytes.size(), 71U);
}

// --- Refusals and files -----------------------------------------------------------------------

struct Refused {
    bool WasRefused;
    std::string Message;
};

Refused Build(List& screen) {
    CaptureStderr capture;
    const McsBuffer buffer = DpsToMcs(screen);
    return {buffer.Data == nullptr && buffer.Size == 0, capture.Take()};
}

// Fields one behind the other in row 1, each 100 columns and 103 bytes with its text, no two
// alike, and one of `last` columns. The stream is theirs and 15 bytes: nothing is skipped before
// the line item of row 1.
void FillWithFields(List& screen, int count, int last) {
    for (int i = 0; i < count; ++i) {
        std::string text;
        while (text.size() < 100)
            text += std::to_string(i * 7919 + static_cast<int>(text.size())) + "/";
        AddField(screen, 1, 1, 100).InitialValue = text.substr(0, 100);
    }
    AddField(screen, 1, 1, last).InitialValue = "";
}

const std::string kDoesNotFit = "Form 'TEST': the MCS format does not fit in 5120 bytes\n";

TEST(Refusals, BytesThatFit) {
    // 48 + 49 x 103 + 15 = 5110, and 3 + n for the last field.
    const std::pair<int, std::size_t> cases[] = {{6, 5119}, {7, 5120}};
    for (const auto& [last, size] : cases) {
        Screen screen;
        FillWithFields(screen, 49, last);
        EXPECT_EQ(Uncompacted(screen).size(), size);
        const Refused refused = Build(screen);
        EXPECT_FALSE(refused.WasRefused);
        EXPECT_EQ(refused.Message, "");
    }
    Screen screen;
    FillWithFields(screen, 49, 8); // 5121
    const Refused refused = Build(screen);
    EXPECT_TRUE(refused.WasRefused);
    EXPECT_EQ(refused.Message, kDoesNotFit);
}

TEST(Refusals, OfWhatRunsBehindTheBuffer) {
    const auto refuses = [](const std::function<void(Screen&)>& fill) {
        Screen screen;
        fill(screen);
        const Refused refused = Build(screen);
        EXPECT_TRUE(refused.WasRefused);
        EXPECT_EQ(refused.Message, kDoesNotFit);
    };
    refuses([](Screen& s) { // an initial text
        AddField(s, 1, 1, 1).InitialValue = std::string(5070, 'X');
    });
    refuses([](Screen& s) { // a blanked width
        AddField(s, 1, 1, kHighest).InitialValue = "";
    });
    refuses([](Screen& s) { // a picture
        Field& field = AddField(s, 1, 1, kHighest);
        field.DataType = 3;
        field.Decimals = kHighest;
    });
    refuses([](Screen& s) { AddHeading(s, 1, 1, "A").Width = kHighest; });
    refuses([](Screen& s) { // skips
        s.TheForm->Width = kHighest;
        AddField(s, 1, kHighest, 1);
    });
    refuses([](Screen& s) { // skips to the end of a row
        s.TheForm->Width = kHighest;
        AddField(s, 2, 1, 1);
    });
    refuses([](Screen& s) { // repetitions
        AddField(ChildrenOf(AddRepeat(s, 1, 1, 400'000)), 1, 1, 1);
    });
    refuses([](Screen& s) { // children that end behind the last position
        AddField(s.Children(), 1, 1, 1).InitialValue = std::string(6000, 'X');
        AddHeading(s.Children(), 1, 1, "A");
    });
    refuses([](Screen& s) { // an item of negative width that would end in the header
        AddField(s, 1, 1, -9).InitialValue = "";
    });
}

TEST(Refusals, OfTooManyRepetitions) {
    Screen screen;
    Image& outer = AddRepeat(screen, 1, 1, kHighest);
    AddField(ChildrenOf(AddRepeat(ChildrenOf(outer), 1, 1, kHighest)), 1, 1, 1).Contents = 4;
    const Refused refused = Build(screen);
    EXPECT_TRUE(refused.WasRefused);
    EXPECT_EQ(refused.Message, "Form 'TEST': its repetitions come to too many records\n");
}

TEST(Refusals, OfAFormWithoutWidth) {
    Screen screen;
    screen.TheForm->Width = 0;
    EXPECT_EQ(Build(screen).Message, "Form 'TEST': its Width is 0\n");
    screen.TheForm->Name = std::nullopt;
    screen.TheForm->Number = 12;
    EXPECT_EQ(Build(screen).Message, "Form 'DPS00012': its Width is 0\n");
    screen.TheForm->Width = 80;
    Form& second = Append<Form>(screen, CreateForm());
    second.Name = "SECOND";
    second.Width = 0;
    EXPECT_EQ(Build(screen).Message, "Form 'SECOND': its Width is 0\n");
}

TEST(Refusals, OfAFormWithoutWidthAmongTheChildren) {
    Screen screen;
    List& children = screen.Children();
    Form& inner = Append<Form>(children, CreateForm());
    inner.Name = "INNER";
    inner.Width = 0;
    AddField(children, 1, 1, 1);
    AddHeading(children, 1, 1, "A");
    EXPECT_EQ(Build(screen).Message, "Form 'INNER': its Width is 0\n");
    EXPECT_EQ(ListCount(children), 3);
}

TEST(Walk, AFormAmongTheChildrenStartsTheStreamAgain) {
    Screen screen;
    List& children = screen.Children();
    AddField(children, 1, 1, 3);
    Form& inner = Append<Form>(children, CreateForm());
    inner.Name = "INNER";
    AddHeading(ChildrenOf(inner), 1, 10, "I");
    AddHeading(children, 1, 20, "O");
    // Column 4 stays. The inner form's heading at 10 is written first (6), and its own end moves
    // to row 24; there the outer form's heading follows, out of its place, before column 79 (57).
    EXPECT_EQ(StreamOf(screen), "C6 01 93 02 49 FF C7 00 14 00 15 14 00 FF CF 01 93 02 4F "
                                "01 93 02 20 00 14 00");
    EXPECT_EQ(TextOf(screen, 20), "INNER   ");
    EXPECT_EQ(ListCount(children), 3);
    EXPECT_EQ(ListCount(ChildrenOf(inner)), 1);
}

TEST(Refusals, OfAScreenWithoutAForm) {
    RecordList empty(ListCreate());
    EXPECT_EQ(Build(*empty).Message, "Form '': the screen does not begin with a form\n");
    AddField(*empty, 1, 1, 1);
    EXPECT_TRUE(Build(*empty).WasRefused);
}

TEST(Refusals, KeepTheHeadings) {
    Screen screen;
    List& children = screen.Children();
    AddField(children, 3, 1, 1);
    AddField(children, 4, 1, 1).InitialValue = std::string(6000, 'X');
    AddHeading(children, 1, 1, "A");
    AddHeading(children, 5, 1, "B");
    AddHeading(children, 30, 1, "C");
    EXPECT_TRUE(Build(screen).WasRefused);
    EXPECT_EQ(ChildTexts(screen), (std::vector<std::string>{"-", "-", "A", "B", "C"}));
}

TEST(McsFile, HoldsTheFormat) {
    const TemporaryDirectory directory;
    const std::string path = WriteFile(directory.File("A.t3z"), std::string(9000, 'x'));
    Screen screen;
    AddField(screen, 1, 1, 1);
    CaptureStderr errors;
    EXPECT_TRUE(McsFormatWrite(screen, path));
    EXPECT_EQ(errors.Take(), "");
    const std::string file = ReadFile(path);
    EXPECT_EQ(Bytes(file.begin(), file.end()), Compacted(screen));
    EXPECT_EQ(file.size(), 48U + 20U); // 3 + 17 bytes, of which nothing folds
}

TEST(McsFile, OfTheSizesAroundTheLargestThatIsLoaded) {
    // 48 + 24 x 103 + 15 = 2535, and 3 + n. The writer itself does not mind.
    const TemporaryDirectory directory;
    const std::pair<int, std::size_t> cases[] = {{22, 2560}, {23, 2561}};
    for (const auto& [last, size] : cases) {
        Screen screen;
        FillWithFields(screen, 24, last);
        CaptureStderr errors;
        EXPECT_TRUE(McsFormatWrite(screen, directory.File("A.t3z")));
        EXPECT_EQ(errors.Take(), "");
        EXPECT_EQ(ReadFile(directory.File("A.t3z")).size(), size);
    }
}

TEST(McsFile, ThatCannotBeOpenedIsNotBuiltFor) {
    const TemporaryDirectory directory;
    const std::string path = directory.File("none/A.t3z");
    Screen screen;
    AddHeading(screen.Children(), 30, 1, "never painted");
    CaptureStderr errors;
    EXPECT_FALSE(McsFormatWrite(screen, path));
    EXPECT_EQ(errors.Take(), path + ": No such file or directory\n");
    EXPECT_EQ(ListCount(screen.Children()), 1); // a build would have taken it out
}

TEST(McsFile, ThatIsADirectory) {
    const TemporaryDirectory directory;
    Screen screen;
    CaptureStderr errors;
    EXPECT_FALSE(McsFormatWrite(screen, directory.Path()));
    EXPECT_EQ(errors.Take(), directory.Path() + ": Is a directory\n");
}

TEST(McsFile, KeepsItsContentsWhenTheFormatDoesNotFit) {
    const TemporaryDirectory directory;
    const std::string path = WriteFile(directory.File("A.t3z"), "old");
    Screen screen;
    AddField(screen, 1, 1, 1).InitialValue = std::string(6000, 'X');
    CaptureStderr errors;
    EXPECT_FALSE(McsFormatWrite(screen, path));
    EXPECT_FALSE(McsFormatWrite(screen, directory.File("B.t3z")));
    EXPECT_EQ(errors.Take(), kDoesNotFit + kDoesNotFit);
    EXPECT_EQ(ReadFile(path), "old");
    EXPECT_FALSE(FileExists(directory.File("B.t3z")));
}

TEST(McsFile, AFullDiskIsReported) {
    if (!FileExists("/dev/full"))
        GTEST_SKIP() << "no /dev/full here";
    Screen screen;
    CaptureStderr errors;
    EXPECT_TRUE(McsFormatWrite(screen, "/dev/full"));
    EXPECT_EQ(errors.Take(), "/dev/full: No space left on device\n");
}

// --- Numbers ----------------------------------------------------------------------------------

TEST(BigEndian, Sixteen) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "00 00"},  {1, "00 01"},      {0x1234, "12 34"},
        {-1, "FF FF"}, {-32768, "80 00"}, {0x12345, "23 45"},
    };
    for (const auto& [value, hex] : cases) {
        Bytes bytes(2);
        Put16(bytes.data(), value);
        EXPECT_EQ(Hex(bytes), hex);
        EXPECT_EQ(Get16(bytes.data()), static_cast<std::int16_t>(value));
    }
}

TEST(BigEndian, ThirtyTwo) {
    const std::pair<std::int64_t, const char*> cases[] = {
        {0, "00 00 00 00"},
        {0x12345678, "12 34 56 78"},
        {-2, "FF FF FF FE"},
        {0x80000000, "80 00 00 00"},
    };
    for (const auto& [value, hex] : cases) {
        Bytes bytes(4);
        Put32(bytes.data(), value);
        EXPECT_EQ(Hex(bytes), hex);
        EXPECT_EQ(Get32(bytes.data()), static_cast<std::int32_t>(value));
    }
}

} // namespace
} // namespace grolof
