#include "host/replay/history_walk.h"

#include "host/amount_columns.h"
#include "host/history_row.h"

namespace replay
{

HistoryWalk::HistoryWalk(CDatabase& database, const host::Connection& connection,
                         const host::Conditions& conditions)
    : m_rows(database, connection, host::kHistoryTable, PastCheckColumns(), conditions,
             std::nullopt)
{
}

std::optional<PastCheck> HistoryWalk::Next()
{
    host::QueryRow row;
    while (!m_isAtEnd)
    {
        m_isAtEnd = !m_rows.Next(row);
        if (auto check = m_isAtEnd ? m_grouper.Finish() : m_grouper.Take(row))
        {
            return check;
        }
    }
    return std::nullopt;
}

std::optional<PastCheck> ReadAgain(CDatabase& database, const host::Connection& connection,
                                   std::int64_t oldestRow, std::int64_t newestRow)
{
    host::Conditions conditions;
    conditions.GreaterNumber(host::kHistoryTable.number, oldestRow - 1);
    conditions.AtMostNumber(host::kHistoryTable.number, newestRow);
    const std::string number = host::kHistoryTable.number;
    CheckGrouper grouper;
    bool isOne = true;
    host::ForEachRow(database, connection,
                     "SELECT " + host::SelectedColumns(database, PastCheckColumns()) + " FROM " +
                         host::kHistoryTable.name + conditions.Clause() + " ORDER BY " + number +
                         " DESC",
                     PastCheckColumns(),
                     [&](const host::QueryRow& row)
                     {
                         isOne = !grouper.Take(row);
                         return isOne;
                     });
    std::optional<PastCheck> check = grouper.Finish();
    const bool isWhole =
        isOne && check && check->oldestRow == oldestRow && check->newestRow == newestRow;
    return isWhole ? check : std::nullopt;
}

} // namespace replay
