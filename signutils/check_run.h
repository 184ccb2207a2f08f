#pragma once

#include "rules/check_signatures.h"
#include "signutils/audit_trail.h"
#include "signutils/check_outcome.h"
#include "support/measures.h"
#include "support/tsimplestring.h"
#include "support/tsimplestringw.h"

#include <cstdint>

class SignUtils;

namespace signutils
{

/// One check of a session. What is worked out here stays here: the session's own settings are not
/// changed, and its last outcome is only written, at the latest by the destructor: that of a check
/// which an exception ends tells as much as there is to tell.
class CheckRun
{
public:
    /// Resets the session's last outcome. The texts may be null and are borrowed for the check.
    CheckRun(SignUtils& session, const char* fileName, const wchar_t* signers);
    ~CheckRun();
    CheckRun(const CheckRun&) = delete;
    CheckRun& operator=(const CheckRun&) = delete;

    /// Amounts, rules and, after a refusal, the status report; returns the verdict.
    std::uint32_t JudgeFile();

    /// The rules alone, on given amounts. The reasons are the caller's own and stay as they are
    /// where no rule writes them.
    std::uint32_t JudgeRules(TSimpleString& reasonCode, TSimpleStringW& reasonText,
                             double totalAmount, double maxOrderAmount, const char* currency);

private:
    void SettleAmounts();
    void WorkOutAmounts();
    void TakeGivenAmounts();
    std::uint32_t CheckSignatures(TSimpleString& reasonCode, TSimpleStringW& reasonText);
    void Answer();
    [[nodiscard]] bool WriteReport();
    [[nodiscard]] bool HandOnReport();
    void JudgeGivenAmounts() noexcept;
    void RecordAmounts() noexcept;

    void EndByException() noexcept;

    support::Stopwatch m_time;
    SignUtils& m_session;
    CheckOutcome& m_outcome;
    AuditTrail m_audit;
    rules::CheckTrail m_trail;
    bool m_ended = false; ///< with a verdict, not by an exception
    const char* m_fileName;
    const wchar_t* m_signers;
    double m_totalAmount = 0.0;
    double m_maxOrderAmount = 0.0;
    int m_orderCount = 0;
    char m_currency[256] = {};
    TSimpleString m_reasonCode;
    TSimpleStringW m_reasonText;
};

} // namespace signutils
