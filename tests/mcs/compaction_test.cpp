// The compaction passes: their rules one by one, and both formulations of them held against
// each other.
#include "mcs/compaction.h"

#include <functional>
#include <vector>

#include <gtest/gtest.h>

#include "common/random_model.h"
#include "mcs/big_endian.h"
#include "mcs/mcs_testing.h"
#include "mcs/plain_compaction.h"
#include "mcs/player.h"
#include "mcs/stepper.h"

namespace grolof {
namespace {

using testing_support::Bytes;
using testing_support::FromHex;
using testing_support::Hex;
using testing_support::PlainStream;
using testing_support::RandomNumbers;

using Pass = std::size_t (*)(std::span<std::uint8_t>);

// A whole area with a stream in it; only what the passes read is in the header.
Bytes BufferWith(const Bytes& stream) {
    Bytes buffer(kMcsBufferSize);
    std::copy(stream.begin(), stream.end(), buffer.begin() + kMcsHeaderSize);
    Put16(&buffer[38], static_cast<std::int64_t>(stream.size()));
    return buffer;
}

std::string After(Pass pass, const std::string& hex) {
    Bytes buffer = BufferWith(FromHex(hex));
    const std::size_t length = pass(buffer);
    EXPECT_EQ(Get16(&buffer[38]), static_cast<int>(length));
    for (std::size_t i = kMcsHeaderSize + length; i < buffer.size(); ++i)
        EXPECT_EQ(buffer[i], 0) << "freed bytes are cleared, at " << i;
    return Hex(std::span(buffer).subspan(kMcsHeaderSize, length));
}

std::string Times(int count, const std::string& hex) {
    std::string all;
    for (int i = 0; i < count; ++i)
        all += hex + " ";
    return all;
}

std::string Trimmed(std::string hex) {
    while (!hex.empty() && hex.back() == ' ')
        hex.pop_back();
    return hex;
}

const std::string kHeadingA = "01 93 02 41";
const std::string kLine = "00 14 00";
const std::string kRowA = kHeadingA + " " + kLine; // 7 bytes

TEST(MergeSkips, JoinsTwoThatStayBelow63) {
    EXPECT_EQ(After(MergeSkips, "C1 FD"), "FE");    // 1 + 61 = 62
    EXPECT_EQ(After(MergeSkips, "C2 FD"), "C2 FD"); // 2 + 61 = 63: apart
    EXPECT_EQ(After(MergeSkips, "FF C1"), "FF C1"); // 63 + 1
    EXPECT_EQ(After(MergeSkips, "C0 C0"), "C0");
}

TEST(MergeSkips, TakesInOneNeighbourOnly) {
    // 10, 20, 30: 10 + 20 become 30 and the pass goes on at the last, which has no neighbour;
    // 30 + 30 = 60 would fit and stays apart.
    EXPECT_EQ(After(MergeSkips, "CA D4 DE"), "DE DE");
    EXPECT_EQ(After(MergeSkips, "C1 C1 C1 C1"), "C2 C2");
    EXPECT_EQ(After(MergeSkips, "C1 C1 C1 C1 C1"), "C2 C2 C1");
}

TEST(MergeSkips, LooksAtItemsOnly) {
    // The text of a heading may hold bytes that look like skips.
    EXPECT_EQ(After(MergeSkips, "02 93 02 C1 C2 C3 C4"), "02 93 02 C1 C2 C7");
    EXPECT_EQ(After(MergeSkips, "81 C1 C1 C1 C1 C1"), "81 C1 C1 C1 C2");
}

TEST(FoldRows, CountsCopiesInTheLineItem) {
    EXPECT_EQ(After(FoldRows, Times(2, kRowA)), "01 93 02 41 01 14 00");
    EXPECT_EQ(After(FoldRows, Times(3, kRowA)), "01 93 02 41 02 14 00");
    EXPECT_EQ(After(FoldRows, kRowA), kRowA);
}

TEST(FoldRows, LeavesEmptyRowsAlone) {
    EXPECT_EQ(After(FoldRows, Times(5, kLine)), Trimmed(Times(5, kLine)));
}

TEST(FoldRows, ComparesRowsWithTheirCounts) {
    const std::string once = kHeadingA + " 00 14 00 " + kHeadingA + " 01 14 00";
    EXPECT_EQ(After(FoldRows, once), once);
}

TEST(FoldRows, NeedsAWholeEqualRow) {
    const std::string longer = kRowA + " C1 " + kRowA;
    EXPECT_EQ(After(FoldRows, longer), longer);
    const std::string other = kRowA + " 01 93 02 42 " + kLine;
    EXPECT_EQ(After(FoldRows, other), other);
    // A last row without a line item is no copy.
    const std::string open = kRowA + " " + kHeadingA;
    EXPECT_EQ(After(FoldRows, open), open);
}

TEST(FoldRows, FindsAllGroupsOfAScreen) {
    const std::string rowB = "01 93 02 42 00 14 00";
    EXPECT_EQ(After(FoldRows, Times(2, kRowA) + Times(3, rowB) + Times(2, kRowA)),
              "01 93 02 41 01 14 00 01 93 02 42 02 14 00 01 93 02 41 01 14 00");
}

TEST(FoldRows, StopsAt128Copies) {
    EXPECT_EQ(After(FoldRows, Times(127, kRowA)), "01 93 02 41 7E 14 00");
    EXPECT_EQ(After(FoldRows, Times(128, kRowA)), "01 93 02 41 7F 14 00");
    EXPECT_EQ(After(FoldRows, Times(129, kRowA)), "01 93 02 41 7F 14 00 " + kRowA);
    EXPECT_EQ(After(FoldRows, Times(131, kRowA)), "01 93 02 41 7F 14 00 01 93 02 41 02 14 00");
}

// A count that equal rows already carry is overwritten: the only way in which compaction loses
// rows. 256 equal rows become two times 128, and those two rows one that is shown twice.
TEST(FoldRows, LosesRowsOfEqualCounts) {
    EXPECT_EQ(After(FoldRows, Times(2, kHeadingA + " 05 14 00")), "01 93 02 41 01 14 00");
    EXPECT_EQ(After(FoldRows, Times(255, kRowA)), "01 93 02 41 7F 14 00 01 93 02 41 7E 14 00");
    EXPECT_EQ(After(FoldRows, Times(256, kRowA)), "01 93 02 41 01 14 00");
}

TEST(FoldRows, GoesBackAfterAFold) {
    // The second and third row fold into one that equals the first: a new scan folds them too.
    EXPECT_EQ(After(FoldRows, kHeadingA + " 01 14 00 " + Times(2, kRowA)), "01 93 02 41 01 14 00");
}

TEST(FoldRuns, PutsARepeatItemForTheCopies) {
    // Run of 4 bytes, three times: played twice more.
    EXPECT_EQ(After(FoldRuns, Times(3, kHeadingA)), "01 93 02 41 02 15 04");
    // Two items of 4 and 1 bytes.
    EXPECT_EQ(After(FoldRuns, Times(2, "01 93 02 41 C1")), "01 93 02 41 C1 01 15 05");
}

TEST(FoldRuns, NeedsFourBytes) {
    EXPECT_EQ(After(FoldRuns, "C1 C1"), "C1 C1");
    EXPECT_EQ(After(FoldRuns, Times(2, "01 02 02")), "01 02 02 01 02 02"); // 3 + 3
    EXPECT_EQ(After(FoldRuns, Times(4, "C1 C2")), "C1 C2 C1 C2 01 15 04");
}

TEST(FoldRuns, TakesTheShortestRunFirst) {
    // AAAA: the run A of 4 bytes, not AA of 8.
    EXPECT_EQ(After(FoldRuns, Times(4, kHeadingA)), "01 93 02 41 03 15 04");
    // Single skips: runs grow skip by skip to four of them.
    EXPECT_EQ(After(FoldRuns, Trimmed(Times(9, "FF"))), "FF FF FF FF 01 15 04 FF");
}

TEST(FoldRuns, TakesRunsUpTo254Bytes) {
    const auto heading = [](int n) {
        std::string hex = Hex(Bytes{static_cast<std::uint8_t>(n)}) + " 93 02";
        for (int i = 0; i < n; ++i)
            hex += " " + Hex(Bytes{static_cast<std::uint8_t>(0x20 + i % 90)});
        return hex;
    };
    // 127 + 3 and 121 + 3 bytes: 254.
    const std::string run254 = heading(127) + " " + heading(121);
    EXPECT_EQ(After(FoldRuns, run254 + " " + run254), run254 + " 01 15 FE");
    const std::string run255 = heading(127) + " " + heading(122);
    EXPECT_EQ(After(FoldRuns, run255 + " " + run255), run255 + " " + run255);
}

TEST(FoldRuns, FoldsUpToTheEnd) {
    EXPECT_EQ(After(FoldRuns, "C1 01 02 02 C1 01 02 02"), "C1 01 02 02 01 15 04");
    EXPECT_EQ(After(FoldRuns, "C1 01 02 02 C1 01 02 02 C5"), "C1 01 02 02 01 15 04 C5");
}

TEST(FoldRuns, StopsAt128Copies) {
    EXPECT_EQ(After(FoldRuns, Times(128, kHeadingA)), "01 93 02 41 7F 15 04");
    EXPECT_EQ(After(FoldRuns, Times(130, kHeadingA)), "01 93 02 41 7F 15 04 01 93 02 41 01 15 04");
}

TEST(FoldRuns, GoesOnBehindTheRepeatItem) {
    const std::string b = "01 93 02 42";
    EXPECT_EQ(After(FoldRuns, Times(2, kHeadingA) + Times(2, b)),
              "01 93 02 41 01 15 04 01 93 02 42 01 15 04");
}

TEST(FoldRuns, MayCompleteALastCopyWithClearedBytes) {
    // Zeros behind the stream read as an item without width or text, as they do inside it. The
    // run of 5 bytes is compared with the last two and three zeros; the repeat item then reaches
    // one byte further than the stream did.
    EXPECT_EQ(After(FoldRuns, "C1 C2 00 00 00 C1 C2"), "C1 C2 00 00 00 01 15 05");
    // A copy whose first item ends with the stream is not looked at.
    EXPECT_EQ(After(FoldRuns, "C1 00 00 00 C1"), "C1 00 00 00 C1");
}

TEST(Compaction, OfAnEmptyStreamDoesNothing) {
    for (const Pass pass : {MergeSkips, FoldRows, FoldRuns, CompactMcs})
        EXPECT_EQ(After(pass, ""), "");
}

TEST(Compaction, RunsThePassesInOrder) {
    // Skips 1 + 2 merge to 3 in both rows, the rows then are equal and fold; the two headings
    // behind them fold as a run.
    EXPECT_EQ(After(CompactMcs, "C1 C2 01 93 02 41 00 14 00 C3 01 93 02 41 00 14 00 "
                                "01 93 02 42 01 93 02 42"),
              "C3 01 93 02 41 01 14 00 01 93 02 42 01 15 04");
}

TEST(Compaction, TouchesNothingElse) {
    Bytes buffer = BufferWith(FromHex(Times(3, kRowA)));
    for (std::size_t i = 0; i < kMcsHeaderSize; ++i) {
        if (i != 38 && i != 39)
            buffer[i] = static_cast<std::uint8_t>(0xA0 + i);
    }
    EXPECT_EQ(CompactMcs(buffer), 7U);
    for (std::size_t i = 0; i < kMcsHeaderSize; ++i) {
        if (i != 38 && i != 39) {
            EXPECT_EQ(buffer[i], 0xA0 + i);
        }
    }
}

TEST(Compaction, DistrustsTheLength) {
    Bytes small(10);
    EXPECT_EQ(CompactMcs(small), 0U);
    Bytes buffer(60); // twelve bytes of stream
    Put16(&buffer[38], 30000);
    EXPECT_LE(CompactMcs(buffer), 12U);
    Put16(&buffer[38], -5);
    EXPECT_EQ(CompactMcs(buffer), 0U);
}

// --- Against the plain formulation ------------------------------------------------------------

struct Formulations {
    Pass Fast;
    void (*Plain)(PlainStream&);
};

const std::vector<Formulations> kPasses = {
    {MergeSkips, testing_support::PlainMergeSkips},
    {FoldRows, testing_support::PlainFoldRows},
    {FoldRuns, testing_support::PlainFoldRuns},
    {CompactMcs,
     [](PlainStream& stream) {
         testing_support::PlainMergeSkips(stream);
         testing_support::PlainFoldRows(stream);
         testing_support::PlainFoldRuns(stream);
     }},
};

// An area of so many bytes in which a stream stands, whatever follows it.
::testing::AssertionResult Agree(const Bytes& area, std::size_t length) {
    for (std::size_t pass = 0; pass < kPasses.size(); ++pass) {
        Bytes buffer(kMcsHeaderSize);
        buffer.insert(buffer.end(), area.begin(), area.end());
        Put16(&buffer[38], static_cast<std::int64_t>(length));
        PlainStream plain{area, length};
        const std::size_t fast = kPasses[pass].Fast(buffer);
        kPasses[pass].Plain(plain);
        if (fast != plain.Length ||
            !std::equal(plain.Area.begin(), plain.Area.end(), buffer.begin() + kMcsHeaderSize))
            return ::testing::AssertionFailure()
                   << "pass " << pass << " of " << Hex(std::span(area).first(length)) << " gives "
                   << Hex(std::span(buffer).subspan(kMcsHeaderSize, fast)) << ", the plain one "
                   << Hex(std::span(plain.Area).first(plain.Length));
    }
    return ::testing::AssertionSuccess();
}

const std::vector<Bytes> kAlphabet = {
    FromHex("C1"),          // skips that merge
    FromHex("DE"),          //
    FromHex("FF"),          // and one that does not
    FromHex("00 14 00"),    // line items with two counts
    FromHex("01 14 00"),    //
    FromHex("01 93 02 41"), // a run by itself
    FromHex("02 02 02"),    // a field
    FromHex("00 00 00"),    // what cleared bytes read as
    FromHex("81 14 00 14"), // a four-byte item that looks like a line item
    FromHex("01 03 00"),    // a continuation, with whatever comes next
};

TEST(Compaction, AgreesOnAllStreamsOfUpToFiveItems) {
    Bytes area(64);
    std::size_t streams = 0;
    const std::function<bool(std::size_t, int)> extend = [&](std::size_t length, int items) {
        ++streams;
        if (!Agree(area, length)) {
            ADD_FAILURE() << Agree(area, length).message();
            return false;
        }
        for (std::size_t i = 0; items > 0 && i < kAlphabet.size(); ++i) {
            const Bytes& item = kAlphabet[i];
            std::copy(item.begin(), item.end(), area.begin() + static_cast<std::ptrdiff_t>(length));
            if (!extend(length + item.size(), items - 1))
                return false;
            std::fill(area.begin() + static_cast<std::ptrdiff_t>(length), area.end(),
                      std::uint8_t{0});
        }
        return true;
    };
    extend(0, 5);
    EXPECT_EQ(streams, 111'111U); // 1 + 10 + ... + 10^5
}

// A long stream with many repetitions in it: pieces of what is there already are copied.
Bytes RandomStream(RandomNumbers& random, std::size_t size) {
    Bytes stream;
    while (stream.size() < size) {
        const auto here = static_cast<std::int32_t>(stream.size());
        if (here > 0 && random.OneIn(3)) {
            const auto from = random.Between(std::max(0, here - 60), here - 1);
            for (auto copies = random.Between(1, 4); copies > 0; --copies) {
                for (auto i = from; i < here; ++i)
                    stream.push_back(stream[static_cast<std::size_t>(i)]);
            }
        } else {
            const auto last = static_cast<std::int32_t>(kAlphabet.size()) - 1;
            const Bytes& item = kAlphabet[static_cast<std::size_t>(random.Between(0, last))];
            stream.insert(stream.end(), item.begin(), item.end());
        }
    }
    stream.resize(size);
    return stream;
}

TEST(Compaction, AgreesOnRandomStreamsOfAllSizes) {
    RandomNumbers random(31);
    for (int i = 0; i < 400; ++i) {
        const auto size = static_cast<std::size_t>(random.Between(0, i < 390 ? 500 : 5072));
        Bytes area = RandomStream(random, size);
        area.resize(kMcsBufferSize - kMcsHeaderSize);
        ASSERT_TRUE(Agree(area, size)) << i;
    }
}

TEST(Compaction, AgreesOnAnyBytes) {
    // Whatever stands in the stream and behind it, up to the last byte of the area.
    RandomNumbers random(32);
    for (int i = 0; i < 3000; ++i) {
        Bytes area(static_cast<std::size_t>(random.Between(0, 120)));
        const int kinds = random.Between(1, 255);
        for (std::uint8_t& byte : area)
            byte = static_cast<std::uint8_t>(random.Between(0, kinds) * 37);
        const auto length = random.Between(0, static_cast<std::int32_t>(area.size()));
        ASSERT_TRUE(Agree(area, static_cast<std::size_t>(length))) << i;
    }
}

TEST(Compaction, AgreesOnTheLongestStreams) {
    const std::size_t size = kMcsBufferSize - kMcsHeaderSize;
    for (const std::string& item : {std::string("FF"), std::string("C0"), kRowA, kLine,
                                    std::string("C1 00 14 00"), std::string("00")}) {
        const Bytes piece = FromHex(item);
        Bytes area;
        while (area.size() + piece.size() <= size)
            area.insert(area.end(), piece.begin(), piece.end());
        const std::size_t length = area.size();
        area.resize(size);
        ASSERT_TRUE(Agree(area, length)) << item;
    }
}

} // namespace
} // namespace grolof
