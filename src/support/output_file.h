// The byte sink of every writer: a bounded buffer in front of one file, with a sticky error, so
// that a writer is a straight run of "put this" lines.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace grolof {

/// A file open for writing. A write that fails is remembered and reported once, on standard
/// error with the system error text for the path; it changes nothing else.
class OutputFile {
public:
    /// What becomes of the contents of a file that exists. Keep writes over them and leaves what
    /// stands behind, unless Cut is called.
    enum class Mode { Truncate, Append, Keep };

    OutputFile() = default;
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile() { Close(); }

    /// Opens a file, made with mode 0666 less the umask when missing. On failure prints the
    /// system error text for the path on standard error and returns false.
    bool Open(const std::string& path, Mode mode = Mode::Truncate);

    /// Opens a file to go on `offset` bytes from its start, over what stands there or behind its
    /// end. Fails as Open does.
    bool OpenAt(const std::string& path, std::int64_t offset);

    /// Takes away what stands behind what has been put.
    void Cut();

    /// Appends bytes as they are.
    void Put(std::string_view bytes);

    /// Appends blanks; none for a count below 1.
    void PutBlanks(std::int64_t count);

    /// Appends a text, filled up with blanks to `width` bytes; a longer one pushes what follows.
    void PutPadded(std::string_view text, std::int64_t width);

    /// Appends a number as 32-bit decimal text; what exceeds 32 bits wraps.
    void PutNumber(std::int64_t value);

    /// Appends a formatted text, as printf.
    [[gnu::format(printf, 2, 3)]] void Print(const char* format, ...);

    /// Bytes from the start of the file to the end of what was put; valid after Close too. 0 for
    /// what has no place to go back to, such as a pipe.
    std::int64_t End() const { return m_end; }

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
    std::int64_t m_end = 0;
};

} // namespace grolof
