#pragma once

#include <cstdint>

namespace port
{

/// What the kernel objects know of one thread.
struct ThisThread
{
    std::uint32_t id = 0; ///< not 0, of no other living thread; 0 before the first use
    /// Holds on mutexes, repeated ones counted. May stay too large when another thread closes a
    /// mutex that this one owns; then the end of this thread searches in vain.
    std::uint32_t holds = 0;
};

// Initial-exec: the two numbers fit what the loader keeps for libraries loaded late, and reading
// them costs no call.
extern thread_local ThisThread t_thisThread __attribute__((tls_model("initial-exec")));

/// Gives the thread its id and asks to be called at its end.
void EnrolThread();

inline ThisThread& CurrentThread()
{
    if (t_thisThread.id == 0)
    {
        EnrolThread();
    }
    return t_thisThread;
}

} // namespace port
