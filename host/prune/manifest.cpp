#include "host/prune/manifest.h"

#include "host/prune/archived_table.h"
#include "host/prune/old_reports.h"
#include "host/prune/spool_lines.h"
#include "host/refusal.h"
#include "host/text.h"
#include "signutils/version.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace prune
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* kManifest = "manifest.json";
constexpr const char* kRemoved = "removed.json";
constexpr const char* kLock = "prune.lock";
constexpr const char* kKind = "signcheck prune";

bool IsOurs(std::string name)
{
    if (name.ends_with(kUnfinished))
    {
        name.erase(name.size() - std::string(kUnfinished).size());
    }
    for (const char* const known : {kManifest, kRemoved, kLock, HistoryTable().file,
                                    EventTable().file, kReportsFile, kSpoolFile, "reports"})
    {
        if (name == known)
        {
            return true;
        }
    }
    return false;
}

Json AsJson(const Manifest& manifest)
{
    Json object = {{"kind", kKind},
                   {"version", SIGNUTILS_VERSION},
                   {"before", manifest.before},
                   {"made", manifest.made},
                   {"database", manifest.database},
                   {"store", manifest.store},
                   {"keptEvents", manifest.kept},
                   {"files", Json::array()}};
    for (const ArchivedFile& file : manifest.files)
    {
        object["files"].push_back({{"name", file.name},
                                   {"rows", file.rows},
                                   {"bytes", file.bytes},
                                   {"sha256", file.sha256}});
    }
    return object;
}

Manifest FromJson(const Json& object)
{
    Manifest manifest;
    manifest.before = object.at("before");
    manifest.made = object.at("made");
    manifest.database = object.at("database");
    manifest.store = object.at("store");
    manifest.kept = object.at("keptEvents");
    for (const Json& each : object.at("files"))
    {
        ArchivedFile file;
        file.name = each.at("name");
        file.rows = each.at("rows");
        file.bytes = each.at("bytes");
        file.sha256 = each.at("sha256");
        manifest.files.push_back(std::move(file));
    }
    return manifest;
}

void WriteText(const std::string& folder, const char* name, const std::string& text)
{
    ArchiveWriter writer(folder, name);
    writer.Add(text);
    writer.Finish();
}

} // namespace

ArchiveFolder::ArchiveFolder(std::string path) : m_path(std::move(path))
{
    if (!port::CreatePrivateFolder(m_path.c_str()))
    {
        throw host::Refusal(host::kCouldNotRun,
                            "option --export: the folder " + host::QuotedPath(m_path) +
                                " cannot be made, or belongs to somebody else. Name a folder of "
                                "the user who runs signcheck.");
    }
    RefuseStrangers();
    const std::string lock = port::JoinPath(m_path, kLock);
    if (!m_lock.Open(lock.c_str(), port::OpenMode::AppendNoLink) || !m_lock.LockExclusive())
    {
        throw host::Refusal(host::kCouldNotRun, "option --export: the file " +
                                                    host::QuotedPath(lock) +
                                                    " cannot be written. Make room, or give the "
                                                    "user the right to write there.");
    }
    if (port::FileExists(port::JoinPath(m_path, kRemoved).c_str()))
    {
        throw host::Refusal(host::kCouldNotRun, "option --export: the folder " +
                                                    host::QuotedPath(m_path) +
                                                    " holds an archive that is done. Name a new "
                                                    "folder for each prune.");
    }
}

void ArchiveFolder::RefuseStrangers() const
{
    std::vector<std::string> names;
    const bool isRead = port::ListFolder(m_path.c_str(), names);
    const auto stranger = std::find_if_not(names.begin(), names.end(), IsOurs);
    if (!isRead || stranger != names.end())
    {
        throw host::Refusal(
            host::kCouldNotRun,
            "option --export: the folder " + host::QuotedPath(m_path) +
                (isRead ? " holds " + host::QuotedPath(*stranger) + ", which is no archive"
                        : std::string(" cannot be read")) +
                ". Name a new folder for each prune.");
    }
}

std::optional<Manifest> ArchiveFolder::ReadManifest() const
{
    const std::string path = port::JoinPath(m_path, kManifest);
    if (!port::FileExists(path.c_str()))
    {
        return std::nullopt;
    }
    std::string text;
    ReadLines(path, [&text](const std::string& line) { text += line + "\n"; });
    const Json object = Json::parse(text, nullptr, false);
    try
    {
        if (object.is_object() && object.at("kind") == kKind)
        {
            return FromJson(object);
        }
    }
    catch (const Json::exception&)
    {
    }
    throw host::Refusal(host::kCouldNotRun, "the manifest " + host::QuotedPath(path) +
                                                " is damaged. Name a new folder with --export.");
}

void ArchiveFolder::Write(const Manifest& manifest) const
{
    WriteText(m_path, kManifest, AsJson(manifest).dump(2) + "\n");
}

void ArchiveFolder::MarkRemoved(const std::string& json) const
{
    WriteText(m_path, kRemoved, json);
}

void VerifyArchive(const std::string& folder, const Manifest& manifest)
{
    for (const ArchivedFile& file : manifest.files)
    {
        Verify(folder, file);
    }
    VerifyReports(folder);
}

} // namespace prune
