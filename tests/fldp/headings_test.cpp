#include "fldp/headings.h"

#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "source.h"

namespace grolof {
namespace {

using namespace fldp_test;

// A field statement for each, so that a form of them is one line.
std::string FieldAt(int row, int column, const std::string& name = "F") {
    return "FIELD NAME = '" + name + "' POS_IMA ROW = " + std::to_string(row) +
           " COLUMN = " + std::to_string(column) + " END_STATEMENT END_FIELD\n";
}

// The field that carries the constant text, in pieces that fit a line. `width` below 0 is the
// text's length.
std::string ConstantField(std::string_view text, int width = -1) {
    std::string source = "FIELD DIM HEIGHT = 24 WIDTH = " +
                         std::to_string(width < 0 ? static_cast<int>(text.size()) : width) +
                         "\nPRE_VAL INITIAL_VALUE = ''";
    for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(text.size(), 200)))
        source += " &&\n'" + std::string(text.substr(0, 200)) + "'";
    return source + "\nEND_FIELD\n";
}

// A text with a piece written over it.
std::string Over(std::string text, std::size_t at, std::string_view piece) {
    return text.replace(at, piece.size(), piece);
}

class Headings : public SourceTest {
protected:
    // What the items of a form with this source come to.
    std::string Items(const std::string& statements) {
        const RecordList forms = Forms(InForm(statements));
        const List* items = FirstOf(*forms).Children.get();
        return items == nullptr ? "no items" : Shape(*items);
    }
};

TEST_F(Headings, AreSplitAtTwoBlanks) {
    EXPECT_EQ(Items(ConstantField("ABC  DEF")), "H 1,1 'ABC' H 1,6 'DEF'");
    EXPECT_EQ(Items(ConstantField("ABC DEF")), "H 1,1 'ABC DEF'");
    EXPECT_EQ(Items(ConstantField("  A B   C D E  ")), "H 1,3 'A B' H 1,9 'C D E'");
    EXPECT_EQ(Items(ConstantField("     ")), "");
    EXPECT_EQ(Items(ConstantField("")), "");
    EXPECT_EQ(Items(ConstantField("X")), "H 1,1 'X'");
}

TEST_F(Headings, AreSplitWhereAFieldStarts) {
    EXPECT_EQ(Items(FieldAt(1, 4) + ConstantField("ABC DEF")), "F F H 1,1 'ABC' H 1,5 'DEF'");
    // Only the blank itself counts, not the columns around it nor another row.
    EXPECT_EQ(Items(FieldAt(1, 5) + FieldAt(2, 4) + FieldAt(1, 3) + ConstantField("ABC DEF")),
              "F F F F F F H 1,1 'ABC DEF'");
    // In columns behind the form's width the field wraps to where the blank is.
    EXPECT_EQ(Items(FieldAt(1, 84) + ConstantField(std::string(80, ' ') + "ABC DEF")),
              "F F H 2,1 'ABC' H 2,5 'DEF'");
}

TEST_F(Headings, AreSplitWhereAFieldOfAnImageStarts) {
    const std::string image = "IMAGE\nPOS_IMA ROW = 2 COLUMN = 3\n" + FieldAt(1, 2) + "END_IMAGE\n";
    EXPECT_EQ(Items(image + ConstantField(std::string(80, ' ') + "ABC DEF")),
              "I -(F F) H 2,1 'ABC' H 2,5 'DEF'");
    EXPECT_EQ(Items(image + ConstantField("ABC DEF")), "I -(F F) H 1,1 'ABC DEF'");
}

TEST_F(Headings, AreSplitWhereARepetitionOfAFieldStarts) {
    const std::string image =
        "IMAGE\nDIM HEIGHT = 1 WIDTH = 3\nREP_IMA COUNT = 3 SPACING = 1 DIRECTION = RIGHT\n" +
        FieldAt(1, 2) + "END_IMAGE\n";
    // Repetitions start in columns 2, 6 and 10.
    EXPECT_EQ(Items(image + ConstantField("ABCDE GHI KLM OP")),
              "R -(F F) H 1,1 'ABCDE' H 1,7 'GHI' H 1,11 'KLM OP'");
}

