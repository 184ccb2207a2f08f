#include "psr/report_handoff.h"

#include "services/file_remover.h"
#include "services/guard_pipe.h"
#include "support/casefold.h"
#include "support/checked_copy.h"
#include "support/cttime.h"
#include "support/trace.h"

#include <algorithm>
#include <cstring>

namespace psr
{

namespace
{

constexpr std::uint16_t kKindPtk = 1;
constexpr std::uint16_t kKindOther = 2;
constexpr std::uint16_t kKindHac = 4;

constexpr std::uint32_t kAlwaysSet = 1;

const char* NeverNull(const char* text)
{
    return text == nullptr ? "" : text;
}

std::uint16_t KindOf(const char* extension)
{
    if (support::EqualIgnoringAsciiCase(extension, "hac"))
    {
        return kKindHac;
    }
    return support::EqualIgnoringAsciiCase(extension, "ptk") ? kKindPtk : kKindOther;
}

/// Cuts what is longer than the field; a field that is full has no NUL.
template <std::size_t Size>
void FillField(char (&field)[Size], const char* text)
{
    std::memcpy(field, text, std::min(std::strlen(text), Size));
}

tagADDFILE RecordOf(const TSimpleString& path, const char* extension, const char* service,
                    const char* partner)
{
    tagADDFILE record = {};
    FillField(record.partner, partner);
    FillField(record.service, service);
    record.fileKind = KindOf(extension);
    record.flag = kAlwaysSet;
    record.creationTime = CTTime::GetTickCount().GetTime();
    FillField(record.filePath, path.SafeGetString());
    FillField(record.secondFilePath, path.SafeGetString());
    return record;
}

/// Announces the record; every failure ends in `rc`.
bool Announce(cmoncom& client, const char* target, tagADDFILE& record, tag_Rc& rc,
              unsigned long& given)
{
    const auto fillText = [&rc](const char* text)
    { support::TruncatingCopy(rc.text, sizeof(rc.text), text); };
    bool filed = false;
    const bool answered = services::GuardPipe(
        [&] { filed = client.AddFile(nullptr, target, &record, given); },
        [&](const TPipeException& raised) { fillText(raised.GetMessageText()); },
        [&] { fillText("Unknown exception"); });
    if (answered && !filed)
    {
        rc = client.GetLastRc();
    }
    return filed;
}

} // namespace

std::uint32_t HandOnReport(void* trace, const TSimpleString& report, const char* extension,
                           const char* service, const char* partner, const char* target, tag_Rc& rc,
                           unsigned long* fileId)
{
    cmoncom client(1);
    return HandOnReport(trace, client, report, extension, service, partner, target, rc, fileId);
}

std::uint32_t HandOnReport(void* trace, cmoncom& client, const TSimpleString& report,
                           const char* extension, const char* service, const char* partner,
                           const char* target, tag_Rc& rc, unsigned long* fileId)
{
    TimeTraceDump(trace, "PREPFILE STATUS REPORT", 0, 0);
    TraceValue(trace, "Partner", partner, 1);
    TraceValue(trace, "Service", service, 1);

    TSimpleString path;
    if (!report.SaveFile(nullptr, NeverNull(extension), path, 0))
    {
        return kNotHandedOn;
    }
    const services::FileRemover temporary(path.SafeGetString());

    tagADDFILE record =
        RecordOf(path, NeverNull(extension), NeverNull(service), NeverNull(partner));
    const bool targetGiven = target != nullptr && *target != '\0';
    unsigned long given = 0;
    if (!Announce(client, targetGiven ? target : nullptr, record, rc, given))
    {
        return kNotHandedOn;
    }
    if (fileId != nullptr)
    {
        *fileId = given;
    }
    return kHandedOn;
}

} // namespace psr
