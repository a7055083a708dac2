// The reader of MCS formats: plays the items of a `.t3z` file back onto rows and columns. The
// format stands in format.h. Nothing in a file is trusted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "mcs/format.h"

namespace grolof {

/// What the header of a format tells.
struct ScreenSummary {
    std::string Group; ///< without the blanks it is padded with
    std::string Name;  ///< the same
    int Rows = 0;
    int Columns = 0;
    int BufferLength = 0;
    int DataLength = 0;
    int InputLength = 0;
    int FieldCount = 0;
    int CursorRow = 0; ///< 0 when no field asks for the cursor
    int CursorColumn = 0;
    int FirstRow = 0; ///< of the first unprotected field, 0 without one
    int FirstColumn = 0;
    int StreamLength = 0;
    std::uint8_t FormFlags = 0;
    std::uint8_t Display = 0;
};

/// Kind of what an item places on the screen.
enum class PlacedKind { ConstantText, Field, SystemValue, FourByte };

/// Something that stands on the screen. Rows and columns count from 1.
struct PlacedItem {
    PlacedKind Kind = PlacedKind::ConstantText;
    std::int64_t Row = 1;
    std::int64_t Column = 1;
    std::int64_t Width = 0;
    std::uint8_t B1 = 0;     ///< type and flags of the item
    std::uint8_t B2 = 0;     ///< display code and flags of the item
    std::uint8_t Edits = 0;  ///< decimals and edit flags of an edited field
    std::uint8_t Digits = 0; ///< digit positions of an edited field
    std::string Picture;     ///< of an edited field
    std::string Text;        ///< constant or initial text; empty without one
    bool operator==(const PlacedItem&) const = default;
};

/// A screen as it is shown.
struct PlayedScreen {
    ScreenSummary Summary;
    std::vector<std::string> Rows; ///< texts, each as long as what is painted in it
    std::vector<PlacedItem> Items; ///< in the order of rows and columns
};

/// Why a file is no MCS format, and the offset of the byte that shows it.
struct PlayError {
    std::size_t Offset = 0;
    std::string Message;
};

/// Plays a whole file onto a screen. None when all went well; otherwise what is wrong, and the
/// screen holds what was played up to there.
std::optional<PlayError> PlayMcs(std::span<const std::uint8_t> file, PlayedScreen& screen);

} // namespace grolof
