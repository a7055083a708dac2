// Takes any bytes as an MCS file, as an item stream, and as a screen definition file: the first
// two are played, the stream is compacted in both formulations, which must agree, and the screens
// of the last are built and played.
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "mcs/big_endian.h"
#include "mcs/compaction.h"
#include "mcs/dpsmcs.h"
#include "mcs/format.h"
#include "mcs/plain_compaction.h"
#include "mcs/player.h"
#include "mcs/rendering.h"
#include "memory_file.h"
#include "screendef/reader.h"
#include "target.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// Plays and paints; an error must lie in the file.
void Play(std::span<const std::uint8_t> file) {
    grolof::PlayedScreen screen;
    const auto error = grolof::PlayMcs(file, screen);
    Require(!error || error->Offset <= file.size());
    grolof::RenderScreen(screen);
}

// A whole buffer with a header that is in order, and the bytes as its stream.
Bytes BufferWith(std::span<const std::uint8_t> stream) {
    Bytes buffer(grolof::kMcsBufferSize);
    buffer[grolof::kMcsMark] = grolof::kMcsMarkByte;
    buffer[grolof::kMcsColon] = grolof::kMcsColonByte;
    buffer[grolof::kMcsOne] = grolof::kMcsOneByte;
    buffer[grolof::kMcsEndMark] = grolof::kMcsEndMarkByte;
    std::copy(stream.begin(), stream.end(), buffer.begin() + grolof::kMcsHeaderSize);
    grolof::Put16(&buffer[grolof::kMcsStreamLength], static_cast<std::int64_t>(stream.size()));
    return buffer;
}

void Compact(std::span<const std::uint8_t> stream) {
    Bytes buffer = BufferWith(stream);
    Play(std::span(buffer).first(grolof::kMcsHeaderSize + stream.size()));
    grolof::testing_support::PlainStream plain{
        Bytes(buffer.begin() + grolof::kMcsHeaderSize, buffer.end()), stream.size()};
    grolof::testing_support::PlainMergeSkips(plain);
    grolof::testing_support::PlainFoldRows(plain);
    grolof::testing_support::PlainFoldRuns(plain);
    const std::size_t length = grolof::CompactMcs(buffer);
    Require(length == plain.Length);
    Require(
        std::equal(plain.Area.begin(), plain.Area.end(), buffer.begin() + grolof::kMcsHeaderSize));
    Play(std::span(buffer).first(grolof::kMcsHeaderSize + length));
}

void Build(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file;
    file.Fill(bytes, size);
    const grolof::RecordList forms = grolof::LoadScreenDefinition(file.Path());
    const grolof::McsBuffer buffer = grolof::DpsToMcs(*forms);
    if (buffer.Data != nullptr)
        Play({buffer.Data, buffer.Size});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::span<const std::uint8_t> all(bytes, size);
    Play(all);
    Compact(all.first(std::min(size, grolof::kMcsBufferSize - grolof::kMcsHeaderSize)));
    Build(bytes, size);
    return 0;
}
