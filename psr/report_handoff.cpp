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

/// Writes the report to a temporary file, which the caller removes.
[[nodiscard]] bool Save(void* trace, const TSimpleString& report, const char* extension,
                        const char* service, const char* partner, TSimpleString& path)
{
    TimeTraceDump(trace, "PREPFILE STATUS REPORT", 0, 0);
    TraceValue(trace, "Partner", partner, 1);
    TraceValue(trace, "Service", service, 1);
    return report.SaveFile(nullptr, NeverNull(extension), path, 0);
}

std::uint32_t HandOnFile(cmoncom& client, const TSimpleString& path, const char* extension,
                         const char* service, const char* partner, const char* target, tag_Rc& rc,
                         unsigned long* fileId)
{
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

} // namespace

std::uint32_t HandOnReport(void* trace, const TSimpleString& report, const char* extension,
                           const char* service, const char* partner, const char* target, tag_Rc& rc,
                           unsigned long* fileId)
{
    TSimpleString path;
    if (!Save(trace, report, extension, service, partner, path))
    {
        return kNotHandedOn;
    }
    const services::FileRemover temporary(path.SafeGetString());
    // Made behind the file: a report that cannot be saved needs no service.
    cmoncom client(1);
    return HandOnFile(client, path, extension, service, partner, target, rc, fileId);
}

std::uint32_t HandOnReport(void* trace, cmoncom& client, const TSimpleString& report,
                           const char* extension, const char* service, const char* partner,
                           const char* target, tag_Rc& rc, unsigned long* fileId)
{
    TSimpleString path;
    if (!Save(trace, report, extension, service, partner, path))
    {
        return kNotHandedOn;
    }
    const services::FileRemover temporary(path.SafeGetString());
    return HandOnFile(client, path, extension, service, partner, target, rc, fileId);
}

} // namespace psr
