#include "host/authority/change_of_effect.h"
#include "host/authority/map_text.h"
#include "host/table.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

namespace authority
{

namespace
{

using Json = nlohmann::ordered_json;

void Append(std::string& text, const std::string& indent, const std::string& words)
{
    for (const std::string& line : host::Wrapped(words, host::kTerminalColumns - indent.size()))
    {
        text += indent + line + "\n";
    }
}

std::string InWords(const Redecision& redecision)
{
    return InWords(redecision.cell) + ": " + OutcomeOf(redecision.before) + " -> " +
           OutcomeOf(redecision.after);
}

void Append(std::string& text, const KindEffect& kind)
{
    text += "\n";
    Append(text, "", TypeInWords(kind.map) + ": " + KeyInWords(kind.map.kind.contract));
    std::string before;
    for (const Redecision& redecision : kind.redecisions)
    {
        const std::string who =
            redecision.signers + (redecision.veu == "any" ? "" : ", VEU " + redecision.veu);
        if (who != before)
        {
            Append(text, "  ", who);
        }
        before = who;
        Append(text, "      ", InWords(redecision));
    }
    Append(text, "  ", LargerSets(kind.map));
}

Json AsJson(const KindEffect& kind, const Redecision& redecision)
{
    const rulebook::ContractKey& key = kind.map.kind.contract;
    Json object = {{"partner", key.vpname},
                   {"service", key.vfname},
                   {"client", key.vcname},
                   {"protocol", key.protocol},
                   {"server", key.server},
                   {"type", kind.map.kind.type},
                   {"signers", redecision.signers},
                   {"veu", redecision.veu},
                   {"amounts", InWords(redecision.cell)},
                   {"before", OutcomeOf(redecision.before)},
                   {"after", OutcomeOf(redecision.after)}};
    if (kind.map.isOtherTypes)
    {
        object["type"] = nullptr;
    }
    return object;
}

} // namespace

std::string AsText(const ChangeOfEffect& effect)
{
    std::string text;
    const std::string which = effect.keysLeft == 0 ? "" : " of those that were judged";
    Append(text, "",
           effect.kinds.empty()
               ? "Effect: no order" + which + " is decided otherwise."
               : "Effect: these orders" + which + " are decided otherwise, the others are not.");
    Append(text, "",
           "(Decided by the library on copies of the rules before and after; " +
               std::to_string(effect.judged) + " orders were judged.)");
    for (const KindEffect& kind : effect.kinds)
    {
        Append(text, kind);
    }
    if (effect.keysLeft > 0)
    {
        text += "\n";
        Append(text, "",
               "WARNING: only " + std::to_string(effect.keysJudged) +
                   " of the contracts that the change reaches were judged, " +
                   std::to_string(effect.keysLeft) +
                   " were not. Make the change in smaller parts to see all of its effect.");
    }
    return text;
}

Json AsJson(const ChangeOfEffect& effect)
{
    Json list = Json::array();
    for (const KindEffect& kind : effect.kinds)
    {
        for (const Redecision& redecision : kind.redecisions)
        {
            list.push_back(AsJson(kind, redecision));
        }
    }
    return {{"redecided", list},
            {"contractsJudged", effect.keysJudged},
            {"contractsNotJudged", effect.keysLeft},
            {"ordersJudged", effect.judged}};
}

} // namespace authority
