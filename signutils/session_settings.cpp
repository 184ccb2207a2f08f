#include "signutils/signutils.h"

#include "support/checked_copy.h"

int SignUtils::SetContractInfo(unsigned long contractType, unsigned long protocol,
                               const char* partner, const char* service, const char* client,
                               int serverMode, const char* handOffTarget)
{
    m_serverMode = serverMode;
    // Identifying numbers are 32-bit, whatever the host's `long` is.
    m_contractType = static_cast<unsigned int>(contractType);
    m_protocol = static_cast<unsigned int>(protocol);

    const TSimpleString protocolName = TProtocolCatalogue().GetProtocolLongName(m_protocol);
    support::CheckedCopy(m_protocolName, protocolName.SafeGetString());
    support::CheckedCopy(m_partner, partner);
    support::CheckedCopy(m_service, service);
    support::CheckedCopy(m_client, client);
    support::CheckedCopy(m_handOffTarget, handOffTarget);
    return 1;
}

int SignUtils::SetFormatInfo(const char* format1, const char* format2, const char* format3)
{
    m_amountFromFile = 1;
    m_format1 = format1;
    m_format2 = format2;
    m_format3 = format3;
    return 1;
}

int SignUtils::SetAmountInfo(double totalAmount, double maxOrderAmount, const char* currency)
{
    m_amountFromFile = 0;
    m_totalAmount = totalAmount;
    m_maxOrderAmount = maxOrderAmount;
    m_currency = currency;
    return 1;
}

int SignUtils::SetMessageInfo(const char* initiatingParty, const char* orgnlMsgId,
                              const char* orgnlMsgNmId, const char* msgId)
{
    m_initiatingParty = initiatingParty;
    m_orgnlMsgId = orgnlMsgId;
    m_orgnlMsgNmId = orgnlMsgNmId;
    m_msgId = msgId;
    return 1;
}

int SignUtils::SetPSRWarning(const char* psrService)
{
    support::CheckedCopy(m_psrService, psrService);
    return 1;
}

void SignUtils::SetConnexionString(const char* connexionString)
{
    m_connexionString = connexionString;
}

void SignUtils::SetIdFileVfs(unsigned long idFileVfs)
{
    m_idFileVfs = static_cast<unsigned int>(idFileVfs);
}

void SignUtils::SetModeVeu()
{
    m_modeVeu = 1;
}

void SignUtils::SetRefRequest(const char* refRequest)
{
    m_refRequest = refRequest;
}

TSimpleString SignUtils::GetExtraInfo() const
{
    return m_extraInfo;
}

TSimpleString SignUtils::GetPSRWarning() const
{
    // The document, not the service that SetPSRWarning was given: hosts rely on the asymmetry.
    return m_psrText;
}

const CheckOutcome& SignUtils::GetLastCheck() const
{
    return m_lastCheck;
}
