// A file on disk for what a benchmark reads and writes.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

namespace grolof {

/// An empty file under a path of its own in the system's directory for such; gone with the object.
class TemporaryFile {
public:
    TemporaryFile()
        : m_path((std::filesystem::temp_directory_path() / "grolof-bench-XXXXXX").string()) {
        const int file = mkstemp(m_path.data());
        if (file < 0)
            std::abort();
        close(file);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { unlink(m_path.c_str()); }

    const std::string& Path() const { return m_path; }

    /// Bytes.
    std::int64_t Size() const {
        return static_cast<std::int64_t>(std::filesystem::file_size(m_path));
    }

    /// Makes a text, so many times over, the whole contents.
    void Fill(std::string_view text, std::int64_t times = 1) const {
        std::ofstream file(m_path, std::ios::binary);
        for (std::int64_t i = 0; i < times; ++i)
            file << text;
        if (!file.flush())
            std::abort();
    }

private:
    std::string m_path;
};

} // namespace grolof
