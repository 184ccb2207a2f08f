#include "rules/verdict.h"

#include "rules/check_signatures.h"

#include <iterator>

namespace rules
{

namespace
{

constexpr unsigned short kInformation = 0;
constexpr unsigned short kError = 1;
constexpr unsigned short kRefusal = 2;

// By verdict.
constexpr VerdictHeading kHeadings[] = {
    {"CHECK SIGNATURES RULES NOT FOUND", kError},
    {"CHECK SIGNATURES RULES SUCCESS", kInformation},
    {"CHECK SIGNATURES RULES FAILED", kRefusal},
};
constexpr VerdictHeading kProcessError = {"CHECK SIGNATURES RULES PROCESS ERROR", kError};

} // namespace

const VerdictHeading& HeadingOf(std::uint32_t verdict)
{
    return verdict < std::size(kHeadings) ? kHeadings[verdict] : kProcessError;
}

TSimpleStringW EventText(const VerdictHeading& heading, const TSimpleStringW& journal)
{
    TSimpleStringW text;
    text.FromNarrow(heading.title);
    text += L"\r\n";
    text += journal;
    return text;
}

std::uint32_t ReduceDecisions(const TArray<ruleSign>& decisions, TSimpleString& reasonCode,
                              TSimpleStringW& reasonText)
{
    std::uint32_t verdict = kVerdictFailed;
    for (int i = 0; i < decisions.GetCount(); ++i)
    {
        const ruleSign& decision = *decisions.GetAt(i);
        if (decision.status == kStatusFailed)
        {
            reasonCode = decision.reasonCode;
            reasonText = decision.reasonText;
            return kVerdictFailed;
        }
        if (decision.status == kStatusSuccess)
        {
            verdict = kVerdictSuccess;
        }
        else if (decision.status == kStatusUndecided && verdict != kVerdictSuccess)
        {
            verdict = kVerdictNoRule;
        }
    }
    return verdict;
}

} // namespace rules
