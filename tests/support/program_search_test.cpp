#include "support/program_search.h"

#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "common/testing.h"
#include "support/installation.h"

namespace grolof {
namespace {

using testing_support::ScopedDirectory;
using testing_support::ScopedVariable;
using testing_support::TemporaryDirectory;
using testing_support::WriteFile;

std::string OrNone(const char* found) {
    return found != nullptr ? found : "(none)";
}

// A current directory of one's own, and neither ZORPATH nor PATH.
class Search : public testing::Test {
protected:
    Search() { Forget(); }

    // Empties the cache, so that a search looks at the files.
    static void Forget() { EXPECT_EQ(ProgramSearch(nullptr), nullptr); }

    static std::string Find(const std::string& name, const char* pathList = nullptr) {
        Forget();
        return OrNone(ProgramSearch(name.c_str(), pathList));
    }

    // Makes a file of these permissions, by a path from the current directory.
    static void Make(const std::string& path, mode_t mode = 0755) {
        WriteFile(path, "#!/bin/sh\n");
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
    }

    static void MakeDirectory(const std::string& path) { ASSERT_EQ(mkdir(path.c_str(), 0755), 0); }

    TemporaryDirectory m_here;
    ScopedDirectory m_inside{m_here.Path()};
    ScopedVariable m_zorpath{"ZORPATH", nullptr};
    ScopedVariable m_path{"PATH", nullptr};
};

TEST_F(Search, CurrentDirectoryComesFirst) {
    Make("sh");
    Make("bin/sh");
    EXPECT_EQ(Find("sh", "bin"), "./sh");
}

TEST_F(Search, CurrentDirectoryIsPassedOverWhenItsFileIsOfNoUse) {
    Make("sh", 0644);
    Make("bin/sh");
    EXPECT_EQ(Find("sh", "bin"), "bin/sh");
    MakeDirectory("tool");
    Make("bin/tool");
    EXPECT_EQ(Find("tool", "bin"), "bin/tool");
}

TEST_F(Search, FirstUsableElementWins) {
    MakeDirectory("a");
    Make("b/sh", 0600);
    Make("c/sh");
    Make("d/sh");
    EXPECT_EQ(Find("sh", "a:b:absent:c:d"), "c/sh");
    EXPECT_EQ(Find("sh", "d:c"), "d/sh");
    EXPECT_EQ(Find("sh", "a:b"), "(none)");
}

TEST_F(Search, GivenListComesBeforeTheEnvironment) {
    Make("given/sh");
    Make("zor/sh");
    Make("path/sh");
    const ScopedVariable path("PATH", "path");
    EXPECT_EQ(Find("sh"), "path/sh");
    const ScopedVariable zorpath("ZORPATH", "zor");
    EXPECT_EQ(Find("sh"), "zor/sh");
    EXPECT_EQ(Find("sh", "given"), "given/sh");
}

TEST_F(Search, OurPathReplacesTheOtherWhollyAlsoWhenEmpty) {
    Make("path/sh");
    const ScopedVariable path("PATH", "path");
    MakeDirectory("zor");
    const ScopedVariable zorpath("ZORPATH", "zor");
    EXPECT_EQ(Find("sh"), "(none)");
    const ScopedVariable empty("ZORPATH", "");
    EXPECT_EQ(Find("sh"), OrNone(access("/sh", F_OK) == 0 ? "/sh" : nullptr));
}

TEST_F(Search, WithoutAnyListOnlyTheCurrentDirectoryCounts) {
    Make("here");
    EXPECT_EQ(Find("here"), "./here");
    EXPECT_EQ(Find("elsewhere"), "(none)");
}

// An empty element is "/": the name behind it is an absolute path.
TEST_F(Search, EmptyElementIsTheRootDirectory) {
    Make("tool");
    const std::string fromRoot = m_here.File("tool").substr(1);
    MakeDirectory("usr");
    EXPECT_EQ(Find(fromRoot, "usr::bin"), "/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, ":bin"), "/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, "usr:"), "/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, ""), "/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, "usr:bin"), "(none)");
}

