#include "services/event_spool.h"

#include "port/files.h"
#include "services/event_line.h"
#include "services/file_contents.h"
#include "services/sha256.h"
#include "services/spool_lock.h"

#include <optional>
#include <utility>

namespace services
{

namespace
{

constexpr char kUnaddressed[] = "events-unaddressed";
constexpr char kDamaged[] = ".damaged";
constexpr char kDeliveryLock[] = ".delivery.lock";

std::int64_t SizeOf(const std::string& path)
{
    // Without opening it: another process may be about to replace it.
    return port::FileSize(path.c_str());
}

/// Whether the file is empty or its last line has its line feed.
bool EndsWithLine(const std::string& path, std::int64_t size)
{
    if (size == 0)
    {
        return true;
    }
    port::File file;
    char last = '\0';
    return file.Open(path.c_str(), port::OpenMode::Read) && file.Seek(size - 1) &&
           file.Read(&last, 1) == 1 && last == '\n';
}

/// What is left of the lines that were offered.
struct Leftovers
{
    std::string kept;
    std::string damaged;
};

Leftovers OfferLines(std::string_view lines,
                     const std::function<Delivery(const EventRecord&)>& offer)
{
    Leftovers left;
    while (!lines.empty())
    {
        const std::string_view line = lines.substr(0, lines.find('\n'));
        const std::optional<EventRecord> event = ReadEventLine(line);
        const Delivery delivery = event ? offer(*event) : Delivery::Refused;
        if (delivery == Delivery::Stopped)
        {
            left.kept += lines;
            if (lines.back() != '\n')
            {
                left.kept += '\n';
            }
            return left;
        }
        if (delivery == Delivery::Refused && !line.empty())
        {
            std::string& target = event ? left.kept : left.damaged;
            target += line;
            target += '\n';
        }
        lines.remove_prefix(line.size() == lines.size() ? lines.size() : line.size() + 1);
    }
    return left;
}

/// Takes back what was appended, on every way out, unless it is kept: what is reported as lost must
/// not turn up later. More than trying cannot be done.
class AppendUndo
{
public:
    AppendUndo(port::File& file, std::int64_t before) noexcept : m_file(&file), m_before(before) {}
    ~AppendUndo()
    {
        if (m_file != nullptr)
        {
            static_cast<void>(m_file->Truncate(m_before));
        }
    }
    AppendUndo(const AppendUndo&) = delete;
    AppendUndo& operator=(const AppendUndo&) = delete;

    void Keep() noexcept { m_file = nullptr; }

private:
    port::File* m_file;
    std::int64_t m_before;
};

} // namespace

EventSpool::EventSpool(std::string folder, std::string_view connection)
    : m_folder(std::move(folder)),
      m_name(connection.empty() ? kUnaddressed : "events-" + Sha256Hex(connection))
{
}

std::string EventSpool::Path(const char* ending) const
{
    return port::JoinPath(m_folder, m_name + ending);
}

std::string EventSpool::FileName() const
{
    return m_name + kSpoolEvents;
}

bool EventSpool::HoldsEvents() const
{
    return SizeOf(Path(kSpoolEvents)) > 0;
}

bool EventSpool::Holds(const std::string& key) const
{
    const std::string path = Path(kSpoolEvents);
    if (!port::FileExists(path.c_str()))
    {
        return false;
    }
    const SpoolLock lock(Path(kSpoolAppendLock));
    const std::optional<std::string> lines = ReadFileContents(path);
    if (!lock.IsHeld() || !lines)
    {
        // Taken away between the two looks: somebody has delivered all of it.
        return port::FileExists(path.c_str());
    }
    return lines->find(EventLineStart(key)) != std::string::npos;
}

bool EventSpool::Append(const EventRecord& event) const
{
    if (!port::CreatePrivateFolder(m_folder.c_str()))
    {
        return false;
    }
    const SpoolLock lock(Path(kSpoolAppendLock));
    return lock.IsHeld() && AppendBytes(Path(kSpoolEvents), EventLine(event));
}

bool EventSpool::AppendBytes(const std::string& path, std::string bytes) const
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Append))
    {
        return false;
    }
    const std::int64_t before = file.Size();
    if (before < 0)
    {
        return false;
    }
    // A line that a crash tore off ends here, so that it damages no other.
    if (!EndsWithLine(path, before))
    {
        bytes.insert(0, "\n");
    }
    AppendUndo undo(file, before);
    const bool kept = file.Write(bytes.data(), bytes.size()) && file.Flush() &&
                      (before > 0 || port::FlushFolder(m_folder.c_str()));
    if (kept)
    {
        undo.Keep();
    }
    return kept;
}

void EventSpool::Deliver(const std::function<Delivery(const EventRecord&)>& offer) const
{
    // Nothing is taken from a folder that somebody else could have filled.
    if (!HoldsEvents() || !port::CreatePrivateFolder(m_folder.c_str()))
    {
        return;
    }
    const SpoolLock deliveryLock(Path(kDeliveryLock));
    if (!deliveryLock.IsHeld())
    {
        return;
    }
    std::optional<std::string> lines;
    if (const SpoolLock appendLock(Path(kSpoolAppendLock)); appendLock.IsHeld())
    {
        lines = ReadFileContents(Path(kSpoolEvents));
    }
    if (!lines)
    {
        return;
    }
    const Leftovers left = OfferLines(*lines, offer);
    // Only what lies safely beside may be taken out.
    if (left.kept != *lines && (left.damaged.empty() || AppendBytes(Path(kDamaged), left.damaged)))
    {
        Remove(*lines, left.kept);
    }
}

void EventSpool::Remove(std::string_view offered, const std::string& kept) const
{
    const SpoolLock appendLock(Path(kSpoolAppendLock));
    const std::optional<std::string> now = ReadFileContents(Path(kSpoolEvents));
    // A file that an administrator has changed meanwhile stays as it is now.
    if (!appendLock.IsHeld() || !now || !std::string_view(*now).starts_with(offered))
    {
        return;
    }
    const std::string rest = kept + now->substr(offered.size());
    if (!rest.empty())
    {
        // Left as it is on failure: the keys of what was delivered keep it from being doubled.
        static_cast<void>(ReplaceFileContents(m_folder, m_name + kSpoolEvents, rest));
    }
    else if (DeleteFileA(Path(kSpoolEvents).c_str()) != 0)
    {
        static_cast<void>(port::FlushFolder(m_folder.c_str()));
    }
}

} // namespace services
