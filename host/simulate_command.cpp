#include "host/simulate_command.h"

#include "host/decision.h"
#include "host/exit_status.h"
#include "host/explain/explanation.h"
#include "host/html_page.h"
#include "host/hypothetical_order.h"
#include "host/output.h"
#include "host/paragraph.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

const char* SentenceOf(unsigned int verdict)
{
    switch (verdict)
    {
    case scratch::kAccepted:
        return "ACCEPTED: the signatures satisfy the contract's rules (verdict 1).";
    case scratch::kRefused:
        return "REFUSED: the signatures do not satisfy the contract's rules (verdict 2).";
    default:
        return "NO RULE: no rule of the contract concerns these signers (verdict 0).";
    }
}

// Refused is graver than no rule, which is graver than accepted.
int StatusOf(unsigned int verdict)
{
    switch (verdict)
    {
    case scratch::kAccepted:
        return kDone;
    case scratch::kRefused:
        return kFindings;
    default:
        return kNoRule;
    }
}

int Graver(int left, int right)
{
    return left == kFindings || right == kFindings ? kFindings : std::max(left, right);
}

std::string AsText(const HypotheticalOrder& asked, const scratch::OrderKind& kind,
                   const scratch::Decision& decision, const std::string& provenance)
{
    std::string text = InWords(asked, kind);
    AppendParagraph(text, "VEU", asked.order.isDistributed ? "on" : "off");
    AppendDecision(text, SentenceOf(decision.verdict));
    if (!decision.reasonText.empty())
    {
        AppendParagraph(text, "Why", decision.reasonText);
    }
    if (!decision.reasonCode.empty())
    {
        AppendParagraph(text, decision.reasonText.empty() ? "Why" : "",
                        "Reason code " + decision.reasonCode + ".");
    }
    AppendParagraph(text, "Recorded", provenance);
    return text;
}

Json AsJson(const scratch::OrderKind& kind, const scratch::Decision& decision)
{
    return {
        {"partner", kind.contract.vpname},     {"service", kind.contract.vfname},
        {"client", kind.contract.vcname},      {"protocol", kind.contract.protocol},
        {"server", kind.contract.server != 0}, {"type", kind.type},
        {"verdict", decision.verdict},         {"outcome", authority::OutcomeOf(decision.verdict)},
        {"reasonCode", decision.reasonCode},   {"reasonText", decision.reasonText}};
}

} // namespace

int RunSimulate(const OptionValues& values)
{
    RefuseHtmlWithoutExplain(values);
    RequirePlaceForHtmlPage(values);
    const HypotheticalOrder asked = ReadHypotheticalOrder(values);
    TellWarnings(asked);
    Json object = {{"contract", asked.cuid},
                   {"signers", asked.order.signers},
                   {"total", asked.order.total},
                   {"largest", asked.order.largest},
                   {"distributed", asked.order.isDistributed},
                   {"warnings", asked.warnings},
                   {"provenance", ""},
                   {"decisions", Json::array()}};
    std::string text;
    const bool isExplained = values.IsOn("explain");
    std::vector<explain::Section> sections;
    int status = kDone;
    const auto take = [&](const AskedKind& each)
    {
        std::string trace;
        const scratch::Decision decision =
            scratch::Judge(each.copy, each.kind).AskTraced(asked.order, trace);
        status = Graver(status, StatusOf(decision.verdict));
        const std::string provenance = each.copy.Provenance();
        text += (text.empty() ? "" : "\n") + AsText(asked, each.kind, decision, provenance);
        object["provenance"] = provenance;
        object["decisions"].push_back(AsJson(each.kind, decision));
        if (isExplained)
        {
            const auto explanation =
                explain::Explain(each.copy, {each.book, each.kind, asked.order}, trace);
            const auto told = explain::Sections(explanation);
            sections.insert(sections.end(), told.begin(), told.end());
            text += "\n" + explain::AsText(told);
            object["decisions"].back()["explanation"] = explain::AsJson(explanation);
        }
    };
    try
    {
        ForEachKind(values, asked, take);
    }
    catch (const scratch::Interrupted&)
    {
        // The order types that were judged are told; that others were not, the status says.
        Print(values.IsOn("json") ? std::string() : text);
        throw;
    }
    WriteHtmlPageAskedFor(values, explain::AsHtml(sections, support::MessageLanguage()));
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
