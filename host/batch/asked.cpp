#include "host/batch/asked.h"

#include "port/file_identity.h"
#include "services/sha256.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

namespace batch
{

std::string DigestOfAsked(const host::CheckRequest& request)
{
    const auto text = [](const std::string& narrow) { return support::Utf8FromNarrow(narrow); };
    const nlohmann::json asked = {
        port::StampOf(request.fileShown),
        request.fileShown,
        text(request.partner),
        text(request.service),
        text(request.client),
        request.protocol,
        request.contractType,
        request.isRequester,
        request.isDistributed,
        support::Utf8FromWide(request.signers.c_str()),
        request.format ? request.format->Name() : std::string(),
        request.total,
        request.largest,
        text(request.currency),
        text(request.orderId),
        text(request.psrService),
        text(request.party),
        text(request.messageName),
        text(request.messageId),
        request.fileId,
        text(request.requestReference),
    };
    return services::Sha256Hex(asked.dump());
}

} // namespace batch
