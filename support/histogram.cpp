#include "support/histogram.h"

#include <algorithm>
#include <iterator>

namespace support
{

void Histogram::Add(std::chrono::nanoseconds duration) noexcept
{
    const auto bound =
        std::find_if(std::begin(kDurationBounds), std::end(kDurationBounds),
                     [duration](const DurationBound& each) { return duration <= each.upTo; });
    const auto bucket = static_cast<std::size_t>(bound - std::begin(kDurationBounds));
    m_counts[bucket].fetch_add(1, std::memory_order_relaxed);
    m_sum.fetch_add(duration.count(), std::memory_order_relaxed);
}

Histogram::Reading Histogram::Read() const noexcept
{
    Reading reading;
    for (std::size_t bucket = 0; bucket < kBuckets; ++bucket)
    {
        reading.counts[bucket] = m_counts[bucket].load(std::memory_order_relaxed);
    }
    reading.sum = std::chrono::nanoseconds(m_sum.load(std::memory_order_relaxed));
    return reading;
}

} // namespace support
