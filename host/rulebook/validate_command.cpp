#include "host/rulebook/validate_command.h"

#include "database/cdatabase.h"
#include "host/exit_status.h"
#include "host/output.h"
#include "host/rulebook/book_reading.h"
#include "host/rulebook/checked_file.h"

#include <nlohmann/json.hpp>

#include <optional>

namespace rulebook
{

namespace
{

using Json = nlohmann::ordered_json;

std::optional<RuleBook> DatabaseAskedFor(const host::OptionValues& values)
{
    if (values.Find("db") == nullptr)
    {
        return std::nullopt;
    }
    const host::Connection connection = host::ConnectionFrom(values);
    CDatabase database;
    OpenRuleTables(database, connection);
    return ReadBook(database, connection);
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

Json AsJson(const std::optional<RuleBook>& database)
{
    if (!database)
    {
        return nullptr;
    }
    return {{"holders", database->holders.size()}, {"contracts", database->contracts.size()}};
}

Json AsJson(const CheckedFile& checked, const std::optional<RuleBook>& database)
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
            {"comparedWith", AsJson(database)},
            {"problems", checked.problems.Errors()},
            {"warnings", checked.problems.Warnings()},
            {"findings", list}};
}

std::string InWords(const std::optional<RuleBook>& database)
{
    if (!database)
    {
        return "Only the file was looked at. With --db it is compared with a database, too.\n";
    }
    return "Compared with " + Counted(database->holders.size(), "holder") + " and " +
           Counted(database->contracts.size(), "contract") + " of the database.\n";
}

std::string AsText(const CheckedFile& checked, const std::optional<RuleBook>& database)
{
    std::string text;
    for (const Problem& problem : checked.problems.InOrder())
    {
        text += TextOf(problem, checked.name) + "\n";
    }
    const RuleBook& book = checked.file.book;
    return text + checked.name + ": " + Counted(book.holders.size(), "holder") + ", " +
           Counted(book.contracts.size(), "contract") + ", " + Counted(RulesOf(book), "rule") +
           "; " + CountsOf(checked.problems) + ".\n" + InWords(database);
}

} // namespace

int RunValidate(const host::OptionValues& values)
{
    const std::optional<RuleBook> database = DatabaseAskedFor(values);
    const CheckedFile checked =
        CheckRuleFile(RuleFileArgument(values), database ? &*database : nullptr);
    if (values.IsOn("json"))
    {
        host::PrintJson(AsJson(checked, database));
    }
    else
    {
        host::Print(AsText(checked, database));
    }
    return checked.problems.Errors() == 0 ? host::kDone : host::kFindings;
}

} // namespace rulebook
