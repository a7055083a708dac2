#include <climits>

#include "books.h"

namespace grolof {
namespace {

using testing::HasSubstr;
using testing::Not;

using InitBooks = BookTest;

// What stands behind the header's statements.
std::string Statements(const std::string& book) {
    return Behind(book, "-EMPHASIS.\n");
}

TEST_F(InitBooks, AFormWithoutFieldsGivesTheHeaderStatements) {
    Screen screen("BLANK", 7);
    screen.Head().Height = 27;
    screen.Head().Width = 132;
    screen.Head().Intensity = 3;
    screen.Head().Highlight = 2;
    screen.Head().Emphasis = 2;
    EXPECT_EQ(InitBook(screen), "      /\n"
                                "      *\n"
                                "      *     THIS PROCEDURE INITS THE FOLLOWING FORM:\n"
                                "      *     ****************************************\n"
                                "      *     NAME   : BLANK\n"
                                "      *     NUMBER : 7\n"
                                "      *\n"
                                "            MOVE     7  TO S7-NUMBER.\n"
                                "            MOVE 'BLANK' TO S7-NAME.\n"
                                "            MOVE     0  TO S7-FCA-LENGTH.\n"
                                "            MOVE     0  TO S7-FCA-COUNT.\n"
                                "            MOVE    27  TO S7-NUMBER-ROWS.\n"
                                "            MOVE   132  TO S7-NUMBER-COLS.\n"
                                "            MOVE     0  TO S7-WSDATA-LENGTH.\n"
                                "            MOVE     0  TO S7-SOE-YCO.\n"
                                "            MOVE     0  TO S7-SOE-XCO.\n"
                                "            MOVE     0  TO S7-FUNCTIONKEY.\n"
                                "            MOVE     0  TO S7-OUT-YCO.\n"
                                "            MOVE     0  TO S7-OUT-XCO.\n"
                                "            MOVE     0  TO S7-OUT-FID.\n"
                                "            MOVE     0  TO S7-IN-YCO.\n"
                                "            MOVE     0  TO S7-IN-XCO.\n"
                                "            MOVE     0  TO S7-IN-FID.\n"
                                "            MOVE 'V'  TO S7-VALID.\n"
                                "            MOVE 'D'  TO S7-DYNAMIC.\n"
                                "            MOVE 'E'  TO S7-BACKGROUND.\n"
                                "            MOVE 'W'  TO S7-FOREGROUND.\n"
                                "            MOVE 'N'  TO S7-FONT.\n"
                                "            MOVE 'Y'  TO S7-CNUM-VALIDATE.\n"
                                "            MOVE 'L'  TO S7-INTENSITY.\n"
                                "            MOVE 'B'  TO S7-HIGHLIGHT.\n"
                                "            MOVE 'U'  TO S7-EMPHASIS.\n"
                                "      *\n");
}

TEST_F(InitBooks, LongNumbersPushTheirStatement) {
    Screen screen("ORDER", 123456);
    screen.Head().NumericName = 1;
    const std::string book = InitBook(screen);
    EXPECT_THAT(book, HasSubstr("\n            MOVE 123456  TO S123456-NUMBER.\n"
                                "            MOVE 'DPS123456' TO S123456-NAME.\n"));
}

TEST_F(InitBooks, FieldsMoveTheirEntryThenTheirData) {
    Screen screen("ORDER", 7);
    Field& field = AddField(screen.Items(), "F", 4, 12, 80);
    field.BackColour = 'B';
    EXPECT_EQ(Statements(InitBook(screen)), "      *\n"
                                            "           MOVE      0 TO S7-F-STAT.\n"
                                            "           MOVE      1 TO S7-F-TYPE.\n"
                                            "           MOVE     12 TO S7-F-YCO.\n"
                                            "           MOVE     80 TO S7-F-XCO.\n"
                                            "           MOVE      4 TO S7-F-CHAR.\n"
                                            "           MOVE      1 TO S7-F-FID.\n"
                                            "           MOVE    'V' TO S7-F-VAL.\n"
                                            "           MOVE    'U' TO S7-F-DYN.\n"
                                            "           MOVE    'B' TO S7-F-BACK.\n"
                                            "           MOVE    'W' TO S7-F-FORE.\n"
                                            "           MOVE    'N' TO S7-F-INT.\n"
                                            "           MOVE    'N' TO S7-F-HIGH.\n"
                                            "           MOVE    'N' TO S7-F-FONT.\n"
                                            "           MOVE    'N' TO S7-F-EMPH.\n"
                                            "           MOVE    ' ' TO S7-F.\n");
}

TEST_F(InitBooks, DataMovesFollowTypeAndInitialValue) {
    Screen screen("ORDER", 7);
    AddField(screen.Items(), "X", 4).DataType = 1;
    AddField(screen.Items(), "A", 4).DataType = 2;
    AddField(screen.Items(), "N", 3).DataType = 3;
    AddField(screen.Items(), "O", 3).DataType = 0;
    AddField(screen.Items(), "E", 3).InitialValue = "";
    Field& number = AddField(screen.Items(), "V", 3);
    number.DataType = 3;
    number.InitialValue = "12";
    AddField(screen.Items(), "L", 70).InitialValue = std::string(70, 'x');
    EXPECT_EQ(Behind(InitBook(screen), "S7-L-EMPH.\n"),
              "           MOVE    ' ' TO S7-X.\n"
              "           MOVE    ' ' TO S7-A.\n"
              "           MOVE      0 TO S7-N.\n"
              "           MOVE      0 TO S7-O.\n"
              "           MOVE ''\n"
              "                TO S7-E.\n"
              "           MOVE '12'\n"
              "                TO S7-V.\n"
              "           MOVE 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"
              "xxx'\n"
              "                TO S7-L.\n");
}

TEST_F(InitBooks, ThePrefixIsAlwaysThere) {
    Screen screen("ORDER", 42);
    AddField(screen.Items(), "F", 4);
    const std::string bare = InitBook(screen);
    EXPECT_THAT(bare, HasSubstr("\n           MOVE    ' ' TO S42-F.\n"));
    EXPECT_THAT(Book(screen), Not(HasSubstr("S42-F ")));
    screen.Head().GeneratePrefix = 1;
    EXPECT_EQ(InitBook(screen), bare);
}

TEST_F(InitBooks, FillerGetsNoStatementsButPageCountsMoveTheirData) {
    Screen screen("ORDER", 7);
    AddField(screen.Items(), "FILLER", 4).InitialValue = "abcd";
    AddImage(screen.Items(), "BOX").Linked = 1;
    AddImage(screen.Items(), "FILLER");
    Field& pages = AddField(screen.Items(), "PAGE", 4);
    pages.Contents = 4;
    pages.Value = 17;
    AddField(screen.Items(), nullptr, 4);
    EXPECT_EQ(Statements(InitBook(screen)), "      *\n"
                                            "           MOVE    ' ' TO S7-PAGE.\n");
}

TEST_F(InitBooks, RepeatImagesGetNoStatementsButCount) {
    Screen screen("ORDER", 7);
    Image& outer = AddRepeat(screen.Items(), 3, "I");
    AddField(ChildrenOf(outer), "R", 4).InitialValue = "abcd";
    AddField(ChildrenOf(AddRepeat(ChildrenOf(outer), 2, "J")), "S", 4);
    Image& box = AddImage(screen.Items(), "BOX", 5, 6);
    AddField(ChildrenOf(box), "F", 4, 2, 2);
    const std::string book = InitBook(screen);
    EXPECT_THAT(book, Not(HasSubstr("S7-R")));
    EXPECT_THAT(book, Not(HasSubstr("S7-S-")));
    EXPECT_THAT(book, HasSubstr("\n           MOVE     10 TO S7-BOX-FID.\n"));
    EXPECT_THAT(book, HasSubstr("\n           MOVE      6 TO S7-F-YCO.\n"
                                "           MOVE      7 TO S7-F-XCO.\n"
                                "           MOVE      4 TO S7-F-CHAR.\n"
                                "           MOVE     11 TO S7-F-FID.\n"));
    EXPECT_EQ(ValueOf(Book(screen), "F-FID"), "11");
    EXPECT_THAT(book, HasSubstr("\n            MOVE    11  TO S7-FCA-COUNT.\n"));
    EXPECT_THAT(book, HasSubstr("\n            MOVE    10  TO S7-WSDATA-LENGTH.\n"));
}

TEST_F(InitBooks, UnplayedRepetitionsDoNotCount) {
    Screen screen("ORDER", 7);
    AddField(ChildrenOf(AddRepeat(screen.Items(), INT_MIN, "I")), "R", 4);
    AddField(screen.Items(), "F", 4);
    EXPECT_THAT(InitBook(screen), HasSubstr("\n           MOVE      1 TO S7-F-FID.\n"));
}

TEST_F(InitBooks, LinkImagesAndFindTheCursorAsTheRecordDoes) {
    Screen screen("ORDER", 7);
    screen.Head().ImageName = "f";
    Image& linked = AddImage(screen.Items(), "BOX");
    linked.Linked = 1;
    AddField(screen.Items(), "F", 4, 3, 85);
    const std::string book = InitBook(screen);
    EXPECT_EQ(linked.Spacing, 1);
    EXPECT_THAT(book, HasSubstr("\n            MOVE     4  TO S7-OUT-YCO.\n"
                                "            MOVE     5  TO S7-OUT-XCO.\n"
                                "            MOVE     2  TO S7-OUT-FID.\n"));
}

TEST_F(InitBooks, ValuesWiderThanTheirColumnPush) {
    Screen screen("ORDER", 7);
    AddField(screen.Items(), "F", 4, -123456, 1);
    EXPECT_THAT(InitBook(screen), HasSubstr("\n           MOVE -123456 TO S7-F-YCO.\n"));
}

TEST_F(InitBooks, FieldsBehindTheFormAreMovedToo) {
    Screen screen("ORDER", 7);
    AddField(screen.Records(), "B", 4, 2, 85);
    const std::string book = InitBook(screen);
    EXPECT_THAT(book, HasSubstr("\n           MOVE      3 TO S7-B-YCO.\n"));
    EXPECT_THAT(book, HasSubstr("\n           MOVE    ' ' TO S7-B.\n"));
}

} // namespace
} // namespace grolof
