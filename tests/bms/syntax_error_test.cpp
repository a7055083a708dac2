// The whole line of every syntax error. In the sources a caret stands behind the offending
// token: where the caret is (and it is taken out before reading) the message must point.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "source.h"

namespace grolof {
namespace {

using namespace testing_support;

using BmsErrors = BmsTest;

struct ErrorCase {
    int Code;
    std::string Statement; // with the caret
    std::string Operation;
    std::string Token;
};

// The line for a case whose statement stands on line 3 on one physical line.
std::string LineOf(const ErrorCase& error) {
    return "Line     3: m.bms; " + error.Operation + " Syntax Error (" +
           std::to_string(error.Code) + ") at column " + std::to_string(error.Statement.find('^')) +
           " (" + error.Token + ")\n";
}

TEST_F(BmsErrors, WholeLines) {
    const std::vector<ErrorCase> cases = {
        // what a statement begins with
        {281, "L        ATTRB^ X", "ATTRB", "ATTRB"},
        {281, "         FIELD^ X", "FIELD", "FIELD"},
        {281, " print^=1 NO CONTROL", "print=1", "print"},
        {286, "  ^", "", "DSECT"}, // the token is still that of the statement before
        {286, "LABEL  ^", "", "DSECT"},
        {286, "@ REMARK  ^", "REMARK", "DSECT"},
        {286, "@-------------------- LONG REMARK^", "LONG", "DSECT"},
        {286, "         EJECT^  ", "EJECT", "EJECT"},
        {286, "LABEL    DFHMDG^ POS=(1,1)", "DFHMDG", "DFHMDG"},
        {286, "LABEL    DFHMDFX^,POS=(1,1)", "DFHMDFX,POS=(1,", "DFHMDFX"},
        {286, "LABEL    OPERATIONOFMANYLETTERS^ X", "OPERATIONOFMANY", "OPERATIONOFMANYLETTERS"},
        {286, "L 1234^", "1234", "1234"},
        {286, "LABEL    =^DFHMDF POS=(1,1)", "=DFHMDF", "="},
        {286, "LABEL    'DFHMDF'^", "'DFHMDF'", "DFHMDF"},
        {286, "0000100  ^", "", "DSECT"},
        // DFHMSD
        {353, "S        DFHMSD POS^=(1,1)", "DFHMSD", "POS"},
        {353, "S        DFHMSD TYPE=MAP,JUSTIFY^=LEFT", "DFHMSD", "JUSTIFY"},
        // DFHMDI
        {424, "N        DFHMDI CTRL=(FREEKB,FRSET)^", "DFHMDI", ")"},
        {424, "N        DFHMDI CTRL=ALARM^", "DFHMDI", "ALARM"},
        {424, "N        DFHMDI CTRL=(FREEKB,FRSET)^,LINE=1", "DFHMDI", ")"},
        {451, "N        DFHMDI JUSTIFY=FIRST^", "DFHMDI", "FIRST"},
        {451, "N        DFHMDI JUSTIFY=(LEFT,TOP)^", "DFHMDI", ")"},
        {457, "N        DFHMDI MODE^=INOUT", "DFHMDI", "MODE"},
        {457, "N        DFHMDI COLOR^=RED", "DFHMDI", "COLOR"},
        // DFHMDF with a label
        {522, "F        DFHMDF JUSTIFY=CENTER^", "DFHMDF", "CENTER"},
        {522, "F        DFHMDF JUSTIFY=(RIGHT,5)^", "DFHMDF", ")"},
        {563, "F        DFHMDF ATTRB=(ASKIP,FOO)^", "DFHMDF", ")"},
        {563, "F        DFHMDF ATTRB=FOO^,POS=(1,1)", "DFHMDF", "FOO"},
        {563, "F        DFHMDF ATTRB=^", "DFHMDF", "="},
        {563, "F        DFHMDF ATTRB=(^", "DFHMDF", "("},
        {593, "F        DFHMDF SIZE^=(1,1)", "DFHMDF", "SIZE"},
        {593, "F        DFHMDF SUFFIX^=1", "DFHMDF", "SUFFIX"},
        // DFHMDF without a label
        {644, "         DFHMDF JUSTIFY=CENTER^", "DFHMDF", "CENTER"},
        {675, "         DFHMDF ATTRB=(PROT,FRSET)^", "DFHMDF", ")"},
        {688, "         DFHMDF GRPNAME^=G", "DFHMDF", "GRPNAME"},
        {688, "         DFHMDF HILIGHT^=BLINK", "DFHMDF", "HILIGHT"},
        {688, "         DFHMDF OCCURS^=5", "DFHMDF", "OCCURS"},
        {688, "         DFHMDF PICIN^='9'", "DFHMDF", "PICIN"},
        {688, "         DFHMDF PICOUT^='9'", "DFHMDF", "PICOUT"},
        // the form of operands
        {773, "F        DFHMDF POSN^=(1,1)", "DFHMDF", "POSN"},
        {773, "F        DFHMDF 5^", "DFHMDF", "5"},
        {773, "F        DFHMDF POS=(1,1))^,LENGTH=1", "DFHMDF", ")"},
        {773, "F        DFHMDF COLOR=(RED^,BLUE)", "DFHMDF", "RED"},
        {773, "F        DFHMDF POS=(1,1) THIS^ IS A REMARK", "DFHMDF", "THIS"},
        {773, "F        DFHMDF ATTRB=(IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC,IC)^", "DFHMDF",
         ")"},
        {782, "F        DFHMDF INITIAL=ABC^", "DFHMDF", "ABC"},
        {782, "F        DFHMDF INITIAL='ABC' & ABC^", "DFHMDF", "ABCABC"},
        {782, "F        DFHMDF PICIN=9^(5)", "DFHMDF", "9"},
        {782, "F        DFHMDF PICOUT=(^", "DFHMDF", "("},
        {782, "         DFHMDF INITIAL=^", "DFHMDF", "="},
        {789, "F        DFHMDF LENGTH=TEN^", "DFHMDF", "TEN"},
        {789, "F        DFHMDF LENGTH=-^1", "DFHMDF", "-"},
        {789, "F        DFHMDF OCCURS='5' ^,POS=1", "DFHMDF", "5"}, // behind the white space
        {789, "F        DFHMDF POS=(1)^", "DFHMDF", ")"},
        {789, "N        DFHMDI SIZE=(24^", "DFHMDI", "24"},
        {796, "F        DFHMDF POS 5^", "DFHMDF", "5"},
        {796, "F        DFHMDF POS^", "DFHMDF", "POS"},
        {796, "N        DFHMDI SIZE X^", "DFHMDI", "X"},
        {804, "F        DFHMDF LENGTH 5^", "DFHMDF", "5"},
        {804, "F        DFHMDF LENGTH(^5)", "DFHMDF", "("},
        {804, "F        DFHMDF INITIAL 'AB'^", "DFHMDF", "AB"},
        {804, "F        DFHMDF COLOR^", "DFHMDF", "COLOR"},
        {804, "S        DFHMSD TYPE,MODE^=IN", "DFHMSD", "MODE"},
        {812, "F        DFHMDF POS=(1,2,3^)", "DFHMDF", "3"},
        {812, "F        DFHMDF POS(1,2 LENGTH^=5", "DFHMDF", "LENGTH"},
        {812, "N        DFHMDI SIZE=(24,80^", "DFHMDI", "80"},
        // lengths
        {15, "LABELOFMANYLETTERS^ DFHMDF POS=(1,1)", "DFHMDF", "LABELOFMANYLETTERS"},
    };
    for (const ErrorCase& error : cases) {
        std::string statement = error.Statement;
        statement.erase(statement.find('^'), 1);
        ASSERT_LE(statement.size(), 71U);
        EXPECT_EQ(
            Rejected("M        DFHMDI LINE=1\nS        DFHMSD TYPE=DSECT\n" + statement + "\n"),
            LineOf(error))
            << error.Statement;
    }
}

// --- places ------------------------------------------------------------------------------------

const std::string kMap = "M        DFHMDI LINE=1\n";

TEST_F(BmsErrors, AFieldOutsideAnyMapIsRejectedBeforeItsOperands) {
    EXPECT_EQ(Rejected("F        DFHMDF ATTRB=FOO\n"),
              "Line     1: m.bms; DFHMDF Syntax Error (281) at column 15 (DFHMDF)\n");
    EXPECT_EQ(Rejected("S        DFHMSD TYPE=MAP\n         DFHMDF FOO\n"),
              "Line     2: m.bms; DFHMDF Syntax Error (281) at column 15 (DFHMDF)\n");
}

TEST_F(BmsErrors, TheFirstTokenOfAFileHasNoneBeforeIt) {
    EXPECT_EQ(Rejected("\n"), "Line     1: m.bms;  Syntax Error (286) at column 2 ()\n");
    EXPECT_EQ(Rejected("@\n"), "Line     1: m.bms;  Syntax Error (286) at column 3 ()\n");
    EXPECT_EQ(Rejected("LABELOFMANYLETTERS\n"),
              "Line     1: m.bms;  Syntax Error (15) at column 18 (LABELOFMANYLETTERS)\n");
}

TEST_F(BmsErrors, AMarkedLastLineWithoutALineFeedIsNotSeen) {
    EXPECT_EQ(Read(kMap + "@").size(), 1U);
    EXPECT_EQ(Read(kMap + "F        DFHMDF FOO").size(), 1U);
    EXPECT_EQ(Read(kMap + Marked("F        DFHMDF FOO")).size(), 1U);
}

TEST_F(BmsErrors, LinesAreNamedByTheBeginOfTheStatement) {
    const std::string wrong = "F        DFHMDF FOO\n";
    const std::string rest = ": m.bms; DFHMDF Syntax Error (773) at column 19 (FOO)\n";
    EXPECT_EQ(Rejected(kMap + wrong), "Line     2" + rest);
    EXPECT_EQ(Rejected(kMap + "* COMMENT\n" + wrong), "Line     3" + rest);
    // a listing control does not count, a comment behind it does
    EXPECT_EQ(Rejected(kMap + "         SPACE 1\n" + wrong), "Line     2" + rest);
    EXPECT_EQ(Rejected(kMap + "         SPACE 1\n*\n" + wrong), "Line     4" + rest);
    EXPECT_EQ(Rejected(kMap + "*\n         SPACE 1\n         PRINT GEN\n" + wrong),
              "Line     3" + rest);
}

TEST_F(BmsErrors, LineNumbersGrowBeyondFiveDigits) {
    std::string source;
    for (int i = 0; i < 123'456; ++i)
        source += "*\n";
    EXPECT_EQ(Rejected(source + "F        DFHMDF FOO\n"),
              "Line 123457: m.bms; DFHMDF Syntax Error (281) at column 15 (DFHMDF)\n");
}

TEST_F(BmsErrors, ColumnsCountInTheJoinedStatement) {
    // the first line gives 28 characters, the second begins in column 16
    EXPECT_EQ(Rejected(kMap + Marked("F        DFHMDF POS=(1,1),  ") + "               FOO=1\n"),
              "Line     2: m.bms; DFHMDF Syntax Error (773) at column 29 (FOO)\n");
    EXPECT_EQ(Rejected(kMap + Marked("F        DFHMDF POS=(1,1),") + "*\n               FOO=1\n"),
              "Line     4: m.bms; DFHMDF Syntax Error (773) at column 29 (FOO)\n");
    // a sequence number is not counted
    EXPECT_EQ(Rejected(" 000100 " + kMap + " 000200 F        DFHMDF FOO\n"),
              "Line     2: m.bms; DFHMDF Syntax Error (773) at column 19 (FOO)\n");
}

TEST_F(BmsErrors, AListedValueOfSixteenLeavesItsParenthesis) {
    EXPECT_EQ(Rejected("S        DFHMSD TYPE=(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16),MODE=IN\n"),
              "Line     1: m.bms; DFHMSD Syntax Error (773) at column 61 ())\n");
    EXPECT_EQ(Rejected("S        DFHMSD TYPE=(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17)\n"),
              "Line     1: m.bms; DFHMSD Syntax Error (773) at column 63 (17)\n");
    // values beyond the sixteenth are not looked at: the check of the first sixteen comes first
    EXPECT_EQ(Rejected("N        DFHMDI CTRL=(1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17)\n"),
              "Line     1: m.bms; DFHMDI Syntax Error (424) at column 60 (16)\n");
}

TEST_F(BmsErrors, TheFileIsNamedAsGiven) {
    WriteFile("sub/100%s of.bms", "X\n");
    CaptureStdout out;
    EXPECT_EQ(StatusOf([] { BmsReadMapSet("./sub/100%s of.bms", 0); }), 1);
    EXPECT_EQ(out.Take(), "Line     1: ./sub/100%s of.bms;  Syntax Error (286) at column 3 ()\n");
}

TEST_F(BmsErrors, SourcesAsTheyReallyCome) {
    const std::string dos = "M        DFHMDI LINE=1\r\nF        DFHMDF POS=(2,3)\r\n";
    const auto maps = Read(dos);
    EXPECT_EQ(AsField(*maps.at(0)->Last->Data).Column, 3);
    EXPECT_EQ(Rejected(dos + "\r\n"), "Line     3: m.bms;  Syntax Error (286) at column 2 ())\n");
    // a carriage return too many is white space to the tokens
    EXPECT_EQ(Read("M        DFHMDI LINE=1\r\r\n").size(), 1U);
    // tabs may stand between operation and operands, but they do not end a label
    EXPECT_EQ(Read("M        DFHMDI\tLINE=1\t\n").size(), 1U);
    EXPECT_EQ(Rejected("M\tDFHMDI\tLINE=1\n"),
              "Line     1: m.bms;  Syntax Error (286) at column 17 ()\n");
    // Latin-1 text
    EXPECT_EQ(Rejected("\xC4\xD6\xDC      DFHMDI \xE4=1\n"),
              "Line     1: m.bms; DFHMDI Syntax Error (773) at column 17 (\xE4)\n");
}

} // namespace
} // namespace grolof
