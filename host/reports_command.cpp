#include "host/reports_command.h"

#include "host/decimal_sum.h"
#include "host/hand_off_option.h"
#include "host/listing/pager.h"
#include "host/listing/text_filter.h"
#include "host/query_options.h"
#include "host/refusal.h"
#include "host/report_store.h"
#include "host/statusreport/form.h"
#include "host/text.h"
#include "support/codepage.h"

#include <algorithm>

namespace host
{

namespace
{

using listing::Json;

constexpr std::size_t kPathWidth = 76;

struct EqualFilter
{
    const char* option;
    std::string StoredReport::*part;
};

// What the place tells comes first: a report that does not fit is not read.
constexpr EqualFilter kPlaceFilters[] = {
    {"partner", &StoredReport::partner},
    {"service", &StoredReport::service},
};
constexpr EqualFilter kDocumentFilters[] = {
    {"order-id", &StoredReport::orderId},
    {"status", &StoredReport::status},
};

struct ReportField
{
    const char* name;
    Json (*value)(const StoredReport& report);
};

constexpr ReportField kReportFields[] = {
    {"fileId", [](const StoredReport& report) { return Json(report.fileId); }},
    {"path", [](const StoredReport& report) { return Json(report.path); }},
    {"service", [](const StoredReport& report) { return Json(report.service); }},
    {"partner", [](const StoredReport& report) { return Json(report.partner); }},
    {"time", [](const StoredReport& report) { return Json(report.created); }},
    {"orderId", [](const StoredReport& report) { return Json(report.orderId); }},
    {"messageId", [](const StoredReport& report) { return Json(report.messageId); }},
    {"status", [](const StoredReport& report) { return Json(report.status); }},
    {"reasonCode", [](const StoredReport& report) { return Json(report.reasonCode); }},
    {"reasonText", [](const StoredReport& report) { return Json(report.reasonText); }},
    {"orders", [](const StoredReport& report) { return Json(report.orders); }},
    {"total", [](const StoredReport& report) { return Json(report.total); }},
    {"document", [](const StoredReport& report) { return Json(report.document); }},
};

template <std::size_t count>
bool FitsAll(const EqualFilter (&filters)[count], const OptionValues& values,
             const StoredReport& report)
{
    return std::all_of(std::begin(filters), std::end(filters),
                       [&](const EqualFilter& filter)
                       {
                           const OptionValue* const value = values.Find(filter.option);
                           return value == nullptr || report.*filter.part == value->text;
                       });
}

// A search that can find nothing would be read as an answer.
void RefuseUnknownStatus(const OptionValues& values)
{
    const OptionValue* const status = values.Find("status");
    if (status == nullptr)
    {
        return;
    }
    const std::string fault = statusreport::FaultOf(statusreport::TextForm::Status, status->text);
    if (!fault.empty())
    {
        throw UsageRefusal(status->origin + ": " + fault + ".");
    }
}

/// What is asked of the document.
class Wanted
{
public:
    explicit Wanted(const OptionValues& values)
        : m_values(values), m_signer(values, "signer"), m_reason(values, "reason"),
          m_times(TimesFrom(values)), m_amounts(AmountsFrom(values))
    {
        RefuseUnknownStatus(values);
    }

    bool Fits(const StoredReport& report) const
    {
        const bool hasReason = m_reason.Fits(report.reasonCode) || m_reason.Fits(report.reasonText);
        return FitsAll(kDocumentFilters, m_values, report) && hasReason &&
               m_signer.Fits(report.reasonText) &&
               (!m_times.from || report.created >= *m_times.from) &&
               (!m_times.to || report.created <= *m_times.to) && IsWithin(report.total);
    }

private:
    // A report that tells no amount is in no range.
    bool IsWithin(const std::string& total) const
    {
        const auto& [least, largest] = m_amounts;
        if (!least && !largest)
        {
            return true;
        }
        return IsDecimal(total) && (!least || !IsSmallerDecimal(total, *least)) &&
               (!largest || !IsSmallerDecimal(*largest, total));
    }

    const OptionValues& m_values;
    listing::TextFilter m_signer;
    listing::TextFilter m_reason;
    Range m_times;
    Range m_amounts;
};

// The document line by line, so that its own line ends stay but nothing else acts on a terminal.
void AddLines(const std::string& document, std::vector<std::string>& lines)
{
    std::size_t begin = 0;
    while (begin < document.size())
    {
        const std::size_t end = std::min(document.find('\n', begin), document.size());
        lines.push_back(document.substr(begin, end - begin));
        begin = end + 1;
    }
}

listing::TableRow Shown(const StoredReport& report, bool withDocument)
{
    listing::TableRow row;
    row.cells = {std::to_string(report.fileId),
                 report.created,
                 report.service,
                 report.partner,
                 report.orderId,
                 report.status,
                 report.reasonCode};
    row.notes = {report.reasonText, ShortenedPath(report.path, kPathWidth)};
    if (withDocument)
    {
        AddLines(report.document, row.below);
    }
    return row;
}

listing::Record RecordOf(const StoredReport& report, bool withDocument)
{
    return {[&report] { return listing::ValuesOf(kReportFields, report); },
            [&report, withDocument] { return Shown(report, withDocument); }};
}

listing::Shape ShapeOf(const std::string& store)
{
    using Align = Table::Align;
    listing::Shape shape;
    shape.listName = "reports";
    shape.fields = listing::NamesOf(kReportFields);
    shape.columns = {{"FILE ID", Align::Right}, {"TIME", Align::Left},  {"SERVICE", Align::Left},
                     {"PARTNER", Align::Left},  {"ORDER", Align::Left}, {"STATUS", Align::Left},
                     {"CODE", Align::Left}};
    shape.whenEmpty = "No status report fits in " + Quoted(store) + ".";
    shape.about = {{"store", store}};
    return shape;
}

} // namespace

int RunReports(const OptionValues& values)
{
    const Wanted wanted(values); // what is no time is refused even where no report lies
    const std::string folder = HandOffStoreFrom(values);
    const listing::Shape shape = ShapeOf(support::Utf8FromNarrow(folder));
    listing::Pager pager("reports", values, shape);
    const bool withDocument = values.IsOn("text");

    return pager.Run(
        [&](listing::Pager& page)
        {
            const ReportStore store(folder);
            for (std::size_t index = 0; index < store.Count(); ++index)
            {
                StoredReport report = store.Place(index);
                if ((page.Below() && report.fileId >= *page.Below()) ||
                    !FitsAll(kPlaceFilters, values, report))
                {
                    continue;
                }
                if (ReportStore::Read(report) && wanted.Fits(report) &&
                    !page.Take(report.fileId, RecordOf(report, withDocument)))
                {
                    return;
                }
            }
        });
}

} // namespace host
