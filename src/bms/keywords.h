// The words of the map macros: operations, operands and the values that they take.
#pragma once

#include <array>
#include <string_view>

#include "support/keywords.h"

namespace grolof {

/// Code of the entry that ends the keyword table.
inline constexpr int kBmsKeywordEnd = 66;

/// The keyword table. ORDER: alphabetical, and the code is the 1-based position.
inline constexpr std::array<Keyword, 66> BmsKeywords = {{
    {1, "ALARM"},         {2, "ASKIP"},    {3, "ASM"},      {4, "ATTRB"},    {5, "AUTO"},
    {6, "BASE"},          {7, "BLANK"},    {8, "BLOCK"},    {9, "BRT"},      {10, "COBOL"},
    {11, "COLOR"},        {12, "COLUMN"},  {13, "CTRL"},    {14, "DATA"},    {15, "DFHMDF"},
    {16, "DFHMDI"},       {17, "DFHMSD"},  {18, "DRK"},     {19, "DSATTS"},  {20, "DSECT"},
    {21, "EXTATT"},       {22, "FIELD"},   {23, "FINAL"},   {24, "FREEKB"},  {25, "FRSET"},
    {26, "FSET"},         {27, "GRPNAME"}, {28, "HILIGHT"}, {29, "HONEOM"},  {30, "IC"},
    {31, "IN"},           {32, "INITIAL"}, {33, "INOUT"},   {34, "JUSTIFY"}, {35, "LANG"},
    {36, "LEFT"},         {37, "LENGTH"},  {38, "LINE"},    {39, "MAP"},     {40, "MAPATTS"},
    {41, "MODE"},         {42, "NAME"},    {43, "NO"},      {44, "NORM"},    {45, "NUM"},
    {46, "OBFMT"},        {47, "OCCURS"},  {48, "OUT"},     {49, "PICIN"},   {50, "PICOUT"},
    {51, "PLI"},          {52, "POS"},     {53, "PRINT"},   {54, "PROT"},    {55, "RIGHT"},
    {56, "RPG"},          {57, "SIZE"},    {58, "STORAGE"}, {59, "SUFFIX"},  {60, "TERM"},
    {61, "TIOAPFX"},      {62, "TYPE"},    {63, "UNPROT"},  {64, "YES"},     {65, "ZERO"},
    {kBmsKeywordEnd, {}},
}};

/// Code of a table word, fixed at compile time so that it can label a case. A text that is not
/// in the table does not compile.
consteval int BmsKey(std::string_view text) {
    for (const Keyword& entry : BmsKeywords)
        if (entry.Code != kBmsKeywordEnd && entry.Word == text)
            return entry.Code;
    throw "not a keyword";
}

/// Code (1 to 65) of a text without regard to case, -1 when it is no keyword.
int BmsKeywordCode(std::string_view text);

} // namespace grolof
