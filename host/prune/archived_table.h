#pragma once

#include "host/connection.h"
#include "host/listing/newest_first.h"
#include "host/prune/archive.h"
#include "host/query.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

class CDatabase;

namespace prune
{

/// A column as the archive writes it.
struct ArchivedColumn
{
    const char* name;
    bool isNumber;
};

/// A table whose old rows are archived, with every column that it has.
struct ArchivedTable
{
    listing::NumberedTable table;
    std::vector<ArchivedColumn> columns;
    const char* file;  ///< in the archive
    const char* label; ///< in words and in JSON: "history"
};

const ArchivedTable& HistoryTable();
const ArchivedTable& EventTable();

/// The columns' names, as a query needs them.
const std::vector<std::string>& ColumnsOf(const ArchivedTable& table);

/// A row as a line of the archive: a JSON object of the columns as they stand, and a line feed.
/// `isNull` tells NULL from an empty text.
std::string LineOf(const ArchivedTable& table, const host::QueryRow& row,
                   const std::function<bool(const char*)>& isNull);

/// Event keys that a row may have without being archived.
using Keys = std::set<std::string>;

/// Writes the rows from before the day, the newest first. Events whose key stands in `kept` stay
/// out, and are counted in `keptCount`. Raises Refusal.
ArchivedFile Export(const ArchivedTable& table, CDatabase& database,
                    const host::Connection& connection, const std::string& day, const Keys& kept,
                    const std::string& folder, std::uint64_t& keptCount);

/// How many rows are from before the day. Raises Refusal.
std::uint64_t CountBefore(const ArchivedTable& table, CDatabase& database,
                          const host::Connection& connection, const std::string& day);

} // namespace prune
