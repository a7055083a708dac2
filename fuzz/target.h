// What the fuzz targets share: a check that ends the process, and a run that ends without ending
// it.
#pragma once

#include <cstdio>
#include <cstdlib>

#include "support/host.h"

/// Thrown where the converter would end its run.
struct RunEnded {};

/// Ends the process, for libFuzzer to report, when a condition does not hold.
inline void Require(bool condition) {
    if (!condition)
        std::abort();
}

/// For a target's LLVMFuzzerInitialize: the end of a run becomes RunEnded, and what is printed on
/// standard output (syntax errors) is thrown away. Returns 0, or 1 on failure.
inline int SetUpTarget() {
    grolof::CurrentHost().EndRun = [](int) { throw RunEnded{}; };
    return std::freopen("/dev/null", "w", stdout) == nullptr;
}
