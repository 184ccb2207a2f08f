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

// What is not known is null, so that nobody takes it for 0.
void AddAmounts(Json& object, const CheckRequest& request, const CheckAmounts& amounts)
{
    const bool areKnown = amounts.AreKnown();
    const bool isFromFile = amounts.origin == AmountsOrigin::File;
    object["format"] = request.format ? Json(request.format->Name()) : Json(nullptr);
    object["total"] = areKnown ? Json(amounts.total) : Json(nullptr);
    object["largestOrder"] = areKnown ? Json(amounts.largest) : Json(nullptr);
    object["orders"] = isFromFile ? Json(amounts.orders) : Json(nullptr);
    object["currency"] = areKnown ? Json(amounts.currency) : Json(nullptr);
    object["amounts"] = NameOf(amounts.origin);
    object["amountsProblem"] = TextOrNull(amounts.problem);
    object["fileErrors"] = amounts.fileErrors;
}

} // namespace

Json CheckAsJson(const CheckRequest& request, const CheckResult& result)
{
    Json object;
    object["file"] = request.fileShown;
    object["signers"] = request.signerNames;
    object["verdict"] = OrNull(result.verdict);
    object["outcome"] = OutcomeName(result);
    AddAmounts(object, request, result.amounts);
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
