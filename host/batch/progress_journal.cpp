#include "host/batch/progress_journal.h"

#include "host/batch/order_path.h"
#include "host/file_text.h"
#include "host/option_readers.h"
#include "host/order_lock.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/secrecy.h"

#include <nlohmann/json.hpp>

#include <chrono>

namespace batch
{

namespace
{

using nlohmann::ordered_json;

constexpr const char* kFirstLine = R"({"signcheck":"progress","version":1})";
constexpr std::size_t kSpareLines = 1000;

std::string LineOfBegun(const std::string& key, const Progress& progress)
{
    return ordered_json({{"begun", key},
                         {"file", progress.version},
                         {"asked", progress.asked},
                         {"after", progress.after}})
        .dump();
}

std::string LineOfDone(const std::string& key, const Progress& progress, const std::string& outcome)
{
    return ordered_json({{"done", key},
                         {"file", progress.version},
                         {"outcome", outcome},
                         {"at", progress.at}})
        .dump();
}

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
    throw host::Refusal(host::kCouldNotRun, "the progress journal " + host::Quoted(m_path) + " " +
                                                what + ". " + remedy);
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
    const std::string lock = m_narrow + ".lock";
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
    if (port::IsLink(m_narrow.c_str()))
    {
        Refuse("is a link", remedy);
    }
    if (port::BelongsToOther(m_narrow.c_str()))
    {
        Refuse("belongs to another user", remedy);
    }
    const port::FileRights rights = port::RightsOf(m_narrow.c_str());
    if (rights.othersMayWrite)
    {
        Refuse("has mode " + rights.mode + ", so that others may have written into it", remedy);
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
    const std::string& text = *found;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin))
    {
        ReadLine(text.substr(begin, end - begin), ++m_lines);
        begin = end + 1;
    }
    m_whole = begin;
}

void ProgressJournal::ReadLine(const std::string& line, std::size_t number)
{
    if (number == 1 && line == kFirstLine)
    {
        return;
    }
    try
    {
        const auto object = ordered_json::parse(line);
        if (number > 1 && object.contains("begun"))
        {
            m_known[object.at("begun").get<std::string>()] = {
                object.at("file").get<std::string>(), false, object.at("after").get<long long>(), 0,
                object.at("asked").get<std::string>()};
            return;
        }
        if (number > 1 && object.contains("done"))
        {
            m_known[object.at("done").get<std::string>()] = {object.at("file").get<std::string>(),
                                                             true, 0,
                                                             object.at("at").get<long long>(), ""};
            return;
        }
        if (number > 1 && object.contains("givenUp"))
        {
            m_known.erase(object.at("givenUp").get<std::string>());
            return;
        }
    }
    catch (const ordered_json::exception&)
    {
        // Told below.
    }
    Refuse("cannot be read: line " + std::to_string(number) + " is none of it",
           "Remove that line, or name another journal with --journal; what was judged is in the "
           "history (signcheck history).");
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
        Write(kFirstLine, false);
    }
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
    Write(ordered_json({{"givenUp", key}}).dump(), false);
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
    Write(kFirstLine, false);
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
