#pragma once

#include "services/cevents.h"
#include "support/tsimplestringw.h"

#include <cstdint>

namespace signutils
{

/// What heads the text of an audit event. Texts are Windows-1252 and borrowed for the call.
struct AuditHeader
{
    bool serverMode; ///< bank-server side
    const char* protocolName;
    const char* partner;
    const char* client;
    const char* service;
    std::uint32_t idFileVfs;
    const char* orderId;
};

/// The whole text of an audit event: the header's lines, an empty line, the message (null counts
/// as empty).
TSimpleStringW BuildAuditText(const AuditHeader& header, const wchar_t* message);

/// Fills the record with the host's log file, cut to 259 characters. Returns 1, or 0 with the
/// record all zero when there is no log file.
unsigned long FillAttachment(tagATTACHEDEVENT& attachment, const char* logFile);

} // namespace signutils
