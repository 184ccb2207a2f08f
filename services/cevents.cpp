#include "services/cevents.h"

#include "services/event_store.h"
#include "services/field_text.h"
#include "support/codepage.h"

#include <string>

namespace
{

std::optional<std::wstring> OptionalText(const char* text)
{
    return text == nullptr ? std::nullopt
                           : std::optional(support::WideFromNarrow(std::string_view(text)));
}

std::optional<std::wstring> OptionalText(const wchar_t* text)
{
    return text == nullptr ? std::nullopt : std::optional<std::wstring>(text);
}

} // namespace

CEvents::CEvents(const char* source, unsigned long& status)
    : m_store(std::make_unique<services::EventStore>(source))
{
    status = 0;
}

CEvents::~CEvents() = default;

bool CEvents::Connect(const char* connection)
{
    return m_store->Connect(connection);
}

services::EventOutcome CEvents::WriteEventsWithPj(unsigned short level, const char* reference,
                                                  const char* aux1, const wchar_t* aux2,
                                                  const wchar_t* text, unsigned long attached,
                                                  const tagATTACHEDEVENT* attachment)
{
    services::EventRecord event;
    event.level = level;
    event.reference = OptionalText(reference);
    event.aux1 = OptionalText(aux1);
    event.aux2 = OptionalText(aux2);
    event.text = OptionalText(text);
    if (attached != 0 && attachment != nullptr)
    {
        event.attachKind = OptionalText(services::FieldText(attachment->kind).c_str());
        event.attachPath = OptionalText(services::FieldText(attachment->path).c_str());
    }
    return m_store->Write(std::move(event));
}
