#include "fldp/lexer.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "source.h"

namespace grolof {
namespace {

using namespace fldp_test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FldpLexer : public SourceTest {
protected:
    // The token as "kind text", with "#code" of a keyword and "=value" of a number.
    static std::string LastToken() {
        const FldpToken& token = FldpLastToken();
        std::string text = std::to_string(static_cast<int>(token.Kind)) + " " + token.Text;
        if (token.Kind == FldpKind::Keyword)
            text += " #" + std::to_string(static_cast<int>(token.Keyword));
        if (token.Kind == FldpKind::Number)
            text += " =" + std::to_string(token.Value);
        return text;
    }

    // All tokens of a source up to its end; `e` stands for the END_STATEMENT of a line's end.
    std::vector<std::string> Tokens(std::string_view text) {
        std::vector<std::string> tokens;
        EXPECT_TRUE(FldpOpen(Write(text)));
        while (FldpNextToken() != FldpKind::EndOfInput)
            tokens.push_back(LastToken() == "3 END_STATEMENT #58" ? "e" : LastToken());
        return tokens;
    }

    // The text of the first token.
    std::string First(std::string_view text) {
        EXPECT_TRUE(FldpOpen(Write(text)));
        FldpNextToken();
        return FldpLastToken().Text;
    }

    // The error line when the n-th token is refused.
    std::string ErrorAt(std::string_view text, int n) {
        EXPECT_TRUE(FldpOpen(Write(text)));
        CaptureStdout out;
        for (int i = 0; i < n; ++i)
            FldpNextToken();
        EXPECT_EQ(StatusOf([] { FldpSyntaxError(); }), 1);
        return WithoutDirectory(out.Take());
    }
};

TEST_F(FldpLexer, NumbersTheKinds) {
    EXPECT_THAT(Tokens("FORM abc 'lit' 12 = \n"),
                ElementsAre("3 FORM #66", "4 abc", "5 lit", "6 12 =12", "2 =", "e"));
    EXPECT_EQ(static_cast<int>(FldpLastToken().Kind), 1);
    EXPECT_TRUE(FldpOpen(Write("FORM\n")));
    EXPECT_EQ(static_cast<int>(FldpLastToken().Kind), 99);
}

TEST_F(FldpLexer, KeepsTheCaseOfWords) {
    EXPECT_THAT(Tokens("form Form FORM FORMS Forms FOR\n"),
                ElementsAre("3 form #66", "3 Form #66", "3 FORM #66", "4 FORMS", "4 Forms",
                            "3 FOR #66", "e"));
}

TEST_F(FldpLexer, WordsRunOverLettersDigitsAndUnderscores) {
    EXPECT_THAT(Tokens("A1_B-C_ _X END_FORM_\n"),
                ElementsAre("4 A1_B", "2 -", "4 C_", "2 _", "4 X", "4 END_FORM_", "e"));
}

TEST_F(FldpLexer, NumbersRunOverDigits) {
    EXPECT_THAT(Tokens("007 12AB 1_2 -5\n"), ElementsAre("6 007 =7", "6 12 =12", "4 AB", "6 1 =1",
                                                         "2 _", "6 2 =2", "2 -", "6 5 =5", "e"));
}

// 2^31 - 1 is the last that fits; 2^32 + 5 keeps its low half; 2^63 - 1 and beyond is -1.
TEST_F(FldpLexer, NumbersBeyond32BitsWrap) {
    EXPECT_THAT(Tokens("2147483647 2147483648 4294967301 9223372036854775807\n"),
                ElementsAre("6 2147483647 =2147483647", "6 2147483648 =-2147483648",
                            "6 4294967301 =5", "6 9223372036854775807 =-1", "e"));
    const std::string forty(40, '9');
    EXPECT_THAT(Tokens(forty + "\n"), ElementsAre("6 " + forty + " =-1", "e"));
}

TEST_F(FldpLexer, EveryOtherCharacterIsPunctuation) {
    EXPECT_THAT(Tokens("=(),.;@&!\x80\x01 \n"),
                ElementsAre("2 =", "2 (", "2 )", "2 ,", "2 .", "2 ;", "2 @", "2 &", "2 !", "2 \x80",
                            "2 \x01", "e"));
}

TEST_F(FldpLexer, SkipsWhiteSpace) {
    EXPECT_THAT(Tokens(" \t\v\f\rA\t B\n"), ElementsAre("4 A", "4 B", "e"));
}

TEST_F(FldpLexer, EveryLineEndsItsStatement) {
    EXPECT_THAT(Tokens("A\nB\r\nC  \n\n   \n\r\n"),
                ElementsAre("4 A", "e", "4 B", "e", "4 C", "e", "e", "e", "e"));
}

TEST_F(FldpLexer, StatementEndMayBeSpelledOut) {
    EXPECT_THAT(Tokens("A END_STATEMENT B end_statement\n"),
                ElementsAre("4 A", "e", "4 B", "3 end_statement #58", "e"));
}

TEST_F(FldpLexer, AContinuedLineHasNoStatementEnd) {
    EXPECT_THAT(Tokens("A &\nB\n"), ElementsAre("4 A", "4 B", "e"));
    EXPECT_THAT(Tokens("A&  \r\nB\n"), ElementsAre("4 A", "4 B", "e"));
    EXPECT_THAT(Tokens("&\nB\n"), ElementsAre("4 B", "e"));
    EXPECT_THAT(Tokens("A & B\n"), ElementsAre("4 A", "2 &", "4 B", "e"));
    // Only the last mark continues.
    EXPECT_THAT(Tokens("A &&\nB\n"), ElementsAre("4 A", "2 &", "4 B", "e"));
    // Line ends go first, then blanks: what else stands between keeps the mark from being last.
    EXPECT_THAT(Tokens("A &\r \nB\n"), ElementsAre("4 A", "2 &", "e", "4 B", "e"));
    EXPECT_THAT(Tokens("A &\t\nB\n"), ElementsAre("4 A", "2 &", "e", "4 B", "e"));
}

TEST_F(FldpLexer, CommentLinesHaveNoTokens) {
    EXPECT_THAT(Tokens("@ anything 'at all\n"), IsEmpty());
    EXPECT_THAT(Tokens("A &\n@ comment\nB\n@\n"), ElementsAre("4 A", "4 B", "e"));
    EXPECT_THAT(Tokens("@ continued comment &\nB\n"), ElementsAre("4 B", "e"));
    // In any other column the mark is punctuation.
    EXPECT_THAT(Tokens(" @ A\n"), ElementsAre("2 @", "4 A", "e"));
}

TEST_F(FldpLexer, LiteralsHaveEitherQuote) {
    EXPECT_THAT(Tokens("'IT''S' \"IT'S\" \"A\"\"B\" '\"' '' \"\" '''' ''''''\n"),
                ElementsAre("5 IT'S", "5 IT'S", "5 A\"B", "5 \"", "5 ", "5 ", "5 '", "5 ''", "e"));
    EXPECT_THAT(Tokens("'a' 'b'\n"), ElementsAre("5 a", "5 b", "e"));
}

// The statement end stands one character behind the text, and that character, the first one
// stripped, belongs to the open literal.
TEST_F(FldpLexer, AnOpenLiteralTakesTheStatementEnd) {
    EXPECT_THAT(Tokens("'ABC\nX\n"), ElementsAre("5 ABC\nEND_STATEMENT", "4 X", "e"));
    EXPECT_THAT(Tokens("'ABC\r\nX\n"), ElementsAre("5 ABC\rEND_STATEMENT", "4 X", "e"));
    EXPECT_THAT(Tokens("'ABC   \nX\n"), ElementsAre("5 ABC END_STATEMENT", "4 X", "e"));
    EXPECT_THAT(Tokens("'ABC &\nX\n"), ElementsAre("5 ABC  ", "4 X", "e"));
    EXPECT_THAT(Tokens("'\nX\n"), ElementsAre("5 \nEND_STATEMENT", "4 X", "e"));
    EXPECT_THAT(Tokens("'A''\nX\n"), ElementsAre("5 A'\nEND_STATEMENT", "4 X", "e"));
}

TEST_F(FldpLexer, ConcatenationJoinsLiterals) {
    EXPECT_THAT(Tokens("'ABC' & 'DEF'\n"), ElementsAre("5 ABCDEF", "e"));
    EXPECT_THAT(Tokens("'A'&\"B\"  &  'C' D\n"), ElementsAre("5 ABC", "4 D", "e"));
    EXPECT_THAT(Tokens("'A' &&\n 'B' & &\n@ between\n'C'\n"), ElementsAre("5 ABC", "e"));
    // One mark at the end of the line only continues the statement.
    EXPECT_THAT(Tokens("'A' &\n'B'\n"), ElementsAre("5 A", "5 B", "e"));
}

TEST_F(FldpLexer, ConcatenationTakesTheKindOfWhatFollows) {
    EXPECT_THAT(Tokens("'A' & FORM\n"), ElementsAre("3 AFORM #66", "e"));
    EXPECT_THAT(Tokens("'FO' & RM\n"), ElementsAre("4 FORM", "e"));
    EXPECT_THAT(Tokens("'1' & 23\n"), ElementsAre("6 123 =23", "e"));
    EXPECT_THAT(Tokens("'A' & =\n"), ElementsAre("2 A=", "e"));
    EXPECT_THAT(Tokens("'A' & & 'B'\n"), ElementsAre("2 A&", "5 B", "e"));
    // Only a literal is joined on.
    EXPECT_THAT(Tokens("'A' & B & C\n"), ElementsAre("4 AB", "2 &", "4 C", "e"));
}

TEST_F(FldpLexer, ALastLineWithoutLineEndIsDropped) {
    EXPECT_THAT(Tokens("A\nEND_FORM"), ElementsAre("4 A", "e"));
    EXPECT_THAT(Tokens(""), IsEmpty());
    EXPECT_THAT(Tokens("A"), IsEmpty());
    EXPECT_EQ(FldpLineNumber(), 0);
    EXPECT_THAT(Tokens(std::string(253, 'A')), IsEmpty());
}

TEST_F(FldpLexer, ALastLineThatFillsTheReadIsKept) {
    EXPECT_THAT(Tokens(std::string(254, 'A')), ElementsAre("4 " + std::string(254, 'A'), "e"));
    EXPECT_THAT(Tokens(std::string(255, 'A')), ElementsAre("4 " + std::string(254, 'A'), "e"));
}

TEST_F(FldpLexer, LongLinesAreReadInPieces) {
    const std::string piece(254, 'A');
    EXPECT_THAT(Tokens(piece + "BC\n"), ElementsAre("4 " + piece, "e", "4 BC", "e"));
    EXPECT_EQ(FldpLineNumber(), 2);
    // The line end alone is a piece as well.
    EXPECT_THAT(Tokens(piece + "\nB\n"), ElementsAre("4 " + piece, "e", "e", "4 B", "e"));
    EXPECT_THAT(Tokens(std::string(253, 'A') + "\nB\n"),
                ElementsAre("4 " + std::string(253, 'A'), "e", "4 B", "e"));
    // A mark where the piece ends continues it; a long comment is one only in its first piece.
    EXPECT_THAT(Tokens(std::string(253, 'A') + "&B\n"),
                ElementsAre("4 " + std::string(253, 'A'), "4 B", "e"));
    EXPECT_THAT(Tokens("@" + std::string(253, 'c') + "B\n"), ElementsAre("4 B", "e"));
    // Nothing was stripped that an open literal could take: a blank stands there.
    EXPECT_EQ(First("'" + std::string(253, 'x') + "y\n"), std::string(253, 'x') + " END_STATEMENT");
}

TEST_F(FldpLexer, ANulEndsItsLine) {
    using namespace std::string_view_literals;
    EXPECT_THAT(Tokens("A\0B C\nD\n"sv), ElementsAre("4 A", "e", "4 D", "e"));
    EXPECT_THAT(Tokens("\0\nD\n"sv), ElementsAre("e", "4 D", "e"));
    EXPECT_THAT(Tokens("'A\0'\nD\n"sv), ElementsAre("5 A END_STATEMENT", "4 D", "e"));
}

TEST_F(FldpLexer, EndOfInputKeepsTheTextAndRepeats) {
    EXPECT_THAT(Tokens("A B &\n"), ElementsAre("4 A", "4 B"));
    EXPECT_EQ(LastToken(), "1 B");
    EXPECT_EQ(FldpNextToken(), FldpKind::EndOfInput);
    EXPECT_EQ(LastToken(), "1 B");
    // What was gathered for a concatenation is the text when nothing follows.
    EXPECT_THAT(Tokens("X 'AB' &&\n"), ElementsAre("4 X"));
    EXPECT_EQ(LastToken(), "1 AB");
}

TEST_F(FldpLexer, EndedInputGivesNoMoreTokensOfTheLine) {
    EXPECT_TRUE(FldpOpen(Write("A B\nC\n")));
    EXPECT_EQ(FldpNextToken(), FldpKind::Name);
    FldpEndInput();
    EXPECT_EQ(FldpNextToken(), FldpKind::EndOfInput);
    EXPECT_EQ(FldpLastToken().Text, "A");
    // Opening resets it.
    EXPECT_THAT(Tokens("D\n"), ElementsAre("4 D", "e"));
}

TEST_F(FldpLexer, OpenReportsAMissingFile) {
    const std::string path = m_directory.File("missing");
    CaptureStderr error;
    EXPECT_FALSE(FldpOpen(path));
    EXPECT_EQ(error.Take(), path + ": No such file or directory\n");
    EXPECT_EQ(FldpNextToken(), FldpKind::EndOfInput);
}

TEST_F(FldpLexer, OpenReadsADirectoryAsEmpty) {
    EXPECT_TRUE(FldpOpen(m_directory.Path()));
    CaptureStderr error;
    EXPECT_EQ(FldpNextToken(), FldpKind::EndOfInput);
    EXPECT_EQ(error.Take(), m_directory.Path() + ": Is a directory\n");
}

TEST_F(FldpLexer, ErrorLineNamesLineFileColumnAndText) {
    EXPECT_EQ(ErrorAt("FORM X\n", 2), "Line     1: x.fldp; Syntax Error at column 6 (X)\n");
    EXPECT_EQ(ErrorAt("FORM X\n", 1), "Line     1: x.fldp; Syntax Error at column 4 (FORM)\n");
    EXPECT_EQ(ErrorAt("@\n\n\nA = 'B C'\n", 5),
              "Line     4: x.fldp; Syntax Error at column 10 (B C)\n");
    EXPECT_EQ(ErrorAt("", 0), "Line     0: x.fldp; Syntax Error at column 0 ()\n");
}

// The stripped text, one character, and the 13 of the word.
TEST_F(FldpLexer, ErrorColumnCountsTheStatementEnd) {
    EXPECT_EQ(ErrorAt("FORM X\n", 3),
              "Line     1: x.fldp; Syntax Error at column 20 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorAt("FORM X     \r\n", 3),
              "Line     1: x.fldp; Syntax Error at column 20 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorAt("\n", 1), "Line     1: x.fldp; Syntax Error at column 14 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorAt("'AB\n", 1),
              "Line     1: x.fldp; Syntax Error at column 17 (AB\nEND_STATEMENT)\n");
}

TEST_F(FldpLexer, ErrorColumnOfALiteralIsBehindItsWhiteSpace) {
    EXPECT_EQ(ErrorAt("'AB'   =\n", 1), "Line     1: x.fldp; Syntax Error at column 7 (AB)\n");
    EXPECT_EQ(ErrorAt("'AB'\n", 1), "Line     1: x.fldp; Syntax Error at column 5 (AB)\n");
    EXPECT_EQ(ErrorAt("'AB'  &\n", 1), "Line     1: x.fldp; Syntax Error at column 7 (AB)\n");
}

TEST_F(FldpLexer, ErrorAtEndOfInputShowsTheLastLineAndText) {
    EXPECT_EQ(ErrorAt("A\nFORM &\n", 4), "Line     2: x.fldp; Syntax Error at column 6 (FORM)\n");
    EXPECT_EQ(ErrorAt("A\nB", 3),
              "Line     1: x.fldp; Syntax Error at column 15 (END_STATEMENT)\n");
}

TEST_F(FldpLexer, LineNumberIsFiveColumnsWideOrMore) {
    EXPECT_EQ(ErrorAt(std::string(12344, '\n') + "A\n", 12345),
              "Line 12345: x.fldp; Syntax Error at column 1 (A)\n");
    EXPECT_EQ(ErrorAt(std::string(123455, '\n') + "A\n", 123456),
              "Line 123456: x.fldp; Syntax Error at column 1 (A)\n");
}

struct Expectation {
    const char* Name;
    void (*Read)();
    const char* Accepts;
    std::vector<const char*> Refuses;
};

class FldpExpectations : public FldpLexer, public ::testing::WithParamInterface<Expectation> {};

TEST_P(FldpExpectations, AcceptsItsTokensOnly) {
    const Expectation& expectation = GetParam();
    ASSERT_TRUE(FldpOpen(Write(expectation.Accepts + std::string("\n"))));
    EXPECT_EQ(StatusOf(expectation.Read), -1) << expectation.Accepts;
    EXPECT_EQ(FldpNextToken(), FldpKind::Keyword) << "the statement end comes next";
    EXPECT_EQ(FldpLastToken().Text, "END_STATEMENT");
    for (const char* refused : expectation.Refuses) {
        ASSERT_TRUE(FldpOpen(Write(refused + std::string("\n"))));
        CaptureStdout out;
        EXPECT_EQ(StatusOf(expectation.Read), 1) << refused;
        EXPECT_THAT(WithoutDirectory(out.Take()),
                    ::testing::StartsWith("Line     1: x.fldp; Syntax Error at column "));
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, FldpExpectations,
    ::testing::Values(
        Expectation{"Punctuation", [] { FldpExpectPunctuation(); }, ",", {"A", "1", "'('"}},
        Expectation{"Open", FldpExpectOpen, "(", {"=", ")", "'('", "' ' & (", "1"}},
        Expectation{"Equals", FldpExpectEquals, "=", {"(", "A", "'=' & =", "1"}},
        Expectation{"EqualsNumber",
                    [] { FldpExpectEqualsNumber(); },
                    "= 5",
                    {"5", "= A", "= '5'", "= ROW", "= -5", "("}},
        Expectation{"Literal", [] { FldpExpectLiteral(); }, "'A'", {"A", "=", "1", "ROW"}},
        Expectation{"EqualsLiteral",
                    [] { FldpExpectEqualsLiteral(); },
                    "= 'A'",
                    {"'A'", "= A", "= ROW", "= 1", "= ="}},
        Expectation{"Keyword", [] { FldpExpectKeyword(); }, "ROW", {"A", "'ROW'", "1", "="}},
        Expectation{"EqualsKeyword",
                    [] { FldpExpectEqualsKeyword(); },
                    "= ROW",
                    {"ROW", "= A", "= 1", "= 'ROW'", "= ="}}),
    [](const auto& row) { return row.param.Name; });

TEST_F(FldpLexer, ExpectationsHandTheirValueOver) {
    ASSERT_TRUE(FldpOpen(Write("= 42 = 'text' = ROW 'more' COLUMN ,\n")));
    EXPECT_EQ(FldpExpectEqualsNumber(), 42);
    EXPECT_EQ(FldpExpectEqualsLiteral(), "text");
    EXPECT_EQ(FldpExpectEqualsKeyword(), FldpKeyword::ROW);
    EXPECT_EQ(FldpExpectLiteral(), "more");
    EXPECT_EQ(FldpExpectKeyword(), FldpKeyword::COLUMN);
    EXPECT_EQ(FldpExpectPunctuation(), ",");
}

} // namespace
} // namespace grolof
