#include "host/explain/origin.h"

#include "host/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <string_view>
#include <vector>

namespace explain
{

namespace
{

using support::Language;

constexpr std::string_view kServerMode = "SRV";
constexpr std::string_view kRequesterMode = "DEM";

/// The words of one language.
struct Words
{
    const char* check;
    const char* of;
    const char* file;
    const char* begun;
    const char* under;
    const char* colon;
    const char* partner;
    const char* service;
    const char* client;
    const char* protocol;
    const char* server;
    const char* requester;
};

constexpr Words kEnglish = {"Check ",    " of ",        "File",          "Begun",
                            "Under",     ": ",          "partner ",      ", service ",
                            ", client ", ", protocol ", ", bank's side", ", requester's side"};
constexpr Words kFrench = {"Contrôle ", " sur ",        "Fichier",       "Début",
                           "Contrat",   " : ",          "partenaire ",   ", service ",
                           ", client ", ", protocole ", ", côté banque", ", côté demandeur"};

const Words& In(Language language)
{
    return language == Language::French ? kFrench : kEnglish;
}

// The rules tell them, so that a check which found no rule has none.
std::vector<std::string> ContractsOf(const TracedCheck& check)
{
    std::vector<std::string> contracts;
    for (const TracedRule& rule : check.rules)
    {
        if (std::find(contracts.begin(), contracts.end(), rule.cuid) == contracts.end())
        {
            contracts.push_back(rule.cuid);
        }
    }
    return contracts;
}

std::string UnderWhich(const TracedCheck& check, const Words& words)
{
    if (check.partner.empty() && check.service.empty() && check.client.empty())
    {
        return {};
    }
    std::string contracts;
    for (const std::string& contract : ContractsOf(check))
    {
        contracts += (contracts.empty() ? "" : ", ") + contract;
    }
    std::string text = contracts.empty() ? "" : contracts + words.colon;
    text += words.partner + check.partner + words.service + check.service + words.client +
            check.client + words.protocol + check.protocol;
    if (check.mode == kServerMode)
    {
        text += words.server;
    }
    else if (check.mode == kRequesterMode)
    {
        text += words.requester;
    }
    return text;
}

nlohmann::ordered_json SideOf(const TracedCheck& check)
{
    if (check.mode == kServerMode)
    {
        return "server";
    }
    return check.mode == kRequesterMode ? nlohmann::ordered_json("requester") : nullptr;
}

} // namespace

Section OriginOf(const TracedCheck& check, std::size_t number, std::size_t count, Language language)
{
    const Words& words = In(language);
    Section section = {words.check + std::to_string(number) + words.of + std::to_string(count), {}};
    const auto add = [&section](const char* label, const std::string& value)
    {
        if (!value.empty())
        {
            section.lines.push_back({label, host::Printable(value)});
        }
    };
    add(words.file, check.file);
    add(words.begun, check.begun);
    add(words.under, UnderWhich(check, words));
    return section;
}

nlohmann::ordered_json OriginAsJson(const TracedCheck& check)
{
    return {
        {"file", check.file},         {"begun", check.begun},     {"contracts", ContractsOf(check)},
        {"partner", check.partner},   {"service", check.service}, {"client", check.client},
        {"protocol", check.protocol}, {"side", SideOf(check)}};
}

} // namespace explain
