#include "host/rulebook/validate_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/rulebook/book_reading.h"
#include "host/rulebook/checked_file.h"

#include <nlohmann/json.hpp>

namespace rulebook
{

namespace
{

using Json = nlohmann::ordered_json;

// Rules of a part of the bank may name holders whom only the database has.
std::set<std::string> HoldersOfDatabase(const host::OptionValues& values)
{
    if (values.Find("db") == nullptr)
    {
        return {};
    }
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    OpenRuleTables(database, connection);
    return HolderIds(ReadBook(database, connection));
}

std::size_t RulesOf(const RuleBook& book)
{
    std::size_t count = 0;
    for (const Contract& contract : book.contracts)
    {
        count += contract.rules.size();
    }
    return count;
}

Json AsJson(const CheckedFile& checked)
{
    const RuleBook& book = checked.file.book;
    Json list = Json::array();
    for (const Problem& problem : checked.problems.InOrder())
    {
        list.push_back({{"line", problem.line},
                        {"field", problem.field},
                        {"severity", problem.isWarning ? "warning" : "problem"},
                        {"text", problem.what},
                        {"remedy", problem.remedy}});
    }
    return {{"file", checked.name},
            {"holders", book.holders.size()},
            {"contracts", book.contracts.size()},
            {"rules", RulesOf(book)},
            {"problems", checked.problems.Errors()},
            {"warnings", checked.problems.Warnings()},
            {"findings", list}};
}

std::string AsText(const CheckedFile& checked)
{
    std::string text;
    for (const Problem& problem : checked.problems.InOrder())
    {
        text += TextOf(problem, checked.name) + "\n";
    }
    const RuleBook& book = checked.file.book;
    return text + checked.name + ": " + Counted(book.holders.size(), "holder") + ", " +
           Counted(book.contracts.size(), "contract") + ", " + Counted(RulesOf(book), "rule") +
           "; " + CountsOf(checked.problems) + ".\n";
}

} // namespace

int RunValidate(const host::OptionValues& values)
{
    const CheckedFile checked = CheckRuleFile(RuleFileArgument(values), HoldersOfDatabase(values));
    if (values.IsOn("json"))
    {
        host::PrintJson(AsJson(checked));
    }
    else
    {
        host::Print(AsText(checked));
    }
    return checked.problems.Errors() == 0 ? host::kDone : host::kFindings;
}

} // namespace rulebook
