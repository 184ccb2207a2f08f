#include "host/doctor/file_checks.h"

#include "host/doctor/folder.h"
#include "host/doctor/local_time.h"
#include "host/refusal.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/environment.h"
#include "port/files.h"
#include "services/event_line.h"
#include "services/event_spool.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr const char* kSpoolCheck = "spool";
constexpr const char* kSpoolVariable = "SIGNUTILS_SPOOL";
constexpr const char* kFileStart = "events-";
constexpr const char* kEvents = ".jsonl";
constexpr const char* kDamaged = ".damaged";
constexpr std::size_t kBlock = 65536;

/// What one file of the spool holds.
struct SpoolFile
{
    std::uint64_t events = 0;
    std::uint64_t torn = 0; ///< lines that are no events
    std::string oldest;     ///< of the events, local time
};

void AddLine(std::string_view line, SpoolFile& file)
{
    if (line.empty())
    {
        return; // ends a line that was torn off before it
    }
    const auto event = services::ReadEventLine(line);
    if (!event)
    {
        ++file.torn;
        return;
    }
    ++file.events;
    file.oldest = file.oldest.empty() ? event->dateTime : std::min(file.oldest, event->dateTime);
}

// Nothing is locked, because a lock would make a file: a line that is being written at this moment
// reads as a torn one.
SpoolFile ReadSpoolFile(const std::string& path)
{
    SpoolFile read;
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        if (!port::FileExists(path.c_str()))
        {
            return read; // delivered meanwhile
        }
        throw host::Refusal(host::kCouldNotRun, "the file " +
                                                    host::Quoted(support::Utf8FromNarrow(path)) +
                                                    " cannot be read. Check its rights.");
    }
    std::string rest;
    std::vector<char> block(kBlock);
    for (std::int64_t count = file.Read(block.data(), kBlock); count > 0;
         count = file.Read(block.data(), kBlock))
    {
        rest.append(block.data(), static_cast<std::size_t>(count));
        std::size_t begin = 0;
        for (std::size_t end = rest.find('\n'); end != std::string::npos;
             end = rest.find('\n', begin))
        {
            AddLine(std::string_view(rest).substr(begin, end - begin), read);
            begin = end + 1;
        }
        rest.erase(0, begin);
    }
    AddLine(rest, read);
    return read;
}

std::string Since(const SpoolFile& file)
{
    const auto then = ClockSeconds(file.oldest);
    return "the oldest since " + file.oldest +
           (then ? " (" + AgeInWords(ClockSecondsNow() - *then) + ")" : "");
}

void AddWaiting(const std::string& name, const SpoolFile& file, bool isOurs, Findings& findings)
{
    if (file.events == 0)
    {
        return;
    }
    const std::string waiting = host::Counted(file.events, "event waits", "events wait") + " for ";
    if (isOurs)
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Warning, waiting + "this database, " + Since(file),
             "Each check on this connection string delivers some of them. Where they stay, the "
             "trace of a check (--trace) tells what the database says of them."});
    }
    else if (name == services::EventSpool("", "").FileName())
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Warning,
             waiting + "no database, " + Since(file) +
                 ": their host had no connection string, and nobody delivers them",
             "Give that host its connection string. The events are lines of JSON in " + name +
                 "; remove it when they are no longer needed."});
    }
    else
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Warning,
             waiting + "another connection string in " + name + ", " + Since(file),
             "Checks on that very string deliver them. After a change of the string, of "
             "a password too, give the old one to a last check."});
    }
}

void AddFile(const std::string& name, const SpoolFile& file, bool isOurs, Findings& findings)
{
    AddWaiting(name, file, isOurs, findings);
    if (file.torn != 0)
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Warning,
             name + " has " +
                 host::Counted(file.torn, "line that is no event", "lines that are no events") +
                 ", torn by a crash or being written at this moment",
             "A delivery sets such lines aside in a file beside it that ends in .damaged; "
             "until then leave them."});
    }
}

Finding SetAside(const std::string& name, std::uint64_t lines)
{
    return {kSpoolCheck, Outcome::Warning,
            host::Counted(lines, "damaged line was", "damaged lines were") + " set aside in " +
                name,
            "Read what can be read of them, see with signcheck events what the journal has, and "
            "remove the file."};
}

void AddFiles(const std::string& folder, const std::string& ours, Findings& findings)
{
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Failed,
             "the folder " + host::Quoted(support::Utf8FromNarrow(folder)) + " cannot be read",
             "Give its owner the right: chmod u+rwx " +
                 host::Printable(support::Utf8FromNarrow(folder)) + "."});
        return;
    }
    for (const std::string& name : names)
    {
        const std::string path = port::JoinPath(folder, name);
        if (!name.starts_with(kFileStart))
        {
            continue;
        }
        if (name.ends_with(kEvents))
        {
            AddFile(name, ReadSpoolFile(path), name == ours, findings);
        }
        else if (name.ends_with(kDamaged))
        {
            const SpoolFile file = ReadSpoolFile(path);
            findings.push_back(SetAside(name, file.torn + file.events));
        }
    }
}

} // namespace

Findings CheckSpool(const std::string& connexionString)
{
    const std::string folder = support::SpoolFolder();
    Findings findings = JudgeFolder(
        {kSpoolCheck, folder, port::Environment(kSpoolVariable).empty() ? "" : kSpoolVariable});
    if (IsRefused(findings) || !port::FolderExists(folder.c_str()))
    {
        return findings;
    }
    const services::EventSpool ours(folder, connexionString);
    AddFiles(folder, connexionString.empty() ? std::string() : ours.FileName(), findings);
    const auto room = FreeBytes(folder);
    if (const auto little = room ? JudgeRoom(kSpoolCheck, *room) : std::nullopt)
    {
        findings.push_back(*little);
    }
    if (findings.empty())
    {
        findings.push_back(
            {kSpoolCheck, Outcome::Ok, FolderInWords(folder) + ", no event waits", ""});
    }
    return findings;
}

} // namespace doctor
