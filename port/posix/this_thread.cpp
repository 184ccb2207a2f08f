#include "port/posix/this_thread.h"

#include "port/posix/mutex_slots.h"

#include <pthread.h>
#include <unistd.h>

namespace port
{

constinit thread_local ThisThread t_thisThread;

namespace
{

// The end of a thread is noticed by a thread-specific key, not by robust platform mutexes: the
// key's destructor runs on every way a thread can end (return, pthread_exit, cancellation), after
// all C++ thread-local destructors and before a join returns, and race detectors understand it. A
// mutex taken by a later key destructor enrols the thread anew, which brings it here once more.
void LeaveThread(void* /*value*/)
{
    const ThisThread ended = t_thisThread;
    t_thisThread = ThisThread();
    if (ended.holds > 0)
    {
        AbandonMutexesOf(ended.id);
    }
}

pthread_key_t MakeKey()
{
    pthread_key_t key = 0;
    pthread_key_create(&key, LeaveThread);
    return key;
}

} // namespace

void EnrolThread()
{
    static const pthread_key_t key = MakeKey();
    // The kernel's thread ids are below 2^22 and are given out again only after the thread's end.
    t_thisThread.id = static_cast<std::uint32_t>(gettid());
    pthread_setspecific(key, &t_thisThread);
}

} // namespace port
