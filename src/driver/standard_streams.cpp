#include "driver/standard_streams.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

namespace grolof {

namespace {

// The placeholder of standard output is open for reading only: what is written there must fail
// and be reported, not vanish.
void FillClosedDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor)
        if (fcntl(descriptor, F_GETFD) < 0 && errno == EBADF)
            static_cast<void>(open("/dev/null", O_RDONLY | O_CLOEXEC));
}

extern "C" void LetWriteFail(int) {}

// A handler, not SIG_IGN: a started command gets the default action back by itself.
void SurviveClosedPipe() {
    struct sigaction now {};
    if (sigaction(SIGPIPE, nullptr, &now) != 0 || now.sa_handler != SIG_DFL)
        return;
    now.sa_handler = LetWriteFail;
    now.sa_flags = SA_RESTART;
    sigaction(SIGPIPE, &now, nullptr);
}

// With SIGCHLD ignored, as some starters leave it, a command's result would be lost.
void KeepCommandResults() {
    struct sigaction now {};
    if (sigaction(SIGCHLD, nullptr, &now) == 0 && now.sa_handler == SIG_IGN)
        std::signal(SIGCHLD, SIG_DFL);
}

extern "C" void ReportLostOutput() {
    errno = EIO; // for a failure whose cause an earlier flush took with it
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        std::perror("standard output");
}

} // namespace

void GuardStandardStreams() {
    FillClosedDescriptors();
    SurviveClosedPipe();
    KeepCommandResults();
    std::atexit(ReportLostOutput);
}

} // namespace grolof
