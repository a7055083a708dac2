#include "support/installation.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <unistd.h>

#include "support/host.h"

namespace grolof {

std::string zorsysroot;
std::string zorsysfiles;
std::string zorsysboot;
std::string zorsysbin;
std::string zorsysuser;
int zorActive = 0;

namespace {

constexpr std::string_view kFiles = "zorfiles";
constexpr std::string_view kBoot = "zorboot.sys"; // the longest that follows the root

// False until the texts were computed once.
bool s_rootIsSet = false;

const char* ChosenRoot(const char* defaultRoot) {
    if (const char* root = std::getenv("ZORROOT"))
        return root;
    return defaultRoot != nullptr && defaultRoot != kRootAgain ? defaultRoot : "/zorsys";
}

void SetRoot(const char* chosen) {
    std::string root = chosen;
    if (!root.ends_with('/'))
        root += '/';
    if (root.size() + kBoot.size() >= kRootArea) {
        std::fprintf(stderr, "%s: too long\n", chosen);
        EndRun(1);
    }
    zorsysfiles = root + std::string(kFiles);
    zorsysboot = root + std::string(kBoot);
    zorsysroot = std::move(root);
}

} // namespace

int RootSetUp(const char* defaultRoot) {
    if (s_rootIsSet && defaultRoot != kRootAgain)
        return zorActive;
    SetRoot(ChosenRoot(defaultRoot));
    zorActive = std::getenv("ZoRsHmId") != nullptr ? 1 : 0;
    s_rootIsSet = true;
    return zorActive;
}

const std::string& LocaleSetUp() {
    // LANG decides for all categories, also over LC_ALL; only the character classes can be set
    // apart. A locale that the system does not have changes nothing.
    const char* language = std::getenv("LANG");
    std::setlocale(LC_ALL, language != nullptr ? language : "");
    if (const char* classes = std::getenv("LC_CTYPE"))
        std::setlocale(LC_CTYPE, classes);
    zorsysuser = CurrentHost().LoginName(getuid()).substr(0, kLongestUser);
    return zorsysuser;
}

const std::string& BinDirectory() {
    if (zorsysbin.empty())
        zorsysbin = zorsysroot + "/bin";
    return zorsysbin;
}

} // namespace grolof
