// Speed of the map reader, in bytes of source.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>

#include "bms/parser.h"
#include "bms/reader.h"
#include "temporary_file.h"

namespace grolof {
namespace {

// The example map sets, one behind the other.
std::string Examples() {
    std::string text;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES_DIRECTORY)) {
        if (entry.path().extension() != ".bms")
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        text.append(std::istreambuf_iterator<char>(file), {});
    }
    return text;
}

void ReadMapSet(benchmark::State& state) {
    const TemporaryFile source;
    source.Fill(Examples(), state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(BmsReadMapSet(source.Path(), 0));
    state.SetBytesProcessed(state.iterations() * source.Size());
}
BENCHMARK(ReadMapSet)->Arg(1)->Arg(100);

// Only the joining of lines to statements.
void ReadMapStatements(benchmark::State& state) {
    const TemporaryFile source;
    source.Fill(Examples(), state.range(0));
    for (auto _ : state) {
        BmsOpen(source.Path(), 0);
        while (BmsReadStatement())
            benchmark::DoNotOptimize(s_bms.Statement);
    }
    state.SetBytesProcessed(state.iterations() * source.Size());
}
BENCHMARK(ReadMapStatements)->Arg(1)->Arg(100);

} // namespace
} // namespace grolof
