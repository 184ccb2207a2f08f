#include "host/connection.h"

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "database/crecordset.h"
#include "database/guard_database.h"
#include "host/driver_facts.h"
#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"

namespace host
{

namespace
{

constexpr const char* kInMemory = ":memory:";
constexpr const char* kTableMissing = "42S02";

struct NeededTable
{
    const char* name;
    const char* column;
    bool isRead; ///< a check reads it; into the others it only writes, and its user may not read
};

constexpr NeededTable kNeededTables[] = {
    {"SSR_CONTRACTCUR", "CUID", true},  {"SSR_CONTRACTRULE", "CUID", true},
    {"SSR_CONTRACT", "CUID", true},     {"SSR_HOLDER", "HUID", true},
    {"SSR_HOLDERID", "HUID", true},     {"HST_SIGNRULES", "STATUT", false},
    {"EVT_JOURNAL", "EVENTKEY", false},
};

[[noreturn]] void RefuseOpen(const Connection& connection, const std::string& reason,
                             const std::string& state)
{
    const bool isFileAtFault =
        NamesSqlite(database::ConnectionString(connection.text)) && !IsDriverMissing(state);
    throw Refusal(kCouldNotRun,
                  connection.origin + ": the database " + Quoted(connection.shown) +
                      " cannot be opened: " + Printable(reason) +
                      (isFileAtFault
                           ? ". Correct Database= in the connection string: its folder must be "
                             "there and writable."
                           : ". Correct the connection string; odbcinst -q -d lists the drivers "
                             "that are installed."));
}

// An embedded database is created by opening it, which a check must not do.
void RequireEmbeddedFile(const Connection& connection)
{
    const database::ConnectionString parts(connection.text);
    const std::string path = parts.Value("DATABASE");
    if (!NamesSqlite(parts) || path.empty() || port::FileExists(path.c_str()))
    {
        return;
    }
    throw Refusal(kCouldNotRun, connection.origin + ": the database file " +
                                    Quoted(support::Utf8FromNarrow(path)) +
                                    " is not there. Correct Database= in the connection string, "
                                    "or create it: signcheck init --db CONN.");
}

/// What came of reading no row of a table.
struct TableProbe
{
    bool isMissing = false;
    std::string reason; ///< the driver's text, UTF-8; empty when the table can be read
};

TableProbe Probe(CDatabase& database, const std::string& table, const std::string& column)
{
    const std::string statement = "SELECT " + column + " FROM " + table + " WHERE 1=0";
    TableProbe probe;
    database::GuardDatabase(
        [&]
        {
            CRecordset rows(database);
            rows.OpenW(CRecordset::kForwardOnly, support::WideFromNarrow(statement).c_str(), 0);
        },
        [&probe](const CDBException& raised)
        {
            probe.reason = support::Utf8FromNarrow(raised.GetText());
            probe.isMissing = std::string(raised.GetState()) == kTableMissing ||
                              probe.reason.find("no such table") != std::string::npos;
        },
        [&probe] { probe.reason = "unknown error"; });
    return probe;
}

[[noreturn]] void RefuseMissing(const Connection& connection, const std::string& table)
{
    throw Refusal(kCouldNotRun, connection.origin + ": the database " + Quoted(connection.shown) +
                                    " has no table " + table +
                                    ". Create the tables first: run signcheck init --db CONN.");
}

[[noreturn]] void RefuseUnreadable(const Connection& connection, const std::string& table,
                                   const std::string& reason)
{
    throw Refusal(kCouldNotRun,
                  connection.origin + ": table " + table + " of the database " +
                      Quoted(connection.shown) + " cannot be read: " + Printable(reason) +
                      ". Check that it is a database of signcheck init, unharmed, and that the "
                      "user may read the table.");
}

} // namespace

Connection ConnectionFrom(const OptionValues& values)
{
    const OptionValue* value = values.Find("db");
    if (value == nullptr)
    {
        throw UsageRefusal("option --db is missing. Give an ODBC connection string, such as "
                           "--db \"Driver=SQLite3;Database=signutils.db\", or set SIGNCHECK_DB, or "
                           "give field db of a --config file.");
    }
    const database::ConnectionString parts(value->text);
    if (!parts.Fault().empty())
    {
        throw UsageRefusal(value->origin + ": " + parts.Fault() +
                           " Give one such as \"Driver=SQLite3;Database=signutils.db\".");
    }
    // The driver would make a file named after the whole connection string.
    if (NamesSqlite(parts) && parts.Value("DSN").empty() && parts.Value("FILEDSN").empty() &&
        parts.Value("DATABASE").empty())
    {
        throw UsageRefusal(value->origin + ": the connection string " + Quoted(parts.Masked()) +
                           " names no database file. Give one as Database=, such as "
                           "\"Driver=SQLite3;Database=signutils.db\".");
    }
    Connection connection;
    connection.origin = value->origin;
    connection.shown = parts.Masked();
    NarrowText({connection.shown, connection.origin});
    // A message about the whole text would show the password.
    if (!support::TryNarrowFromWide(support::WideFromUtf8(value->text), connection.text))
    {
        throw UsageRefusal(value->origin + ": the password in the connection string has a "
                                           "character without a place in Windows-1252. Use "
                                           "another password.");
    }
    return connection;
}

void RefuseDatabaseInMemory(const Connection& connection)
{
    const database::ConnectionString parts(connection.text);
    if (NamesSqlite(parts) && parts.Value("DATABASE").find(kInMemory) != std::string::npos)
    {
        throw UsageRefusal(connection.origin + ": the database " + Quoted(connection.shown) +
                           " ends with this command. Name a file as Database=.");
    }
}

void OpenDatabase(CDatabase& database, const Connection& connection, bool mayCreate)
{
    if (!mayCreate)
    {
        RequireEmbeddedFile(connection);
    }
    std::string reason;
    std::string state;
    const bool opened = database::GuardDatabase(
        [&] {
            database.OpenEx(connection.text.c_str(),
                            CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        },
        [&](const CDBException& raised)
        {
            reason = support::Utf8FromNarrow(raised.GetText());
            state = raised.GetState();
        },
        [&reason] { reason = "unknown error"; });
    if (!opened)
    {
        RefuseOpen(connection, reason, state);
    }
}

void RequireTable(CDatabase& database, const Connection& connection, const std::string& table,
                  const std::string& column)
{
    if (Probe(database, table, column).isMissing)
    {
        RefuseMissing(connection, table);
    }
}

void OpenRulesDatabase(CDatabase& database, const Connection& connection)
{
    OpenDatabase(database, connection, false);
    for (const NeededTable& table : kNeededTables)
    {
        const TableProbe probe = Probe(database, table.name, table.column);
        if (probe.isMissing)
        {
            RefuseMissing(connection, table.name);
        }
        // Else the check would judge without rules, and answer that there are none.
        if (table.isRead && !probe.reason.empty())
        {
            RefuseUnreadable(connection, table.name, probe.reason);
        }
    }
}

} // namespace host
