// The builder of MCS formats: model in, bytes out. The format stands in format.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "model/list.h"

namespace grolof {

/// A built format: header and stream. Data is none when no format could be built.
struct McsBuffer {
    const std::uint8_t* Data = nullptr;
    std::size_t Size = 0;
};

/// Builds the format of a screen, its stream compacted, in a buffer that the next build reuses.
/// The headings at the end of the form's children that the painting reached stay there, in the
/// order in which they were painted; the others leave the model. A screen whose format does not
/// fit the buffer, whose form has no width, or whose repetitions come to too many records gives
/// none, one line on standard error that names the form, and keeps its headings.
McsBuffer DpsToMcs(List& screen);

/// As DpsToMcs, but with the stream as it was before compaction.
McsBuffer DpsToMcsUncompacted(List& screen);

/// Builds the format of a screen and writes it to a file. False when the file cannot be opened
/// (the system error text for the path is printed and nothing is built) or no format could be
/// built; a file that was there then keeps its contents, and none is made.
bool McsFormatWrite(List& screen, const std::string& path);

} // namespace grolof
