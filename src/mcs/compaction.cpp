#include "mcs/compaction.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "mcs/big_endian.h"
#include "mcs/format.h"
#include "mcs/stepper.h"

namespace grolof {

namespace {

// A stream and the room behind it. Positions count from the first item.
//
// The passes look at the room, not just at the stream: an item may be cut short by the end of
// the stream, and a block that is compared may reach behind it. What stands there is as a rule
// 0, since a build starts from a cleared buffer and every deletion clears what it frees; and
// zeros read as items without width or text. So a fold whose last copy is completed by such
// zeros plays as before. Behind the room itself nothing is ever equal to anything.
struct ItemStream {
    std::uint8_t* Header;
    std::span<std::uint8_t> Room;
    std::size_t Length;
};

ItemStream StreamOf(std::span<std::uint8_t> buffer) {
    const std::span<std::uint8_t> room = buffer.subspan(kMcsHeaderSize);
    const int length = std::max<int>(0, Get16(&buffer[kMcsStreamLength]));
    return {buffer.data(), room, std::min(static_cast<std::size_t>(length), room.size())};
}

void SetLength(ItemStream& stream, std::size_t length) {
    stream.Length = length;
    Put16(stream.Header + kMcsStreamLength, static_cast<std::int64_t>(length));
}

// Removes the bytes from a up to, not including, b. When b is not inside the stream, the stream
// then ends at a, even where that is a byte or two further than it reached: a repeat item that
// took the place of the last items belongs to it.
void Delete(ItemStream& stream, std::size_t a, std::size_t b) {
    const auto room = stream.Room.begin();
    const auto old = static_cast<std::ptrdiff_t>(stream.Length);
    std::size_t length = a;
    if (b < stream.Length) {
        std::memmove(&stream.Room[a], &stream.Room[b], stream.Length - b);
        length = a + (stream.Length - b);
    }
    if (length < stream.Length)
        std::fill(room + static_cast<std::ptrdiff_t>(length), room + old, std::uint8_t{0});
    SetLength(stream, length);
}

std::uint32_t FourBytes(const std::uint8_t* bytes) {
    std::uint32_t four;
    std::memcpy(&four, bytes, sizeof four);
    return four;
}

// True when the L bytes at a and at b are the same; L is at least 4. The first and the last four
// are looked at by themselves because they tell nearly all unequal runs apart.
bool SameBytes(const ItemStream& stream, std::size_t a, std::size_t b, std::size_t L) {
    if (b + L > stream.Room.size())
        return false;
    const std::uint8_t* left = &stream.Room[a];
    const std::uint8_t* right = &stream.Room[b];
    return FourBytes(left) == FourBytes(right) &&
           FourBytes(left + L - 4) == FourBytes(right + L - 4) && std::memcmp(left, right, L) == 0;
}

// Copies of the block of L bytes at a position, itself and the one behind it included.
std::size_t CountCopies(const ItemStream& stream, std::size_t at, std::size_t L) {
    std::size_t count = 2;
    while (SameBytes(stream, at, at + count * L, L))
        ++count;
    return std::min<std::size_t>(count, kMcsMostRepeats + 1);
}

bool IsLineItem(const ItemStream& stream, std::size_t at) {
    return !IsSkip(ByteAt(stream.Room, at)) &&
           (ByteAt(stream.Room, at + 1) & kMcsControlMask) == kMcsLine;
}

// The position behind the first line item at or behind `at`, the stream length without one.
std::size_t LineEnd(const ItemStream& stream, std::size_t at) {
    for (; at < stream.Length; at = NextItem(stream.Room, at)) {
        if (IsLineItem(stream, at))
            return at + kMcsItemHead;
    }
    return stream.Length;
}

// Folds the copies of the row [r, a) that follow it into the count of its line item. False when
// the next row is not its copy. Rows are compared with their line items, so rows with different
// counts stay apart; a count that two equal rows already have is overwritten, and what they
// repeated is lost (256 equal rows and more).
bool FoldRow(ItemStream& stream, std::size_t r, std::size_t a) {
    const std::size_t L = a - r;
    if (L <= kMcsItemHead || LineEnd(stream, a) - a != L || !SameBytes(stream, r, a, L))
        return false;
    const std::size_t count = CountCopies(stream, r, L);
    stream.Room[a - kMcsItemHead] = static_cast<std::uint8_t>(count - 1);
    Delete(stream, a, r + count * L);
    return true;
}

void MergeSkipPairs(ItemStream& stream) {
    // The next position is fixed before the merge: each skip takes in at most one neighbour, and
    // of three skips 10, 20, 30 the result 30, 30 stays.
    for (std::size_t p = 0, q = 0; p < stream.Length; p = q) {
        q = NextItem(stream.Room, p);
        const std::uint8_t first = stream.Room[p];
        const std::uint8_t second = ByteAt(stream.Room, p + 1);
        if (!IsSkip(first) || !IsSkip(second))
            continue;
        const int sum = (first & kMcsColumnsMask) + (second & kMcsColumnsMask);
        if (sum >= kMcsLongestSkip)
            continue;
        stream.Room[p] = static_cast<std::uint8_t>(kMcsSkip | sum);
        Delete(stream, p + 1, p + 2);
    }
}

void FoldEqualRows(ItemStream& stream) {
    // After a fold the scan is to start again at the first row. All rows up to the one before
    // the folded row would find what they found already, so it starts again at that one.
    std::vector<std::size_t> before;
    std::size_t r = 0;
    while (r < stream.Length) {
        const std::size_t a = LineEnd(stream, r);
        if (!FoldRow(stream, r, a)) {
            before.push_back(r);
            r = a;
        } else if (!before.empty()) {
            r = before.back();
            before.pop_back();
        }
    }
}

// Puts a repeat item in place of the copies of the run of L bytes at p; where it ends.
std::size_t FoldRun(ItemStream& stream, std::size_t p, std::size_t L) {
    const std::size_t count = CountCopies(stream, p, L);
    const std::size_t q = p + L;
    stream.Room[q] = static_cast<std::uint8_t>(count - 1);
    stream.Room[q + 1] = kMcsRepeat;
    stream.Room[q + 2] = static_cast<std::uint8_t>(L);
    Delete(stream, q + kMcsItemHead, p + count * L);
    return q + kMcsItemHead;
}

// Folds the shortest run that starts at p and is repeated at once; where the pass goes on. The
// run grows item by item: [p, q) is the run, r the item behind the one at q.
std::size_t FoldRunAt(ItemStream& stream, std::size_t p) {
    const std::size_t next = NextItem(stream.Room, p);
    std::size_t q = next;
    std::size_t r = NextItem(stream.Room, q);
    for (std::size_t L = q - p; L <= kMcsLongestRun; L = q - p) {
        if (L >= kMcsShortestRun && SameBytes(stream, p, q, L))
            return FoldRun(stream, p, L);
        const std::size_t s = NextItem(stream.Room, r);
        if (s >= stream.Length)
            break;
        q = r;
        r = s;
    }
    return next;
}

void FoldEqualRuns(ItemStream& stream) {
    for (std::size_t p = 0; p < stream.Length;)
        p = FoldRunAt(stream, p);
}

template <class Pass>
std::size_t Apply(std::span<std::uint8_t> buffer, Pass pass) {
    if (buffer.size() < kMcsHeaderSize)
        return 0;
    ItemStream stream = StreamOf(buffer);
    pass(stream);
    return stream.Length;
}

} // namespace

std::size_t MergeSkips(std::span<std::uint8_t> buffer) {
    return Apply(buffer, MergeSkipPairs);
}

std::size_t FoldRows(std::span<std::uint8_t> buffer) {
    return Apply(buffer, FoldEqualRows);
}

std::size_t FoldRuns(std::span<std::uint8_t> buffer) {
    return Apply(buffer, FoldEqualRuns);
}

std::size_t CompactMcs(std::span<std::uint8_t> buffer) {
    return Apply(buffer, [](ItemStream& stream) {
        MergeSkipPairs(stream);
        FoldEqualRows(stream);
        FoldEqualRuns(stream);
    });
}

} // namespace grolof
