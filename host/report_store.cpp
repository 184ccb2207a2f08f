#include "host/report_store.h"

#include "host/output.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "port/kernel.h"
#include "port/plain_file.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace host
{

namespace
{

constexpr const char* kReportEnding = ".psr";
constexpr std::size_t kLargestReport = std::size_t{1024} * 1024;

struct ReportElement
{
    const char* name;
    std::string StoredReport::*part;
};

constexpr ReportElement kElements[] = {
    {"CreDtTm", &StoredReport::created},     {"OrgnlMsgId", &StoredReport::orderId},
    {"MsgId", &StoredReport::messageId},     {"GrpSts", &StoredReport::status},
    {"Cd", &StoredReport::reasonCode},       {"AddtlStsRsnInf", &StoredReport::reasonText},
    {"OrgnlNbOfTxs", &StoredReport::orders}, {"OrgnlCtrlSum", &StoredReport::total},
};

std::string ElementText(const std::string& document, const std::string& name)
{
    const std::string opening = "<" + name + ">";
    const std::size_t begin = document.find(opening);
    const std::size_t end = document.find("</" + name + ">", begin);
    if (begin == std::string::npos || end == std::string::npos)
    {
        return {};
    }
    return document.substr(begin + opening.size(), end - begin - opening.size());
}

std::vector<std::string> NamesIn(const std::string& folder)
{
    std::vector<std::string> names;
    if (!port::ListFolder(folder.c_str(), names))
    {
        throw Refusal(kCouldNotRun, "the folder " + Quoted(support::Utf8FromNarrow(folder)) +
                                        " of the hand-off store cannot be read. Check its rights, "
                                        "or name another store with --hand-off.");
    }
    return names;
}

// The identifier of a file named as the hand-off names it, <digits>.psr; nothing for any other
// name.
std::optional<long long> FileIdOf(const std::string& name)
{
    const std::string ending = kReportEnding;
    if (name.size() <= ending.size() ||
        name.compare(name.size() - ending.size(), ending.size(), ending) != 0)
    {
        return std::nullopt;
    }
    const std::string digits = name.substr(0, name.size() - ending.size());
    if (digits.find_first_not_of("0123456789") != std::string::npos)
    {
        return std::nullopt;
    }
    const long long fileId = support::ToInt64(digits.c_str());
    return digits == std::to_string(fileId) ? std::optional(fileId) : std::nullopt;
}

} // namespace

void ReadReportDocument(StoredReport& report)
{
    for (const ReportElement& element : kElements)
    {
        report.*element.part = ElementText(report.document, element.name);
    }
    std::replace(report.created.begin(), report.created.end(), 'T', ' ');
}

ReportStore::ReportStore(const std::string& folder)
{
    if (!port::FolderExists(folder.c_str()))
    {
        return;
    }
    for (const std::string& service : NamesIn(folder))
    {
        const std::string serviceFolder = port::JoinPath(folder, service);
        if (!port::FolderExists(serviceFolder.c_str()))
        {
            continue;
        }
        for (const std::string& partner : NamesIn(serviceFolder))
        {
            const std::string path = port::JoinPath(serviceFolder, partner);
            if (port::FolderExists(path.c_str()))
            {
                AddFolder({service, partner, path});
            }
        }
    }
    std::sort(m_places.begin(), m_places.end(),
              [](const FilePlace& left, const FilePlace& right) {
                  return left.fileId != right.fileId ? left.fileId > right.fileId
                                                     : left.folder < right.folder;
              });
}

void ReportStore::AddFolder(const Folder& folder)
{
    m_folders.push_back(folder);
    for (const std::string& name : NamesIn(folder.path))
    {
        if (const auto fileId = FileIdOf(name); fileId)
        {
            m_places.push_back({*fileId, m_folders.size() - 1});
        }
    }
}

StoredReport ReportStore::Place(std::size_t index) const
{
    const FilePlace& place = m_places[index];
    const Folder& folder = m_folders[place.folder];
    StoredReport report;
    report.path = support::Utf8FromNarrow(
        port::JoinPath(folder.path, std::to_string(place.fileId) + kReportEnding));
    report.service = support::Utf8FromNarrow(folder.service);
    report.partner = support::Utf8FromNarrow(folder.partner);
    report.fileId = place.fileId;
    return report;
}

bool ReportStore::Read(StoredReport& report)
{
    ReportFile file = ReadReportFile(support::NarrowFromWide(support::WideFromUtf8(report.path)));
    if (!file.fault.empty())
    {
        Warn("the report " + Quoted(report.path) + " is left out: " + file.fault + ".");
    }
    if (!file.bytes)
    {
        return false;
    }
    report.document = std::move(*file.bytes);
    ReadReportDocument(report);
    return true;
}

ReportFile ReadReportFile(const std::string& path)
{
    std::string bytes;
    switch (port::ReadPlainFile(path.c_str(), kLargestReport + 1, bytes))
    {
    case port::PlainFile::Missing:
        return {};
    case port::PlainFile::Other:
        return {std::nullopt, "it is a link, a folder, a pipe or a device"};
    case port::PlainFile::Failed:
        return {std::nullopt, "it cannot be read (error " + std::to_string(GetLastError()) +
                                  "); check its rights and the disk"};
    case port::PlainFile::Read:
        break;
    }
    if (bytes.size() > kLargestReport)
    {
        return {std::nullopt, "it is larger than 1 MiB, which no report is"};
    }
    return {std::move(bytes), {}};
}

} // namespace host
