// The byte sink of every writer: a bounded buffer in front of one file, with a sticky error, so
// that a writer is a straight run of "put this" lines.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace grolof {

/// A file open for writing. A write that fails is remembered and reported once, on standard
/// error with the system error text for the path; it changes nothing else.
class OutputFile {
public:
    /// What becomes of the contents of a file that exists. Keep leaves them until Truncate.
    enum class Mode { Truncate, Append, Keep };

    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { Close(); }

    /// Opens a file, made with mode 0666 less the umask when missing. On failure prints the
    /// system error text for the path on standard error and returns false.
    bool Open(const std::string& path, Mode mode = Mode::Truncate);

    /// Takes away the contents of a file opened with Keep; nothing may have been put before.
    void Truncate();

    /// Appends bytes as they are.
    void Put(std::string_view bytes);

    /// Appends a formatted text, as printf.
    [[gnu::format(printf, 2, 3)]] void Print(const char* format, ...);

    /// Writes what is buffered and closes. Returns false when any write failed since Open.
    bool Close();

private:
    void Flush();
    void Write(std::string_view bytes);
    void Fail();

    std::string m_path;
    int m_descriptor = -1;
    bool m_failed = false;
    std::array<char, 16 * 1024> m_buffer;
    std::size_t m_length = 0;
};

} // namespace grolof
