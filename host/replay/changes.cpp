#include "host/replay/changes.h"

#include "host/replay/cause_text.h"

namespace replay
{

Findings Replay(HistoryWalk& history, Arbiter& arbiter)
{
    Findings findings;
    while (const auto check = history.Next())
    {
        findings.tally.AddRead(*check);
        const std::vector<JudgedWay> judged =
            check->obstacle.empty() ? arbiter.Judge(*check) : std::vector<JudgedWay>();
        if (judged.empty())
        {
            ++findings.tally.notJudged;
            continue;
        }
        const Judgement judgement = Weigh(*check, judged);
        findings.tally.AddJudged(judgement);
        if (judgement.isChanged)
        {
            findings.changes.push_back(
                {check->oldestRow, check->newestRow, judgement.cause, check->mayBePart});
        }
    }
    return findings;
}

std::optional<ToldOrder> Tell(CDatabase& database, const host::Connection& connection,
                              Arbiter& arbiter, const ChangedOrder& change)
{
    auto check = ReadAgain(database, connection, change.oldestRow, change.newestRow);
    if (!check)
    {
        return std::nullopt;
    }
    check->mayBePart = change.mayBePart;
    ToldOrder told;
    told.judgement = Weigh(*check, arbiter.Judge(*check));
    for (const JudgedWay& way : told.judgement.counted)
    {
        told.reasons.push_back(way.before == way.after
                                   ? std::string()
                                   : DecidingRule(arbiter.TraceAfter(*check, way)));
    }
    told.check = std::move(*check);
    return told;
}

} // namespace replay
