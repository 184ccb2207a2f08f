#include "support/check_counts.h"

#include <algorithm>
#include <iterator>

namespace support
{

namespace
{

std::size_t ReasonOf(std::string_view code) noexcept
{
    constexpr std::size_t kOther = std::size(kReasons) - 1;
    if (code.empty())
    {
        return 0;
    }
    const auto* const found = std::find(std::begin(kReasons), std::end(kReasons), code);
    return std::min(static_cast<std::size_t>(found - std::begin(kReasons)), kOther);
}

} // namespace

void CheckCounts::Add(const CheckFacts& check) noexcept
{
    const std::lock_guard guard(m_mutex);
    ++CountsOf(check.service)[static_cast<std::size_t>(check.end)][ReasonOf(check.reasonCode)];
    for (std::size_t kind = 0; kind < m_shortfalls.size(); ++kind)
    {
        m_shortfalls[kind] += check.shortfalls[kind] ? 1 : 0;
    }
}

CheckCounts::Counts& CheckCounts::CountsOf(std::string_view service) noexcept
{
    auto* const end = m_services.begin() + m_known;
    auto* const found =
        std::find_if(m_services.begin(), end,
                     [service](const OfService& each) { return each.Name() == service; });
    if (found != end)
    {
        return found->counts;
    }
    if (m_known == kMostServices || service.size() > kLongestService)
    {
        return m_others;
    }
    service.copy(end->name.data(), service.size());
    end->length = service.size();
    ++m_known;
    return end->counts;
}

CheckCounts::Reading CheckCounts::Read() const
{
    Reading reading;
    reading.services.reserve(kMostServices);
    const std::lock_guard guard(m_mutex);
    reading.services.assign(m_services.begin(), m_services.begin() + m_known);
    reading.others = m_others;
    reading.shortfalls = m_shortfalls;
    return reading;
}

} // namespace support
