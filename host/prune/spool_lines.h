#pragma once

#include "host/connection.h"
#include "host/prune/archived_table.h"

#include <string>

class CDatabase;

namespace prune
{

/// The name of the archived lines within the archive.
inline constexpr const char* kSpoolFile = "spool.ndjson";

/// The spool of one connection text. A line normally leaves it when it is delivered; one stays when
/// the disk refused its removal, and is known by its key, which the journal has as well.
class SpoolLines
{
public:
    SpoolLines(CDatabase& database, const host::Connection& connection, std::string day);

    /// Writes the delivered lines from before the day.
    ArchivedFile Export(const std::string& folder) const;

    /// Removes those that stand in the archive; returns how many.
    std::uint64_t Remove(const std::string& folder) const;

    std::uint64_t Count() const;

private:
    bool IsOldAndDelivered(const std::string& key, const std::string& dateTime) const;

    CDatabase& m_database;
    const host::Connection& m_connection;
    std::string m_day;
};

/// The keys of all lines in spool files of this machine but in that of the connection. Their events
/// must stay in the journal, which tells a later delivery that it has them. Raises Refusal when a
/// spool cannot be read.
Keys KeysInOtherSpools(const host::Connection& connection);

} // namespace prune
