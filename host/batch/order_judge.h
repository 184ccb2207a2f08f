#pragma once

#include "host/batch/history_reader.h"
#include "host/batch/order.h"
#include "host/batch/order_result.h"
#include "host/batch/progress_journal.h"
#include "host/com_apartment.h"
#include "host/option_values.h"

#include <string>

namespace batch
{

/// What the orders of one run have in common.
struct RunTerms
{
    host::OptionValues common; ///< settings that hold for all
    host::Connection connection;
    bool isTermsBeside = false; ///< each order has its terms beside it
    std::string holder;         ///< says in locks who judges: "signcheck batch"
};

/// Judges orders on one thread, each once: the order's lock is taken, the journal is told before
/// and after, and where an earlier run was cut off the history decides.
class OrderJudge
{
public:
    OrderJudge(const RunTerms& run, ProgressJournal& journal);

    /// Raises host::Refusal when the journal cannot be written; everything else is a result.
    OrderResult Judge(const Order& order);

private:
    OrderResult JudgeLocked(const Order& order, const std::string& version, OrderResult result);
    host::CheckRequest RequestOf(const Order& order) const;
    void AskLibraryOnce(const Order& order, const std::string& version, const std::string& asked,
                        OrderResult& result);
    void TakeRecorded(const RecordedDecision& decision, OrderResult& result) const;

    const RunTerms& m_run;
    ProgressJournal& m_journal;
    host::ComApartment m_com;
    HistoryReader m_history;
};

} // namespace batch
