#pragma once

#include "services/event_record.h"

#include <functional>
#include <string>
#include <string_view>

namespace services
{

/// What became of one event that was offered to a database.
enum class Delivery
{
    Delivered, ///< it is in the journal now, or was there already
    Refused,   ///< the database takes this event not, others perhaps: it stays, the next is offered
    Stopped,   ///< the database takes none at present: it stays, with all behind it
};

/// The events of one database that could not be written yet, in their order, in a file of the spool
/// folder. Its name is made of a hash of the connection text, so that it tells neither the database
/// nor its password, and no event reaches a database that it was not meant for.
///
/// Two locks of other files, taken in this order: the delivery lock is held while events are
/// offered, so that one process at a time does so; the append lock while the file is read or
/// written, never while a database is waited for. Nobody who appends waits for a delivery.
class EventSpool
{
public:
    /// The spool of one connection text. Empty: the spool of events without any, which nobody
    /// delivers.
    EventSpool(std::string folder, std::string_view connection);

    /// The name of the file with the waiting events, within the folder.
    std::string FileName() const;

    /// Whether there is anything to deliver.
    bool HoldsEvents() const;

    /// Whether the event of this key waits here; true when that cannot be found out.
    bool Holds(const std::string& key) const;

    /// Adds an event behind the others; on the disk when it returns true. False leaves no part of
    /// it behind.
    [[nodiscard]] bool Append(const EventRecord& event) const;

    /// Offers the waiting events in order and removes those that were delivered. Lines that are no
    /// events go to a file beside, "….damaged". An end of the process on the way leaves delivered
    /// events here: their keys tell the database that it has them. Raises what `offer` raises.
    void Deliver(const std::function<Delivery(const EventRecord&)>& offer) const;

private:
    std::string Path(const char* ending) const;
    bool AppendBytes(const std::string& path, std::string bytes) const;
    void Remove(std::string_view offered, const std::string& kept) const;

    std::string m_folder;
    std::string m_name;
};

} // namespace services
