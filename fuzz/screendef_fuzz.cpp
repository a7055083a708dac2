// Loads any bytes as a screen definition file, writes what was loaded, and loads that again: the
// second and the third writing must agree. (The first may differ, because a stored 0 is not
// written and comes back as the default.)
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

#include "screendef/element_names.h"
#include "screendef/reader.h"
#include "screendef/writer.h"

namespace {

// A file in memory with a path.
class MemoryFile {
public:
    MemoryFile() : m_descriptor(memfd_create("screen", MFD_CLOEXEC)) {
        if (m_descriptor < 0)
            std::abort();
        m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_descriptor); }

    const std::string& Path() const { return m_path; }

    void Fill(const std::uint8_t* bytes, std::size_t size) const {
        if (ftruncate(m_descriptor, 0) != 0 ||
            pwrite(m_descriptor, bytes, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }

    std::string Text() const {
        std::string text(static_cast<std::size_t>(lseek(m_descriptor, 0, SEEK_END)), '\0');
        if (pread(m_descriptor, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size()))
            std::abort();
        return text;
    }

private:
    int m_descriptor;
    std::string m_path;
};

// Loads the file as a fresh process does, writes it back in place, and gives the text.
std::string Rewritten(const MemoryFile& file) {
    grolof::ResetElementNames();
    const grolof::RecordList forms = grolof::LoadScreenDefinition(file.Path());
    if (!grolof::SaveScreenDefinition(*forms, file.Path()))
        std::abort();
    return file.Text();
}

// A line that the reader takes in pieces does not survive.
bool HasLongLine(std::string_view text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        if (end - at >= 2559)
            return true;
        at = end + 1;
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const MemoryFile file;
    file.Fill(bytes, size);
    const bool lossless = !HasLongLine(Rewritten(file));
    const std::string second = Rewritten(file);
    if (lossless && !HasLongLine(second) && Rewritten(file) != second)
        std::abort();
    return 0;
}
