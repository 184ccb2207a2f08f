#include "containers/tarray.h"
#include "port/kernel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <vector>

// Without memory for a kernel object a container has no lock, and every locking step does nothing.

namespace
{

bool g_refuseKernelMemory = false;

} // namespace

// Kernel objects are the only over-aligned memory that is asked for without an exception.
void* operator new(std::size_t size, std::align_val_t alignment,
                   const std::nothrow_t& /*tag*/) noexcept
{
    const auto unit = static_cast<std::size_t>(alignment);
    return g_refuseKernelMemory ? nullptr
                                : std::aligned_alloc(unit, (size + unit - 1) / unit * unit);
}

namespace
{

/// Until the end of the scope no mutex can be made.
class NoMutexes
{
public:
    NoMutexes()
    {
        g_refuseKernelMemory = true;
        // Far more than stand ready: without the bound a refusal that fails to happen would take
        // all of the machine's memory.
        constexpr std::size_t kFar = 1'000'000;
        HANDLE handle = CreateMutexA(nullptr, FALSE, nullptr);
        for (; handle != nullptr && m_handles.size() < kFar;
             handle = CreateMutexA(nullptr, FALSE, nullptr))
        {
            m_handles.push_back(handle);
        }
        m_error = handle == nullptr ? GetLastError() : ERROR_SUCCESS;
    }
    ~NoMutexes()
    {
        for (const HANDLE handle : m_handles)
        {
            CloseHandle(handle);
        }
        g_refuseKernelMemory = false;
    }
    NoMutexes(const NoMutexes&) = delete;
    NoMutexes& operator=(const NoMutexes&) = delete;

    DWORD Error() const { return m_error; }

private:
    std::vector<HANDLE> m_handles;
    DWORD m_error = 0;
};

TEST(PosixNoMutex, CreationTellsTheMissingMemory)
{
    const NoMutexes none;
    EXPECT_EQ(none.Error(), ERROR_NOT_ENOUGH_MEMORY);
}

TEST(PosixNoMutex, EveryLockingStepDoesNothing)
{
    const NoMutexes none;
    TMutex mutex;
    ASSERT_EQ(mutex.GetHandle(), nullptr);
    SetLastError(4711);
    {
        TMutexLocker locker(mutex);
        locker.Lock();
        locker.Unlock();
        locker.Unlock();
    }
    EXPECT_EQ(GetLastError(), 4711U) << "no call may reach the kernel object";
}

TEST(PosixNoMutex, ArrayWorksWithoutALock)
{
    const NoMutexes none;
    TArray<int> array(1);
    ASSERT_EQ(array.GetHandle(), nullptr);
    EXPECT_EQ(array.Add(1), 1);
    EXPECT_EQ(array.Add(2), 2);
    EXPECT_EQ(*array.GetAt(1), 2);
    array.RemoveAll();
    EXPECT_EQ(array.GetCount(), 0);
}

} // namespace
