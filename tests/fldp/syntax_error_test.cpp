// Every word that may not stand where it does, with the whole error line.
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "source.h"

namespace grolof {
namespace {

using namespace fldp_test;

// A `^` in the source stands right behind the token that is refused; `Text` is that token's. A
// literal also takes the white space behind it, at a line's end the one character before the
// statement end.
struct Refusal {
    const char* Source;
    const char* Text;
};

void PrintTo(const Refusal& refusal, std::ostream* out) {
    *out << refusal.Source;
}

class SyntaxError : public SourceTest, public ::testing::WithParamInterface<Refusal> {
protected:
    // Checks a source whose refused token is marked.
    void Check(std::string source, const std::string& text) {
        const std::size_t mark = source.find('^');
        ASSERT_NE(mark, std::string::npos);
        source.erase(mark, 1);
        const std::string before = source.substr(0, mark);
        const auto line = 1 + std::count(before.begin(), before.end(), '\n');
        const bool literal = before.back() == '\'' && source[mark] == '\n';
        const std::size_t column = mark - (before.rfind('\n') + 1) + (literal ? 1 : 0);
        std::string number = std::to_string(line);
        number.insert(0, 5 - number.size(), ' ');
        EXPECT_EQ(ErrorLine(source), "Line " + number + ": x.fldp; Syntax Error at column " +
                                         std::to_string(column) + " (" + text + ")\n");
    }
};

// ---------------------------------------------------------------------------------------------

class FileSyntaxError : public SyntaxError {};

TEST_P(FileSyntaxError, IsReported) {
    Check(GetParam().Source, GetParam().Text);
}

constexpr Refusal kInFile[] = {
    {"NAME^ = 'A'\n", "NAME"},
    {"FORMS^\n", "FORMS"},
    {"12^AB\n", "12"},
    {"'FORM'^\n", "FORM"},
    {"=^\n", "="},
    {" @^\n", "@"},
    {"END_FORM^\n", "END_FORM"},
    {"FIELD^\n", "FIELD"},
    {"FORM\nEND_FORM\nIMAGE^\n", "IMAGE"},
    {"FORM X^\n", "X"},
    {"FORM 1^\n", "1"},
    {"FORM (^\n", "("},
    {"FORM FORM^\n", "FORM"},
    {"FORM\nNAME 'A'^\n", "A"},
};

INSTANTIATE_TEST_SUITE_P(All, FileSyntaxError, ::testing::ValuesIn(kInFile));

// ---------------------------------------------------------------------------------------------

class FormSyntaxError : public SyntaxError {};

TEST_P(FormSyntaxError, IsReported) {
    Check(InForm(GetParam().Source), GetParam().Text);
}

constexpr Refusal kInForm[] = {
    // statements of other records
    {"END_FIELD^", "END_FIELD"},
    {"END_IMAGE^", "END_IMAGE"},
    {"REFERENCE_NAME^ = 'A'", "REFERENCE_NAME"},
    {"OUTPUT_ATTRIBUTES^", "OUTPUT_ATTRIBUTES"},
    {"POSITION_IMAGE^ ROW = 1", "POSITION_IMAGE"},
    {"REPEAT_IMAGE^", "REPEAT_IMAGE"},
    {"TYPE^ = NORMAL", "TYPE"},
    {"TAB^ TYPE = NONE", "TAB"},
    {"GENERAL_EDIT^", "GENERAL_EDIT"},
    {"HEIGHT^ = 1", "HEIGHT"},
    // clauses
    {"BAC_ATT INTENSITY^ = HIGH", "INTENSITY"},
    {"BAC_ATT COLOR = PINK^", "PINK"},
    {"BAC_ATT COLOR = 1^", "1"},
    {"BAC_ATT COLOR BLUE^", "BLUE"},
    {"BAC_ATT COLOR (^BLUE)", "("},
    {"BAC_ATT ,^", ","},
    {"FOR_ATT TYPE^ = BLINK", "TYPE"},
    {"FOR_ATT INTENSITY = STRONG^", "STRONG"},
    {"CHARACTER_ATTRIBUTES COLOR^ = RED", "COLOR"},
    {"CHARACTER_ATTRIBUTES FONT_INDEX = ONE^", "ONE"},
    {"CHARACTER_ATTRIBUTES FONT_INDEX = ALL^", "ALL"},
    {"CHECKNUMBER_TEST TYPE^ = HARD", "TYPE"},
    {"CONVERSATION SET_MODE = 1^", "1"},
    {"TEST DEPENDENT = X^", "X"},
    {"CURSOR NAME^ = 'A'", "NAME"},
    {"CURSOR IMAGE_NAME = A^", "A"},
    {"DIMENSION MAXIMUM_WIDTH^ = 3", "MAXIMUM_WIDTH"},
    {"DIMENSION HEIGHT = 'A'^", "A"},
    {"DIMENSION WIDTH = -^1", "-"},
    {"DIMENSION WIDTH = A^", "A"},
    {"EDIT_SYMBOL MONETARY_SIGN^ = '$'", "MONETARY_SIGN"},
    {"EDIT_SYMBOL DECIMAL_POINT = ,^", ","},
    {"EDIT_SYMBOL COMMA = 1^", "1"},
    {"EMPHASIS COLOR^ = RED", "COLOR"},
    {"EMPHASIS TYPE = BOLD^", "BOLD"},
    {"EMPHASIS TYPE = =^", "="},
    {"EMPHASIS TYPE = )^", ")"},
    {"EMPHASIS TYPE = ()^", ")"},
    {"EMPHASIS TYPE = (UNDERSCORE BLINK^)", "BLINK"},
    {"EMPHASIS TYPE = (UNDERSCORE,)^", ")"},
    {"EMPHASIS TYPE = (BOLD^)", "BOLD"},
    {"EMPHASIS TYPE = (UNDERSCORE, 1^)", "1"},
    {"FIELD_CHARACTERS = 'A'^", "A"},
    {"FIELD_CHARACTERS (^'A')", "("},
    {"FIELD_CHARACTERS = ()^", ")"},
    {"FIELD_CHARACTERS = (A^)", "A"},
    {"FIELD_CHARACTERS = ('A' 'B'^)", "B"},
    {"FUNCTION_KEYS TYPE^ = X", "TYPE"},
    {"FUNCTION_KEYS NAME = 'A'^", "A"},
    {"FUNCTION_KEYS NAME = 1^", "1"},
    {"FUNCTION_KEYS NAME = ,^", ","},
    {"FUNCTION_KEYS NAME = ()^", ")"},
    {"FUNCTION_KEYS NAME = (A B^)", "B"},
    {"FUNCTION_KEYS NAME = (A,)^", ")"},
    {"FUNCTION_KEYS NAME = ('A'^)", "A"},
    {"GROUP = LIB^", "LIB"},
    {"GROUP 'L'^", "L"},
    {"HIGHLIGHT TYPE = 1^", "1"},
    {"HIGHLIGHT COLOR^ = RED", "COLOR"},
    {"HIGHLIGHT TYPE = (BLINK, STEADY^)", "STEADY"},
    {"INPUT_ATTRIBUTES DATA_ENTRY^ = OPTIONAL", "DATA_ENTRY"},
    {"INPUT_ATTRIBUTES CONTROL_CHARACTERS_ALLOWED = 1^", "1"},
    {"NAME = 1^", "1"},
    {"NAME = A^", "A"},
    {"NUMBER = 'A'^", "A"},
    {"NUMBER 5^", "5"},
    {"PREDEFINED_VALUE NAME^ = 'A'", "NAME"},
    {"PRE_VAL INITIAL_VALUE = A^", "A"},
    {"PRE_VAL I18N_CCSNUM = 'A'^", "A"},
    {"PRE_VAL REPLENISH_STRING = 1^", "1"},
    {"PRE_VAL MARKING_CHARACTER = X^", "X"},
    {"PRE_VAL SOE_CHARACTER = (^", "("},
    {"SECURITY SET_MODE^ = HARD", "SET_MODE"},
    {"SECURITY FAIL_ACTION = STOP^", "STOP"},
    {"SECURITY TYPE = 1^", "1"},
    {"SECURITY LEVEL = HIGH^", "HIGH"},
    {"START_IMAGE = A^", "A"},
    {"STOP_IMAGE = 1^", "1"},
    {"STORAGE DATA_TYPE^ = BINARY", "DATA_TYPE"},
    {"STORAGE GENERATE = 1^", "1"},
    {"STORAGE GENERATE_TYPE = BINARY^", "BINARY"},
    {"STORAGE SOURCE = FCA^", "FCA"},
};

INSTANTIATE_TEST_SUITE_P(All, FormSyntaxError, ::testing::ValuesIn(kInForm));

// ---------------------------------------------------------------------------------------------

class ImageSyntaxError : public SyntaxError {};

TEST_P(ImageSyntaxError, IsReported) {
    Check(InImage(GetParam().Source), GetParam().Text);
}

constexpr Refusal kInImage[] = {
    {"END_FORM^", "END_FORM"},
    {"END_FIELD^", "END_FIELD"},
    {"CURSOR^", "CURSOR"},
    {"GROUP^ = 'A'", "GROUP"},
    {"NUMBER^ = 1", "NUMBER"},
    {"INPUT_ATTRIBUTES^", "INPUT_ATTRIBUTES"},
    {"PREDEFINED_VALUE^", "PREDEFINED_VALUE"},
    {"STORAGE^", "STORAGE"},
    {"TAB^", "TAB"},
    {"GENERAL_EDIT^", "GENERAL_EDIT"},
    {"BAC_ATT INTENSITY^ = LOW", "INTENSITY"},
    {"FOR_ATT COLOR = PINK^", "PINK"},
    {"CHARACTER_ATTRIBUTES LEVEL^ = 1", "LEVEL"},
    {"SECURITY DEPENDENT^ = NO", "DEPENDENT"},
    {"DIMENSION MAXIMUM_WIDTH^ = 3", "MAXIMUM_WIDTH"},
    {"EMPHASIS TYPE = 'A'^", "A"},
    {"HIGHLIGHT TYPE = (BLINK REVERSE^)", "REVERSE"},
    {"NAME = A^", "A"},
    {"REFERENCE_NAME = 1^", "1"},
    {"OUTPUT_ATTRIBUTES CONTENTS = CONSTANT^", "CONSTANT"},
    {"OUTPUT_ATTRIBUTES CONTENTS = SYSTEM^", "SYSTEM"},
    {"OUTPUT_ATTRIBUTES CONTENTS = REPLENISH^", "REPLENISH"},
    {"OUTPUT_ATTRIBUTES SYSTEM_VALUE^ = PID", "SYSTEM_VALUE"},
    {"POSITION_IMAGE ROW = A^", "A"},
    {"POSITION_IMAGE COLUMN = 'A'^", "A"},
    {"POSITION_IMAGE VARIABLE_ROW = 0^", "0"},
    {"POSITION_IMAGE COUNT^ = 1", "COUNT"},
    {"REPEAT_IMAGE DIRECTION = UP^", "UP"},
    {"REPEAT_IMAGE CONSTANTS = 1^", "1"},
    {"REPEAT_IMAGE COUNT = ALL^", "ALL"},
    {"REPEAT_IMAGE SPACING = 'A'^", "A"},
    {"REPEAT_IMAGE INDEX_ITEM = IX^", "IX"},
    {"REPEAT_IMAGE ROW^ = 1", "ROW"},
    {"TEST SET_MODE^ = HARD", "SET_MODE"},
    {"TEST DEPENDENT = 1^", "1"},
    {"TYPE = BLANK^", "BLANK"},
    {"TYPE = (^NORMAL)", "("},
    {"FIELD CURSOR^", "CURSOR"},
    {"IMAGE END_FORM^", "END_FORM"},
};

INSTANTIATE_TEST_SUITE_P(All, ImageSyntaxError, ::testing::ValuesIn(kInImage));

// ---------------------------------------------------------------------------------------------

class FieldSyntaxError : public SyntaxError {};

TEST_P(FieldSyntaxError, IsReported) {
    Check(InField(GetParam().Source), GetParam().Text);
}

constexpr Refusal kInField[] = {
    {"END_FORM^", "END_FORM"},
    {"END_IMAGE^", "END_IMAGE"},
    {"FIELD^", "FIELD"},
    {"IMAGE^", "IMAGE"},
    {"REFERENCE_NAME^ = 'A'", "REFERENCE_NAME"},
    {"REPEAT_IMAGE^", "REPEAT_IMAGE"},
    {"TYPE^ = NORMAL", "TYPE"},
    {"CURSOR^", "CURSOR"},
    {"NAME = A^", "A"},
    {"BAC_ATT INTENSITY^ = LOW", "INTENSITY"},
    {"FOR_ATT INTENSITY = 2^", "2"},
    {"CHARACTER_ATTRIBUTES COLOR^ = RED", "COLOR"},
    {"DIMENSION HEIGHT = A^", "A"},
    {"DIMENSION WIDTH = 'A'^", "A"},
    {"DIMENSION MAXIMUM_WIDTH = A^", "A"},
    {"DIMENSION VARIABLE_WIDTH = 1^", "1"},
    {"EMPHASIS TYPE = (1^)", "1"},
    {"HIGHLIGHT TYPE = 'A'^", "A"},
    {"INP_ATT CONTROL_CHARACTERS_ALLOWED^ = NO", "CONTROL_CHARACTERS_ALLOWED"},
    {"INP_ATT DATA_ENTRY = 1^", "1"},
    {"INP_ATT BLANK_INPUT = X^", "X"},
    {"INP_ATT ALLOW_QUERY = 'A'^", "A"},
    {"INP_ATT REPLENISH_NOTIFICATION = 1^", "1"},
    {"INP_ATT VALUE_CHECK = 1^", "1"},
    {"OUT_ATT CONTENTS = ZERO^", "ZERO"},
    {"OUT_ATT CONTENTS = X^", "X"},
    {"OUT_ATT SYSTEM_VALUE = DATE_9^", "DATE_9"},
    {"OUT_ATT SYSTEM_VALUE = YES^", "YES"},
    {"OUT_ATT ROW^ = 1", "ROW"},
    {"POS_IMA ROW = X^", "X"},
    {"POS_IMA COLUMN = X^", "X"},
    {"POS_IMA COLUMN_LEFT^ = 1", "COLUMN_LEFT"},
    {"POS_IMA VARIABLE_ROW = 0^", "0"},
    {"POS_IMA VARIABLE_COLUMN = X^", "X"},
    {"PRE_VAL INITIAL_VALUE = X^", "X"},
    {"PRE_VAL REPLENISH_STRING = 1^", "1"},
    {"PRE_VAL MARKING_CHARACTER^ = 'X'", "MARKING_CHARACTER"},
    {"STORAGE GENERATE^ = YES", "GENERATE"},
    {"STORAGE DATA_TYPE = OCTAL^", "OCTAL"},
    {"STORAGE DATA_TYPE = REAL^", "REAL"},
    {"TAB COLUMN^ = 1", "COLUMN"},
    {"TAB TYPE = 1^", "1"},
    {"GENERAL_EDIT NAME^ = 'A'", "NAME"},
    {"GENERAL_EDIT CASE = MIXED^", "MIXED"},
    {"GENERAL_EDIT DECIMAL_SCALE = TWO^", "TWO"},
    {"GENERAL_EDIT DISPLAY = BLANK_WHEN_ZERO^", "BLANK_WHEN_ZERO"},
    {"GENERAL_EDIT DISPLAY = (BLANK^)", "BLANK"},
    {"GENERAL_EDIT DISPLAY = (NONE^)", "NONE"},
    {"GENERAL_EDIT DISPLAY = ()^", ")"},
    {"GENERAL_EDIT JUSTIFICATION = MIDDLE^", "MIDDLE"},
    {"GENERAL_EDIT LEADING_ZEROES = 1^", "1"},
    {"GENERAL_EDIT MONETARY_SIGN = '$'^", "$"},
    {"GENERAL_EDIT PROTECTED = TRUE^", "TRUE"},
    {"GENERAL_EDIT RADIX = 10^", "10"},
    {"GENERAL_EDIT SET_MODIFIED = 1^", "1"},
    {"GENERAL_EDIT SIGN = FLOATING^", "FLOATING"},
    {"GENERAL_EDIT SIGN = (LEADING^)", "LEADING"},
    {"GENERAL_EDIT SIGN = (FLOATING TRAILING^)", "TRAILING"},
    {"GENERAL_EDIT SIGN = (FLOATING, =^)", "="},
    {"GENERAL_EDIT USAGE = INPUT^", "INPUT"},
    {"SECURITY LEVEL = NONE^", "NONE"},
    {"TEST LEVEL^ = 1", "LEVEL"},
};

INSTANTIATE_TEST_SUITE_P(All, FieldSyntaxError, ::testing::ValuesIn(kInField));

// ---------------------------------------------------------------------------------------------
// Where the column is not right behind the token's last character

class FldpSyntaxErrors : public SourceTest {};

TEST_F(FldpSyntaxErrors, AnEarlyStatementEnd) {
    EXPECT_EQ(ErrorLine("FORM\nNAME\n"),
              "Line     2: x.fldp; Syntax Error at column 18 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorLine("FORM\nNAME =   \n"),
              "Line     2: x.fldp; Syntax Error at column 20 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorLine("FORM\nEMP TYPE = (UNDERSCORE\n"),
              "Line     2: x.fldp; Syntax Error at column 36 (END_STATEMENT)\n");
}

TEST_F(FldpSyntaxErrors, AnEarlyEndOfInput) {
    EXPECT_EQ(ErrorLine("FORM\n"),
              "Line     1: x.fldp; Syntax Error at column 18 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorLine("FORM\nNAME = 'A'\nEND_FORM"),
              "Line     2: x.fldp; Syntax Error at column 24 (END_STATEMENT)\n");
    EXPECT_EQ(ErrorLine("FORM\nNAME = &\n"), "Line     2: x.fldp; Syntax Error at column 8 (=)\n");
    EXPECT_EQ(ErrorLine("FORM\nNAME = 'AB' &&\n"),
              "Line     2: x.fldp; Syntax Error at column 14 (AB)\n");
}

TEST_F(FldpSyntaxErrors, ALiteralWithWhiteSpaceBehindIt) {
    EXPECT_EQ(ErrorLine("FORM 'A'   X\n"), "Line     1: x.fldp; Syntax Error at column 11 (A)\n");
}

// An open literal swallows the rest of its line; what breaks is what follows.
TEST_F(FldpSyntaxErrors, ALiteralThatIsNotClosed) {
    EXPECT_EQ(ErrorLine("FORM\nCURSOR IMAGE_NAME = 'A\nFIELD\n"),
              "Line     3: x.fldp; Syntax Error at column 5 (FIELD)\n");
    const RecordList forms = Forms("FORM\nNAME = 'A\nNUMBER = 5\nEND_FORM\n");
    EXPECT_EQ(Described(AsForm(FirstOf(*forms))), "Name='A\nEND_STATEMENT' Number=5 NumericName=1");
}

TEST_F(FldpSyntaxErrors, AJoinedTokenShowsTheJoinedText) {
    EXPECT_EQ(ErrorLine("FORM\nNAME = 'A' & FORM\n"),
              "Line     2: x.fldp; Syntax Error at column 17 (AFORM)\n");
    // Its kind is that of its last part, so this is a FORM statement all the same.
    EXPECT_EQ(Shape(*Forms("'A' & FORM\nEND_FORM\n")), "Form -");
}

} // namespace
} // namespace grolof
