// The macros: what each operand does, and which operands a macro takes.
#include "bms/parser.h"

#include <set>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "bms/keywords.h"
#include "source.h"

namespace grolof {
namespace {

using namespace testing_support;

using BmsMacros = BmsTest;

std::string NameOf(const Text& text) {
    return text.value_or("(none)");
}

// --- maps --------------------------------------------------------------------------------------

TEST_F(BmsMacros, AFileWithoutMapsGivesNone) {
    EXPECT_TRUE(Read("").empty());
    EXPECT_TRUE(
        Read("S        DFHMSD TYPE=MAP\n         DFHMSD TYPE=FINAL\n         END\n").empty());
}

TEST_F(BmsMacros, AFileThatCannotBeOpenedGivesNone) {
    CaptureStdout out;
    CaptureStderr error;
    EXPECT_TRUE(BmsReadMapSet("missing.bms", 0).empty());
    EXPECT_EQ(error.Take(), "missing.bms: No such file or directory\n");
    EXPECT_EQ(out.Take(), "");
}

TEST_F(BmsMacros, ADirectoryReadsAsAnEmptyFile) {
    CaptureStdout out;
    CaptureStderr error;
    EXPECT_TRUE(BmsReadMapSet(".", 0).empty());
    EXPECT_EQ(error.Take(), ".: Is a directory\n");
    EXPECT_EQ(out.Take(), "");
}

TEST_F(BmsMacros, AMapIsAFormOfItsOwnList) {
    const auto maps = Read("S        DFHMSD TYPE=MAP\nM        DFHMDI LINE=1\n");
    ASSERT_EQ(maps.size(), 1U);
    ASSERT_EQ(ListCount(*maps[0]), 1);
    const Form& form = FormIn(maps[0]);
    EXPECT_EQ(form.Type, RecordType::Form);
    EXPECT_EQ(form.Children, nullptr);
    EXPECT_EQ(form.Name, "M");
    EXPECT_EQ(form.CopyName, "S");
    EXPECT_EQ(form.Width, 80);
    EXPECT_EQ(form.Height, 24);
    EXPECT_EQ(form.FormType, FormKind::Bms);
    EXPECT_EQ(form.Emphasis, 1);
    EXPECT_EQ(form.Highlight, 1);
    EXPECT_EQ(form.Intensity, 1);
    EXPECT_EQ(form.GeneratePrefix, 0);
    EXPECT_EQ(form.Number, 0);
    EXPECT_EQ(form.NumericName, 0);
    EXPECT_EQ(form.IgnoreCase, 0);
    EXPECT_EQ(form.IgnoreJustification, 0);
    EXPECT_EQ(form._24x79Unprotected, 0);
    EXPECT_EQ(form.InputBlankWhenZero, 0);
    EXPECT_EQ(form.RedefInit, 0);
    EXPECT_EQ(form.MarkingChar, '\0');
    EXPECT_EQ(form.SoeChar, '\0');
    EXPECT_EQ(form.Colour, 0);
    EXPECT_EQ(form.BackColour, 0);
    EXPECT_EQ(form.Group, nullptr);
    for (const Text* text :
         {&form.ImageName, &form.FunctionKeyName, &form.InitialValue, &form.Replenish})
        EXPECT_EQ(*text, std::nullopt);
}

TEST_F(BmsMacros, TheOptionHasNoEffect) {
    WriteFile("m.bms", "M        DFHMDI LINE=1\n");
    const auto maps = BmsReadMapSet("m.bms", ~0U);
    const Form& form = FormIn(maps.at(0));
    EXPECT_EQ(s_bms.Option, ~0U);
    EXPECT_EQ(form.NumericName + form.IgnoreCase + form.IgnoreJustification +
                  form._24x79Unprotected + form.InputBlankWhenZero + form.RedefInit,
              0);
}

TEST_F(BmsMacros, NamesComeFromLabels) {
    const std::string labelled = "S        DFHMSD TYPE=MAP\n";
    const std::string unlabelled = "         DFHMSD TYPE=MAP\n";
    struct Case {
        std::string Source, Name, CopyName;
    };
    for (const auto& [source, name, copyName] : std::vector<Case>{
             {labelled + "M        DFHMDI LINE=1\n", "M", "S"},
             {labelled + "         DFHMDI LINE=1\n", "S", "S"},
             {unlabelled + "M        DFHMDI LINE=1\n", "M", "(none)"},
             {unlabelled + "         DFHMDI LINE=1\n", "(none)", "(none)"},
             {"         DFHMDI LINE=1\n", "(none)", "(none)"},
             {labelled + unlabelled + "M        DFHMDI LINE=1\n", "M", "S"},
             {"mixedCase DFHMSD TYPE=MAP\nMyMap DFHMDI LINE=1\n", "MyMap", "mixedCase"}}) {
        const auto maps = Read(source);
        EXPECT_EQ(NameOf(FormIn(maps.at(0)).Name), name) << source;
        EXPECT_EQ(NameOf(FormIn(maps.at(0)).CopyName), copyName) << source;
    }
}

TEST_F(BmsMacros, MapsOfALaterSetCarryTheLaterName) {
    const auto maps =
        Read("S1       DFHMSD TYPE=MAP\nA        DFHMDI LINE=1\nB        DFHMDI LINE=1\n"
             "         DFHMSD TYPE=FINAL\nC        DFHMDI LINE=1\n"
             "S2       DFHMSD TYPE=MAP\nD        DFHMDI LINE=1\n");
    std::vector<std::string> names;
    for (const RecordList& map : maps)
        names.push_back(NameOf(FormIn(map).CopyName) + "." + NameOf(FormIn(map).Name));
    EXPECT_THAT(names, testing::ElementsAre("S1.A", "S1.B", "S1.C", "S2.D"));
}

TEST_F(BmsMacros, TheNextFileKnowsNoMapSetName) {
    Read("S        DFHMSD TYPE=MAP\n");
    const auto maps = Read("M        DFHMDI LINE=1\n");
    EXPECT_EQ(FormIn(maps.at(0)).CopyName, std::nullopt);
}

TEST_F(BmsMacros, SizeIsReadAndNotUsed) {
    for (const char* size :
         {"SIZE=(43,80)", "SIZE(12,40)", "SIZE=100", "SIZE=X", "SIZE)", "SIZE="}) {
        const auto maps = Read(std::string("M        DFHMDI ") + size + "\n");
        EXPECT_EQ(FormIn(maps.at(0)).Height, 24) << size;
        EXPECT_EQ(FormIn(maps.at(0)).Width, 80) << size;
    }
}

TEST_F(BmsMacros, RecordsFollowTheirFormInSourceOrder) {
    const auto maps = Read("A        DFHMDI LINE=1\n"
                           "F1       DFHMDF POS=(1,1),LENGTH=1\n"
                           "         DFHMDF POS=(2,1),LENGTH=1\n"
                           "F2       DFHMDF POS=(3,1),LENGTH=1\n"
                           "B        DFHMDI LINE=1\n"
                           "         DFHMDF POS=(4,1),LENGTH=1\n");
    std::vector<std::vector<RecordType>> types;
    for (const RecordList& map : maps) {
        types.emplace_back();
        for (const Record& record : *map)
            types.back().push_back(record.Type);
    }
    using enum RecordType;
    EXPECT_THAT(types, testing::ElementsAre(testing::ElementsAre(Form, Field, Heading, Field),
                                            testing::ElementsAre(Form, Heading)));
}

// --- fields ------------------------------------------------------------------------------------

TEST_F(BmsMacros, AFieldWithoutOperandsHasItsDefaults) {
    const Field& field = FieldWith("");
    EXPECT_EQ(field.Type, RecordType::Field);
    ASSERT_NE(field.Children, nullptr);
    EXPECT_TRUE(ListIsEmpty(*field.Children));
    EXPECT_EQ(field.Name, "F");
    for (const Text* text : {&field.InitialValue, &field.Replenish, &field.Picin, &field.Picout})
        EXPECT_EQ(*text, std::nullopt);
    EXPECT_EQ(field.TabStop, 1);
    EXPECT_EQ(field.Case, 2);
    for (const auto one : {field.Row, field.Column, field.Width, field.Height, field.VariableRow,
                           field.VariableColumn, field.DataType, field.Contents, field.Value,
                           field.Emphasis, field.Highlight, field.Intensity, field.Justification})
        EXPECT_EQ(one, 1);
    for (const auto zero :
         {field.Decimals, field.BlankIsZero, field.MandatoryEntry, field.Protected,
          field.SetModified, field.UsageOutput, field.FloatingCurrency, field.LeadingZeros,
          field.FloatingSign, field.TrailingSign, field.PositiveSign, field.CreditSign,
          field.BlankWhenZero, field.InsertDelimiters, field.ReplenishForBlanks,
          field.InitialCursor, field.Colour, field.BackColour})
        EXPECT_EQ(zero, 0);
}

TEST_F(BmsMacros, FieldPositions) {
    struct Case {
        const char* Operand;
        int Row, Column;
    };
    for (const auto& [operand, row, column] : std::vector<Case>{{"POS=(5,10)", 5, 10},
                                                                {"POS(5,10)", 5, 10},
                                                                {"POS=(5 10)", 5, 10},
                                                                {"POS=100", 1, 1},
                                                                {"POS=X", 1, 1},
                                                                {"POS='('", 1, 1},
                                                                {"POS=", 1, 1},
                                                                {"POS)", 1, 1},
                                                                {"POS=(2,3),POS=(4,5)", 4, 5},
                                                                {"POS=(2,3),POS=9", 2, 3},
                                                                {"POS=(0,4294967297)", 0, 1}}) {
        EXPECT_EQ(FieldWith(operand).Row, row) << operand;
        EXPECT_EQ(FieldWith(operand).Column, column) << operand;
        const std::string kept = std::string("LENGTH=1,") + operand;
        EXPECT_EQ(ConstantWith(kept).Row, row) << operand;
        EXPECT_EQ(ConstantWith(kept).Column, column) << operand;
    }
}

TEST_F(BmsMacros, FieldTexts) {
    EXPECT_EQ(FieldWith("INITIAL='IT''S'").InitialValue, "IT'S");
    EXPECT_EQ(FieldWith("INITIAL=''").InitialValue, "");
    EXPECT_EQ(FieldWith("INITIAL='A' & 'B'").InitialValue, "AB");
    EXPECT_EQ(FieldWith("INITIAL='A',INITIAL='B'").InitialValue, "B");
    EXPECT_EQ(FieldWith("INITIAL='\xC4\xE4'").InitialValue, "\xC4\xE4");
    EXPECT_EQ(FieldWith("PICIN='9(5)'").Picin, "9(5)");
    EXPECT_EQ(FieldWith("PICIN='9(5)'").Picout, std::nullopt);
    EXPECT_EQ(FieldWith("PICOUT=\"ZZ9.99\"").Picout, "ZZ9.99");
    EXPECT_EQ(FieldWith("PICOUT='ZZ9.99'").Picin, std::nullopt);
}

TEST_F(BmsMacros, AFieldIsAsWideAsItsLengthSays) {
    EXPECT_EQ(FieldWith("LENGTH=79,INITIAL='ABC'").Width, 79);
    EXPECT_EQ(FieldWith("INITIAL='ABC'").Width, 1);
    EXPECT_EQ(FieldWith("LENGTH=0").Width, 0); // a field is never dropped
    EXPECT_EQ(FieldWith("LENGTH=2147483648").Width, -2147483647 - 1);
}

TEST_F(BmsMacros, FieldJustification) {
    EXPECT_EQ(FieldWith("JUSTIFY=LEFT").Justification, 2);
    EXPECT_EQ(FieldWith("JUSTIFY=RIGHT").Justification, 3);
    EXPECT_EQ(FieldWith("JUSTIFY=(right,zero)").Justification, 3);
    EXPECT_EQ(FieldWith("JUSTIFY=(LEFT,BLANK)").Justification, 2);
    EXPECT_EQ(FieldWith("JUSTIFY=(LEFT,RIGHT)").Justification, 3);
    EXPECT_EQ(FieldWith("JUSTIFY=(BLANK)").Justification, 1);
    EXPECT_EQ(FieldWith("JUSTIFY=ZERO").Justification, 1);
    EXPECT_EQ(FieldWith("JUSTIFY=()").Justification, 1);
}

// What ATTRB can change of a field.
struct Attributes {
    int TabStop = 1, Protected = 0, Intensity = 1, SetModified = 0;
    int DataType = 1, LeadingZeros = 0, BlankWhenZero = 0, InitialCursor = 0;
    bool operator==(const Attributes&) const = default;
};

Attributes AttributesOf(const Field& field) {
    return {field.TabStop,  field.Protected,    field.Intensity,     field.SetModified,
            field.DataType, field.LeadingZeros, field.BlankWhenZero, field.InitialCursor};
}

TEST_F(BmsMacros, EveryFieldAttribute) {
    const std::vector<std::pair<std::string, Attributes>> attributes = {
        {"ASKIP", {.TabStop = 0, .Protected = 1}},
        {"PROT", {.Protected = 1}},
        {"UNPROT", {}},
        {"BRT", {.Intensity = 2}},
        {"NORM", {}},
        {"DRK", {.Intensity = 4}},
        {"FSET", {.SetModified = 1}},
        {"NUM", {.DataType = 3, .BlankWhenZero = 1}},
        {"IC", {.InitialCursor = 1}},
        {"()", {}},
    };
    for (const auto& [value, expected] : attributes) {
        EXPECT_EQ(AttributesOf(FieldWith("ATTRB=" + value)), expected) << value;
        if (value != "()") {
            EXPECT_EQ(AttributesOf(FieldWith("ATTRB=(" + value + ")")), expected) << value;
            EXPECT_EQ(AttributesOf(FieldWith("ATTRB='" + value + "'")), expected) << value;
        }
    }
}

TEST_F(BmsMacros, FieldAttributesActInTheOrderWritten) {
    const std::vector<std::pair<std::string, Attributes>> attributes = {
        {"(ASKIP,UNPROT)", {.TabStop = 0}},
        {"(UNPROT,ASKIP)", {.TabStop = 0, .Protected = 1}},
        {"(ASKIP,PROT)", {.TabStop = 0, .Protected = 1}},
        {"(PROT,UNPROT)", {}},
        {"(UNPROT,PROT)", {.Protected = 1}},
        {"(BRT,DRK)", {.Intensity = 4}},
        {"(DRK,BRT)", {.Intensity = 2}},
        {"(DRK,NORM)", {}},
        {"(BRT,NORM,DRK)", {.Intensity = 4}},
        {"(unprot,num,ic,fset,brt)",
         {.Intensity = 2, .SetModified = 1, .DataType = 3, .BlankWhenZero = 1, .InitialCursor = 1}},
        {"ASKIP,ATTRB=UNPROT", {.TabStop = 0}},
        {"(ASKIP", {.TabStop = 0, .Protected = 1}}, // the missing ")" is not missed
    };
    for (const auto& [value, expected] : attributes)
        EXPECT_EQ(AttributesOf(FieldWith("ATTRB=" + value)), expected) << value;
}

TEST_F(BmsMacros, TheFieldWithTheCursorNamesTheImage) {
    auto maps =
        Read("A        DFHMDI LINE=1\nF1       DFHMDF ATTRB=NORM\nF2       DFHMDF ATTRB=IC\n"
             "         DFHMDF ATTRB=IC,LENGTH=1\n"
             "B        DFHMDI LINE=1\nF3       DFHMDF ATTRB=NORM\n");
    EXPECT_EQ(NameOf(FormIn(maps.at(0)).ImageName), "F2");
    EXPECT_EQ(NameOf(FormIn(maps.at(1)).ImageName), "(none)");
    maps = Read("A        DFHMDI LINE=1\nF1       DFHMDF ATTRB=IC\nF2       DFHMDF ATTRB=IC\n");
    EXPECT_EQ(NameOf(FormIn(maps.at(0)).ImageName), "F2");
}

TEST_F(BmsMacros, IgnoredFieldOperandsChangeNothing) {
    const Field& field = FieldWith("COLOR=RED,GRPNAME=G,HILIGHT=BLINK,OCCURS=5");
    EXPECT_EQ(AttributesOf(field), Attributes{});
    EXPECT_EQ(field.Colour, 0);
    EXPECT_EQ(field.Highlight, 1);
    EXPECT_EQ(field.Width, 1);
    EXPECT_EQ(field.Name, "F");
}

// --- constants ---------------------------------------------------------------------------------

TEST_F(BmsMacros, AConstantHasItsDefaults) {
    const Heading& heading = ConstantWith("LENGTH=5");
    EXPECT_EQ(heading.Type, RecordType::Heading);
    ASSERT_NE(heading.Children, nullptr);
    EXPECT_TRUE(ListIsEmpty(*heading.Children));
    EXPECT_EQ(heading.InitialValue, "");
    EXPECT_EQ(heading.Width, 0);
    for (const auto one :
         {heading.Row, heading.Column, heading.Height, heading.Highlight, heading.Intensity})
        EXPECT_EQ(one, 1);
}

TEST_F(BmsMacros, AConstantIsAsWideAsItsText) {
    for (const char* operands :
         {"LENGTH=5,INITIAL='ABC'", "INITIAL='ABC',LENGTH=1", "LENGTH=0,INITIAL='ABC',LENGTH=80",
          "LENGTH=2147483648,INITIAL='ABC'"}) {
        EXPECT_EQ(ConstantWith(operands).Width, 3) << operands;
        EXPECT_EQ(ConstantWith(operands).InitialValue, "ABC") << operands;
    }
    EXPECT_EQ(ConstantWith("LENGTH=1,INITIAL='A' & '''' & \"B\"").Width, 3);
}

TEST_F(BmsMacros, AConstantWithoutLengthIsDropped) {
    for (const char* operands :
         {"", "INITIAL='ABC'", "LENGTH=0,INITIAL='ABC'", "LENGTH=5,LENGTH=0",
          "LENGTH=4294967296,INITIAL='ABC'", "POS=(2,2),ATTRB=(ASKIP,BRT)"}) {
        const auto maps = Read(std::string("M        DFHMDI LINE=1\n         DFHMDF ") + operands +
                               "\n" + "F        DFHMDF LENGTH=1\n");
        ASSERT_EQ(ListCount(*maps.at(0)), 2) << operands;
        EXPECT_EQ(maps[0]->Last->Data->Type, RecordType::Field) << operands;
    }
}

TEST_F(BmsMacros, EveryConstantAttribute) {
    for (const char* value : {"ASKIP", "FSET", "IC", "NUM", "PROT", "UNPROT", "NORM", "()",
                              "(ASKIP,FSET,IC,NUM,PROT,UNPROT)", "(BRT,NORM)"})
        EXPECT_EQ(ConstantWith(std::string("LENGTH=1,ATTRB=") + value).Intensity, 1) << value;
    for (const char* value : {"BRT", "brt", "(ASKIP,BRT)", "(DRK,BRT,NUM)"})
        EXPECT_EQ(ConstantWith(std::string("LENGTH=1,ATTRB=") + value).Intensity, 2) << value;
    for (const char* value : {"DRK", "(BRT,DRK)", "(DRK,PROT)"})
        EXPECT_EQ(ConstantWith(std::string("LENGTH=1,ATTRB=") + value).Intensity, 4) << value;
    EXPECT_EQ(FormIn(m_maps.at(0)).ImageName, std::nullopt);
}

TEST_F(BmsMacros, IgnoredConstantOperandsChangeNothing) {
    const Heading& heading = ConstantWith("LENGTH=1,COLOR=BLUE,JUSTIFY=(RIGHT,ZERO)");
    EXPECT_EQ(heading.Highlight, 1);
    EXPECT_EQ(heading.Intensity, 1);
    EXPECT_EQ(heading.Width, 0);
}

// --- every keyword as an operand of every macro ----------------------------------------------

struct Macro {
    std::string Begin; // the statement up to its operands
    int Code;          // for an operand that it does not take
    std::set<std::string> Values, Strings, Numbers, Tokens, Pairs; // operands, by what they take
};

const std::vector<Macro>& Macros() {
    static const std::vector<Macro> macros = {
        {"S        DFHMSD ",
         353,
         {"BASE", "COLOR", "CTRL", "DATA", "DSATTS", "EXTATT", "HILIGHT", "LANG", "MAPATTS", "MODE",
          "STORAGE", "SUFFIX", "TERM", "TIOAPFX", "TYPE"},
         {},
         {},
         {},
         {}},
        {"N        DFHMDI ",
         457,
         {"COLUMN", "DATA", "LINE", "OBFMT", "SUFFIX", "TERM", "TIOAPFX", "CTRL", "JUSTIFY"},
         {},
         {},
         {},
         {"SIZE"}},
        {"F        DFHMDF ",
         593,
         {"ATTRB", "JUSTIFY"},
         {"INITIAL", "PICIN", "PICOUT"},
         {"LENGTH", "OCCURS"},
         {"COLOR", "GRPNAME", "HILIGHT"},
         {"POS"}},
        {"         DFHMDF ",
         688,
         {"ATTRB", "JUSTIFY"},
         {"INITIAL"},
         {"LENGTH"},
         {"COLOR"},
         {"POS"}},
    };
    return macros;
}

std::string Line(const std::string& begin, const std::string& operand) {
    return "M        DFHMDI LINE=1\n" + begin + operand + "\n";
}

TEST_F(BmsMacros, EveryKeywordAsAnOperandOfEveryMacro) {
    for (const Macro& macro : Macros()) {
        std::set<std::string> taken;
        for (const auto* group :
             {&macro.Values, &macro.Strings, &macro.Numbers, &macro.Tokens, &macro.Pairs})
            taken.insert(group->begin(), group->end());
        for (int code = 1; code <= 65; ++code) {
            const std::string word(BmsKeywords[static_cast<std::size_t>(code) - 1].Word);
            if (taken.contains(word))
                continue;
            const std::string operation = macro.Begin.substr(9, 6);
            EXPECT_EQ(Rejected(Line(macro.Begin, word + "=1")),
                      "Line     2: m.bms; " + operation + " Syntax Error (" +
                          std::to_string(macro.Code) + ") at column " +
                          std::to_string(16 + word.size()) + " (" + word + ")\n");
        }
    }
}

TEST_F(BmsMacros, OperandsTakeTheirForm) {
    for (const Macro& macro : Macros()) {
        for (const std::string& word : macro.Values) {
            const bool checked =
                word == "ATTRB" || word == "JUSTIFY" || (word == "CTRL" && macro.Code == 457);
            Read(Line(macro.Begin, word + "=()"));
            if (!checked) {
                Read(Line(macro.Begin, word + "=(X,'Y',5,=)"));
                Read(Line(macro.Begin, word + "=3270-2"));
                Read(Line(macro.Begin, word + "="));
            }
            EXPECT_THAT(Rejected(Line(macro.Begin, word)), testing::HasSubstr("(804)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "(X)")), testing::HasSubstr("(804)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(),5")), testing::HasSubstr("(773)"));
        }
        for (const std::string& word : macro.Strings) {
            Read(Line(macro.Begin, word + "='X'"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=X")), testing::HasSubstr("(782)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + " 'X'")), testing::HasSubstr("(804)"));
        }
        for (const std::string& word : macro.Numbers) {
            Read(Line(macro.Begin, word + "=5"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(5)")), testing::HasSubstr("(789)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "(5)")), testing::HasSubstr("(804)"));
        }
        for (const std::string& word : macro.Tokens) {
            for (const char* token : {"X", "5", "'X'", "POS", ")", ""})
                Read(Line(macro.Begin, word + "=" + token));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(RED)")), testing::HasSubstr("(773)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word)), testing::HasSubstr("(804)"));
        }
        for (const std::string& word : macro.Pairs) {
            for (const char* pair : {"=(1,2)", "(1,2)", "=5", "=X", "='('", "=", ")"})
                Read(Line(macro.Begin, word + pair));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + " 5")), testing::HasSubstr("(796)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word)), testing::HasSubstr("(796)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(X,2)")), testing::HasSubstr("(789)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(1)")), testing::HasSubstr("(789)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "(1,X)")), testing::HasSubstr("(789)"));
            EXPECT_THAT(Rejected(Line(macro.Begin, word + "=(1,2,3)")),
                        testing::HasSubstr("(812)"));
        }
    }
}

