#include <climits>

#include "books.h"

namespace grolof {
namespace {

using testing::HasSubstr;
using testing::Not;

using Repeats = BookTest;

// A screen with an image, a vertical repeat image that holds a horizontal one, and FILLER.
void FillOrder(Screen& screen) {
    Form& form = screen.Head();
    form.NumericName = 1;
    form.ImageName = "qty";
    form.Intensity = 2;
    form.Highlight = 3;
    form.Emphasis = 2;
    AddField(screen.Items(), "CUST", 6, 2, 10);
    AddField(screen.Items(), nullptr, 80, 3, 1);
    Image& box = AddImage(screen.Items(), "BOX", 4, 5);
    box.Width = 30;
    std::string text;
    for (int i = 0; i < 6; ++i)
        text += "ABCDEFGHIJ";
    AddField(ChildrenOf(box), "NOTE", 60, 2, 3).InitialValue = text;
    Image& lines = AddRepeat(screen.Items(), 2, "LX", 10, 3);
    lines.Height = 2;
    lines.Spacing = 9; // not for vertical repetitions
    Field& quantity = AddField(ChildrenOf(lines), "QTY", 7);
    quantity.DataType = 3;
    quantity.Decimals = 2;
    quantity.FloatingSign = 1;
    Image& prices = AddRepeat(ChildrenOf(lines), 2, "NX", 1, 20);
    prices.Direction = 2;
    prices.Width = 6;
    prices.Spacing = 2;
    AddField(ChildrenOf(prices), "PRICE", 4);
    AddField(screen.Items(), "FILLER", 3, 24, 79);
}

TEST_F(Repeats, AWholeBook) {
    Screen screen("ORDER", 42);
    FillOrder(screen);
    EXPECT_EQ(Book(screen), Golden("dps_order.cpy"));
}

TEST_F(Repeats, TheInitialisationOfTheSameScreen) {
    Screen screen("ORDER", 42);
    FillOrder(screen);
    EXPECT_EQ(InitBook(screen), Golden("dps_order_init.cpy"));
}

// The values of the n-th halfword of every FILLER entry with values at level 15.
std::string Storage(const std::string& book, std::size_t word) {
    const std::string block = Between(book, "-FCA-ST.\n", "-FCA-END");
    std::string values;
    std::size_t at = 0;
    for (;;) {
        at = block.find("      *\n                 15 ", at);
        if (at == std::string::npos)
            return values;
        std::size_t line = at + 8;
        for (std::size_t i = 0; i < word; ++i)
            line = block.find('\n', line) + 1;
        const std::size_t value = block.find("VALUE ", line) + 6;
        values += block.substr(value, block.find('.', value) - value) + " ";
        at += 8;
    }
}

TEST_F(Repeats, VerticalOnesAreTheirHeightApart) {
    Screen screen;
    Image& lines = AddRepeat(screen.Items(), 3, "I", 5, 4);
    lines.Height = 2;
    lines.Width = 50;
    lines.Spacing = 7;
    AddField(ChildrenOf(lines), "F", 1, 1, 1);
    const std::string book = Book(screen);
    EXPECT_EQ(Storage(book, 2), "5 7 9 ");
    EXPECT_EQ(Storage(book, 3), "4 4 4 ");
    EXPECT_EQ(Storage(book, 5), "1 2 3 ");
}

TEST_F(Repeats, HorizontalOnesAreWidthAndSpacingApart) {
    for (const std::int32_t direction : {0, 2, 3}) {
        Screen screen;
        Image& lines = AddRepeat(screen.Items(), 4, "I", 5, 4);
        lines.Height = 2;
        lines.Width = 20;
        lines.Spacing = 5;
        lines.Direction = direction;
        AddField(ChildrenOf(lines), "F", 1, 1, 2);
        const std::string book = Book(screen);
        EXPECT_EQ(Storage(book, 2), "5 5 5 5 "); // the fourth in the last column
        EXPECT_EQ(Storage(book, 3), "5 30 55 80 ") << direction;
    }
}

TEST_F(Repeats, AFieldPastTheEdgeWraps) {
    Screen screen;
    Image& lines = AddRepeat(screen.Items(), 2, "I", 5, 41);
    lines.Width = 40;
    lines.Direction = 2;
    AddField(ChildrenOf(lines), "F", 1, 1, 1);
    const std::string book = Book(screen);
    EXPECT_EQ(Storage(book, 2), "5 6 ");
    EXPECT_EQ(Storage(book, 3), "41 1 ");
}

TEST_F(Repeats, IndexesGoOnBehindTheStorage) {
    Screen screen;
    AddField(screen.Items(), "A");
    AddField(ChildrenOf(AddRepeat(screen.Items(), 3, "I")), "F");
    AddField(screen.Items(), "B");
    const std::string book = Book(screen);
    EXPECT_EQ(ValueOf(book, "A-FID"), "1");
    EXPECT_EQ(Storage(book, 5), "2 3 4 ");
    EXPECT_EQ(ValueOf(book, "B-FID"), "5");
    EXPECT_EQ(ValueOf(book, "S7-FCA-COUNT"), "5");
    EXPECT_EQ(ValueOf(book, "S7-WSDATA-LENGTH"), "5");
}

TEST_F(Repeats, ImagesInsideHaveEntriesOfTheirOwn) {
    Screen screen;
    Image& lines = AddRepeat(screen.Items(), 2, "I", 5, 4);
    Image& box = AddImage(ChildrenOf(lines), "BOX", 1, 3);
    box.Width = 9;
    AddField(ChildrenOf(box), "F", 2, 1, 2);
    const std::string book = Book(screen);
    EXPECT_EQ(Storage(book, 1), "4 1 4 1 ");
    EXPECT_EQ(Storage(book, 2), "5 5 6 6 ");
    EXPECT_EQ(Storage(book, 3), "6 7 6 7 ");
    EXPECT_EQ(Storage(book, 4), "9 2 9 2 ");
    EXPECT_THAT(book, HasSubstr("\n                 15 BOX-EMPH              PIC X(1).\n"
                                "      *\n                 15 F-STAT                "
                                "PIC 9(4)  COMP.\n"));
}

TEST_F(Repeats, TwoAreNumberedInEachBlock) {
    Screen screen;
    AddField(ChildrenOf(AddRepeat(screen.Items(), 1, "I")), "A", 4);
    AddField(ChildrenOf(AddRepeat(screen.Items(), 1, "J")), "B", 4);
    const std::string book = Book(screen);
    for (const char* group : {"05 REPEAT-1-FCA-ST.\n", "05 REPEAT-2-FCA-ST.\n",
                              "05 S7-REPEAT-1-DATA-ST.\n", "05 S7-REPEAT-2-DATA-ST.\n"})
        EXPECT_EQ(CountOf(book, group), 1U) << group;
}

TEST_F(Repeats, NumbersGoToGroupLinesOnly) {
    Screen screen;
    Image& outer = AddRepeat(screen.Items(), 3, "I");
    Image& inner = AddRepeat(ChildrenOf(outer), 2, "J");
    AddField(ChildrenOf(inner), "A", 4);
    AddField(ChildrenOf(AddRepeat(ChildrenOf(inner), 2, "K")), "B", 4);
    AddField(ChildrenOf(AddRepeat(screen.Items(), 1, "L")), "C", 4);
    const std::string book = Book(screen);
    EXPECT_EQ(ValueOf(book, "S7-FCA-COUNT"), "19"); // 3 times 2 times (1 + 2), and 1
    for (const char* group :
         {" 05 REPEAT-1-FCA-ST.\n", " 15 HREPEAT-2-FCA OCCURS 2 TIMES\n",
          " 20 HREPEAT-3-FCA OCCURS 2 TIMES\n", " 05 REPEAT-4-FCA-ST.\n",
          " 05 S7-REPEAT-1-DATA-ST.\n", " 15 S7-HREPEAT-2-DATA OCCURS 2 TIMES\n",
          " 20 S7-HREPEAT-3-DATA OCCURS 2 TIMES\n", " 05 S7-REPEAT-4-DATA-ST.\n",
          "\n                     25 B              PIC X(4).\n"})
        EXPECT_EQ(CountOf(book, group), 1U) << group;
}

TEST_F(Repeats, ThePrefixIsOnNamesAndIndexes) {
    Screen screen("ORDER", 42);
    screen.Head().GeneratePrefix = 1;
    Image& outer = AddRepeat(screen.Items(), 1, "I");
    AddField(ChildrenOf(AddRepeat(ChildrenOf(outer), 2, "J")), "A", 4);
    const std::string book = Book(screen);
    EXPECT_THAT(book, HasSubstr("\n             05 S42-REPEAT-1-FCA-END\n"
                                "                REDEFINES S42-REPEAT-1-FCA-ST.\n      *\n"
                                "               10 S42-REPEAT-1-FCA OCCURS 1 TIMES\n"
                                "                  INDEXED BY S42-I-FCA.\n"
                                "      *\n"
                                "                 15 S42-HREPEAT-2-FCA OCCURS 2 TIMES\n"
                                "                    INDEXED BY S42-J-FCA.\n"
                                "      *\n"
                                "                   20 S42-A-STAT "));
    EXPECT_THAT(book, HasSubstr("\n             05 S42-REPEAT-1-DATA-END\n"
                                "                REDEFINES S42-REPEAT-1-DATA-ST.\n      *\n"
                                "               10 S42-REPEAT-1-DATA OCCURS 1 TIMES\n"
                                "                  INDEXED BY S42-I-DATA.\n"
                                "      *\n"
                                "                 15 S42-HREPEAT-2-DATA OCCURS 2 TIMES\n"
                                "                    INDEXED BY S42-J-DATA.\n"
                                "      *\n"
                                "                   20 S42-A            PIC X(4).\n"));
}

TEST_F(Repeats, WithoutIndexNameOnlyTheControlGroupGoesWithout) {
    Screen screen;
    Image& outer = AddRepeat(screen.Items(), 2, nullptr);
    AddField(ChildrenOf(outer), "A", 4);
    AddField(ChildrenOf(AddRepeat(ChildrenOf(outer), 2, nullptr)), "B", 4);
    const std::string book = Book(screen);
    EXPECT_THAT(book, HasSubstr("\n               10 REPEAT-1-FCA OCCURS 2 TIMES\n"
                                "      *\n                 15 A-STAT "));
    EXPECT_THAT(book, HasSubstr("\n                 15 HREPEAT-2-FCA OCCURS 2 TIMES\n"
                                "                    INDEXED BY -FCA.\n"));
    EXPECT_THAT(book, HasSubstr("\n               10 S7-REPEAT-1-DATA OCCURS 2 TIMES\n"
                                "                  INDEXED BY -DATA.\n"));
    EXPECT_THAT(book, HasSubstr("\n                 15 S7-HREPEAT-2-DATA OCCURS 2 TIMES\n"
                                "                    INDEXED BY -DATA.\n"));
}

TEST_F(Repeats, AnEmptyIndexNameIsAName) {
    Screen screen;
    AddField(ChildrenOf(AddRepeat(screen.Items(), 2, "")), "A", 4);
    EXPECT_THAT(Book(screen), HasSubstr("\n               10 REPEAT-1-FCA OCCURS 2 TIMES\n"
                                        "                  INDEXED BY -FCA.\n"));
}

TEST_F(Repeats, WithoutChildrenTheyAreNothing) {
    Screen screen("BLANK");
    AddRepeat(screen.Items(), 5, "I");
    ChildrenOf(AddRepeat(screen.Items(), 5, "I")); // a list, but an empty one
    EXPECT_EQ(Book(screen), Golden("dps_empty.cpy"));
    // Nor do they take a number, at the top or inside.
    Image& lines = AddRepeat(screen.Items(), 1, "J");
    AddRepeat(ChildrenOf(lines), 2, "K");
    AddField(ChildrenOf(AddRepeat(ChildrenOf(lines), 2, "L")), "F");
    const std::string book = Book(screen);
    EXPECT_THAT(book, HasSubstr(" REPEAT-1-FCA-ST.\n"));
    EXPECT_THAT(book, HasSubstr(" HREPEAT-2-FCA OCCURS 2 TIMES\n"));
    EXPECT_THAT(book, Not(HasSubstr("K-FCA")));
}

TEST_F(Repeats, ACountOfZeroGivesEmptyStorage) {
    Screen screen;
    AddField(ChildrenOf(AddRepeat(screen.Items(), 0, "I")), "F", 3);
    const std::string book = Book(screen);
    EXPECT_EQ(ValueOf(book, "S7-FCA-COUNT"), "0");
    EXPECT_EQ(ValueOf(book, "S7-WSDATA-LENGTH"), "0");
    const std::string blocks = Behind(book, "'SCREEN$FILE '.\n      *\n");
    EXPECT_EQ(Between(blocks, "", "                 15 F-STAT"),
              "      *\n"
              "             05 REPEAT-1-FCA-ST.\n"
              "      *\n"
              "             05 REPEAT-1-FCA-END\n"
              "                REDEFINES REPEAT-1-FCA-ST.\n"
              "      *\n"
              "               10 REPEAT-1-FCA OCCURS 1 TIMES\n"
              "                  INDEXED BY I-FCA.\n"
              "      *\n");
    EXPECT_EQ(Behind(blocks, "15 F-EMPH                PIC X(1).\n"),
              "      *\n"
              "      *\n"
              "             05 S7-REPEAT-1-DATA-ST.\n"
              "      *\n"
              "             05 S7-REPEAT-1-DATA-END\n"
              "                REDEFINES S7-REPEAT-1-DATA-ST.\n"
              "      *\n"
              "               10 S7-REPEAT-1-DATA OCCURS 0 TIMES\n"
              "                  INDEXED BY I-DATA.\n"
              "      *\n"
              "                 15 F                  PIC X(3).\n"
              "                 15 FILLER             PIC X(1).\n");
}

TEST_F(Repeats, ACountBelowZeroIsShownAsItIs) {
    Screen screen;
    Image& outer = AddRepeat(screen.Items(), INT_MIN, "I");
    AddField(ChildrenOf(AddRepeat(ChildrenOf(outer), -2, "J")), "F", 4);
    const std::string book = Book(screen);
    EXPECT_THAT(book, HasSubstr(" REPEAT-1-FCA OCCURS 1 TIMES\n"));
    EXPECT_THAT(book, HasSubstr(" HREPEAT-2-FCA OCCURS -2 TIMES\n"));
    EXPECT_THAT(book, HasSubstr(" S7-REPEAT-1-DATA OCCURS -2147483648 TIMES\n"));
    EXPECT_THAT(book, HasSubstr(" S7-HREPEAT-2-DATA OCCURS -2 TIMES\n"));
}

TEST_F(Repeats, StorageKeepsInitialValues) {
    Screen screen;
    AddField(ChildrenOf(AddRepeat(screen.Items(), 2, "I")), "F", 3).InitialValue = "abc";
    EXPECT_EQ(Between(Book(screen), "-DATA-ST.\n", "      *\n             05 S7-REPEAT-1-DATA-END"),
              "      *\n"
              "                 15 FILLER             PIC X(3)        VALUE\n"
              "                           'abc'.\n"
              "                 15 FILLER             PIC X(1).\n"
              "      *\n"
              "                 15 FILLER             PIC X(3)        VALUE\n"
              "                           'abc'.\n"
              "                 15 FILLER             PIC X(1).\n");
}

TEST_F(Repeats, OverLongNamesInsideKeepTheirRules) {
    Screen screen;
    Image& lines = AddRepeat(screen.Items(), 1, "I");
    AddField(ChildrenOf(lines), "N234567890123456", 4);   // 16 and "-STAT" are 21
    AddField(ChildrenOf(lines), "M2345678901234567", 4);  // 22
    AddField(ChildrenOf(lines), "P23456789012345678", 4); // 18
    AddField(ChildrenOf(lines), "Q234567890123456789", 4);
    const std::string book = Book(screen);
    EXPECT_THAT(book, HasSubstr("\n                 15 N234567890123456-STAT PIC 9(4)  COMP.\n"));
    EXPECT_THAT(book, HasSubstr("\n                 15 M2345678901234567-STAT\n"
                                "                                          PIC 9(4)  COMP.\n"));
    EXPECT_THAT(book, HasSubstr("\n                 15 P23456789012345678 PIC X(4).\n"));
    EXPECT_THAT(book, HasSubstr("\n                 15 Q234567890123456789 PIC X(4).\n"));
}

TEST_F(Repeats, LinkedImagesAndPageCountsInsideAreFiller) {
    Screen screen;
    Image& lines = AddRepeat(screen.Items(), 1, "I");
    AddImage(ChildrenOf(lines), "BOX").Linked = 1;
    Field& pages = AddField(ChildrenOf(lines), "PAGE", 4);
    pages.Contents = 4;
    pages.Value = 16;
    const std::string book = Book(screen);
    EXPECT_EQ(Storage(book, 1), "5 20 ");
    const std::string names = Between(book, "INDEXED BY I-FCA.\n", "02  ");
    EXPECT_EQ(CountOf(names, "15 FILLER                PIC 9(4)  COMP.\n"), 12U);
    EXPECT_EQ(CountOf(names, "BOX"), 0U);
    EXPECT_THAT(book, HasSubstr("\n                 15 PAGE               PIC X(4).\n"));
}

TEST_F(Repeats, DeepNestingPastTheColumnsIsWritten) {
    Screen screen;
    List* list = &screen.Items();
    for (int depth = 0; depth < 400; ++depth)
        list = &ChildrenOf(AddRepeat(*list, 1, "I"));
    AddField(*list, "F", 4);
    const std::string book = Book(screen);
    EXPECT_EQ(ValueOf(book, "S7-FCA-COUNT"), "1");
    // Level 15 and 399 times 5 deeper; the name column is used up, the picture column stays
    // behind the line's beginning.
    EXPECT_THAT(book, HasSubstr(" 2010 F-STAT\n"));
    EXPECT_THAT(book, HasSubstr(" 2010 F PIC X(4).\n"));
}

} // namespace
} // namespace grolof
