#include "support/date.h"

#include <array>
#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "common/testing.h"

namespace grolof {
namespace {

using testing_support::ScopedHost;

constexpr unsigned DayByte(unsigned weekday, unsigned day) {
    return weekday << 5 | day;
}

TEST(DateStamp, HoldsTheLastMomentOfACentury) {
    ScopedHost host;
    ScopedHost::SetLocalTime(1999, 12, 31, 23, 59, 59, 995'000);
    DateStamp stamp;
    DateStampNow(stamp);
    const DateStamp friday = {29, 12, DayByte(5, 31), 23, 59, 59, 99, 0};
    EXPECT_EQ(stamp, friday);
}

TEST(DateStamp, HoldsASundayMorning) {
    ScopedHost host;
    ScopedHost::SetLocalTime(2024, 3, 3, 9, 7, 2, 9'999);
    DateStamp stamp;
    stamp.fill(0xFF);
    DateStampNow(stamp);
    const DateStamp sunday = {54, 3, DayByte(0, 3), 9, 7, 2, 0, 0};
    EXPECT_EQ(stamp, sunday);
}

TEST(DateStamp, HoldsASaturdayInTheHighBits) {
    ScopedHost host;
    ScopedHost::SetLocalTime(2000, 1, 1, 0, 0, 0, 10'000);
    DateStamp stamp;
    DateStampNow(stamp);
    const DateStamp saturday = {30, 1, DayByte(6, 1), 0, 0, 0, 1, 0};
    EXPECT_EQ(stamp, saturday);
}

TEST(DateStamp, ReturnsItsSeconds) {
    ScopedHost host;
    ScopedHost::SetTime({1'700'000'000, 123});
    DateStamp stamp;
    EXPECT_EQ(DateStampNow(stamp), 1'700'000'000);
}

TEST(DateStamp, FollowsTheRealClock) {
    const std::time_t before = std::time(nullptr);
    DateStamp stamp;
    const std::time_t taken = DateStampNow(stamp);
    EXPECT_GE(taken, before);
    EXPECT_LE(taken, std::time(nullptr));
}

TEST(DateParts, TakeAStampApart) {
    const DateParts parts = DatePartsOf({54, 3, DayByte(2, 5), 9, 7, 2, 88, 0});
    EXPECT_EQ(parts.Day, 5);
    EXPECT_EQ(parts.Month, 3);
    EXPECT_EQ(parts.Year, 2024);
    EXPECT_EQ(parts.Hour, 9);
    EXPECT_EQ(parts.Minute, 7);
    EXPECT_EQ(parts.Second, 2);
}

TEST(DateParts, LookOnlyAtTheirBits) {
    const DateParts parts = DatePartsOf({255, 0xFC, 0xFF, 0xF7, 0xFB, 0xFB, 0, 0});
    EXPECT_EQ(parts.Day, 31);
    EXPECT_EQ(parts.Month, 12);
    EXPECT_EQ(parts.Year, 2225);
    EXPECT_EQ(parts.Hour, 0x17);
    EXPECT_EQ(parts.Minute, 0x3B);
    EXPECT_EQ(parts.Second, 0x3B);
}

TEST(DateParts, GiveTheDateTextOfACopyBook) {
    ScopedHost host;
    ScopedHost::SetLocalTime(2024, 3, 5, 9, 7, 2);
    DateStamp stamp;
    DateStampNow(stamp);
    const DateParts at = DatePartsOf(stamp);
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%02d %s %04d  %02d:%02d:%02d", at.Day,
                  MonthAbbrev[static_cast<std::size_t>(at.Month)], at.Year, at.Hour, at.Minute,
                  at.Second);
    EXPECT_STREQ(text.data(), "05 MAR 2024  09:07:02");
}

TEST(MonthAbbrev, StartsWithJanuaryAtOne) {
    std::string all;
    for (const char* name : MonthAbbrev)
        all += std::string(name) + ",";
    EXPECT_EQ(all, ",JAN,FEB,MAR,APR,MAY,JUN,JUL,AUG,SEP,OCT,NOV,DEC,");
}

} // namespace
} // namespace grolof