TEST_F(Headings, AskAboutTheirOwnFormOnly) {
    const RecordList forms =
        Forms(InForm(FieldAt(1, 4) + ConstantField("ABC DEF")) + InForm(ConstantField("ABC DEF")));
    EXPECT_EQ(Shape(*forms), "Form -(F F H 1,1 'ABC' H 1,5 'DEF') Form -(H 1,1 'ABC DEF')");
}

TEST_F(Headings, NeverCrossAScreenLine) {
    // Column 79 leaves room for two characters.
    EXPECT_EQ(Items(ConstantField(Over(std::string(160, ' '), 78, "ABCD"))),
              "H 1,79 'AB' H 2,1 'CD'");
    EXPECT_EQ(Items(ConstantField(Over(std::string(160, ' '), 79, "ABCD"))),
              "H 1,80 'A' H 2,1 'BCD'");
    EXPECT_EQ(Items(ConstantField(std::string(200, 'x'))),
              "H 1,1 '" + std::string(80, 'x') + "' H 2,1 '" + std::string(80, 'x') + "' H 3,1 '" +
                  std::string(40, 'x') + "'");
}

// A blank in column 78 still joins; one in 79 does not, and neither does one in 80.
TEST_F(Headings, JoinUpToColumn78) {
    const std::string line(160, ' ');
    EXPECT_EQ(Items(ConstantField(Over(line, 75, "AB CD"))), "H 1,76 'AB CD'");
    EXPECT_EQ(Items(ConstantField(Over(line, 76, "AB CD"))), "H 1,77 'AB' H 1,80 'C' H 2,1 'D'");
    EXPECT_EQ(Items(ConstantField(Over(line, 77, "AB CD"))), "H 1,78 'AB' H 2,1 'CD'");
    EXPECT_EQ(Items(ConstantField(Over(line, 78, "AB CD"))), "H 1,79 'AB' H 2,2 'CD'");
}

TEST_F(Headings, EndAtTheShorterOfWidthAndText) {
    EXPECT_EQ(Items(ConstantField("ABC DEF", 3)), "H 1,1 'ABC'");
    EXPECT_EQ(Items(ConstantField("ABC DEF", 4)), "H 1,1 'ABC'");
    EXPECT_EQ(Items(ConstantField("ABC DEF", 5)), "H 1,1 'ABC D'");
    EXPECT_EQ(Items(ConstantField("ABC DEF", 2000000000)), "H 1,1 'ABC DEF'");
    EXPECT_EQ(Items(ConstantField("ABC", 0)), "");
    // 4294967295 is stored as -1.
    EXPECT_EQ(Items("FIELD DIM WIDTH = 4294967295\nPRE_VAL INITIAL_VALUE = 'A'\nEND_FIELD\n"), "");
}

// A blank in front of the bound has nothing to join.
TEST_F(Headings, ATrailingBlankIsNotTaken) {
    EXPECT_EQ(Items(ConstantField("ABC ")), "H 1,1 'ABC'");
    EXPECT_EQ(Items(ConstantField("ABC  ")), "H 1,1 'ABC'");
}

TEST_F(Headings, OnlyTheBlankIsABlank) {
    EXPECT_EQ(Items("FIELD DIM WIDTH = 5\nPRE_VAL INITIAL_VALUE = 'A\tB\x80.'\nEND_FIELD\n"),
              "H 1,1 'A\tB\x80.'");
}

