// Physical lines into statements: columns, sequence numbers, comments, listing controls,
// continuation, and where a statement begins.
#include "bms/reader.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "source.h"

namespace grolof {
namespace {

using namespace testing_support;

using BmsStatements = BmsTest;

// n characters of a row that shows where it was cut, without a label: " 123456789012..."
std::string Ruler(std::size_t n) {
    std::string text = " ";
    for (std::size_t i = 1; i < n; ++i)
        text += static_cast<char>('0' + i % 10);
    return text;
}

// --- line ends -------------------------------------------------------------------------------

TEST_F(BmsStatements, LineEndAndTrailingBlanksAreCut) {
    const std::string text = "L        DFHMDF POS=1";
    EXPECT_EQ(Statement(text + "\n"), text);
    EXPECT_EQ(Statement(text + "\r\n"), text);
    EXPECT_EQ(Statement(text + "   \n"), text);
    EXPECT_EQ(Statement(text + "   \r\n"), text);
}

TEST_F(BmsStatements, OnlyOneLineEndIsCutAndNoTabs) {
    const std::string text = "L        DFHMDF POS=1";
    EXPECT_EQ(Statement(text + "\r\r\n"), text + "\r");
    EXPECT_EQ(Statement(text + " \r \r\n"), text + " \r");
    EXPECT_EQ(Statement(text + "\t\n"), text + "\t");
    EXPECT_EQ(Statement(text + "\t  \n"), text + "\t");
}

TEST_F(BmsStatements, LastLineWithoutLineFeedIsDropped) {
    Open("A        DFHMSD TYPE=MAP\nB        DFHMSD TYPE=MAP");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Label, "A");
    EXPECT_FALSE(BmsReadStatement());
    EXPECT_TRUE(s_bms.EndOfFile);
    EXPECT_EQ(s_bms.File, nullptr);
    EXPECT_EQ(s_bms.LinesRead, 1);
    EXPECT_EQ(s_bms.Statement, "");
}

TEST_F(BmsStatements, EmptyFileHasNoStatement) {
    Open("");
    EXPECT_FALSE(BmsReadStatement());
    EXPECT_FALSE(BmsReadStatement()); // and stays so
}

TEST_F(BmsStatements, LastLineThatFillsTheReadIsProcessedWithoutALineFeed) {
    EXPECT_EQ(Statement(Ruler(71) + ' ' + Ruler(182)), Ruler(71)); // 254
    Open(Ruler(71) + ' ' + Ruler(181));                            // 253
    EXPECT_FALSE(BmsReadStatement());
}

TEST_F(BmsStatements, LongLinesAreSeveralLines) {
    Open(Ruler(71) + ' ' + Ruler(182) + "REST OF THE LONG LINE\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Statement, Ruler(71));
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Statement, "REST OF THE LONG LINE");
    EXPECT_EQ(s_bms.StatementLine, 2);
}

TEST_F(BmsStatements, ALineFeedThatDoesNotFitIsALineOfItsOwn) {
    Open(Ruler(71) + ' ' + Ruler(181) + "\n"); // 254 with the line feed
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_FALSE(BmsReadStatement());

    Open(Ruler(71) + ' ' + Ruler(182) + "\n"); // 254 without it
    ASSERT_TRUE(BmsReadStatement());
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Statement, "  ");
    EXPECT_FALSE(BmsReadStatement());
}

TEST_F(BmsStatements, TextEndsAtANul) {
    EXPECT_EQ(Statement(std::string("L DFHMSD TYPE=MAP\0,MODE=IN\n", 28)), "L DFHMSD TYPE=MAP");
    EXPECT_EQ(Statement(std::string("\0\n", 2)), "  ");
}

// --- short lines -----------------------------------------------------------------------------

TEST_F(BmsStatements, LinesShorterThanSixteenGetTwoBlanks) {
    EXPECT_EQ(Statement("\n"), "  ");
    EXPECT_EQ(Statement("L\n"), "L  ");
    EXPECT_EQ(Statement(Ruler(15) + "\n"), Ruler(15) + "  ");
    EXPECT_EQ(Statement(Ruler(16) + "\n"), Ruler(16));
}

