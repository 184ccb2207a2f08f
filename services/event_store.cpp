#include "services/event_store.h"

#include "database/guard_database.h"
#include "port/cancellation.h"
#include "services/event_key.h"
#include "services/event_statement.h"
#include "services/insert_failure.h"
#include "support/codepage.h"
#include "support/cttime.h"
#include "support/folders.h"

#include <new>

namespace services
{

EventStore::EventStore(const char* source) : m_spool(support::SpoolFolder(), "")
{
    if (source != nullptr)
    {
        m_source = support::WideFromNarrow(std::string_view(source));
    }
}

bool EventStore::Connect(const char* connection)
{
    m_database.Close();
    const std::string_view text = connection == nullptr ? "" : connection;
    m_spool = EventSpool(support::SpoolFolder(), text);
    if (text.empty())
    {
        return false;
    }
    database::GuardDatabase(
        [&] { m_database.OpenEx(connection, CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog); },
        [](const CDBException&) {}, [] {});
    if (m_database.IsOpen())
    {
        DeliverSpool();
    }
    return m_database.IsOpen();
}

EventOutcome EventStore::Write(EventRecord event)
{
    // An event that was begun is brought to its end, also on a thread that is asked to stop.
    const port::CancellationHold hold;
    event.key = MakeEventKey();
    char dateTime[32] = {};
    CTTime::GetTickCount().GetDatabaseTimestamp(dateTime, sizeof(dateTime));
    event.dateTime = dateTime;
    event.source = m_source;

    if (m_database.IsOpen() && m_spool.HoldsEvents())
    {
        return WriteBehindSpool(event);
    }
    if (m_database.IsOpen() && Insert(event) == Delivery::Delivered)
    {
        return EventOutcome::Written;
    }
    return m_spool.Append(event) ? EventOutcome::Spooled : EventOutcome::Lost;
}

EventOutcome EventStore::WriteBehindSpool(const EventRecord& event)
{
    if (!m_spool.Append(event))
    {
        // Out of order is better than lost.
        return Insert(event) == Delivery::Delivered ? EventOutcome::Written : EventOutcome::Lost;
    }
    try
    {
        DeliverSpool();
        return m_spool.Holds(event.key) ? EventOutcome::Spooled : EventOutcome::Written;
    }
    catch (const std::bad_alloc&)
    {
        return EventOutcome::Spooled; // it is safe there, and its key keeps it from being doubled
    }
}

void EventStore::DeliverSpool()
{
    int delivered = 0;
    m_spool.Deliver(
        [&](const EventRecord& event)
        {
            if (delivered == kMostDelivered)
            {
                return Delivery::Stopped;
            }
            const Delivery delivery = Insert(event);
            // What the database refuses stays at the front: counted, it would hold up all others.
            delivered += delivery == Delivery::Delivered ? 1 : 0;
            return delivery;
        });
}

Delivery EventStore::Insert(const EventRecord& event)
{
    if (!m_database.IsOpen())
    {
        return Delivery::Stopped;
    }
    Delivery delivery = Delivery::Stopped;
    bool lost = false;
    const bool inserted = database::GuardDatabase(
        [&] { m_database.ExecuteSQLW(EventInsertStatement(event).c_str()); },
        [&](const CDBException& raised)
        {
            delivery = JudgeFailedInsert(raised, event.key);
            lost = IsConnectionLost(raised);
        },
        [] {});
    if (lost)
    {
        // Nobody waits for the same silence again; the events go to the next connection.
        m_database.Close();
    }
    return inserted ? Delivery::Delivered : delivery;
}

} // namespace services
