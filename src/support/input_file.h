// A source read in physical lines of bounded length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace grolof {

/// A file open for reading. Move-only; closed by its destructor or by Close.
class InputFile {
public:
    InputFile() = default;
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;
    ~InputFile() { Close(); }

    /// Opens a file. On failure prints the system error text for the path on standard error and
    /// returns false.
    bool Open(const std::string& path);

    /// Closes the file; harmless when none is open.
    void Close();

    /// Reads one physical line of at most `most` bytes, its line feed included, into `line`; the
    /// rest of a longer line is the next one. The text ends at an embedded NUL. Returns false
    /// when nothing could be read. A read error (a directory, say) is reported on standard error
    /// and is the end of the file.
    bool ReadLine(std::string& line, std::size_t most);

    /// The same, but false as well for a last line that AtEnd marks.
    bool ReadEndedLine(std::string& line, std::size_t most) {
        return ReadLine(line, most) && !m_atEnd;
    }

    /// True when the last ReadLine ran into the end of the file: its line had no line feed and
    /// did not fill its bound.
    bool AtEnd() const { return m_atEnd; }

private:
    bool Fill();

    std::string m_path;
    int m_descriptor = -1;
    bool m_atEnd = false;
    bool m_exhausted = false; // a read gave nothing more, or failed
    std::vector<char> m_buffer;
    std::size_t m_next = 0;  // first byte of m_buffer not yet handed out
    std::size_t m_limit = 0; // bytes of m_buffer that hold text
};

} // namespace grolof
