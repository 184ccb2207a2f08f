#include "host/prune/table_removal.h"

#include "database/cdatabase.h"
#include "database/guard_database.h"
#include "host/amount_columns.h"
#include "host/refusal.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/files.h"
#include "schema/transaction.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <map>
#include <optional>

namespace prune
{

namespace
{

constexpr std::size_t kRowsInStatement = 500;

/// Lines of the archive by the number of their row.
using Lines = std::map<std::int64_t, std::string>;

// "N, M, …": exactly the rows of the archive, so that one that came meanwhile stays.
std::string Numbers(const Lines& lines)
{
    std::string list;
    for (const auto& [number, line] : lines)
    {
        list += (list.empty() ? "" : ", ") + std::to_string(number);
    }
    return list;
}

[[noreturn]] void GiveUp(const ArchivedTable& table, const std::string& why)
{
    throw host::Refusal(host::kCouldNotRun, "table " + std::string(table.table.name) + ": " + why +
                                                ". No row was removed.");
}

/// Removes the rows of one table, some hundred at a time.
class Remover
{
public:
    Remover(const ArchivedTable& table, CDatabase& database, const host::Connection& connection,
            const Keys& kept)
        : m_table(table), m_database(database), m_connection(connection), m_kept(kept)
    {
    }

    void Add(const std::string& line)
    {
        const nlohmann::json object = nlohmann::json::parse(line, nullptr, false);
        const auto number = object.is_object() ? object.find(m_table.table.number) : object.end();
        if (!object.is_object() || number == object.end() || !number->is_number_integer())
        {
            GiveUp(m_table, "a line of its archive has no row number. Name another folder with "
                            "--export");
        }
        const auto key = object.find("EVENTKEY");
        if (key != object.end() && key->is_string() && m_kept.contains(key->get<std::string>()))
        {
            return;
        }
        m_lines.emplace(number->get<std::int64_t>(), line + "\n");
        if (m_lines.size() == kRowsInStatement)
        {
            Flush();
        }
    }

    void Flush()
    {
        if (m_lines.empty())
        {
            return;
        }
        const std::string condition =
            std::string(m_table.table.number) + " IN (" + Numbers(m_lines) + ")";
        const std::uint64_t found = CompareRows(condition);
        const std::string statement =
            std::string("DELETE FROM ") + m_table.table.name + " WHERE " + condition;
        const std::int64_t deleted =
            m_database.ExecuteSQLW(support::WideFromUtf8(statement).c_str());
        if (deleted >= 0 && static_cast<std::uint64_t>(deleted) != found)
        {
            GiveUp(m_table, "somebody else removes rows at the same time. Run the command again");
        }
        m_removed += found;
        m_lines.clear();
    }

    std::uint64_t Removed() const noexcept { return m_removed; }

private:
    std::uint64_t CompareRows(const std::string& condition)
    {
        host::RowReader rows(m_database, m_connection,
                             "SELECT " + host::SelectedColumns(m_database, ColumnsOf(m_table)) +
                                 " FROM " + m_table.table.name + " WHERE " + condition,
                             ColumnsOf(m_table));
        std::uint64_t found = 0;
        host::QueryRow row;
        while (rows.Next(row))
        {
            const std::int64_t number = host::NumberIn(row, m_table.table.number);
            const auto line = m_lines.find(number);
            const std::string now =
                LineOf(m_table, row, [&rows](const char* column) { return rows.IsNull(column); });
            if (line == m_lines.end() || line->second != now)
            {
                GiveUp(m_table, "row " + std::to_string(number) +
                                    " is no longer what was archived. Name another folder with "
                                    "--export, so that it is archived anew");
            }
            ++found;
        }
        return found;
    }

    const ArchivedTable& m_table;
    CDatabase& m_database;
    const host::Connection& m_connection;
    const Keys& m_kept;
    Lines m_lines;
    std::uint64_t m_removed = 0;
};

std::uint64_t RemoveFrom(const ArchivedTable& table, CDatabase& database,
                         const host::Connection& connection, const std::string& folder,
                         const Keys& kept)
{
    Remover remover(table, database, connection, kept);
    ReadLines(port::JoinPath(folder, table.file),
              [&remover](const std::string& line) { remover.Add(line); });
    remover.Flush();
    return remover.Removed();
}

} // namespace

RemovedRows RemoveRows(CDatabase& database, const host::Connection& connection,
                       const std::string& folder, const Keys& kept)
{
    RemovedRows removed;
    std::string reason;
    std::optional<host::Refusal> refusal;
    bool isCommitting = false;
    const bool isDone = database::GuardDatabase(
        [&]
        {
            schema::Transaction transaction(database);
            try
            {
                removed.history = RemoveFrom(HistoryTable(), database, connection, folder, kept);
                removed.events = RemoveFrom(EventTable(), database, connection, folder, kept);
            }
            catch (const host::Refusal& raised)
            {
                refusal = raised;
                return;
            }
            isCommitting = true;
            transaction.Commit();
        },
        [&reason](const CDBException& raised)
        { reason = support::Utf8FromNarrow(raised.GetText()); },
        [&reason] { reason = "unknown error"; });
    if (refusal)
    {
        throw host::Refusal(*refusal);
    }
    const std::string where =
        connection.origin + ": the rows of the database " + host::Quoted(connection.shown);
    if (!isDone && isCommitting)
    {
        throw host::Refusal(host::kCouldNotRun,
                            where + " may have been removed or not: the database did not confirm" +
                                host::BecauseOf(reason) +
                                " They are archived. Run the same command again: it goes on.");
    }
    if (!isDone)
    {
        throw host::Refusal(host::kCouldNotRun,
                            where + " cannot be removed" + host::BecauseOf(reason) +
                                " All of them stay. Check that the user may read and delete in "
                                "HST_SIGNRULES and EVT_JOURNAL, then run the same command again.");
    }
    return removed;
}

} // namespace prune
