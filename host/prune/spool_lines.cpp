#include "host/prune/spool_lines.h"

#include "database/cdatabase.h"
#include "host/query.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "services/event_line.h"
#include "services/event_spool.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace prune
{

namespace
{

constexpr const char* kEnding = ".jsonl";
constexpr const char* kFileStart = "events-";

// Offers every line; those for which `isTaken` says so leave the spool. What the database says is
// asked outside of the spool's own handling, which a Refusal must not pass.
void OfferTo(const host::Connection& connection,
             const std::function<bool(const services::EventRecord&)>& isTaken)
{
    const services::EventSpool spool(support::SpoolFolder(), connection.text);
    std::optional<host::Refusal> refusal;
    spool.Deliver(
        [&](const services::EventRecord& event)
        {
            try
            {
                return isTaken(event) ? services::Delivery::Delivered : services::Delivery::Refused;
            }
            catch (const host::Refusal& raised)
            {
                refusal = raised;
                return services::Delivery::Stopped;
            }
        });
    if (refusal)
    {
        throw host::Refusal(*refusal);
    }
}

} // namespace

SpoolLines::SpoolLines(CDatabase& database, const host::Connection& connection, std::string day)
    : m_database(database), m_connection(connection), m_day(std::move(day))
{
}

bool SpoolLines::IsOldAndDelivered(const std::string& key, const std::string& dateTime) const
{
    if (dateTime >= m_day)
    {
        return false;
    }
    host::Conditions conditions;
    conditions.Equal("EVENTKEY", key);
    bool isThere = false;
    host::ForEachRow(m_database, m_connection,
                     "SELECT EVENTKEY FROM EVT_JOURNAL" + conditions.Clause(), {"EVENTKEY"},
                     [&isThere](const host::QueryRow&)
                     {
                         isThere = true;
                         return false;
                     });
    return isThere;
}

ArchivedFile SpoolLines::Export(const std::string& folder) const
{
    ArchiveWriter writer(folder, kSpoolFile);
    OfferTo(m_connection,
            [&](const services::EventRecord& event)
            {
                if (IsOldAndDelivered(event.key, event.dateTime))
                {
                    writer.AddRow(services::EventLine(event));
                }
                return false;
            });
    return writer.Finish();
}

std::uint64_t SpoolLines::Remove(const std::string& folder) const
{
    std::set<std::string> archived;
    ReadLines(port::JoinPath(folder, kSpoolFile),
              [&archived](const std::string& line) { archived.insert(line + "\n"); });
    std::uint64_t removed = 0;
    OfferTo(m_connection,
            [&](const services::EventRecord& event)
            {
                const bool isTaken = archived.contains(services::EventLine(event)) &&
                                     IsOldAndDelivered(event.key, event.dateTime);
                removed += isTaken ? 1 : 0;
                return isTaken;
            });
    return removed;
}

std::uint64_t SpoolLines::Count() const
{
    std::uint64_t count = 0;
    OfferTo(m_connection,
            [&](const services::EventRecord& event)
            {
                count += IsOldAndDelivered(event.key, event.dateTime) ? 1 : 0;
                return false;
            });
    return count;
}

Keys KeysInOtherSpools(const host::Connection& connection)
{
    Keys keys;
    const std::string folder = support::SpoolFolder();
    if (!port::FolderExists(folder.c_str()))
    {
        return keys;
    }
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the spool folder " + host::Quoted(support::Utf8FromNarrow(folder)) +
                                " cannot be read. Check its rights: events that wait there must "
                                "not be delivered a second time.");
    }
    const std::string own = services::EventSpool(folder, connection.text).FileName();
    for (const std::string& name : names)
    {
        if (name == own || !name.starts_with(kFileStart) || !name.ends_with(kEnding))
        {
            continue;
        }
        const std::string path = port::JoinPath(folder, name);
        if (!port::FileExists(path.c_str()))
        {
            continue; // delivered meanwhile
        }
        ReadLines(path,
                  [&keys](const std::string& line)
                  {
                      if (const auto event = services::ReadEventLine(line); event)
                      {
                          keys.insert(event->key);
                      }
                  });
    }
    return keys;
}

} // namespace prune
