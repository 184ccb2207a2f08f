#pragma once

#include "support/tsimplestring.h"

#include <cstdint>
#include <memory>

/// The file attached to an event; zero-fill before use.
struct tagATTACHEDEVENT
{
    std::uint32_t reserved;
    char kind[10];  ///< "LOG" when a log file is attached, else zero
    char path[260]; ///< at most 259 characters, else zero
};

namespace services
{

/// What became of an event.
enum class EventOutcome
{
    Written, ///< a row of the journal table
    Spooled, ///< kept in the spool file, delivered by a later connection to the same database
    Lost,    ///< neither could be written
};

class EventStore;

} // namespace services

/// Client of the event journal.
class CEvents
{
public:
    /// `status` is set to 0.
    CEvents(const char* source, unsigned long& status);
    ~CEvents();
    CEvents(const CEvents&) = delete;
    CEvents& operator=(const CEvents&) = delete;

    /// Opens a connection of its own and delivers what the spool holds for this database. False
    /// when it cannot be opened; events are then spooled. Raises nothing but std::bad_alloc.
    bool Connect(const char* connection);

    /// Writes one event. Null texts are stored as NULL. `attached` 0: no attachment. DATETIME is
    /// the local time. While the spool holds events of this database, the event goes behind them
    /// and all are delivered in order. Raises nothing but std::bad_alloc.
    services::EventOutcome WriteEventsWithPj(unsigned short level, const char* reference,
                                             const char* aux1, const wchar_t* aux2,
                                             const wchar_t* text, unsigned long attached,
                                             const tagATTACHEDEVENT* attachment);

private:
    std::unique_ptr<services::EventStore> m_store;
};
