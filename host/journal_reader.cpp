#include "host/journal_reader.h"

#include "database/cdatabase.h"
#include "host/audit_event.h"
#include "host/query.h"
#include "host/refusal.h"
#include "support/codepage.h"
#include "support/numbers.h"

namespace host
{

namespace
{

constexpr const char* kSource = "RULSGN";

std::string WithoutBlanksAtTheEnd(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

bool IsOfRequest(const AuditEvent& event, const CheckRequest& request)
{
    const auto same = [](const std::string& shown, const std::string& narrow)
    { return shown == WithoutBlanksAtTheEnd(support::Utf8FromNarrow(narrow)); };
    // The audit text shows the file identifier as a signed number.
    const auto fileId = std::to_string(static_cast<std::int32_t>(request.fileId));
    return event.message.rfind(kCheckHeading, 0) == 0 && same(event.partner, request.partner) &&
           same(event.client, request.client) && same(event.service, request.service) &&
           same(event.orderId, request.orderId.substr(0, kOrderIdKept)) && event.fileId == fileId;
}

CheckEvent AsCheckEvent(const QueryRow& row, const AuditEvent& event)
{
    CheckEvent found;
    found.eventId = support::ToInt64(row.at("EVENTID").c_str());
    found.findings = LinesOf(event.message);
    found.findings.erase(found.findings.begin()); // the heading, which the verdict says too
    return found;
}

} // namespace

std::optional<long long> NewestEvent(CDatabase& database, const Connection& connection)
{
    std::optional<long long> newest;
    try
    {
        ForEachRow(database, connection, "SELECT MAX(EVENTID) AS NEWEST FROM EVT_JOURNAL",
                   {"NEWEST"},
                   [&newest](const QueryRow& row)
                   {
                       newest = support::ToInt64(row.at("NEWEST").c_str());
                       return false;
                   });
    }
    catch (const Refusal&)
    {
        newest.reset();
    }
    return newest;
}

std::optional<CheckEvent> FindCheckEvent(CDatabase& database, const CheckRequest& request,
                                         long long before)
{
    Conditions conditions;
    conditions.GreaterNumber("EVENTID", before);
    conditions.Equal("SOURCE", kSource);
    std::optional<CheckEvent> found;
    try
    {
        // The newest that fits: the journal may have taken older events from the spool meanwhile.
        ForEachRow(database, request.connection,
                   "SELECT EVENTID, TEXT FROM EVT_JOURNAL" + conditions.Clause() +
                       " ORDER BY EVENTID DESC",
                   {"EVENTID", "TEXT"},
                   [&](const QueryRow& row)
                   {
                       const AuditEvent event = ReadAuditText(row.at("TEXT"));
                       if (IsOfRequest(event, request))
                       {
                           found = AsCheckEvent(row, event);
                       }
                       return !found.has_value();
                   });
    }
    catch (const Refusal&)
    {
        found.reset();
    }
    return found;
}

} // namespace host
