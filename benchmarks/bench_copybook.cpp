// How long the COPY books of a screen take, by number of fields and of repetitions.

#include <cstdint>
#include <string>

#include <benchmark/benchmark.h>

#include "copybook/bms.h"
#include "copybook/dps.h"
#include "model/records.h"

namespace grolof {
namespace {

constexpr const char* kNowhere = "/dev/null";

RecordList FormAlone() {
    RecordList screen(ListCreate());
    Form* form = CreateForm();
    form->Name = "BENCH";
    form->Number = 42;
    ListAppend(*screen, form);
    return screen;
}

void AddFields(List& list, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        Field* field = CreateField();
        field->Name = "FIELD-" + std::to_string(i);
        field->Row = static_cast<std::int32_t>(i / 80 % 24) + 1;
        field->Column = static_cast<std::int32_t>(i % 80) + 1;
        field->Width = 10;
        field->DataType = i % 2 == 0 ? 1 : 3;
        if (i % 5 == 0)
            field->InitialValue = "INITIAL VALUE";
        ListAppend(list, field);
    }
}

void SetEntries(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetComplexityN(state.range(0));
}

void DpsBookOfFields(benchmark::State& state) {
    const RecordList screen = FormAlone();
    AddFields(ChildrenOf(*screen->First->Data), state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(DpsCopyBookWrite(*screen, kNowhere));
    SetEntries(state);
}
BENCHMARK(DpsBookOfFields)->Arg(100)->Arg(300)->Arg(1'000)->Arg(10'000)->Complexity();

void DpsBookOfRepetitions(benchmark::State& state) {
    const RecordList screen = FormAlone();
    Image* lines = CreateImage();
    lines->Type = RecordType::RepeatImage;
    lines->IndexName = "LINE";
    lines->Count = static_cast<std::int32_t>(state.range(0));
    AddFields(ChildrenOf(*lines), 1);
    ListAppend(ChildrenOf(*screen->First->Data), lines);
    for (auto _ : state)
        benchmark::DoNotOptimize(DpsCopyBookWrite(*screen, kNowhere));
    SetEntries(state);
}
BENCHMARK(DpsBookOfRepetitions)->Arg(100)->Arg(1'000)->Arg(10'000)->Complexity();

void DpsInitBookOfFields(benchmark::State& state) {
    const RecordList screen = FormAlone();
    AddFields(ChildrenOf(*screen->First->Data), state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(DpsInitCopyBookWrite(*screen, kNowhere));
    SetEntries(state);
}
BENCHMARK(DpsInitBookOfFields)->Arg(100)->Arg(1'000)->Arg(10'000)->Complexity();

void BmsBookOfFields(benchmark::State& state) {
    const RecordList screen = FormAlone();
    AddFields(*screen, state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(BmsCopyBookWrite(*screen, kNowhere, 1, 0));
    SetEntries(state);
}
BENCHMARK(BmsBookOfFields)->Arg(100)->Arg(1'000)->Arg(10'000)->Complexity();

} // namespace
} // namespace grolof
