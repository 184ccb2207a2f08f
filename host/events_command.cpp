#include "host/events_command.h"

#include "database/cdatabase.h"
#include "host/connection.h"
#include "host/event_row.h"
#include "host/listing/newest_first.h"
#include "host/listing/pager.h"
#include "host/listing/text_filter.h"
#include "host/option_readers.h"
#include "host/query.h"
#include "host/query_options.h"
#include "host/text.h"

namespace host
{

namespace
{

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
    {"order-id", &AuditEvent::orderId, 10},
};

/// What is looked for in the text of an event.
struct TextOfEvent
{
    explicit TextOfEvent(const OptionValues& itsValues)
        : values(itsValues), signer(itsValues, "signer"), reason(itsValues, "reason"),
          verdict(itsValues.Find("verdict") == nullptr
                      ? std::nullopt
                      : std::optional(VerdictFrom(*itsValues.Find("verdict"))))
    {
        for (const HeaderFilter& filter : kHeaderFilters)
        {
            OptionalNarrowText(values, filter.option); // refuses what no header can hold
        }
    }

    bool Fits(const AuditEvent& event) const
    {
        for (const HeaderFilter& filter : kHeaderFilters)
        {
            const OptionValue* value = values.Find(filter.option);
            if (value != nullptr && event.*filter.part != CutTo(value->text, filter.kept))
            {
                return false;
            }
        }
        return (!verdict || VerdictOf(event) == verdict) && signer.Fits(event.message) &&
               reason.Fits(event.message);
    }

    const OptionValues& values;
    listing::TextFilter signer;
    listing::TextFilter reason;
    std::optional<int> verdict;
};

Conditions EventConditionsFrom(const OptionValues& values)
{
    Conditions conditions;
    if (const OptionValue* level = values.Find("level"); level != nullptr)
    {
        conditions.EqualNumber("LEVEL", LevelFrom(*level));
    }
    FilterBy(values, "request", "REFERENCE", conditions);
    FilterByTime(values, "DATETIME", conditions);
    return conditions;
}

} // namespace

int RunEvents(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    const Conditions conditions = EventConditionsFrom(values);
    RefuseReasonCode(values, kEventTable.name);
    const TextOfEvent text(values);
    listing::Pager pager("events", values, EventShape());
    CDatabase database;
    OpenDatabase(database, connection, false);
    RequireTable(database, connection, "EVT_JOURNAL", "EVENTKEY");

    return pager.Run(
        [&](listing::Pager& page)
        {
            listing::NewestFirst rows(database, connection, kEventTable, EventColumns(), conditions,
                                      page.Below());
            QueryRow row;
            while (rows.Next(row))
            {
                const AuditEvent event = ReadAuditText(row.at("TEXT"));
                if (text.Fits(event) &&
                    !page.Take(NumberIn(row, "EVENTID"), EventRecord(row, event)))
                {
                    return;
                }
            }
        });
}

} // namespace host
