// What the driver's tests share: an installation of their own in an empty working directory, and
// a child process of an ordinary user.
#pragma once

#include <cstdio>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "common/testing.h"
#include "support/installation.h"

namespace grolof::testing_support {

/// The working directory is "work" in a new directory, the files directory is "files" in it, and
/// no variable of the environment names another place.
class Installation : public ::testing::Test {
protected:
    Installation() {
        RootSetUp();
        m_savedFiles = zorsysfiles;
        zorsysfiles = "files";
    }
    ~Installation() override { zorsysfiles = m_savedFiles; }

    TemporaryDirectory m_top;
    ScopedHost m_host;

private:
    std::string MakeWork() {
        const std::string work = m_top.File("work");
        chmod(m_top.Path().c_str(), 0755);
        mkdir(work.c_str(), 0777);
        chmod(work.c_str(), 0777);
        return work;
    }

    std::string m_savedFiles;
    ScopedDirectory m_work{MakeWork()};
    ScopedVariable m_copyDirectory{"DPSOUTDIR", nullptr};
    ScopedVariable m_site{"ZORSITE", nullptr};
    ScopedVariable m_root{"ZORROOT", nullptr};
    ScopedVariable m_path{"ZORPATH", "/bin"};
    ScopedVariable m_shell{"SHELL", "/bin/none"};
};

/// Runs an action in a child process that is no super-user; true when the action says so.
template <class Action>
bool AsOrdinaryUser(Action action) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (geteuid() == 0 && setuid(65534) != 0)
            _exit(2);
        const bool good = action();
        std::fflush(nullptr);
        _exit(good ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace grolof::testing_support