TEST_F(Search, EmptyElementTakesItsTurn) {
    Make("tool");
    const std::string fromRoot = m_here.File("tool").substr(1);
    Make("first/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, "first::bin"), "first/" + fromRoot);
    EXPECT_EQ(Find(fromRoot, "bin::first"), "/" + fromRoot);
}

TEST_F(Search, NameWithAPlaceIsTakenAsItStands) {
    Make("bin/sh", 0);
    Make("sh");
    EXPECT_EQ(Find("./sh", "bin"), "./sh");
    EXPECT_EQ(Find("./bin/sh"), "./bin/sh") << "no permission is asked for";
    EXPECT_EQ(Find(m_here.File("bin/sh")), m_here.File("bin/sh"));
    EXPECT_EQ(Find("../absent"), "(none)");
    EXPECT_EQ(Find("./bin"), "(none)") << "a directory";
    EXPECT_EQ(Find("."), "(none)");
    EXPECT_EQ(Find("/"), "(none)");
    EXPECT_EQ(Find(".hidden", "bin"), "(none)");
}

TEST_F(Search, GeneratedCodeNeedsNoPermission) {
    Make("a.int", 0);
    Make("lib/program.gnt", 0);
    Make("b.exe", 0);
    Make("int", 0);
    MakeDirectory("c.gnt");
    EXPECT_EQ(Find("a.int"), "./a.int");
    EXPECT_EQ(Find("program.gnt", "lib"), "lib/program.gnt");
    EXPECT_EQ(Find("c.gnt"), "./c.gnt") << "existence alone counts";
    EXPECT_EQ(Find("b.exe"), "(none)");
    EXPECT_EQ(Find("int"), "(none)");
}

TEST_F(Search, EmptyNameIsNothing) {
    EXPECT_EQ(Find("", ".:/"), "(none)");
}

// Element and name share 346 bytes.
TEST_F(Search, LongElementIsCut) {
    const std::string deep =
        std::string(100, 'd') + "/" + std::string(100, 'e') + "/" + std::string(142, 'f');
    ASSERT_EQ(deep.size(), 346U - 2U);
    Make(deep + "/sh");
    EXPECT_EQ(Find("sh", deep.c_str()), deep + "/sh");
    EXPECT_EQ(Find("sh", (deep + "xyz").c_str()), deep + "/sh");
    EXPECT_EQ(Find("sh", (deep + std::string(5000, 'x') + ":bin").c_str()), deep + "/sh");
    Make(deep + "/ksh");
    EXPECT_EQ(Find("ksh", deep.c_str()), "(none)") << "one byte short";
}

TEST_F(Search, NameThatLeavesNoRoomCutsTheElementToNothing) {
    const std::string name(346, 'n');
    EXPECT_EQ(Find(name, "bin"), "(none)");
    EXPECT_EQ(Find(std::string(100'000, 'n'), "bin"), "(none)");
}

TEST_F(Search, AnswerStaysUntilTheNextCall) {
    Make("bin/one");
    Make("bin/two");
    const char* one = ProgramSearch("one", "bin");
    EXPECT_STREQ(one, "bin/one");
    EXPECT_STREQ(ProgramSearch("two", "bin"), "bin/two");
}

TEST_F(Search, TellsTheStickyBit) {
    Make("plain");
    Make("sticky", 01755);
    struct stat status {};
    ASSERT_EQ(stat("sticky", &status), 0);
    if ((status.st_mode & S_ISVTX) == 0)
        GTEST_SKIP() << "no sticky bit on files here";
    Find("sticky");
    EXPECT_EQ(stickyBit, 1);
    Find("absent", "bin");
    EXPECT_EQ(stickyBit, 1) << "a failure leaves it";
    Find("plain");
    EXPECT_EQ(stickyBit, 0);
    Find("./sticky");
    EXPECT_EQ(stickyBit, 1);
}

class Cache : public Search {
protected:
    static std::string Cached(const std::string& name, const char* pathList = "bin") {
        return OrNone(ProgramSearch(name.c_str(), pathList));
    }

    // Finds a program and then takes it away, so that only the cache can find it again.
    static void Learn(const std::string& name, const std::string& directory = "bin") {
        Make(directory + "/" + name);
        EXPECT_EQ(Cached(name, directory.c_str()), directory + "/" + name);
        ASSERT_EQ(unlink((directory + "/" + name).c_str()), 0);
    }
};

TEST_F(Cache, AnswersAtOnceWhateverTheList) {
    Learn("tool");
    Make("tool");
    EXPECT_EQ(Cached("tool"), "bin/tool");
    EXPECT_EQ(Cached("tool", "elsewhere"), "bin/tool");
    Forget();
    EXPECT_EQ(Cached("tool"), "./tool");
}

TEST_F(Cache, KeepsTheLastFive) {
    for (const char* name : {"p1", "p2", "p3", "p4", "p5"})
        Learn(name);
    EXPECT_EQ(Cached("p1"), "bin/p1") << "an answer makes no entry younger";
    Learn("p6");
    EXPECT_EQ(Cached("p1"), "(none)");
    for (const char* name : {"p2", "p3", "p4", "p5", "p6"})
        EXPECT_EQ(Cached(name), std::string("bin/") + name);
}

TEST_F(Cache, FailuresTakeNoEntry) {
    for (const char* name : {"p1", "p2", "p3", "p4", "p5"})
        Learn(name);
    EXPECT_EQ(Cached("absent"), "(none)");
    EXPECT_EQ(Cached("p1"), "bin/p1");
}

TEST_F(Cache, NamesWithAPlaceTakeEntriesButAreLookedAtAfresh) {
    Learn("p1");
    Make("file");
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(Cached("./file"), "./file");
    EXPECT_EQ(Cached("p1"), "bin/p1");
    EXPECT_EQ(Cached("./file"), "./file");
    EXPECT_EQ(Cached("p1"), "(none)");
    ASSERT_EQ(unlink("file"), 0);
    EXPECT_EQ(Cached("./file"), "(none)");
}

TEST_F(Cache, TakesNamesOfThirtyBytes) {
    Learn(std::string(30, 'n'));
    Learn(std::string(31, 'm'));
    EXPECT_EQ(Cached(std::string(30, 'n')), "bin/" + std::string(30, 'n'));
    EXPECT_EQ(Cached(std::string(31, 'm')), "(none)");
}

TEST_F(Cache, TakesPathsOf88Bytes) {
    Learn("n", std::string(86, 'd'));
    Learn("m", std::string(87, 'd'));
    EXPECT_EQ(Cached("n"), std::string(86, 'd') + "/n");
    EXPECT_EQ(Cached("m"), "(none)");
}

TEST_F(Cache, AnswerLeavesTheStickyBit) {
    Learn("tool");
    stickyBit = 1;
    EXPECT_EQ(Cached("tool"), "bin/tool");
    EXPECT_EQ(stickyBit, 1);
}

TEST_F(Cache, EmptyEntriesMatchNoName) {
    EXPECT_EQ(Cached(""), "(none)");
}

// Whether the cache is off at start shows only in a process that never asked for it.
TEST(CacheDeathTest, IsOffUntilAskedFor) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            const TemporaryDirectory directory;
            WriteFile(directory.File("tool"), "");
            chmod(directory.File("tool").c_str(), 0755);
            const char* list = directory.Path().c_str();
            const bool found = ProgramSearch("tool", list) != nullptr;
            unlink(directory.File("tool").c_str());
            const bool again = ProgramSearch("tool", list) != nullptr;
            std::_Exit(found && !again ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

class Suffixes : public Search {
protected:
    static std::string FindWith(const char* name, const char* suffixList) {
        Forget();
        s_suffix = "(untouched)";
        return OrNone(ProgramSearchSuffixes(name, "bin", suffixList, &s_suffix));
    }
    static inline std::string s_suffix;
};

TEST_F(Suffixes, FirstFoundWins) {
    Make("bin/prog.gnt", 0);
    Make("bin/prog.so");
    EXPECT_EQ(FindWith("prog", "int:gnt:so"), "bin/prog.gnt");
    EXPECT_EQ(s_suffix, "gnt");
    EXPECT_EQ(FindWith("prog", "so:gnt"), "bin/prog.so");
    EXPECT_EQ(s_suffix, "so");
    EXPECT_EQ(FindWith("prog", "int:exe"), "(none)");
    EXPECT_EQ(s_suffix, "(untouched)");
}

TEST_F(Suffixes, EmptyElementIsTheBareName) {
    Make("bin/prog");
    Make("bin/prog.so");
    EXPECT_EQ(FindWith("prog", "int::so"), "bin/prog");
    EXPECT_EQ(s_suffix, "");
    EXPECT_EQ(FindWith("prog", "so:"), "bin/prog.so");
    EXPECT_EQ(FindWith("prog", "int:"), "bin/prog");
    EXPECT_EQ(s_suffix, "");
    EXPECT_EQ(FindWith("prog", ":so"), "bin/prog");
    EXPECT_EQ(FindWith("prog", "int"), "(none)") << "the bare name only when asked for";
}

TEST_F(Suffixes, NoListIsThePlainSearchAndAnEmptyOneNone) {
    Make("bin/prog");
    EXPECT_EQ(FindWith("prog", nullptr), "bin/prog");
    EXPECT_EQ(FindWith("prog", ""), "(none)");
}

TEST_F(Suffixes, ListIsCutTo23Bytes) {
    Make("bin/prog.so");
    Make("bin/prog.s");
    EXPECT_EQ(FindWith("prog", "aaaaaaaaa:bbbbbbbbbb:so"), "bin/prog.so"); // 23 bytes
    EXPECT_EQ(FindWith("prog", "aaaaaaaaaa:bbbbbbbbbb:so"), "bin/prog.s");
    EXPECT_EQ(s_suffix, "s");
}

TEST_F(Suffixes, OutTextMayBeMissing) {
    Make("bin/prog.so");
    EXPECT_EQ(OrNone(ProgramSearchSuffixes("prog", "bin", "so", nullptr)), "bin/prog.so");
    EXPECT_EQ(ProgramSearchSuffixes(nullptr, "bin", "so", nullptr), nullptr);
}

class BinProgram : public Search {
protected:
    BinProgram() { zorsysbin = m_here.File("installation/bin"); }
    ~BinProgram() override { zorsysbin.clear(); }
};

TEST_F(BinProgram, IsTakenWhenItExists) {
    Make("installation/bin/scrlib", 0);
    Make("scrlib");
    EXPECT_EQ(OrNone(ProgramInBinDirectory("scrlib")), m_here.File("installation/bin/scrlib"));
}

TEST_F(BinProgram, IsSearchedForOtherwise) {
    Make("path/scrlib");
    const ScopedVariable path("PATH", "path");
    EXPECT_EQ(OrNone(ProgramInBinDirectory("scrlib")), "path/scrlib");
    EXPECT_EQ(OrNone(ProgramInBinDirectory("absent")), "(none)");
}

struct Permission {
    const char* Why;
    mode_t Mode;
    uid_t Owner;
    gid_t Group;
    int Execute, Read; // results in the two modes
};

class Permissions : public testing::TestWithParam<Permission> {
protected:
    ~Permissions() override { SetPermissionMode(PermissionMode::Execute); }

    // 32 supplementary groups that count, 100 to 131, and one more that does not.
    static Identity Asker() {
        Identity who{1, 2, 11, 12, {}};
        for (gid_t group = 100; group <= 132; ++group)
            who.Groups.push_back(group);
        return who;
    }
};

TEST_P(Permissions, AreCheckedByTheFirstRuleThatApplies) {
    const Permission& row = GetParam();
    struct stat status {};
    status.st_mode = row.Mode;
    status.st_uid = row.Owner;
    status.st_gid = row.Group;
    EXPECT_EQ(FilePermissionCheck(status, Asker()), row.Execute) << row.Why;
    SetPermissionMode(PermissionMode::Read);
    EXPECT_EQ(FilePermissionCheck(status, Asker()), row.Read) << row.Why;
    SetPermissionMode(PermissionMode::Execute);
    EXPECT_EQ(FilePermissionCheck(status, Asker()), row.Execute) << row.Why;
}

constexpr mode_t kFile = S_IFREG;

INSTANTIATE_TEST_SUITE_P(
    Rules, Permissions,
    testing::Values(
        Permission{"effective owner", kFile | 0500, 1, 99, 0, 0},
        Permission{"real owner", kFile | 0500, 2, 99, 0, 0},
        Permission{"owner who cannot read", kFile | 0177, 1, 99, -1, -1},
        Permission{"owner who can only read", kFile | 0477, 1, 99, -1, 0},
        Permission{"owner without bits, group and others do not help", kFile | 0077, 2, 11, -1, -1},
        Permission{"group member", kFile | 0751, 9, 11, 0, 0},
        Permission{"real group", kFile | 0050, 9, 12, 0, 0},
        Permission{"group that can only execute", kFile | 0711, 9, 12, -1, -1},
        Permission{"group that can only read", kFile | 0740, 9, 12, -1, 0},
        Permission{"group without bits, others do not help", kFile | 0707, 9, 11, -1, -1},
        Permission{"first supplementary group", kFile | 0050, 9, 100, 0, 0},
        Permission{"last supplementary group that counts", kFile | 0050, 9, 131, 0, 0},
        Permission{"supplementary group beyond those", kFile | 0050, 9, 132, -1, -1},
        Permission{"others, execute only", kFile | 0701, 9, 99, 0, -1},
        Permission{"others, read only", kFile | 0704, 9, 99, -1, 0},
        Permission{"others without bits", kFile | 0770, 9, 99, -1, -1},
        Permission{"beyond the supplementary groups others apply", kFile | 0705, 9, 132, 0, 0},
        Permission{"directory", S_IFDIR | 0777, 1, 11, -1, -1},
        Permission{"device", S_IFCHR | 0777, 1, 11, -1, -1},
        Permission{"pipe", S_IFIFO | 0777, 9, 99, -1, -1}));

TEST(Permissions, WithoutSupplementaryGroupsOthersApply) {
    struct stat status {};
    status.st_uid = 9;
    status.st_gid = 99;
    const Identity who{1, 2, 11, 12, {}};
    status.st_mode = kFile | 0701;
    EXPECT_EQ(FilePermissionCheck(status, who), 0);
    status.st_mode = kFile | 0770;
    EXPECT_EQ(FilePermissionCheck(status, who), -1);
}

TEST(Permissions, SuperUserHasNoPrivilege) {
    struct stat status {};
    status.st_uid = 9;
    status.st_gid = 99;
    status.st_mode = kFile | 0770;
    EXPECT_EQ(FilePermissionCheck(status, Identity{0, 0, 0, 0, {}}), -1);
}

TEST(Permissions, AreThoseOfThisProcess) {
    const Identity who = CurrentIdentity();
    EXPECT_EQ(who.EffectiveUser, geteuid());
    EXPECT_EQ(who.RealUser, getuid());
    EXPECT_EQ(who.EffectiveGroup, getegid());
    EXPECT_EQ(who.RealGroup, getgid());
    EXPECT_EQ(static_cast<int>(who.Groups.size()), getgroups(0, nullptr));
    struct stat status {};
    status.st_uid = geteuid();
    status.st_mode = kFile | 0500;
    EXPECT_EQ(FilePermissionCheck(status), 0);
    status.st_mode = kFile | 0477;
    EXPECT_EQ(FilePermissionCheck(status), -1);
}

} // namespace
} // namespace grolof
