#include "host/report_store.h"

#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/numbers.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr const char* kEnding = ".psr";
constexpr std::int64_t kLargestReport = std::int64_t{1024} * 1024;

struct ReportElement
{
    const char* name;
    std::string StoredReport::*part;
};

constexpr ReportElement kElements[] = {
    {"CreDtTm", &StoredReport::created}, {"OrgnlMsgId", &StoredReport::orderId},
    {"MsgId", &StoredReport::messageId}, {"GrpSts", &StoredReport::status},
    {"Cd", &StoredReport::reasonCode},   {"AddtlStsRsnInf", &StoredReport::reasonText},
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

// The identifier of a file named <digits>.psr; nothing for any other name.
std::optional<long long> FileIdOf(const std::string& name)
{
    const std::string ending = kEnding;
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
    return support::ToInt64(digits.c_str());
}

std::string ReadDocument(const std::string& path)
{
    port::File file;
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        return {};
    }
    std::string bytes;
    char block[4096];
    while (static_cast<std::int64_t>(bytes.size()) < kLargestReport)
    {
        const std::int64_t count = file.Read(block, sizeof block);
        if (count <= 0)
        {
            break;
        }
        bytes.append(block, static_cast<std::size_t>(count));
    }
    return bytes;
}

void ReadFolder(const std::string& folder, const std::string& service, const std::string& partner,
                std::vector<StoredReport>& reports)
{
    for (const std::string& name : NamesIn(folder))
    {
        const auto fileId = FileIdOf(name);
        if (!fileId)
        {
            continue;
        }
        const std::string path = port::JoinPath(folder, name);
        StoredReport report;
        report.path = support::Utf8FromNarrow(path);
        report.service = support::Utf8FromNarrow(service);
        report.partner = support::Utf8FromNarrow(partner);
        report.fileId = *fileId;
        report.document = ReadDocument(path);
        ReadReportDocument(report);
        reports.push_back(std::move(report));
    }
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

std::vector<StoredReport> ReadReports(const std::string& store)
{
    std::vector<StoredReport> reports;
    if (!port::FolderExists(store.c_str()))
    {
        return reports;
    }
    for (const std::string& service : NamesIn(store))
    {
        const std::string serviceFolder = port::JoinPath(store, service);
        if (!port::FolderExists(serviceFolder.c_str()))
        {
            continue;
        }
        for (const std::string& partner : NamesIn(serviceFolder))
        {
            const std::string folder = port::JoinPath(serviceFolder, partner);
            if (port::FolderExists(folder.c_str()))
            {
                ReadFolder(folder, service, partner, reports);
            }
        }
    }
    std::sort(reports.begin(), reports.end(),
              [](const StoredReport& left, const StoredReport& right)
              { return left.fileId > right.fileId; });
    return reports;
}

} // namespace host