// --- sequence numbers in columns 1-8 -----------------------------------------------------------

TEST_F(BmsStatements, SequenceNumberIsRemoved) {
    EXPECT_EQ(Statement(" 000100 L        DFHMSD TYPE=MAP\n"), "L        DFHMSD TYPE=MAP");
    EXPECT_EQ(Statement("0000100 L        DFHMSD TYPE=MAP\n"), "L        DFHMSD TYPE=MAP");
    EXPECT_EQ(Statement("9999999          DFHMSD TYPE=MAP\n"), "         DFHMSD TYPE=MAP");
}

TEST_F(BmsStatements, OnlyASequenceNumberIsRemoved) {
    for (const std::string line : {
             "X000100 L DFHMSD TYPE=MAP", // a letter in column 1
             "\t000100 L DFHMSD TYPE=MAP",
             " 00X100 L DFHMSD TYPE=MAP", // a letter among the digits
             "  00100 L DFHMSD TYPE=MAP", // a blank among them
             " 000100L DFHMSD TYPE=MAP",  // none behind them
             " 000100\tL DFHMSD TYPE=MAP",
             "00000100 L DFHMSD TYPE=MAP", // eight digits
         })
        EXPECT_EQ(Statement(line + "\n"), line);
}

TEST_F(BmsStatements, SequenceNumberAloneStays) {
    // Trailing blanks go first, so column 8 is not there any more.
    EXPECT_EQ(Statement("0000100         \n"), "0000100  ");
    EXPECT_EQ(Statement(" 000100\n"), " 000100  ");
}

TEST_F(BmsStatements, ColumnsCountBehindTheSequenceNumber) {
    const std::string number = " 000100 ";
    const std::string first = number + Ruler(71) + "X\n";
    const std::string second = " 000200 " + std::string(15, ' ') + "REST\n";
    EXPECT_EQ(Statement(first + second), Ruler(71) + "REST");
    // 71 characters behind the number: column 72 is empty although the line has 79
    EXPECT_EQ(Statement(number + Ruler(71) + "\n"), Ruler(71));
    // a comment behind the number
    EXPECT_EQ(Statement(" 000100 * A COMMENT\n 000200 L DFHMSD TYPE=MAP\n"), "L DFHMSD TYPE=MAP");
    // shortness counts behind it too
    EXPECT_EQ(Statement(number + Ruler(15) + "\n"), Ruler(15) + "  ");
    EXPECT_EQ(Statement(" 000100 END\n L DFHMSD TYPE=MAP\n"), " L DFHMSD TYPE=MAP");
}

// --- comments and listing controls -------------------------------------------------------------

