#include "support/installation.h"

#include <clocale>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#include "common/testing.h"

namespace grolof {
namespace {

using testing_support::CaptureStderr;
using testing_support::ScopedHost;
using testing_support::ScopedVariable;
using testing_support::StatusOf;

struct Root {
    const char* Zorroot; // none: not set
    const char* Texts;   // root|files|boot
};

std::string Texts() {
    return zorsysroot + "|" + zorsysfiles + "|" + zorsysboot;
}

class RootFromEnvironment : public testing::TestWithParam<Root> {};

TEST_P(RootFromEnvironment, EndsInOneSlash) {
    const ScopedVariable root("ZORROOT", GetParam().Zorroot);
    RootSetUp(kRootAgain);
    EXPECT_EQ(Texts(), GetParam().Texts);
}

INSTANTIATE_TEST_SUITE_P(
    Roots, RootFromEnvironment,
    testing::Values(Root{nullptr, "/zorsys/|/zorsys/zorfiles|/zorsys/zorboot.sys"},
                    Root{"/opt/z/", "/opt/z/|/opt/z/zorfiles|/opt/z/zorboot.sys"},
                    Root{"/opt/z", "/opt/z/|/opt/z/zorfiles|/opt/z/zorboot.sys"},
                    Root{"relative", "relative/|relative/zorfiles|relative/zorboot.sys"},
                    Root{"/opt//", "/opt//|/opt//zorfiles|/opt//zorboot.sys"},
                    Root{"", "/|/zorfiles|/zorboot.sys"}));

// Whether the run-time system is up is a matter of the variable's presence only.
TEST(Root, TellsWhetherTheRunTimeSystemIsUp) {
    {
        const ScopedVariable home("ZoRsHmId", "");
        EXPECT_EQ(RootSetUp(kRootAgain), 1);
        EXPECT_EQ(zorActive, 1);
    }
    const ScopedVariable home("ZoRsHmId", nullptr);
    EXPECT_EQ(RootSetUp(), 1) << "a later call remembers";
    EXPECT_EQ(RootSetUp("/elsewhere"), 1);
    EXPECT_EQ(RootSetUp(kRootAgain), 0);
    EXPECT_EQ(zorActive, 0);
}

TEST(Root, LaterCallsChangeNothing) {
    const ScopedVariable first("ZORROOT", "/first");
    RootSetUp(kRootAgain);
    const ScopedVariable second("ZORROOT", "/second");
    RootSetUp();
    EXPECT_EQ(zorsysroot, "/first/");
    RootSetUp("/third");
    EXPECT_EQ(zorsysroot, "/first/");
    RootSetUp(kRootAgain);
    EXPECT_EQ(zorsysroot, "/second/");
}

// What the first call of a process does needs a process of its own: the "threadsafe" style runs
// the test program anew. The child prints the root and ends with zorActive as its status.
class RootDeathTest : public testing::Test {
protected:
    RootDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void FirstCall(const char* defaultRoot) {
        const int active = RootSetUp(defaultRoot);
        std::fprintf(stderr, "root=%s", zorsysroot.c_str());
        std::exit(active);
    }
};

TEST_F(RootDeathTest, FirstCallTakesTheArgument) {
    const ScopedVariable root("ZORROOT", nullptr);
    const ScopedVariable home("ZoRsHmId", "5");
    EXPECT_EXIT(FirstCall("/given"), testing::ExitedWithCode(1), "^root=/given/$");
}

TEST_F(RootDeathTest, FirstCallPrefersTheEnvironment) {
    const ScopedVariable root("ZORROOT", "/set");
    const ScopedVariable home("ZoRsHmId", nullptr);
    EXPECT_EXIT(FirstCall("/given"), testing::ExitedWithCode(0), "^root=/set/$");
}

TEST_F(RootDeathTest, FirstCallFallsBackToTheUsualPlace) {
    const ScopedVariable root("ZORROOT", nullptr);
    const ScopedVariable home("ZoRsHmId", nullptr);
    EXPECT_EXIT(FirstCall(nullptr), testing::ExitedWithCode(0), "^root=/zorsys/$");
}

TEST_F(RootDeathTest, FirstCallMayAskForTheEnvironmentOnly) {
    const ScopedVariable root("ZORROOT", nullptr);
    const ScopedVariable home("ZoRsHmId", nullptr);
    EXPECT_EXIT(FirstCall(kRootAgain), testing::ExitedWithCode(0), "^root=/zorsys/$");
}

// 128 bytes, end mark included, must hold the root, its slash and "zorboot.sys" (11).
TEST(Root, LongestRootFillsItsArea) {
    const std::string longest(128 - 1 - 11 - 1, 'r');
    const ScopedVariable root("ZORROOT", longest.c_str());
    RootSetUp(kRootAgain);
    EXPECT_EQ(zorsysboot, longest + "/zorboot.sys");
    EXPECT_EQ(zorsysboot.size(), 127U);
    const ScopedVariable slashed("ZORROOT", (longest + "/").c_str());
    RootSetUp(kRootAgain);
    EXPECT_EQ(zorsysboot, longest + "/zorboot.sys");
}

TEST(Root, OverlongRootEndsTheRun) {
    const ScopedHost host;
    const ScopedVariable good("ZORROOT", "/good");
    RootSetUp(kRootAgain);
    for (const std::size_t length : {116U, 128U, 300U, 100'000U}) {
        const std::string tooLong(length, 'r');
        const ScopedVariable root("ZORROOT", tooLong.c_str());
        CaptureStderr errors;
        EXPECT_EQ(StatusOf([] { RootSetUp(kRootAgain); }), 1);
        EXPECT_EQ(errors.Take(), tooLong + ": too long\n");
        EXPECT_EQ(zorsysroot, "/good/");
    }
}

TEST(BinDirectory, LiesUnderTheRootOfItsFirstUse) {
    zorsysbin.clear();
    const ScopedVariable root("ZORROOT", "/opt/z");
    RootSetUp(kRootAgain);
    EXPECT_EQ(BinDirectory(), "/opt/z//bin");
    const ScopedVariable other("ZORROOT", "/other");
    RootSetUp(kRootAgain);
    EXPECT_EQ(BinDirectory(), "/opt/z//bin");
    zorsysbin.clear();
    EXPECT_EQ(BinDirectory(), "/other//bin");
    zorsysbin.clear();
}

TEST(User, IsTheLoginNameOfTheRealUser) {
    const ScopedHost host;
    ScopedHost::SetLogin("operator");
    EXPECT_EQ(LocaleSetUp(), "operator");
    EXPECT_EQ(&LocaleSetUp(), &zorsysuser);
}

TEST(User, IsCutToItsArea) {
    const ScopedHost host;
    ScopedHost::SetLogin("fifteen-letters");
    EXPECT_EQ(LocaleSetUp(), "fifteen-letters");
    ScopedHost::SetLogin("sixteen--letters");
    EXPECT_EQ(LocaleSetUp(), "sixteen--letter");
}

TEST(User, IsEmptyWithoutPasswordEntry) {
    const ScopedHost host;
    ScopedHost::SetLogin("");
    EXPECT_EQ(LocaleSetUp(), "");
}

TEST(User, IsAskedForByItsRealIdentity) {
    const ScopedHost host;
    static uid_t s_asked;
    s_asked = getuid() + 1;
    CurrentHost().LoginName = [](uid_t id) {
        s_asked = id;
        return std::string("x");
    };
    LocaleSetUp();
    EXPECT_EQ(s_asked, getuid());
}

// The one locale besides "C" that is commonly there without being installed.
constexpr const char* kOther = "C.UTF-8";

class Locale : public testing::Test {
protected:
    void SetUp() override {
        if (std::setlocale(LC_ALL, kOther) == nullptr)
            GTEST_SKIP() << "only one locale here";
        m_name = std::setlocale(LC_ALL, nullptr);
        std::setlocale(LC_ALL, "C");
    }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }

    static std::string Of(int category) { return std::setlocale(category, nullptr); }
    const std::string& Other() const { return m_name; }

    ScopedVariable m_language{"LANG", nullptr};
    ScopedVariable m_all{"LC_ALL", nullptr};
    ScopedVariable m_classes{"LC_CTYPE", nullptr};

private:
    std::string m_name;
};

TEST_F(Locale, ComesFromTheLanguage) {
    const ScopedVariable language("LANG", kOther);
    LocaleSetUp();
    EXPECT_EQ(Of(LC_ALL), Other());
}

TEST_F(Locale, LanguageStandsAboveTheOverrideOfTheSystem) {
    const ScopedVariable language("LANG", kOther);
    const ScopedVariable all("LC_ALL", "C");
    LocaleSetUp();
    EXPECT_EQ(Of(LC_TIME), Other());
    EXPECT_EQ(Of(LC_CTYPE), Other());
}

TEST_F(Locale, IsTheDefaultOfTheSystemWithoutLanguage) {
    const ScopedVariable all("LC_ALL", kOther);
    LocaleSetUp();
    EXPECT_EQ(Of(LC_ALL), Other());
}

TEST_F(Locale, EmptyLanguageIsTheDefaultToo) {
    const ScopedVariable language("LANG", "");
    const ScopedVariable all("LC_ALL", kOther);
    LocaleSetUp();
    EXPECT_EQ(Of(LC_ALL), Other());
}

TEST_F(Locale, CharacterClassesAreSetApart) {
    const ScopedVariable language("LANG", kOther);
    const ScopedVariable classes("LC_CTYPE", "C");
    LocaleSetUp();
    EXPECT_EQ(Of(LC_CTYPE), "C");
    EXPECT_EQ(Of(LC_TIME), Other());
}

TEST_F(Locale, UnknownLanguageChangesNothing) {
    const ScopedVariable language("LANG", "no-such-locale");
    const ScopedVariable classes("LC_CTYPE", "nor-this-one");
    LocaleSetUp();
    EXPECT_EQ(Of(LC_ALL), "C");
}

} // namespace
} // namespace grolof
