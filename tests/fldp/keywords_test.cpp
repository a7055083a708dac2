#include "fldp/keywords.h"

#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/keywords.h"

namespace grolof {
namespace {

// Every code and its words: a short form before the full word.
constexpr char kWords[] =
    "0 ALL; 1 ALLOW_QUERY; 2 ALPHABETIC; 3 ALPHA_NUMERIC; "
    "4 BAC_ATT/BACKGROUND_ATTRIBUTES; 5 BINARY; 6 BLACK; 7 BLANK; 8 BLANK_INPUT; "
    "9 BLANK_WHEN_ZERO; 10 BLINK; 11 BLUE; 12 CASE; 13 CENTER; 14 CHARACTER_ATTRIBUTES; "
    "15 CHECKNUMBER_TEST; 16 COLOR; 17 COLUMN; 18 COLUMN_LEFT; 19 COMMA; "
    "20 COMPUTATIONAL; 21 CONSTANT; 22 CONSTANTS; 23 CONTENTS; "
    "24 CONTROL_CHARACTERS_ALLOWED; 25 CONVERSATION; 26 CORRECTION; 27 COUNT; 28 CREDIT; "
    "29 CURRENT_PAGE_COUNT; 30 CUR/CURSOR; 31 CYAN; 32 DATA_ENTRY; 33 DATA_PAGE_COUNT; "
    "34 DATA_TYPE; 35 DATE_1; 36 DATE_2; 37 DATE_3; 38 DATE_4; 39 DATE_5; 40 DATE_6; "
    "41 DATE_7; 42 DATE_8; 43 DECIMAL_POINT; 44 DECIMAL_SCALE; 45 DEPENDENT; "
    "46 DIAGNOSE; 47 DIM/DIMENSION; 48 DIRECTION; 49 DISPLAY; 50 DISPLAY_POSITIVE; "
    "51 DOWN; 52 EDIT_SYMBOL; 53 EITHER; 54 EMP/EMPHASIS; 55 END_FIE/END_FIELD; "
    "56 END_FOR/END_FORM; 57 END_IMA/END_IMAGE; 58 END_STATEMENT; 59 FAIL_ACTION; "
    "60 FCA; 61 FIE/FIELD; 62 FIELD_CHARACTERS; 63 FLOATING; 64 FONT_INDEX; "
    "65 FOR_ATT/FOREGROUND_ATTRIBUTES; 66 FOR/FORM; 67 FORM_NAME; 68 FORM_NUMBER; "
    "69 FUNCTION_KEYS; 70 GEN_EDI/GENERAL_EDIT; 71 GENERATE; 72 GENERATE_PREFIX; "
    "73 GENERATE_TYPE; 74 GREEN; 75 GROUP; 76 HARD; 77 HEIGHT; 78 HIGH; "
    "79 HIG/HIGHLIGHT; 80 I18N_CCSNUM; 81 IMA/IMAGE; 82 IMAGE_NAME; 83 INDEX_ITEM; "
    "84 INDEX_PAGE_COUNT; 85 INITIAL_VALUE; 86 INP_ATT/INPUT_ATTRIBUTES; "
    "87 INPUT_OUTPUT; 88 INSERT_DELIMITERS; 89 INTEGER; 90 INTENSITY; 91 JUSTIFICATION; "
    "92 LEADING; 93 LEADING_ZEROES; 94 LEFT; 95 LEVEL; 96 LINKED; 97 LOW; 98 LOWER; "
    "99 LPID; 100 MAGENTA; 101 MANDATORY_ENTRY; 102 MARKING_CHARACTER; "
    "103 MAXIMUM_WIDTH; 104 MONETARY_SIGN; 105 NAME; 106 NO; 107 NONE; 108 NORMAL; "
    "109 NUMBER; 110 NUMERIC; 111 OCTAL; 112 OPTIONAL; 113 OUTPUT; "
    "114 OUT_ATT/OUTPUT_ATTRIBUTES; 115 PID; 116 POS_IMA/POSITION_IMAGE; "
    "117 PRE_VAL/PREDEFINED_VALUE; 118 PROTECTED; 119 PROTECTED_BLANKS; "
    "120 PROTECTED_DATA; 121 RADIX; 122 RED; 123 REFERENCE_NAME; "
    "124 REP_IMA/REPEAT_IMAGE; 125 REPLENISH; 126 REPLENISH_FOR_BLANKS; "
    "127 REPLENISH_NOTIFICATION; 128 REPLENISH_STRING; 129 REVERSE; 130 RIGHT; 131 ROW; "
    "132 SECURITY; 133 SET_MODE; 134 SET_MODIFIED; 135 SIGN; 136 SOE_CHARACTER; "
    "137 SOFT; 138 SOURCE; 139 SPACING; 140 START_IMAGE; 141 STOP_IMAGE; "
    "142 STO/STORAGE; 143 SUPPRESS; 144 SUPPRESSED; 145 SYSTEM; 146 SYSTEM_VALUE; "
    "147 TAB; 148 TEST; 149 TIME_1; 150 TIME_2; 151 TIME_3; 152 TOTAL_PAGE_COUNT; "
    "153 TRAILING; 154 TRANSACTION_CODE; 155 TYPE; 156 UNCHANGED; 157 UNDERSCORE; "
    "158 UPPER; 159 USAGE; 160 USER_FIELD_1; 161 USER_FIELD_2; 162 USER_FIELD_3; "
    "163 USER_FIELD_4; 164 USER_FIELD_5; 165 VALUE_CHECK; 166 VARIABLE_COLUMN; "
    "167 VARIABLE_ROW; 168 VARIABLE_WIDTH; 169 WHITE; 170 WIDTH; 171 YELLOW; 172 YES; "
    "173 ZERO; ";

struct Row {
    int Code;
    std::vector<std::string> Words;
};

std::vector<Row> Rows() {
    std::vector<Row> rows;
    std::istringstream table(kWords);
    for (std::string entry; std::getline(table, entry, ';');) {
        std::istringstream columns(entry);
        Row row{};
        std::string words;
        if (!(columns >> row.Code >> words))
            continue;
        std::istringstream split(words);
        for (std::string word; std::getline(split, word, '/');)
            row.Words.push_back(word);
        rows.push_back(row);
    }
    return rows;
}

std::string Lower(std::string text) {
    TextToLower(text);
    return text;
}

std::string Mixed(std::string text) {
    for (std::size_t i = 0; i < text.size(); i += 2)
        text[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[i])));
    return text;
}

