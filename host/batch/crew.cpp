#include "host/batch/crew.h"

#include "host/option_readers.h"

#include <algorithm>
#include <utility>

namespace batch
{

namespace
{

// Each holds up to four connections.
constexpr std::uint32_t kMostJobs = 64;

} // namespace

std::size_t JobsFrom(const host::OptionValues& values)
{
    if (const host::OptionValue* const value = values.Find("jobs"); value != nullptr)
    {
        return host::WholeNumber(*value, kMostJobs, 1);
    }
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostJobs);
}

Crew::Crew(std::size_t jobs, const RunTerms& run, ProgressJournal& journal, OrderQueue& queue,
           Take take)
    : m_queue(queue), m_take(std::move(take)), m_atWork(jobs)
{
    for (std::size_t index = 0; index < jobs; ++index)
    {
        m_threads.emplace_back([this, &run, &journal] { Work(run, journal); });
    }
}

Crew::~Crew()
{
    m_queue.Stop();
    for (std::thread& thread : m_threads)
    {
        thread.join();
    }
}

void Crew::Work(const RunTerms& run, ProgressJournal& journal)
{
    std::exception_ptr failure;
    try
    {
        WorkThrough(run, journal);
    }
    catch (...)
    {
        failure = std::current_exception();
        m_queue.Stop();
    }
    const std::lock_guard guard(m_mutex);
    m_failure = m_failure ? m_failure : failure;
    --m_atWork;
    m_ended.notify_all();
}

void Crew::WorkThrough(const RunTerms& run, ProgressJournal& journal)
{
    OrderJudge judge(run, journal);
    while (auto order = m_queue.Next())
    {
        OrderResult result = judge.Judge(*order);
        const std::lock_guard guard(m_mutex);
        m_take(*order, std::move(result));
    }
}

bool Crew::WaitFor(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    return m_ended.wait_for(lock, time, [this] { return m_atWork == 0; });
}

void Crew::RaiseFailure() const
{
    if (m_failure)
    {
        std::rethrow_exception(m_failure);
    }
}

} // namespace batch
