// Where the installation lives, who uses it, and in which locale: fixed at start, read
// everywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace grolof {

/// Bytes that other programs of the installation reserve for each of the texts below, the end
/// mark included.
inline constexpr std::size_t kRootArea = 128;

/// Longest login name that is kept.
inline constexpr std::size_t kLongestUser = 15;

extern std::string zorsysroot;  ///< the installation root, ending in "/"
extern std::string zorsysfiles; ///< the files directory: root and "zorfiles"
extern std::string zorsysboot;  ///< root and "zorboot.sys"
extern std::string zorsysbin;   ///< the bin directory, empty until BinDirectory is asked
extern std::string zorsysuser;  ///< login name of the real user, cut to kLongestUser bytes
extern int zorActive;           ///< 1 while the installation's run-time system is up

/// Argument of RootSetUp that has the root computed again, from ZORROOT.
inline const char* const kRootAgain =
    reinterpret_cast<const char*>(std::intptr_t{-1}); // NOLINT(performance-no-int-to-ptr)

/// Fixes the root texts and zorActive on the first call, and again for kRootAgain; any other
/// later call changes nothing. The root is ZORROOT, or when that is not set the argument, or
/// without one "/zorsys". Returns zorActive. A root whose texts do not fit their areas ends the
/// run with status 1 after a line on standard error.
int RootSetUp(const char* defaultRoot = nullptr);

/// Sets the locale from LANG (or the system's default), its character classes from LC_CTYPE,
/// and zorsysuser; returns zorsysuser. It is empty when the user has no password entry.
const std::string& LocaleSetUp();

/// The bin directory, "%s/bin" of the root as it is on the first call.
const std::string& BinDirectory();

} // namespace grolof
