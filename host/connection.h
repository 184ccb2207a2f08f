#pragma once

#include "host/option_values.h"

#include <string>

class CDatabase;

namespace host
{

/// A connection string that was given and is not empty.
struct Connection
{
    std::string text;   ///< Windows-1252, as the library takes it
    std::string shown;  ///< UTF-8, passwords replaced; the only form that is ever printed
    std::string origin; ///< "option --db", "SIGNCHECK_DB", …
};

/// Raises UsageRefusal when none was given or it is empty.
Connection ConnectionFrom(const OptionValues& values);

/// Raises UsageRefusal for an embedded database without a file, which no later command would find.
void RefuseDatabaseInMemory(const Connection& connection);

/// Opens the database. Raises Refusal with kCouldNotRun. `mayCreate`: an embedded database that is
/// not there yet may be created.
void OpenDatabase(CDatabase& database, const Connection& connection, bool mayCreate);

/// Opens the database and makes sure that it holds the tables of a check and that those with rules
/// can be read. Raises Refusal with kCouldNotRun and a remedy.
void OpenRulesDatabase(CDatabase& database, const Connection& connection);

/// Raises Refusal with kCouldNotRun when the table is missing. A table that may not be read is
/// taken to be there: a host user may only be allowed to insert.
void RequireTable(CDatabase& database, const Connection& connection, const std::string& table,
                  const std::string& column);

} // namespace host