// The last item goes, whatever it is, and only it.
TEST_F(Headings, TakeTheLastItemAway) {
    EXPECT_EQ(Items(""), "no items");
    EXPECT_EQ(Items(FieldAt(1, 1, "A")), "");
    EXPECT_EQ(Items(FieldAt(1, 1, "A") + FieldAt(1, 9, "B")), "F A");
    EXPECT_EQ(Items(FieldAt(1, 1, "A") + "IMAGE\n" + FieldAt(1, 9, "B") + "END_IMAGE\n"), "F A");
    EXPECT_EQ(Items(FieldAt(1, 1, "A") + "IMAGE\nREPEAT_IMAGE COUNT = 2 INDEX_ITEM = 'IX'\n" +
                    FieldAt(1, 9, "B") + "END_IMAGE\n"),
              "F A"); // the name of its index is no constant text
    EXPECT_EQ(Items(FieldAt(1, 1, "A") +
                    "FIELD DIM WIDTH = 9\nPRE_VAL INITIAL_VALUE = 'AB'\nEND_FIELD\n"),
              "F A H 1,1 'AB'");
}

TEST_F(Headings, BearTheFormsHighlightAndIntensity) {
    const RecordList forms = Forms(
        InForm("FOR_ATT INTENSITY = LOW\n" + ConstantField("A") + "FOR_ATT INTENSITY = HIGH"));
    const Heading& heading = AsHeading(FirstItemOf(*forms));
    EXPECT_EQ(heading.Type, RecordType::Heading);
    EXPECT_EQ(heading.Intensity, 2);
    EXPECT_EQ(heading.Highlight, 1);
    EXPECT_EQ(heading.Height, 1);
    EXPECT_EQ(heading.Width, 1);
}

TEST_F(Headings, TakeTheHighlightOfTheForm) {
    Form form{};
    form.Type = RecordType::Form;
    form.Highlight = 3;
    Field* const field = CreateField();
    field->Width = 9;
    field->InitialValue = "A  B";
    ListAppend(ChildrenOf(form), field);
    ExtractHeadings(form);
    ASSERT_EQ(Shape(*form.Children), "H 1,1 'A' H 1,4 'B'");
    for (Record& record : *form.Children)
        EXPECT_EQ(AsHeading(record).Highlight, 3);
}

// The laying out is in 80 columns also on a form of another width.
TEST_F(Headings, IgnoreTheFormsWidth) {
    for (const char* width : {"40", "132", "0"})
        EXPECT_EQ(Items(std::string("DIM WIDTH = ") + width + "\n" +
                        ConstantField(Over(std::string(90, ' '), 79, "AB C"))),
                  "H 1,80 'A' H 2,1 'B C'");
}

TEST_F(Headings, WithoutAFormWidthNoFieldSplits) {
    EXPECT_EQ(Items("DIM WIDTH = 0\n" + FieldAt(1, 4) + ConstantField("ABC DEF")),
              "F F H 1,1 'ABC DEF'");
}

TEST_F(Headings, AWholeScreenOfText) {
    std::string screen;
    std::string expected;
    for (int row = 1; row <= 24; ++row) {
        const std::string words = "LINE " + std::to_string(100 + row) + " ";
        std::string line;
        while (line.size() + words.size() <= 80)
            line += words;
        line.resize(80, ' ');
        screen += line;
        line.erase(line.find_last_not_of(' ') + 1);
        expected += (row == 1 ? "H " : " H ") + std::to_string(row) + ",1 '" + line + "'";
    }
    EXPECT_EQ(Items(ConstantField(screen)), expected);
}

// Repetitions without end are not played out for the question.
TEST_F(Headings, DoNotHangOnHugeRepetitions) {
    const std::string image = "IMAGE\nREP_IMA COUNT = 2147483647\n" + FieldAt(1, 4) + "END_IMAGE\n";
    EXPECT_EQ(Items(image + ConstantField("ABC DEF")), "R -(F F) H 1,1 'ABC' H 1,5 'DEF'");
}

// ---------------------------------------------------------------------------------------------
// The field behind the constant text

class EarlyStop : public Headings {
protected:
    static std::string Long(std::size_t length) { return ConstantField(std::string(length, 'x')); }
    static constexpr char kMessage[] = "Ingoring FIELD following Heading!\n";
};

