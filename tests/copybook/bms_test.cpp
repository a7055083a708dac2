#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "books.h"
#include "support/installation.h"

namespace grolof {
namespace {

using testing::HasSubstr;
using testing_support::CaptureStderr;
using testing_support::ReadFile;
using testing_support::WriteFile;

class BmsBooks : public BookTest {
protected:
    BmsBooks() { zorsysuser = "tester"; }

    std::string Map(Screen& screen, int withMapComments = 1) {
        EXPECT_EQ(BmsCopyBookWrite(screen.Records(), Path(), withMapComments, 0), 1);
        return ReadFile(Path());
    }

    // A later map stands directly behind what a file held before.
    static void ExpectAddedBehind(const std::string& before, const std::string& path) {
        EXPECT_EQ(ReadFile(path).substr(0, before.size() + 17), before + "      /\n      *\n ");
    }

    // The input item of a book's only field F, from its picture to the end of its value.
    std::string Item(Screen& screen) {
        return Between(Map(screen), "           02  FI             ", "      *\n");
    }
};

Field& Only(Screen& screen, std::int32_t width, std::int32_t dataType) {
    Field& field = AddField(screen.Records(), "F", width);
    field.DataType = dataType;
    return field;
}

TEST_F(BmsBooks, AMapOfOneField) {
    zorsysuser = "ops";
    Screen screen("MENU", 0);
    AddField(screen.Records(), "CODE", 3);
    EXPECT_EQ(Map(screen), Golden("bms_menu.cpy"));
}

TEST_F(BmsBooks, ThreeMapsOfOneSet) {
    Screen one("ONE", 0), two("TWO", 0), three("THREE", 0);
    AddField(one.Records(), "CODE", 3);
    AddField(one.Records(), nullptr, 20);
    Field& amount = AddField(one.Records(), "AMOUNT", 9);
    amount.DataType = 3;
    amount.Picin = "S9(7)V99";
    amount.Picout = "Z,ZZZ,ZZ9.99-";
    ListAppend(two.Records(), CreateHeading());
    Field& filler = AddField(three.Records(), "FILLER", 5);
    filler.DataType = 3;
    filler.InitialValue = "AB";
    AddField(three.Records(), "TEXT", 15).InitialValue = "FIFTEEN LETTERS";
    EXPECT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    EXPECT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    EXPECT_EQ(BmsCopyBookWrite(three.Records(), Path(), 1, 1), 1);
    EXPECT_EQ(ReadFile(Path()), Golden("bms_three_maps.cpy"));
}

TEST_F(BmsBooks, AFirstMapStartsTheBookAfresh) {
    Screen screen("ONE", 0);
    const std::string book = Map(screen);
    WriteFile(Path(), std::string(5000, 'x'));
    EXPECT_EQ(Map(screen), book); // nothing is left behind it
}

TEST_F(BmsBooks, AnotherRunOverTheSameSourceLeavesNoSecondCopy) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    const std::string whole = ReadFile(Path());
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    WriteFile(Path(), whole); // the other run is through with both maps
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    EXPECT_EQ(ReadFile(Path()), whole);
}

TEST_F(BmsBooks, ALaterMapIsAddedToABookThatThisRunDidNotBegin) {
    Screen two("TWO", 0);
    WriteFile(Path(), "before\n");
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    ExpectAddedBehind("before\n", Path());
}

TEST_F(BmsBooks, ALaterMapIsAddedToABookThatTookThePlaceOfTheFirstMaps) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    WriteFile(Path() + "2", "another\n");
    ASSERT_EQ(std::rename((Path() + "2").c_str(), Path().c_str()), 0);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    ExpectAddedBehind("another\n", Path());
}

TEST_F(BmsBooks, ALaterMapIsAddedBehindWhatStandsBehindTheFirst) {
    Screen one("ONE", 0), two("TWO", 0);
    for (const char* text : {"", "      *  ADDED\n", "      /\n       01 MORE.\n"}) {
        ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
        const std::string before = ReadFile(Path()) + text;
        WriteFile(Path(), before);
        ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
        ExpectAddedBehind(before, Path());
    }
}

TEST_F(BmsBooks, ALaterMapIsAddedToABookThatWasEmptied) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    WriteFile(Path(), "");
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    ExpectAddedBehind("", Path());
}

TEST_F(BmsBooks, ALaterMapIsAddedToABookElsewhereThatLooksLikeTheFirstMaps) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    const std::string twice = ReadFile(Path()) + ReadFile(Path());
    const std::string other = Directory().File("OTHER");
    WriteFile(other, twice);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), other, 1, 1), 1);
    ExpectAddedBehind(twice, other);
}

