#include "signutils/audit_event.h"

#include "support/checked_copy.h"
#include "support/tsimplestring.h"

namespace
{

constexpr unsigned int kServerModeName = 355;
constexpr unsigned int kRequesterModeName = 356;

// Identifiers are padded or cut to their columns, so that journals can be read by column.
constexpr wchar_t kAuditText[] = L"[SIGN_RULES]\r\n"
                                 L"Mode:%S\r\n"
                                 L"Protocol:%S\r\n"
                                 L"Entité:%-8.8S\r\n"
                                 L"Client:%-8.8S\r\n"
                                 L"Service:%-8.8S\r\n"
                                 L"IdFichier=%d\r\n"
                                 L"OrderId=%-10.10S\r\n"
                                 L"\r\n"
                                 L"%s";

} // namespace

namespace signutils
{

TSimpleStringW BuildAuditText(const AuditHeader& header, const wchar_t* message)
{
    TSimpleString mode;
    mode.LoadStringA(header.serverMode ? kServerModeName : kRequesterModeName);

    TSimpleStringW text;
    text.GenerateString(kAuditText, mode, header.protocolName, header.partner, header.client,
                        header.service, static_cast<int>(header.idFileVfs), header.orderId,
                        message == nullptr ? L"" : message);
    return text;
}

unsigned long FillAttachment(tagATTACHEDEVENT& attachment, const char* logFile)
{
    attachment = tagATTACHEDEVENT();
    if (*logFile == '\0')
    {
        return 0;
    }
    support::CheckedCopy(attachment.kind, sizeof attachment.kind, "LOG",
                         sizeof attachment.kind - 1);
    support::CheckedCopy(attachment.path, sizeof attachment.path, logFile,
                         sizeof attachment.path - 1);
    return 1;
}

} // namespace signutils
