#include "bms/keywords.h"

#include <string>

#include <gtest/gtest.h>

#include "support/text.h"

namespace grolof {
namespace {

// The whole table once more, in the order of the codes.
constexpr std::array kWords = {
    "ALARM",   "ASKIP",  "ASM",    "ATTRB",   "AUTO",    "BASE",   "BLANK",   "BLOCK",  "BRT",
    "COBOL",   "COLOR",  "COLUMN", "CTRL",    "DATA",    "DFHMDF", "DFHMDI",  "DFHMSD", "DRK",
    "DSATTS",  "DSECT",  "EXTATT", "FIELD",   "FINAL",   "FREEKB", "FRSET",   "FSET",   "GRPNAME",
    "HILIGHT", "HONEOM", "IC",     "IN",      "INITIAL", "INOUT",  "JUSTIFY", "LANG",   "LEFT",
    "LENGTH",  "LINE",   "MAP",    "MAPATTS", "MODE",    "NAME",   "NO",      "NORM",   "NUM",
    "OBFMT",   "OCCURS", "OUT",    "PICIN",   "PICOUT",  "PLI",    "POS",     "PRINT",  "PROT",
    "RIGHT",   "RPG",    "SIZE",   "STORAGE", "SUFFIX",  "TERM",   "TIOAPFX", "TYPE",   "UNPROT",
    "YES",     "ZERO"};
static_assert(kWords.size() == 65);

TEST(BmsKeywords, CodesAreThePositionsFromOne) {
    for (std::size_t i = 0; i < kWords.size(); ++i) {
        EXPECT_EQ(BmsKeywords[i].Code, static_cast<int>(i) + 1);
        EXPECT_EQ(BmsKeywords[i].Word, kWords[i]);
        EXPECT_EQ(BmsKeywordCode(kWords[i]), static_cast<int>(i) + 1);
    }
}

TEST(BmsKeywords, TableEndsWithAnEntryThatStandsForNoWord) {
    EXPECT_EQ(BmsKeywords.back().Code, 66);
    EXPECT_EQ(BmsKeywords.back().Word, "");
    EXPECT_EQ(BmsKeywordCode(""), -1);
}

TEST(BmsKeywords, AnyCaseIsFound) {
    for (const char* word : kWords) {
        std::string lower = word;
        TextToLower(lower);
        EXPECT_EQ(BmsKeywordCode(lower), BmsKeywordCode(word));
    }
    EXPECT_EQ(BmsKeywordCode("dFhMdF"), 15);
}

TEST(BmsKeywords, OnlyWholeWordsAreFound) {
    for (const std::string word : kWords) {
        EXPECT_EQ(BmsKeywordCode(word + "X"), -1);
        EXPECT_EQ(BmsKeywordCode(" " + word), -1);
    }
    for (const char* text : {"DFHMD", "ATTR", "I", "POSI", "EJECT", "SPACE", "3270-2", "(", "\xE4"})
        EXPECT_EQ(BmsKeywordCode(text), -1) << text;
    EXPECT_EQ(BmsKeywordCode(std::string(100'000, 'A')), -1);
}

TEST(BmsKeywords, CodesCanLabelCases) {
    static_assert(BmsKey("ALARM") == 1);
    static_assert(BmsKey("ZERO") == 65);
    EXPECT_EQ(BmsKey("POS"), BmsKeywordCode("POS"));
}

} // namespace
} // namespace grolof
