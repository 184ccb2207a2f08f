#pragma once

#include <cstdint>
#include <string>

namespace benchmarks
{

/// What a generated order file holds. Amounts in cents of a euro.
struct OrderFileFacts
{
    std::string path;
    std::uint64_t orders = 0;
    std::uint64_t bytes = 0;
    std::uint64_t totalCents = 0;
    std::uint64_t largestCents = 0;
};

/// Bytes that one order takes in the generated file and in the work files together, at most.
inline constexpr std::uint64_t kBytesPerOrder = 1024;

/// Writes a pain.001.001.03 of `orders` transactions, 1,000 a payment group, with true control
/// sums, one transaction a line without further blanks: the less there is to parse beside the data,
/// the more a converter's own cost shows. Raises std::runtime_error.
OrderFileFacts WritePain001(const std::string& path, std::uint64_t orders);

} // namespace benchmarks
