// Speed of the MCS format: an ordinary screen, and the streams that cost the compaction most.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "common/random_model.h"
#include "mcs/big_endian.h"
#include "mcs/compaction.h"
#include "mcs/dpsmcs.h"
#include "mcs/format.h"
#include "mcs/player.h"
#include "model/records.h"

namespace grolof {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStreamSize = kMcsBufferSize - kMcsHeaderSize;

// 30 fields and 40 headings on 20 rows, the headings at the end.
RecordList OrdinaryScreen() {
    RecordList screen(ListCreate());
    Form* form = CreateForm();
    form->Name = "ORDINARY";
    ListAppend(*screen, form);
    List& children = ChildrenOf(*form);
    for (int i = 0; i < 30; ++i) {
        Field* field = CreateField();
        field->Row = 3 + i / 2;
        field->Column = 20 + i % 2 * 40;
        field->Width = 6 + i % 9;
        field->DataType = 1 + i % 3;
        field->Decimals = i % 3;
        field->InsertDelimiters = i % 2;
        if (i % 4 == 0)
            field->InitialValue = "TEXT";
        ListAppend(children, field);
    }
    for (int i = 0; i < 40; ++i) {
        Heading* heading = CreateHeading();
        heading->Row = 2 + i / 2;
        heading->Column = 5 + i % 2 * 40;
        heading->InitialValue = "HEADING " + std::to_string(i);
        heading->Width = static_cast<std::int32_t>(heading->InitialValue->size());
        ListAppend(children, heading);
    }
    return screen;
}

void SetItems(benchmark::State& state, std::int64_t items, std::size_t bytes) {
    state.SetItemsProcessed(state.iterations() * items);
    state.counters["bytes"] = static_cast<double>(bytes);
}

void BuildOrdinaryScreen(benchmark::State& state) {
    const RecordList screen = OrdinaryScreen();
    std::size_t size = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(size = DpsToMcsUncompacted(*screen).Size);
    SetItems(state, 70, size);
}
BENCHMARK(BuildOrdinaryScreen);

void BuildAndCompactOrdinaryScreen(benchmark::State& state) {
    const RecordList screen = OrdinaryScreen();
    std::size_t size = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(size = DpsToMcs(*screen).Size);
    SetItems(state, 70, size);
}
BENCHMARK(BuildAndCompactOrdinaryScreen);

void PlayOrdinaryScreen(benchmark::State& state) {
    const RecordList screen = OrdinaryScreen();
    const McsBuffer buffer = DpsToMcs(*screen);
    PlayedScreen played;
    for (auto _ : state)
        benchmark::DoNotOptimize(PlayMcs({buffer.Data, buffer.Size}, played));
    SetItems(state, 70, buffer.Size);
}
BENCHMARK(PlayOrdinaryScreen);

void Append(Bytes& stream, std::initializer_list<int> item) {
    for (const int byte : item)
        stream.push_back(static_cast<std::uint8_t>(byte));
}

// Streams that fill the buffer.
Bytes EqualSkips() { // nothing merges, everything folds
    return Bytes(kStreamSize, 0xFF);
}

Bytes MergingSkips() {
    return Bytes(kStreamSize, 0xC1);
}

Bytes RandomSkips() { // nothing merges, hardly anything folds: every run is tried
    testing_support::RandomNumbers random(5);
    Bytes stream(kStreamSize);
    for (std::uint8_t& byte : stream)
        byte = static_cast<std::uint8_t>(random.Between(0xE0, 0xFF));
    return stream;
}

Bytes TwoSkips() { // as before, with many beginnings of runs that are alike
    testing_support::RandomNumbers random(6);
    Bytes stream(kStreamSize);
    for (std::uint8_t& byte : stream)
        byte = static_cast<std::uint8_t>(random.Between(0xFE, 0xFF));
    return stream;
}

// A word over three letters in which no piece stands twice in a row: its runs are alike for long
// stretches and never fold.
Bytes SquareFreeSkips() {
    std::string word = "a";
    while (word.size() < kStreamSize) {
        std::string next;
        for (const char c : word)
            next += c == 'a' ? "abc" : c == 'b' ? "ac" : "b";
        word = next;
    }
    Bytes stream(kStreamSize);
    std::transform(stream.begin(), stream.end(), word.begin(), stream.begin(),
                   [](std::uint8_t, char c) { return static_cast<std::uint8_t>(0xF0 + c - 'a'); });
    return stream;
}

Bytes RowPairs() { // every second row folds
    Bytes stream;
    for (int i = 0; stream.size() + 8 <= kStreamSize; ++i) {
        Append(stream, {0xE0 + i % 30, 0, 0x14, 0});
        Append(stream, {0xE0 + i % 30, 0, 0x14, 0});
    }
    return stream;
}

Bytes EqualRows() {
    Bytes stream;
    while (stream.size() + 4 <= kStreamSize)
        Append(stream, {0xE0, 0, 0x14, 0});
    return stream;
}

// Rows that fold one after the other towards the front.
Bytes CascadingRows() {
    Bytes stream;
    while (stream.size() + 8 <= kStreamSize)
        Append(stream, {0xE0, 1, 0x14, 0});
    Append(stream, {0xE0, 0, 0x14, 0});
    Append(stream, {0xE0, 0, 0x14, 0});
    return stream;
}

void Compact(benchmark::State& state, Bytes (*make)()) {
    const Bytes stream = make();
    Bytes buffer(kMcsBufferSize);
    std::size_t length = 0;
    for (auto _ : state) {
        std::fill(buffer.begin(), buffer.end(), std::uint8_t{0});
        std::copy(stream.begin(), stream.end(), buffer.begin() + kMcsHeaderSize);
        Put16(&buffer[kMcsStreamLength], static_cast<std::int64_t>(stream.size()));
        benchmark::DoNotOptimize(length = CompactMcs(buffer));
    }
    state.counters["bytes"] = static_cast<double>(length);
}
BENCHMARK_CAPTURE(Compact, EqualSkips, EqualSkips);
BENCHMARK_CAPTURE(Compact, MergingSkips, MergingSkips);
BENCHMARK_CAPTURE(Compact, RandomSkips, RandomSkips);
BENCHMARK_CAPTURE(Compact, TwoSkips, TwoSkips);
BENCHMARK_CAPTURE(Compact, SquareFreeSkips, SquareFreeSkips);
BENCHMARK_CAPTURE(Compact, RowPairs, RowPairs);
BENCHMARK_CAPTURE(Compact, EqualRows, EqualRows);
BENCHMARK_CAPTURE(Compact, CascadingRows, CascadingRows);

} // namespace
} // namespace grolof
