#include "tests/model/outcome_counts.h"

#include <cstdio>
#include <iterator>

namespace model
{

namespace
{

// In the order of Outcome.
constexpr const char* kNames[] = {
    "#RULE1 a holder in opposition",
    "#RULE2 total above the limit",
    "#RULE3 order above the limit",
    "#RULE4 no rule for the signers",
    "#RULE5 profile",
    "#RULE6 holder missing",
    "#RULE7 must sign alone",
    "#RULE8 contract not active",
    "1800 for the second holder",
    "1801 total above, one holder",
    "1802 order above, one holder",
    "1820 total above, two holders",
    "1821 order above, two holders",
    "1815 profile mismatch",
    "1808 double signature required",
    "1803 success, one holder",
    "1823 success, one holder, order",
    "1822 success, two holders",
    "1807 success, all holders",
    "1818 same certificate",
    "1812 warning, too many signers",
    "warning, signer not found",
    "warning, signer already found",
    "warning, certificate shared",
    "limit met exactly",
    "limit passed by at most a unit",
    "contract without rules",
    "look-up refused",
    "rules refused",
    "history row lost",
    "several checks on one object",
    "amounts or mode changed between",
    "the rules alone",
    "a check on a copy",
    "a check without signers",
    "a check of five signers",
    "report handed on",
    "report not handed on",
    "no connection",
    "amounts unknown",
};
static_assert(std::size(kNames) == static_cast<std::size_t>(Outcome::Count));

constexpr double kLeastShare = 0.01;

} // namespace

void OutcomeCounts::Add(const std::vector<Outcomes>& scenarios)
{
    for (const Outcomes& scenario : scenarios)
    {
        ++m_scenarios;
        for (std::size_t outcome = 0; outcome < m_counts.size(); ++outcome)
        {
            m_counts[outcome] += scenario.test(outcome) ? 1 : 0;
        }
    }
}

double OutcomeCounts::Share(std::size_t outcome) const
{
    return m_scenarios == 0
               ? 0.0
               : static_cast<double>(m_counts[outcome]) / static_cast<double>(m_scenarios);
}

std::string OutcomeCounts::Table() const
{
    std::string table;
    for (std::size_t outcome = 0; outcome < m_counts.size(); ++outcome)
    {
        char line[96];
        std::snprintf(line, sizeof line, "%10lld  %5.2f %%  %s\n",
                      static_cast<long long>(m_counts[outcome]), Share(outcome) * 100,
                      kNames[outcome]);
        table += line;
    }
    return table;
}

std::string OutcomeCounts::Rare() const
{
    std::string rare;
    for (std::size_t outcome = 0; outcome < m_counts.size(); ++outcome)
    {
        if (Share(outcome) < kLeastShare)
        {
            rare += std::string(kNames[outcome]) + "\n";
        }
    }
    return rare;
}

} // namespace model
