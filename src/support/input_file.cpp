#include "support/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace grolof {

namespace {
constexpr std::size_t kBlock = 64 * 1024;
} // namespace

bool InputFile::Open(const std::string& path) {
    Close();
    do
        m_descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    while (m_descriptor < 0 && errno == EINTR);
    if (m_descriptor < 0) {
        std::perror(path.c_str());
        return false;
    }
    m_path = path;
    m_atEnd = m_exhausted = false;
    m_buffer.resize(kBlock);
    return true;
}

void InputFile::Close() {
    if (m_descriptor >= 0)
        close(m_descriptor);
    m_descriptor = -1;
    m_next = m_limit = 0;
}

bool InputFile::Fill() {
    if (m_descriptor < 0 || m_exhausted)
        return false;
    ssize_t count = 0;
    do
        count = read(m_descriptor, m_buffer.data(), m_buffer.size());
    while (count < 0 && errno == EINTR);
    if (count < 0)
        std::perror(m_path.c_str());
    m_exhausted = count <= 0; // for good, so that an error is told once
    if (m_exhausted)
        return false;
    m_next = 0;
    m_limit = static_cast<std::size_t>(count);
    return true;
}

bool InputFile::ReadLine(std::string& line, std::size_t most) {
    line.clear();
    m_atEnd = false;
    bool complete = false;
    while (!complete && line.size() < most) {
        if (m_next == m_limit && !Fill()) {
            m_atEnd = true;
            break;
        }
        const char* from = m_buffer.data() + m_next;
        const std::size_t held = std::min(m_limit - m_next, most - line.size());
        const void* feed = std::memchr(from, '\n', held);
        complete = feed != nullptr;
        const std::size_t taken =
            complete ? static_cast<std::size_t>(static_cast<const char*>(feed) - from) + 1 : held;
        line.append(from, taken);
        m_next += taken;
    }
    const bool any = !line.empty();
    if (const auto nul = line.find('\0'); nul != std::string::npos)
        line.resize(nul);
    return any;
}

} // namespace grolof
