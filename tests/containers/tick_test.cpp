#include "containers/tick.h"
#include "port/kernel.h"
#include "tests/containers/ticks.h"

#include <gtest/gtest.h>

namespace
{

using containers::AgeOf;

TEST(Tick, AgeIsTheDifference)
{
    EXPECT_EQ(AgeOf(100, 100), 0U);
    EXPECT_EQ(AgeOf(100, 150), 50U);
    EXPECT_EQ(AgeOf(0, 0xFFFFFFFF), 0xFFFFFFFFU);
}

TEST(Tick, AgeAcrossAWrapIsOneMillisecondLess)
{
    EXPECT_EQ(AgeOf(0xFFFFFFF0, 0x10), 31U);
    EXPECT_EQ(AgeOf(0xFFFFFFFF, 0), 0U);
}

TEST(Tick, CounterIsTheSystemsUnlessReplaced)
{
    {
        const testing_support::Ticks ticks(42);
        EXPECT_EQ(containers::CurrentTick(), 42U);
    }
    const DWORD before = GetTickCount();
    const std::uint32_t now = containers::CurrentTick();
    EXPECT_LT(now - before, 60000U);
}

} // namespace
