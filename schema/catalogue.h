#pragma once

#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace schema
{

// What the database's own catalogue says of our tables. It is asked in place of the tables, because
// a host's user may write into some of them and read none of their columns. Each raises
// CDBException*, and SchemaError for a product without table definitions.

/// The table's columns in capitals; none where there is no such table. MariaDB and SQL Server show
/// no table that the user has no right on.
std::vector<std::string> ColumnsIn(CDatabase& database, const std::string& table);

/// The names of all indexes, in capitals.
std::vector<std::string> IndexNames(CDatabase& database);

/// Whether the current user has a right, "SELECT" or "INSERT", on the whole table. Nothing on
/// SQLite, which has no users.
std::optional<bool> HasRight(CDatabase& database, const std::string& table,
                             const std::string& right);

/// An index that the scripts of the connected product make.
struct DeclaredIndex
{
    std::string name;
    std::string table;
    std::string statement; ///< that makes it
};

std::vector<DeclaredIndex> DeclaredIndexes(CDatabase& database);

/// What the scripts of the connected product declare a column as: "VARCHAR(64) NOT NULL". Empty for
/// a column that they have not.
std::string DeclarationOf(CDatabase& database, const std::string& table, const std::string& column);

} // namespace schema
