#include "host/listing/newest_first.h"

#include "host/amount_columns.h"
#include "support/numbers.h"

#include <algorithm>

namespace listing
{

namespace
{

// Numbers in a band. The first is narrow: most who ask want a few rows only.
constexpr std::int64_t kFirstWidth = 128;
constexpr std::int64_t kLargestWidth = 4096;

} // namespace

NewestFirst::NewestFirst(CDatabase& database, const host::Connection& connection,
                         const NumberedTable& table, const std::vector<std::string>& columns,
                         const host::Conditions& conditions, std::optional<std::int64_t> below)
    : m_database(database), m_connection(connection), m_table(table), m_columns(columns),
      m_conditions(conditions), m_upTo(below.value_or(INT64_MAX) - 1), m_width(kFirstWidth)
{
}

bool NewestFirst::Next(host::QueryRow& row)
{
    for (;;)
    {
        if (m_band && m_band->Next(row))
        {
            return true;
        }
        if (!OpenBand())
        {
            return false;
        }
    }
}

// Looks up where the next numbers are, so that a gap of any width costs one look.
std::optional<std::int64_t> NewestFirst::Largest() const
{
    std::string text;
    host::Conditions below;
    below.AtMostNumber(m_table.number, m_upTo);
    const std::string number = m_table.number;
    host::ForEachRow(m_database, m_connection,
                     "SELECT MAX(" + number + ") AS LARGEST FROM " + m_table.name + below.Clause(),
                     {"LARGEST"},
                     [&text](const host::QueryRow& row)
                     {
                         text = row.at("LARGEST");
                         return false;
                     });
    return text.empty() ? std::nullopt : std::optional(support::ToInt64(text.c_str()));
}

bool NewestFirst::OpenBand()
{
    m_band.reset();
    const std::optional<std::int64_t> largest = Largest();
    if (!largest)
    {
        return false;
    }
    const std::int64_t lowest = *largest > INT64_MIN + m_width ? *largest - m_width : INT64_MIN;
    host::Conditions conditions = m_conditions;
    conditions.GreaterNumber(m_table.number, lowest);
    conditions.AtMostNumber(m_table.number, *largest);
    const std::string statement = "SELECT " + host::SelectedColumns(m_database, m_columns) +
                                  " FROM " + m_table.name + conditions.Clause() + " ORDER BY " +
                                  m_table.number + " DESC";
    m_band.emplace(m_database, m_connection, statement, m_columns);
    m_upTo = lowest;
    m_width = std::min(m_width * 2, kLargestWidth);
    return true;
}

} // namespace listing
