#include "signutils/audit_trail.h"

#include "containers/shared_ref_impl.h"
#include "services/cevents.h"
#include "signutils/audit_event.h"
#include "signutils/signutils.h"
#include "support/trace.h"

#include <algorithm>
#include <new>

namespace
{

constexpr char kJournalSource[] = "RULSGN";

JournalState StateOf(services::EventOutcome outcome)
{
    switch (outcome)
    {
    case services::EventOutcome::Written:
        return JournalState::Written;
    case services::EventOutcome::Spooled:
        return JournalState::Spooled;
    case services::EventOutcome::Lost:
        break;
    }
    return JournalState::Lost;
}

} // namespace

namespace signutils
{

void AuditTrail::LogEvent(unsigned short level, const wchar_t* message)
{
    static_assert(JournalState::NotDue < JournalState::Written &&
                  JournalState::Written < JournalState::Spooled &&
                  JournalState::Spooled < JournalState::Lost);
    JournalState state = JournalState::Lost;
    try
    {
        state = Write(level, message);
    }
    catch (const std::bad_alloc&)
    {
        TraceValue(m_session.m_trace, "Error", "No memory for the audit event", 1);
    }
    m_state = std::max(m_state, state);
}

void AuditTrail::ConnectOnFirstUse()
{
    if (m_session.m_events.Get() != nullptr)
    {
        return;
    }
    unsigned long status = 0;
    try
    {
        // Once for the session; events of a client that could not connect are spooled.
        m_session.m_events.Emplace(kJournalSource, status)
            .Connect(m_session.m_connexionString.SafeGetString());
    }
    catch (const std::bad_alloc&)
    {
        // This event is lost and the check goes on; the next one connects anew. A client that is
        // left half connected does not know which database its events are meant for.
        m_session.m_events.Reset();
    }
}

JournalState AuditTrail::Write(unsigned short level, const wchar_t* message)
{
    ConnectOnFirstUse();
    TraceValueUTF8(m_session.m_trace, "******* AUDIT", message == nullptr ? L"" : message);

    CEvents* const events = m_session.m_events.Get();
    if (events == nullptr)
    {
        return JournalState::Lost;
    }
    tagATTACHEDEVENT attachment;
    const unsigned long attached = FillAttachment(attachment, m_session.m_logFile.SafeGetString());
    const AuditHeader header = {m_session.m_serverMode != 0,
                                m_session.m_protocolName,
                                m_session.m_partner,
                                m_session.m_client,
                                m_session.m_service,
                                m_session.m_idFileVfs,
                                m_session.m_orgnlMsgId.SafeGetString()};
    const TSimpleStringW text = BuildAuditText(header, message);
    const char* const reference =
        m_session.m_refRequest.IsEmpty() ? nullptr : m_session.m_refRequest.SafeGetString();
    return StateOf(events->WriteEventsWithPj(level, reference, nullptr, nullptr,
                                             text.SafeGetString(), attached, &attachment));
}

} // namespace signutils

void SignUtils::LogEvent(unsigned short level, const wchar_t* message)
{
    signutils::AuditTrail(*this).LogEvent(level, message);
}
