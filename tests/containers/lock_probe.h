#pragma once

#include "containers/tmutex.h"
#include "port/kernel.h"

#include <thread>

namespace testing_support
{

/// Whether a thread of its own could take the mutex now; it gives it back at once.
inline bool IsFreeForOthers(const TMutex& mutex)
{
    DWORD result = WAIT_FAILED;
    std::thread(
        [&]
        {
            result = WaitForSingleObject(mutex.GetHandle(), 0);
            if (result == WAIT_OBJECT_0)
            {
                ReleaseMutex(mutex.GetHandle());
            }
        })
        .join();
    return result == WAIT_OBJECT_0;
}

} // namespace testing_support
