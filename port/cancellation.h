#pragma once

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace port
{

#if defined(_WIN32)

/// Ending a thread does not unwind here, so there is nothing to hold off.
class CancellationHold
{
public:
    CancellationHold() noexcept {}
    ~CancellationHold() {}
    CancellationHold(const CancellationHold&) = delete;
    CancellationHold& operator=(const CancellationHold&) = delete;
};

inline void CancellationPoint() {}

#else

/// Keeps a request to cancel the calling thread waiting until the end of the scope. For calls into
/// code that would leave its own locks held.
class CancellationHold
{
public:
    CancellationHold() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_before); }
    ~CancellationHold()
    {
        int ignored = 0;
        pthread_setcancelstate(m_before, &ignored);
    }
    CancellationHold(const CancellationHold&) = delete;
    CancellationHold& operator=(const CancellationHold&) = delete;

private:
    int m_before = PTHREAD_CANCEL_ENABLE;
};

/// Ends the calling thread here when it was asked to be cancelled.
inline void CancellationPoint()
{
    pthread_testcancel();
}

#endif

} // namespace port
