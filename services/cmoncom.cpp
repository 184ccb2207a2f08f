#include "services/cmoncom.h"

#include "services/field_text.h"
#include "services/hand_off_store.h"
#include "services/system_error.h"
#include "support/checked_copy.h"
#include "support/folders.h"
#include "support/format.h"
#include "support/store_name.h"

namespace
{

using services::HandOffError;
using services::HandOffFailure;

tag_Rc RecordOf(const HandOffFailure& failure)
{
    tag_Rc rc = {};
    rc.code = static_cast<std::uint32_t>(failure.code);
    rc.systemCode = failure.systemCode;
    support::TruncatingCopy(rc.text, sizeof(rc.text), failure.text.c_str());
    return rc;
}

std::optional<HandOffFailure> RefusedName(const char* kind, const std::string& name)
{
    if (support::IsStoreName(name))
    {
        return std::nullopt;
    }
    if (name.empty())
    {
        return HandOffFailure{HandOffError::NameRefused, 0,
                              support::FormatA("The report has no %s", kind)};
    }
    return HandOffFailure{
        HandOffError::NameRefused, 0,
        support::FormatA("The report's %s cannot name a part of the store: \"%s\"", kind,
                         services::OneLine(name).c_str())};
}

std::optional<HandOffFailure> RefusedItem(const services::HandOffItem& item)
{
    if (auto refused = RefusedName("service", item.service))
    {
        return refused;
    }
    if (auto refused = RefusedName("partner", item.partner))
    {
        return refused;
    }
    return RefusedName("extension", item.extension);
}

services::HandOffItem ItemOf(const tagADDFILE& record)
{
    const std::string path = services::FieldText(record.filePath);
    return {services::FieldText(record.service), services::FieldText(record.partner),
            support::ExtensionOf(path), path};
}

std::string StoreFolder(const char* target)
{
    return target != nullptr && *target != '\0' ? std::string(target) : support::HandOffFolder();
}

std::optional<HandOffFailure> FileRecord(const char* target, const tagADDFILE* record,
                                         unsigned long& fileId)
{
    if (record == nullptr)
    {
        return HandOffFailure{HandOffError::RecordMissing, 0, "No report was announced"};
    }
    const services::HandOffItem item = ItemOf(*record);
    if (auto refused = RefusedItem(item))
    {
        return refused;
    }
    std::uint32_t given = 0;
    services::HandOffStore store(StoreFolder(target));
    if (auto failure = store.File(item, given))
    {
        return failure;
    }
    fileId = given;
    return std::nullopt;
}

} // namespace

// The service files at once and in this process, whatever the mode.
cmoncom::cmoncom(int /*mode*/) : m_lastRc{} {}

cmoncom::~cmoncom() = default;

bool cmoncom::AddFile(const char* /*first*/, const char* target, tagADDFILE* record,
                      unsigned long& fileId)
{
    m_lastRc = {};
    const std::optional<HandOffFailure> failure = FileRecord(target, record, fileId);
    if (failure)
    {
        m_lastRc = RecordOf(*failure);
    }
    return !failure;
}
