#include "engine/control_totals.h"

#include <algorithm>

namespace engine
{

namespace
{

constexpr unsigned kUsualDecimals = 2;

std::string Shown(const std::string& text)
{
    constexpr std::size_t kShownCharacters = 40;
    return text.size() <= kShownCharacters ? text : text.substr(0, kShownCharacters) + "...";
}

std::string SumText(const ExactDecimal& sum)
{
    return sum.ToText(std::max(kUsualDecimals, sum.FractionDigits()));
}

} // namespace

void ControlTotals::Compare(ConversionOutput& output, std::uint64_t position,
                            const std::string& record, const Findings& findings,
                            const char* owner) const
{
    ExactDecimal stated;
    if (!m_statedCount.empty())
    {
        ExactDecimal counted;
        ExactDecimal::Parse(std::to_string(m_count), '.', counted);
        const auto result = ExactDecimal::Parse(m_statedCount, '.', stated);
        if (result != ExactDecimal::ParseResult::Ok || stated != counted)
        {
            output.AddError(position, record, findings.count,
                            std::string("The ") + owner + " states " + Shown(m_statedCount) +
                                " orders, " + std::to_string(m_count) + " were read");
        }
    }
    if (!m_statedSum.empty())
    {
        const auto result = ExactDecimal::Parse(m_statedSum, '.', stated);
        if (result != ExactDecimal::ParseResult::Ok || stated != m_sum)
        {
            output.AddError(position, record, findings.sum,
                            std::string("The ") + owner + " states a sum of " + Shown(m_statedSum) +
                                ", the orders read sum to " + SumText(m_sum));
        }
    }
}

} // namespace engine
