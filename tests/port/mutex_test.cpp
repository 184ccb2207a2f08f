#include "port/kernel.h"
#include "tests/port/other_thread.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

// The plain Windows names, so that on Windows the kernel itself is judged by the same expectations.

namespace
{

constexpr DWORD kUntouched = 12345;

/// A mutex closed at the end of the test.
class Mutex
{
public:
    explicit Mutex(BOOL initialOwner = FALSE)
        : m_handle(CreateMutexA(nullptr, initialOwner, nullptr))
    {
    }
    ~Mutex() { CloseHandle(m_handle); }
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

    HANDLE Handle() const { return m_handle; }

private:
    HANDLE m_handle;
};

DWORD WaitElsewhere(HANDLE handle)
{
    DWORD result = WAIT_FAILED;
    OnAnotherThread(
        [&]
        {
            result = WaitForSingleObject(handle, 0);
            if (result == WAIT_OBJECT_0)
            {
                ReleaseMutex(handle);
            }
        });
    return result;
}

TEST(Mutex, IsMadeNotOwned)
{
    const Mutex mutex;
    ASSERT_NE(mutex.Handle(), nullptr);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_OBJECT_0);
}

TEST(Mutex, MadeOwnedBelongsToItsMaker)
{
    const Mutex mutex(TRUE);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_TIMEOUT);
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_OBJECT_0);
}

TEST(Mutex, EveryUnnamedMutexIsANewOne)
{
    const Mutex first(TRUE);
    const Mutex second;
    EXPECT_NE(first.Handle(), second.Handle());
    EXPECT_EQ(WaitElsewhere(second.Handle()), WAIT_OBJECT_0);
}

TEST(Mutex, OwnerMayWaitAgainAndMustReleaseAsOften)
{
    const Mutex mutex;
    ASSERT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), WAIT_OBJECT_0);
    ASSERT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), WAIT_OBJECT_0);
    ASSERT_EQ(WaitForSingleObject(mutex.Handle(), 0), WAIT_OBJECT_0);

    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_TIMEOUT);
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_TIMEOUT);
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_OBJECT_0);
}

TEST(Mutex, ReleaseByAThreadThatDoesNotOwnItIsRefused)
{
    const Mutex mutex(TRUE);
    BOOL released = TRUE;
    DWORD error = 0;
    OnAnotherThread(
        [&]
        {
            released = ReleaseMutex(mutex.Handle());
            error = GetLastError();
        });
    EXPECT_EQ(released, 0);
    EXPECT_EQ(error, 288U);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_TIMEOUT) << "nothing may have changed";
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
}

TEST(Mutex, ReleaseOfAMutexNobodyOwnsIsRefused)
{
    const Mutex mutex;
    SetLastError(kUntouched);
    EXPECT_EQ(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(GetLastError(), 288U);
}

TEST(Mutex, ReleaseOnceTooOftenIsRefusedAndChangesNothing)
{
    const Mutex mutex;
    WaitForSingleObject(mutex.Handle(), INFINITE);
    ReleaseMutex(mutex.Handle());
    EXPECT_EQ(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(GetLastError(), 288U);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_OBJECT_0);
}

TEST(Mutex, WaitTimesOutWhileAnotherThreadHoldsIt)
{
    const Mutex mutex(TRUE);
    DWORD result = WAIT_OBJECT_0;
    OnAnotherThread([&] { result = WaitForSingleObject(mutex.Handle(), 5); });
    EXPECT_EQ(result, 0x102U);
}

TEST(Mutex, WaiterGetsTheMutexWhenItIsReleased)
{
    const Mutex mutex(TRUE);
    DWORD endless = WAIT_FAILED;
    DWORD limited = WAIT_FAILED;
    const auto wait = [&](DWORD timeout, DWORD& result)
    {
        result = WaitForSingleObject(mutex.Handle(), timeout);
        ReleaseMutex(mutex.Handle());
    };
    std::thread first(wait, INFINITE, std::ref(endless));
    std::thread second(wait, 60000, std::ref(limited));
    ReleaseMutex(mutex.Handle());
    first.join();
    second.join();
    EXPECT_EQ(endless, WAIT_OBJECT_0);
    EXPECT_EQ(limited, WAIT_OBJECT_0);
}

TEST(Mutex, OneThreadAtATimeHoldsIt)
{
    const Mutex mutex;
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    int counter = 0; // guarded by the mutex alone
    std::vector<std::thread> threads;
    for (int index = 0; index < kThreads; ++index)
    {
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < kRounds; ++round)
                {
                    WaitForSingleObject(mutex.Handle(), INFINITE);
                    ++counter;
                    ReleaseMutex(mutex.Handle());
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(counter, kThreads * kRounds);
}

TEST(Mutex, WaitsWithATimeOutShareItAmongThreads)
{
    const Mutex mutex;
    std::atomic<int> got = 0;
    int counter = 0;
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            [&]
            {
                for (int round = 0; round < 500; ++round)
                {
                    if (WaitForSingleObject(mutex.Handle(), 1) == WAIT_OBJECT_0)
                    {
                        ++counter;
                        ++got;
                        ReleaseMutex(mutex.Handle());
                    }
                }
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(counter, got.load());
}

TEST(Mutex, AbandonedByAnEndedThreadIsToldOnceAndOwnedOnce)
{
    const Mutex mutex;
    OnAnotherThread(
        [&]
        {
            WaitForSingleObject(mutex.Handle(), INFINITE);
            WaitForSingleObject(mutex.Handle(), INFINITE);
            WaitForSingleObject(mutex.Handle(), INFINITE);
        });
    EXPECT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), 0x80U);
    EXPECT_EQ(WaitElsewhere(mutex.Handle()), WAIT_TIMEOUT);
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0) << "the count starts at 1 again";
    EXPECT_EQ(ReleaseMutex(mutex.Handle()), 0);
    EXPECT_EQ(GetLastError(), 288U);
    EXPECT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), WAIT_OBJECT_0) << "not remembered";
    ReleaseMutex(mutex.Handle());
}

