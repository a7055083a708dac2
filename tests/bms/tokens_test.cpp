// Statements into tokens, and what the macro parser expects of them.
#include "bms/tokens.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "bms/keywords.h"
#include "common/testing.h"

namespace grolof {
namespace {

using namespace testing_support;

// Sets a statement; the scan position is at its begin.
void Begin(std::string statement) {
    s_bms = BmsReader{};
    s_bms.FileName = "m.bms";
    s_bms.StatementLine = 7;
    s_bms.Operation = "DFHMDF";
    s_bms.Statement = std::move(statement);
}

struct Expected {
    BmsToken Kind;
    std::string Text;
    std::size_t Position; // behind the token
};

void ExpectTokens(const std::string& statement, const std::vector<Expected>& tokens) {
    Begin(statement);
    for (const Expected& token : tokens) {
        EXPECT_EQ(BmsNextToken(), token.Kind) << statement << " before " << token.Position;
        EXPECT_EQ(s_bms.Kind, token.Kind);
        EXPECT_EQ(s_bms.Token, token.Text) << statement;
        EXPECT_EQ(s_bms.Position, token.Position) << statement;
    }
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement) << statement;
    EXPECT_EQ(s_bms.Token, tokens.empty() ? "" : tokens.back().Text);
    EXPECT_EQ(s_bms.Position, statement.size());
}

constexpr auto kPunctuation = BmsToken::Punctuation;
constexpr auto kKeyword = BmsToken::Keyword;
constexpr auto kWord = BmsToken::Word;
constexpr auto kString = BmsToken::String;
constexpr auto kNumber = BmsToken::Number;

TEST(BmsTokens, KindsHaveTheirNumbers) {
    EXPECT_EQ(static_cast<int>(BmsToken::EndOfFile), 1);
    EXPECT_EQ(static_cast<int>(kPunctuation), 2);
    EXPECT_EQ(static_cast<int>(kKeyword), 3);
    EXPECT_EQ(static_cast<int>(kWord), 4);
    EXPECT_EQ(static_cast<int>(kString), 5);
    EXPECT_EQ(static_cast<int>(kNumber), 6);
    EXPECT_EQ(static_cast<int>(BmsToken::EndOfStatement), 7);
    EXPECT_EQ(static_cast<int>(BmsToken::None), 99);
}

TEST(BmsTokens, EndOfStatementOrOfFile) {
    for (const char* nothing : {"", "  ", " \t\r\v\f ", ",", " , ,, "})
        ExpectTokens(nothing, {});
    Begin("");
    s_bms.EndOfFile = true;
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfFile);
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfFile);
}

TEST(BmsTokens, AtTheEndTheTextStaysTheLastTokens) {
    Begin("LENGTH  ");
    BmsNextToken();
    EXPECT_EQ(s_bms.Keyword, BmsKey("LENGTH"));
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement);
    EXPECT_EQ(s_bms.Token, "LENGTH");
    EXPECT_EQ(s_bms.Keyword, 0);
    EXPECT_EQ(s_bms.Position, 8U);
}

TEST(BmsTokens, AMarkedStatementYieldsNone) {
    for (const char* statement : {"@", "@DFHMDF POS=1", "@ DFHMDF"}) {
        Begin(statement);
        s_bms.Position = 1;
        EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement);
        EXPECT_EQ(s_bms.Position, s_bms.Statement.size());
        EXPECT_EQ(s_bms.Token, "");
    }
    // elsewhere it is punctuation
    ExpectTokens("A@", {{kWord, "A", 1}, {kPunctuation, "@", 2}});
    ExpectTokens(" @", {{kPunctuation, "@", 2}});
}

TEST(BmsTokens, Numbers) {
    ExpectTokens("007", {{kNumber, "007", 3}});
    EXPECT_EQ(s_bms.Number, 7);
    ExpectTokens("12AB", {{kNumber, "12", 2}, {kWord, "AB", 4}});
    EXPECT_EQ(s_bms.Number, 12);
    ExpectTokens("5,10", {{kNumber, "5", 1}, {kNumber, "10", 4}});
    ExpectTokens("-5", {{kPunctuation, "-", 1}, {kNumber, "5", 2}});
    ExpectTokens("3.5", {{kNumber, "3", 1}, {kPunctuation, ".", 2}, {kNumber, "5", 3}});
}

