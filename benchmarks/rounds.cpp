#include "benchmarks/rounds.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <stdexcept>

namespace benchmarks
{

namespace
{

constexpr std::size_t kRounds = 9;
// The second smallest and second largest of nine hold the median with a probability of 96 %.
constexpr std::size_t kLow = 1;
constexpr std::size_t kHigh = kRounds - 2U;

using Seconds = std::array<double, kRounds>;

struct Times
{
    Seconds elapsed{};
    Seconds processor{};
};

struct Interval
{
    double low;
    double median;
    double high;
};

Interval Middle(Seconds values)
{
    std::sort(values.begin(), values.end());
    return {values[kLow], values[kRounds / 2U], values[kHigh]};
}

Interval Ratio(const Seconds& times, const Seconds& floor)
{
    Seconds ratios{};
    std::transform(times.begin(), times.end(), floor.begin(), ratios.begin(),
                   [](double time, double least) { return time / least; });
    return Middle(ratios);
}

double ProcessorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

void RunOnce(const Contender& contender, std::uint64_t expected)
{
    if (const std::uint64_t found = contender.run(); found != expected)
    {
        throw std::runtime_error(contender.name + " found " + std::to_string(found) + ", then " +
                                 std::to_string(expected));
    }
}

void Time(const Contender& contender, std::uint64_t expected, std::size_t round, Times& times)
{
    using Clock = std::chrono::steady_clock;
    const double processor = ProcessorSeconds();
    const Clock::time_point start = Clock::now();
    RunOnce(contender, expected);
    times.elapsed[round] = std::chrono::duration<double>(Clock::now() - start).count();
    times.processor[round] = ProcessorSeconds() - processor;
    contender.cleanUp();
}

/// What stands beside a time, in 13 characters: a speed or a share of it.
using Rate = std::function<std::string(double seconds)>;

void Print(const Contender& contender, const Times& times, const Times& floor, const Rate& rate)
{
    const Interval elapsed = Middle(times.elapsed);
    const Interval ratio = Ratio(times.elapsed, floor.elapsed);
    const Interval processor = Ratio(times.processor, floor.processor);
    std::printf("  %-36s %11.2f ms %s   %5.2f [%5.2f, %5.2f]   %5.2f [%5.2f, %5.2f]\n",
                contender.name.c_str(), elapsed.median * 1e3, rate(elapsed.median).c_str(),
                ratio.median, ratio.low, ratio.high, processor.median, processor.low,
                processor.high);
}

std::string Formatted(const char* format, double value)
{
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

void TimeWithRate(const std::vector<Contender>& contenders, const Rate& rate)
{
    std::vector<std::uint64_t> expected;
    for (const Contender& contender : contenders)
    {
        expected.push_back(contender.run());
        contender.cleanUp();
    }
    std::vector<Times> times(contenders.size());
    for (std::size_t round = 0; round < kRounds; ++round)
    {
        for (std::size_t i = 0; i < contenders.size(); ++i)
        {
            Time(contenders[i], expected[i], round, times[i]);
        }
    }
    std::printf("  %-36s %27s   %-22s %s\n", "medians of 9 rounds, 96 % intervals", "elapsed",
                "ratio of elapsed", "of processor time");
    for (std::size_t i = 0; i < contenders.size(); ++i)
    {
        Print(contenders[i], times[i], times.front(), rate);
    }
}

} // namespace

void TimeInTurn(const std::vector<Contender>& contenders, std::uint64_t bytes)
{
    TimeWithRate(contenders, [bytes](double seconds)
                 { return Formatted("%7.0f MB/s", static_cast<double>(bytes) / seconds / 1e6); });
}

void TimeEachInTurn(const std::vector<Contender>& contenders, std::uint64_t count)
{
    TimeWithRate(contenders, [count](double seconds)
                 { return Formatted("%9.2f us", seconds / static_cast<double>(count) * 1e6); });
}

} // namespace benchmarks