TEST(Mutex, ThreadThatWaitsIsToldOfTheAbandonment)
{
    const Mutex mutex;
    std::atomic<bool> taken = false;
    std::thread owner(
        [&]
        {
            WaitForSingleObject(mutex.Handle(), INFINITE);
            taken = true;
        });
    while (!taken)
    {
        std::this_thread::yield();
    }
    EXPECT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), WAIT_ABANDONED);
    owner.join();
    EXPECT_NE(ReleaseMutex(mutex.Handle()), 0);
}

TEST(Mutex, EveryMutexOfAnEndedThreadIsAbandoned)
{
    std::vector<HANDLE> handles;
    for (int index = 0; index < 200; ++index)
    {
        handles.push_back(CreateMutexA(nullptr, FALSE, nullptr));
    }
    OnAnotherThread(
        [&]
        {
            for (const HANDLE handle : handles)
            {
                WaitForSingleObject(handle, INFINITE);
            }
            ReleaseMutex(handles[7]);
        });
    for (std::size_t index = 0; index < handles.size(); ++index)
    {
        EXPECT_EQ(WaitForSingleObject(handles[index], 0),
                  index == 7 ? WAIT_OBJECT_0 : WAIT_ABANDONED);
        EXPECT_NE(CloseHandle(handles[index]), 0);
    }
}

TEST(Mutex, MutexReleasedBeforeItsThreadEndsIsNotAbandoned)
{
    const Mutex mutex;
    OnAnotherThread(
        [&]
        {
            WaitForSingleObject(mutex.Handle(), INFINITE);
            WaitForSingleObject(mutex.Handle(), INFINITE);
            ReleaseMutex(mutex.Handle());
            ReleaseMutex(mutex.Handle());
        });
    EXPECT_EQ(WaitForSingleObject(mutex.Handle(), INFINITE), WAIT_OBJECT_0);
    ReleaseMutex(mutex.Handle());
}

TEST(Mutex, NullHandleIsRefusedByEveryCall)
{
    SetLastError(kUntouched);
    EXPECT_EQ(WaitForSingleObject(nullptr, INFINITE), 0xFFFFFFFFU);
    EXPECT_EQ(GetLastError(), 6U);
    SetLastError(kUntouched);
    EXPECT_EQ(ReleaseMutex(nullptr), 0);
    EXPECT_EQ(GetLastError(), 6U);
    EXPECT_EQ(CloseHandle(nullptr), 0);
}

TEST(Mutex, ClosedHandleIsRefusedByEveryCall)
{
    const HANDLE handle = CreateMutexA(nullptr, FALSE, nullptr);
    ASSERT_NE(CloseHandle(handle), 0);
    SetLastError(kUntouched);
    EXPECT_EQ(WaitForSingleObject(handle, INFINITE), WAIT_FAILED);
    EXPECT_EQ(GetLastError(), 6U);
    SetLastError(kUntouched);
    EXPECT_EQ(ReleaseMutex(handle), 0);
    EXPECT_EQ(GetLastError(), 6U);
    SetLastError(kUntouched);
    EXPECT_EQ(CloseHandle(handle), 0);
    EXPECT_EQ(GetLastError(), 6U);
}

TEST(Mutex, ClosingWhileOwningItSucceeds)
{
    const HANDLE handle = CreateMutexA(nullptr, TRUE, nullptr);
    EXPECT_NE(CloseHandle(handle), 0);
    EXPECT_EQ(CloseHandle(handle), 0);
    EXPECT_EQ(GetLastError(), 6U);
}

TEST(Mutex, CallsThatSucceedLeaveTheLastErrorAsItWas)
{
    const Mutex mutex;
    SetLastError(kUntouched);
    WaitForSingleObject(mutex.Handle(), INFINITE);
    ReleaseMutex(mutex.Handle());
    EXPECT_EQ(GetLastError(), kUntouched);
}

} // namespace
