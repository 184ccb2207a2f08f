#include "host/doctor/doctor_command.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/batch/leftovers.h"
#include "host/doctor/bank.h"
#include "host/doctor/database_checks.h"
#include "host/doctor/file_checks.h"
#include "host/doctor/leftovers.h"
#include "host/doctor/words.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "schema/installer.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <iterator>
#include <optional>

namespace doctor
{

namespace
{

struct DatabaseCheck
{
    const char* name;
    Findings (*run)(const Bank& bank);
};

constexpr DatabaseCheck kDatabaseChecks[] = {
    {"schema", CheckSchemaVersion}, {"tables", CheckTables}, {"indexes", CheckIndexes},
    {"rights", CheckRights},        {"clock", CheckClock},
};

void Append(Findings& all, Findings more)
{
    all.insert(all.end(), std::make_move_iterator(more.begin()),
               std::make_move_iterator(more.end()));
}

// One check that cannot be carried out keeps none of the others from it.
void AddGuarded(Findings& all, const char* name, const std::function<Findings()>& look)
{
    std::string problem;
    Findings found;
    database::GuardDatabase(
        [&]
        {
            try
            {
                found = look();
            }
            catch (const host::Refusal& refusal)
            {
                problem = refusal.what();
            }
            catch (const schema::SchemaError& error)
            {
                problem = error.what();
            }
        },
        [&problem](const CDBException& raised)
        { problem = "the database refused: " + support::Utf8FromNarrow(raised.GetText()); },
        [&problem] { problem = "unknown error"; });
    if (!problem.empty())
    {
        found = {{name, Outcome::Failed, "it could not be looked at: " + host::Printable(problem),
                  "See what this message names, and run signcheck doctor again."}};
    }
    Append(all, std::move(found));
}

// A text that is none ends a check for wrong usage; here it is one fault among others.
std::optional<host::Connection> ConnectionOf(const host::OptionValues& values, Findings& all)
{
    try
    {
        host::Connection connection = host::ConnectionFrom(values);
        host::RefuseDatabaseInMemory(connection);
        return connection;
    }
    catch (const host::Refusal& refusal)
    {
        all.push_back(
            {"database", Outcome::Failed, "there is no connection string to use", refusal.what()});
        return std::nullopt;
    }
}

void AddDatabaseChecks(Findings& all, const Bank* bank)
{
    for (const DatabaseCheck& check : kDatabaseChecks)
    {
        if (bank == nullptr)
        {
            all.push_back({check.name, Outcome::NotLooked, "the database is not open", ""});
            continue;
        }
        AddGuarded(all, check.name, [&] { return check.run(*bank); });
    }
}

Findings LookAtEverything(const host::OptionValues& values)
{
    const auto removalAge = batch::RemovalAge(values);
    Findings all;
    const std::optional<host::Connection> connection = ConnectionOf(values, all);
    CDatabase database;
    std::optional<Bank> bank;
    if (connection)
    {
        bank.emplace(Bank{database, *connection});
        if (!OpenBank(*bank, all))
        {
            bank.reset();
        }
    }
    const Bank* const open = bank ? &*bank : nullptr;
    AddDatabaseChecks(all, open);
    AddGuarded(all, "store", [&] { return CheckStore(values); });
    AddGuarded(all, "spool",
               [&] { return CheckSpool(connection ? connection->text : std::string()); });
    AddGuarded(all, "progress", CheckProgress);
    AddGuarded(all, "engine", CheckEngine);
    AddGuarded(all, "settings", [&] { return CheckSettings(values); });
    AddGuarded(all, "copies", [&] { return CheckCopies(open, removalAge); });
    if (const host::OptionValue* const folder = values.Find("folder"); folder != nullptr)
    {
        AddGuarded(all, "orders", [&] { return CheckOrderFolder(*folder, removalAge); });
    }
    return all;
}

} // namespace

int RunDoctor(const host::OptionValues& values)
{
    const Findings findings = LookAtEverything(values);
    if (values.IsOn("json"))
    {
        host::PrintJson(AsJson(findings));
    }
    else
    {
        host::Print(AsText(findings));
    }
    return StatusOf(findings);
}

} // namespace doctor
