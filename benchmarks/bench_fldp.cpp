// Speed of the form reader, and of the way from form sources to screen definition files, in bytes
// of source; and of the keyword look-up, in bytes of words.
#include <array>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "fldp/keywords.h"
#include "fldp/lexer.h"
#include "fldp/parser.h"
#include "model/conversion_flags.h"
#include "screendef/writer.h"
#include "temporary_file.h"

namespace grolof {
namespace {

struct Sources {
    std::vector<std::string> Paths;
    std::int64_t Size = 0;

    void Add(const std::string& path) {
        Paths.push_back(path);
        Size += static_cast<std::int64_t>(std::filesystem::file_size(path));
    }
};

// The example forms, a file each: constant text ends the reading of what follows it.
Sources Examples() {
    Sources sources;
    for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES_DIRECTORY))
        if (entry.path().extension() == ".fldp")
            sources.Add(entry.path().string());
    return sources;
}

// One file of many forms of fifty fields each.
Sources ManyForms(const TemporaryFile& file, int forms) {
    std::ostringstream out;
    for (int form = 0; form < forms; ++form) {
        out << "FORM\nNAME = 'F" << form << "'\n";
        for (int field = 1; field <= 50; ++field)
            out << "FIELD\nNAME = 'FIELD-" << field << "'\nPOSITION_IMAGE ROW = " << field % 24
                << " COLUMN = " << field << "\nDIMENSION HEIGHT = 1 WIDTH = 10\n"
                << "GENERAL_EDIT CASE = UPPER &\n  DISPLAY = (BLANK_WHEN_ZERO)\nEND_FIELD\n";
        out << "END_FORM\n";
    }
    file.Fill(out.str());
    Sources sources;
    sources.Add(file.Path());
    return sources;
}

void Read(benchmark::State& state, const Sources& sources) {
    for (auto _ : state)
        for (const std::string& path : sources.Paths)
            benchmark::DoNotOptimize(ParseFldpFile(path, kDefaultConversionFlags));
    state.SetBytesProcessed(state.iterations() * sources.Size);
}

void ReadExampleForms(benchmark::State& state) {
    Read(state, Examples());
}
BENCHMARK(ReadExampleForms);

void ReadManyForms(benchmark::State& state) {
    const TemporaryFile file;
    Read(state, ManyForms(file, static_cast<int>(state.range(0))));
}
BENCHMARK(ReadManyForms)->Arg(1)->Arg(100);

// The main job on the examples: source in, screen definition file out.
void ConvertExampleForms(benchmark::State& state) {
    const TemporaryFile output;
    const Sources sources = Examples();
    for (auto _ : state)
        for (const std::string& path : sources.Paths)
            benchmark::DoNotOptimize(
                SaveScreenDefinition(*ParseFldpFile(path, kDefaultConversionFlags), output.Path()));
    state.SetBytesProcessed(state.iterations() * sources.Size);
}
BENCHMARK(ConvertExampleForms);

// Only the cutting into tokens.
void ReadFormTokens(benchmark::State& state) {
    const TemporaryFile file;
    const Sources sources = ManyForms(file, 100);
    for (auto _ : state) {
        FldpOpen(file.Path());
        while (FldpNextToken() != FldpKind::EndOfInput)
            benchmark::DoNotOptimize(FldpLastToken().Kind);
    }
    state.SetBytesProcessed(state.iterations() * sources.Size);
}
BENCHMARK(ReadFormTokens);

void LookUpFormKeywords(benchmark::State& state) {
    constexpr std::array<std::string_view, 6> kWords = {"ALL",  "field",           "END_STATEMENT",
                                                        "ZERO", "CUSTOMER_NUMBER", "X"};
    std::int64_t size = 0;
    for (const std::string_view word : kWords)
        size += static_cast<std::int64_t>(word.size());
    for (auto _ : state)
        for (const std::string_view word : kWords)
            benchmark::DoNotOptimize(FldpKeywordOf(word));
    state.SetBytesProcessed(state.iterations() * size);
}
BENCHMARK(LookUpFormKeywords);

} // namespace
} // namespace grolof
