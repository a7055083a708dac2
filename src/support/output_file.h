// The byte sink of every writer: a bounded buffer in front of one file, with a sticky error, so
// that a writer is a straight run of "put this" lines.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <sys/types.h>

namespace grolof {

/// A file open for writing. A write that fails is remembered and reported once, on standard
/// error with the system error text for the path; it changes nothing else.
class OutputFile {
public:
    /// What becomes of the contents of a file that exists. Keep leaves them until Truncate.
    enum class Mode { Truncate, Keep };

    /// Where a file ended when this run wrote it. No file is at the place that this starts as.
    struct Place {
        dev_t Device = 0;
        ino_t Inode = 0;
        std::int64_t Offset = 0; ///< bytes from the start of the file
    };

    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { Close(); }

    /// Opens a file, made with mode 0666 less the umask when missing. On failure prints the
    /// system error text for the path on standard error and returns false.
    bool Open(const std::string& path, Mode mode = Mode::Truncate);

    /// Opens a file, made when missing, to go on where an earlier Close of this run left it. Where
    /// another process is writing the same file anew at the moment, it is shorter than that for a
    /// while, and ends up with one copy of what both write. A file that has taken the place of the
    /// one written is appended to, as any file is from Place{}. Fails as Open does.
    bool OpenAt(const std::string& path, const Place& place);

    /// Takes away the contents of a file opened with Keep; nothing may have been put before.
    void Truncate();

    /// Appends bytes as they are.
    void Put(std::string_view bytes);

    /// Appends a formatted text, as printf.
    [[gnu::format(printf, 2, 3)]] void Print(const char* format, ...);

    /// The end of what was put; valid after Close too.
    const Place& End() const { return m_end; }

    /// Writes what is buffered and closes. Returns false when any write failed since Open.
    bool Close();

private:
    bool Reopen(const std::string& path, int flags);
    void Flush();
    void Write(std::string_view bytes);
    void Fail();

    std::string m_path;
    int m_descriptor = -1;
    bool m_failed = false;
    std::array<char, 16 * 1024> m_buffer;
    std::size_t m_length = 0;
    Place m_end;
};

} // namespace grolof
