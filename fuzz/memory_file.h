// A file in memory that has a path, for what a fuzz target reads and writes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

/// An open, empty file in memory; gone with the object.
class MemoryFile {
public:
    MemoryFile() : m_descriptor(memfd_create("fuzz", MFD_CLOEXEC)) {
        if (m_descriptor < 0)
            std::abort();
        m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() { close(m_descriptor); }

    const std::string& Path() const { return m_path; }

    /// Makes these bytes the whole contents.
    void Fill(const std::uint8_t* bytes, std::size_t size) const {
        if (ftruncate(m_descriptor, 0) != 0 ||
            pwrite(m_descriptor, bytes, size, 0) != static_cast<ssize_t>(size))
            std::abort();
    }

    /// The whole contents.
    std::string Contents() const {
        const auto size = lseek(m_descriptor, 0, SEEK_END);
        std::string contents(size < 0 ? 0 : static_cast<std::size_t>(size), '\0');
        if (pread(m_descriptor, contents.data(), contents.size(), 0) != size)
            std::abort();
        return contents;
    }

private:
    int m_descriptor;
    std::string m_path;
};
