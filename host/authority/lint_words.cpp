#include "host/authority/lint_words.h"

#include "host/amount_text.h"
#include "host/authority/map_text.h"
#include "host/paragraph.h"
#include "support/codepage.h"
#include "support/messages.h"

#include <nlohmann/json.hpp>

namespace authority
{

namespace
{

using Json = nlohmann::ordered_json;

std::string InWords(const Witness& witness)
{
    const scratch::Order& order = witness.order;
    std::string words;
    for (const std::string& signer : order.signers)
    {
        words += (words.empty() ? "" : "; ") + signer;
    }
    words = (words.empty() ? "nobody" : words) + ", total " + host::RuleAmount(order.total) +
            ", largest order " + host::RuleAmount(order.largest) + ", VEU " +
            (order.isDistributed ? "on" : "off");
    words += witness.judgedBy.empty() ? "" : ", judged by " + witness.judgedBy;
    words += std::string(": ") + OutcomeOf(witness.decision.verdict);
    return witness.decision.reasonCode.empty() ? words
                                               : words + " (" + witness.decision.reasonCode + ")";
}

Json AsJson(const Witness& witness)
{
    return {{"signers", witness.order.signers},
            {"total", witness.order.total},
            {"largest", witness.order.largest},
            {"distributed", witness.order.isDistributed},
            {"judgedBy", witness.judgedBy.empty() ? "the whole contract" : witness.judgedBy},
            {"verdict", witness.decision.verdict},
            {"outcome", OutcomeOf(witness.decision.verdict)},
            {"reasonCode", witness.decision.reasonCode}};
}

} // namespace

std::string AsText(const LintedKind& linted)
{
    std::string text;
    host::AppendParagraph(text, "Contract", linted.cuid + ", " + linted.kind);
    for (const Finding& finding : linted.findings)
    {
        text += "\n" + finding.code + "\n";
        host::AppendParagraph(text, "  Finding", finding.text);
        for (const Witness& witness : finding.witnesses)
        {
            host::AppendParagraph(text, "  Witness", InWords(witness));
        }
    }
    return text;
}

Json AsJson(const LintedKind& linted)
{
    Json object = {{"contract", linted.cuid}, {"kind", linted.kind}, {"findings", Json::array()}};
    for (const Finding& finding : linted.findings)
    {
        Json witnesses = Json::array();
        for (const Witness& witness : finding.witnesses)
        {
            witnesses.push_back(AsJson(witness));
        }
        object["findings"].push_back(
            {{"code", finding.code}, {"text", finding.text}, {"witnesses", witnesses}});
    }
    return object;
}

} // namespace authority
