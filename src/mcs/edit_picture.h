// The edit picture of an edited numeric field.
#pragma once

#include <cstdint>
#include <span>

#include "model/records.h"

namespace grolof {

/// What an edited numeric item carries besides its picture.
struct EditPicture {
    std::uint8_t Flags = 0;        ///< B3: decimals and edit flags
    std::int64_t Digits = 0;       ///< B4: digit positions, which are also the data length
    bool ShowsBlankAsZero = false; ///< zero display is set by the picture
};

/// Writes the picture of a field into `picture`, the characters of its width, and returns what
/// goes with it. A field too narrow for its decimals and switches gets the part of its picture
/// that falls inside its width; positions that no rule fills stay as they are.
EditPicture MakeEditPicture(const Field& field, std::span<std::uint8_t> picture);

} // namespace grolof
