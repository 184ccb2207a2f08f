#include "host/authority/map_text.h"
#include "host/json_stream.h"
#include "host/output.h"
#include "host/replay/telling.h"

#include <nlohmann/json.hpp>

namespace replay
{

namespace
{

const char* NameOf(Cause cause)
{
    switch (cause)
    {
    case Cause::Rules:
        return "rules";
    case Cause::Holders:
        return "holders";
    default:
        return "both";
    }
}

struct Count
{
    const char* name;
    std::uint64_t Tally::*number;
};

constexpr Count kCounts[] = {
    {"orders", &Tally::orders},
    {"rows", &Tally::rows},
    {"refused", &Tally::refused},
    {"accepted", &Tally::accepted},
    {"withoutRule", &Tally::withoutRule},
    {"dependent", &Tally::dependent},
    {"againstRecord", &Tally::againstRecord},
    {"notJudged", &Tally::notJudged},
    {"maybeSeveral", &Tally::maybeSeveral},
    {"maybeParts", &Tally::maybeParts},
};

void Write(const JudgedWay& way, bool counts, const std::string& reason, host::JsonStream& json)
{
    json.BeginObject();
    json.Scalar("type", way.way.isOtherTypes ? nlohmann::ordered_json(nullptr)
                                             : nlohmann::ordered_json(way.way.type));
    json.Text("veu", way.way.isDistributed ? "on" : "off");
    json.Flag("counts", counts);
    json.Text("before", authority::OutcomeOf(way.before));
    json.Text("after", authority::OutcomeOf(way.after));
    json.Text("reason", reason);
    json.End();
}

void Write(const ToldOrder& told, host::JsonStream& json)
{
    const PastCheck& check = told.check;
    const Judgement& judgement = told.judgement;
    json.BeginObject();
    json.Scalar("row", check.newestRow);
    json.Scalar("firstRow", check.oldestRow);
    json.Scalar("rows", check.rows);
    json.Text("time", check.time);
    json.Text("partner", check.key.vpname);
    json.Text("service", check.key.vfname);
    json.Text("client", check.key.vcname);
    json.Scalar("protocol", check.key.protocol);
    json.Flag("server", check.key.server != 0);
    json.Text("orderId", check.orderId);
    json.Text("file", check.file);
    json.Text("signers", check.signers);
    json.Scalar("total", check.total);
    json.Scalar("largestOrder", check.largest);
    json.Text("recorded", authority::OutcomeOf(check.verdict));
    json.Flag("againstRecord", judgement.isAgainstRecord);
    json.Flag("maybeSeveral", check.mayBeSeveral);
    json.Flag("maybePart", check.mayBePart);
    json.Text("cause", NameOf(judgement.cause));
    json.Flag("dependent", !judgement.isCertain);
    json.BeginArray("ways");
    for (std::size_t index = 0; index < judgement.counted.size(); ++index)
    {
        Write(judgement.counted[index], true, told.reasons[index], json);
    }
    for (const JudgedWay& way : judgement.leftOut)
    {
        Write(way, false, "", json);
    }
    json.End();
    json.End();
}

void WriteAll(const Findings& findings, const Teller& tell, host::JsonStream& json,
              std::size_t& gone)
{
    for (const ChangedOrder& change : findings.changes)
    {
        if (const auto told = tell(change))
        {
            Write(*told, json);
        }
        else
        {
            ++gone;
        }
    }
}

} // namespace

std::size_t PrintAsJson(const Answer& answer, const Teller& tell,
                        std::optional<host::Refusal>& failure)
{
    host::JsonStream json;
    json.Text("rules", answer.rules);
    for (const Count& count : kCounts)
    {
        json.Scalar(count.name, answer.findings.tally.*count.number);
    }
    json.Scalar("judged", answer.judged);
    json.Text("provenance", answer.provenance);
    json.BeginArray("changes");
    std::size_t gone = 0;
    try
    {
        WriteAll(answer.findings, tell, json, gone);
    }
    catch (const host::Refusal& refusal)
    {
        failure = refusal;
    }
    json.End();
    if (failure)
    {
        json.Text("error", host::WithoutPasswords(failure->what()));
        json.Scalar("status", failure->Status());
    }
    json.Finish();
    return gone;
}

} // namespace replay
