#include "host/batch/journal_place.h"

#include "host/batch/order_path.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/file_identity.h"
#include "port/files.h"
#include "port/secrecy.h"
#include "services/sha256.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>

namespace batch
{

namespace
{

constexpr std::size_t kLongestLead = 40;

bool IsPlain(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

// For people, who see which folder it is of; the digest alone tells journals apart.
std::string Lead(const std::string& real)
{
    const std::size_t end = real.find_last_of("/\\");
    std::string lead = real.substr(end == std::string::npos ? 0 : end + 1, kLongestLead);
    std::replace_if(
        lead.begin(), lead.end(), [](char character) { return !IsPlain(character); }, '-');
    return lead;
}

std::string WhyNot()
{
    switch (GetLastError())
    {
    case ERROR_INVALID_OWNER:
        return "belongs to another user";
    case ERROR_INVALID_ACL:
        return "is shared by every user";
    default:
        return "cannot be made or is no folder";
    }
}

std::string OwnFolder()
{
    const std::string folder = support::ProgressFolder();
    if (!port::CreatePrivateFolder(folder.c_str()))
    {
        throw host::Refusal(host::kCouldNotRun,
                            "the folder of progress journals " +
                                host::Quoted(support::Utf8FromNarrow(folder)) + " " + WhyNot() +
                                ". Name a folder of this user in SIGNCHECK_PROGRESS, or a file in "
                                "one with --journal.");
    }
    return folder;
}

} // namespace

std::string JournalPath(const host::OptionValues& values, const std::string& judged)
{
    if (const host::OptionValue* const given = values.Find("journal"); given != nullptr)
    {
        if (given->text.empty())
        {
            throw host::UsageRefusal(given->origin +
                                     " is empty. Name the progress journal, or leave it out.");
        }
        RefuseAmongOrders(*given, judged);
        return AbsolutePath(given->text);
    }
    const std::string real = port::RealPath(judged);
    if (real.empty())
    {
        throw host::Refusal(host::kCouldNotRun,
                            host::Quoted(judged) + " is gone. Put it back and start again.");
    }
    const std::string name = Lead(real) + "-" + services::Sha256Hex(real) + kJournalEnding;
    return AbsolutePath(support::Utf8FromNarrow(port::JoinPath(OwnFolder(), name)));
}

std::string JournalLockPath(const std::string& journal)
{
    return journal + ".lock";
}

std::string FaultOfJournalFile(const std::string& journal)
{
    if (port::IsLink(journal.c_str()))
    {
        return "is a link";
    }
    if (port::BelongsToOther(journal.c_str()))
    {
        return "belongs to another user";
    }
    const port::FileRights rights = port::RightsOf(journal.c_str());
    return rights.othersMayWrite
               ? "has mode " + rights.mode + ", so that others may have written into it"
               : std::string();
}

} // namespace batch
