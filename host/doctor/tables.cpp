#include "host/doctor/database_checks.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "host/sentence.h"
#include "host/text.h"
#include "schema/catalogue.h"
#include "schema/installer.h"
#include "schema/needed_columns.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr const char* kSchema = "schema";
constexpr const char* kTables = "tables";
constexpr const char* kIndexes = "indexes";

bool Contains(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// MariaDB and SQL Server show a table to those alone who have a right on it.
bool ShowsEveryTable(const Bank& bank)
{
    const database::Product product = bank.database.GetDialect().product;
    return product == database::Product::Sqlite || product == database::Product::PostgreSql;
}

Finding MissingTable(const Bank& bank, const std::string& table)
{
    const std::string remedy =
        "Make it: signcheck init --db CONN. What it held comes back from a backup alone.";
    if (ShowsEveryTable(bank))
    {
        return {kTables, Outcome::Failed, "table " + table + " is not there", remedy};
    }
    return {kTables, Outcome::Failed,
            "table " + table + " is not there, or this user has no right on it",
            remedy + " Where it is there, grant this user what grants.sql of the product says."};
}

Finding MissingColumns(const Bank& bank, const std::string& table,
                       const std::vector<std::string>& columns)
{
    std::string names;
    std::string declarations;
    for (const std::string& column : columns)
    {
        names += (names.empty() ? "" : ", ") + column;
        declarations += (declarations.empty() ? "" : ", ") + column + " " +
                        schema::DeclarationOf(bank.database, table, column);
    }
    return {kTables, Outcome::Failed,
            "table " + table + " lacks " + (columns.size() == 1 ? "column " : "columns ") + names,
            "Restore the table from a backup, or add what it lacks as declared: " + declarations +
                "."};
}

} // namespace

Findings CheckSchemaVersion(const Bank& bank)
{
    const int ours = schema::CurrentVersion();
    const int found = schema::InstalledVersion(bank.database);
    const std::string words = "version " + std::to_string(found);
    if (found == ours)
    {
        return {{kSchema, Outcome::Ok, words + ", as this program", ""}};
    }
    if (found > ours)
    {
        return {{kSchema, Outcome::Failed,
                 words + ", newer than version " + std::to_string(ours) + " of this program",
                 "Install a signcheck and a library of that version."}};
    }
    return {{kSchema, Outcome::Warning,
             found == 0
                 ? std::string("no version is recorded")
                 : words + ", older than version " + std::to_string(ours) + " of this program",
             "Bring it up to date: signcheck init --db CONN."}};
}

Findings CheckTables(const Bank& bank)
{
    Findings findings;
    std::size_t columnCount = 0;
    for (const schema::NeededTable& table : schema::NeededTables())
    {
        const std::vector<std::string> there = schema::ColumnsIn(bank.database, table.name);
        if (there.empty())
        {
            findings.push_back(MissingTable(bank, table.name));
            continue;
        }
        std::vector<std::string> missing;
        for (const std::string& column : table.columns)
        {
            if (!Contains(there, column))
            {
                missing.push_back(column);
            }
        }
        if (!missing.empty())
        {
            findings.push_back(MissingColumns(bank, table.name, missing));
        }
        columnCount += table.columns.size();
    }
    if (findings.empty())
    {
        findings.push_back({kTables, Outcome::Ok,
                            host::Counted(schema::NeededTables().size(), "table", "tables") +
                                " with all " + std::to_string(columnCount) + " columns",
                            ""});
    }
    return findings;
}

Findings CheckIndexes(const Bank& bank)
{
    Findings findings;
    const std::vector<std::string> there = schema::IndexNames(bank.database);
    for (const schema::DeclaredIndex& index : schema::DeclaredIndexes(bank.database))
    {
        // A table that is not there is told as such.
        if (!Contains(there, index.name) && !schema::ColumnsIn(bank.database, index.table).empty())
        {
            findings.push_back({kIndexes, Outcome::Warning,
                                "index " + index.name + " is not there: look-ups in " +
                                    index.table + " read the whole table",
                                "Make it: signcheck init --db CONN, or " + index.statement + "."});
        }
    }
    if (findings.empty())
    {
        findings.push_back({kIndexes, Outcome::Ok, "every index of the tables that are there", ""});
    }
    return findings;
}

} // namespace doctor