TEST_F(EarlyStop, GivesTheRestOfTheFileUp) {
    const std::string text(301, 'x');
    Outcome outcome = Read("FORM NAME = 'A'\n" + FieldAt(1, 1, "F1") + ConstantField(text) +
                               "FIELD NAME = 'F2' \nNONSENSE\nEND_FORM\nFORM\n",
                           kIgnoreCase);
    EXPECT_EQ(outcome.Status, -1);
    EXPECT_EQ(outcome.Out, kMessage);
    EXPECT_EQ(outcome.Error, "");
    ASSERT_NE(outcome.Forms, nullptr);
    // The form is finished as at its end: options copied, text made headings.
    EXPECT_EQ(Shape(*outcome.Forms), "Form A(F F1 H 1,1 '" + std::string(80, 'x') + "' H 2,1 '" +
                                         std::string(80, 'x') + "' H 3,1 '" + std::string(80, 'x') +
                                         "' H 4,1 '" + std::string(61, 'x') + "')");
    EXPECT_EQ(AsForm(FirstOf(*outcome.Forms)).IgnoreCase, 1);
    EXPECT_EQ(AsForm(FirstOf(*outcome.Forms)).NumericName, 0);
}

TEST_F(EarlyStop, NeedsMoreThan300Characters) {
    EXPECT_EQ(Read(InForm(Long(300) + "FIELD\nEND_FIELD")).Out, "");
    EXPECT_EQ(Read(InForm(Long(301) + "FIELD\nEND_FIELD")).Out, kMessage);
}

TEST_F(EarlyStop, IsDecidedByTheTextAndNotTheWidth) {
    EXPECT_EQ(Read(InForm(ConstantField(std::string(301, 'x'), 5) + "FIELD\nEND_FIELD")).Out,
              kMessage);
    EXPECT_EQ(Read(InForm(ConstantField("x", 400) + "FIELD\nEND_FIELD")).Out, "");
}

TEST_F(EarlyStop, AFormLevelValueDoesNotCount) {
    std::string value = "PRE_VAL INITIAL_VALUE = '" + std::string(200, 'x') + "' &&\n'" +
                        std::string(200, 'x') + "'\n";
    EXPECT_EQ(Read(InForm(value + "FIELD\nEND_FIELD")).Out, "");
}

// Other statements and images may follow; fields inside an image are not asked about.
TEST_F(EarlyStop, ImagesMayFollow) {
    const Outcome outcome =
        Read(InForm(Long(301) + "NAME = 'N'\nIMAGE\n" + FieldAt(1, 1, "IN") + "END_IMAGE"));
    EXPECT_EQ(outcome.Out, "");
    ASSERT_NE(outcome.Forms, nullptr);
    // The image is the last item, so it goes and the long text stays an ordinary field.
    EXPECT_EQ(Shape(*outcome.Forms), "Form N(F -)");
}

TEST_F(EarlyStop, ALongTextInAnImageCountsToo) {
    const Outcome outcome =
        Read(InForm("IMAGE\n" + Long(301) + "END_IMAGE\nIMAGE\nEND_IMAGE\nFIELD\nEND_FIELD"));
    EXPECT_EQ(outcome.Out, kMessage);
    EXPECT_EQ(Shape(*outcome.Forms), "Form -(I -(F -))");
}

// The flag stays for the forms that follow, up to the end of the file.
TEST_F(EarlyStop, ALaterFormIsCutShortAtItsFirstField) {
    const Outcome outcome = Read("FORM NAME = 'A'\n" + ConstantField(std::string(301, ' ')) +
                                 "END_FORM\nFORM NAME = 'B'\nNUMBER = 2\n" + FieldAt(1, 1) +
                                 "END_FORM\nFORM NAME = 'C'\nEND_FORM\n");
    EXPECT_EQ(outcome.Out, kMessage);
    EXPECT_EQ(Shape(*outcome.Forms), "Form A() Form B");
    EXPECT_EQ(Read(InForm(FieldAt(1, 1))).Out, "");
}

} // namespace
} // namespace grolof
