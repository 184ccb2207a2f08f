#include "host/events_command.h"

#include "database/cdatabase.h"
#include "host/audit_event.h"
#include "host/connection.h"
#include "host/exit_status.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/query.h"
#include "host/query_options.h"
#include "host/table.h"
#include "host/text.h"
#include "support/numbers.h"

#include <nlohmann/json.hpp>

#include <iterator>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr Choice kLevels[] = {{"information", 0}, {"error", 1}, {"refusal", 2}};
constexpr std::size_t kMessageWidth = 76;
constexpr std::size_t kOrderIdKept = 10;

const std::vector<std::string> kColumns = {"EVENTID",   "DATETIME",   "SOURCE",     "LEVEL",
                                           "REFERENCE", "ATTACHKIND", "ATTACHPATH", "TEXT"};

constexpr const char* kSelect = "SELECT EVENTID, DATETIME, SOURCE, LEVEL, REFERENCE, ATTACHKIND, "
                                "ATTACHPATH, TEXT FROM EVT_JOURNAL";

/// What the header of an event's text must say; those parts have no column of their own.
struct HeaderFilter
{
    const char* option;
    std::string AuditEvent::*part;
    std::size_t kept; ///< characters that the header keeps
};

constexpr HeaderFilter kHeaderFilters[] = {
    {"partner", &AuditEvent::partner, 8},
    {"service", &AuditEvent::service, 8},
    {"client", &AuditEvent::client, 8},
    {"order-id", &AuditEvent::orderId, kOrderIdKept},
};

std::string LevelName(const std::string& level)
{
    for (const Choice& known : kLevels)
    {
        if (level == std::to_string(known.number))
        {
            return known.name;
        }
    }
    return level;
}

bool FitsHeader(const OptionValues& values, const AuditEvent& event)
{
    for (const HeaderFilter& filter : kHeaderFilters)
    {
        const OptionValue* value = values.Find(filter.option);
        if (value != nullptr && event.*filter.part != CutTo(value->text, filter.kept))
        {
            return false;
        }
    }
    return true;
}

std::string OnOneLine(const std::string& message)
{
    std::string line;
    for (const std::string& part : LinesOf(message))
    {
        line += (line.empty() ? "" : " | ") + part;
    }
    return line;
}

struct Event
{
    QueryRow row;
    AuditEvent text;
};

Json EventAsJson(const Event& event)
{
    const auto orNull = [&event](const char* column)
    {
        const std::string& value = event.row.at(column);
        return value.empty() ? Json(nullptr) : Json(value);
    };
    const std::string& level = event.row.at("LEVEL");
    return {
        {"event", support::ToInt64(event.row.at("EVENTID").c_str())},
        {"time", event.row.at("DATETIME")},
        {"source", event.row.at("SOURCE")},
        {"level", support::ToInt32(level.c_str())},
        {"levelName", LevelName(level)},
        {"reference", orNull("REFERENCE")},
        {"partner", event.text.partner},
        {"service", event.text.service},
        {"client", event.text.client},
        {"orderId", event.text.orderId},
        {"message", event.text.message},
        {"text", event.row.at("TEXT")},
        {"attachmentKind", orNull("ATTACHKIND")},
        {"attachment", orNull("ATTACHPATH")},
    };
}

std::string AsTable(const std::vector<Event>& events)
{
    Table table;
    table.AddColumn("EVENT", Table::Align::Right);
    table.AddColumn("TIME");
    table.AddColumn("LEVEL");
    table.AddColumn("CONTRACT");
    table.AddColumn("ORDER");
    table.AddColumn("REQUEST");
    table.AddColumn("MESSAGE", Table::Align::Left, kMessageWidth);
    for (const Event& event : events)
    {
        table.AddRow(
            {event.row.at("EVENTID"), event.row.at("DATETIME"), LevelName(event.row.at("LEVEL")),
             event.text.partner + "/" + event.text.service + "/" + event.text.client,
             event.text.orderId, event.row.at("REFERENCE"), OnOneLine(event.text.message)});
    }
    return table.Text();
}

Conditions ConditionsFrom(const OptionValues& values)
{
    Conditions conditions;
    if (const OptionValue* level = values.Find("level"); level != nullptr)
    {
        conditions.EqualNumber("LEVEL", ChoiceFrom(*level, kLevels, std::size(kLevels)));
    }
    FilterBy(values, "request", "REFERENCE", conditions);
    FilterByTime(values, "DATETIME", conditions);
    return conditions;
}

} // namespace

int RunEvents(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    const Conditions conditions = ConditionsFrom(values);
    for (const HeaderFilter& filter : kHeaderFilters)
    {
        OptionalNarrowText(values, filter.option); // refuses what no header can hold
    }
    const std::size_t limit = LimitFrom(values);
    CDatabase database;
    OpenDatabase(database, connection, false);
    RequireTable(database, connection, "EVT_JOURNAL", "EVENTKEY");

    std::vector<Event> events;
    bool hasMore = false;
    const std::string statement =
        std::string(kSelect) + conditions.Clause() + " ORDER BY EVENTID DESC";
    ForEachRow(database, connection, statement, kColumns,
               [&](const QueryRow& row)
               {
                   Event event{row, ReadAuditText(row.at("TEXT"))};
                   if (!FitsHeader(values, event.text))
                   {
                       return true;
                   }
                   hasMore = events.size() == limit;
                   if (!hasMore)
                   {
                       events.push_back(std::move(event));
                   }
                   return !hasMore;
               });

    if (values.IsOn("json"))
    {
        Json list = Json::array();
        for (const Event& event : events)
        {
            list.push_back(EventAsJson(event));
        }
        PrintJson({{"events", list}, {"more", hasMore}});
        return kDone;
    }
    Print(events.empty() ? std::string("No audit event fits.\n") : AsTable(events));
    if (hasMore)
    {
        Print("There are more; --limit shows them.\n");
    }
    return kDone;
}

} // namespace host
