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
/// it overtakes none but those that the database refuses for what they are.
class EventStore
{
public:
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
