#pragma once

#include "host/connection.h"
#include "host/listing/newest_first.h"
#include "host/query.h"
#include "host/replay/past_check.h"

#include <cstdint>
#include <optional>

class CDatabase;

namespace replay
{

/// The past checks of the history, the newest first, in memory that does not grow with their
/// number. All arguments must outlive it; a failed read raises host::Refusal with kCouldNotRun.
class HistoryWalk
{
public:
    HistoryWalk(CDatabase& database, const host::Connection& connection,
                const host::Conditions& conditions);

    /// None past the oldest one.
    std::optional<PastCheck> Next();

private:
    listing::NewestFirst m_rows;
    CheckGrouper m_grouper;
    bool m_isAtEnd = false;
};

/// The check whose rows have these numbers once more; none when they are gone or others.
std::optional<PastCheck> ReadAgain(CDatabase& database, const host::Connection& connection,
                                   std::int64_t oldestRow, std::int64_t newestRow);

} // namespace replay
