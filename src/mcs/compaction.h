// The compaction of an item stream: it is shrunk in place before the file is written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace grolof {

/// Shrinks the item stream behind the header in `buffer`, whose length the header gives, by
/// three passes: short neighbouring skips are merged, rows that repeat are folded into the
/// count of a line item, and runs of items that repeat into a repeat item. Only the stream and
/// its length in the header change; freed bytes become 0. Returns the new stream length.
std::size_t CompactMcs(std::span<std::uint8_t> buffer);

/// The single passes, for who wants to look between them. As CompactMcs.
std::size_t MergeSkips(std::span<std::uint8_t> buffer);
std::size_t FoldRows(std::span<std::uint8_t> buffer);
std::size_t FoldRuns(std::span<std::uint8_t> buffer);

} // namespace grolof
