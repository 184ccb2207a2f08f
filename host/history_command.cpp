#include "host/history_command.h"

#include "database/cdatabase.h"
#include "host/connection.h"
#include "host/history_row.h"
#include "host/listing/newest_first.h"
#include "host/listing/pager.h"
#include "host/listing/text_filter.h"
#include "host/query.h"
#include "host/query_options.h"

namespace host
{

namespace
{

Conditions HistoryConditionsFrom(const OptionValues& values)
{
    Conditions conditions;
    FilterBy(values, "partner", "VPNAME", conditions);
    FilterBy(values, "service", "VFNAME", conditions);
    FilterBy(values, "client", "VCNAME", conditions);
    FilterBy(values, "order-id", "ORDERID", conditions);
    FilterBy(values, "file", "FILENAME", conditions);
    if (const OptionValue* verdict = values.Find("verdict"); verdict != nullptr)
    {
        conditions.Equal("STATUT", std::to_string(VerdictFrom(*verdict)));
    }
    FilterByAmount(values, "TOTAL", conditions);
    FilterByTime(values, "DATETIME", conditions);
    return conditions;
}

} // namespace

int RunHistory(const OptionValues& values)
{
    const Connection connection = ConnectionFrom(values);
    const Conditions conditions = HistoryConditionsFrom(values);
    RefuseReasonCode(values, kHistoryTable.name);
    const listing::TextFilter signer(values, "signer");
    const listing::TextFilter reason(values, "reason");
    listing::Pager pager("history", values, HistoryShape());
    CDatabase database;
    OpenDatabase(database, connection, false);
    RequireTable(database, connection, "HST_SIGNRULES", "STATUT");

    return pager.Run(
        [&](listing::Pager& page)
        {
            listing::NewestFirst rows(database, connection, kHistoryTable, HistoryColumns(),
                                      conditions, page.Below());
            QueryRow row;
            while (rows.Next(row))
            {
                if (!reason.Fits(row.at("MOTIF")) || !AnySignerFits(signer, row))
                {
                    continue;
                }
                if (!page.Take(NumberIn(row, "ROWNO"), HistoryRecord(row)))
                {
                    return;
                }
            }
        });
}

} // namespace host
