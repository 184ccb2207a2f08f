#pragma once

#include "support/export.h"

/// A recursive lock that a container inherits: an unnamed kernel mutex, made not owned. Without a
/// handle every locking step does nothing.
class SIGNUTILS_API TMutex
{
public:
    TMutex();
    ~TMutex();
    TMutex(const TMutex&) = delete;
    TMutex& operator=(const TMutex&) = delete;

    /// The kernel handle, null when there is none.
    void* GetHandle() const noexcept { return m_handle; }

private:
    void* m_handle;
};

/// Holds a TMutex for the length of a scope; waits without time-out.
class SIGNUTILS_API TMutexLocker
{
public:
    explicit TMutexLocker(TMutex& mutex); ///< waits for the mutex
    TMutexLocker(const TMutexLocker&) = delete;
    TMutexLocker& operator=(const TMutexLocker&) = delete;

    /// Waits again on the mutex, if one is held. Each wait is a hold of its own, and the locker
    /// gives back one: the caller releases the others.
    virtual void Lock();
    /// Gives the mutex back and forgets it, so that the destructor does not do so a second time.
    virtual void Unlock();
    virtual ~TMutexLocker();

private:
    void* m_handle; // null: holds nothing
};
