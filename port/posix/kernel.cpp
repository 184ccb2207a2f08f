#include "port/kernel.h"

#include <ctime>
#include <unistd.h>

namespace
{

thread_local DWORD t_lastError = ERROR_SUCCESS;

} // namespace

DWORD GetTickCount()
{
    // Time asleep counts too, as in the Windows counter.
    timespec now = {};
    clock_gettime(CLOCK_BOOTTIME, &now);
    const std::uint64_t milliseconds = static_cast<std::uint64_t>(now.tv_sec) * 1000U +
                                       static_cast<std::uint64_t>(now.tv_nsec) / 1000000U;
    return static_cast<DWORD>(milliseconds);
}

DWORD GetLastError()
{
    return t_lastError;
}

void SetLastError(DWORD error)
{
    t_lastError = error;
}

DWORD GetCurrentProcessId()
{
    return static_cast<DWORD>(getpid());
}
