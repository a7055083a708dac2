#include "screendef/writer.h"

#include <cerrno>
#include <cstring>
#include <limits>

#include "screendef/definitions.h"

namespace grolof::testing_support {
namespace {

using Writer = DefinitionTest;

Heading* Title() {
    Heading* heading = CreateHeading();
    heading->InitialValue = "TITLE";
    heading->Width = 5;
    return heading;
}

// A form or field without a single attribute to write.
Form* BareForm(FormKind kind = FormKind::None) {
    Form* form = CreateForm();
    form->Height = form->Width = form->Emphasis = form->Highlight = form->Intensity = 0;
    form->FormType = kind;
    return form;
}

Field* BareField() {
    Field* field = CreateField();
    for (auto member :
         {&Field::Height, &Field::Width, &Field::Column, &Field::Row, &Field::VariableColumn,
          &Field::VariableRow, &Field::Contents, &Field::Value, &Field::Emphasis, &Field::Highlight,
          &Field::Intensity, &Field::Justification, &Field::Case, &Field::DataType})
        field->*member = 0;
    return field;
}

Heading* BareHeading() {
    Heading* heading = CreateHeading();
    heading->Height = heading->Width = heading->Column = heading->Row = 0;
    heading->Highlight = heading->Intensity = 0;
    return heading;
}

TEST_F(Writer, WritesAFormWithAHeading) {
    Form* form = CreateForm();
    form->Name = "A";
    ListAppend(ChildrenOf(*form), Title());
    EXPECT_EQ(Written(*ListOf(form)), "<DpsForm\n"
                                      "    Name=\"A\"\n"
                                      "    FormType=\"DPS\"\n"
                                      "    Height=\"24\"\n"
                                      "    Width=\"80\"\n"
                                      "    Emphasis=\"1\"\n"
                                      "    Highlight=\"1\"\n"
                                      "    Intensity=\"1\"\n"
                                      "    >\n"
                                      "    <DpsHeading\n"
                                      "        Height=\"1\"\n"
                                      "        Width=\"5\"\n"
                                      "        Column=\"1\"\n"
                                      "        Row=\"1\"\n"
                                      "        Highlight=\"1\"\n"
                                      "        Intensity=\"1\"\n"
                                      "        InitialValue=\"TITLE\"\n"
                                      "        >\n"
                                      "    </DpsHeading>\n"
                                      "</DpsForm>\n");
}

TEST_F(Writer, WritesEveryAttributeOfAFormInOrder) {
    Form* form = CreateForm();
    form->Name = "MENU";
    form->Group = "SALES";
    form->ImageName = "TOP";
    form->FunctionKeyName = "KEYS";
    form->CopyName = "MENUBOOK";
    form->InitialValue = "i";
    form->Replenish = "r";
    form->FormType = FormKind::Sfs;
    form->Number = 8;
    form->Height = 9;
    form->Width = 10;
    form->GeneratePrefix = 11;
    form->NumericName = 12;
    form->IgnoreCase = 13;
    form->IgnoreJustification = 14;
    form->_24x79Unprotected = 15;
    form->RedefInit = 16;
    form->InputBlankWhenZero = 17;
    form->Emphasis = 18;
    form->Highlight = 19;
    form->Intensity = 20;
    form->Colour = 'C';
    form->BackColour = 22;
    form->MarkingChar = '*';
    form->SoeChar = '"';
    EXPECT_EQ(Written(*ListOf(form)), "<DpsForm\n"
                                      "    Name=\"MENU\"\n"
                                      "    Group=\"SALES\"\n"
                                      "    ImageName=\"TOP\"\n"
                                      "    FunctionKeyName=\"KEYS\"\n"
                                      "    CopyName=\"MENUBOOK\"\n"
                                      "    InitialValue=\"i\"\n"
                                      "    Replenish=\"r\"\n"
                                      "    FormType=\"3\"\n"
                                      "    Number=\"8\"\n"
                                      "    Height=\"9\"\n"
                                      "    Width=\"10\"\n"
                                      "    GeneratePrefix=\"11\"\n"
                                      "    NumericName=\"12\"\n"
                                      "    IgnoreCase=\"13\"\n"
                                      "    IgnoreJustification=\"14\"\n"
                                      "    24x79Unprotected=\"15\"\n"
                                      "    RedefInit=\"16\"\n"
                                      "    InputBlankWhenZero=\"17\"\n"
                                      "    Emphasis=\"18\"\n"
                                      "    Highlight=\"19\"\n"
                                      "    Intensity=\"20\"\n"
                                      "    Colour=\"67\"\n"
                                      "    BackColour=\"22\"\n"
                                      "    MarkingChar=\"*\"\n"
                                      "    SoeChar=\"\"\"\n"
                                      "    >\n"
                                      "</DpsForm>\n");
}

TEST_F(Writer, WritesEveryAttributeOfAFieldInOrderWithoutTheCreditSign) {
    Field* field = CreateField();
    field->Name = "n";
    field->InitialValue = "i";
    field->Replenish = "r";
    field->Picin = "9(4)";
    field->Picout = "Z(4)";
    field->Height = 6;
    field->Width = 7;
    field->Decimals = 8;
    field->Column = 9;
    field->Row = 10;
    field->VariableColumn = 11;
    field->VariableRow = 12;
    field->BlankIsZero = 13;
    field->MandatoryEntry = 14;
    field->TabStop = 15;
    field->Protected = 16;
    field->SetModified = 17;
    field->UsageOutput = 18;
    field->FloatingCurrency = 19;
    field->LeadingZeros = 20;
    field->FloatingSign = 21;
    field->TrailingSign = 22;
    field->PositiveSign = 23;
    field->CreditSign = 99;
    field->BlankWhenZero = 24;
    field->InsertDelimiters = 25;
    field->ReplenishForBlanks = 26;
    field->InitialCursor = 27;
    field->Value = 28;
    field->Emphasis = 29;
    field->Highlight = 30;
    field->Intensity = 31;
    field->Colour = 32;
    field->BackColour = 33;
    field->Justification = 34;
    field->Case = 35;
    field->DataType = 36;
    field->Contents = 37;
    EXPECT_EQ(Written(*ListOf(field)), "<DpsField\n"
                                       "    Name=\"n\"\n"
                                       "    InitialValue=\"i\"\n"
                                       "    Replenish=\"r\"\n"
                                       "    Picin=\"9(4)\"\n"
                                       "    Picout=\"Z(4)\"\n"
                                       "    Height=\"6\"\n"
                                       "    Width=\"7\"\n"
                                       "    Decimals=\"8\"\n"
                                       "    Column=\"9\"\n"
                                       "    Row=\"10\"\n"
                                       "    VariableColumn=\"11\"\n"
                                       "    VariableRow=\"12\"\n"
                                       "    BlankIsZero=\"13\"\n"
                                       "    MandatoryEntry=\"14\"\n"
                                       "    TabStop=\"15\"\n"
                                       "    Protected=\"16\"\n"
                                       "    SetModified=\"17\"\n"
                                       "    UsageOutput=\"18\"\n"
                                       "    FloatingCurrency=\"19\"\n"
                                       "    LeadingZeros=\"20\"\n"
                                       "    FloatingSign=\"21\"\n"
                                       "    TrailingSign=\"22\"\n"
                                       "    PositiveSign=\"23\"\n"
                                       "    BlankWhenZero=\"24\"\n"
                                       "    InsertDelimiters=\"25\"\n"
                                       "    ReplenishForBlanks=\"26\"\n"
                                       "    InitialCursor=\"27\"\n"
                                       "    Value=\"28\"\n"
                                       "    Emphasis=\"29\"\n"
                                       "    Highlight=\"30\"\n"
                                       "    Intensity=\"31\"\n"
                                       "    Colour=\"32\"\n"
                                       "    BackColour=\"33\"\n"
                                       "    Justification=\"34\"\n"
                                       "    Case=\"35\"\n"
                                       "    DataType=\"36\"\n"
                                       "    Contents=\"37\"\n"
                                       "    >\n"
                                       "</DpsField>\n");
}

Image* FullImage(RecordType type) {
    Image* image = CreateImage();
    image->Type = type;
    image->Name = "LINES";
    image->IndexName = "IX";
    image->Height = 3;
    image->Width = 4;
    image->Column = 5;
    image->Row = 6;
    image->Spacing = 7;
    image->Constants = 8;
    image->VariableColumn = 9;
    image->VariableRow = 10;
    image->Linked = 11;
    image->Direction = 12;
    image->Contents = 13;
    image->Emphasis = 14;
    image->Highlight = 15;
    image->Intensity = 16;
    image->Colour = 17;
    image->BackColour = 18;
    image->Count = 19;
    return image;
}

TEST_F(Writer, WritesPlainAndRepeatImagesAlikeWithEveryAttributeInOrder) {
    const std::string image = "<DpsImage\n"
                              "    Name=\"LINES\"\n"
                              "    IndexName=\"IX\"\n"
                              "    Height=\"3\"\n"
                              "    Width=\"4\"\n"
                              "    Column=\"5\"\n"
                              "    Row=\"6\"\n"
                              "    Spacing=\"7\"\n"
                              "    Constants=\"8\"\n"
                              "    VariableColumn=\"9\"\n"
                              "    VariableRow=\"10\"\n"
                              "    Linked=\"11\"\n"
                              "    Direction=\"12\"\n"
                              "    Contents=\"13\"\n"
                              "    Emphasis=\"14\"\n"
                              "    Highlight=\"15\"\n"
                              "    Intensity=\"16\"\n"
                              "    Colour=\"17\"\n"
                              "    BackColour=\"18\"\n"
                              "    Count=\"19\"\n"
                              "    >\n"
                              "</DpsImage>\n";
    EXPECT_EQ(Written(*ListOf(FullImage(RecordType::Image), FullImage(RecordType::RepeatImage))),
              image + image);
}

TEST_F(Writer, WritesEveryAttributeOfAHeadingInOrder) {
    Heading* heading = CreateHeading();
    heading->Height = 2;
    heading->Width = 3;
    heading->Column = 4;
    heading->Row = 5;
    heading->Highlight = 6;
    heading->Intensity = 7;
    heading->InitialValue = "text";
    EXPECT_EQ(Written(*ListOf(heading)), "<DpsHeading\n"
                                         "    Height=\"2\"\n"
                                         "    Width=\"3\"\n"
                                         "    Column=\"4\"\n"
                                         "    Row=\"5\"\n"
                                         "    Highlight=\"6\"\n"
                                         "    Intensity=\"7\"\n"
                                         "    InitialValue=\"text\"\n"
                                         "    >\n"
                                         "</DpsHeading>\n");
}

TEST_F(Writer, LeavesZerosAndAbsentTextsOut) {
    EXPECT_EQ(Written(*ListOf(BareField())), "<DpsField\n"
                                             "    >\n"
                                             "</DpsField>\n");
    EXPECT_EQ(Written(*ListOf(BareForm())), "<DpsForm\n"
                                            "    >\n"
                                            "</DpsForm>\n");
}

TEST_F(Writer, WritesATextThatIsEmptyAndOneThatEndsAtNul) {
    Field* field = BareField();
    field->Name = "";
    field->InitialValue = std::string("AB\0CD", 5);
    EXPECT_EQ(Written(*ListOf(field)), "<DpsField\n"
                                       "    Name=\"\"\n"
                                       "    InitialValue=\"AB\"\n"
                                       "    >\n"
                                       "</DpsField>\n");
}

TEST_F(Writer, EscapesNothing) {
    Heading* heading = BareHeading();
    heading->InitialValue = "say \"hi\"\nand <go> &";
    EXPECT_EQ(Written(*ListOf(heading)), "<DpsHeading\n"
                                         "    InitialValue=\"say \"hi\"\nand <go> &\"\n"
                                         "    >\n"
                                         "</DpsHeading>\n");
}

TEST_F(Writer, WritesNumbersWithTheirSign) {
    Heading* heading = BareHeading();
    heading->Row = std::numeric_limits<std::int32_t>::min();
    heading->Column = std::numeric_limits<std::int32_t>::max();
    heading->Width = -1;
    EXPECT_EQ(Written(*ListOf(heading)), "<DpsHeading\n"
                                         "    Width=\"-1\"\n"
                                         "    Column=\"2147483647\"\n"
                                         "    Row=\"-2147483648\"\n"
                                         "    >\n"
                                         "</DpsHeading>\n");
}

TEST_F(Writer, WritesTwoFormTypesAsWordsAndOthersAsNumbers) {
    struct Case {
        int Kind;
        const char* Element;
        const char* Line;
    };
    for (const Case& c : std::vector<Case>{{0, "DpsForm", ""},
                                           {1, "DpsForm", "    FormType=\"DPS\"\n"},
                                           {2, "DpsForm", "    FormType=\"2\"\n"},
                                           {3, "DpsForm", "    FormType=\"3\"\n"},
                                           {4, "DpsForm", "    FormType=\"4\"\n"},
                                           {5, "BmsForm", "    FormType=\"BMS\"\n"},
                                           {-2, "DpsForm", "    FormType=\"-2\"\n"}}) {
        const std::string element = c.Element;
        EXPECT_EQ(Written(*ListOf(BareForm(static_cast<FormKind>(c.Kind)))),
                  "<" + element + "\n" + c.Line + "    >\n</" + element + ">\n");
    }
}

TEST_F(Writer, WritesAGroupThatBeginsAboveTheBlankOnly) {
    const auto written = [&](const char* group) {
        Form* form = BareForm();
        form->Group = group;
        return Written(*ListOf(form));
    };
    const std::string without = "<DpsForm\n    >\n</DpsForm>\n";
    EXPECT_EQ(written("!"), "<DpsForm\n    Group=\"!\"\n    >\n</DpsForm>\n");
    EXPECT_EQ(written("A  "), "<DpsForm\n    Group=\"A  \"\n    >\n</DpsForm>\n");
    for (const char* group : {"  ABC", "", "\tA", "\x1F",
                              "\xC4"
                              "B",
                              "\xFF"})
        EXPECT_EQ(written(group), without) << group;
    EXPECT_EQ(written(nullptr), without);
}

TEST_F(Writer, SkipsRecordsOfUnknownKindWithWhatTheyHold) {
    Field unknown{};
    unknown.Type = static_cast<RecordType>(0);
    unknown.Name = "GHOST";
    ListAppend(ChildrenOf(unknown), BareField());
    List list;
    RecordList owned = ListOf(BareForm());
    ListAppend(list, &unknown);
    ListAppend(list, ListFirst(*owned));
    unknown.Type = static_cast<RecordType>(0);
    EXPECT_EQ(Written(list), "<DpsForm\n    >\n</DpsForm>\n");
    unknown.Type = static_cast<RecordType>(6);
    EXPECT_EQ(Written(list), "<DpsForm\n    >\n</DpsForm>\n");
    ListPopFront(list);
    ListPopFront(list);
}

TEST_F(Writer, WritesAnEmptyListAsAnEmptyFileAndAnEmptyChildListAsNone) {
    EXPECT_EQ(Written(*ListOf()), "");
    Form* form = BareForm();
    ChildrenOf(*form);
    EXPECT_EQ(Written(*ListOf(form)), "<DpsForm\n    >\n</DpsForm>\n");
}

TEST_F(Writer, IndentsEveryLevelByFourBlanks) {
    Form* form = BareForm();
    Record* outer = form;
    for (int level = 1; level <= 12; ++level) {
        Field* field = BareField();
        field->TabStop = level;
        ListAppend(ChildrenOf(*outer), field);
        outer = field;
    }
    std::string expected = "<DpsForm\n    >\n";
    for (std::size_t level = 1; level <= 12; ++level) {
        const std::string at(4 * level, ' ');
        expected += at + "<DpsField\n" + at + "    TabStop=\"" + std::to_string(level) + "\"\n" +
                    at + "    >\n";
    }
    for (std::size_t level = 12; level >= 1; --level)
        expected += std::string(4 * level, ' ') + "</DpsField>\n";
    EXPECT_EQ(Written(*ListOf(form)), expected + "</DpsForm>\n");
}

TEST_F(Writer, WritesABmsMapFlatWithBmsNames) {
    EXPECT_EQ(Written(*ListOf(BareForm(FormKind::Bms), BareField(), BareHeading())),
              "<BmsForm\n"
              "    FormType=\"BMS\"\n"
              "    >\n"
              "</BmsForm>\n"
              "<BmsField\n"
              "    >\n"
              "</BmsField>\n"
              "<BmsHeading\n"
              "    >\n"
              "</BmsHeading>\n");
}

TEST_F(Writer, KeepsTheBmsNamesForEveryLaterForm) {
    Written(*ListOf(BareForm(FormKind::Bms)));
    Form* form = BareForm(FormKind::Dps);
    ListAppend(ChildrenOf(*form), BareField());
    ListAppend(ChildrenOf(*form), BareHeading());
    ListAppend(ChildrenOf(*form), FullImage(RecordType::Image));
    const std::string text = Written(*ListOf(form));
    EXPECT_EQ(text.substr(0, text.find("    <DpsImage\n")), "<DpsForm\n"
                                                            "    FormType=\"DPS\"\n"
                                                            "    >\n"
                                                            "    <BmsField\n"
                                                            "        >\n"
                                                            "    </BmsField>\n"
                                                            "    <BmsHeading\n"
                                                            "        >\n"
                                                            "    </BmsHeading>\n");
    EXPECT_NE(text.find("    <DpsImage\n"), std::string::npos);
    EXPECT_TRUE(text.ends_with("    </DpsImage>\n</DpsForm>\n"));
}

TEST_F(Writer, EndsAnElementWithTheNameItStartedWith) {
    Field* field = BareField();
    ListAppend(ChildrenOf(*field), BareForm(FormKind::Bms));
    EXPECT_EQ(Written(*ListOf(field, BareField())), "<DpsField\n"
                                                    "    >\n"
                                                    "    <BmsForm\n"
                                                    "        FormType=\"BMS\"\n"
                                                    "        >\n"
                                                    "    </BmsForm>\n"
                                                    "</DpsField>\n"
                                                    "<BmsField\n"
                                                    "    >\n"
                                                    "</BmsField>\n");
}

TEST_F(Writer, TruncatesWhatWasThere) {
    const std::string path = WriteFile(m_directory.File("old.t3b"), std::string(1000, 'x'));
    ASSERT_TRUE(SaveScreenDefinition(*ListOf(BareForm()), path));
    EXPECT_EQ(ReadFile(path), "<DpsForm\n    >\n</DpsForm>\n");
}

TEST_F(Writer, ReportsAFileThatCannotBeOpenedAndWritesNothing) {
    const std::string path = m_directory.File("missing/screen.t3b");
    const RecordList list = ListOf(BareForm(FormKind::Bms));
    CaptureStderr errors;
    EXPECT_FALSE(SaveScreenDefinition(*list, path));
    EXPECT_EQ(errors.Take(), path + ": " + std::strerror(ENOENT) + "\n");
    EXPECT_EQ(CurrentElementNames().Field, "DpsField");
}

TEST_F(Writer, ReportsAFailedWriteOnceAndSucceeds) {
    RecordList list = ListOf(BareForm());
    for (int i = 0; i < 2000; ++i)
        ListAppend(*list, BareField());
    CaptureStderr errors;
    EXPECT_TRUE(SaveScreenDefinition(*list, "/dev/full"));
    EXPECT_EQ(errors.Take(), std::string("/dev/full: ") + std::strerror(ENOSPC) + "\n");
    // The next file starts afresh.
    EXPECT_EQ(Written(*ListOf(BareForm())), "<DpsForm\n    >\n</DpsForm>\n");
}

} // namespace
} // namespace grolof::testing_support
