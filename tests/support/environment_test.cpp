#include "support/environment.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "common/testing.h"

extern "C" char** environ; // NOLINT(readability-redundant-declaration)

namespace grolof {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::CaptureStdout;

// Gives the process an environment of a few entries and afterwards the one that it had. That is
// kept as a copy, since the owned table is released once it is not the environment any more.
class Environment : public testing::Test {
protected:
    Environment() {
        // Not destroyed at exit: the last copy is what exit handlers see.
        static auto& copies = *new std::vector<std::unique_ptr<std::vector<char*>>>;
        copies.push_back(std::make_unique<std::vector<char*>>());
        m_before = copies.back().get();
        for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
            m_before->push_back(*entry);
        m_before->push_back(nullptr);
        environ = m_small.data();
    }
    ~Environment() override {
        EnvironmentRealloc = std::realloc;
        environ = m_before->data();
    }

    static std::vector<std::string> Entries() {
        std::vector<std::string> entries;
        for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry)
            entries.emplace_back(*entry);
        return entries;
    }

    static void* NoMemory(void*, std::size_t) { return nullptr; }

    std::array<char, 9> m_first{"ONE=1\0\0\0"};
    std::array<char, 9> m_second{"TWO=2\0\0\0"};
    std::array<char*, 3> m_small{m_first.data(), m_second.data(), nullptr};

private:
    std::vector<char*>* m_before;
};

TEST_F(Environment, PutKeepsTheTextItself) {
    std::array<char, 16> text{"SHELL=/bin/sh"};
    errno = 0;
    EXPECT_EQ(putenv(text.data()), 0);
    EXPECT_EQ(errno, ENOENT) << "no entry matched, and that shows";
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2", "SHELL=/bin/sh"));
    EXPECT_EQ(getenv("SHELL"), text.data() + 6);
    text[6] = '!';
    EXPECT_STREQ(getenv("SHELL"), "!bin/sh");
    unsetenv("SHELL");
}

TEST_F(Environment, PutReplacesTheEntryOfTheSameName) {
    std::array<char, 16> first{"SHELL=/bin/sh"};
    std::array<char, 16> second{"SHELL=/bin/ksh"};
    std::array<char, 8> front{"ONE=x"};
    EXPECT_EQ(putenv(first.data()), 0);
    errno = 0;
    EXPECT_EQ(putenv(second.data()), 0);
    EXPECT_EQ(putenv(front.data()), 0);
    EXPECT_EQ(errno, 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=x", "TWO=2", "SHELL=/bin/ksh"));
    EXPECT_EQ(environ[2], second.data());
}

TEST_F(Environment, PutOfABareNameReplacesAndHasNoNameItself) {
    std::array<char, 8> bare{"TWO"};
    EXPECT_EQ(putenv(bare.data()), 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO"));
    EXPECT_EQ(putenv(bare.data()), 0) << "an entry without \"=\" is never matched";
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO", "TWO"));
    EXPECT_EQ(unsetenv("TWO"), -1);
}

TEST_F(Environment, NamesMatchWholly) {
    std::array<char, 8> shorter{"TW=1"};
    std::array<char, 8> longer{"TWOO=1"};
    EXPECT_EQ(putenv(shorter.data()), 0);
    EXPECT_EQ(putenv(longer.data()), 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2", "TW=1", "TWOO=1"));
}

TEST_F(Environment, UnsetTakesANameOrAnEntry) {
    EXPECT_EQ(unsetenv("ONE"), 0);
    EXPECT_THAT(Entries(), ElementsAre("TWO=2"));
    EXPECT_EQ(unsetenv("TWO=other"), 0);
    EXPECT_THAT(Entries(), IsEmpty());
}

TEST_F(Environment, UnsetMovesTheLaterEntriesForward) {
    EXPECT_EQ(EnvironmentPut("THREE=3"), 0);
    EXPECT_EQ(unsetenv("TWO"), 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "THREE=3"));
}

TEST_F(Environment, UnsetRemovesTheFirstOfItsNameOnly) {
    std::array<char*, 4> doubled{m_first.data(), m_second.data(), m_first.data(), nullptr};
    environ = doubled.data();
    EXPECT_EQ(unsetenv("ONE"), 0);
    EXPECT_THAT(Entries(), ElementsAre("TWO=2", "ONE=1"));
}

TEST_F(Environment, UnsetOfAnAbsentNameFails) {
    for (const char* name : {"ABSENT", "O", "ONE1", "", "on"}) {
        errno = 0;
        EXPECT_EQ(unsetenv(name), -1) << name;
        EXPECT_EQ(errno, ENOENT) << name;
    }
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2"));
}

TEST_F(Environment, TableIsMadeWithNineSpareEntries) {
    EXPECT_EQ(EnvironmentCapacity(), 0U) << "not ours yet";
    EXPECT_EQ(unsetenv("ABSENT"), -1);
    EXPECT_EQ(EnvironmentCapacity(), 2U + 9U);
    EXPECT_NE(environ, m_small.data());
}

TEST_F(Environment, TableGrowsWhenTwoMoreWouldNotFit) {
    for (int i = 0; i < 8; ++i) { // before the last of these 9 entries stand; 9 + 2 = 11 fits
        EnvironmentPut("V" + std::to_string(i) + "=x");
        EXPECT_EQ(EnvironmentCapacity(), 11U);
    }
    EnvironmentPut("V8=x"); // 10 entries stand: 12 slots are wanted, 10 + 9 are made
    EXPECT_EQ(EnvironmentCapacity(), 19U);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2", "V0=x", "V1=x", "V2=x", "V3=x", "V4=x",
                                       "V5=x", "V6=x", "V7=x", "V8=x"));
    for (std::size_t slot = 11; slot <= 19; ++slot)
        EXPECT_EQ(environ[slot], nullptr) << slot;
}

