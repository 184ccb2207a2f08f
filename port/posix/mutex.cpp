#include "port/kernel.h"

#include "port/cancellation.h"
#include "port/posix/mutex_slots.h"
#include "port/posix/this_thread.h"

#include <chrono>

namespace
{

using port::MutexSlot;
using port::ThisThread;

enum class Attempt
{
    Acquired,
    AcquiredAbandoned,
    Busy,
    Closed,
};

/// Only the owner calls it, so that no locked instruction is needed.
void ChangeRepeats(MutexSlot& slot, std::uint32_t by)
{
    slot.repeats.store(slot.repeats.load(std::memory_order_relaxed) + by,
                       std::memory_order_relaxed);
}

/// One try, in one atomic step with the check that the handle is still the one that was given out.
Attempt TryAcquire(MutexSlot& slot, std::uint32_t generation, std::uint32_t self)
{
    const port::MutexState free(generation, 0);
    const port::MutexState mine(generation, self);
    // Nobody else writes this word, so that the owner's next hold needs no locked instruction.
    if (slot.state.load(std::memory_order_relaxed) == mine.word)
    {
        ChangeRepeats(slot, 1);
        return Attempt::Acquired;
    }
    std::uint64_t seen = free.word;
    if (slot.state.compare_exchange_strong(seen, mine.word))
    {
        return Attempt::Acquired;
    }
    const port::MutexState abandoned(generation, port::kAbandoned);
    if (seen == abandoned.word && slot.state.compare_exchange_strong(seen, mine.word))
    {
        return Attempt::AcquiredAbandoned;
    }
    return port::MutexState(seen).Generation() == generation ? Attempt::Busy : Attempt::Closed;
}

/// Waits with the slot's monitor. A release that sees `waiters` above 0 takes the monitor before it
/// notifies, so that none is lost between the last try and the wait.
Attempt AcquireWaiting(MutexSlot& slot, std::uint32_t generation, std::uint32_t self,
                       DWORD milliseconds)
{
    // The wait is no cancellation point, as a platform lock is none.
    const port::CancellationHold hold;
    const auto deadline =
        std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    slot.waiters.fetch_add(1);
    std::unique_lock<std::mutex> monitor(slot.monitor);
    Attempt attempt = TryAcquire(slot, generation, self);
    bool timedOut = false;
    while (attempt == Attempt::Busy && !timedOut)
    {
        if (milliseconds == INFINITE)
        {
            slot.released.wait(monitor);
        }
        else
        {
            timedOut = slot.released.wait_until(monitor, deadline) == std::cv_status::timeout;
        }
        // Also after the time-out: this thread may have swallowed the notification.
        attempt = TryAcquire(slot, generation, self);
    }
    slot.waiters.fetch_sub(1);
    return attempt;
}

void WakeOne(MutexSlot& slot)
{
    if (slot.waiters.load() > 0)
    {
        const std::lock_guard<std::mutex> monitor(slot.monitor);
        slot.released.notify_one();
    }
}

DWORD Fail(DWORD error, DWORD result)
{
    SetLastError(error);
    return result;
}

} // namespace

void port::AbandonMutexesOf(std::uint32_t thread)
{
    ForEachMutexSlot(
        [thread](MutexSlot& slot)
        {
            std::uint64_t seen = slot.state.load();
            const MutexState held(seen);
            if (held.Owner() == thread && slot.state.compare_exchange_strong(
                                              seen, MutexState(held.Generation(), kAbandoned).word))
            {
                WakeOne(slot);
            }
        });
}

HANDLE CreateMutexA(SECURITY_ATTRIBUTES* attributes, BOOL initialOwner, LPCSTR name)
{
    if (attributes != nullptr || name != nullptr)
    {
        SetLastError(ERROR_NOT_SUPPORTED);
        return nullptr;
    }
    const HANDLE handle = port::OpenMutexSlot();
    if (handle == nullptr)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    if (initialOwner != FALSE)
    {
        WaitForSingleObject(handle, 0);
    }
    return handle;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    const port::MutexHandle parts(handle);
    MutexSlot* const slot = port::FindMutexSlot(parts);
    if (slot == nullptr)
    {
        return Fail(ERROR_INVALID_HANDLE, WAIT_FAILED);
    }
    ThisThread& thread = port::CurrentThread();
    Attempt attempt = TryAcquire(*slot, parts.generation, thread.id);
    if (attempt == Attempt::Busy && milliseconds != 0)
    {
        attempt = AcquireWaiting(*slot, parts.generation, thread.id, milliseconds);
    }
    switch (attempt)
    {
    case Attempt::Acquired:
        ++thread.holds;
        return WAIT_OBJECT_0;
    case Attempt::AcquiredAbandoned:
        // Whatever the dead owner's count was, the new owner's is 1.
        slot->repeats.store(0, std::memory_order_relaxed);
        ++thread.holds;
        return WAIT_ABANDONED;
    case Attempt::Busy:
        return WAIT_TIMEOUT;
    case Attempt::Closed:
        break;
    }
    return Fail(ERROR_INVALID_HANDLE, WAIT_FAILED);
}

BOOL ReleaseMutex(HANDLE mutex)
{
    const port::MutexHandle parts(mutex);
    MutexSlot* const slot = port::FindMutexSlot(parts);
    if (slot == nullptr)
    {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    ThisThread& thread = port::CurrentThread();
    std::uint64_t seen = slot->state.load(std::memory_order_relaxed);
    const port::MutexState state(seen);
    if (state.Generation() != parts.generation)
    {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (state.Owner() != thread.id)
    {
        SetLastError(ERROR_NOT_OWNER);
        return FALSE;
    }
    if (slot->repeats.load(std::memory_order_relaxed) > 0)
    {
        ChangeRepeats(*slot, ~0U);
        --thread.holds;
        return TRUE;
    }
    // Fails only when the handle was closed meanwhile.
    if (!slot->state.compare_exchange_strong(seen, port::MutexState(parts.generation, 0).word))
    {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    --thread.holds;
    WakeOne(*slot);
    return TRUE;
}

BOOL CloseHandle(HANDLE handle)
{
    if (!port::CloseMutexSlot(port::MutexHandle(handle)))
    {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    return TRUE;
}
