#include "signutils/check_counting.h"

#include <algorithm>
#include <iterator>

namespace
{

using support::CheckEnd;

// By verdict.
constexpr CheckEnd kEnds[] = {CheckEnd::NoRule, CheckEnd::Success, CheckEnd::Refused};

/// In the order of support::Shortfall.
support::ShortfallFlags ShortfallsOf(const CheckOutcome& outcome) noexcept
{
    return {!outcome.amountsKnown,
            !outcome.rulesComplete,
            !outcome.lookupsComplete,
            outcome.rowsWritten < outcome.rowsDue,
            outcome.journal == JournalState::Spooled,
            outcome.journal == JournalState::Lost,
            outcome.report == ReportState::NotHandedOn};
}

void Clear(support::ShortfallFlags& flags, support::Shortfall kind) noexcept
{
    flags[static_cast<std::size_t>(kind)] = false;
}

} // namespace

namespace signutils
{

void CountCheck(const CheckOutcome& outcome, const char* service,
                support::CheckCounts& counts) noexcept
{
    support::CheckFacts facts;
    facts.reasonCode = outcome.reasonCode.SafeGetString();
    facts.service = service;
    facts.shortfalls = ShortfallsOf(outcome);
    if (outcome.ran)
    {
        facts.end = kEnds[std::min<std::size_t>(outcome.verdict, std::size(kEnds) - 1)];
    }
    else
    {
        // Nothing was read.
        Clear(facts.shortfalls, support::Shortfall::RulesIncomplete);
        Clear(facts.shortfalls, support::Shortfall::LookupsIncomplete);
    }
    counts.Add(facts);
}

} // namespace signutils