TEST_F(BmsStatements, CommentsAreSkippedAndMoveTheStatementLine) {
    Open("* ONE\n*\n*TWO\nL        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Label, "L");
    EXPECT_EQ(s_bms.StatementLine, 4);
}

TEST_F(BmsStatements, AnAsteriskElsewhereIsNoComment) {
    EXPECT_EQ(Statement(" * NO COMMENT, LONG ENOUGH\n"), " * NO COMMENT, LONG ENOUGH");
}

TEST_F(BmsStatements, ACommentHasNoContinuation) {
    EXPECT_EQ(Statement(Marked("* COMMENT", '*') + "L        DFHMSD TYPE=MAP\n"),
              "L        DFHMSD TYPE=MAP");
}

TEST_F(BmsStatements, ListingControlsAreSkipped) {
    const std::string rest = "L        DFHMSD TYPE=MAP";
    for (const char* control :
         {"         SPACE 2", "         SPACE", "SPACE", "         SPACEX 2", "         spacex",
          "         TITLE 'MENU'", "         Title ", "         title", "TITLE ",
          "         PRINT NOGEN", "         print", "         END", "         end", "END",
          "\t\tEND", "         END   CSMENUS", "SPACE1   DFHMDF POS=(1,1),LENGTH=1",
          "END      DFHMDF POS=(1,1),LENGTH=1"})
        EXPECT_EQ(Statement(std::string(control) + "\n" + rest + "\n"), rest) << control;
}

TEST_F(BmsStatements, OtherWordsAreNotSkipped) {
    for (const std::string line :
         {"         TITLES 'MENU'", "         ENDE  SOMEWHERE", "         PRINTER NOGEN",
          "         SPAC 2 MORE LINES", "         EJECT AND MORE", "         TITLE\t'MENU'"})
        EXPECT_EQ(Statement(line + "\n"), line);
}

TEST_F(BmsStatements, ALateEndHasNoBlankBehindIt) {
    // END up to column 15 gets its two blanks, END in column 16 none.
    Open(std::string(12, ' ') + "END\n");
    EXPECT_FALSE(BmsReadStatement());
    EXPECT_EQ(Statement(std::string(13, ' ') + "END\n"), std::string(13, ' ') + "END");
}

TEST_F(BmsStatements, ListingControlsDoNotMoveTheStatementLine) {
    Open("         PRINT NOGEN\n         SPACE 2\nL        DFHMSD TYPE=MAP\n"
         "         SPACE\nM        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 1);
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 4);
}

TEST_F(BmsStatements, ACommentBehindAListingControlMovesTheStatementLine) {
    Open("         PRINT NOGEN\n* COMMENT\nL        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 3);
}

TEST_F(BmsStatements, ContinuationLinesAreSkippedToo) {
    const std::string first = "L        DFHMSD TYPE=MAP,";
    EXPECT_EQ(Statement(Marked(first) + "               SPACE=2\n               MODE=IN\n"),
              first + "MODE=IN");
    EXPECT_EQ(Statement(Marked(first) + "END\n               MODE=IN\n"), first + "MODE=IN");
    EXPECT_EQ(Statement(Marked(first) + "* WHY\n               MODE=IN\n"), first + "MODE=IN");
    // the mark of a skipped line says nothing
    EXPECT_EQ(
        Statement(Marked(first) + Marked("         PRINT NOGEN") + "               MODE=IN\n"),
        first + "MODE=IN");
}

// --- continuation ----------------------------------------------------------------------------

TEST_F(BmsStatements, ColumnSeventyTwoDecides) {
    EXPECT_EQ(Statement(Ruler(70) + "\n"), Ruler(70));
    EXPECT_EQ(Statement(Ruler(71) + "\n"), Ruler(71));
    EXPECT_EQ(Statement(Ruler(71) + "X\n                REST\n"), Ruler(71) + " REST");
    EXPECT_EQ(Statement(Ruler(71) + " X\n"), Ruler(71));
    EXPECT_EQ(Statement(Ruler(71) + "X00000010\n               REST\n"), Ruler(71) + "REST");
    for (const char mark : {'*', '-', '+', '1', '\t', '\xE4'})
        EXPECT_EQ(Statement(Ruler(71) + mark + "\n               REST\n"), Ruler(71) + "REST");
}

TEST_F(BmsStatements, SequenceFieldIsNeverRead) {
    const std::string text = "L        DFHMSD TYPE=MAP";
    std::string line = text;
    line.resize(72, ' ');
    // without a mark the blanks up to column 71 stay
    EXPECT_EQ(Statement(line + "MENU0010\n"), text + std::string(71 - text.size(), ' '));
    line[71] = 'X';
    EXPECT_EQ(Statement(line + "MENU0010\n               ,MODE=IN\n"), text + ",MODE=IN");
}

TEST_F(BmsStatements, BlanksBeforeTheMarkAreCut) {
    EXPECT_EQ(Statement(Marked("L        DFHMSD TYPE=MAP,   ") + "               MODE=IN\n"),
              "L        DFHMSD TYPE=MAP,MODE=IN");
    // a tab is no blank
    EXPECT_EQ(Statement(Marked("L        DFHMSD TYPE=MAP,\t  ") + "               MODE=IN\n"),
              "L        DFHMSD TYPE=MAP,\tMODE=IN");
}

TEST_F(BmsStatements, ContinuationBeginsInColumnSixteen) {
    const std::string first = "L        DFHMSD TYPE=";
    // columns 1 to 15 are discarded whatever they hold
    EXPECT_EQ(Statement(Marked(first) + Ruler(15) + "MAP,MODE=IN\n"), first + "MAP,MODE=IN");
    EXPECT_EQ(Statement(Marked(first) + std::string(15, ' ') + "M\n"), first + "M");
    EXPECT_EQ(Statement(Marked(first) + std::string(14, ' ') + "XM\n"), first + "M");
    EXPECT_EQ(Statement(Marked(first) + std::string(16, ' ') + "M\n"), first + " M");
}

TEST_F(BmsStatements, ShortContinuationAddsWhatItHas) {
    const std::string first = "L        DFHMSD TYPE=MAP";
    EXPECT_EQ(Statement(Marked(first) + "\n"), first);
    EXPECT_EQ(Statement(Marked(first) + Ruler(13) + "\n"), first);
    // of the two blanks that a short line gets, those from column 16 on are text
    EXPECT_EQ(Statement(Marked(first) + Ruler(14) + "\n"), first + " ");
    EXPECT_EQ(Statement(Marked(first) + Ruler(15) + "\n"), first + "  ");
}

TEST_F(BmsStatements, ContinuationGoesOnOverManyLines) {
    const std::string first = "L        DFHMSD A,";
    const std::string next = std::string(15, ' ');
    EXPECT_EQ(Statement(Marked(first) + Marked(next + "B,") + Marked(next + "C,") + next + "D\n"),
              first + "B,C,D");
}

TEST_F(BmsStatements, AMarkedBlankLineLeavesTheStatementToBegin) {
    EXPECT_EQ(Statement(Marked("") + "L        DFHMSD TYPE=MAP\n"), "L        DFHMSD TYPE=MAP");
}

TEST_F(BmsStatements, StatementCutOffByTheEndOfTheFileIsDropped) {
    Open("A        DFHMSD TYPE=MAP\n" + Marked("B        DFHMSD TYPE=MAP,"));
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_FALSE(BmsReadStatement());
    EXPECT_EQ(s_bms.Statement, "");
    EXPECT_EQ(s_bms.Label, "");
}

TEST_F(BmsStatements, StatementLineIsTheFirstLineOfTheStatement) {
    Open(Marked("A        DFHMSD TYPE=MAP,") +
         "               MODE=IN\nB        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 1);
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 3);
}

TEST_F(BmsStatements, ACommentBetweenContinuedLinesMovesTheStatementLine) {
    Open(Marked("A        DFHMSD TYPE=MAP,") + "* HERE\n               MODE=IN\n");
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.StatementLine, 3);
}

// --- length of statements ----------------------------------------------------------------------

// A statement of n characters (71 + 56 + 56 and the rest).
std::string Joined(std::size_t n) {
    const std::string next = std::string(15, ' ');
    const std::string text = "L DFHMSD " + std::string(n - 9, 'A');
    return text.substr(0, 71) + "X\n" + next + text.substr(71, 56) + "X\n" + next +
           text.substr(127, 56) + "X\n" + next + text.substr(183, 56) + "X\n" + next +
           text.substr(239) + "\n";
}

TEST_F(BmsStatements, TwoHundredFiftyFiveCharactersAreAccepted) {
    for (const std::size_t n : {254U, 255U})
        EXPECT_EQ(Statement(Joined(n)).size(), n);
}

TEST_F(BmsStatements, LongerStatementsAreRejected) {
    for (const std::size_t n : {256U, 257U, 290U}) {
        Open("* COMMENT\n" + Joined(n));
        CaptureStdout out;
        EXPECT_EQ(StatusOf([] { BmsReadStatement(); }), 1);
        EXPECT_EQ(out.Take(), "Line     2: m.bms; DFHMSD Syntax Error (255) at column 255 ()\n");
    }
}

TEST_F(BmsStatements, BlanksBeforeASequenceFieldCountAsText) {
    // the fifth line is short but has a sequence field: its blanks to column 71 are 56 - 4 more
    std::string source = Joined(243);
    source.pop_back();
    source += std::string(52, ' ') + " 00000050\n";
    Open(source);
    CaptureStdout out;
    EXPECT_EQ(StatusOf([] { BmsReadStatement(); }), 1);
    EXPECT_EQ(out.Take(), "Line     1: m.bms; DFHMSD Syntax Error (255) at column 255 ()\n");
}

TEST_F(BmsStatements, EndlessContinuationEndsInOneMessage) {
    std::string source = Marked("L        DFHMSD TYPE=MAP,");
    for (int i = 0; i < 20'000; ++i)
        source += Marked("               MODE=INOUT,");
    Open(source);
    EXPECT_FALSE(BmsReadStatement()); // never complete

    Open(source + "               LANG=COBOL\n");
    CaptureStdout out;
    EXPECT_EQ(StatusOf([] { BmsReadStatement(); }), 1);
    EXPECT_EQ(out.Take(), "Line     1: m.bms; DFHMSD Syntax Error (255) at column 255 ()\n");
}

// --- label and operation -----------------------------------------------------------------------

struct SplitCase {
    const char* Line;
    const char* Label;
    const char* Operation;
    std::size_t Position;
};

TEST_F(BmsStatements, LabelAndOperationAreSplitAtBlanks) {
    for (const auto& [line, label, operation, position] :
         std::vector<SplitCase>{{"LABEL    DFHMDF POS=1", "LABEL", "DFHMDF", 9},
                                {"         DFHMDF POS=1", "", "DFHMDF", 9},
                                {"A B C                ", "A", "B", 2},
                                {" DFHMSD", "", "DFHMSD", 1},
                                {"LABEL", "LABEL", "", 7}, // two blanks added
                                {"", "", "", 2},
                                {"ABCDEFGHIJKLMNO DFHMDF", "ABCDEFGHIJKLMNO", "DFHMDF", 16},
                                {" ABCDEFGHIJKLMNOPQRS X", "", "ABCDEFGHIJKLMNO", 1},
                                {" DFHMDF,POS=(1,1),LENGTH=5", "", "DFHMDF,POS=(1,1", 1},
                                // only blanks end them
                                {"LABEL\tX  DFHMDF POS=1", "LABEL\tX", "DFHMDF", 9},
                                {"\tLABEL DFHMDF POS=1  ", "\tLABEL", "DFHMDF", 7},
                                {" DFHMDF\tPOS=1 LENGTH=2", "", "DFHMDF\tPOS=1", 1},
                                {"\xC4\xD6\xDC DFHMDF POS=1", "\xC4\xD6\xDC", "DFHMDF", 4}}) {
        Open(std::string(line) + "\n");
        ASSERT_TRUE(BmsReadStatement()) << line;
        EXPECT_EQ(s_bms.Label, label) << line;
        EXPECT_EQ(s_bms.Operation, operation) << line;
        EXPECT_EQ(s_bms.Position, position) << line;
    }
}

TEST_F(BmsStatements, LabelsOverFifteenCharactersAreRejected) {
    Open("ABCDEFGHIJKLMNOP DFHMDF FOO=1\n");
    CaptureStdout out;
    EXPECT_EQ(StatusOf([] { BmsReadStatement(); }), 1);
    EXPECT_EQ(out.Take(),
              "Line     1: m.bms; DFHMDF Syntax Error (15) at column 16 (ABCDEFGHIJKLMNOP)\n");
}

TEST_F(BmsStatements, AMarkedStatementHasNoLabelToBeTooLong) {
    EXPECT_EQ(Statement("@---------------------- NOTE\n"), "@---------------------- NOTE");
}

// --- state -----------------------------------------------------------------------------------

TEST_F(BmsStatements, EveryFileStartsAfresh) {
    Open("A        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsReadStatement());
    s_bms.MapSetName = "A";
    s_bms.Token = "TOKEN";
    WriteFile("n.bms", "B        DFHMSD TYPE=MAP\n");
    ASSERT_TRUE(BmsOpen("n.bms", 17));
    EXPECT_EQ(s_bms.FileName, "n.bms");
    EXPECT_EQ(s_bms.Option, 17U);
    EXPECT_EQ(s_bms.LinesRead, 0);
    EXPECT_EQ(s_bms.Token, "");
    EXPECT_EQ(s_bms.MapSetName, std::nullopt);
    EXPECT_FALSE(s_bms.EndOfFile);
    ASSERT_TRUE(BmsReadStatement());
    EXPECT_EQ(s_bms.Label, "B");
}

} // namespace
} // namespace grolof
