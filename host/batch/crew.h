#pragma once

#include "host/batch/order_judge.h"
#include "host/batch/order_queue.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace batch
{

/// Threads that judge what comes through a queue, each with sessions and connections of its own.
class Crew
{
public:
    using Take = std::function<void(const Order&, OrderResult&&)>;

    /// Starts `jobs` threads. `take` is called with each result, by one thread at a time.
    /// Everything must outlive the crew.
    Crew(std::size_t jobs, const RunTerms& run, ProgressJournal& journal, OrderQueue& queue,
         Take take);
    /// Stops the queue and waits for what is being judged.
    ~Crew();
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    /// Waits until every thread has ended, at most so long. Whether they have.
    bool WaitFor(std::chrono::milliseconds time);
    /// Raises what a thread ended with, if one did; for a crew that has ended.
    void RaiseFailure() const;

private:
    void Work(const RunTerms& run, ProgressJournal& journal);
    void WorkThrough(const RunTerms& run, ProgressJournal& journal);

    OrderQueue& m_queue;
    Take m_take;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    std::size_t m_atWork = 0;
    std::exception_ptr m_failure;
    std::vector<std::thread> m_threads;
};

/// --jobs: one a processor when not given. Raises UsageRefusal.
std::size_t JobsFrom(const host::OptionValues& values);

} // namespace batch
