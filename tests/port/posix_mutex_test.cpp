#include "port/kernel.h"

#include <gtest/gtest.h>

#include <pthread.h>
#include <set>
#include <thread>
#include <vector>

// What Windows leaves undefined or supports beyond this side.

namespace
{

TEST(PosixMutex, NamesAndSecurityAttributesAreRefused)
{
    SetLastError(0);
    EXPECT_EQ(CreateMutexA(nullptr, FALSE, "shared"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
    SetLastError(0);
    int attributes = 0;
    EXPECT_EQ(CreateMutexA(reinterpret_cast<SECURITY_ATTRIBUTES*>(&attributes), FALSE, nullptr),
              nullptr);
    EXPECT_EQ(GetLastError(), ERROR_NOT_SUPPORTED);
}

TEST(PosixMutex, HandleThatNeverWasIsRefused)
{
    int object = 0;
    const HANDLE inventions[] = {
        &object,
        reinterpret_cast<HANDLE>(~std::uintptr_t{0}),
        reinterpret_cast<HANDLE>(std::uintptr_t{1}),
        reinterpret_cast<HANDLE>(std::uintptr_t{0x00000000FFFFFFFF}),
        reinterpret_cast<HANDLE>(std::uintptr_t{0x0000000100000000}),
        reinterpret_cast<HANDLE>(std::uintptr_t{0x7FFFFFFF3FFFFFC0}),
    };
    for (const HANDLE handle : inventions)
    {
        SetLastError(0);
        EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_FAILED) << handle;
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_EQ(ReleaseMutex(handle), 0);
        EXPECT_EQ(CloseHandle(handle), 0);
    }
}

TEST(PosixMutex, StaleHandleDoesNotReachTheMutexThatCameAfterIt)
{
    const HANDLE stale = CreateMutexA(nullptr, FALSE, nullptr);
    CloseHandle(stale);
    // Enough to use every place again.
    std::vector<HANDLE> handles;
    for (int index = 0; index < 1000; ++index)
    {
        handles.push_back(CreateMutexA(nullptr, FALSE, nullptr));
    }
    EXPECT_EQ(WaitForSingleObject(stale, 0), WAIT_FAILED);
    EXPECT_EQ(CloseHandle(stale), 0);
    EXPECT_EQ(std::set<HANDLE>(handles.begin(), handles.end()).size(), handles.size());
    for (const HANDLE handle : handles)
    {
        EXPECT_NE(handle, stale);
        EXPECT_NE(CloseHandle(handle), 0);
    }
}

TEST(PosixMutex, ClosingTheHandleEndsTheWaitOfOthers)
{
    const HANDLE handle = CreateMutexA(nullptr, TRUE, nullptr);
    DWORD result = WAIT_OBJECT_0;
    DWORD error = 0;
    std::thread waiter(
        [&]
        {
            result = WaitForSingleObject(handle, INFINITE);
            error = GetLastError();
        });
    EXPECT_NE(CloseHandle(handle), 0);
    waiter.join();
    EXPECT_EQ(result, WAIT_FAILED);
    EXPECT_EQ(error, ERROR_INVALID_HANDLE);
}

TEST(PosixMutex, OwnerWhoseHandleWasClosedElsewhereIsRefused)
{
    const HANDLE handle = CreateMutexA(nullptr, TRUE, nullptr);
    std::thread([&] { CloseHandle(handle); }).join();
    EXPECT_EQ(ReleaseMutex(handle), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(PosixMutex, ThreadEndedByPthreadExitAbandons)
{
    const HANDLE handle = CreateMutexA(nullptr, FALSE, nullptr);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(
                  &thread, nullptr,
                  [](void* mutex) -> void*
                  {
                      WaitForSingleObject(mutex, INFINITE);
                      pthread_exit(nullptr);
                  },
                  handle),
              0);
    pthread_join(thread, nullptr);
    EXPECT_EQ(WaitForSingleObject(handle, INFINITE), WAIT_ABANDONED);
    CloseHandle(handle);
}

TEST(PosixMutex, MutexTakenByAKeyDestructorIsAbandonedToo)
{
    static HANDLE handle = nullptr;
    handle = CreateMutexA(nullptr, FALSE, nullptr);
    static pthread_key_t key = 0;
    ASSERT_EQ(pthread_key_create(&key, [](void*) { WaitForSingleObject(handle, INFINITE); }), 0);
    std::thread(
        []
        {
            WaitForSingleObject(handle, INFINITE);
            ReleaseMutex(handle);
            pthread_setspecific(key, &key);
        })
        .join();
    EXPECT_EQ(WaitForSingleObject(handle, INFINITE), WAIT_ABANDONED);
    pthread_key_delete(key);
    CloseHandle(handle);
}

TEST(PosixMutex, CancellationDoesNotBreakAWait)
{
    const HANDLE handle = CreateMutexA(nullptr, TRUE, nullptr);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(
                  &thread, nullptr,
                  [](void* mutex) -> void*
                  {
                      WaitForSingleObject(mutex, INFINITE);
                      ReleaseMutex(mutex);
                      pthread_testcancel();
                      return nullptr;
                  },
                  handle),
              0);
    pthread_cancel(thread);
    ReleaseMutex(handle);
    void* result = nullptr;
    pthread_join(thread, &result);
    EXPECT_EQ(WaitForSingleObject(handle, INFINITE), WAIT_OBJECT_0);
    CloseHandle(handle);
}

} // namespace
