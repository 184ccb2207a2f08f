#include "host/doctor/file_checks.h"

#include "host/batch/journal_lines.h"
#include "host/batch/journal_place.h"
#include "host/doctor/folder.h"
#include "host/doctor/local_time.h"
#include "host/doctor/lock_holder.h"
#include "host/file_text.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/environment.h"
#include "port/files.h"
#include "port/secrecy.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr const char* kProgressCheck = "progress";
constexpr const char* kProgressVariable = "SIGNCHECK_PROGRESS";
// So long a journal remembers orders whose files are gone.
constexpr std::int64_t kOldSeconds = 30LL * 24 * 3600;
constexpr const char* kLeaveIt =
    "Leave the journal where it is: without it every order that still lies there is judged again.";

std::string Utf8(const std::string& narrow)
{
    return support::Utf8FromNarrow(narrow);
}

// What the journals say decides whether an order is judged, so not even a group may write there.
Findings JudgePlace(const ServiceFolder& folder)
{
    const std::string shown = host::Printable(Utf8(folder.path));
    const port::FileRights rights = port::RightsOf(folder.path.c_str());
    Findings findings = JudgeFolder(folder);
    if (IsRefused(findings) || !port::FolderExists(folder.path.c_str()))
    {
        return findings;
    }
    if (rights.othersMayWrite)
    {
        return {{kProgressCheck, Outcome::Failed,
                 "the folder " + host::Quoted(shown) + " may be written by others (mode " +
                     rights.mode + "), who may then settle what is judged",
                 "Take it back: chmod 700 " + shown +
                     ". Compare what its journals say with signcheck history before you rely on "
                     "them."}};
    }
    if (rights.othersMayRead)
    {
        findings.push_back({kProgressCheck, Outcome::Warning,
                            "the folder " + host::Quoted(shown) + " may be read by others (mode " +
                                rights.mode + "): its journals name the orders",
                            "Make it its owner's: chmod 700 " + shown + "."});
    }
    return findings;
}

Finding Refused(const std::string& name, const std::string& fault, const std::string& remedy)
{
    return {kProgressCheck, Outcome::Failed,
            "the journal " + host::Quoted(Utf8(name)) + " " + fault +
                ", so that signcheck batch and watch refuse it",
            remedy};
}

Finding Interrupted(const std::string& name, std::size_t begun, const LockHolder& holder)
{
    const std::string by = holder.note.empty() ? "" : " (" + host::Printable(holder.note) + ")";
    return {kProgressCheck, Outcome::Warning,
            "the journal " + host::Quoted(Utf8(name)) + " has " +
                host::Counted(begun, "order", "orders") + " begun and not done by a run that is " +
                "gone" + by,
            "Start signcheck batch or watch on its folder or list again: the history tells it what "
            "became of them. " +
                std::string(kLeaveIt)};
}

Finding Old(const std::string& name, std::int64_t age)
{
    return {kProgressCheck, Outcome::Warning,
            "the journal " + host::Quoted(Utf8(name)) + " was last written " + AgeInWords(age) +
                " ago, and no process holds it",
            "Where its folder or list of orders is gone, delete it. Else leave it: without it "
            "every order that still lies there is judged again."};
}

/// Journals of running processes are left alone.
std::optional<Finding> JudgeJournal(const std::string& folder, const std::string& name,
                                    const LockHolder& holder)
{
    const std::string path = port::JoinPath(folder, name);
    if (const std::string fault = batch::FaultOfJournalFile(path); !fault.empty())
    {
        return Refused(name, fault,
                       "See with signcheck history what was judged, then remove it: every order "
                       "that still lies in its folder is judged again.");
    }
    const auto text = host::FileText(path);
    if (!text)
    {
        return Refused(name, "cannot be read",
                       "Give its owner the right: chmod 600 " + host::Printable(Utf8(path)) +
                           ". Check the disk.");
    }
    const batch::JournalContent content = batch::ReadJournalLines(*text);
    if (content.faulty == 1)
    {
        return Refused(name, "is no progress journal but another file", "Move it elsewhere.");
    }
    if (content.faulty != 0)
    {
        return Refused(name, "has a line " + std::to_string(content.faulty) + " that is none of it",
                       "Remove that line. What was judged is in the history (signcheck history).");
    }
    const auto begun = static_cast<std::size_t>(
        std::count_if(content.known.begin(), content.known.end(),
                      [](const auto& entry) { return !entry.second.isDone; }));
    if (begun != 0)
    {
        return Interrupted(name, begun, holder);
    }
    const std::int64_t age = AgeOfFile(Utf8(path)).value_or(0);
    return age > kOldSeconds ? std::optional<Finding>(Old(name, age)) : std::nullopt;
}

/// How many journals there are, and how many of them are held now.
struct Journals
{
    std::size_t all = 0;
    std::size_t inUse = 0;
};

Journals JudgeJournals(const std::string& folder, Findings& findings)
{
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        findings.push_back(
            {kProgressCheck, Outcome::Failed,
             "the folder " + host::Quoted(Utf8(folder)) + " cannot be read",
             "Give its owner the right: chmod 700 " + host::Printable(Utf8(folder)) + "."});
    }
    std::sort(names.begin(), names.end());
    Journals journals;
    for (const std::string& name : names)
    {
        if (!name.ends_with(batch::kJournalEnding))
        {
            continue;
        }
        ++journals.all;
        const std::string lock = batch::JournalLockPath(port::JoinPath(folder, name));
        const bool isLocked = port::FileExists(lock.c_str());
        const LockHolder holder = isLocked ? HolderOf(Utf8(lock)) : LockHolder{};
        if (isLocked && !holder.isGone)
        {
            ++journals.inUse; // as far as can be seen from here
        }
        else if (const auto finding = JudgeJournal(folder, name, holder); finding)
        {
            findings.push_back(*finding);
        }
    }
    return journals;
}

} // namespace

Findings CheckProgress()
{
    const std::string folder = support::ProgressFolder();
    Findings findings = JudgePlace(
        {kProgressCheck, folder,
         port::Environment(kProgressVariable).empty() ? "" : kProgressVariable, "signcheck"});
    if (IsRefused(findings) || !port::FolderExists(folder.c_str()))
    {
        return findings;
    }
    const Journals journals = JudgeJournals(folder, findings);
    const auto room = FreeBytes(folder);
    if (const auto little = room ? JudgeRoom(kProgressCheck, *room) : std::nullopt)
    {
        findings.push_back(*little);
    }
    if (findings.empty())
    {
        findings.push_back(
            {kProgressCheck, Outcome::Ok,
             FolderInWords(folder) + ", " + host::Counted(journals.all, "journal", "journals") +
                 (journals.inUse == 0 ? "" : ", " + std::to_string(journals.inUse) + " in use"),
             ""});
    }
    return findings;
}

} // namespace doctor
