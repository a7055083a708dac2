// Speed of the screen definition file, in bytes of its text.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <benchmark/benchmark.h>
#include <unistd.h>

#include "common/random_model.h"
#include "screendef/reader.h"
#include "screendef/writer.h"

namespace grolof {
namespace {

// A file with many screens, removed at the end.
class ScreensFile {
public:
    explicit ScreensFile(int screens) : m_forms(ListCreate()) {
        testing_support::RandomShape shape;
        shape.MostRecords = 30;
        testing_support::RandomModel model(shape);
        for (int i = 0; i < screens; ++i)
            model.AppendScreen(*m_forms);
        m_path = (std::filesystem::temp_directory_path() /
                  ("bench-screendef-" + std::to_string(getpid()) + ".t3b"))
                     .string();
        if (!SaveScreenDefinition(*m_forms, m_path))
            std::abort();
        m_size = static_cast<std::int64_t>(std::filesystem::file_size(m_path));
    }
    ScreensFile(const ScreensFile&) = delete;
    ScreensFile& operator=(const ScreensFile&) = delete;
    ~ScreensFile() { unlink(m_path.c_str()); }

    const List& Forms() const { return *m_forms; }
    const std::string& Path() const { return m_path; }
    std::int64_t Size() const { return m_size; }

private:
    RecordList m_forms;
    std::string m_path;
    std::int64_t m_size = 0;
};

void WriteScreenDefinition(benchmark::State& state) {
    const ScreensFile file(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(SaveScreenDefinition(file.Forms(), file.Path()));
    state.SetBytesProcessed(state.iterations() * file.Size());
}
BENCHMARK(WriteScreenDefinition)->Arg(1)->Arg(100);

void ReadScreenDefinition(benchmark::State& state) {
    const ScreensFile file(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadScreenDefinition(file.Path()));
    state.SetBytesProcessed(state.iterations() * file.Size());
}
BENCHMARK(ReadScreenDefinition)->Arg(1)->Arg(100);

} // namespace
} // namespace grolof
