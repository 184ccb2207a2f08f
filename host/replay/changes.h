#pragma once

#include "host/connection.h"
#include "host/replay/arbiter.h"
#include "host/replay/history_walk.h"
#include "host/replay/judgement.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class CDatabase;

namespace replay
{

/// Where a past order that is decided otherwise stands: kept for each of them until all are
/// counted, and so as little as possible.
struct ChangedOrder
{
    std::int64_t oldestRow = 0;
    std::int64_t newestRow = 0;
    Cause cause = Cause::Rules;
    bool mayBePart = false;
};

/// What a replay has found.
struct Findings
{
    Tally tally;
    std::vector<ChangedOrder> changes; ///< newest first
};

/// Judges every past check of the history. Raises host::Refusal with kCouldNotRun.
Findings Replay(HistoryWalk& history, Arbiter& arbiter);

/// A changed order with all that is told of it.
struct ToldOrder
{
    PastCheck check;
    Judgement judgement;
    std::vector<std::string> reasons; ///< of each way that counts; empty where it does not change
};

/// Reads and judges it once more; none when its rows have left the history meanwhile. Raises
/// host::Refusal with kCouldNotRun.
std::optional<ToldOrder> Tell(CDatabase& database, const host::Connection& connection,
                              Arbiter& arbiter, const ChangedOrder& change);

} // namespace replay
