// The converter with its system calls interrupted all the time: an interval timer runs, and its
// handler does not have calls restarted. Says on standard error how often it struck.

#include <atomic>
#include <csignal>
#include <cstdio>

#include <sys/time.h>

#include "driver/grolof.h"
#include "driver/standard_streams.h"

namespace {

std::atomic<int> s_strikes = 0;

extern "C" void Strike(int) {
    ++s_strikes;
}

void SetTimer(suseconds_t interval) {
    const itimerval every{{0, interval}, {0, interval}};
    setitimer(ITIMER_REAL, &every, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    grolof::GuardStandardStreams();
    struct sigaction action {};
    action.sa_handler = Strike; // and no SA_RESTART
    sigaction(SIGALRM, &action, nullptr);
    SetTimer(500);
    const int status = grolof::GrolofMain(argc, argv);
    SetTimer(0);
    std::fprintf(stderr, "%d strikes\n", s_strikes.load());
    return status;
}