TEST_F(BmsMacros, CheckedListsAcceptTheirValues) {
    for (const char* value : {"FREEKB", "HONEOM", "(FREEKB,HONEOM)", "(freekb)", "'FREEKB'", "()"})
        EXPECT_EQ(Read(Line("N        DFHMDI ", std::string("CTRL=") + value)).size(), 2U);
    for (const Macro& macro : Macros())
        for (const char* value :
             {"LEFT", "RIGHT", "BLANK", "ZERO", "(LEFT,ZERO)", "(left,right,blank,zero)"})
            if (macro.Values.contains("JUSTIFY"))
                Read(Line(macro.Begin, std::string("JUSTIFY=") + value));
}

// A list is compared value by value, so each of the other keywords must be refused.
TEST_F(BmsMacros, CheckedListsRefuseEveryOtherKeyword) {
    struct Checked {
        std::string Begin, Operand;
        int Code;
        std::set<std::string> Accepted;
    };
    const std::set<std::string> justify = {"LEFT", "RIGHT", "BLANK", "ZERO"};
    const std::set<std::string> attributes = {"ASKIP", "PROT", "UNPROT", "BRT", "NORM",
                                              "DRK",   "FSET", "NUM",    "IC"};
    for (const auto& [begin, operand, code, accepted] :
         std::vector<Checked>{{"N        DFHMDI ", "CTRL", 424, {"FREEKB", "HONEOM"}},
                              {"N        DFHMDI ", "JUSTIFY", 451, justify},
                              {"F        DFHMDF ", "JUSTIFY", 522, justify},
                              {"F        DFHMDF ", "ATTRB", 563, attributes},
                              {"         DFHMDF ", "JUSTIFY", 644, justify},
                              {"         DFHMDF ", "ATTRB", 675, attributes}}) {
        for (int key = 1; key <= 65; ++key) {
            const std::string word(BmsKeywords[static_cast<std::size_t>(key) - 1].Word);
            const std::string statement = begin + operand + "=(" + word + ")";
            if (accepted.contains(word)) {
                Read(Line(begin, operand + "=(" + word + ")"));
                continue;
            }
            EXPECT_EQ(Rejected(Line(begin, operand + "=(" + word + ")")),
                      "Line     2: m.bms; " + begin.substr(9, 6) + " Syntax Error (" +
                          std::to_string(code) + ") at column " + std::to_string(statement.size()) +
                          " ())\n");
        }
    }
}

} // namespace
} // namespace grolof
