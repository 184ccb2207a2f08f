#pragma once

#include "schema/scripts.h"

#include <map>
#include <string>
#include <vector>

namespace schema_tests
{

/// A text of the scripts, which are ASCII, for a message.
std::string Narrow(const std::wstring& text);

/// One column as a CREATE TABLE statement declares it.
struct Column
{
    std::wstring name;
    std::wstring type;   ///< without its length
    std::wstring length; ///< what stands in parentheses behind the type
    std::wstring rest;   ///< collation, NOT NULL, keys
};

/// One table; a computed column counts as part of an index, not as a column.
struct Table
{
    std::vector<Column> columns;
    std::wstring options; ///< what follows the closing parenthesis

    const Column* Find(const std::wstring& name) const;
    std::vector<std::wstring> ColumnNames() const;
};

/// The tables that a product's scripts create, by name.
std::map<std::wstring, Table> ReadTables(schema::Product product);

constexpr schema::Product kProducts[] = {
    schema::Product::SQLite,
    schema::Product::PostgreSQL,
    schema::Product::MariaDB,
    schema::Product::SqlServer,
};

} // namespace schema_tests
