#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

namespace support
{

/// The upper bound of a bucket, and the same in seconds as it is written.
struct DurationBound
{
    std::chrono::nanoseconds upTo;
    const char* seconds;
};

/// From a statement in memory to the conversion of a very large file. Rising.
inline constexpr DurationBound kDurationBounds[] = {
    {std::chrono::microseconds(100), "0.0001"},
    {std::chrono::microseconds(250), "0.00025"},
    {std::chrono::microseconds(500), "0.0005"},
    {std::chrono::milliseconds(1), "0.001"},
    {std::chrono::microseconds(2500), "0.0025"},
    {std::chrono::milliseconds(5), "0.005"},
    {std::chrono::milliseconds(10), "0.01"},
    {std::chrono::milliseconds(25), "0.025"},
    {std::chrono::milliseconds(50), "0.05"},
    {std::chrono::milliseconds(100), "0.1"},
    {std::chrono::milliseconds(250), "0.25"},
    {std::chrono::milliseconds(500), "0.5"},
    {std::chrono::seconds(1), "1"},
    {std::chrono::milliseconds(2500), "2.5"},
    {std::chrono::seconds(5), "5"},
    {std::chrono::seconds(10), "10"},
    {std::chrono::seconds(30), "30"},
    {std::chrono::seconds(60), "60"},
};

/// Counts durations by size. Any thread at any time.
class Histogram
{
public:
    /// One bucket for each bound, and one for what is longer than all.
    static constexpr std::size_t kBuckets = std::size(kDurationBounds) + 1;

    /// Counts of each bucket alone, and the sum of all durations.
    struct Reading
    {
        std::array<std::uint64_t, kBuckets> counts = {};
        std::chrono::nanoseconds sum = std::chrono::nanoseconds::zero();
    };

    void Add(std::chrono::nanoseconds duration) noexcept;
    /// A duration that is added meanwhile is in the counts, in the sum, in both or in neither.
    Reading Read() const noexcept;

private:
    std::array<std::atomic<std::uint64_t>, kBuckets> m_counts = {};
    std::atomic<std::int64_t> m_sum = 0; ///< nanoseconds
};

} // namespace support
