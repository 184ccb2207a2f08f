#include "host/pending_command.h"

#include "database/cdatabase.h"
#include "host/amount_text.h"
#include "host/authority/forecast.h"
#include "host/exit_status.h"
#include "host/explain/outlook.h"
#include "host/hypothetical_order.h"
#include "host/order_in_history.h"
#include "host/output.h"
#include "host/paragraph.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

namespace host
{

namespace
{

using authority::Completion;
using authority::Forecast;
using authority::IsHopeless;
using Json = nlohmann::ordered_json;

std::string SoFar(const Forecast& forecast)
{
    const scratch::Decision& decision = forecast.soFar;
    switch (decision.verdict)
    {
    case scratch::kAccepted:
        return "accepted: nothing speaks against the signatures that are there.";
    case scratch::kRefused:
        return "refused: " + decision.reasonText +
               (decision.reasonCode.empty() ? "" : " (reason code " + decision.reasonCode + ")") +
               ".";
    default:
        return "no rule concerns the signatures that are there.";
    }
}

void AppendOutlook(std::string& text, const Forecast& forecast)
{
    if (forecast.isComplete)
    {
        AppendParagraph(text, "Complete", "yes: all signatures together are accepted, too.");
        return;
    }
    if (IsHopeless(forecast))
    {
        AppendParagraph(text, "WARNING", explain::HopelessInWords(support::Language::English));
        return;
    }
    bool isFirst = true;
    for (const Completion& completion : forecast.completions)
    {
        AppendParagraph(text, isFirst ? "Lacks" : "", (isFirst ? "" : "or ") + completion.label);
        isFirst = false;
    }
}

/// What is asked about, and where it was found when the history tells it.
struct Question
{
    HypotheticalOrder asked;
    std::optional<OrderInHistory> found;
};

// The history has neither currency nor order type.
Question FromHistory(const OptionValues& values)
{
    Question question = {ReadAskedContract(values), {}};
    if (const OptionValue* const currency = values.Find("currency"); currency != nullptr)
    {
        question.asked.currency = FormOf(*currency).currency;
    }
    const Connection connection = ConnectionFrom(values);
    CDatabase database;
    OpenRulesDatabase(database, connection);
    question.found =
        FindInHistory(database, connection, values,
                      authority::ReadContract(database, connection, question.asked.cuid));
    question.asked.key = question.found->key;
    question.asked.order.signers = question.found->signers;
    question.asked.order.total = question.found->total;
    question.asked.order.largest = question.found->largest;
    return question;
}

void AppendHistory(std::string& text, const OrderInHistory& found)
{
    AppendParagraph(text, "History",
                    std::to_string(found.rows) + (found.rows == 1 ? " row" : " rows") +
                        " of order " + Quoted(found.orderId) + ", file " + Quoted(found.file) +
                        ".");
    AppendParagraph(text, "",
                    "The last of " + found.last +
                        ". Signers are those of all rows, amounts those of the last.");
}

std::string AsText(const Question& question, const scratch::OrderKind& kind,
                   const Forecast& forecast, const std::string& provenance)
{
    std::string text = InWords(question.asked, kind);
    if (question.found)
    {
        AppendHistory(text, *question.found);
    }
    std::string signedBy;
    for (const std::string& label : forecast.signedBy)
    {
        signedBy += (signedBy.empty() ? "" : ", ") + label;
    }
    AppendParagraph(text, "Signed by", signedBy.empty() ? "nobody yet" : signedBy);
    AppendParagraph(text, "So far", SoFar(forecast));
    AppendOutlook(text, forecast);
    AppendParagraph(text, "Recorded", provenance);
    return text;
}

Json AsJson(const scratch::OrderKind& kind, const Forecast& forecast)
{
    Json object = {{"type", kind.type},
                   {"signedBy", forecast.signedBy},
                   {"soFar", authority::OutcomeOf(forecast.soFar.verdict)},
                   {"reasonCode", forecast.soFar.reasonCode},
                   {"reasonText", forecast.soFar.reasonText},
                   {"complete", forecast.isComplete},
                   {"canBeCompleted", !IsHopeless(forecast)},
                   {"completions", Json::array()}};
    for (const Completion& completion : forecast.completions)
    {
        object["completions"].push_back(
            {{"label", completion.label}, {"signers", completion.signers}});
    }
    return object;
}

} // namespace

int RunPending(const OptionValues& values)
{
    const Question question = IsNamedInHistory(values)
                                  ? FromHistory(values)
                                  : Question{ReadHypotheticalOrder(values), {}};
    const HypotheticalOrder& asked = question.asked;
    TellWarnings(asked);
    Json object = {{"contract", asked.cuid},     {"signers", asked.order.signers},
                   {"total", asked.order.total}, {"largest", asked.order.largest},
                   {"history", nullptr},         {"warnings", asked.warnings},
                   {"provenance", ""},           {"forecasts", Json::array()}};
    if (question.found)
    {
        object["history"] = {{"rows", question.found->rows},
                             {"last", question.found->last},
                             {"orderId", question.found->orderId},
                             {"file", question.found->file}};
    }
    std::string text;
    int status = kDone;
    ForEachKind(values, asked,
                [&](const AskedKind& each)
                {
                    scratch::Judge judge(each.copy, each.kind);
                    const Forecast forecast = authority::ForecastOf(judge, each.book, asked.order);
                    status = IsHopeless(forecast) ? kFindings : status;
                    const std::string provenance = each.copy.Provenance();
                    text += (text.empty() ? "" : "\n") +
                            AsText(question, each.kind, forecast, provenance);
                    object["provenance"] = provenance;
                    object["forecasts"].push_back(AsJson(each.kind, forecast));
                });
    if (values.IsOn("json"))
    {
        PrintJson(object);
    }
    else
    {
        Print(text);
    }
    return status;
}

} // namespace host
