#include "signutils/c_session.h"
#include "support/protocol_catalogue.h"

using signutils::ChangeSession;
using signutils::Narrow;
using signutils::NarrowUpTo;
using signutils::OptionalNarrow;

namespace
{

constexpr signutils::FieldLimit kHandOffTarget = {260, "Give a shorter path of the store."};
constexpr signutils::FieldLimit kProtocolName = {63, "Register a shorter name for the protocol."};

// The name comes from the catalogue, where a host of this process may have put one of any length.
void RequireNameFits(std::uint32_t protocol)
{
    signutils::RequireFits("protocol (its long name)",
                           TProtocolCatalogue().GetProtocolLongName(protocol).GetLength(),
                           kProtocolName);
}

} // namespace

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetContractInfo(SignUtilsSession* session,
                                                        uint32_t contractType, uint32_t protocol,
                                                        const char* partner, const char* service,
                                                        const char* client, int32_t serverMode,
                                                        const char* handOffTarget)
{
    return ChangeSession(
        session,
        [&](SignUtils& changed)
        {
            const std::string partnerName = NarrowUpTo("partner", partner, signutils::kIdentifier);
            const std::string serviceName = NarrowUpTo("service", service, signutils::kIdentifier);
            const std::string clientName = NarrowUpTo("client", client, signutils::kIdentifier);
            const std::string target =
                signutils::OptionalNarrowUpTo("handOffTarget", handOffTarget, kHandOffTarget);
            RequireNameFits(protocol);
            changed.SetContractInfo(contractType, protocol, partnerName.c_str(),
                                    serviceName.c_str(), clientName.c_str(), serverMode,
                                    target.c_str());
        });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetFormatInfo(SignUtilsSession* session,
                                                      const char* format1, const char* format2,
                                                      const char* format3)
{
    return ChangeSession(session,
                         [&](SignUtils& changed)
                         {
                             changed.SetFormatInfo(Narrow("format1", format1).c_str(),
                                                   Narrow("format2", format2).c_str(),
                                                   OptionalNarrow("format3", format3).c_str());
                         });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetAmountInfo(SignUtilsSession* session, double totalAmount,
                                                      double maxOrderAmount, const char* currency)
{
    return ChangeSession(session,
                         [&](SignUtils& changed) {
                             changed.SetAmountInfo(totalAmount, maxOrderAmount,
                                                   Narrow("currency", currency).c_str());
                         });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetMessageInfo(SignUtilsSession* session,
                                                       const char* initiatingParty,
                                                       const char* orgnlMsgId,
                                                       const char* orgnlMsgNmId, const char* msgId)
{
    return ChangeSession(session,
                         [&](SignUtils& changed)
                         {
                             changed.SetMessageInfo(
                                 Narrow("initiatingParty", initiatingParty).c_str(),
                                 Narrow("orgnlMsgId", orgnlMsgId).c_str(),
                                 Narrow("orgnlMsgNmId", orgnlMsgNmId).c_str(),
                                 Narrow("msgId", msgId).c_str());
                         });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetPSRWarning(SignUtilsSession* session,
                                                      const char* psrService)
{
    return ChangeSession(
        session,
        [&](SignUtils& changed) {
            changed.SetPSRWarning(
                NarrowUpTo("psrService", psrService, signutils::kIdentifier).c_str());
        });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetConnexionString(SignUtilsSession* session,
                                                           const char* connexionString)
{
    return ChangeSession(
        session, [&](SignUtils& changed)
        { changed.SetConnexionString(Narrow("connexionString", connexionString).c_str()); });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetIdFileVfs(SignUtilsSession* session, uint32_t idFileVfs)
{
    return ChangeSession(session, [&](SignUtils& changed) { changed.SetIdFileVfs(idFileVfs); });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetModeVeu(SignUtilsSession* session)
{
    return ChangeSession(session, [&](SignUtils& changed) { changed.SetModeVeu(); });
}

SignUtilsStatus SIGNUTILS_CALL SignUtilsSetRefRequest(SignUtilsSession* session,
                                                      const char* refRequest)
{
    return ChangeSession(session, [&](SignUtils& changed)
                         { changed.SetRefRequest(Narrow("refRequest", refRequest).c_str()); });
}