TEST_F(BmsBooks, APipeGetsTheMapsOneAfterTheOther) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    const std::string book = ReadFile(Path());
    const std::string pipe = Directory().File("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    // A reader alone: opening the pipe to read would wait for a writer.
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), pipe, 1, 0), 1);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), pipe, 1, 1), 1);
    std::string found(book.size(), '\0');
    const ssize_t length = read(reader, found.data(), found.size());
    close(reader);
    EXPECT_EQ(length, static_cast<ssize_t>(book.size()));
    EXPECT_EQ(found, book);
}

TEST_F(BmsBooks, AnotherRunThatIsNotAsFarGetsAheadLater) {
    Screen one("ONE", 0), two("TWO", 0), three("THREE", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    const std::string first = ReadFile(Path());
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    const std::string second = ReadFile(Path());
    WriteFile(Path(), first); // the other run is through with its first map
    ASSERT_EQ(BmsCopyBookWrite(three.Records(), Path(), 1, 1), 1);
    const std::string found = ReadFile(Path());
    EXPECT_EQ(found.substr(0, first.size()), first);
    EXPECT_EQ(found.substr(second.size(), 17), "      /\n      *\n ");
    // What is between is the other run's to write.
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    WriteFile(Path(), found);
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Path(), 1, 1), 1);
    EXPECT_EQ(ReadFile(Path()).substr(0, second.size()), second);
    EXPECT_EQ(ReadFile(Path()).size(), found.size());
}

TEST_F(BmsBooks, TheLastOutputAreaIsKeptBetweenBooks) {
    Screen one("ONE", 0), two("TWO", 0);
    ASSERT_EQ(BmsCopyBookWrite(one.Records(), Path(), 1, 0), 1);
    CaptureStderr captured;
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), Directory().File("none/BOOK"), 1, 0), 0);
    EXPECT_EQ(captured.Take(), Directory().File("none/BOOK") + ": No such file or directory\n");
    const std::string other = Directory().File("OTHER");
    ASSERT_EQ(BmsCopyBookWrite(two.Records(), other, 1, 1), 1);
    EXPECT_THAT(ReadFile(other), HasSubstr("\n       01  TWOI REDEFINES ONEO.\n"));
}

TEST_F(BmsBooks, WithoutMapCommentsTheHeadNamesTheForm) {
    Screen screen("MENU", 0);
    EXPECT_EQ(Map(screen, 0), "      /\n"
                              "      *\n"
                              "      *     THIS PROCEDURE DEFINES THE FOLLOWING FORM:\n"
                              "      *     ******************************************\n"
                              "      *\n"
                              "      *     DPS NAME : MENU\n"
                              "      *\n"
                              "      *     GENERATED BY: TESTER  on 05 MAR 2024  09:07:02\n"
                              "      *\n"
                              "      *\n"
                              "       01  MENUI.\n"
                              "           02  FILLER         PIC X(12).\n"
                              "      *\n"
                              "       01  MENUO REDEFINES MENUI.\n"
                              "           02  FILLER         PIC X(12).\n");
    EXPECT_EQ(BmsCopyBookWrite(screen.Records(), Path(), 0, 1), 1);
    EXPECT_EQ(Behind(ReadFile(Path()), "           02  FILLER         PIC X(12).\n      /\n"),
              "      *\n"
              "      *     THIS PROCEDURE DEFINES THE FOLLOWING FORM:\n"
              "      *     ******************************************\n"
              "      *\n"
              "      *     DPS NAME : MENU\n"
              "      *\n"
              "      *\n"
              "       01  MENUI REDEFINES MENUO.\n"
              "           02  FILLER         PIC X(12).\n"
              "      *\n"
              "       01  MENUO REDEFINES MENUI.\n"
              "           02  FILLER         PIC X(12).\n");
}

TEST_F(BmsBooks, TheUserIsMadeUpperCaseInPlaceAndMayBeNobody) {
    Screen screen("MENU", 0);
    zorsysuser = "ops.a";
    EXPECT_THAT(Map(screen), HasSubstr("\n      *     GENERATED BY: OPS.A  on 05 MAR "));
    EXPECT_EQ(zorsysuser, "OPS.A");
    zorsysuser = "";
    EXPECT_THAT(Map(screen), HasSubstr("\n      *     GENERATED BY:   on 05 MAR 2024  09:07:02\n"));
}

TEST_F(BmsBooks, ANumericNameNamesTheAreasNotTheComments) {
    Screen screen("MENU", 42);
    screen.Head().NumericName = 1;
    const std::string book = Map(screen);
    EXPECT_THAT(book, HasSubstr("\n      *  Input data for map: MENU\n      *\n"
                                "       01  DPS00042I.\n"));
    EXPECT_THAT(book, HasSubstr("\n      *  Output data for map: MENU\n      *\n"
                                "       01  DPS00042O REDEFINES DPS00042I.\n"));
}

