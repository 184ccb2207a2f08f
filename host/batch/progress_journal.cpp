#include "host/batch/progress_journal.h"

#include "host/batch/journal_place.h"
#include "host/batch/order_path.h"
#include "host/file_text.h"
#include "host/option_readers.h"
#include "host/order_lock.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/secrecy.h"

#include <chrono>
#include <utility>

namespace batch
{

namespace
{

constexpr std::size_t kSpareLines = 1000;

} // namespace

ProgressJournal::ProgressJournal(const std::string& path, const std::string& holder)
    : m_path(path), m_narrow(host::NarrowText({path, "the progress journal"}))
{
    RequireOwnFolder();
    TakeLock(holder);
    Open();
    Read();
    CutOff();
}

void ProgressJournal::Refuse(const std::string& what, const std::string& remedy) const
{
    // The whole path: whoever reads must find the file.
    throw host::Refusal(host::kCouldNotRun, "the progress journal '" + host::Printable(m_path) +
                                                "' " + what + ". " + remedy);
}

// Whoever may write the folder can put a journal of his own in the place of this one.
void ProgressJournal::RequireOwnFolder() const
{
    const std::string folder = FolderOf(m_path);
    const std::string narrow = host::NarrowText({folder, "the folder of the progress journal"});
    if (port::BelongsToOther(narrow.c_str()))
    {
        Refuse("lies in the folder " + host::Quoted(folder) + " of another user",
               "Name a file in a folder of this user with --journal, or leave that out.");
    }
    const port::FileRights rights = port::RightsOf(narrow.c_str());
    if (rights.othersMayWrite)
    {
        Refuse("lies in the folder " + host::Quoted(folder) + " of mode " + rights.mode +
                   ", so that others may put one of theirs in its place",
               "Name a file in a folder of this user alone with --journal, or leave that out; or "
               "take the right from others: chmod go-w " +
                   host::Printable(folder));
    }
}

void ProgressJournal::TakeLock(const std::string& holder)
{
    const std::string lock = JournalLockPath(m_narrow);
    switch (m_lock.TryTake(lock.c_str(), host::LockNote(holder)))
    {
    case port::LockFile::Attempt::Taken:
        return;
    case port::LockFile::Attempt::Held:
        Refuse("is in use by another run (" + host::Printable(port::NoteOfLock(lock.c_str())) + ")",
               "Wait until that has ended, or stop it.");
    case port::LockFile::Attempt::Failed:
        break;
    }
    Refuse("cannot be locked", "Its folder must be there and writable by this user; --journal "
                               "names another place.");
}

void ProgressJournal::RequireOwnFile() const
{
    const std::string remedy = "Remove it, or name another with --journal; what was judged is in "
                               "the history (signcheck history).";
    if (const std::string fault = FaultOfJournalFile(m_narrow); !fault.empty())
    {
        Refuse(fault, remedy);
    }
}

void ProgressJournal::Open()
{
    RequireOwnFile();
    const bool isOpen = m_file.Open(m_narrow.c_str(), port::OpenMode::AppendNoLink);
    if ((isOpen || port::FolderExists(m_narrow.c_str())) && !port::FileExists(m_narrow.c_str()))
    {
        Refuse("is no regular file", "Name another with --journal.");
    }
    if (!isOpen)
    {
        Refuse("cannot be opened", "It and its folder must be readable and writable by this user; "
                                   "--journal names another place.");
    }
}

void ProgressJournal::Read()
{
    const auto found = host::TextFrom(m_file, 0);
    if (!found)
    {
        Refuse("cannot be read", "Check the disk, or name another with --journal.");
    }
    JournalContent content = ReadJournalLines(*found);
    if (content.faulty == 1)
    {
        Refuse("is no progress journal but another file", "Leave that file as it is, and name "
                                                          "another with --journal.");
    }
    if (content.faulty != 0)
    {
        Refuse("cannot be read: line " + std::to_string(content.faulty) + " is none of it",
               "Remove that line, or name another journal with --journal; what was judged is in "
               "the history (signcheck history).");
    }
    m_known = std::move(content.known);
    m_database = std::move(content.database);
    m_lines = content.lines;
    m_whole = content.bytes;
}

// What a kill cut short was not acknowledged: it goes.
void ProgressJournal::CutOff()
{
    if (!m_file.Truncate(static_cast<std::int64_t>(m_whole)))
    {
        Refuse("cannot be written", "Its folder must be writable by this user; --journal names "
                                    "another place.");
    }
    if (m_lines == 0)
    {
        Write(kFirstJournalLine, false);
    }
}

void ProgressJournal::RequireDatabase(const std::string& database)
{
    if (database == m_database)
    {
        return;
    }
    if (!m_known.empty() && !m_database.empty())
    {
        Refuse("is that of the database '" + host::Printable(m_database) +
                   "', and this run works with '" + host::Printable(database) +
                   "', which has no row of what was judged for the other",
               "Give this database a journal of its own with --journal. When both are the same "
               "database, write the connection string as before; or move the judged orders away "
               "and remove the journal.");
    }
    Write(LineOfDatabase(database), false);
    m_database = database;
}

void ProgressJournal::Write(const std::string& line, bool isFlushed)
{
    const std::string text = line + "\n";
    if (!m_file.Write(text.data(), text.size()) || (isFlushed && !m_file.Flush()))
    {
        Refuse("cannot be written", "Make room on its disk and run the command again; what was "
                                    "judged is not judged again.");
    }
    ++m_lines;
}

std::optional<Progress> ProgressJournal::Find(const std::string& key,
                                              const std::string& version) const
{
    const std::lock_guard guard(m_mutex);
    const auto found = m_known.find(key);
    if (found == m_known.end() || found->second.version != version)
    {
        return std::nullopt;
    }
    return found->second;
}

bool ProgressJournal::IsDone(const std::string& key, const std::string& version) const
{
    const auto progress = Find(key, version);
    return progress && progress->isDone;
}

void ProgressJournal::Begin(const std::string& key, const std::string& version, long long after,
                            const std::string& asked)
{
    const std::lock_guard guard(m_mutex);
    const Progress progress{version, false, after, 0, asked};
    Write(LineOfBegun(key, progress), true);
    m_known[key] = progress;
}

void ProgressJournal::Done(const std::string& key, const std::string& version,
                           const std::string& outcome)
{
    const std::lock_guard guard(m_mutex);
    const Progress progress{version, true, 0, Now(), ""};
    Write(LineOfDone(key, progress, outcome), false);
    m_known[key] = progress;
}

void ProgressJournal::GiveUp(const std::string& key)
{
    const std::lock_guard guard(m_mutex);
    Write(LineOfGivenUp(key), false);
    m_known.erase(key);
}

long long ProgressJournal::Now()
{
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

void ProgressJournal::RewriteIfLong()
{
    if (m_lines < 2 * m_known.size() + kSpareLines)
    {
        return;
    }
    const std::string fresh = m_narrow + ".tmp";
    DeleteFileA(fresh.c_str());
    m_file.Close();
    m_lines = 0;
    if (!m_file.Open(fresh.c_str(), port::OpenMode::CreateNew))
    {
        Refuse("cannot be written", "Its folder must be writable by this user.");
    }
    Write(kFirstJournalLine, false);
    if (!m_database.empty())
    {
        Write(LineOfDatabase(m_database), false);
    }
    for (const auto& [key, progress] : m_known)
    {
        Write(progress.isDone ? LineOfDone(key, progress, "") : LineOfBegun(key, progress), false);
    }
    const bool isWhole = m_file.Flush();
    m_file.Close();
    if (!isWhole || !port::MoveFileReplacing(fresh.c_str(), m_narrow.c_str()) ||
        !m_file.Open(m_narrow.c_str(), port::OpenMode::AppendNoLink))
    {
        Refuse("cannot be written", "Its folder must be writable by this user.");
    }
}

} // namespace batch
