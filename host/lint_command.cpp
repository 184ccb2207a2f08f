#include "host/lint_command.h"

#include "database/cdatabase.h"
#include "host/authority/contract_maps.h"
#include "host/authority/lint_words.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/moment.h"
#include "host/output.h"
#include "host/paragraph.h"
#include "host/query.h"

#include <nlohmann/json.hpp>

#include <set>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr std::size_t kDateLength = 10;

std::string Today()
{
    return LocalNow().substr(0, kDateLength);
}

std::set<std::string> AllContracts(CDatabase& database, const Connection& connection)
{
    std::set<std::string> contracts;
    for (const char* const table : {"SSR_CONTRACTCUR", "SSR_CONTRACT"})
    {
        ForEachRow(database, connection,
                   std::string("SELECT CUID FROM ") + table + " WHERE CUID IS NOT NULL", {"CUID"},
                   [&contracts](const QueryRow& row)
                   {
                       contracts.insert(row.at("CUID"));
                       return true;
                   });
    }
    return contracts;
}

/// Everything that one run found.
struct LintReport
{
    std::vector<authority::LintedKind> kinds;
    std::string provenance;
    std::size_t judged = 0;
    std::size_t findings = 0;
    std::size_t contracts = 0;
};

void LintContract(CDatabase& database, const Connection& connection, const std::string& cuid,
                  LintReport& report)
{
    ++report.contracts;
    for (const auto& part : authority::ReadContract(database, connection, cuid))
    {
        scratch::Copy copy(database, connection, part.book);
        report.provenance = copy.Provenance();
        const auto lint = [&](std::int64_t type, bool isOtherTypes)
        {
            const authority::LintTask task = {
                part.book, cuid, {part.key, type}, isOtherTypes, Today()};
            const std::string types =
                isOtherTypes ? "every other order type" : "order type " + std::to_string(type);
            authority::LintedKind linted = {cuid, types + ": " + authority::KeyInWords(part.key),
                                            authority::Lint(copy, task, report.judged)};
            report.findings += linted.findings.size();
            if (!linted.findings.empty())
            {
                report.kinds.push_back(std::move(linted));
            }
        };
        for (const std::int64_t type : part.types)
        {
            lint(type, false);
        }
        if (part.otherType)
        {
            lint(*part.otherType, true);
        }
    }
}

Json AsJson(const LintReport& report)
{
    Json object = {{"contracts", report.contracts},
                   {"findings", report.findings},
                   {"ordersJudged", report.judged},
                   {"provenance", report.provenance},
                   {"kinds", Json::array()}};
    for (const authority::LintedKind& linted : report.kinds)
    {
        object["kinds"].push_back(authority::AsJson(linted));
    }
    return object;
}

std::string Summary(const LintReport& report)
{
    std::string text;
    AppendParagraph(text, "Found",
                    std::to_string(report.findings) +
                        (report.findings == 1 ? " finding in " : " findings in ") +
                        std::to_string(report.contracts) +
                        (report.contracts == 1 ? " contract; " : " contracts; ") +
                        std::to_string(report.judged) + " orders were judged. " +
                        report.provenance);
    return text;
}

} // namespace

int RunLint(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    CDatabase database;
    OpenRulesDatabase(database, connection);
    std::set<std::string> contracts;
    if (const OptionValue* const contract = values.Find("contract"); contract != nullptr)
    {
        contracts = {contract->text};
    }
    else
    {
        contracts = AllContracts(database, connection);
    }
    LintReport report;
    for (const std::string& cuid : contracts)
    {
        LintContract(database, connection, cuid, report);
    }
    if (values.IsOn("json"))
    {
        PrintJson(AsJson(report));
        return report.findings == 0 ? kDone : kFindings;
    }
    for (const authority::LintedKind& linted : report.kinds)
    {
        Print(authority::AsText(linted) + "\n");
    }
    Print(Summary(report));
    return report.findings == 0 ? kDone : kFindings;
}

} // namespace host