TEST_F(Environment, ManyEntriesComeAndGo) {
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ(EnvironmentPut("MANY" + std::to_string(i) + "=" + std::to_string(i)), 0);
    EXPECT_STREQ(getenv("MANY499"), "499");
    for (int i = 0; i < 500; ++i)
        ASSERT_EQ(unsetenv(("MANY" + std::to_string(i)).c_str()), 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2"));
}

TEST_F(Environment, TableIsForgottenWhenAnotherTookItsPlace) {
    EnvironmentPut("OURS=1");
    environ = m_small.data();
    EXPECT_EQ(EnvironmentCapacity(), 0U);
    EnvironmentPut("OURS=2");
    EXPECT_EQ(EnvironmentCapacity(), 11U);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2", "OURS=2"));
}

TEST_F(Environment, WorksBesideTheRestOfTheCLibrary) {
    EnvironmentPut("OURS=1");
    ASSERT_EQ(setenv("THEIRS", "2", 1), 0);
    EnvironmentPut("OURS=3");
    EXPECT_STREQ(getenv("THEIRS"), "2");
    EXPECT_STREQ(getenv("OURS"), "3");
    EXPECT_EQ(unsetenv("THEIRS"), 0);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2", "OURS=3"));
}

TEST_F(Environment, NoEnvironmentAtAllIsAnEmptyOne) {
    environ = nullptr;
    EXPECT_EQ(unsetenv("ONE"), -1);
    environ = nullptr;
    EXPECT_EQ(EnvironmentPut("ONE=1"), 0);
    EXPECT_EQ(EnvironmentCapacity(), 9U);
    EXPECT_THAT(Entries(), ElementsAre("ONE=1"));
}

TEST_F(Environment, WithoutMemoryNothingChanges) {
    EnvironmentRealloc = NoMemory;
    EXPECT_EQ(EnvironmentPut("X=1"), -1);
    EXPECT_EQ(unsetenv("ONE"), -1);
    EXPECT_EQ(environ, m_small.data());
    EXPECT_THAT(Entries(), ElementsAre("ONE=1", "TWO=2"));
}

TEST_F(Environment, WithoutMemoryToGrowTheTableStays) {
    for (int i = 0; i < 8; ++i)
        ASSERT_EQ(EnvironmentPut("V" + std::to_string(i) + "=x"), 0);
    char** const table = environ;
    EnvironmentRealloc = NoMemory;
    EXPECT_EQ(EnvironmentPut("V8=x"), -1);
    EXPECT_EQ(environ, table);
    EXPECT_EQ(EnvironmentCapacity(), 11U);
    EXPECT_EQ(Entries().size(), 10U);
    EnvironmentRealloc = std::realloc;
    EXPECT_EQ(EnvironmentPut("V8=x"), 0);
}

TEST_F(Environment, PutOfAStringKeepsACopyAlive) {
    {
        const std::string entry = std::string("SHE") + "LL=/a/long/enough/path/to/be/allocated/sh";
        EXPECT_EQ(EnvironmentPut(entry), 0);
    }
    EXPECT_STREQ(getenv("SHELL"), "/a/long/enough/path/to/be/allocated/sh");
    const char* kept = getenv("SHELL");
    EXPECT_EQ(EnvironmentPut("SHELL=/a/long/enough/path/to/be/allocated/sh"), 0);
    EXPECT_EQ(getenv("SHELL"), kept) << "equal texts share one copy";
}

TEST_F(Environment, CommandsSeeIt) {
    EnvironmentPut("SEEN=by the child");
    CaptureStdout output;
    ASSERT_EQ(std::system("echo \"$ONE, $SEEN\""), 0);
    EXPECT_EQ(output.Take(), "1, by the child\n");
}

} // namespace
} // namespace grolof
