// t3zplay: shows the screens of MCS format files on the terminal.
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mcs/player.h"
#include "mcs/rendering.h"

namespace {

using Bytes = std::vector<std::uint8_t>;

// No format is longer than its header and a stream of signed 16-bit length; one byte more is
// enough to see that a file is.
constexpr std::size_t kMostBytes = grolof::kMcsHeaderSize + 0x8000;

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

std::optional<Bytes> ReadFile(const char* path) {
    const std::unique_ptr<std::FILE, FileCloser> file(std::fopen(path, "rb"));
    Bytes bytes(kMostBytes);
    if (file)
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (!file || std::ferror(file.get()) != 0) {
        std::perror(path);
        return {};
    }
    return bytes;
}

void Show(const grolof::PlayedScreen& screen, bool asList) {
    const grolof::ScreenSummary& summary = screen.Summary;
    std::printf("%s in %s: %d rows, %d columns, %d fields, %zu bytes\n", summary.Name.c_str(),
                summary.Group.c_str(), summary.Rows, summary.Columns, summary.FieldCount,
                grolof::kMcsHeaderSize + static_cast<std::size_t>(summary.StreamLength));
    std::fputs(grolof::RenderScreen(screen).c_str(), stdout);
    std::puts("  _ entry field   . output field   # system value");
    if (asList)
        std::fputs(grolof::RenderItems(screen).c_str(), stdout);
}

bool Play(const char* path, bool asList) {
    const std::optional<Bytes> bytes = ReadFile(path);
    if (!bytes)
        return false;
    grolof::PlayedScreen screen;
    if (const auto error = grolof::PlayMcs(*bytes, screen)) {
        std::fprintf(stderr, "%s: byte %zu: %s\n", path, error->Offset, error->Message.c_str());
        return false;
    }
    Show(screen, asList);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    const bool asList = argc > 1 && std::strcmp(argv[1], "-l") == 0;
    const int first = asList ? 2 : 1;
    if (first >= argc) {
        std::fputs("usage: t3zplay [-l] file.t3z...\n", stderr);
        return 1;
    }
    bool played = true;
    for (int i = first; i < argc; ++i)
        played = Play(argv[i], asList) && played;
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        std::perror("t3zplay: standard output");
        return 1;
    }
    return played ? 0 : 1;
}
