#pragma once

#include "database/cdatabase.h"
#include "services/cevents.h"
#include "services/event_record.h"
#include "services/event_spool.h"

#include <optional>
#include <string>

namespace services
{

/// Brings the events of one client into the journal table, or into the spool of the database that
/// they were meant for.
///
/// While the spool holds events, a new one goes behind them and all are delivered in order, so that
/// it overtakes none but those that the database refuses for what they are. After a long outage
/// that takes more contacts than one: none delivers more than kMostDelivered at a time, since a
/// check waits for it. An event behind those counts as spooled.
class EventStore
{
public:
    /// Some tenths of a second of inserts that are flushed one by one; so a spool empties while at
    /// most one event in so many comes to it.
    static constexpr int kMostDelivered = 200;

    explicit EventStore(const char* source);

    bool Connect(const char* connection);
    EventOutcome Write(EventRecord event);

private:
    Delivery Insert(const EventRecord& event);
    EventOutcome WriteBehindSpool(const EventRecord& event);
    void DeliverSpool();

    std::optional<std::wstring> m_source;
    CDatabase m_database;
    EventSpool m_spool;
};

} // namespace services
