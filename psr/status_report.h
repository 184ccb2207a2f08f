#pragma once

#include "support/tsimplestring.h"

namespace psr
{

/// What a payment status report (pain.002.001.02) says. Texts are inserted as given, without XML
/// escaping; null counts as empty.
struct StatusReport
{
    const char* initiatingParty; ///< BkPtyId
    const char* orgnlMsgId;
    const char* orgnlMsgNmId;
    const char* msgId;
    bool received; ///< RCVD, else RJCT with its reasons
    const char* reasonCode;
    const char* reasonInfo;
    int nbOfTxs;    ///< 0: unknown
    double ctrlSum; ///< main unit; -1.0: unknown
};

/// Replaces `document` by the report, in the texts' own encoding. Raises std::bad_alloc only.
void WriteStatusReport(void* trace, const StatusReport& report, TSimpleString& document);

/// The same, created at a moment of the caller's: local date and time, "2026-03-29T14:05:09".
void WriteStatusReport(void* trace, const StatusReport& report, const char* creationTime,
                       TSimpleString& document);

} // namespace psr
