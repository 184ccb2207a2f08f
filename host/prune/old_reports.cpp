#include "host/prune/old_reports.h"

#include "host/moment.h"
#include "host/refusal.h"
#include "host/report_store.h"
#include "host/rulebook/iso_date.h"
#include "host/text.h"
#include "port/kernel.h"
#include "services/sha256.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace prune
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr const char* kFolder = "reports";

std::string Narrow(const std::string& utf8)
{
    return support::NarrowFromWide(support::WideFromUtf8(utf8));
}

bool IsFromBefore(const host::StoredReport& report, const std::string& day)
{
    const std::string itsDay = report.created.substr(0, rulebook::kIsoDateLength);
    return host::HasShape(itsDay, "0000-00-00") && itsDay < day;
}

/// One copied report, as the list has it.
struct Copied
{
    std::string original; ///< paths in Windows-1252
    std::string folder;   ///< of the copy, within the archive
    ArchivedFile file;
};

Copied ReadCopied(const std::string& line)
{
    const Json object = Json::parse(line, nullptr, false);
    if (!object.is_object() || !object.contains("original") || !object.contains("folder") ||
        !object.contains("name") || !object.contains("sha256"))
    {
        throw host::Refusal(host::kCouldNotRun, std::string("the list ") + kReportsFile +
                                                    " of the archive is damaged. Name another "
                                                    "folder with --export. No report was removed.");
    }
    Copied copied;
    copied.original = Narrow(object["original"].get<std::string>());
    copied.folder = Narrow(object["folder"].get<std::string>());
    copied.file.name = Narrow(object["name"].get<std::string>());
    copied.file.sha256 = object["sha256"].get<std::string>();
    return copied;
}

std::string LineOf(const host::StoredReport& report, const std::string& folder,
                   const ArchivedFile& file)
{
    const Json object = {{"fileId", report.fileId},
                         {"service", report.service},
                         {"partner", report.partner},
                         {"time", report.created},
                         {"orderId", report.orderId},
                         {"original", report.path},
                         {"folder", support::Utf8FromNarrow(folder)},
                         {"name", file.name},
                         {"bytes", file.bytes},
                         {"sha256", file.sha256}};
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string FolderFor(const std::string& archive, const std::string& within)
{
    const std::string folder = port::JoinPath(archive, within);
    if (!port::CreatePrivateFolder(folder.c_str()))
    {
        throw host::Refusal(host::kCouldNotRun, "the folder " +
                                                    host::Quoted(support::Utf8FromNarrow(folder)) +
                                                    " cannot be made. Make room, or give the user "
                                                    "the right to write there. Nothing was "
                                                    "removed.");
    }
    return folder;
}

} // namespace

OldReports::OldReports(std::string store, std::string day)
    : m_store(std::move(store)), m_day(std::move(day))
{
}

void OldReports::ForEach(const std::function<void(const host::StoredReport&)>& take) const
{
    const host::ReportStore store(m_store);
    for (std::size_t index = 0; index < store.Count(); ++index)
    {
        host::StoredReport report = store.Place(index);
        if (host::ReportStore::Read(report) && IsFromBefore(report, m_day))
        {
            take(report);
        }
    }
}

ArchivedFile OldReports::Export(const std::string& folder) const
{
    ArchiveWriter list(folder, kReportsFile);
    ForEach(
        [&](const host::StoredReport& report)
        {
            const std::string within = port::JoinPath(
                port::JoinPath(kFolder, Narrow(report.service)), Narrow(report.partner));
            // What was read, and not what lies there by now.
            ArchiveWriter copy(FolderFor(folder, within), std::to_string(report.fileId) + ".psr");
            copy.Add(report.document);
            const ArchivedFile file = copy.Finish();
            list.AddRow(LineOf(report, within, file));
        });
    return list.Finish();
}

std::uint64_t OldReports::Remove(const std::string& folder)
{
    std::uint64_t removed = 0;
    ReadLines(port::JoinPath(folder, kReportsFile),
              [&removed](const std::string& line)
              {
                  const Copied copied = ReadCopied(line);
                  const std::string& path = copied.original;
                  const std::string shown = host::Quoted(support::Utf8FromNarrow(path));
                  const host::ReportFile now = host::ReadReportFile(path);
                  if (!now.bytes && now.fault.empty())
                  {
                      return;
                  }
                  if (!now.bytes || services::Sha256Hex(*now.bytes) != copied.file.sha256)
                  {
                      throw host::Refusal(host::kCouldNotRun,
                                          "the report " + shown +
                                              " is no longer what was archived, and stays. Look "
                                              "who wrote it; then name another folder with "
                                              "--export.");
                  }
                  if (DeleteFileA(path.c_str()) == 0)
                  {
                      throw host::Refusal(host::kCouldNotRun,
                                          "the report " + shown +
                                              " cannot be removed. It is archived. Give the user "
                                              "the right to delete in its folder, then run the "
                                              "same command again.");
                  }
                  ++removed;
              });
    return removed;
}

std::uint64_t OldReports::Count() const
{
    std::uint64_t count = 0;
    ForEach([&count](const host::StoredReport&) { ++count; });
    return count;
}

void VerifyReports(const std::string& folder)
{
    ReadLines(port::JoinPath(folder, kReportsFile),
              [&folder](const std::string& line)
              {
                  const Copied copied = ReadCopied(line);
                  Verify(port::JoinPath(folder, copied.folder), copied.file);
              });
}

} // namespace prune
