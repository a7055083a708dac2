#include "copybook/rules.h"

#include <climits>

#include "books.h"

namespace grolof {
namespace {

TEST(LevelPrefix, IndentsADpsLineByTwoForEveryFiveLevels) {
    EXPECT_EQ(DpsLevelPrefix(0), "           00 ");
    EXPECT_EQ(DpsLevelPrefix(5), "             05 ");
    EXPECT_EQ(DpsLevelPrefix(10), "               10 ");
    EXPECT_EQ(DpsLevelPrefix(15), "                 15 ");
    EXPECT_EQ(DpsLevelPrefix(20), "                   20 ");
    EXPECT_EQ(DpsLevelPrefix(100), std::string(51, ' ') + "100 ");
}

TEST(LevelPrefix, HasTwoBlanksBehindABmsLevelExceptLevelThree) {
    EXPECT_EQ(BmsLevelPrefix(2), "           02  ");
    EXPECT_EQ(BmsLevelPrefix(3), "            03 ");
    EXPECT_EQ(BmsLevelPrefix(5), "             05  ");
    EXPECT_EQ(BmsLevelPrefix(2).size(), BmsLevelPrefix(3).size());
}

TEST(NameColumns, ShrinkAsTheIndentationGrows) {
    EXPECT_EQ(FcaNameColumn(5), 25);
    EXPECT_EQ(FcaNameColumn(15), 21);
    EXPECT_EQ(FcaNameColumn(20), 19);
    EXPECT_EQ(DataNameColumn(5), 22);
    EXPECT_EQ(DataNameColumn(15), 18);
    EXPECT_EQ(DataNameColumn(20), 16);
}

TEST(ScreenName, IsTheNumberWhenNumericAndTheNameOtherwise) {
    Screen screen("MENU", 42);
    EXPECT_EQ(ScreenNameOf(screen.Head()), "MENU");
    screen.Head().NumericName = 1;
    EXPECT_EQ(ScreenNameOf(screen.Head()), "DPS00042");
    screen.Head().Number = 1234567;
    EXPECT_EQ(ScreenNameOf(screen.Head()), "DPS1234567");
    screen.Head().Number = -42;
    EXPECT_EQ(ScreenNameOf(screen.Head()), "DPS-00042");
    EXPECT_EQ(NumberPrefix(screen.Head()), "S-42-");
}

struct PictureCase {
    const char* Description;
    std::int32_t Width, Decimals, Currency, FloatingSign, TrailingSign, Delimiters, DataType;
    std::int64_t Length;
    const char* Picture;
};

class Pictures : public testing::TestWithParam<PictureCase> {};

TEST_P(Pictures, FollowFromTheFieldsSwitches) {
    const PictureCase& given = GetParam();
    Screen screen;
    Field& field = AddField(screen.Items(), "F", given.Width);
    field.Decimals = given.Decimals;
    field.FloatingCurrency = given.Currency;
    field.FloatingSign = given.FloatingSign;
    field.TrailingSign = given.TrailingSign;
    field.InsertDelimiters = given.Delimiters;
    field.DataType = given.DataType;
    EXPECT_EQ(DataLength(field), given.Length) << given.Description;
    EXPECT_EQ(PictureOf(field), given.Picture) << given.Description;
}

// Lengths by hand: width, less the point, the currency sign and the signs, less a quarter of
// what is left without decimals for the commas.
INSTANTIATE_TEST_SUITE_P(
    All, Pictures,
    testing::Values(
        PictureCase{"text", 10, 0, 0, 0, 0, 0, 1, 10, "PIC X(10)"},
        PictureCase{"letters", 10, 0, 0, 0, 0, 0, 2, 10, "PIC A(10)"},
        PictureCase{"number", 10, 0, 0, 0, 0, 0, 3, 10, "PIC 9(10)"},
        PictureCase{"any other type is a number", 4, 0, 0, 0, 0, 0, 0, 4, "PIC 9(4)"},
        PictureCase{"type 4 too", 4, 0, 0, 0, 0, 0, 4, 4, "PIC 9(4)"},
        PictureCase{"decimals", 10, 2, 0, 0, 0, 0, 3, 9, "PIC 9(7)V9(2)"},
        PictureCase{"currency takes one", 10, 0, 1, 0, 0, 0, 3, 9, "PIC 9(9)"},
        PictureCase{"leading sign", 10, 0, 0, 1, 0, 0, 3, 9, "PIC S9(9)"},
        PictureCase{"trailing sign", 10, 0, 0, 0, 1, 0, 3, 9, "PIC S9(9)"},
        PictureCase{"both signs", 10, 0, 0, 1, 1, 0, 3, 8, "PIC S9(8)"},
        PictureCase{"a switch of another value is set", 10, 0, 2, 0, -1, 0, 3, 8, "PIC S9(8)"},
        // 12 - point - sign = 10; (10 - 2) / 4 = 2 commas; 8 digits, 2 of them decimals
        PictureCase{"everything", 12, 2, 0, 1, 0, 1, 3, 8, "PIC S9(6)V9(2)"},
        // (7 - 0) / 4 = 1
        PictureCase{"one comma", 7, 0, 0, 0, 0, 1, 3, 6, "PIC 9(6)"},
        PictureCase{"no comma yet", 3, 0, 0, 0, 0, 1, 3, 3, "PIC 9(3)"},
        // 10 - point = 9; (9 - 3) / 4 = 1
        PictureCase{"comma beside decimals", 10, 3, 0, 0, 0, 1, 3, 8, "PIC 9(5)V9(3)"},
        PictureCase{"a text shrinks as well", 10, 2, 1, 1, 1, 1, 1, 5, "PIC X(5)"},
        PictureCase{"decimals below 0 are decimals", 5, -1, 0, 0, 0, 0, 3, 4, "PIC 9(5)V9(-1)"},
        PictureCase{"too narrow", 1, 1, 1, 1, 1, 0, 3, -3, "PIC S9(-4)V9(1)"},
        PictureCase{"width 0", 0, 0, 0, 0, 0, 0, 1, 0, "PIC X(0)"},
        PictureCase{"below 32 bits wraps", INT_MIN, 0, 1, 0, 0, 0, 1, -2147483649LL,
                    "PIC X(2147483647)"}));

struct LiteralCase {
    std::size_t Length;
    std::size_t Blanks;    ///< before the first piece
    std::size_t FirstSize; ///< characters of the first piece
    bool Continued;
};

class Literals : public BookTest, public testing::WithParamInterface<LiteralCase> {
protected:
    static std::string Text(std::size_t length) {
        std::string text;
        while (text.size() < length)
            text += static_cast<char>('a' + text.size() % 26);
        return text;
    }
};

TEST_P(Literals, StandBelowTheirItem) {
    const LiteralCase& given = GetParam();
    const std::string text = Text(given.Length);
    OutputFile out;
    ASSERT_TRUE(out.Open(Path()));
    PutValueBelow(out, text);
    ASSERT_TRUE(out.Close());
    std::string expected = " VALUE\n" + std::string(given.Blanks, ' ') + "'" +
                           text.substr(0, given.FirstSize) + "'.\n";
    if (given.Continued)
        expected += "      -    '" + text.substr(given.FirstSize) + "'.\n";
    EXPECT_EQ(testing_support::ReadFile(Path()), expected);
}

INSTANTIATE_TEST_SUITE_P(
    ByLength, Literals,
    testing::Values(LiteralCase{0, 27, 0, false}, LiteralCase{1, 27, 1, false},
                    LiteralCase{41, 27, 41, false}, LiteralCase{42, 12, 42, false},
                    LiteralCase{55, 12, 55, false}, LiteralCase{56, 12, 56, true},
                    LiteralCase{57, 12, 57, true}, LiteralCase{58, 12, 58, true},
                    LiteralCase{59, 12, 58, true}, LiteralCase{120, 12, 58, true}));

TEST_F(Literals, KeepTheirBytes) {
    OutputFile out;
    ASSERT_TRUE(out.Open(Path()));
    PutValueBelow(out, "O'Hara \xE9%s");
    ASSERT_TRUE(out.Close());
    EXPECT_EQ(testing_support::ReadFile(Path()),
              " VALUE\n                           'O'Hara \xE9%s'.\n");
}

TEST_F(Literals, PiecesAreWritten) {
    OutputFile out;
    ASSERT_TRUE(out.Open(Path()));
    out.PutPadded("ABC", 5);
    out.PutPadded("ABCDEF", 5);
    out.PutPadded("", -3);
    out.PutBlanks(70);
    out.PutNumber(INT_MIN);
    out.PutNumber(std::int64_t{INT_MAX} + 1);
    ASSERT_TRUE(out.Close());
    EXPECT_EQ(testing_support::ReadFile(Path()),
              "ABC  ABCDEF" + std::string(70, ' ') + "-2147483648-2147483648");
}

} // namespace
} // namespace grolof