TEST(BmsTokens, NumbersBeyondThirtyTwoBitsWrap) {
    for (const auto& [digits, value] :
         std::vector<std::pair<std::string, int>>{{"2147483647", 2147483647},
                                                  {"2147483648", -2147483647 - 1},
                                                  {"4294967296", 0},
                                                  {"4294967301", 5},
                                                  {"9223372036854775807", -1},
                                                  {"9223372036854775808", -1},
                                                  {std::string(40, '9'), -1}}) {
        ExpectTokens(digits, {{kNumber, digits, digits.size()}});
        EXPECT_EQ(s_bms.Number, value) << digits;
    }
}

TEST(BmsTokens, TerminalTypesAreWords) {
    ExpectTokens("TERM=3270-2",
                 {{kKeyword, "TERM", 4}, {kPunctuation, "=", 5}, {kWord, "3270-2", 11}});
    ExpectTokens("3270-1", {{kWord, "3270-1", 6}});
    ExpectTokens("3270-12", {{kWord, "3270-12", 7}});
    ExpectTokens("3270-2A&B", {{kWord, "3270-2A&B", 9}});
    ExpectTokens("3270-3", {{kNumber, "3270", 4}, {kPunctuation, "-", 5}, {kNumber, "3", 6}});
    ExpectTokens("3270", {{kNumber, "3270", 4}});
    ExpectTokens("13270-1", {{kNumber, "13270", 5}, {kPunctuation, "-", 6}, {kNumber, "1", 7}});
}

TEST(BmsTokens, Words) {
    ExpectTokens("A-B_C&D9 X", {{kWord, "A-B_C&D9", 8}, {kWord, "X", 10}});
    ExpectTokens("&SYSPARM", {{kWord, "&SYSPARM", 8}});
    ExpectTokens("&1", {{kWord, "&1", 2}});
    ExpectTokens("& A", {{kPunctuation, "&", 1}, {kWord, "A", 3}});
    ExpectTokens("&&A", {{kPunctuation, "&", 1}, {kWord, "&A", 3}});
    ExpectTokens("_A", {{kPunctuation, "_", 1}, {kWord, "A", 2}});
    ExpectTokens("A--", {{kWord, "A--", 3}});
    ExpectTokens("A&", {{kWord, "A&", 2}});
    ExpectTokens("&", {{kPunctuation, "&", 1}});
}

TEST(BmsTokens, Keywords) {
    ExpectTokens("DFHMDF dfhmdf DfHmDi",
                 {{kKeyword, "DFHMDF", 6}, {kKeyword, "dfhmdf", 13}, {kKeyword, "DfHmDi", 20}});
    Begin("dfhmdf X");
    BmsNextToken();
    EXPECT_EQ(s_bms.Keyword, 15);
    BmsNextToken();
    EXPECT_EQ(s_bms.Keyword, 0);
    ExpectTokens("POS-1 &POS POSX",
                 {{kWord, "POS-1", 5}, {kWord, "&POS", 10}, {kWord, "POSX", 15}});
}

TEST(BmsTokens, Strings) {
    ExpectTokens("'ABC'", {{kString, "ABC", 5}});
    ExpectTokens("\"ABC\"", {{kString, "ABC", 5}});
    ExpectTokens("'IT''S'", {{kString, "IT'S", 7}});
    ExpectTokens("\"IT'S\"", {{kString, "IT'S", 6}});
    ExpectTokens("\"A\"\"B\"", {{kString, "A\"B", 6}});
    ExpectTokens("'A\"B'", {{kString, "A\"B", 5}});
    ExpectTokens("''", {{kString, "", 2}});
    ExpectTokens("''''", {{kString, "'", 4}});
    ExpectTokens("'POS'", {{kString, "POS", 5}}); // never a keyword
    ExpectTokens("'A,B'", {{kString, "A,B", 5}});
    ExpectTokens("'\xE4\xF6\xFC'", {{kString, "\xE4\xF6\xFC", 5}});
}

TEST(BmsTokens, WhiteSpaceBehindAStringIsPassed) {
    ExpectTokens("'A' \t ,X", {{kString, "A", 6}, {kWord, "X", 8}});
    ExpectTokens("'A'  ", {{kString, "A", 5}});
}

TEST(BmsTokens, UnclosedStringsEndWithTheStatement) {
    ExpectTokens("'ABC", {{kString, "ABC", 4}});
    ExpectTokens("'", {{kString, "", 1}});
    ExpectTokens("'AB''", {{kString, "AB'", 5}});
    ExpectTokens("'AB\"  ", {{kString, "AB\"  ", 6}});
}

