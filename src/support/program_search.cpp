#include "support/program_search.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>

#include <unistd.h>

#include "support/installation.h"

namespace grolof {

int stickyBit = 0;

namespace {

constexpr std::size_t kMostGroups = 32;
constexpr std::size_t kElementAndName = 346; // bytes for a path element and the name behind it
constexpr std::size_t kSuffixList = 23;      // bytes of a suffix list that count
constexpr std::size_t kCachedName = 30;
constexpr std::size_t kCachedPath = 88;

struct Masks {
    mode_t Owner, Group, Other;
};
constexpr Masks kExecuteMasks{0500, 050, 01};
constexpr Masks kReadMasks{0400, 040, 04};

struct CachedProgram {
    std::string Name; // empty: an unused entry
    std::string Path;
};

struct SearchState {
    Masks Wanted = kExecuteMasks;
    bool CacheIsOn = false;
    std::array<CachedProgram, 5> Cache; // oldest first; all unused while it is off
    std::string Found;                  // what the last call returned
};
SearchState s_search;

std::optional<struct stat> StatusOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status;
}

// Intermediate and generated code is loaded, not executed: such a file needs to exist only.
bool NeedsNoPermission(std::string_view name) {
    return name.size() > 4 && (name.ends_with(".int") || name.ends_with(".gnt"));
}

void ClearCache() {
    s_search.CacheIsOn = true;
    s_search.Cache.fill({});
}

const CachedProgram* FindCached(const std::string& name) {
    if (name.empty())
        return nullptr;
    const auto found = std::find_if(s_search.Cache.begin(), s_search.Cache.end(),
                                    [&](const CachedProgram& entry) { return entry.Name == name; });
    return found != s_search.Cache.end() ? &*found : nullptr;
}

void Remember(const std::string& name, const std::string& path) {
    if (!s_search.CacheIsOn || name.size() > kCachedName || path.size() > kCachedPath)
        return;
    std::move(s_search.Cache.begin() + 1, s_search.Cache.end(), s_search.Cache.begin());
    s_search.Cache.back() = {name, path};
}

// A program that was found, with the status that its sticky bit is taken from.
struct Candidate {
    std::string Path;
    struct stat Status;
};
using MaybeCandidate = std::optional<Candidate>;

MaybeCandidate TryAsItStands(const std::string& name) {
    const auto status = StatusOf(name);
    if (!status || S_ISDIR(status->st_mode))
        return std::nullopt;
    return Candidate{name, *status};
}

MaybeCandidate Try(std::string path, const std::string& name) {
    const auto status = StatusOf(path);
    if (!status || (!NeedsNoPermission(name) && FilePermissionCheck(*status) != 0))
        return std::nullopt;
    return Candidate{std::move(path), *status};
}

MaybeCandidate TryElements(std::string_view list, const std::string& name) {
    const std::size_t most = kElementAndName - std::min(kElementAndName, name.size());
    while (true) {
        const std::size_t colon = list.find(':');
        std::string path(list.substr(0, colon).substr(0, most));
        path.append("/").append(name);
        if (auto found = Try(std::move(path), name))
            return found;
        if (colon == std::string_view::npos)
            return std::nullopt;
        list.remove_prefix(colon + 1);
    }
}

const char* PathListInForce(const char* given) {
    if (given != nullptr)
        return given;
    const char* ours = std::getenv("ZORPATH");
    return ours != nullptr ? ours : std::getenv("PATH");
}

MaybeCandidate TryHereAndAlong(const char* pathList, const std::string& name) {
    if (auto here = Try("./" + name, name))
        return here;
    const char* list = PathListInForce(pathList);
    return list != nullptr ? TryElements(list, name) : std::nullopt;
}

const char* Answer(std::string path) {
    s_search.Found = std::move(path);
    return s_search.Found.c_str();
}

} // namespace

void SetPermissionMode(PermissionMode mode) {
    s_search.Wanted = mode == PermissionMode::Execute ? kExecuteMasks : kReadMasks;
}

Identity CurrentIdentity() {
    Identity who{geteuid(), getuid(), getegid(), getgid(), {}};
    const int count = getgroups(0, nullptr);
    if (count <= 0)
        return who;
    who.Groups.resize(static_cast<std::size_t>(count));
    const int held = getgroups(count, who.Groups.data());
    who.Groups.resize(static_cast<std::size_t>(std::max(held, 0)));
    return who;
}

int FilePermissionCheck(const struct stat& status) {
    return FilePermissionCheck(status, CurrentIdentity());
}

int FilePermissionCheck(const struct stat& status, const Identity& who) {
    if (!S_ISREG(status.st_mode))
        return -1;
    const auto groups = who.Groups.begin();
    const auto groupsEnd =
        groups + static_cast<std::ptrdiff_t>(std::min(who.Groups.size(), kMostGroups));
    mode_t wanted = s_search.Wanted.Other;
    if (status.st_uid == who.EffectiveUser || status.st_uid == who.RealUser)
        wanted = s_search.Wanted.Owner;
    else if (status.st_gid == who.EffectiveGroup || status.st_gid == who.RealGroup ||
             std::find(groups, groupsEnd, status.st_gid) != groupsEnd)
        wanted = s_search.Wanted.Group;
    return (status.st_mode & wanted) == wanted ? 0 : -1;
}

const char* ProgramSearch(const char* name, const char* pathList) {
    if (name == nullptr) {
        ClearCache();
        return nullptr;
    }
    const std::string wanted = name;
    const bool asItStands = wanted.starts_with('.') || wanted.starts_with('/');
    if (!asItStands)
        if (const CachedProgram* cached = FindCached(wanted))
            return Answer(cached->Path);
    auto found = asItStands ? TryAsItStands(wanted) : TryHereAndAlong(pathList, wanted);
    if (!found)
        return nullptr;
    stickyBit = (found->Status.st_mode & S_ISVTX) != 0 ? 1 : 0;
    Remember(wanted, found->Path);
    return Answer(std::move(found->Path));
}

const char* ProgramInBinDirectory(const char* name) {
    std::string path = BinDirectory() + "/" + name;
    return StatusOf(path) ? Answer(std::move(path)) : ProgramSearch(name);
}

const char* ProgramSearchSuffixes(const char* name, const char* pathList, const char* suffixList,
                                  std::string* suffix) {
    if (suffixList == nullptr)
        return ProgramSearch(name, pathList);
    std::string_view list = std::string_view(suffixList).substr(0, kSuffixList);
    if (name == nullptr || list.empty())
        return nullptr;
    while (true) {
        const std::size_t colon = list.find(':');
        const std::string tried(list.substr(0, colon));
        const std::string full = tried.empty() ? name : name + ("." + tried);
        if (const char* found = ProgramSearch(full.c_str(), pathList)) {
            if (suffix != nullptr)
                *suffix = tried;
            return found;
        }
        if (colon == std::string_view::npos)
            return nullptr;
        list.remove_prefix(colon + 1);
    }
}

} // namespace grolof
