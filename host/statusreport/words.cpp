#include "host/statusreport/words.h"

#include "host/paragraph.h"
#include "host/statusreport/form.h"
#include "host/table.h"
#include "host/text.h"

#include <algorithm>

namespace statusreport
{

namespace
{

constexpr std::size_t kLineWidth = 78;

std::string OrNothing(const std::string& text, const char* nothing)
{
    return text.empty() ? nothing : host::Printable(text);
}

std::string MessageInWords(const Report& report)
{
    std::string created = report.created;
    std::replace(created.begin(), created.end(), 'T', ' ');
    return OrNothing(report.messageId, "without an identifier") + ", written " +
           OrNothing(created, "at an unknown time") + " by " +
           OrNothing(report.issuer, "a bank that it does not name");
}

std::string OrderInWords(const Report& report)
{
    std::string words = OrNothing(report.orderId, "without an identifier");
    if (!report.messageName.empty())
    {
        words += ", sent as " + host::Printable(report.messageName);
    }
    if (!report.orders.empty())
    {
        words += "; " + host::Printable(report.orders) +
                 (report.orders == "1" ? " payment" : " payments");
    }
    if (!report.total.empty())
    {
        words += ", " + host::Printable(report.total) + " in all";
    }
    return words;
}

std::string WithWords(const std::string& code, const Code* known)
{
    return host::Printable(code) + (known == nullptr ? "" : ": " + std::string(known->words));
}

void AppendReasons(const Report& report, std::string& text)
{
    for (const Reason& reason : report.reasons)
    {
        host::AppendParagraph(text, "Reason",
                              reason.code.empty()
                                  ? "without a code"
                                  : WithWords(reason.code, FindReason(reason.code)));
        for (const std::string& words : reason.texts)
        {
            host::AppendParagraph(text, "", words);
        }
    }
}

void AppendFaults(const Report& report, const std::string& file, std::string& text)
{
    for (const Fault& fault : report.faults)
    {
        const std::string sentence = file + ", line " + std::to_string(fault.line) + ", " +
                                     fault.element + ": " + fault.problem + ".";
        for (const std::string& line : host::Wrapped(sentence, kLineWidth))
        {
            text += "  " + line + "\n";
        }
    }
}

std::string Validity(const Report& report)
{
    if (report.faults.empty())
    {
        return "yes, as pain.002.001.02";
    }
    const std::size_t count = report.faults.size();
    return "no, " + std::to_string(count) + (count == 1 ? " fault:" : " faults:");
}

} // namespace

std::string InWords(const Report& report, const std::string& file)
{
    std::string text;
    host::AppendParagraph(text, "Report", file);
    host::AppendParagraph(text, "Message", MessageInWords(report));
    host::AppendParagraph(text, "Order", OrderInWords(report));
    host::AppendParagraph(text, "Status",
                          report.status.empty()
                              ? "none is told"
                              : WithWords(report.status, FindStatus(report.status)));
    AppendReasons(report, text);
    for (const std::string& path : report.unread)
    {
        host::AppendParagraph(text, "Not read", host::Printable(path));
    }
    host::AppendParagraph(text, "Valid", Validity(report));
    AppendFaults(report, file, text);
    return text;
}

} // namespace statusreport
