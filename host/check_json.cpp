#include "host/check_result.h"

#include "support/codepage.h"
#include "support/protocol_catalogue.h"

#include <nlohmann/json.hpp>

namespace host
{

namespace
{

using Json = nlohmann::ordered_json;

Json ContractAsJson(const CheckRequest& request)
{
    const TSimpleString name = TProtocolCatalogue().GetProtocolLongName(request.protocol);
    return {
        {"partner", support::Utf8FromNarrow(request.partner)},
        {"service", support::Utf8FromNarrow(request.service)},
        {"client", support::Utf8FromNarrow(request.client)},
        {"protocol", request.protocol},
        {"protocolName", support::Utf8FromNarrow(name.SafeGetString())},
        {"type", request.contractType},
        {"side", request.isRequester ? "requester" : "server"},
        {"distributed", request.isDistributed},
    };
}

template <typename Value>
Json OrNull(const std::optional<Value>& value)
{
    return value ? Json(*value) : Json(nullptr);
}

Json TextOrNull(const std::string& text)
{
    return text.empty() ? Json(nullptr) : Json(text);
}

Json ReportFile(const CheckResult& result)
{
    if (!result.reportHandedOn)
    {
        return nullptr;
    }
    return {{"fileId", result.reportFileId}, {"path", TextOrNull(result.reportPath)}};
}

} // namespace

Json CheckAsJson(const CheckRequest& request, const CheckResult& result)
{
    Json object;
    object["file"] = request.fileShown;
    object["signers"] = request.signerNames;
    object["verdict"] = OrNull(result.verdict);
    object["outcome"] = OutcomeName(result);
    object["total"] = request.total;
    object["largestOrder"] = request.largest;
    object["currency"] = request.currency;
    object["amounts"] = result.amountsKnown ? "given" : "unknown";
    object["reasonCode"] = result.reasonCode;
    object["reasonText"] = result.reasonText;
    object["findings"] = result.findings;
    object["rulesComplete"] = result.rulesComplete;
    object["lookupsComplete"] = result.lookupsComplete;
    object["problem"] = TextOrNull(result.problem);
    object["contract"] = ContractAsJson(request);
    object["orderId"] = support::Utf8FromNarrow(request.orderId);
    object["rows"] = {{"due", result.rowsDue}, {"written", result.rowsWritten}};
    object["journal"] = result.journal;
    object["event"] = OrNull(result.eventId);
    object["database"] = request.connection.shown;
    object["extraInfo"] = result.extraInfo;
    object["report"] = OrNull(result.report);
    object["reportFile"] = ReportFile(result);
    object["warnings"] = result.warnings;
    return object;
}

} // namespace host
