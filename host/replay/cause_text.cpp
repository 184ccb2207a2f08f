#include "host/replay/cause_text.h"

#include "host/explain/words.h"
#include "host/scratch/judge.h"

#include <algorithm>
#include <iterator>

namespace replay
{

namespace
{

using explain::Ending;

constexpr Ending kRefusals[] = {Ending::SameCertificate, Ending::Opposition,
                                Ending::TotalAboveLimit, Ending::LargestAboveLimit,
                                Ending::SingleSignature, Ending::DoubleSignature};
constexpr Ending kAcceptances[] = {Ending::Accepted, Ending::AllAllowed};

template <std::size_t count>
bool IsAmong(const Ending (&endings)[count], Ending ending)
{
    return std::find(std::begin(endings), std::end(endings), ending) != std::end(endings);
}

bool Decides(const explain::TracedRule& rule, unsigned int verdict)
{
    return verdict == scratch::kRefused ? IsAmong(kRefusals, rule.ending)
                                        : IsAmong(kAcceptances, rule.ending);
}

} // namespace

std::string DecidingRule(const std::string& trace)
{
    const auto checks = explain::ReadTrace(trace);
    if (checks.empty())
    {
        return {};
    }
    const explain::TracedCheck& check = checks.front();
    // The signers, a section for each rule, and the verdict.
    const auto sections = explain::Sections(check, support::MessageLanguage());
    const unsigned int verdict = check.verdict.value_or(scratch::kNoRule);
    const auto found = std::find_if(check.rules.begin(), check.rules.end(),
                                    [verdict](const auto& r)
                                    { return verdict != scratch::kNoRule && Decides(r, verdict); });
    if (found == check.rules.end())
    {
        return sections.back().lines.back().words;
    }
    const auto& section =
        sections[1U + static_cast<std::size_t>(std::distance(check.rules.begin(), found))];
    return section.title + ": " + section.lines.back().words;
}

} // namespace replay
