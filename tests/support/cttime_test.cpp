#include "support/cttime.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>

namespace
{

std::string Iso(const CTTime& time)
{
    char buffer[64] = {};
    time.GetExtendedISOTimestamp(buffer, sizeof buffer);
    return buffer;
}

std::string ForDatabases(const CTTime& time)
{
    char buffer[64] = {};
    time.GetDatabaseTimestamp(buffer, sizeof buffer);
    return buffer;
}

/// The moment that a local time stamp tells, by the runtime's own reckoning.
std::int64_t SecondsOf(const std::string& stamp)
{
    std::tm local = {};
    char separator = '\0';
    EXPECT_EQ(std::sscanf(stamp.c_str(), "%4d-%2d-%2d%c%2d:%2d:%2d", &local.tm_year, &local.tm_mon,
                          &local.tm_mday, &separator, &local.tm_hour, &local.tm_min, &local.tm_sec),
              7)
        << stamp;
    local.tm_year -= 1900;
    local.tm_mon -= 1;
    local.tm_isdst = -1;
    return std::mktime(&local);
}

// Days without a change of the clocks anywhere.
constexpr std::int64_t kMoments[] = {86400 * 10, 951782400, 1231006505, 1705320000, 4102358400};

TEST(CTTime, TimestampsTellTheLocalTimeOfTheMoment)
{
    for (const std::int64_t seconds : kMoments)
    {
        const CTTime time = CTTime::FromMilliseconds(seconds * 1000 + 999);
        EXPECT_EQ(SecondsOf(Iso(time)), seconds);
        EXPECT_EQ(SecondsOf(ForDatabases(time)), seconds);
    }
}

TEST(CTTime, TheFormsDifferInTheSeparatorOnly)
{
    const CTTime time = CTTime::FromMilliseconds(1705320000123);
    std::string iso = Iso(time);
    ASSERT_EQ(iso.size(), 19U);
    EXPECT_EQ(iso[10], 'T');
    iso[10] = ' ';
    EXPECT_EQ(iso, ForDatabases(time));
}

TEST(CTTime, TimestampsAreCutToTheBuffer)
{
    const CTTime time = CTTime::FromMilliseconds(1705320000123);
    const std::string whole = Iso(time);
    char buffer[20];
    for (std::size_t size = 1; size <= sizeof buffer; ++size)
    {
        std::memset(buffer, '#', sizeof buffer);
        time.GetExtendedISOTimestamp(buffer, size);
        EXPECT_EQ(std::string(buffer), whole.substr(0, size - 1));
    }
    buffer[0] = '#';
    time.GetExtendedISOTimestamp(buffer, 0);
    EXPECT_EQ(buffer[0], '#');
}

TEST(CTTime, SecondsAreRoundedDown)
{
    EXPECT_EQ(CTTime::FromMilliseconds(1999).GetTime(), 1);
    EXPECT_EQ(CTTime::FromMilliseconds(2000).GetTime(), 2);
    EXPECT_EQ(CTTime::FromMilliseconds(0).GetTime(), 0);
    EXPECT_EQ(CTTime::FromMilliseconds(-1).GetTime(), -1);
    EXPECT_EQ(CTTime::FromMilliseconds(-1000).GetTime(), -1);
    EXPECT_EQ(CTTime::FromMilliseconds(-1001).GetTime(), -2);
    EXPECT_EQ(CTTime::FromMilliseconds(-1001).GetMilliseconds(), -1001);
}

TEST(CTTime, TheCurrentTimeLiesBetweenTwoReadingsOfTheClock)
{
    const std::int64_t before = std::time(nullptr);
    const CTTime now = CTTime::GetTickCount();
    const std::int64_t after = std::time(nullptr);
    // The two clocks may differ by one step.
    EXPECT_GE(now.GetTime(), before - 1);
    EXPECT_LE(now.GetTime(), after + 1);
    EXPECT_EQ(now.GetTime(), now.GetMilliseconds() / 1000);
}

} // namespace
