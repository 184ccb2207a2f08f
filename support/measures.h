#pragma once

#include "support/check_counts.h"
#include "support/histogram.h"

#include <atomic>
#include <chrono>

namespace support
{

/// What a process measures of its checks.
struct Measures
{
    Histogram checkTime;
    Histogram conversionTime;
    Histogram statementTime;
    CheckCounts checks;
    std::chrono::system_clock::time_point start = std::chrono::system_clock::now();
};

/// Where measures go at the moment; null while none are gathered, which then cost this look. What
/// it points to lives as long as the process.
inline std::atomic<Measures*> g_measures = nullptr;

/// Begins to gather; measures that are gathered already go on.
void StartMeasures();

/// Adds the time of its own life to one of the measures, if they are gathered at its beginning.
class Stopwatch
{
public:
    explicit Stopwatch(Histogram Measures::*histogram) noexcept
        : m_measures(g_measures.load(std::memory_order_acquire)), m_histogram(histogram)
    {
        if (m_measures != nullptr)
        {
            m_start = Clock::now();
        }
    }
    ~Stopwatch()
    {
        if (m_measures != nullptr)
        {
            (m_measures->*m_histogram).Add(Clock::now() - m_start);
        }
    }
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;

    /// Where it adds to; null when it adds nothing.
    Measures* Target() const noexcept { return m_measures; }

private:
    using Clock = std::chrono::steady_clock;

    Measures* m_measures;
    Histogram Measures::*m_histogram;
    Clock::time_point m_start;
};

} // namespace support
