#include "schema/installer.h"

#include "database/cdatabase.h"
#include "database/crecordset.h"
#include "schema/needed_columns.h"
#include "schema/product_of.h"
#include "schema/transaction.h"
#include "support/numbers.h"

#include <algorithm>

namespace schema
{

namespace
{

/// The names of the tables that the connection reaches without naming a schema.
const wchar_t* TablesQuery(Product product)
{
    switch (product)
    {
    case Product::SQLite:
        return L"SELECT name AS TABLENAME FROM sqlite_master WHERE type = 'table' "
               L"AND name NOT LIKE 'sqlite%'";
    case Product::PostgreSQL:
        return L"SELECT table_name AS TABLENAME FROM information_schema.tables "
               L"WHERE table_schema = current_schema()";
    case Product::MariaDB:
        return L"SELECT TABLE_NAME AS TABLENAME FROM information_schema.tables "
               L"WHERE TABLE_SCHEMA = DATABASE()";
    case Product::SqlServer:
        return L"SELECT TABLE_NAME AS TABLENAME FROM INFORMATION_SCHEMA.TABLES "
               L"WHERE TABLE_SCHEMA = SCHEMA_NAME()";
    }
    return L"";
}

std::vector<std::string> ExistingTables(CDatabase& database)
{
    std::vector<std::string> names;
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, TablesQuery(ProductOf(database)), 0);
    for (; !rows.IsEOF(); rows.MoveNext())
    {
        CTString name;
        rows.GetFieldValue("TABLENAME", name);
        names.push_back(CapitalName(name.SafeGetString()));
    }
    rows.Close();
    return names;
}

bool Contains(const std::vector<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

int RecordedVersion(CDatabase& database, const std::vector<std::string>& tables)
{
    if (!Contains(tables, "SSR_VERSION"))
    {
        return 0;
    }
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT MAX(VERSION) AS NEWEST FROM SSR_VERSION", 0);
    CTString newest;
    rows.GetFieldValue("NEWEST", newest);
    rows.Close();
    return support::ToInt32(newest.SafeGetString());
}

/// Whether a statement looks for what it creates, so that it can be run on any version.
bool CreatesWhatIsMissing(const std::wstring& statement)
{
    return statement.rfind(L"IF ", 0) == 0 ||
           (statement.rfind(L"CREATE ", 0) == 0 &&
            statement.find(L" IF NOT EXISTS ") != std::wstring::npos);
}

void RunScript(CDatabase& database, const Script& script, bool isNew)
{
    for (const std::wstring& statement : SplitStatements(script.text))
    {
        if (isNew || CreatesWhatIsMissing(statement))
        {
            database.ExecuteSQLW(statement.c_str());
        }
    }
    if (isNew)
    {
        const std::wstring record = L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (" +
                                    std::to_wstring(script.number) + L", '" + script.name + L"')";
        database.ExecuteSQLW(record.c_str());
    }
}

std::string Join(const std::vector<std::string>& names)
{
    std::string text;
    for (const std::string& name : names)
    {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

// Creating what is missing would step over a stranger's table of the same name, and the first check
// would fail on it.
void RefuseForeignTables(CDatabase& database, const std::vector<std::string>& tables)
{
    for (const std::string& table : tables)
    {
        const std::vector<std::string> unreadable = UnreadableColumns(database, table);
        if (!unreadable.empty())
        {
            throw SchemaError("the table " + table + " was there already, and these of its " +
                              "columns are missing or cannot be read: " + Join(unreadable) +
                              "; rename that table, or use another database");
        }
    }
}

} // namespace

std::string InstallReport::Text() const
{
    const std::string now = std::to_string(version);
    if (foundVersion == version)
    {
        return createdTables.empty() ? "the schema is up to date, version " + now
                                     : "the schema is version " + now +
                                           "; missing tables were created: " + Join(createdTables);
    }
    if (foundVersion > 0)
    {
        return "the schema was upgraded from version " + std::to_string(foundVersion) + " to " +
               now;
    }
    return "no schema was found; version " + now + " was installed" +
           (createdTables.empty() ? "" : ", tables created: " + Join(createdTables)) +
           (takenTables.empty() ? "" : "; tables that were there already: " + Join(takenTables));
}

int CurrentVersion()
{
    return static_cast<int>(UpgradeScripts(Product::SQLite).size());
}

int InstalledVersion(CDatabase& database)
{
    return RecordedVersion(database, ExistingTables(database));
}

InstallReport Install(CDatabase& database)
{
    return Install(database, UpgradeScripts(ProductOf(database)));
}

InstallReport Install(CDatabase& database, const std::vector<Script>& scripts)
{
    const std::vector<std::string> before = ExistingTables(database);
    RefuseForeignTables(database, before);
    InstallReport report;
    report.foundVersion = RecordedVersion(database, before);
    report.version = static_cast<int>(scripts.size());
    if (report.foundVersion > report.version)
    {
        throw SchemaError("the database has schema version " + std::to_string(report.foundVersion) +
                          ", newer than version " + std::to_string(report.version) +
                          " of this program; use a newer program");
    }
    Transaction transaction(database);
    for (const Script& script : scripts)
    {
        RunScript(database, script, script.number > report.foundVersion);
    }
    transaction.Commit();
    for (const std::string& table : ExistingTables(database))
    {
        if (!Contains(before, table))
        {
            report.createdTables.push_back(table);
        }
        else if (report.foundVersion == 0 && Contains(TableNames(), table))
        {
            report.takenTables.push_back(table);
        }
    }
    std::sort(report.createdTables.begin(), report.createdTables.end());
    std::sort(report.takenTables.begin(), report.takenTables.end());
    return report;
}

} // namespace schema
