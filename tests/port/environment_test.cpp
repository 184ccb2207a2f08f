#include "port/environment.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace
{

using testing_support::ScopedEnvironment;

TEST(Environment, VariableThatIsNotSetIsEmpty)
{
    const ScopedEnvironment variable("SIGNUTILS_PORT_TEST", nullptr);
    EXPECT_EQ(port::Environment("SIGNUTILS_PORT_TEST"), "");
}

TEST(Environment, ValueComesAsItStands)
{
    const ScopedEnvironment variable("SIGNUTILS_PORT_TEST", " a=b;c ");
    EXPECT_EQ(port::Environment("SIGNUTILS_PORT_TEST"), " a=b;c ");
}

TEST(Environment, LocalTimeOfTheEpochIsWithinADayOfIt)
{
    const port::LocalTime time = port::ToLocalTime(0);
    const bool nextYear = time.year == 1970 && time.month == 1 && time.day == 1;
    const bool lastYear = time.year == 1969 && time.month == 12 && time.day == 31;
    EXPECT_TRUE(nextYear || lastYear);
}

TEST(Environment, LocalTimesOneMinuteApartDifferByOneMinute)
{
    const port::LocalTime first = port::ToLocalTime(1700000000);
    const port::LocalTime second = port::ToLocalTime(1700000060);
    EXPECT_EQ((first.minute + 1) % 60, second.minute);
    EXPECT_EQ(first.second, second.second);
    EXPECT_EQ(first.year, 2023);
    EXPECT_EQ(first.month, 11);
}

TEST(Environment, RandomBytesFillTheWholeBufferAndDiffer)
{
    std::array<unsigned char, 1000> first = {};
    std::array<unsigned char, 1000> second = {};
    port::RandomBytes(first.data(), first.size());
    port::RandomBytes(second.data(), second.size());
    EXPECT_NE(first, second);
    // 64 zero bytes in a row do not happen by chance.
    EXPECT_TRUE(std::any_of(first.end() - 64, first.end(), [](unsigned char b) { return b != 0; }));
    port::RandomBytes(nullptr, 0);
}

} // namespace
