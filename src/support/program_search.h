// Finding programs along a path, with the permission rules of the system.
#pragma once

#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace grolof {

/// 1 when the file that the last successful search found has the sticky bit set, else 0. An
/// answer from the cache leaves it as it is.
extern int stickyBit;

/// What the permission check asks of a file.
enum class PermissionMode {
    Execute, ///< owner 0500, group 050, others 01: others need not be able to read (on purpose)
    Read,    ///< owner 0400, group 040, others 04
};

/// Sets the masks of all later checks; Execute is in force at start.
void SetPermissionMode(PermissionMode mode);

/// Who asks for a file.
struct Identity {
    uid_t EffectiveUser = 0;
    uid_t RealUser = 0;
    gid_t EffectiveGroup = 0;
    gid_t RealGroup = 0;
    std::vector<gid_t> Groups; ///< supplementary groups, of which the first 32 count
};

/// The identity of this process.
Identity CurrentIdentity();

/// 0 when the process (or `who`) may use a file of this status under the masks in force, else
/// -1. Only regular files are ever usable; there is no privilege for the super-user.
int FilePermissionCheck(const struct stat& status);
int FilePermissionCheck(const struct stat& status, const Identity& who);

/// Path of a program, in a text that is valid until the next call, or none. A name beginning
/// with "." or "/" is taken as it stands; another is looked for in the current directory and
/// then along the colon-separated path list, for which ZORPATH and then PATH stand in. An empty
/// element of the list is the root directory. Without a name: clears and switches on the cache
/// of the last five programs found, and returns none.
const char* ProgramSearch(const char* name, const char* pathList = nullptr);

/// The program of that name in the installation's bin directory when there is one, whatever its
/// permissions, else what ProgramSearch finds.
const char* ProgramInBinDirectory(const char* name);

/// Searches for "name.suffix" with each suffix of a colon-separated list (its first 23 bytes)
/// in turn, an empty one meaning the bare name; the first found wins and its suffix is copied
/// to `suffix` (when given). Without a list as ProgramSearch; with an empty one none.
const char* ProgramSearchSuffixes(const char* name, const char* pathList, const char* suffixList,
                                  std::string* suffix);

} // namespace grolof
