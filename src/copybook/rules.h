// What the COPY books of both dialects have in common: how a line begins, how wide its columns
// are, and how a field becomes a PICTURE and a VALUE. What a dialect does in a way of its own is
// in its own file, except the line prefix, whose two variants stand side by side here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "model/codes.h"
#include "model/records.h"
#include "support/output_file.h"

namespace grolof {

/// Name that declares storage without a name; compared exactly.
inline constexpr std::string_view kFiller = "FILLER";

/// An otherwise empty comment line.
inline constexpr std::string_view kStarLine = "      *\n";

/// Columns that a picture takes in front of a VALUE clause.
inline constexpr std::int64_t kPictureColumn = 15;

/// Beginning of a line of a DPS book: indentation, two-digit level, one blank. Every five levels
/// indent by two more; level 05 stands behind 13 blanks.
std::string DpsLevelPrefix(int level);

/// The same of a BMS book: two blanks follow the level. Level 3 alone stands behind 12 blanks
/// with one blank after it, so that its names begin in the column of level 2 (column 16).
std::string BmsLevelPrefix(int level);

/// Width of the name column of a field control item. It shrinks as the indentation grows.
constexpr std::int64_t FcaNameColumn(int level) {
    return 27 - level / 5 * 2;
}

/// Width of the name column of a DPS data item.
constexpr std::int64_t DataNameColumn(int level) {
    return 24 - level / 5 * 2;
}

/// "S<number>-", the prefix that makes data names of different screens differ.
std::string NumberPrefix(const Form& form);

/// StoredName as COPY books write it: five digits also behind the sign of a negative number.
std::string ScreenNameOf(const Form& form);

/// True for a field that is neither alphanumeric nor alphabetic.
inline bool IsNumeric(const Field& field) {
    return field.DataType != kAlphanumericData && field.DataType != kAlphabeticData;
}

/// Characters of data behind a field: its `Width` less the point, the currency sign, the signs
/// and, with delimiters inserted, the commas. Below 1 for a field that is too narrow for them.
std::int64_t DataLength(const Field& field);

/// The picture clause, "PIC X(5)" say. Numbers beyond 32 bits wrap.
std::string PictureOf(const Field& field);

/// Ends an item's line with " VALUE" and puts the initial value on the following lines: shorter
/// than 42 characters behind 27 blanks, up to 55 behind 12, a longer one split after 58
/// characters. The first piece of a split literal keeps its closing apostrophe and period: the
/// books have always had this form, which no compiler takes. A text of 56 to 58 characters
/// leaves an empty second piece.
void PutValueBelow(OutputFile& out, std::string_view text);

} // namespace grolof