TEST_F(BmsBooks, ThePrefixSparesFiller) {
    Screen screen("MENU", 42);
    screen.Head().GeneratePrefix = 1;
    AddField(screen.Records(), "CODE", 3);
    AddField(screen.Records(), "FILLER", 3);
    const std::string book = Map(screen);
    for (const char* line :
         {"\n           02  S42-CODEL      PIC S9(4) COMP  VALUE 3.\n",
          "\n           02  FILLER         REDEFINES S42-CODEF.\n",
          "\n            03 S42-CODEA      PIC X           VALUE ' '.\n",
          "\n           02  S42-CODEO      PIC X(3).\n",
          "\n           02  FILLERL        PIC S9(4) COMP  VALUE 3.\n",
          "\n           02  FILLERF        PIC X           VALUE ' '.\n",
          "\n           02  FILLER         REDEFINES FILLERF.\n",
          "\n            03 FILLERA        PIC X           VALUE ' '.\n",
          "\n           02  FILLERI        PIC X(3)        VALUE ' '.\n",
          "\n           02  FILLERC        PIC X.\n", "\n           02  FILLERH        PIC X.\n",
          "\n           02  FILLERO        PIC X(3).\n"})
        EXPECT_THAT(book, HasSubstr(line));
}

TEST_F(BmsBooks, LongNamesPushTheirClause) {
    Screen screen("MENU", 0);
    AddField(screen.Records(), "A234567890123", 3);  // 14 with its letter
    AddField(screen.Records(), "B2345678901234", 3); // 15
    const std::string book = Map(screen);
    EXPECT_THAT(book, HasSubstr("\n           02  A234567890123C PIC X.\n"));
    EXPECT_THAT(book, HasSubstr("\n           02  B2345678901234C PIC X.\n"));
    EXPECT_THAT(book, HasSubstr("\n            03 B2345678901234A PIC X           VALUE ' '.\n"));
}

struct ValueCase {
    std::int32_t DataType;
    const char* InitialValue; ///< none when null
    const char* Value;
};

class BmsValues : public BmsBooks, public testing::WithParamInterface<ValueCase> {};

TEST_P(BmsValues, FollowTypeAndText) {
    Screen screen("MENU", 0);
    Field& field = Only(screen, 5, GetParam().DataType);
    if (GetParam().InitialValue != nullptr)
        field.InitialValue = GetParam().InitialValue;
    EXPECT_EQ(Item(screen).substr(15), std::string(GetParam().Value) + "\n");
}

INSTANTIATE_TEST_SUITE_P(
    All, BmsValues,
    testing::Values(ValueCase{1, nullptr, " VALUE ' '."}, ValueCase{2, nullptr, " VALUE ' '."},
                    ValueCase{3, nullptr, " VALUE 0."},
                    ValueCase{0, nullptr, " VALUE ' '."}, // type 3 alone starts at 0
                    ValueCase{1, "", " VALUE ''."}, ValueCase{1, "AB", " VALUE 'AB'."},
                    ValueCase{2, "AB", " VALUE 'AB'."}, ValueCase{3, "AB", " VALUE 0."},
                    ValueCase{0, "AB", " VALUE 0."}, ValueCase{3, "", " VALUE 0."},
                    ValueCase{3, "-1", " VALUE 0."}, ValueCase{3, " 1", " VALUE 0."},
                    ValueCase{3, "1B", " VALUE '1B'."}, ValueCase{3, "90", " VALUE '90'."},
                    ValueCase{3, "\xB2", " VALUE 0."},
                    ValueCase{1, "14 CHARACTERS.", " VALUE '14 CHARACTERS.'."},
                    ValueCase{1, "15 CHARACTERS..",
                              " VALUE\n                           '15 CHARACTERS..'."},
                    ValueCase{3, "NOT A NUMBER AT ALL",
                              " VALUE\n                           'NOT A NUMBER AT ALL'."}));

TEST_F(BmsBooks, LongValuesAreLaidOutAsInRecords) {
    const struct {
        std::size_t Length;
        std::string Lines;
    } cases[] = {
        {41, std::string(27, ' ') + "'" + std::string(41, 'x') + "'.\n"},
        {42, std::string(12, ' ') + "'" + std::string(42, 'x') + "'.\n"},
        {55, std::string(12, ' ') + "'" + std::string(55, 'x') + "'.\n"},
        {56, std::string(12, ' ') + "'" + std::string(56, 'x') + "'.\n      -    ''.\n"},
        {58, std::string(12, ' ') + "'" + std::string(58, 'x') + "'.\n      -    ''.\n"},
        {59, std::string(12, ' ') + "'" + std::string(58, 'x') + "'.\n      -    'x'.\n"},
        {79, std::string(12, ' ') + "'" + std::string(58, 'x') + "'.\n      -    '" +
                 std::string(21, 'x') + "'.\n"},
    };
    for (const auto& given : cases) {
        Screen screen("MENU", 0);
        Only(screen, 79, 1).InitialValue = std::string(given.Length, 'x');
        EXPECT_EQ(Item(screen), "PIC X(79)       VALUE\n" + given.Lines) << given.Length;
    }
}

