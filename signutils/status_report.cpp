#include "signutils/signutils.h"

#include "psr/report_handoff.h"
#include "psr/status_report.h"

int SignUtils::GeneratePSR(TSimpleString& report, const char* initiatingParty,
                           const char* orgnlMsgId, const char* orgnlMsgNmId, const char* msgId,
                           int received, const char* reasonCode, const char* reasonInfo,
                           int nbOfTxs, double ctrlSum)
{
    const psr::StatusReport contents = {initiatingParty, orgnlMsgId,    orgnlMsgNmId,
                                        msgId,           received != 0, reasonCode,
                                        reasonInfo,      nbOfTxs,       ctrlSum};
    psr::WriteStatusReport(m_trace, contents, report);
    return 1;
}

unsigned long SignUtils::AddPaymentStatusReport(TSimpleString& report, const char* extension,
                                                const char* service, const char* partner,
                                                const char* target, tag_Rc& rc,
                                                unsigned long* fileId)
{
    return psr::HandOnReport(m_trace, report, extension, service, partner, target, rc, fileId);
}
