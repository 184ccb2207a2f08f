#include "port/kernel.h"

#include <gtest/gtest.h>

#include <atomic>
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
    // Starting and joining a thread may set it, so the threads meet without a call in between.
    std::atomic<bool> mayGo = false;
    std::atomic<bool> hasSet = false;
    DWORD atStart = 1;
    std::thread other(
        [&]
        {
            atStart = GetLastError();
            while (!mayGo)
            {
            }
            SetLastError(1);
            hasSet = true;
        });
    SetLastError(4711);
    mayGo = true;
    while (!hasSet)
    {
    }
    EXPECT_EQ(GetLastError(), 4711U);
    other.join();
    EXPECT_EQ(atStart, 0U);
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
