#pragma once

#include "host/query.h"
#include "host/rulebook/rule_book.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

namespace replay
{

/// One past check as its history rows tell it; texts are UTF-8, as recorded.
struct PastCheck
{
    std::int64_t oldestRow = 0;
    std::int64_t newestRow = 0;
    std::uint64_t rows = 0;
    std::string time; ///< of its oldest row
    rulebook::ContractKey key;
    std::string orderId;
    std::string file;
    std::string signers; ///< certificate names, separated by ;
    double total = 0.0;  ///< main unit
    double largest = 0.0;
    unsigned int verdict = 0;
    std::string obstacle; ///< why it cannot be judged again; empty when it can
    /// Rows repeat, or lie further apart in time than those of one check do.
    bool mayBeSeveral = false;
    /// Rows of other checks stand between it and one of the same order at the same time.
    bool mayBePart = false;
};

/// The columns that a check is read from.
const std::vector<std::string>& PastCheckColumns();

/// Puts the rows of each check together again: neighbours in the order of ROWNO that are equal in
/// contract, file, order, signers, amounts and verdict.
class CheckGrouper
{
public:
    /// Takes the rows newest first. Gives a check when the row is the first behind it.
    std::optional<PastCheck> Take(const host::QueryRow& row);

    /// The check of the last rows.
    std::optional<PastCheck> Finish();

private:
    struct Closed
    {
        std::string identity;
        std::optional<std::int64_t> second;
        std::uint64_t row;
    };

    void Open(const host::QueryRow& row, const std::string& identity);
    void Extend(const host::QueryRow& row);
    bool HasEqualNearby(const std::string& identity, std::optional<std::int64_t> second);

    std::optional<PastCheck> m_open;
    std::string m_identity;
    std::optional<std::int64_t> m_newestSecond;
    std::optional<std::int64_t> m_oldestSecond;
    std::unordered_set<std::string> m_findings; ///< of the open check's rows
    std::deque<Closed> m_closed;                ///< the newest ones
    std::uint64_t m_taken = 0;
};

} // namespace replay
