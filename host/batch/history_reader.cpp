#include "host/batch/history_reader.h"

#include "host/query.h"
#include "host/refusal.h"
#include "support/numbers.h"

namespace batch
{

namespace
{

std::string Trimmed(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

HistoryReader::HistoryReader(const host::Connection& connection) : m_connection(connection) {}

void HistoryReader::Open()
{
    auto database = std::make_unique<CDatabase>();
    host::OpenRulesDatabase(*database, m_connection);
    m_database = std::move(database);
}

long long HistoryReader::Newest()
{
    const auto ask = [this]
    {
        long long newest = 0;
        host::ForEachRow(*m_database, m_connection,
                         "SELECT MAX(ROWNO) AS NEWEST FROM HST_SIGNRULES", {"NEWEST"},
                         [&newest](const host::QueryRow& row)
                         {
                             newest = support::ToInt64(row.at("NEWEST").c_str());
                             return false;
                         });
        return newest;
    };
    if (m_database)
    {
        try
        {
            return ask();
        }
        catch (const host::Refusal&)
        {
            m_database.reset(); // the connection may be lost, the database need not be
        }
    }
    Open();
    try
    {
        return ask();
    }
    catch (const host::Refusal&)
    {
        m_database.reset();
        throw host::Refusal(
            host::kCouldNotRun,
            m_connection.origin +
                ": the table HST_SIGNRULES cannot be read, by which an interrupted run tells what "
                "was judged. Let this user read it (GRANT SELECT ON HST_SIGNRULES).");
    }
}

std::optional<RecordedDecision> HistoryReader::DecisionOf(const std::string& path, long long after)
{
    host::Conditions conditions;
    conditions.GreaterNumber("ROWNO", after);
    conditions.Equal("FILENAME", path);
    std::optional<RecordedDecision> decision;
    host::ForEachRow(*m_database, m_connection,
                     "SELECT STATUT, MOTIF, TOTAL, MAXORDER, FILENAME FROM HST_SIGNRULES" +
                         conditions.Clause() + " ORDER BY ROWNO",
                     {"STATUT", "MOTIF", "TOTAL", "MAXORDER", "FILENAME"},
                     [&](const host::QueryRow& row)
                     {
                         // A product may take letters of either case for the same.
                         if (Trimmed(row.at("FILENAME")) != Trimmed(path))
                         {
                             return true;
                         }
                         decision = {
                             static_cast<unsigned int>(support::ToInt32(row.at("STATUT").c_str())),
                             Trimmed(row.at("MOTIF")), support::ToDouble(row.at("TOTAL").c_str()),
                             support::ToDouble(row.at("MAXORDER").c_str())};
                         return false;
                     });
    return decision;
}

} // namespace batch
