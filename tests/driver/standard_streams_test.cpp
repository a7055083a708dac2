// What a run does about the streams and signals that it was started with. Each test looks at a
// child process, since the guard changes the process for good.
#include "driver/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>

#include "driver_testing.h"

namespace grolof {
namespace {

using namespace testing_support;

TEST(StandardStreams, ClosedOnesAreNeverTakenByAFile) {
    EXPECT_TRUE(AsOrdinaryUser([] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        GuardStandardStreams();
        const int file = open("/dev/null", O_WRONLY);
        const bool commandsSeeItClosed = (fcntl(STDOUT_FILENO, F_GETFD) & FD_CLOEXEC) != 0;
        return file > STDERR_FILENO && write(STDOUT_FILENO, "x", 1) < 0 && commandsSeeItClosed;
    }));
}

TEST(StandardStreams, ClosedPipeFailsTheWriteOnly) {
    EXPECT_TRUE(AsOrdinaryUser([] {
        int ends[2];
        if (pipe(ends) != 0)
            return false;
        std::signal(SIGPIPE, SIG_DFL);
        GuardStandardStreams();
        close(ends[0]);
        return write(ends[1], "x", 1) < 0 && errno == EPIPE;
    }));
}

TEST(StandardStreams, CommandsKeepTheDefaultActionOfAClosedPipe) {
    EXPECT_TRUE(AsOrdinaryUser([] {
        std::signal(SIGPIPE, SIG_DFL);
        GuardStandardStreams();
        // The shell dies of the signal; were it ignored, the shell would go on to exit 0.
        const int status = std::system("kill -PIPE $$; exit 0");
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGPIPE;
    }));
}

TEST(StandardStreams, IgnoredPipeSignalStaysIgnored) {
    EXPECT_TRUE(AsOrdinaryUser([] {
        std::signal(SIGPIPE, SIG_IGN);
        GuardStandardStreams();
        struct sigaction now {};
        return sigaction(SIGPIPE, nullptr, &now) == 0 && now.sa_handler == SIG_IGN;
    }));
}

TEST(StandardStreams, CommandResultsAreNotLost) {
    EXPECT_TRUE(AsOrdinaryUser([] {
        std::signal(SIGCHLD, SIG_IGN);
        GuardStandardStreams();
        const int status = std::system("exit 3");
        return WIFEXITED(status) && WEXITSTATUS(status) == 3;
    }));
}

} // namespace
} // namespace grolof
