#pragma once

#include "rules/check_signatures.h"
#include "signutils/check_outcome.h"

class SignUtils;

namespace signutils
{

/// The way of one session's audit events into the journal; remembers what became of them.
class AuditTrail final : public rules::AuditJournal
{
public:
    explicit AuditTrail(SignUtils& session) : m_session(session) {}

    /// Writes one event. No failure reaches the caller; an event that there is no memory for is
    /// lost.
    void LogEvent(unsigned short level, const wchar_t* message) override;

    /// The worst of the events so far, so that none that was lost is hidden by a later one.
    JournalState GetState() const noexcept { return m_state; }

private:
    JournalState Write(unsigned short level, const wchar_t* message);
    void ConnectOnFirstUse();

    SignUtils& m_session;
    JournalState m_state = JournalState::NotDue;
};

} // namespace signutils
