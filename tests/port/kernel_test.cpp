#include "port/kernel.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{

TEST(LastError, IsKeptUntilTheNextCallThatSetsIt)
{
    SetLastError(4711);
    EXPECT_EQ(GetLastError(), 4711U);
    EXPECT_EQ(GetLastError(), 4711U);
}

TEST(LastError, EachThreadHasItsOwn)
{
    SetLastError(4711);
    DWORD atStart = 1;
    std::thread(
        [&]
        {
            atStart = GetLastError();
            SetLastError(1);
        })
        .join();
    EXPECT_EQ(atStart, 0U);
    EXPECT_EQ(GetLastError(), 4711U);
}

TEST(TickCount, DoesNotRunBackwards)
{
    const DWORD before = GetTickCount();
    const DWORD after = GetTickCount();
    EXPECT_LT(after - before, 60000U);
}

TEST(ProcessId, IsTheSameOnEveryThread)
{
    const DWORD here = GetCurrentProcessId();
    DWORD there = 0;
    std::thread([&] { there = GetCurrentProcessId(); }).join();
    EXPECT_NE(here, 0U);
    EXPECT_EQ(here, there);
}

} // namespace
