#include "support/text.h"

#include <clocale>
#include <ostream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace grolof {
namespace {

struct Comparison {
    std::string_view A, B;
    int Result;
};

class Compare : public testing::TestWithParam<Comparison> {};

TEST_P(Compare, GivesTheDifferenceOfTheUpperCaseForms) {
    const auto& [a, b, result] = GetParam();
    EXPECT_EQ(TextCompareNoCase(a, b), result) << a << " with " << b;
    EXPECT_EQ(TextCompareNoCase(b, a), -result) << b << " with " << a;
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Compare,
    testing::Values(Comparison{"", "", 0}, Comparison{"A", "", 'A'}, Comparison{"a", "", 'A'},
                    Comparison{"screen", "SCREEN", 0}, Comparison{"Screen", "sCREENs", -'S'},
                    Comparison{"abc", "abd", -1}, Comparison{"a1", "A2", -1},
                    // Folding is upwards: "_" stands behind "Z", not before "a".
                    Comparison{"_", "a", '_' - 'A'},
                    // Bytes of 128 and above count as such, not as negative.
                    Comparison{"\xE9", "z", 0xE9 - 'Z'}, Comparison{"\xFF", "", 0xFF}));

TEST(Compare, StopsAtAnEmbeddedEnd) {
    EXPECT_EQ(TextCompareNoCase(std::string_view("a\0b", 3), std::string_view("A\0c", 3)), 0);
}

TEST(CompareN, LooksAtNoMoreThanItsCount) {
    EXPECT_EQ(TextCompareNoCaseN("spaceX", "SPACE ", 5), 0);
    EXPECT_EQ(TextCompareNoCaseN("spaceX", "SPACE ", 6), 'X' - ' ');
    EXPECT_EQ(TextCompareNoCaseN("a", "b", 0), 0);
    EXPECT_EQ(TextCompareNoCaseN("a", "b", 1), -1);
}

TEST(CompareN, EndsWithTheTexts) {
    EXPECT_EQ(TextCompareNoCaseN("dps", "DPS", 1000), 0);
    EXPECT_EQ(TextCompareNoCaseN("dpsx", "DPS", 1000), 'X');
    EXPECT_EQ(TextCompareNoCaseN("dp", "DPS", 3), -'S');
    EXPECT_EQ(TextCompareNoCaseN("", "", static_cast<std::size_t>(-1)), 0);
}

struct Conversion {
    std::string_view Text;
    int Count;
    std::string_view Upper, Lower;
};

class Convert : public testing::TestWithParam<Conversion> {};

TEST_P(Convert, ChangesTheFirstLettersOnly) {
    const Conversion& row = GetParam();
    std::string upper(row.Text);
    std::string lower(row.Text);
    TextToUpper(upper, row.Count);
    TextToLower(lower, row.Count);
    EXPECT_EQ(upper, row.Upper);
    EXPECT_EQ(lower, row.Lower);
}

INSTANTIATE_TEST_SUITE_P(
    Counts, Convert,
    testing::Values(Conversion{"zor$Y$", -1, "ZOR$Y$", "zor$y$"},
                    Conversion{"zor$Y$", -77, "ZOR$Y$", "zor$y$"},
                    Conversion{"aBcD", 0, "aBcD", "aBcD"}, Conversion{"aBcD", 2, "ABcD", "abcD"},
                    Conversion{"aBcD", 4, "ABCD", "abcd"}, Conversion{"aBcD", 99, "ABCD", "abcd"},
                    Conversion{"", -1, "", ""}, Conversion{"", 3, "", ""},
                    Conversion{"@[`{09", -1, "@[`{09", "@[`{09"},
                    // In the locale of the tests no byte above 127 is a letter.
                    Conversion{"\xE9\xC9", -1, "\xE9\xC9", "\xE9\xC9"}));

TEST(Convert, WholeTextIsTheDefault) {
    std::string text = "Menu";
    TextToUpper(text);
    EXPECT_EQ(text, "MENU");
    TextToLower(text);
    EXPECT_EQ(text, "menu");
}

struct Digits {
    const char* Text;
    int Value;
};

class Number : public testing::TestWithParam<Digits> {};

TEST_P(Number, IsTheDigitsAtTheStart) {
    EXPECT_EQ(NumberOf(GetParam().Text), GetParam().Value) << GetParam().Text;
}

INSTANTIATE_TEST_SUITE_P(Texts, Number,
                         testing::Values(Digits{"", 0}, Digits{"x", 0}, Digits{"-", 0},
                                         Digits{"007", 7}, Digits{" \t12", 12}, Digits{"+3x", 3},
                                         Digits{"-2", -2}, Digits{"- 2", 0}, Digits{"0x10", 0},
                                         Digits{"2147483647", 2147483647},
                                         // 32 bits wrap ...
                                         Digits{"2147483648", -2147483647 - 1},
                                         Digits{"4294967295", -1}, Digits{"4294967297", 1},
                                         Digits{"9223372036854775807", -1},
                                         // ... after 63 bits were clamped.
                                         Digits{"9223372036854775808", -1},
                                         Digits{"1234567890123456789012345678901234567890", -1},
                                         Digits{"-1234567890123456789012345678901234567890", 0}));

TEST(BeginsAboveBlank, WantsACharacterAboveTheBlank) {
    EXPECT_TRUE(BeginsAboveBlank("A"));
    EXPECT_TRUE(BeginsAboveBlank("! "));
    EXPECT_TRUE(BeginsAboveBlank("\x7F"));
    EXPECT_FALSE(BeginsAboveBlank(""));
    EXPECT_FALSE(BeginsAboveBlank(" A"));
    EXPECT_FALSE(BeginsAboveBlank("\tA"));
    EXPECT_FALSE(BeginsAboveBlank("\x80"));
    EXPECT_FALSE(BeginsAboveBlank("\xE9t\xE9"));
}

TEST(UpperOf, TakesEveryByte) {
    EXPECT_EQ(UpperOf('a'), 'A');
    EXPECT_EQ(UpperOf('\xFF'), 0xFF);
    EXPECT_EQ(UpperOf('\0'), 0);
}

} // namespace
} // namespace grolof
