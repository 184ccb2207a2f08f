#include "host/doctor/words.h"

#include "host/exit_status.h"
#include "host/output.h"
#include "host/sentence.h"
#include "host/table.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace doctor
{

namespace
{

constexpr std::size_t kWidestText = 54; // of 80, beside the other two columns

struct OutcomeName
{
    Outcome outcome;
    const char* shown;
    const char* inJson;
};

constexpr OutcomeName kNames[] = {
    {Outcome::Ok, "OK", "ok"},
    {Outcome::Warning, "WARNING", "warning"},
    {Outcome::Failed, "FAILED", "failed"},
    {Outcome::NotLooked, "not looked at", "not-looked-at"},
};

const OutcomeName& NameOf(Outcome outcome)
{
    return *std::find_if(std::begin(kNames), std::end(kNames),
                         [outcome](const OutcomeName& each) { return each.outcome == outcome; });
}

std::size_t Count(const Findings& findings, Outcome outcome)
{
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(),
                                                  [outcome](const Finding& each)
                                                  { return each.outcome == outcome; }));
}

// What a message repeats may be a connection string in the wrong place.
std::string Safe(const std::string& text)
{
    return host::WithoutPasswords(text);
}

} // namespace

std::string AsText(const Findings& findings)
{
    host::Table table;
    table.AddColumn("RESULT");
    table.AddColumn("CHECK");
    table.AddColumn("FOUND", host::Table::Align::Left, kWidestText);
    for (const Finding& finding : findings)
    {
        table.AddRow({NameOf(finding.outcome).shown, finding.check, Safe(finding.found)});
        if (!finding.remedy.empty())
        {
            table.AddRow({"", "", "Remedy: " + Safe(finding.remedy)});
        }
    }
    return table.Text() + "\n" + std::to_string(Count(findings, Outcome::Failed)) + " failed, " +
           host::Counted(Count(findings, Outcome::Warning), "warning", "warnings") + ", " +
           std::to_string(Count(findings, Outcome::Ok)) + " in order, " +
           std::to_string(Count(findings, Outcome::NotLooked)) + " not looked at.\n";
}

nlohmann::ordered_json AsJson(const Findings& findings)
{
    nlohmann::ordered_json object;
    object["checks"] = nlohmann::ordered_json::array();
    for (const Finding& finding : findings)
    {
        nlohmann::ordered_json check = {{"check", finding.check},
                                        {"result", NameOf(finding.outcome).inJson},
                                        {"found", Safe(finding.found)},
                                        {"remedy", nullptr}};
        if (!finding.remedy.empty())
        {
            check["remedy"] = Safe(finding.remedy);
        }
        object["checks"].push_back(std::move(check));
    }
    object["failed"] = Count(findings, Outcome::Failed);
    object["warnings"] = Count(findings, Outcome::Warning);
    object["ok"] = Count(findings, Outcome::Ok);
    object["notLookedAt"] = Count(findings, Outcome::NotLooked);
    object["status"] = StatusOf(findings);
    return object;
}

int StatusOf(const Findings& findings)
{
    return Count(findings, Outcome::Failed) == 0 ? host::kDone : host::kFindings;
}

} // namespace doctor
