#pragma once

#include "engine/conversion_output.h"
#include "engine/exact_decimal.h"
#include "engine/rows.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace engine
{

/// What a file or group says of its orders, beside what was read. Totals are compared, never
/// trusted; control sums add amounts whatever their currencies.
class ControlTotals
{
public:
    struct Findings
    {
        Finding count;
        Finding sum;
    };

    void StateCount(std::string_view text) { m_statedCount = text; }
    void StateSum(std::string_view text) { m_statedSum = text; }
    void CountOrder() noexcept { ++m_count; }
    void Add(const ExactDecimal& amount) noexcept { m_sum.Add(amount); }

    /// Tells each difference as an error row; `owner` is "file" or the like.
    void Compare(ConversionOutput& output, std::uint64_t position, const std::string& record,
                 const Findings& findings, const char* owner) const;

private:
    std::string m_statedCount; // empty: not stated
    std::string m_statedSum;
    std::uint64_t m_count = 0;
    ExactDecimal m_sum;
};

} // namespace engine
