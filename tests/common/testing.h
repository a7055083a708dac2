// What the tests of every room share: a directory of one's own, files in it, captured output,
// and a clock, a user and an environment set for one scope.
#pragma once

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include "support/host.h"

namespace grolof::testing_support {

/// A new, empty directory, removed with all it holds at the end of the scope.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string pattern = ::testing::TempDir();
        if (pattern.empty() || pattern.back() != '/')
            pattern += '/';
        pattern += "grolof-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("cannot make " + pattern);
        m_path = std::move(pattern);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    /// The directory, without a slash at its end.
    const std::string& Path() const { return m_path; }

    /// The path of something in it: File("a/b").
    std::string File(std::string_view name) const { return m_path + "/" + std::string(name); }

private:
    std::string m_path;
};

/// Writes a file (making its directories) and returns its path, for use in one expression.
inline std::string WriteFile(const std::string& path, std::string_view bytes) {
    const auto parent = std::filesystem::path(path).parent_path();
    if (!parent.empty())
        std::filesystem::create_directories(parent);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!file.flush())
        throw std::runtime_error("cannot write " + path);
    return path;
}

/// All bytes of a file; throws when it cannot be opened, so that a missing file fails the test.
inline std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline bool FileExists(const std::string& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0;
}

/// Permission bits of a file (0 when there is none).
inline unsigned FileMode(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

/// Collects what is written to a descriptor (1 or 2), by stdio or directly, also by child
/// processes. Take() ends the capture and returns the text; the destructor only ends it.
class Capture {
public:
    explicit Capture(int descriptor) : m_descriptor(descriptor) {
        std::fflush(nullptr);
        m_file = std::tmpfile();
        m_saved = dup(descriptor);
        if (m_file == nullptr || m_saved < 0 || dup2(fileno(m_file), descriptor) < 0)
            throw std::runtime_error("cannot capture output");
    }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;
    ~Capture() { Take(); }

    std::string Take() {
        if (m_file == nullptr)
            return {};
        std::fflush(nullptr);
        dup2(m_saved, m_descriptor);
        close(m_saved);
        std::string text;
        std::rewind(m_file);
        std::array<char, 4096> block;
        while (const std::size_t count = std::fread(block.data(), 1, block.size(), m_file))
            text.append(block.data(), count);
        std::fclose(m_file);
        m_file = nullptr;
        return text;
    }

private:
    int m_descriptor;
    int m_saved = -1;
    std::FILE* m_file = nullptr;
};

struct CaptureStdout : Capture {
    CaptureStdout() : Capture(STDOUT_FILENO) {}
};
struct CaptureStderr : Capture {
    CaptureStderr() : Capture(STDERR_FILENO) {}
};

/// What EndRun throws while a ScopedHost is in force.
struct RunEnded {
    int Status;
};

/// The host of one scope: the clock stands still, every user has one login name, and EndRun
/// throws RunEnded. What it replaced comes back at the end.
class ScopedHost {
public:
    ScopedHost() : m_saved(CurrentHost()), m_login(Login()), m_clock(Clock()) {
        CurrentHost() = {[] { return Clock(); }, [](uid_t) { return Login(); },
                         [](int status) { throw RunEnded{status}; }};
        SetLocalTime(2024, 3, 5, 9, 7, 2);
        SetLogin("tester");
    }
    ScopedHost(const ScopedHost&) = delete;
    ScopedHost& operator=(const ScopedHost&) = delete;
    ~ScopedHost() {
        CurrentHost() = m_saved;
        Login() = m_login;
        Clock() = m_clock;
    }

    static void SetLogin(std::string name) { Login() = std::move(name); }
    static void SetTime(timeval time) { Clock() = time; }

    /// Sets the clock to a local time of the process's time zone; month 1-12.
    static void SetLocalTime(int year, int month, int day, int hour, int minute, int second,
                             int microsecond = 0) {
        std::tm local{};
        local.tm_year = year - 1900;
        local.tm_mon = month - 1;
        local.tm_mday = day;
        local.tm_hour = hour;
        local.tm_min = minute;
        local.tm_sec = second;
        local.tm_isdst = -1;
        SetTime({std::mktime(&local), microsecond});
    }

private:
    static std::string& Login() {
        static std::string name;
        return name;
    }
    static timeval& Clock() {
        static timeval time{};
        return time;
    }

    Host m_saved;
    std::string m_login;
    timeval m_clock;
};

/// Runs something that ends the run and returns the exit status, or -1 when it did not end.
/// Needs a ScopedHost.
template <class Action>
int StatusOf(Action action) {
    try {
        action();
    } catch (const RunEnded& ended) {
        return ended.Status;
    }
    return -1;
}

/// An environment variable set (or, with nullptr, removed) for one scope.
class ScopedVariable {
public:
    ScopedVariable(std::string name, const char* value) : m_name(std::move(name)) {
        if (const char* old = std::getenv(m_name.c_str())) {
            m_had = true;
            m_old = old;
        }
        Set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { Set(m_had ? m_old.c_str() : nullptr); }

private:
    void Set(const char* value) {
        if (value != nullptr)
            setenv(m_name.c_str(), value, 1);
        else if (std::getenv(m_name.c_str()) != nullptr)
            unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::string m_old;
    bool m_had = false;
};

/// Another working directory for one scope.
class ScopedDirectory {
public:
    explicit ScopedDirectory(const std::string& path) : m_old(std::filesystem::current_path()) {
        std::filesystem::current_path(path);
    }
    ScopedDirectory(const ScopedDirectory&) = delete;
    ScopedDirectory& operator=(const ScopedDirectory&) = delete;
    ~ScopedDirectory() {
        std::error_code ignored;
        std::filesystem::current_path(m_old, ignored);
    }

private:
    std::filesystem::path m_old;
};

} // namespace grolof::testing_support
