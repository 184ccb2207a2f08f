#pragma once

#include "database/cdatabase.h"
#include "host/check_request.h"
#include "host/connection.h"

#include <memory>
#include <optional>
#include <string>

namespace batch
{

/// What the history says of a check that was cut off before it could be told.
struct RecordedDecision
{
    unsigned int verdict = 0;
    std::string motif; ///< reason and message of the first rule that has one
    double total = 0.0;
    double largest = 0.0;
};

/// The history table, on a connection of its own that is opened again when it was lost. Every call
/// raises host::Refusal with kCouldNotRun when the database does not answer.
class HistoryReader
{
public:
    explicit HistoryReader(const host::Connection& connection);

    /// Number of the newest row, 0 without any; also shows that the database answers.
    long long Newest();
    /// The decision on what the request asks that was recorded behind row `after`; asked behind
    /// Newest. A row of the same file counts only when contract, order identifier, signers and the
    /// amounts that were given are the request's.
    std::optional<RecordedDecision> DecisionOn(const host::CheckRequest& request, long long after);

private:
    void Open();

    host::Connection m_connection;
    std::unique_ptr<CDatabase> m_database;
};

} // namespace batch
