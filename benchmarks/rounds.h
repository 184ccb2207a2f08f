#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace benchmarks
{

/// One way of doing a work. What `run` returns tells what it found; it must be the same each time.
struct Contender
{
    std::string name;
    std::function<std::uint64_t()> run;
    std::function<void()> cleanUp = [] {}; ///< after each run, not timed
};

/// Times the contenders in turn, nine rounds after one that does not count, and prints for each the
/// median time, the bytes per second of `bytes`, and its ratio to the first contender: the median
/// of the rounds' ratios with the 96 % interval of that median. Elapsed and processor time stand
/// side by side: the first holds the disk's part, the second is steadier on a machine in use.
/// Raises std::runtime_error when a contender does not find the same again.
void TimeInTurn(const std::vector<Contender>& contenders, std::uint64_t bytes);

/// The same for what is counted, not measured in bytes: prints the microseconds that one of `count`
/// takes.
void TimeEachInTurn(const std::vector<Contender>& contenders, std::uint64_t count);

} // namespace benchmarks
