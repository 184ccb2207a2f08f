#include "host/statusreport/check_command.h"

#include "host/exit_status.h"
#include "host/file_text.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/statusreport/form.h"
#include "host/statusreport/report.h"
#include "host/statusreport/words.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

namespace statusreport
{

namespace
{

using Json = nlohmann::ordered_json;

constexpr std::int64_t kLargestReportMiB = 1;

Json OrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

Json WordsOf(const Code* code)
{
    return code == nullptr ? Json(nullptr) : Json(code->words);
}

Json AsJson(const Report& report, const std::string& file)
{
    Json object = {{"file", file},
                   {"valid", report.faults.empty()},
                   {"messageId", OrNull(report.messageId)},
                   {"created", OrNull(report.created)},
                   {"issuer", OrNull(report.issuer)},
                   {"orderId", OrNull(report.orderId)},
                   {"messageName", OrNull(report.messageName)},
                   {"orders", OrNull(report.orders)},
                   {"total", OrNull(report.total)},
                   {"status", OrNull(report.status)},
                   {"statusWords", WordsOf(FindStatus(report.status))},
                   {"reasons", Json::array()},
                   {"notRead", report.unread},
                   {"faults", Json::array()}};
    for (const Reason& reason : report.reasons)
    {
        object["reasons"].push_back({{"code", OrNull(reason.code)},
                                     {"words", WordsOf(FindReason(reason.code))},
                                     {"texts", reason.texts}});
    }
    for (const Fault& fault : report.faults)
    {
        object["faults"].push_back(
            {{"line", fault.line}, {"element", fault.element}, {"problem", fault.problem}});
    }
    return object;
}

} // namespace

int RunCheck(const host::OptionValues& values)
{
    const host::OptionValue& file = host::Required(values, "file", "signcheck report check FILE");
    const Report report =
        ReadReport(host::ReadTextFile(file, "the status report", kLargestReportMiB));
    if (values.IsOn("json"))
    {
        host::PrintJson(AsJson(report, file.text));
    }
    else
    {
        host::Print(InWords(report, host::Printable(file.text)));
    }
    return report.faults.empty() ? host::kDone : host::kFindings;
}

} // namespace statusreport
