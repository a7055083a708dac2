// Speed of the map reader, in bytes of source.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "bms/parser.h"
#include "bms/reader.h"

namespace grolof {
namespace {

// The example map sets, one behind the other, as often as asked; removed at the end.
class SourceFile {
public:
    explicit SourceFile(std::int64_t times) {
        const std::string text = Examples();
        m_path = (std::filesystem::temp_directory_path() /
                  ("bench-bms-" + std::to_string(getpid()) + ".bms"))
                     .string();
        std::ofstream file(m_path, std::ios::binary);
        for (std::int64_t i = 0; i < times; ++i)
            file << text;
        if (!file.flush())
            std::abort();
        m_size = static_cast<std::int64_t>(text.size()) * times;
    }
    SourceFile(const SourceFile&) = delete;
    SourceFile& operator=(const SourceFile&) = delete;
    ~SourceFile() { unlink(m_path.c_str()); }

    const std::string& Path() const { return m_path; }
    std::int64_t Size() const { return m_size; }

private:
    static std::string Examples() {
        std::string text;
        for (const auto& entry : std::filesystem::directory_iterator(EXAMPLES_DIRECTORY)) {
            if (entry.path().extension() != ".bms")
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            text.append(std::istreambuf_iterator<char>(file), {});
        }
        return text;
    }

    std::string m_path;
    std::int64_t m_size = 0;
};

void ReadMapSet(benchmark::State& state) {
    const SourceFile source(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(BmsReadMapSet(source.Path(), 0));
    state.SetBytesProcessed(state.iterations() * source.Size());
}
BENCHMARK(ReadMapSet)->Arg(1)->Arg(100);

// Only the joining of lines to statements.
void ReadMapStatements(benchmark::State& state) {
    const SourceFile source(state.range(0));
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
