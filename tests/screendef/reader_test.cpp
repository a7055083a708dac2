#include "screendef/reader.h"

#include <cerrno>
#include <cstring>

#include "model/positions.h"
#include "screendef/definitions.h"

namespace grolof::testing_support {
namespace {

class Reader : public DefinitionTest {
protected:
    /// The form, heading, ... that a text with one element at the top loads to.
    template <class Kind>
    Kind& LoadOne(std::string_view text) {
        m_list = Loaded(text);
        EXPECT_EQ(ListCount(*m_list), 1) << text;
        return static_cast<Kind&>(RecordAt(*m_list, 0));
    }

    /// The field that a list of attribute lines makes.
    Field& FieldWith(std::string_view lines) {
        return LoadOne<Field>("<DpsField\n" + std::string(lines) + "\n>\n</DpsField>\n");
    }
    Form& FormWith(std::string_view lines) {
        return LoadOne<Form>("<DpsForm\n" + std::string(lines) + "\n>\n</DpsForm>\n");
    }

    RecordList m_list;
};

TEST_F(Reader, ReadsAFormWithAHeading) {
    const Form& form = LoadOne<Form>("<DpsForm\n"
                                     "    Name=\"A\"\n"
                                     "    FormType=\"DPS\"\n"
                                     "    Height=\"20\"\n"
                                     "    >\n"
                                     "    <DpsHeading\n"
                                     "        Width=\"5\"\n"
                                     "        Row=\"3\"\n"
                                     "        InitialValue=\"TITLE\"\n"
                                     "        >\n"
                                     "    </DpsHeading>\n"
                                     "</DpsForm>\n");
    EXPECT_EQ(form.Type, RecordType::Form);
    EXPECT_EQ(form.Name, "A");
    EXPECT_EQ(form.FormType, FormKind::Dps);
    EXPECT_EQ(form.Height, 20);
    EXPECT_EQ(form.Width, 80); // absent: the default of a new form
    const auto& heading = static_cast<const Heading&>(ChildAt(form, 0));
    EXPECT_EQ(ListCount(*form.Children), 1);
    EXPECT_EQ(heading.Type, RecordType::Heading);
    EXPECT_EQ(heading.InitialValue, "TITLE");
    EXPECT_EQ(heading.Width, 5);
    EXPECT_EQ(heading.Row, 3);
    EXPECT_EQ(heading.Column, 1);
    EXPECT_EQ(heading.Children, nullptr);
}

TEST_F(Reader, ReadsEveryAttributeOfAFormButTheGroup) {
    const Form& form = FormWith("Name=\"MENU\"\nGroup=\"SALES\"\nImageName=\"TOP\"\n"
                                "FunctionKeyName=\"KEYS\"\nCopyName=\"BOOK\"\nInitialValue=\"i\"\n"
                                "Replenish=\"r\"\nFormType=\"SFS\"\nNumber=\"8\"\nHeight=\"9\"\n"
                                "Width=\"10\"\nGeneratePrefix=\"11\"\nNumericName=\"12\"\n"
                                "IgnoreCase=\"13\"\nIgnoreJustification=\"14\"\n"
                                "24x79Unprotected=\"15\"\nRedefInit=\"16\"\n"
                                "InputBlankWhenZero=\"17\"\nEmphasis=\"18\"\nHighlight=\"19\"\n"
                                "Intensity=\"20\"\nColour=\"67\"\nBackColour=\"22\"\n"
                                "MarkingChar=\"*\"\nSoeChar=\">\"");
    EXPECT_EQ(form.Name, "MENU");
    EXPECT_EQ(form.Group, nullptr);
    EXPECT_EQ(form.ImageName, "TOP");
    EXPECT_EQ(form.FunctionKeyName, "KEYS");
    EXPECT_EQ(form.CopyName, "BOOK");
    EXPECT_EQ(form.InitialValue, "i");
    EXPECT_EQ(form.Replenish, "r");
    EXPECT_EQ(form.FormType, FormKind::Sfs);
    EXPECT_EQ(form.Number, 8);
    EXPECT_EQ(form.Height, 9);
    EXPECT_EQ(form.Width, 10);
    EXPECT_EQ(form.GeneratePrefix, 11);
    EXPECT_EQ(form.NumericName, 12);
    EXPECT_EQ(form.IgnoreCase, 13);
    EXPECT_EQ(form.IgnoreJustification, 14);
    EXPECT_EQ(form._24x79Unprotected, 15);
    EXPECT_EQ(form.RedefInit, 16);
    EXPECT_EQ(form.InputBlankWhenZero, 17);
    EXPECT_EQ(form.Emphasis, 18);
    EXPECT_EQ(form.Highlight, 19);
    EXPECT_EQ(form.Intensity, 20);
    EXPECT_EQ(form.Colour, 'C');
    EXPECT_EQ(form.BackColour, 22);
    EXPECT_EQ(form.MarkingChar, '*');
    EXPECT_EQ(form.SoeChar, '>');
}

TEST_F(Reader, ReadsEveryAttributeOfAField) {
    const Field& field = FieldWith(
        "Name=\"n\"\nInitialValue=\"i\"\nReplenish=\"r\"\nPicin=\"9(4)\"\nPicout=\"Z(4)\"\n"
        "Height=\"6\"\nWidth=\"7\"\nDecimals=\"8\"\nColumn=\"9\"\nRow=\"10\"\n"
        "VariableColumn=\"11\"\nVariableRow=\"12\"\nBlankIsZero=\"13\"\nMandatoryEntry=\"14\"\n"
        "TabStop=\"15\"\nProtected=\"16\"\nSetModified=\"17\"\nUsageOutput=\"18\"\n"
        "FloatingCurrency=\"19\"\nLeadingZeros=\"20\"\nFloatingSign=\"21\"\nTrailingSign=\"22\"\n"
        "PositiveSign=\"23\"\nCreditSign=\"99\"\nBlankWhenZero=\"24\"\nInsertDelimiters=\"25\"\n"
        "ReplenishForBlanks=\"26\"\nInitialCursor=\"27\"\nValue=\"28\"\nEmphasis=\"29\"\n"
        "Highlight=\"30\"\nIntensity=\"31\"\nColour=\"32\"\nBackColour=\"33\"\n"
        "Justification=\"34\"\nCase=\"35\"\nDataType=\"36\"\nContents=\"37\"");
    EXPECT_EQ(field.Name, "n");
    EXPECT_EQ(field.InitialValue, "i");
    EXPECT_EQ(field.Replenish, "r");
    EXPECT_EQ(field.Picin, "9(4)");
    EXPECT_EQ(field.Picout, "Z(4)");
    EXPECT_EQ(field.CreditSign, 0);
    std::int32_t expected = 6;
    for (auto member : {&Field::Height,
                        &Field::Width,
                        &Field::Decimals,
                        &Field::Column,
                        &Field::Row,
                        &Field::VariableColumn,
                        &Field::VariableRow,
                        &Field::BlankIsZero,
                        &Field::MandatoryEntry,
                        &Field::TabStop,
                        &Field::Protected,
                        &Field::SetModified,
                        &Field::UsageOutput,
                        &Field::FloatingCurrency,
                        &Field::LeadingZeros,
                        &Field::FloatingSign,
                        &Field::TrailingSign,
                        &Field::PositiveSign,
                        &Field::BlankWhenZero,
                        &Field::InsertDelimiters,
                        &Field::ReplenishForBlanks,
                        &Field::InitialCursor,
                        &Field::Value,
                        &Field::Emphasis,
                        &Field::Highlight,
                        &Field::Intensity,
                        &Field::Colour,
                        &Field::BackColour,
                        &Field::Justification,
                        &Field::Case,
                        &Field::DataType,
                        &Field::Contents})
        EXPECT_EQ(field.*member, expected++);
}

TEST_F(Reader, ReadsEveryAttributeOfAnImage) {
    const Image& image = LoadOne<Image>(
        "<DpsImage\nName=\"n\"\nIndexName=\"x\"\nHeight=\"3\"\nWidth=\"4\"\nColumn=\"5\"\n"
        "Row=\"6\"\nSpacing=\"7\"\nConstants=\"8\"\nVariableColumn=\"9\"\nVariableRow=\"10\"\n"
        "Linked=\"11\"\nDirection=\"12\"\nContents=\"13\"\nEmphasis=\"14\"\nHighlight=\"15\"\n"
        "Intensity=\"16\"\nColour=\"17\"\nBackColour=\"18\"\nCount=\"19\"\n>\n</DpsImage>\n");
    EXPECT_EQ(image.Name, "n");
    EXPECT_EQ(image.IndexName, "x");
    std::int32_t expected = 3;
    for (auto member :
         {&Image::Height, &Image::Width, &Image::Column, &Image::Row, &Image::Spacing,
          &Image::Constants, &Image::VariableColumn, &Image::VariableRow, &Image::Linked,
          &Image::Direction, &Image::Contents, &Image::Emphasis, &Image::Highlight,
          &Image::Intensity, &Image::Colour, &Image::BackColour, &Image::Count})
        EXPECT_EQ(image.*member, expected++);
}

TEST_F(Reader, ReadsEveryAttributeOfAHeading) {
    const Heading& heading = LoadOne<Heading>(
        "<DpsHeading\nHeight=\"2\"\nWidth=\"3\"\nColumn=\"4\"\nRow=\"5\"\nHighlight=\"6\"\n"
        "Intensity=\"7\"\nInitialValue=\"t\"\nName=\"ignored\"\n>\n</DpsHeading>\n");
    EXPECT_EQ(heading.Height, 2);
    EXPECT_EQ(heading.Width, 3);
    EXPECT_EQ(heading.Column, 4);
    EXPECT_EQ(heading.Row, 5);
    EXPECT_EQ(heading.Highlight, 6);
    EXPECT_EQ(heading.Intensity, 7);
    EXPECT_EQ(heading.InitialValue, "t");
}

TEST_F(Reader, KeepsDefaultsWhereTheFileIsSilentAndTakesAStoredZero) {
    const Field& silent = FieldWith("");
    EXPECT_EQ(silent.Row, 1);
    EXPECT_EQ(silent.Contents, 1);
    EXPECT_EQ(silent.Name, std::nullopt);
    const Field& zero = FieldWith("Row=\"0\"\nContents=\"0\"");
    EXPECT_EQ(zero.Row, 0);
    EXPECT_EQ(zero.Contents, 0);
}

TEST_F(Reader, TakesStartTagsOfEitherDialectInAnyCase) {
    struct Case {
        const char* Tag;
        RecordType Type;
    };
    for (const Case& c : std::vector<Case>{{"<DpsForm", RecordType::Form},
                                           {"<BmsForm", RecordType::Form},
                                           {"<dpsform", RecordType::Form},
                                           {"<DpsField", RecordType::Field},
                                           {"<BmsField", RecordType::Field},
                                           {"<BMSFIELD", RecordType::Field},
                                           {"<DpsHeading", RecordType::Heading},
                                           {"<BmsHeading", RecordType::Heading},
                                           {"<dPSheading", RecordType::Heading},
                                           {"<DpsImage", RecordType::Image},
                                           {"<dpsimage", RecordType::Image},
                                           {"   <DpsImage   ", RecordType::Image},
                                           {"<DpsImage \r\r", RecordType::Image}})
        EXPECT_EQ(LoadOne<Record>(std::string(c.Tag) + "\n>\n</x>\n").Type, c.Type) << c.Tag;
}

TEST_F(Reader, PassesOverWhatIsNoStartTag) {
    for (const std::string line :
         {"\t<DpsForm", "<DpsForm>", "<DpsForm Name=\"A\"", "< DpsForm", "<BmsImage", "DpsForm",
          "<DpsForms", "<", "<DpsForm\t", "x<DpsForm", "<DpsForm \r ", "", "Name=\"A\"", ">"})
        EXPECT_EQ(ListCount(*Loaded(line + "\n>\n")), 0) << line;
}

TEST_F(Reader, TellsAFormsTypeByItsAttributeNotByItsTag) {
    EXPECT_EQ(LoadOne<Form>("<BmsForm\n>\n</BmsForm>\n").FormType, FormKind::Dps);
    EXPECT_EQ(LoadOne<Form>("<DpsForm\nFormType=\"BMS\"\n>\n</DpsForm>\n").FormType, FormKind::Bms);
}

TEST_F(Reader, TakesDpsFieldsAndHeadingsForNoStartTagsOnceABmsFormWasWritten) {
    Form* bms = CreateForm();
    bms->FormType = FormKind::Bms;
    Written(*ListOf(bms));
    EXPECT_EQ(ListCount(*Loaded("<DpsField\n>\n")), 0);
    EXPECT_EQ(ListCount(*Loaded("<DpsHeading\n>\n")), 0);
    EXPECT_EQ(ListCount(*Loaded("<BmsField\n>\n")), 1);
    EXPECT_EQ(ListCount(*Loaded("<BmsHeading\n>\n")), 1);
    EXPECT_EQ(ListCount(*Loaded("<DpsImage\n>\n")), 1);
    EXPECT_EQ(ListCount(*Loaded("<DpsForm\n>\n")), 1);
    EXPECT_EQ(ListCount(*Loaded("<BmsForm\n>\n")), 1);
}

TEST_F(Reader, ReadsTextsUpToTheNextQuoteOrTheLineEnd) {
    struct Case {
        const char* Line;
        Text Value;
    };
    for (const Case& c : std::vector<Case>{{"Name=\"X\"", "X"},
                                           {"name=\"x\"", "x"},
                                           {"NAME=\"Mixed Case\"", "Mixed Case"},
                                           {"    Name=\"X\"   ", "X"},
                                           {"Name=\"  X  \"", "  X  "},
                                           {"Name=\"\"", ""},
                                           {"Name=\"", ""},
                                           {"Name=", ""},
                                           {"Name=X", ""},
                                           {"Name=XYZ\"", "YZ"},
                                           {"Name=\"open", "open"},
                                           {"Name=\"open   ", "open"},
                                           {"Name=\"a\"b\"", "a"},
                                           {"Name=\"a=b\"", "a=b"},
                                           {"Name=\"</DpsField>\"", "</DpsField>"},
                                           {"Name=\"\tt\t\"", "\tt\t"},
                                           {"Name=\"r\" \r", "r"},
                                           {"Name=\"A\"\nName=\"B\"", "B"},
                                           {"Name=\"A\"\nName=\"\"", ""},
                                           {"\tName=\"A\"", std::nullopt},
                                           {"Name =\"A\"", std::nullopt},
                                           {"Name\"A\"", std::nullopt},
                                           {"xName=\"A\"", std::nullopt},
                                           {"Name:\"A\"", std::nullopt}})
        EXPECT_EQ(FieldWith(c.Line).Name, c.Value) << c.Line;
}

TEST_F(Reader, ReadsNumbersFromTheirFirstCharacterOn) {
    struct Case {
        const char* Rest;
        std::int32_t Value;
    };
    for (const Case& c : std::vector<Case>{{"\"12\"", 12},
                                           {"\"-12\"", -12},
                                           {"\"+12\"", 12},
                                           {"\"0012\"", 12},
                                           {"\"12abc\"", 12},
                                           {"\"12", 12},
                                           {"'12'", 12},
                                           {"12", 2},
                                           {"\"0\"", 0},
                                           {"\"-\"", 0},
                                           {"\"+\"", 0},
                                           {"\"+-1\"", 0},
                                           {"\"- 1\"", 0},
                                           {"\" 12\"", 0},
                                           {"\"\t12\"", 0},
                                           {"\"\"", 0},
                                           {"\"", 0},
                                           {"", 0},
                                           {"\"x\"", 0},
                                           {"\"0x1F\"", 0},
                                           {" \"12\"", 0},
                                           {"\"2147483647\"", 2147483647},
                                           {"\"2147483648\"", -2147483647 - 1},
                                           {"\"4294967297\"", 1},
                                           {"\"-4294967297\"", -1},
                                           {"\"9223372036854775807\"", -1},
                                           {"\"9999999999999999999999999999999999999999\"", -1},
                                           {"\"-9999999999999999999999999999999999999999\"", 0}})
        EXPECT_EQ(FieldWith(std::string("Decimals=\"77\"\nDecimals=") + c.Rest).Decimals, c.Value)
            << c.Rest;
}

TEST_F(Reader, TakesTheFirstCharacterOfACharacterValue) {
    struct Case {
        const char* Line;
        char Value;
    };
    for (const Case& c : std::vector<Case>{{"MarkingChar=\"*\"", '*'},
                                           {"MarkingChar=\"*+\"", '*'},
                                           {"markingchar=\"a\"", 'a'},
                                           {"MarkingChar=\" \"", ' '},
                                           {"MarkingChar=\"\"", '"'},
                                           {"MarkingChar=\"\"\"", '"'},
                                           {"MarkingChar=\"", '\0'},
                                           {"MarkingChar=", '\0'},
                                           {"MarkingChar=x", '\0'},
                                           {"MarkingChar=xy", 'y'},
                                           {"MarkingChar=\"\xE4\"", '\xE4'},
                                           {"MarkingChar=\"a\"\nMarkingChar=\"b\"", 'b'},
                                           {"MarkingChar=\"a\"\nMarkingChar=\"", '\0'}})
        EXPECT_EQ(FormWith(c.Line).MarkingChar, c.Value) << c.Line;
    EXPECT_EQ(FormWith("SoeChar=\">\"").SoeChar, '>');
}

TEST_F(Reader, ReadsFormTypesAsWordsOfThreeLettersOrNumbers) {
    struct Case {
        const char* Rest;
        int Kind;
    };
    for (const Case& c : std::vector<Case>{{"\"DPS\"", 1},
                                           {"\"BMS\"", 5},
                                           {"\"MCS\"", 2},
                                           {"\"SFS\"", 3},
                                           {"\"bms\"", 5},
                                           {"\"mCs\"", 2},
                                           {"\"DPSX\"", 1},
                                           {"\"BMS", 5},
                                           {"   \"SFS\"", 3},
                                           {"\"7\"", 7},
                                           {"\"7x\"", 7},
                                           {"  \"7", 7},
                                           {"\"-2\"", -2},
                                           {"\"+2\"", 2},
                                           {"\"0\"", 0},
                                           {"\"DP\"", 0},
                                           {"\"DP", 0},
                                           {"\"XYZ\"", 0},
                                           {"\" DPS\"", 0},
                                           {"\" 7\"", 0},
                                           {"\"\"", 0},
                                           {"\"", 0},
                                           {"\"4294967298\"", 2},
                                           // without a quote the attribute is not there
                                           {"", 99},
                                           {"DPS", 99},
                                           {"7", 99},
                                           {"xDPS\"", 99},
                                           {"\t\"DPS\"", 99},
                                           {"'DPS'", 99}})
        EXPECT_EQ(FormWith(std::string("FormType=\"99\"\nformtype=") + c.Rest).FormType,
                  static_cast<FormKind>(c.Kind))
            << c.Rest;
}

TEST_F(Reader, SetsNumericNameWhenTheNewNameIsTheNumberedOne) {
    struct Case {
        const char* Lines;
        int NumericName;
    };
    for (const Case& c :
         std::vector<Case>{{"NewName=\"DPS00012\"\nNumber=\"12\"", 1},
                           {"Number=\"12\"\nnewname=\"DPS00012\"", 1},
                           {"NewName=\"DPS123456\"\nNumber=\"123456\"", 1},
                           {"NewName=\"DPS-0001\"\nNumber=\"-1\"", 1},
                           {"NewName=\"DPS-2147483648\"\nNumber=\"-2147483648\"", 1},
                           {"NewName=\"DPS00000\"", 1},
                           {"NewName=\"MENU\"\nNewName=\"DPS00012\"\nNumber=\"12\"", 1},
                           {"NewName=\"DPS00012\"\nNewName=\"\"\nNumber=\"12\"", 0},
                           {"NewName=\"dps00012\"\nNumber=\"12\"", 0},
                           {"NewName=\"DPS0012\"\nNumber=\"12\"", 0},
                           {"NewName=\"DPS00012 \"\nNumber=\"12\"", 0},
                           {"NewName=\"DPS00013\"\nNumber=\"12\"", 0},
                           {"NewName=\"\"", 0},
                           {"Name=\"DPS00012\"\nNumber=\"12\"", 0},
                           {"NumericName=\"7\"\nNewName=\"MENU\"", 7},
                           {"NumericName=\"7\"\nNewName=\"DPS00000\"", 1}})
        EXPECT_EQ(FormWith(c.Lines).NumericName, c.NumericName) << c.Lines;
}

TEST_F(Reader, KeepsTheNewNameOfANestedFormApart) {
    const Form& form = LoadOne<Form>("<DpsForm\nNumber=\"1\"\nNewName=\"DPS00001\"\n>\n"
                                     "<DpsForm\nNumber=\"1\"\n>\n</DpsForm>\n</DpsForm>\n");
    EXPECT_EQ(form.NumericName, 1);
    EXPECT_EQ(static_cast<Form&>(ChildAt(form, 0)).NumericName, 0);
}

TEST_F(Reader, MakesAnImageWithACountARepeatImage) {
    const auto typeWith = [&](const std::string& lines) {
        return LoadOne<Image>("<DpsImage\n" + lines + "\n>\n</DpsImage>\n").Type;
    };
    EXPECT_EQ(typeWith(""), RecordType::Image);
    EXPECT_EQ(typeWith("Count=\"0\""), RecordType::Image);
    EXPECT_EQ(typeWith("Count=\"-1\""), RecordType::Image);
    EXPECT_EQ(typeWith("Count=\"1\""), RecordType::RepeatImage);
    EXPECT_EQ(typeWith("Count=\"2147483647\""), RecordType::RepeatImage);
    EXPECT_EQ(typeWith("Count=\"3\"\nCount=\"0\""), RecordType::Image);
    // also when the file ends within the element or the element has children
    EXPECT_EQ(LoadOne<Image>("<DpsImage\nCount=\"3\"").Type, RecordType::RepeatImage);
    EXPECT_EQ(LoadOne<Image>("<DpsImage\nCount=\"3\"\n>\n<DpsField\n>\n").Type,
              RecordType::RepeatImage);
}

TEST_F(Reader, ReadsSiblingsChildrenAndSeveralForms) {
    m_list = Loaded("<DpsForm\n>\n"
                    "    <DpsField\n    Name=\"A\"\n    >\n    </DpsField>\n"
                    "    <DpsImage\n    >\n"
                    "        <DpsField\n        Name=\"B\"\n        >\n        </DpsField>\n"
                    "        <DpsHeading\n        >\n        </DpsHeading>\n"
                    "    </DpsImage>\n"
                    "    <DpsField\n    Name=\"C\"\n    >\n    </DpsField>\n"
                    "</DpsForm>\n"
                    "<DpsForm\nName=\"SECOND\"\n>\n</DpsForm>\n");
    ASSERT_EQ(ListCount(*m_list), 2);
    const Record& form = RecordAt(*m_list, 0);
    ASSERT_EQ(ListCount(*form.Children), 3);
    EXPECT_EQ(static_cast<Field&>(ChildAt(form, 0)).Name, "A");
    const Record& image = ChildAt(form, 1);
    ASSERT_EQ(ListCount(*image.Children), 2);
    EXPECT_EQ(static_cast<Field&>(ChildAt(image, 0)).Name, "B");
    EXPECT_EQ(ChildAt(image, 1).Type, RecordType::Heading);
    EXPECT_EQ(static_cast<Field&>(ChildAt(form, 2)).Name, "C");
    EXPECT_EQ(static_cast<Form&>(RecordAt(*m_list, 1)).Name, "SECOND");
}

TEST_F(Reader, ReadsABmsMapFlat) {
    m_list = Loaded("<BmsForm\nFormType=\"BMS\"\n>\n</BmsForm>\n"
                    "<BmsField\n>\n</BmsField>\n<BmsHeading\n>\n</BmsHeading>\n");
    ASSERT_EQ(ListCount(*m_list), 3);
    EXPECT_EQ(RecordAt(*m_list, 0).Children, nullptr);
    EXPECT_EQ(RecordAt(*m_list, 1).Type, RecordType::Field);
    EXPECT_EQ(RecordAt(*m_list, 2).Type, RecordType::Heading);
}

TEST_F(Reader, IgnoresUnknownLinesWithinAnElement) {
    const Field& field = FieldWith("Nonsense=\"1\"\n\nhello\n>\n>>\nDepth\n=\n\"\nWidth=\"3\"");
    EXPECT_EQ(field.Width, 3);
    EXPECT_EQ(field.Children, nullptr);
}

TEST_F(Reader, ReadsAttributesBehindTheEndOfTheStartTagToo) {
    EXPECT_EQ(LoadOne<Field>("<DpsField\n>\nWidth=\"3\"\n</DpsField>\n").Width, 3);
}

TEST_F(Reader, ReadsNoAttributeBehindTheFirstChild) {
    const Form& form =
        LoadOne<Form>("<DpsForm\n>\n<DpsField\n>\n</DpsField>\nHeight=\"3\"\n</DpsForm>\n");
    EXPECT_EQ(form.Height, 24);
    EXPECT_EQ(ListCount(*form.Children), 1);
}

TEST_F(Reader, EndsAListEarlyAtTheEndLineOfAnUnknownElement) {
    // </Note> ends the form's children and so the form; </DpsForm> then ends the load.
    m_list = Loaded("<DpsForm\n>\n<Note\nHeight=\"3\"\n>\n</Note>\n"
                    "<DpsField\n>\n</DpsField>\n</DpsForm>\n<DpsForm\n>\n</DpsForm>\n");
    ASSERT_EQ(ListCount(*m_list), 2);
    const Form& form = AsForm(RecordAt(*m_list, 0));
    EXPECT_EQ(form.Height, 24);
    ASSERT_NE(form.Children, nullptr); // a child was met, though none was made
    EXPECT_EQ(ListCount(*form.Children), 0);
    EXPECT_EQ(RecordAt(*m_list, 1).Type, RecordType::Field);
}

TEST_F(Reader, EndsAListAtAnEndMarkAnywhereInALine) {
    EXPECT_EQ(ListCount(*Loaded("x</y\n<DpsForm\n>\n</DpsForm>\n")), 0);
    EXPECT_EQ(ListCount(*Loaded("<DpsForm\n>\n</DpsForm>\n<DpsForm </\n<DpsForm\n")), 1);
    // Within an element the mark counts at the beginning of a line only.
    EXPECT_EQ(LoadOne<Field>("<DpsField\nx</y\nWidth=\"3\"\n>\n</DpsField>\n").Width, 3);
}

TEST_F(Reader, TakesALineThatBeginsAChildForOneWhateverFollows) {
    // "<a </" begins no end line; it begins a list, is no start tag, and the next end line ends it.
    m_list = Loaded("<DpsForm\n>\n<a </\n<DpsField\n>\n</DpsField>\n</DpsForm>\n");
    ASSERT_EQ(ListCount(*m_list), 1);
    EXPECT_EQ(ListCount(*RecordAt(*m_list, 0).Children), 1);
}

TEST_F(Reader, EndsTheLoadSilentlyAtAStrayEndLine) {
    EXPECT_EQ(ListCount(*Loaded("<DpsForm\n>\n</DpsForm>\n</DpsForm>\n<DpsForm\n>\n")), 1);
    EXPECT_EQ(ListCount(*Loaded("</x\n<DpsForm\n")), 0);
}

TEST_F(Reader, AcceptsAnyElementWithinAnyOther) {
    const Heading& heading =
        LoadOne<Heading>("<DpsHeading\n>\n<DpsForm\n>\n</DpsForm>\n</DpsHeading>\n");
    EXPECT_EQ(ChildAt(heading, 0).Type, RecordType::Form);
}

TEST_F(Reader, ReadsLongLinesInPieces) {
    // 14 characters of name and quote leave 2,545 of the line's 2,559 for the value; what is
    // behind them is a line of its own.
    const std::string full(2545, 'v');
    const std::string head = "<DpsField\nInitialValue=\"";
    const auto& exact = LoadOne<Field>(head + full + "\nWidth=\"3\"\n>\n</DpsField>\n");
    EXPECT_EQ(exact.InitialValue, full);
    EXPECT_EQ(exact.Width, 3);
    const auto& over = LoadOne<Field>(head + full + "Width=\"4\"\n>\n</DpsField>\n");
    EXPECT_EQ(over.InitialValue, full);
    EXPECT_EQ(over.Width, 4);
    const auto& under = LoadOne<Field>(head + full.substr(1) + "\"Width=\"4\"\n>\n</DpsField>\n");
    EXPECT_EQ(under.InitialValue, full.substr(1));
    EXPECT_EQ(under.Width, 4);
    const auto& cut =
        LoadOne<Field>(head + full + "Row=\"5\"" + std::string(9000, 'x') + "\n>\n</DpsField>\n");
    EXPECT_EQ(cut.Row, 5);
}

TEST_F(Reader, CountsIndentationInTheLengthOfALine) {
    EXPECT_EQ(ListCount(*Loaded(std::string(2551, ' ') + "<DpsForm\n")), 1);
    EXPECT_EQ(ListCount(*Loaded(std::string(2552, ' ') + "<DpsForm\n")), 0);
    // The second piece of this line is the start tag.
    EXPECT_EQ(ListCount(*Loaded(std::string(2559, ' ') + "<DpsForm\n")), 1);
}

TEST_F(Reader, EndsALineAtNul) {
    using namespace std::string_literals;
    EXPECT_EQ(FieldWith("Name=\"A\0B\"\nWidth=\"3\""s).Name, "A");
    EXPECT_EQ(FieldWith("\0Name=\"A\"\nWidth=\"3\""s).Name, std::nullopt);
    EXPECT_EQ(FieldWith("\0\0\nWidth=\"3\""s).Width, 3);
    EXPECT_EQ(ListCount(*Loaded("<DpsForm\0junk\n>\n"s)), 1);
}

TEST_F(Reader, LoadsEmptyAndBinaryFilesAsEmptyLists) {
    EXPECT_EQ(ListCount(*Loaded("")), 0);
    EXPECT_EQ(ListCount(*Loaded("\n\n\n")), 0);
    std::string binary;
    for (int i = 0; i < 20000; ++i)
        binary += static_cast<char>(i * 31 + i / 7);
    EXPECT_EQ(ListCount(*Loaded(binary)), 0);
}

TEST_F(Reader, ReportsAFileThatCannotBeOpened) {
    const std::string path = m_directory.File("missing.t3b");
    CaptureStderr errors;
    const RecordList forms = LoadScreenDefinition(path);
    EXPECT_EQ(errors.Take(), path + ": " + std::strerror(ENOENT) + "\n");
    ASSERT_NE(forms, nullptr);
    EXPECT_TRUE(ListIsEmpty(*forms));
}

TEST_F(Reader, ReportsADirectoryOnceAndLoadsItAsEmpty) {
    CaptureStderr errors;
    const RecordList forms = LoadScreenDefinition(m_directory.Path());
    EXPECT_EQ(errors.Take(), m_directory.Path() + ": " + std::strerror(EISDIR) + "\n");
    ASSERT_NE(forms, nullptr);
    EXPECT_TRUE(ListIsEmpty(*forms));
}

std::string NestedImages(int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i)
        text += "<DpsImage\n>\n";
    for (int i = 0; i < levels; ++i)
        text += "</DpsImage>\n";
    return text;
}

TEST_F(Reader, ReadsElementsDownToTheDeepestLevel) {
    m_list = Loaded(NestedImages(kDeepestNesting) + "<DpsForm\n>\n</DpsForm>\n");
    ASSERT_EQ(ListCount(*m_list), 2);
    int levels = 0;
    for (const List* list = m_list.get(); list != nullptr; list = RecordAt(*list, 0).Children.get())
        ++levels;
    EXPECT_EQ(levels, kDeepestNesting);
}

TEST_F(Reader, RefusesElementsBelowTheDeepestLevel) {
    for (const int levels : {kDeepestNesting + 1, 100000}) {
        const std::string path = WriteFile(m_directory.File("deep.t3b"),
                                           "<DpsForm\n>\n</DpsForm>\n" + NestedImages(levels));
        CaptureStderr errors;
        const RecordList forms = LoadScreenDefinition(path);
        EXPECT_EQ(errors.Take(), path + ": elements nested more than 500 deep\n");
        ASSERT_NE(forms, nullptr);
        EXPECT_TRUE(ListIsEmpty(*forms));
    }
    // Unknown elements make no level.
    std::string unknown = "<DpsForm\n>\n";
    for (int i = 0; i < 1000; ++i)
        unknown += "<Note\n";
    EXPECT_EQ(ListCount(*Loaded(unknown)), 1);
}

} // namespace
} // namespace grolof::testing_support
