#pragma once

#include "host/connection.h"
#include "host/prune/archived_table.h"

#include <cstdint>
#include <string>

class CDatabase;

namespace prune
{

/// Rows that left the database, table by table.
struct RemovedRows
{
    std::uint64_t history = 0;
    std::uint64_t events = 0;
};

/// Removes the rows that stand in the archive of `folder`, in one transaction: all of them or none.
/// Each is read once more and compared with its line before it is removed; rows that are gone
/// already are none too few. Events whose key stands in `kept` stay. Raises Refusal with
/// kCouldNotRun.
RemovedRows RemoveRows(CDatabase& database, const host::Connection& connection,
                       const std::string& folder, const Keys& kept);

} // namespace prune
