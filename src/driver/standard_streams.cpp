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

int s_outputError = 0; // of the first flush that failed

extern "C" void ReportLostOutput() {
    FlushOutput();
    if (s_outputError == 0 && std::ferror(stdout) == 0)
        return;
    // A write between two flushes leaves the stream's error mark, but not its cause.
    errno = s_outputError != 0 ? s_outputError : EIO;
    std::perror("standard output");
}

} // namespace

void GuardStandardStreams() {
    FillClosedDescriptors();
    SurviveClosedPipe();
    KeepCommandResults();
    std::atexit(ReportLostOutput);
}

void FlushOutput() {
    if (std::fflush(stdout) != 0 && s_outputError == 0)
        s_outputError = errno;
}

} // namespace grolof
