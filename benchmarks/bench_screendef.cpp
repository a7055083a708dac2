// Speed of the screen definition file, in bytes of its text.
#include <cstdint>
#include <cstdlib>

#include <benchmark/benchmark.h>

#include "common/random_model.h"
#include "screendef/reader.h"
#include "screendef/writer.h"
#include "temporary_file.h"

namespace grolof {
namespace {

RecordList ManyScreens(std::int64_t screens) {
    testing_support::RandomShape shape;
    shape.MostRecords = 30;
    testing_support::RandomModel model(shape);
    RecordList forms(ListCreate());
    for (std::int64_t i = 0; i < screens; ++i)
        model.AppendScreen(*forms);
    return forms;
}

void WriteScreenDefinition(benchmark::State& state) {
    const TemporaryFile file;
    const RecordList forms = ManyScreens(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(SaveScreenDefinition(*forms, file.Path()));
    state.SetBytesProcessed(state.iterations() * file.Size());
}
BENCHMARK(WriteScreenDefinition)->Arg(1)->Arg(100);

void ReadScreenDefinition(benchmark::State& state) {
    const TemporaryFile file;
    if (!SaveScreenDefinition(*ManyScreens(state.range(0)), file.Path()))
        std::abort();
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadScreenDefinition(file.Path()));
    state.SetBytesProcessed(state.iterations() * file.Size());
}
BENCHMARK(ReadScreenDefinition)->Arg(1)->Arg(100);

} // namespace
} // namespace grolof
