#include "host/prune/archived_table.h"

#include "host/decimal_sum.h"

#include <nlohmann/json.hpp>

#include <string_view>

namespace prune
{

namespace
{

ArchivedTable MakeHistoryTable()
{
    return {{"HST_SIGNRULES", "ROWNO"},
            {{"ROWNO", true},
             {"DATETIME", false},
             {"SERVER", true},
             {"STATUT", false},
             {"VPNAME", false},
             {"TYPE_PTC", true},
             {"VFNAME", false},
             {"VCNAME", false},
             {"IDFICVFS", true},
             {"ORDERID", false},
             {"TYPE_CTRL", true},
             {"SIGNER1", false},
             {"SIGNER2", false},
             {"MOTIF", false},
             {"CNS", false},
             {"TOTAL", true},
             {"MAXORDER", true},
             {"FILENAME", false}},
            "history.ndjson",
            "history"};
}

ArchivedTable MakeEventTable()
{
    return {{"EVT_JOURNAL", "EVENTID"},
            {{"EVENTID", true},
             {"EVENTKEY", false},
             {"DATETIME", false},
             {"SOURCE", false},
             {"LEVEL", true},
             {"REFERENCE", false},
             {"AUX1", false},
             {"AUX2", false},
             {"TEXT", false},
             {"ATTACHKIND", false},
             {"ATTACHPATH", false}},
            "events.ndjson",
            "events"};
}

std::vector<std::string> MakeColumns(const ArchivedTable& table)
{
    std::vector<std::string> names;
    for (const ArchivedColumn& column : table.columns)
    {
        names.emplace_back(column.name);
    }
    return names;
}

// Digits as they stand lose nothing; what is no plain decimal of JSON is a text.
bool IsJsonNumber(std::string_view text)
{
    if (text.starts_with('-'))
    {
        text.remove_prefix(1);
    }
    return host::IsDecimal(text) && (text.front() != '0' || text.size() == 1 || text[1] == '.') &&
           text.front() != '.' && text.back() != '.';
}

host::Conditions BeforeDay(const std::string& day)
{
    host::Conditions conditions;
    conditions.LessThan("DATETIME", day + " 00:00:00");
    return conditions;
}

} // namespace

const ArchivedTable& HistoryTable()
{
    static const ArchivedTable table = MakeHistoryTable();
    return table;
}

const ArchivedTable& EventTable()
{
    static const ArchivedTable table = MakeEventTable();
    return table;
}

const std::vector<std::string>& ColumnsOf(const ArchivedTable& table)
{
    static const std::vector<std::string> history = MakeColumns(HistoryTable());
    static const std::vector<std::string> events = MakeColumns(EventTable());
    return &table == &HistoryTable() ? history : events;
}

std::string LineOf(const ArchivedTable& table, const host::QueryRow& row,
                   const std::function<bool(const char*)>& isNull)
{
    std::string line;
    for (const ArchivedColumn& column : table.columns)
    {
        const std::string& value = row.at(column.name);
        line += line.empty() ? "{" : ",";
        line += '"' + std::string(column.name) + "\":";
        if (value.empty() && isNull(column.name))
        {
            line += "null";
        }
        else if (column.isNumber && IsJsonNumber(value))
        {
            line += value;
        }
        else
        {
            line += nlohmann::json(value).dump(-1, ' ', false,
                                               nlohmann::json::error_handler_t::replace);
        }
    }
    return line + "}\n";
}

ArchivedFile Export(const ArchivedTable& table, CDatabase& database,
                    const host::Connection& connection, const std::string& day, const Keys& kept,
                    const std::string& folder, std::uint64_t& keptCount)
{
    const host::Conditions conditions = BeforeDay(day);
    listing::NewestFirst rows(database, connection, table.table, ColumnsOf(table), conditions,
                              std::nullopt);
    ArchiveWriter writer(folder, table.file);
    host::QueryRow row;
    while (rows.Next(row))
    {
        const auto key = row.find("EVENTKEY");
        if (key != row.end() && kept.contains(key->second))
        {
            ++keptCount;
            continue;
        }
        writer.AddRow(
            LineOf(table, row, [&rows](const char* column) { return rows.IsNull(column); }));
    }
    return writer.Finish();
}

std::uint64_t CountBefore(const ArchivedTable& table, CDatabase& database,
                          const host::Connection& connection, const std::string& day)
{
    std::uint64_t count = 0;
    host::ForEachRow(database, connection,
                     std::string("SELECT COUNT(*) AS COUNTED FROM ") + table.table.name +
                         BeforeDay(day).Clause(),
                     {"COUNTED"},
                     [&count](const host::QueryRow& row)
                     {
                         count = static_cast<std::uint64_t>(host::NumberIn(row, "COUNTED"));
                         return false;
                     });
    return count;
}

} // namespace prune
