#include "host/doctor/file_checks.h"

#include "host/doctor/folder.h"
#include "host/doctor/local_time.h"
#include "host/option_readers.h"
#include "host/report_store.h"
#include "host/sentence.h"
#include "host/text.h"
#include "port/environment.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <algorithm>

namespace doctor
{

namespace
{

constexpr const char* kStoreCheck = "store";
constexpr const char* kStoreVariable = "SIGNUTILS_HANDOFF";
constexpr const char* kPart = ".part";

ServiceFolder StoreFolder(const host::OptionValues& values)
{
    if (const host::OptionValue* const given = values.Find("hand-off"); given != nullptr)
    {
        return {kStoreCheck, host::NarrowText(*given), given->origin};
    }
    return {kStoreCheck, support::HandOffFolder(),
            port::Environment(kStoreVariable).empty() ? "" : kStoreVariable};
}

std::vector<std::string> FoldersIn(const std::string& folder)
{
    std::vector<std::string> names;
    std::vector<std::string> folders;
    static_cast<void>(port::ListFolder(folder.c_str(), names)); // ReportStore has told of it
    for (const std::string& name : names)
    {
        const std::string path = port::JoinPath(folder, name);
        if (port::FolderExists(path.c_str()))
        {
            folders.push_back(path);
        }
    }
    return folders;
}

/// Reports that were never finished.
struct Parts
{
    std::size_t count = 0;
    std::int64_t oldest = 0;
};

Parts PartsIn(const std::string& store)
{
    Parts parts;
    for (const std::string& service : FoldersIn(store))
    {
        for (const std::string& partner : FoldersIn(service))
        {
            std::vector<std::string> names;
            static_cast<void>(port::ListFolder(partner.c_str(), names));
            for (const std::string& name : names)
            {
                const auto age =
                    name.ends_with(kPart)
                        ? AgeOfFile(support::Utf8FromNarrow(port::JoinPath(partner, name)))
                        : std::nullopt;
                if (age)
                {
                    ++parts.count;
                    parts.oldest = std::max(parts.oldest, *age);
                }
            }
        }
    }
    return parts;
}

Finding UnfinishedReports(const std::string& store, const Parts& parts)
{
    return {kStoreCheck, Outcome::Warning,
            host::Counted(parts.count, "unfinished report lies", "unfinished reports lie") +
                " there (.part), the oldest " + AgeInWords(parts.oldest) + " old",
            "Delete those that no host at work was writing: find " +
                host::Printable(support::Utf8FromNarrow(store)) +
                " -name '*.part' -mtime +1 -print -delete."};
}

} // namespace

Findings CheckStore(const host::OptionValues& values)
{
    const ServiceFolder folder = StoreFolder(values);
    Findings findings = JudgeFolder(folder);
    if (IsRefused(findings) || !port::FolderExists(folder.path.c_str()))
    {
        return findings;
    }
    const host::ReportStore store(folder.path);
    if (const Parts parts = PartsIn(folder.path); parts.count != 0)
    {
        findings.push_back(UnfinishedReports(folder.path, parts));
    }
    const auto room = FreeBytes(folder.path);
    if (const auto little = room ? JudgeRoom(kStoreCheck, *room) : std::nullopt)
    {
        findings.push_back(*little);
    }
    if (findings.empty())
    {
        findings.push_back(
            {kStoreCheck, Outcome::Ok,
             FolderInWords(folder.path) + ", " + host::Counted(store.Count(), "report", "reports"),
             ""});
    }
    return findings;
}

} // namespace doctor
