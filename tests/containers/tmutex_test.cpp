#include "containers/tmutex.h"
#include "tests/containers/lock_probe.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace
{

using testing_support::IsFreeForOthers;

TEST(TMutex, IsMadeNotOwned)
{
    const TMutex mutex;
    ASSERT_NE(mutex.GetHandle(), nullptr);
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutex, ClosesItsHandle)
{
    void* handle = nullptr;
    {
        const TMutex mutex;
        handle = mutex.GetHandle();
    }
    EXPECT_EQ(CloseHandle(handle), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(TMutexLocker, HoldsTheMutexForItsScope)
{
    TMutex mutex;
    {
        const TMutexLocker locker(mutex);
        EXPECT_FALSE(IsFreeForOthers(mutex));
    }
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, ReleasesWhenAnExceptionPasses)
{
    TMutex mutex;
    const auto fail = [&mutex]
    {
        const TMutexLocker locker(mutex);
        throw std::runtime_error("expected");
    };
    EXPECT_THROW(fail(), std::runtime_error);
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, LocksOfOneThreadNest)
{
    TMutex mutex;
    const TMutexLocker outer(mutex);
    {
        const TMutexLocker inner(mutex);
        EXPECT_FALSE(IsFreeForOthers(mutex));
    }
    EXPECT_FALSE(IsFreeForOthers(mutex)) << "the outer one still holds it";
}

TEST(TMutexLocker, UnlockReleasesAtOnce)
{
    TMutex mutex;
    TMutexLocker locker(mutex);
    locker.Unlock();
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, DestructorDoesNotReleaseAgainAfterUnlock)
{
    TMutex mutex;
    const TMutexLocker outer(mutex);
    {
        TMutexLocker inner(mutex);
        inner.Unlock();
        // A second release here would take the outer hold away.
    }
    EXPECT_FALSE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, SecondUnlockDoesNothing)
{
    TMutex mutex;
    const TMutexLocker outer(mutex);
    TMutexLocker inner(mutex);
    inner.Unlock();
    inner.Unlock();
    EXPECT_FALSE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, LockAfterUnlockDoesNothingBecauseTheMutexIsForgotten)
{
    TMutex mutex;
    TMutexLocker locker(mutex);
    locker.Unlock();
    locker.Lock();
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, LockWhileHoldingAddsAHoldThatTheCallerReleases)
{
    TMutex mutex;
    {
        TMutexLocker locker(mutex);
        locker.Lock();
    }
    EXPECT_FALSE(IsFreeForOthers(mutex));
    EXPECT_NE(ReleaseMutex(mutex.GetHandle()), 0);
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, TakesAMutexWhoseOwnerEnded)
{
    TMutex mutex;
    std::thread([&] { WaitForSingleObject(mutex.GetHandle(), INFINITE); }).join();
    {
        const TMutexLocker locker(mutex);
        EXPECT_FALSE(IsFreeForOthers(mutex));
    }
    EXPECT_TRUE(IsFreeForOthers(mutex));
}

TEST(TMutexLocker, KeepsThreadsApart)
{
    TMutex mutex;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < 1000; ++round)
                {
                    const TMutexLocker locker(mutex);
                    ++counter;
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(counter, 4000);
}

} // namespace
