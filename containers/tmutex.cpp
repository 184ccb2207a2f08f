#include "containers/tmutex.h"

#include "port/kernel.h"

TMutex::TMutex() : m_handle(CreateMutexA(nullptr, FALSE, nullptr)) {}

TMutex::~TMutex()
{
    if (m_handle != nullptr)
    {
        CloseHandle(m_handle);
    }
}

TMutexLocker::TMutexLocker(TMutex& mutex) : m_handle(mutex.GetHandle())
{
    TMutexLocker::Lock();
}

void TMutexLocker::Lock()
{
    // An abandoned mutex is taken like any other: the container's fields are changed in an order
    // that leaves them usable.
    if (m_handle != nullptr)
    {
        WaitForSingleObject(m_handle, INFINITE);
    }
}

void TMutexLocker::Unlock()
{
    if (m_handle != nullptr)
    {
        ReleaseMutex(m_handle);
        m_handle = nullptr;
    }
}

TMutexLocker::~TMutexLocker()
{
    TMutexLocker::Unlock();
}
