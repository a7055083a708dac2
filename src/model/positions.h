// Where things stand on the screen: offsets of images and their repetitions, the wrap over the
// form's width, the field that starts at a position, and the merge of neighbouring headings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_set>

#include "model/codes.h"
#include "model/records.h"

namespace grolof {

/// A model nested deeper than this is refused by the readers, so that walks may recurse.
inline constexpr int kDeepestNesting = 500;

/// A screen whose repeat images expand to more records than this is refused by the writers.
inline constexpr std::int64_t kMostRecords = 1'000'000;

/// What enclosing images add to a row and a column; 0 and 0 for the screen itself. Wide enough
/// that no sum of the model's 32-bit numbers overflows.
struct Offset {
    std::int64_t Row = 0;
    std::int64_t Column = 0;
};

/// A 1-based place on the screen.
struct Position {
    std::int64_t Row = 0;
    std::int64_t Column = 0;
    bool operator==(const Position&) const = default;
};

/// Offset for the children of a plain image that stands at `base`.
inline Offset ImageOffset(const Image& image, Offset base) {
    return {base.Row + image.Row - 1, base.Column + image.Column - 1};
}

/// Offset for the children of repetition i (from 0) of a repeat image that stands at `base`:
/// vertical repetitions are `Height` rows apart (and ignore `Spacing`, on purpose), horizontal
/// ones `Width` + `Spacing` columns.
inline Offset RepetitionOffset(const Image& image, Offset base, std::int64_t i) {
    Offset at = ImageOffset(image, base);
    if (image.Direction == kVertical)
        at.Row += i * image.Height;
    else
        at.Column += i * (std::int64_t{image.Width} + image.Spacing);
    return at;
}

/// Place of a row and column inside an image at `base`: a column beyond the form's width wraps
/// onto the following rows. `formWidth` must not be 0.
inline Position WrappedPosition(Offset base, std::int64_t row, std::int64_t column,
                                std::int32_t formWidth) {
    const std::int64_t k = base.Column + column - 1;
    return {base.Row + row + k / formWidth, k % formWidth + 1};
}

/// The same where only the own column wraps and the offset is added behind the wrap, as COPY books
/// tell where images and the cursor are.
inline Position OwnColumnWrapped(Offset base, std::int64_t row, std::int64_t column,
                                 std::int32_t formWidth) {
    const Position own = WrappedPosition({}, row, column, formWidth);
    return {base.Row + own.Row, base.Column + own.Column};
}

/// True when an image has something in it.
inline bool HasItems(const Image& image) {
    return image.Children && !ListIsEmpty(*image.Children);
}

/// Times that a repeat image is played: its count, 0 when nothing is in it or the count is below 1.
inline std::int64_t TimesPlayed(const Image& image) {
    return HasItems(image) && image.Count >= 1 ? image.Count : 0;
}

/// Number of records met when all repetitions are played, stopping the count above kMostRecords.
std::int64_t ExpandedCount(const List& list);

struct PositionHash {
    std::size_t operator()(const Position& at) const {
        return static_cast<std::size_t>(static_cast<std::uint64_t>(at.Row) << 32 ^
                                        static_cast<std::uint64_t>(at.Column));
    }
};

/// The positions at which a field of a screen starts, for many queries on an unchanged screen.
struct FieldPositions {
    std::unordered_set<Position, PositionHash> Starts;
};

/// Collects the first positions of all fields of a screen, repetitions played. Of a screen that
/// expands to more than kMostRecords some repetitions are left out, but of no image the first. A
/// form of width 0 has no positions.
FieldPositions CollectFieldPositions(const List& screen);

/// True when some field starts at a 1-based absolute row and column; its extent does not count.
bool FieldAtPosition(const FieldPositions& positions, std::int64_t row, std::int64_t column);
bool FieldAtPosition(const List& screen, std::int64_t row, std::int64_t column);

/// Joins headings that follow each other in a list, stand on the same row one blank apart, and
/// have no field starting in the gap. The gap is asked for as the heading's own row and column,
/// not shifted by enclosing images.
void MergeHeadings(List& screen);

} // namespace grolof
