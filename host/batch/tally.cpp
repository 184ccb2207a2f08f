#include "host/batch/tally.h"

#include "support/format.h"

#include <nlohmann/json.hpp>

namespace batch
{

namespace
{

void AddCount(std::string& text, std::size_t count, const char* what, bool always = false)
{
    if (count > 0 || always)
    {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + what;
    }
}

} // namespace

void Tally::Add(const OrderResult& result)
{
    m_status = GravityOf(result.status) > GravityOf(m_status) ? result.status : m_status;
    if (!result.IsJudged())
    {
        ++m_notJudged;
        return;
    }
    m_recovered += result.ending == Ending::Recovered ? 1 : 0;
    m_incomplete += result.IsIncomplete() ? 1 : 0;
    switch (host::ExitStatusOf(result.check))
    {
    case host::kDone:
        ++m_accepted;
        break;
    case host::kFindings:
        ++m_refused;
        break;
    case host::kNoRule:
        ++m_noRule;
        break;
    default:
        ++m_amountsUnknown;
        break;
    }
}

std::size_t Tally::Told() const
{
    return m_accepted + m_refused + m_noRule + m_amountsUnknown + m_notJudged;
}

int Tally::Status() const
{
    return m_left > 0 ? host::kCouldNotRun : m_status;
}

nlohmann::ordered_json Tally::AsJson(double seconds) const
{
    return {{"accepted", m_accepted},   {"refused", m_refused},
            {"noRule", m_noRule},       {"amountsUnknown", m_amountsUnknown},
            {"notJudged", m_notJudged}, {"incomplete", m_incomplete},
            {"recovered", m_recovered}, {"judgedBefore", m_skipped},
            {"left", m_left},           {"withoutTerms", m_withoutTerms},
            {"seconds", seconds},       {"status", Status()}};
}

std::string Tally::InWords(double seconds) const
{
    std::string text;
    AddCount(text, m_accepted, "accepted", true);
    AddCount(text, m_refused, "refused", true);
    AddCount(text, m_noRule, "without a rule");
    AddCount(text, m_amountsUnknown, "accepted on UNKNOWN amounts");
    AddCount(text, m_notJudged, "NOT judged");
    AddCount(text, m_incomplete, "judged INCOMPLETELY");
    AddCount(text, m_recovered, "taken from the history");
    AddCount(text, m_skipped, "judged before");
    AddCount(text, m_left, "left for the next run");
    AddCount(text, m_withoutTerms, "waiting for terms");
    const std::size_t judged = Told() - m_notJudged;
    const double rate = seconds > 0.0 ? static_cast<double>(judged) / seconds : 0.0;
    return text + support::FormatA("; %.1f seconds, %.0f a second.", seconds, rate);
}

} // namespace batch
