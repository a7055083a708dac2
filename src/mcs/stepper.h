// The item length rule: where the next item of a stream starts. It stands here once; the
// compaction and the player both step by it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "mcs/format.h"

namespace grolof {

/// A byte of a stream; 0 behind its last, so that an item that is cut short can be looked at.
inline std::uint8_t ByteAt(std::span<const std::uint8_t> stream, std::size_t at) {
    return at < stream.size() ? stream[at] : std::uint8_t{0};
}

/// True when a first byte is that of a skip.
constexpr bool IsSkip(std::uint8_t b0) {
    return (b0 & kMcsKindMask) == kMcsSkip;
}

/// True when a first byte is that of an item of a length or count, with B1 and B2.
constexpr bool IsHeaded(std::uint8_t b0) {
    return b0 <= kMcsCountMask;
}

/// True when an item is a continuation, to which the item behind it is chained.
constexpr bool IsContinuation(std::uint8_t b0, std::uint8_t b1) {
    return IsHeaded(b0) && (b1 & kMcsControlMask) == kMcsContinuation;
}

/// Length of a control item of count n.
constexpr std::size_t ControlLength(std::uint8_t b1, std::size_t n) {
    switch (b1 & kMcsControlMask) {
    case kMcsConstantText:
        return kMcsItemHead + n;
    case kMcsTableItem:
        return n != 0 ? kMcsItemHead + n : kMcsTableItemLength;
    case kMcsUnknownSystemValue:
        return n != 0 ? kMcsItemHead + 1 : kMcsItemHead;
    default:
        return kMcsItemHead;
    }
}

/// Length of a field item of n columns, continuations in front of it not counted.
constexpr std::size_t FieldLength(std::uint8_t b1, std::uint8_t b2, std::size_t n) {
    const std::size_t text = (b2 & kMcsInitialText) != 0 ? n : 0;
    switch (b1 & kMcsTypeMask) {
    case kMcsBothCases:
    case kMcsAlphanumeric:
    case kMcsAlphabetic:
    case kMcsBothCasesRight:
    case kMcsAlphanumericRight:
    case kMcsAlphabeticRight:
    case kMcsLeadingZerosJustified:
    case kMcsLeadingZeros:
    case kMcsBlankWhenZero:
    case kMcsBlankWhenZeroJustified:
        return kMcsItemHead + text;
    case kMcsEdited:
        return kMcsEditedHead + n + text;
    default:
        return kMcsItemHead;
    }
}

/// Where the item behind a field item starts. Continuations that follow one another add 3 to
/// the position and their count to the columns of the item that ends their chain.
inline std::size_t NextAfterField(std::span<const std::uint8_t> stream, std::size_t at) {
    std::size_t n = 0;
    while (IsContinuation(ByteAt(stream, at), ByteAt(stream, at + 1))) {
        n += stream[at] & kMcsCountMask;
        at += kMcsItemHead;
    }
    n += ByteAt(stream, at) & kMcsCountMask;
    return at + FieldLength(ByteAt(stream, at + 1), ByteAt(stream, at + 2), n);
}

/// Where the item behind the one at a position starts. The answer lies behind the end of the
/// stream when the item is cut short there; nothing outside the stream is read.
inline std::size_t NextItem(std::span<const std::uint8_t> stream, std::size_t at) {
    const std::uint8_t b0 = ByteAt(stream, at);
    if (IsSkip(b0))
        return at + 1;
    if (!IsHeaded(b0))
        return at + 4;
    const std::uint8_t b1 = ByteAt(stream, at + 1);
    if ((b1 & kMcsControl) != 0)
        return at + ControlLength(b1, b0 & kMcsCountMask);
    return NextAfterField(stream, at);
}

} // namespace grolof
