// Reader of the screen definition file (.t3b). It reads lines, not markup: it relies on one tag
// or attribute a line, as the writer puts them, and passes over everything else in silence.
#pragma once

#include <cstddef>
#include <string>

#include "model/records.h"

namespace grolof {

/// Characters of a line that are read at once; the rest of a longer line is the next line.
inline constexpr std::size_t kLongestDefinitionLine = 2559;

/// Loads a screen definition file into a list of forms, never none. A file that cannot be opened
/// gives the system error text for the path on standard error and an empty list. So does, with a
/// line of its own, a file whose elements nest deeper than kDeepestNesting. The group of a form
/// is not read; an image with a Count above 0 is a repeat image; what is not in the file keeps
/// the default of a new record.
RecordList LoadScreenDefinition(const std::string& path);

} // namespace grolof
