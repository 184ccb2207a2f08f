#include "host/replay/judgement.h"

#include <algorithm>
#include <iterator>

namespace replay
{

namespace
{

bool IsChanged(const JudgedWay& judged)
{
    return judged.before != judged.after;
}

// An order type for which the contract has no terms, and where nobody may release anything.
bool IsNowhereDecided(const JudgedWay& judged)
{
    return judged.way.isOtherTypes && judged.before == scratch::kNoRule &&
           judged.after == scratch::kNoRule;
}

Cause CauseOf(const std::vector<JudgedWay>& changed)
{
    const Cause first = CauseOf(changed.front());
    const bool isOne =
        std::all_of(changed.begin(), changed.end(),
                    [first](const JudgedWay& each) { return CauseOf(each) == first; });
    return isOne ? first : Cause::Both;
}

} // namespace

Cause CauseOf(const JudgedWay& judged)
{
    const bool byHolders = judged.holdersOnly == judged.after;
    const bool byRules = judged.rulesOnly == judged.after;
    if (byHolders == byRules)
    {
        return Cause::Both;
    }
    return byRules ? Cause::Rules : Cause::Holders;
}

Judgement Weigh(const PastCheck& check, const std::vector<JudgedWay>& judged)
{
    Judgement result;
    const bool hasTerms = std::any_of(judged.begin(), judged.end(),
                                      [](const auto& each) { return !each.way.isOtherTypes; });
    std::vector<JudgedWay> possible;
    for (const JudgedWay& each : judged)
    {
        (hasTerms && IsNowhereDecided(each) ? result.leftOut : possible).push_back(each);
    }
    for (const JudgedWay& each : possible)
    {
        if (each.before == check.verdict)
        {
            result.counted.push_back(each);
        }
    }
    result.isAgainstRecord = result.counted.empty();
    if (result.isAgainstRecord)
    {
        result.counted = possible;
    }
    else
    {
        std::copy_if(possible.begin(), possible.end(), std::back_inserter(result.leftOut),
                     [&check](const auto& each) { return each.before != check.verdict; });
    }
    std::vector<JudgedWay> changed;
    std::copy_if(result.counted.begin(), result.counted.end(), std::back_inserter(changed),
                 IsChanged);
    result.isChanged = !changed.empty();
    if (result.isChanged)
    {
        const unsigned int after = changed.front().after;
        result.isCertain = changed.size() == result.counted.size() &&
                           std::all_of(changed.begin(), changed.end(),
                                       [after](const auto& each) { return each.after == after; });
        result.cause = CauseOf(changed);
    }
    return result;
}

void Tally::AddRead(const PastCheck& check)
{
    ++orders;
    rows += check.rows;
    maybeSeveral += check.mayBeSeveral ? 1 : 0;
    maybeParts += check.mayBePart ? 1 : 0;
}

void Tally::AddJudged(const Judgement& judgement)
{
    againstRecord += judgement.isAgainstRecord ? 1 : 0;
    if (!judgement.isChanged)
    {
        return;
    }
    if (!judgement.isCertain)
    {
        ++dependent;
        return;
    }
    switch (judgement.counted.front().after)
    {
    case scratch::kAccepted:
        ++accepted;
        break;
    case scratch::kRefused:
        ++refused;
        break;
    default:
        ++withoutRule;
        break;
    }
}

} // namespace replay
