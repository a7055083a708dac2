#include "fldp/parser.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "model/positions.h"
#include "source.h"

namespace grolof {
namespace {

using namespace fldp_test;

class FldpParser : public SourceTest {};

// Statements and the members that they leave different from a new record's.
struct Effect {
    const char* Source;
    const char* Expected;
};

void PrintTo(const Effect& effect, std::ostream* out) {
    *out << effect.Source;
}

// ---------------------------------------------------------------------------------------------
// Forms. They are read without options, so that the switches copied from there stay 0.

class FormStatement : public SourceTest, public ::testing::WithParamInterface<Effect> {};

TEST_P(FormStatement, HasItsEffect) {
    const RecordList forms = Forms(InForm(GetParam().Source), 0);
    ASSERT_EQ(ListCount(*forms), 1);
    EXPECT_EQ(Described(AsForm(FirstOf(*forms))), GetParam().Expected);
    EXPECT_EQ(FirstOf(*forms).Children, nullptr);
}

constexpr Effect kFormEffects[] = {
    {"", ""},
    {"BACKGROUND_ATTRIBUTES", ""},
    {"BACKGROUND_ATTRIBUTES COLOR = BLUE", "BackColour=66"},
    {"BAC_ATT COLOR = BLACK", "BackColour=69"},
    {"BAC_ATT COLOR = CYAN", "BackColour=67"},
    {"BAC_ATT COLOR = GREEN", "BackColour=71"},
    {"BAC_ATT COLOR = MAGENTA", "BackColour=77"},
    {"BAC_ATT COLOR = RED", "BackColour=82"},
    {"BAC_ATT COLOR = YELLOW", "BackColour=89"},
    {"BAC_ATT COLOR = WHITE", ""},
    {"BAC_ATT COLOR = RED COLOR = WHITE", "BackColour=82"},
    {"BAC_ATT COLOR = RED COLOR = NAME", "BackColour=82"},
    {"FOREGROUND_ATTRIBUTES COLOR = BLACK", "Colour=69"},
    {"FOR_ATT COLOR = YELLOW INTENSITY = HIGH", "Intensity=2 Colour=89"},
    {"FOR_ATT INTENSITY = LOW", "Intensity=3"},
    {"FOR_ATT INTENSITY = SUPPRESSED", "Intensity=4"},
    {"FOR_ATT INTENSITY = NORMAL", ""},
    {"FOR_ATT INTENSITY = HIGH INTENSITY = NORMAL", "Intensity=2"},
    {"FOR_ATT INTENSITY = SUPPRESS", ""},
    {"CHARACTER_ATTRIBUTES FONT_INDEX = 3", ""},
    {"CHARACTER_ATTRIBUTES", ""},
    {"CHECKNUMBER_TEST SET_MODE = HARD DEPENDENT = YES", ""},
    {"CONVERSATION SET_MODE = SOFT DEPENDENT = NO", ""},
    {"TEST SET_MODE = DIAGNOSE DEPENDENT = YES", ""},
    {"TEST", ""},
    {"CURSOR IMAGE_NAME = 'IMG'", "ImageName='IMG'"},
    {"CUR IMAGE_NAME = 'IMG' IMAGE_NAME = ''", "ImageName=''"},
    {"DIMENSION HEIGHT = 12 WIDTH = 40", "Height=12 Width=40"},
    {"DIM WIDTH = 132", "Width=132"},
    {"DIM HEIGHT = 0 WIDTH = 4294967297", "Height=0 Width=1"},
    {"EDIT_SYMBOL DECIMAL_POINT = ',' COMMA = '.'", ""},
    {"EMPHASIS TYPE = (UNDERSCORE)", "Emphasis=2"},
    {"EMP TYPE = (NONE, UNDERSCORE ; BLINK)", "Emphasis=2"},
    {"EMP TYPE = (NONE)", ""},
    // Only the list form counts.
    {"EMP TYPE = UNDERSCORE", ""},
    {"FIELD_CHARACTERS = ('A')", ""},
    {"FIELD_CHARACTERS = ('A', '_' . 'C' & 'D')", ""},
    {"FUNCTION_KEYS NAME = KEYS", "FunctionKeyName='KEYS'"},
    {"FUNCTION_KEYS NAME = Cursor", "FunctionKeyName='Cursor'"},
    {"FUNCTION_KEYS NAME = (KEY_1, ALL, Key_3)", "FunctionKeyName='Key_3'"},
    {"FUNCTION_KEYS NAME = (K1) NAME = K2", "FunctionKeyName='K2'"},
    {"GROUP = 'MYLIB'", "Group='MYLIB'"},
    {"GROUP = ''", "Group=''"},
    {"HIGHLIGHT TYPE = BLINK", ""},
    {"HIG TYPE = (BLINK, REVERSE)", ""},
    {"INPUT_ATTRIBUTES CONTROL_CHARACTERS_ALLOWED = YES", ""},
    {"INP_ATT", ""},
    {"NAME = 'MENU'", "Name='MENU'"},
    {"NAME = ''", "Name=''"},
    {"NAME = 'A' NAME = 'B'", "Name='B'"},
    {"NUMBER = 1234", "Number=1234"},
    {"NUMBER = 99999999999999999999", "Number=-1"},
    {"PREDEFINED_VALUE INITIAL_VALUE = 'x'", "InitialValue='x'"},
    {"PRE_VAL INITIAL_VALUE = ''", "InitialValue=''"},
    {"PRE_VAL I18N_CCSNUM = 8", ""},
    {"PRE_VAL REPLENISH_STRING = '*'", "Replenish='*'"},
    {"PRE_VAL MARKING_CHARACTER = '#x' SOE_CHARACTER = '>y'", "MarkingChar=# SoeChar=>"},
    {"PRE_VAL MARKING_CHARACTER = '#' MARKING_CHARACTER = ''", ""},
    {"SECURITY FAIL_ACTION = NONE TYPE = SYSTEM LEVEL = 3", ""},
    {"START_IMAGE = 'A'", ""},
    {"STOP_IMAGE = 'A'", ""},
    {"STORAGE GENERATE = YES", "GeneratePrefix=1"},
    {"STORAGE GENERATE = YES GENERATE = NO", ""},
    {"STO GENERATE = ALL", ""},
    {"STORAGE GENERATE_TYPE = FCA SOURCE = GENERATE", ""},
};

INSTANTIATE_TEST_SUITE_P(All, FormStatement, ::testing::ValuesIn(kFormEffects));

// ---------------------------------------------------------------------------------------------
// Images

class ImageStatement : public SourceTest, public ::testing::WithParamInterface<Effect> {};

TEST_P(ImageStatement, HasItsEffect) {
    const RecordList forms = Forms(InImage(GetParam().Source));
    EXPECT_EQ(Described(AsImage(FirstItemOf(*forms))), GetParam().Expected);
}

constexpr Effect kImageEffects[] = {
    {"", ""},
    {"BACKGROUND_ATTRIBUTES COLOR = BLACK", "BackColour=69"},
    {"FOREGROUND_ATTRIBUTES COLOR = GREEN INTENSITY = LOW", "Intensity=3 Colour=71"},
    {"FOR_ATT COLOR = WHITE INTENSITY = NORMAL", ""},
    // An image loses its direction and contents.
    {"CHARACTER_ATTRIBUTES FONT_INDEX = 1", "Direction=0 Contents=0"},
    {"CHARACTER_ATTRIBUTES", "Direction=0 Contents=0"},
    {"CHARACTER_ATTRIBUTES\nOUT_ATT CONTENTS = STORAGE", "Direction=0"},
    {"SECURITY FAIL_ACTION = NONE TYPE = SYSTEM LEVEL = 3", ""},
    {"DIMENSION HEIGHT = 2 WIDTH = 30", "Height=2 Width=30"},
    {"EMPHASIS TYPE = (UNDERSCORE)", "Emphasis=2"},
    {"EMP TYPE = UNDERSCORE", ""},
    {"HIGHLIGHT TYPE = (BLINK)", "Highlight=2"},
    {"HIG TYPE = (REVERSE)", "Highlight=3"},
    {"HIG TYPE = (REVERSE, BLINK)", "Highlight=2"},
    {"HIG TYPE = REVERSE", ""},
    {"HIG TYPE = (NONE)", ""},
    {"NAME = 'LINES'", "Name='LINES'"},
    {"REFERENCE_NAME = 'OTHER'", "Name='OTHER'"},
    {"NAME = 'A' REFERENCE_NAME = 'B'", "Name='B'"},
    {"OUTPUT_ATTRIBUTES CONTENTS = BLANK", "Contents=2"},
    {"OUT_ATT CONTENTS = BLANK CONTENTS = STORAGE", ""},
    {"POSITION_IMAGE ROW = 5 COLUMN = 7", "Column=7 Row=5"},
    {"POS_IMA VARIABLE_ROW = NO", "VariableRow=0"},
    {"POS_IMA VARIABLE_COLUMN = NO", "VariableColumn=0"},
    {"POS_IMA VARIABLE_ROW = YES VARIABLE_COLUMN = YES", ""},
    {"REPEAT_IMAGE", "Type=5"},
    {"REP_IMA COUNT = 12 SPACING = 2 INDEX_ITEM = 'IX'",
     "Type=5 IndexName='IX' Count=12 Spacing=2"},
    {"REP_IMA DIRECTION = RIGHT CONSTANTS = YES", "Type=5 Constants=1 Direction=2"},
    {"REP_IMA DIRECTION = DOWN CONSTANTS = NO", "Type=5"},
    {"REP_IMA DIRECTION = RIGHT DIRECTION = DOWN", "Type=5 Direction=2"},
    {"REP_IMA DIRECTION = RIGHT\nCHARACTER_ATTRIBUTES", "Type=5 Direction=0 Contents=0"},
    {"TEST DEPENDENT = YES", ""},
    {"TEST", ""},
    {"REP_IMA COUNT = 2\nTEST DEPENDENT = YES", "Type=5 Count=2"},
    {"TYPE = LINKED", "Linked=1"},
    {"TYPE = NORMAL", ""},
    {"TYPE = LINKED TYPE = NORMAL", "Linked=1"},
};

INSTANTIATE_TEST_SUITE_P(All, ImageStatement, ::testing::ValuesIn(kImageEffects));

// ---------------------------------------------------------------------------------------------
// Fields

class FieldStatement : public SourceTest, public ::testing::WithParamInterface<Effect> {};

TEST_P(FieldStatement, HasItsEffect) {
    const RecordList forms = Forms(InField(GetParam().Source));
    EXPECT_EQ(Described(AsField(FirstItemOf(*forms))), GetParam().Expected);
    EXPECT_EQ(FirstItemOf(*forms).Children, nullptr);
}

constexpr Effect kFieldEffects[] = {
    {"", ""},
    {"NAME = 'CUSTOMER'", "Name='CUSTOMER'"},
    {"BACKGROUND_ATTRIBUTES COLOR = CYAN", "BackColour=67"},
    {"FOREGROUND_ATTRIBUTES COLOR = BLUE INTENSITY = SUPPRESSED", "Intensity=4 Colour=66"},
    {"INP_ATT DATA_ENTRY = MANDATORY_ENTRY BLANK_INPUT = ZERO", "BlankIsZero=1 MandatoryEntry=1"},
    {"INPUT_ATTRIBUTES DATA_ENTRY = OPTIONAL BLANK_INPUT = BLANK", ""},
    {"INP_ATT DATA_ENTRY = ZERO BLANK_INPUT = MANDATORY_ENTRY", ""},
    // The switches that input and character attributes clear first.
    {"INP_ATT DATA_ENTRY = MANDATORY_ENTRY BLANK_INPUT = ZERO\nINP_ATT", ""},
    {"INP_ATT DATA_ENTRY = MANDATORY_ENTRY BLANK_INPUT = ZERO\nCHARACTER_ATTRIBUTES FONT_INDEX = 1",
     ""},
    {"INP_ATT BLANK_INPUT = ZERO\nINP_ATT DATA_ENTRY = MANDATORY_ENTRY", "MandatoryEntry=1"},
    {"INP_ATT ALLOW_QUERY = YES REPLENISH_NOTIFICATION = NO VALUE_CHECK = NONE", ""},
    {"DIMENSION HEIGHT = 2 WIDTH = 10 MAXIMUM_WIDTH = 20 VARIABLE_WIDTH = NO", "Height=2 Width=10"},
    {"EMPHASIS TYPE = (UNDERSCORE)", "Emphasis=2"},
    {"EMP TYPE = UNDERSCORE", ""},
    {"HIGHLIGHT TYPE = (BLINK)", "Highlight=2"},
    {"HIG TYPE = (BLINK, REVERSE)", "Highlight=3"},
    {"HIG TYPE = BLINK", ""},
    {"OUTPUT_ATTRIBUTES CONTENTS = STORAGE", ""},
    {"OUT_ATT CONTENTS = BLANK", "Contents=2"},
    {"OUT_ATT CONTENTS = BLANK CONTENTS = STORAGE", ""},
    {"OUT_ATT CONTENTS = CONSTANT", "Contents=3"},
    {"OUT_ATT CONTENTS = SYSTEM", "Contents=4"},
    {"OUT_ATT CONTENTS = REPLENISH", "Contents=5"},
    {"OUT_ATT SYSTEM_VALUE = TRANSACTION_CODE", "Value=2"},
    {"OUT_ATT SYSTEM_VALUE = DATE_1", "Value=3"},
    {"OUT_ATT SYSTEM_VALUE = DATE_2", "Value=4"},
    {"OUT_ATT SYSTEM_VALUE = DATE_3", "Value=5"},
    {"OUT_ATT SYSTEM_VALUE = DATE_4", "Value=6"},
    {"OUT_ATT SYSTEM_VALUE = DATE_5", "Value=7"},
    {"OUT_ATT SYSTEM_VALUE = DATE_6", "Value=8"},
    {"OUT_ATT SYSTEM_VALUE = DATE_7", "Value=9"},
    {"OUT_ATT SYSTEM_VALUE = DATE_8", "Value=10"},
    {"OUT_ATT SYSTEM_VALUE = TIME_1", "Value=11"},
    {"OUT_ATT SYSTEM_VALUE = TIME_2", "Value=12"},
    {"OUT_ATT SYSTEM_VALUE = TIME_3", "Value=13"},
    {"OUT_ATT SYSTEM_VALUE = FORM_NAME", "Value=14"},
    {"OUT_ATT SYSTEM_VALUE = FORM_NUMBER", "Value=15"},
    {"OUT_ATT SYSTEM_VALUE = CURRENT_PAGE_COUNT", "Value=16"},
    {"OUT_ATT SYSTEM_VALUE = DATA_PAGE_COUNT", "Value=17"},
    {"OUT_ATT SYSTEM_VALUE = INDEX_PAGE_COUNT", "Value=18"},
    {"OUT_ATT SYSTEM_VALUE = TOTAL_PAGE_COUNT", "Value=19"},
    {"OUT_ATT SYSTEM_VALUE = PID", "Value=20"},
    {"OUT_ATT SYSTEM_VALUE = LPID", "Value=21"},
    {"OUT_ATT SYSTEM_VALUE = USER_FIELD_1", "Value=22"},
    {"OUT_ATT SYSTEM_VALUE = USER_FIELD_2", "Value=23"},
    {"OUT_ATT SYSTEM_VALUE = USER_FIELD_3", "Value=24"},
    {"OUT_ATT SYSTEM_VALUE = USER_FIELD_4", "Value=25"},
    {"OUT_ATT SYSTEM_VALUE = USER_FIELD_5", "Value=26"},
    {"OUT_ATT CONTENTS = SYSTEM SYSTEM_VALUE = PID", "Contents=4 Value=20"},
    {"POSITION_IMAGE ROW = 3 COLUMN = 85", "Column=85 Row=3"},
    {"POS_IMA VARIABLE_ROW = NO", "VariableColumn=0 VariableRow=0"},
    {"POS_IMA VARIABLE_COLUMN = NO", "VariableColumn=0 VariableRow=0"},
    {"POS_IMA VARIABLE_ROW = YES VARIABLE_COLUMN = YES", ""},
    {"PREDEFINED_VALUE INITIAL_VALUE = 'v' REPLENISH_STRING = 'r'",
     "InitialValue='v' Replenish='r'"},
    {"PRE_VAL INITIAL_VALUE = ''", "InitialValue=''"},
    {"PRE_VAL INITIAL_VALUE = 'AB' & 'CD' &&\n  'EF'", "InitialValue='ABCDEF'"},
    {"STORAGE DATA_TYPE = ALPHA_NUMERIC", ""},
    {"STO DATA_TYPE = ALPHABETIC", "DataType=2"},
    {"STO DATA_TYPE = ALPHABETIC DATA_TYPE = ALPHA_NUMERIC", ""},
    {"STO DATA_TYPE = INTEGER", "DataType=3"},
    {"STO DATA_TYPE = NUMERIC", "DataType=3"},
    {"STO DATA_TYPE = COMPUTATIONAL", "DataType=3"},
    {"STO DATA_TYPE = BINARY", "DataType=3"},
    {"TAB TYPE = NONE", ""},
    {"TAB TYPE = HARD", ""},
    {"GENERAL_EDIT", ""},
    {"GEN_EDI CASE = UPPER", "Case=2"},
    {"GEN_EDI CASE = LOWER", "Case=3"},
    {"GEN_EDI CASE = EITHER", ""},
    {"GEN_EDI CASE = LOWER CASE = UNCHANGED", "Case=3"},
    {"GEN_EDI DECIMAL_SCALE = 2", "Decimals=2"},
    {"GEN_EDI DISPLAY = (BLANK_WHEN_ZERO)", "BlankWhenZero=1"},
    {"GEN_EDI DISPLAY = (INSERT_DELIMITERS)", "InsertDelimiters=1"},
    {"GEN_EDI DISPLAY = (REPLENISH_FOR_BLANKS)", "ReplenishForBlanks=1"},
    {"GEN_EDI DISPLAY = (BLANK_WHEN_ZERO, INSERT_DELIMITERS/REPLENISH_FOR_BLANKS)",
     "BlankWhenZero=1 InsertDelimiters=1 ReplenishForBlanks=1"},
    {"GEN_EDI JUSTIFICATION = LEFT", "Justification=2"},
    {"GEN_EDI JUSTIFICATION = RIGHT", "Justification=3"},
    {"GEN_EDI JUSTIFICATION = CENTER", ""},
    {"GEN_EDI LEADING_ZEROES = DISPLAY", "LeadingZeros=1"},
    {"GEN_EDI LEADING_ZEROES = DISPLAY LEADING_ZEROES = SUPPRESS", ""},
    {"GEN_EDI LEADING_ZEROES = DISPLAY LEADING_ZEROES = BLANK", "LeadingZeros=1"},
    {"GEN_EDI MONETARY_SIGN = FLOATING", "FloatingCurrency=1"},
    {"GEN_EDI MONETARY_SIGN = LEADING", "FloatingCurrency=1"},
    {"GEN_EDI MONETARY_SIGN = TRAILING", ""},
    {"GEN_EDI PROTECTED = YES", "Protected=1"},
    {"GEN_EDI PROTECTED = YES PROTECTED = NO", "Protected=1"},
    {"GEN_EDI PROTECTED = NO", ""},
    {"GEN_EDI RADIX = OCTAL", ""},
    {"GEN_EDI SET_MODIFIED = YES", "SetModified=1"},
    {"GEN_EDI SET_MODIFIED = NO", ""},
    {"GEN_EDI SIGN = (FLOATING)", "FloatingSign=1"},
    {"GEN_EDI SIGN = (TRAILING)", "TrailingSign=1"},
    {"GEN_EDI SIGN = (DISPLAY_POSITIVE)", "PositiveSign=1"},
    {"GEN_EDI SIGN = (CREDIT)", "CreditSign=1"},
    {"GEN_EDI SIGN = (NONE)", ""},
    {"GEN_EDI SIGN = (TRAILING, DISPLAY_POSITIVE, NONE)", "TrailingSign=1 PositiveSign=1"},
    {"GEN_EDI USAGE = OUTPUT", "UsageOutput=1"},
    {"GEN_EDI USAGE = INPUT_OUTPUT", ""},
    {"GEN_EDI &\n CASE = UPPER &\n@ a comment between\n PROTECTED = YES", "Protected=1 Case=2"},
    {"SECURITY FAIL_ACTION = NONE TYPE = SYSTEM LEVEL = 3", ""},
    {"TEST SET_MODE = HARD DEPENDENT = NO", ""},
};

INSTANTIATE_TEST_SUITE_P(All, FieldStatement, ::testing::ValuesIn(kFieldEffects));

// ---------------------------------------------------------------------------------------------
// Statements and files

TEST_F(FldpParser, StatementsOfOneValueEndBehindIt) {
    const RecordList forms =
        Forms("FORM NAME = 'F' NUMBER = 7 GROUP = 'G' START_IMAGE = 'A' STOP_IMAGE = 'B' "
              "FIELD_CHARACTERS = ('x')\n"
              "IMAGE TYPE = LINKED REFERENCE_NAME = 'I' FIELD NAME = 'A' END_FIELD END_IMAGE "
              "FIELD END_FIELD END_FORM FORM END_FORM\n");
    EXPECT_EQ(Shape(*forms), "Form F(I I(F A)) Form -");
    EXPECT_EQ(AsForm(FirstOf(*forms)).Number, 7);
    EXPECT_EQ(AsImage(FirstItemOf(*forms)).Linked, 1);
}

TEST_F(FldpParser, StatementsWithClausesRunToTheStatementEnd) {
    // A word after the clauses is taken as a clause; the spelled-out end makes room for a
    // statement.
    EXPECT_EQ(ErrorLine(InField("TAB TYPE = NONE NAME = 'A'")),
              "Line     3: x.fldp; Syntax Error at column 20 (NAME)\n");
    const RecordList forms = Forms(InField("TAB TYPE = NONE END_STATEMENT NAME = 'A'"));
    EXPECT_EQ(Shape(*forms), "Form -(F A)");
}

// The statement end is a keyword like others, so it can be taken for a value.
TEST_F(FldpParser, AMissingKeywordTakesTheStatementEnd) {
    const RecordList forms = Forms(InField("GEN_EDI CASE =\nPROTECTED = YES"));
    EXPECT_EQ(Described(AsField(FirstItemOf(*forms))), "Protected=1");
    const RecordList keys = Forms(InForm("FUNCTION_KEYS NAME =\nNAME = K"));
    EXPECT_EQ(AsForm(FirstOf(*keys)).FunctionKeyName, "K");
}

TEST_F(FldpParser, ReadsNothingFromEmptyFiles) {
    for (const char* text : {"", "\n", "\n\n", "@ only a comment\n", "FORM", "&\n"}) {
        const RecordList forms = Forms(text);
        EXPECT_EQ(ListCount(*forms), 0) << text;
    }
}

TEST_F(FldpParser, AMissingFileGivesNoList) {
    const std::string path = m_directory.File("missing.fldp");
    CaptureStderr error;
    CaptureStdout out;
    EXPECT_EQ(ParseFldpFile(path, 1), nullptr);
    EXPECT_EQ(out.Take(), "");
    EXPECT_EQ(error.Take(), path + ": No such file or directory\n");
}

TEST_F(FldpParser, ADirectoryReadsAsAnEmptyFile) {
    CaptureStderr error;
    const RecordList forms = ParseFldpFile(m_directory.Path(), 1);
    EXPECT_EQ(error.Take(), m_directory.Path() + ": Is a directory\n");
    ASSERT_NE(forms, nullptr);
    EXPECT_EQ(ListCount(*forms), 0);
}

TEST_F(FldpParser, AFileMayHoldSeveralForms) {
    const RecordList forms = Forms("FORM\nNAME='A'\nEND_FORM\n\n@\nFOR\nNAME='B'\nEND_FOR\n"
                                   "FORM NAME='C' END_FORM END_STATEMENT\n");
    EXPECT_EQ(Shape(*forms), "Form A Form B Form C");
}

TEST_F(FldpParser, ItemsGoIntoTheirOwnersList) {
    const RecordList forms = Forms(InForm("IMAGE\nNAME = 'OUTER'\n"
                                          "FIELD\nNAME = 'A'\nEND_FIELD\n"
                                          "IMA\nNAME = 'INNER'\n"
                                          "FIE\nNAME = 'B'\nEND_FIE\n"
                                          "REP_IMA COUNT = 2\n"
                                          "END_IMA\n"
                                          "DIM WIDTH = 9\n"
                                          "FIELD\nNAME = 'C'\nEND_FIELD\n"
                                          "END_IMAGE\n"
                                          "NAME = 'LATE'\n"
                                          "FIELD\nNAME = 'D'\nEND_FIELD\n"
                                          "FIELD\nEND_FIELD"));
    EXPECT_EQ(Shape(*forms), "Form LATE(I OUTER(F A R INNER(F B) F C) F D)");
    EXPECT_EQ(AsImage(FirstItemOf(*forms)).Width, 9);
}

TEST_F(FldpParser, AnEmptyImageHasNoList) {
    const RecordList forms = Forms(InImage("NAME = 'I'"));
    EXPECT_EQ(FirstItemOf(*forms).Children, nullptr);
}

struct OptionCase {
    unsigned Options;
    const char* Expected;
};

TEST_F(FldpParser, CopiesTheOptionsIntoEveryForm) {
    constexpr OptionCase kCases[] = {
        {0, ""},
        {1, "NumericName=1"},
        {2, "IgnoreCase=1"},
        {4, "IgnoreJustification=1"},
        {8, ""},
        {16, "_24x79Unprotected=1"},
        {32, "InputBlankWhenZero=1"},
        {64, "RedefInit=1"},
        {127, "NumericName=1 IgnoreCase=1 IgnoreJustification=1 _24x79Unprotected=1 "
              "InputBlankWhenZero=1 RedefInit=1"},
        {~127U, ""},
    };
    for (const OptionCase& option : kCases) {
        const RecordList forms = Forms("FORM\nEND_FORM\nFORM\nEND_FORM\n", option.Options);
        for (Record& form : *forms)
            EXPECT_EQ(Described(AsForm(form)), option.Expected) << option.Options;
    }
}

// The form's own character and input attributes clear two switches that finishing overwrites.
TEST_F(FldpParser, OptionsOverruleTheFormsClearing) {
    const RecordList forms = Forms(InForm("CHARACTER_ATTRIBUTES\nINP_ATT"), 2 | 4);
    EXPECT_EQ(Described(AsForm(FirstOf(*forms))), "IgnoreCase=1 IgnoreJustification=1");
}

TEST_F(FldpParser, AStateOfAnEarlierFileDoesNotReachTheNext) {
    EXPECT_EQ(ErrorLine("FORM\nIMAGE\nIMAGE\nFIELD\nPRE_VAL INITIAL_VALUE = '" +
                        std::string(200, 'x') + "' &&\n'" + std::string(200, 'x') + "'\nX\n"),
              "Line     7: x.fldp; Syntax Error at column 1 (X)\n");
    EXPECT_EQ(Shape(*Forms(InForm("FIELD\nEND_FIELD\nFIELD\nEND_FIELD"))), "Form -(F -)");
}

// The form counts as one level, so one image fewer than the limit fits.
TEST_F(FldpParser, RefusesNestingBeyondTheLimit) {
    std::string deep = "FORM\n";
    for (int i = 1; i < kDeepestNesting; ++i)
        deep += "IMAGE\n";
    std::string closed = deep;
    for (int i = 1; i < kDeepestNesting; ++i)
        closed += "END_IMAGE\n";
    EXPECT_EQ(ListCount(*Forms(closed + "FIELD\nEND_FIELD\nEND_FORM\n")), 1);

    for (const char* item : {"IMAGE\n", "FIELD\n"}) {
        const Outcome outcome = Read(deep + item);
        EXPECT_EQ(outcome.Status, 1);
        EXPECT_EQ(outcome.Out, "");
        EXPECT_EQ(outcome.Error, "x.fldp: line 501: nested deeper than 500 levels\n");
    }
}

} // namespace
} // namespace grolof
