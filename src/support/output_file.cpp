#include "support/output_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace grolof {

namespace {

int OpenFlags(OutputFile::Mode mode) {
    const int always = O_WRONLY | O_CREAT | O_CLOEXEC;
    switch (mode) {
    case OutputFile::Mode::Append:
        return always | O_APPEND;
    case OutputFile::Mode::Truncate:
        return always | O_TRUNC;
    case OutputFile::Mode::Keep:
        break;
    }
    return always;
}

} // namespace

bool OutputFile::Reopen(const std::string& path, int flags) {
    Close();
    do
        m_descriptor = open(path.c_str(), flags, 0666);
    while (m_descriptor < 0 && errno == EINTR);
    if (m_descriptor < 0) {
        std::perror(path.c_str());
        return false;
    }
    m_path = path;
    m_failed = false;
    m_length = 0;
    m_end = 0;
    return true;
}

bool OutputFile::Open(const std::string& path, Mode mode) {
    if (!Reopen(path, OpenFlags(mode)))
        return false;
    if (mode == Mode::Append)
        m_end = std::max<std::int64_t>(lseek(m_descriptor, 0, SEEK_END), 0);
    return true;
}

bool OutputFile::OpenAt(const std::string& path, std::int64_t offset) {
    if (!Reopen(path, OpenFlags(Mode::Keep)))
        return false;
    m_end = std::max<std::int64_t>(lseek(m_descriptor, offset, SEEK_SET), 0);
    return true;
}

void OutputFile::Cut() {
    Flush();
    // What is no regular file (a pipe, a device) has nothing to take away: ESPIPE, EINVAL.
    const off_t end = m_descriptor >= 0 ? lseek(m_descriptor, 0, SEEK_CUR) : -1;
    if (end >= 0 && ftruncate(m_descriptor, end) != 0 && errno != EINVAL)
        Fail();
}

void OutputFile::Put(std::string_view bytes) {
    m_end += static_cast<std::int64_t>(bytes.size());
    if (bytes.size() > m_buffer.size() - m_length)
        Flush();
    if (bytes.size() > m_buffer.size()) {
        Write(bytes);
        return;
    }
    std::copy(bytes.begin(), bytes.end(), m_buffer.begin() + static_cast<std::ptrdiff_t>(m_length));
    m_length += bytes.size();
}

void OutputFile::PutBlanks(std::int64_t count) {
    static constexpr std::string_view blanks = "                                ";
    for (; count > 0; count -= static_cast<std::int64_t>(blanks.size()))
        Put(blanks.substr(0, static_cast<std::size_t>(count)));
}

void OutputFile::PutPadded(std::string_view text, std::int64_t width) {
    Put(text);
    PutBlanks(width - static_cast<std::int64_t>(text.size()));
}

void OutputFile::PutNumber(std::int64_t value) {
    std::array<char, 12> digits; // a sign and ten digits at most
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(),
                                   static_cast<std::int32_t>(value));
    Put({digits.data(), static_cast<std::size_t>(end.ptr - digits.data())});
}

void OutputFile::Print(const char* format, ...) {
    std::array<char, 512> text;
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    if (length >= 0 && static_cast<std::size_t>(length) < text.size()) {
        Put({text.data(), static_cast<std::size_t>(length)});
    } else if (length >= 0) {
        std::string longer(static_cast<std::size_t>(length) + 1, '\0');
        std::vsnprintf(longer.data(), longer.size(), format, again);
        Put({longer.data(), static_cast<std::size_t>(length)});
    }
    va_end(again);
}

void OutputFile::Flush() {
    Write({m_buffer.data(), m_length});
    m_length = 0;
}

void OutputFile::Write(std::string_view bytes) {
    while (!bytes.empty() && !m_failed && m_descriptor >= 0) {
        const ssize_t written = write(m_descriptor, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            Fail();
    }
}

void OutputFile::Fail() {
    if (!std::exchange(m_failed, true))
        std::perror(m_path.c_str());
}

bool OutputFile::Close() {
    if (m_descriptor < 0)
        return !m_failed;
    Flush();
    if (close(m_descriptor) != 0 && errno != EINTR)
        Fail();
    m_descriptor = -1;
    return !m_failed;
}

} // namespace grolof