TEST(BmsTokens, StringsAreJoinedByAmpersands) {
    ExpectTokens("'A' & 'B'", {{kString, "AB", 9}});
    ExpectTokens("'A'&'B'", {{kString, "AB", 7}});
    ExpectTokens("'A' & \"B\" & 'C'", {{kString, "ABC", 15}});
    ExpectTokens("'A' & , 'B'", {{kString, "AB", 11}}); // commas are passed over here too
    ExpectTokens("'A' & 'B", {{kString, "AB", 8}});
}

TEST(BmsTokens, AJoinedTokenIsOfTheLastPiecesKind) {
    ExpectTokens("'A' & WORD", {{kWord, "AWORD", 10}});
    ExpectTokens("'A' & POS X", {{kKeyword, "APOS", 9}, {kWord, "X", 11}});
    ExpectTokens("'A' & 15", {{kNumber, "A15", 8}});
    EXPECT_EQ(s_bms.Number, 15);
    ExpectTokens("'A' & (", {{kPunctuation, "A(", 7}});
    ExpectTokens("'A' && 'B'", {{kPunctuation, "A&", 6}, {kString, "B", 10}});
    ExpectTokens("'A'&&B", {{kWord, "A&B", 6}});
    Begin("'A' & POS");
    BmsNextToken();
    EXPECT_EQ(s_bms.Keyword, BmsKey("POS"));
}

TEST(BmsTokens, AnAmpersandAtTheEndLeavesNoString) {
    Begin("'A' & ");
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement);
    EXPECT_EQ(s_bms.Token, "A");
}

TEST(BmsTokens, PunctuationIsOneCharacter) {
    ExpectTokens("=(*.)", {{kPunctuation, "=", 1},
                           {kPunctuation, "(", 2},
                           {kPunctuation, "*", 3},
                           {kPunctuation, ".", 4},
                           {kPunctuation, ")", 5}});
    ExpectTokens("\xE4", {{kPunctuation, "\xE4", 1}});
}

TEST(BmsTokens, CommasAreNeverSeen) {
    ExpectTokens("A,B ,, C,", {{kWord, "A", 1}, {kWord, "B", 3}, {kWord, "C", 8}});
}

// --- expectations ------------------------------------------------------------------------------

struct Expectation {
    const char* Name;
    void (*Read)();
    const char* Accepted;                              // statement it takes whole
    int Code;                                          // with which it rejects
    std::vector<std::pair<const char*, int>> Rejected; // statement, column of the message
};

class BmsExpectations : public ::testing::Test {
    ScopedHost m_host;
};

TEST_F(BmsExpectations, ReadWhatTheyNameOrEndTheRun) {
    const std::vector<Expectation> expectations = {
        {"punctuation",
         [] { BmsExpectPunctuation(); },
         "=",
         796,
         {{"X", 1}, {"POS", 3}, {"5", 1}, {"'='", 3}, {"", 0}}},
        {"=",
         [] { BmsExpectEquals(); },
         "=",
         804,
         {{"(", 1}, {"X", 1}, {"5", 1}, {"'='", 3}, {"", 0}}},
        {")",
         [] { BmsExpectClose(); },
         ")",
         812,
         {{"(", 1}, {"X", 1}, {"5", 1}, {"')'", 3}, {"", 0}}},
        {"number",
         [] { EXPECT_EQ(BmsExpectNumber(), 5); },
         "5",
         789,
         {{"X", 1}, {"=", 1}, {"'5'", 3}, {"-5", 1}, {"", 0}}},
        {"= string",
         [] { EXPECT_EQ(BmsExpectEqualsString(), "A"); },
         "='A'",
         782,
         {{"=X", 2}, {"=5", 2}, {"=POS", 4}, {"=(", 2}, {"=", 1}, {"='A' & B", 8}, {"='A' & ", 7}}},
        {"= string", [] { BmsExpectEqualsString(); }, "=''", 804, {{"'A'", 3}, {"", 0}}},
        {"= number",
         [] { EXPECT_EQ(BmsExpectEqualsNumber(), 5); },
         "=5",
         789,
         {{"=X", 2}, {"=(5)", 2}, {"='5'", 4}, {"=", 1}}},
        {"= number", [] { BmsExpectEqualsNumber(); }, "=5", 804, {{"5", 1}, {"(5)", 1}, {"", 0}}},
        {"= any", [] { BmsExpectEqualsAny(); }, "=X", 804, {{"X", 1}, {"5", 1}, {"", 0}}},
        {"operand",
         [] { EXPECT_EQ(BmsNextOperand(), 52); },
         ",, POS",
         773,
         {{"X", 1}, {"=", 1}, {"5", 1}, {"'POS'", 5}, {",)", 2}}},
        {"values", [] { BmsReadValues(); }, "=(A,B)", 804, {{"(A)", 1}, {"A", 1}, {"", 0}}},
    };
    for (const Expectation& expectation : expectations) {
        Begin(expectation.Accepted);
        EXPECT_EQ(StatusOf(expectation.Read), -1) << expectation.Name;
        EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement) << expectation.Name;
        for (const auto& [statement, column] : expectation.Rejected) {
            Begin(statement);
            CaptureStdout out;
            EXPECT_EQ(StatusOf(expectation.Read), 1) << expectation.Name << ": " << statement;
            EXPECT_EQ(out.Take(), "Line     7: m.bms; DFHMDF Syntax Error (" +
                                      std::to_string(expectation.Code) + ") at column " +
                                      std::to_string(column) + " (" + s_bms.Token + ")\n")
                << statement;
        }
    }
}