TEST(FldpKeywords, HasTheWholeTable) {
    const auto rows = Rows();
    ASSERT_EQ(rows.size(), 174U);
    std::size_t words = 0;
    for (std::size_t code = 0; code < rows.size(); ++code) {
        ASSERT_EQ(rows[code].Code, static_cast<int>(code));
        words += rows[code].Words.size();
        for (const std::string& word : rows[code].Words) {
            EXPECT_EQ(static_cast<int>(FldpKeywordOf(word)), rows[code].Code) << word;
            EXPECT_EQ(static_cast<int>(FldpKeywordOf(Lower(word))), rows[code].Code) << word;
            EXPECT_EQ(static_cast<int>(FldpKeywordOf(Mixed(word))), rows[code].Code) << word;
        }
    }
    EXPECT_EQ(words, 193U);
    EXPECT_EQ(kFldpKeywordCount, 193);
    EXPECT_EQ(static_cast<int>(FldpKeyword::NotAKeyword), 174);
}

// Every word cut short or made longer is a name, unless the table has that word too.
TEST(FldpKeywords, TakesWordsOnlyWhole) {
    std::map<std::string, int> codes;
    for (const Row& row : Rows())
        for (const std::string& word : row.Words)
            codes[word] = row.Code;
    for (const auto& [word, code] : codes) {
        for (std::size_t length = 0; length < word.size(); ++length) {
            const std::string cut = word.substr(0, length);
            const int expected = codes.count(cut) != 0 ? codes[cut] : 174;
            EXPECT_EQ(static_cast<int>(FldpKeywordOf(cut)), expected) << cut;
        }
        const std::string longer = word + "S";
        const int expected = codes.count(longer) != 0 ? codes[longer] : 174;
        EXPECT_EQ(static_cast<int>(FldpKeywordOf(longer)), expected) << longer;
    }
}

TEST(FldpKeywords, HasTheseShortFormsAndNoOthers) {
    const std::set<std::string> expected = {"BAC_ATT", "CUR",     "DIM",     "EMP",     "END_FIE",
                                            "END_FOR", "END_IMA", "FIE",     "FOR_ATT", "FOR",
                                            "GEN_EDI", "HIG",     "IMA",     "INP_ATT", "OUT_ATT",
                                            "POS_IMA", "PRE_VAL", "REP_IMA", "STO"};
    std::set<std::string> found;
    for (const Row& row : Rows())
        if (row.Words.size() == 2)
            found.insert(row.Words.front());
    EXPECT_EQ(found, expected);
    EXPECT_EQ(FldpKeywordOf("HIG"), FldpKeyword::HIGHLIGHT);
    EXPECT_EQ(FldpKeywordOf("HIGH"), FldpKeyword::HIGH);
    EXPECT_EQ(FldpKeywordOf("FOR"), FldpKeyword::FORM);
    EXPECT_EQ(FldpKeywordOf("FORMS"), FldpKeyword::NotAKeyword);
    EXPECT_EQ(FldpKeywordOf("NAM"), FldpKeyword::NotAKeyword);
}

TEST(FldpKeywords, RefusesForeignBytes) {
    EXPECT_EQ(FldpKeywordOf("F\xD6RM"), FldpKeyword::NotAKeyword);
    EXPECT_EQ(FldpKeywordOf(std::string("FORM\0", 5)), FldpKeyword::NotAKeyword);
    EXPECT_EQ(FldpKeywordOf(std::string(10000, 'A')), FldpKeyword::NotAKeyword);
    for (int c = 128; c < 256; ++c)
        EXPECT_EQ(FldpKeywordOf(std::string(1, static_cast<char>(c)) + "O"),
                  FldpKeyword::NotAKeyword);
}

// The search itself, on a table with equal words and with words of one hash neighbourhood.
constexpr KeywordTable<5> kTable({{{7, "ONE"}, {8, "TWO"}, {9, "ONE"}, {0, "A"}, {1, "AA"}}}, -1);

TEST(KeywordTable, TheFirstOfEqualWordsWins) {
    EXPECT_EQ(kTable.CodeOf("one"), 7);
    EXPECT_EQ(kTable.CodeOf("Two"), 8);
    EXPECT_EQ(kTable.CodeOf("a"), 0);
    EXPECT_EQ(kTable.CodeOf("aA"), 1);
    EXPECT_EQ(kTable.CodeOf("aaa"), -1);
    EXPECT_EQ(kTable.CodeOf(""), -1);
    EXPECT_EQ(kTable.CodeOf("three"), -1);
    EXPECT_EQ(kTable.Entries()[2].Code, 9);
}

} // namespace
} // namespace grolof