TEST_F(BmsBooks, PicturesFollowTheFieldUnlessGiven) {
    Screen screen("MENU", 0);
    Field& field = Only(screen, 8, 3);
    field.Decimals = 2;
    field.TrailingSign = 1;
    EXPECT_EQ(Item(screen), "PIC S9(4)V9(2)  VALUE 0.\n"); // 8 less point and sign
    EXPECT_THAT(Map(screen), HasSubstr("\n           02  FO             PIC S9(4)V9(2).\n"));
    EXPECT_THAT(Map(screen), HasSubstr(" FL             PIC S9(4) COMP  VALUE 6.\n"));
    field.Picin = "9(4)";
    EXPECT_EQ(Item(screen), "PIC 9(4)        VALUE 0.\n");
    EXPECT_THAT(Map(screen), HasSubstr("\n           02  FO             PIC S9(4)V9(2).\n"));
    field.Picout = "ZZZ9.99-";
    EXPECT_THAT(Map(screen), HasSubstr("\n           02  FO             PIC ZZZ9.99-.\n"));
    field.Picin = "";
    EXPECT_EQ(Item(screen), "PIC             VALUE 0.\n");
}

TEST_F(BmsBooks, AnInputPictureIsCutTo15Columns) {
    Screen screen("MENU", 0);
    Field& field = Only(screen, 20, 3);
    field.Picin = "S9(07)V9(2)"; // 15 columns with "PIC "
    EXPECT_EQ(Item(screen), "PIC S9(07)V9(2) VALUE 0.\n");
    field.Picin = "S9(10)V9(10)";
    field.Picout = "S9(10)V9(10)";
    EXPECT_EQ(Item(screen), "PIC S9(10)V9(10 VALUE 0.\n");
    EXPECT_THAT(Map(screen), HasSubstr("\n           02  FO             PIC S9(10)V9(10).\n"));
}

TEST_F(BmsBooks, EveryNamedFieldIsWrittenOnceInOrder) {
    Screen screen("MENU", 0);
    AddField(screen.Items(), "A");
    AddField(ChildrenOf(AddImage(screen.Items(), "BOX")), "B");
    AddField(ChildrenOf(AddRepeat(screen.Items(), 1'000'000'000, "I")), "C");
    AddField(screen.Records(), nullptr);
    AddField(screen.Records(), "D");
    const std::string book = Map(screen);
    std::string order;
    for (std::size_t at = book.find("PIC S9(4) COMP"); at != std::string::npos;
         at = book.find("PIC S9(4) COMP", at + 1))
        order += book[at - 15];
    EXPECT_EQ(order, "ABCD");
    EXPECT_EQ(CountOf(book, "BOX"), 0U);
}

TEST_F(BmsBooks, AFormOfNoWidthHasItsBook) {
    Screen screen("MENU", 0);
    screen.Head().Width = 0;
    AddField(screen.Records(), "F", 3);
    EXPECT_THAT(Map(screen), HasSubstr("\n           02  FO             PIC X(3).\n"));
}

TEST_F(BmsBooks, AnUnopenableFileIsReported) {
    Screen screen("MENU", 0);
    CaptureStderr captured;
    EXPECT_EQ(BmsCopyBookWrite(screen.Records(), Directory().Path(), 1, 0), 0);
    EXPECT_EQ(captured.Take(), Directory().Path() + ": Is a directory\n");
}

TEST_F(BmsBooks, AListWithoutAFormIsRefused) {
    const RecordList list(ListCreate());
    CaptureStderr captured;
    EXPECT_EQ(BmsCopyBookWrite(*list, Path(), 1, 0), 0);
    EXPECT_EQ(captured.Take(), Path() + ": no COPY book: no form\n");
    EXPECT_FALSE(testing_support::FileExists(Path()));
}

TEST_F(BmsBooks, AFullDiskIsReportedAndChangesNothingElse) {
    Screen screen("MENU", 0);
    CaptureStderr captured;
    EXPECT_EQ(BmsCopyBookWrite(screen.Records(), "/dev/full", 1, 0), 1);
    EXPECT_EQ(captured.Take(), "/dev/full: No space left on device\n");
}

} // namespace
} // namespace grolof