TEST_F(BmsExpectations, AnyTokenBehindAnEqualsSign) {
    for (const char* statement : {"=X", "=POS", "=5", "='A'", "=(", "="}) {
        Begin(statement);
        EXPECT_EQ(StatusOf([] { BmsExpectEqualsAny(); }), -1);
        EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement) << statement;
    }
}

TEST_F(BmsExpectations, NoOperandAtTheEnd) {
    for (const char* statement : {"", " , ", ",,"}) {
        Begin(statement);
        EXPECT_EQ(BmsNextOperand(), 0);
    }
}

// --- value lists -------------------------------------------------------------------------------

std::vector<std::string> ValuesOf(const std::string& statement) {
    Begin(statement);
    BmsReadValues();
    return {s_bms.Values.begin(),
            s_bms.Values.begin() + static_cast<std::ptrdiff_t>(s_bms.ValueCount)};
}

// A list "(1,2,...n)" behind an "=".
std::string ListOf(int n) {
    std::string list = "=(";
    for (int i = 1; i <= n; ++i)
        list += std::to_string(i) + ",";
    list.back() = ')';
    return list;
}

using Values = std::vector<std::string>;

TEST(BmsValues, OneValueOrSeveral) {
    EXPECT_EQ(ValuesOf("=A"), Values{"A"});
    EXPECT_EQ(ValuesOf("='A B'"), Values{"A B"});
    EXPECT_EQ(ValuesOf("=)"), Values{")"});
    EXPECT_EQ(ValuesOf("=(A)"), Values{"A"});
    EXPECT_EQ(ValuesOf("=(A,'B', 5 C)"), (Values{"A", "B", "5", "C"}));
    EXPECT_EQ(ValuesOf("=()"), Values{});
    EXPECT_EQ(ValuesOf("=((A)"), (Values{"(", "A"}));
    EXPECT_EQ(ValuesOf("=(A=B)"), (Values{"A", "=", "B"}));
    EXPECT_EQ(ValuesOf("='('"), Values{"("}); // a string opens nothing
}

TEST(BmsValues, WithoutAValueTheTextOfTheLastTokenStands) {
    EXPECT_EQ(ValuesOf("="), Values{"="});
}

TEST(BmsValues, FifteenLeaveNothing) {
    EXPECT_EQ(ValuesOf(ListOf(15)).size(), 15U);
    EXPECT_EQ(BmsNextToken(), BmsToken::EndOfStatement);
}

TEST(BmsValues, SixteenLeaveTheClosingParenthesis) {
    EXPECT_EQ(ValuesOf(ListOf(16)).size(), 16U);
    EXPECT_EQ(BmsNextToken(), BmsToken::Punctuation);
    EXPECT_EQ(s_bms.Token, ")");
}

TEST(BmsValues, MoreThanSixteenStayInTheStatement) {
    EXPECT_EQ(ValuesOf(ListOf(17)).back(), "16");
    EXPECT_EQ(BmsNextToken(), BmsToken::Number);
    EXPECT_EQ(s_bms.Token, "17");
}

TEST(BmsValues, AnUnclosedListRepeatsItsLastToken) {
    EXPECT_EQ(ValuesOf("=(A,B"), (Values{"A", "B", "B", "B", "B", "B", "B", "B", "B", "B", "B", "B",
                                         "B", "B", "B", "B"}));
    EXPECT_EQ(ValuesOf("=("), Values(16, "("));
}

TEST(BmsValues, LongValuesAreKeptWhole) {
    for (const std::size_t n : {47U, 48U, 200U})
        EXPECT_EQ(ValuesOf("=(" + std::string(n, 'A') + ")"), Values{std::string(n, 'A')});
}

} // namespace
} // namespace grolof
