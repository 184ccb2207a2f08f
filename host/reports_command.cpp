#include "host/reports_command.h"

#include "host/exit_status.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/query_options.h"
#include "host/refusal.h"
#include "host/report_store.h"
#include "host/table.h"
#include "host/text.h"
#include "port/files.h"
#include "support/codepage.h"
#include "support/folders.h"

#include <nlohmann/json.hpp>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr std::size_t kReasonWidth = 60;

struct ReportFilter
{
    const char* option;
    std::string StoredReport::*part;
};

constexpr ReportFilter kFilters[] = {
    {"partner", &StoredReport::partner},
    {"service", &StoredReport::service},
    {"order-id", &StoredReport::orderId},
};

bool Fits(const OptionValues& values, const StoredReport& report)
{
    for (const ReportFilter& filter : kFilters)
    {
        const OptionValue* value = values.Find(filter.option);
        if (value != nullptr && report.*filter.part != value->text)
        {
            return false;
        }
    }
    const auto since = SinceTime(values);
    const auto until = UntilTime(values);
    return (!since || report.created >= *since) && (!until || report.created <= *until);
}

Json ReportAsJson(const StoredReport& report)
{
    return {
        {"fileId", report.fileId},         {"path", report.path},
        {"service", report.service},       {"partner", report.partner},
        {"time", report.created},          {"orderId", report.orderId},
        {"messageId", report.messageId},   {"status", report.status},
        {"reasonCode", report.reasonCode}, {"reasonText", report.reasonText},
        {"document", report.document},
    };
}

std::string AsTable(const std::vector<StoredReport>& reports)
{
    Table table;
    table.AddColumn("FILE ID", Table::Align::Right);
    table.AddColumn("TIME");
    table.AddColumn("SERVICE");
    table.AddColumn("PARTNER");
    table.AddColumn("ORDER");
    table.AddColumn("STATUS");
    table.AddColumn("CODE");
    table.AddColumn("REASON", Table::Align::Left, kReasonWidth);
    table.AddColumn("PATH");
    for (const StoredReport& report : reports)
    {
        table.AddRow({std::to_string(report.fileId), report.created, report.service, report.partner,
                      report.orderId, report.status, report.reasonCode, report.reasonText,
                      report.path});
    }
    return table.Text();
}

// The document line by line, so that its own line ends stay but nothing else acts on a terminal.
std::string Shown(const StoredReport& report)
{
    std::string text = "\n";
    text += Printable(report.path) + "\n";
    std::size_t begin = 0;
    while (begin < report.document.size())
    {
        const std::size_t end = std::min(report.document.find('\n', begin), report.document.size());
        text += Printable(report.document.substr(begin, end - begin)) + "\n";
        begin = end + 1;
    }
    return text;
}

std::string StoreFrom(const OptionValues& values)
{
    const OptionValue* folder = values.Find("hand-off");
    if (folder == nullptr)
    {
        return support::HandOffFolder();
    }
    if (folder->text.empty())
    {
        throw UsageRefusal(folder->origin +
                           ": the value is empty. Name the folder of the hand-off store.");
    }
    const std::string store = NarrowText(*folder);
    if (!port::FolderExists(store.c_str()))
    {
        throw Refusal(kCouldNotRun, folder->origin + ": there is no folder " +
                                        Quoted(folder->text) +
                                        ". Name the folder of the hand-off store.");
    }
    return store;
}

} // namespace

int RunReports(const OptionValues& values)
{
    const std::size_t limit = LimitFrom(values);
    SinceTime(values); // a time that is none is refused even where no report lies
    UntilTime(values);
    const std::string store = StoreFrom(values);
    std::vector<StoredReport> reports;
    bool hasMore = false;
    for (StoredReport& report : ReadReports(store))
    {
        if (!Fits(values, report))
        {
            continue;
        }
        hasMore = reports.size() == limit;
        if (hasMore)
        {
            break;
        }
        reports.push_back(std::move(report));
    }

    if (values.IsOn("json"))
    {
        Json list = Json::array();
        for (const StoredReport& report : reports)
        {
            list.push_back(ReportAsJson(report));
        }
        PrintJson(
            {{"store", support::Utf8FromNarrow(store)}, {"reports", list}, {"more", hasMore}});
        return kDone;
    }
    Print(reports.empty()
              ? "No status report fits in " + Quoted(support::Utf8FromNarrow(store)) + ".\n"
              : AsTable(reports));
    for (const StoredReport& report : reports)
    {
        Print(values.IsOn("text") ? Shown(report) : std::string());
    }
    if (hasMore)
    {
        Print("There are more; --limit shows them.\n");
    }
    return kDone;
}

} // namespace host
