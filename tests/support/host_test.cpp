#include "support/host.h"

#include <ctime>
#include <string>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "common/testing.h"

namespace grolof {
namespace {

using testing_support::ScopedHost;
using testing_support::StatusOf;

TEST(Host, TellsTheTime) {
    const std::time_t before = std::time(nullptr);
    const timeval now = CurrentHost().Now();
    EXPECT_GE(now.tv_sec, before);
    EXPECT_LE(now.tv_sec, std::time(nullptr));
    EXPECT_LT(now.tv_usec, 1'000'000);
}

TEST(Host, KnowsLoginNames) {
    const passwd* entry = getpwuid(getuid());
    const std::string expected = entry != nullptr ? entry->pw_name : "";
    EXPECT_EQ(CurrentHost().LoginName(getuid()), expected);
}

TEST(Host, UnknownUserHasNoName) {
    constexpr uid_t kNobodyAtAll = 3'999'999'999U;
    if (getpwuid(kNobodyAtAll) != nullptr)
        GTEST_SKIP() << "the user exists here";
    EXPECT_EQ(CurrentHost().LoginName(kNobodyAtAll), "");
}

TEST(Host, EndOfRunCanBeCaught) {
    ScopedHost host;
    EXPECT_EQ(StatusOf([] { EndRun(255); }), 255);
    EXPECT_EQ(StatusOf([] {}), -1);
}

TEST(HostDeathTest, EndOfRunExits) {
    EXPECT_EXIT(EndRun(3), testing::ExitedWithCode(3), "");
}

TEST(HostDeathTest, EndOfRunNeverReturns) {
    EXPECT_DEATH(
        {
            CurrentHost().EndRun = [](int) {};
            EndRun(0);
        },
        "");
}

TEST(ScopedHost, PutsBackWhatItReplaced) {
    const auto before = CurrentHost().Now;
    {
        ScopedHost host;
        EXPECT_NE(CurrentHost().Now, before);
        EXPECT_EQ(CurrentHost().LoginName(0), "tester");
    }
    EXPECT_EQ(CurrentHost().Now, before);
}

} // namespace
} // namespace grolof
