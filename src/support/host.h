// What the program asks of the machine it runs on and that a test must be able to set: the
// clock and the user's login name; and the one way in which a run ends early.
#pragma once

#include <ctime>
#include <string>

#include <sys/time.h>
#include <sys/types.h>

namespace grolof {

/// The seam for clock, user and end of run; the defaults ask the system.
struct Host {
    timeval (*Now)();                   ///< wall-clock time, microsecond resolution
    std::string (*LoginName)(uid_t id); ///< login name of a user, empty when unknown
    void (*EndRun)(int status);         ///< must not return (exits, or throws in a harness)
};

/// The host in force; tests assign to its members.
Host& CurrentHost();

/// Ends the run with an exit status; output written so far is flushed and stays.
[[noreturn]] void EndRun(int status);

} // namespace grolof
