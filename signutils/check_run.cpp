#include "signutils/check_run.h"

#include "amounts/format_conversion.h"
#include "containers/shared_ref_impl.h"
#include "database/cdatabase.h"
#include "signutils/check_counting.h"
#include "signutils/signutils.h"
#include "support/checked_copy.h"
#include "support/trace.h"

#include <cmath>
#include <new>
#include <utility>

namespace
{

constexpr unsigned int kAmountsUnknown = 1816;
constexpr unsigned int kReportFailed = 10735;
constexpr unsigned short kInformation = 0;
constexpr unsigned short kError = 1;
constexpr int kRejected = 0;

constexpr char kCutShort[] = "The check was ended by an exception";
constexpr char kNotFinite[] = "The given amounts are not both finite numbers";
constexpr char kWorkFilesLost[] = "The work files of the conversion could not be read";
constexpr char kNotSaved[] = "The report cannot be written to a temporary file";

constexpr std::size_t kErrorTextSize = 256;

/// Keeps a text for the outcome, or none where there is no memory: what the check has recorded does
/// not fail because of it.
template <typename Text, typename Source>
void Keep(Text& kept, const Source& text) noexcept
{
    try
    {
        kept = text;
    }
    catch (const std::bad_alloc&)
    {
        kept.Empty();
    }
}

} // namespace

namespace signutils
{

CheckRun::CheckRun(SignUtils& session, const char* fileName, const wchar_t* signers)
    : m_time(&support::Measures::checkTime), m_session(session), m_outcome(session.m_lastCheck),
      m_audit(session), m_fileName(fileName == nullptr ? "" : fileName),
      m_signers(signers == nullptr ? L"" : signers)
{
    m_outcome = CheckOutcome();
    m_outcome.verdict = rules::kVerdictFailed;
}

CheckRun::~CheckRun()
{
    m_outcome.ran = m_trail.ran;
    m_outcome.rulesComplete = m_trail.rulesComplete;
    m_outcome.lookupsComplete = m_trail.lookupsComplete;
    m_outcome.problem = std::move(m_trail.problem);
    m_outcome.rowsDue = m_trail.rowsDue;
    m_outcome.rowsWritten = m_trail.rowsWritten;
    m_outcome.reasonCode = std::move(m_reasonCode);
    m_outcome.reasonText = std::move(m_reasonText);
    m_outcome.journal = m_audit.GetState();
    if (!m_ended)
    {
        EndByException();
    }
    if (support::Measures* const measures = m_time.Target(); measures != nullptr)
    {
        CountCheck(m_outcome, m_session.m_service, measures->checks);
    }
}

void CheckRun::EndByException() noexcept
{
    // Nobody knows how far the connection came; the next check opens one of its own.
    m_session.m_database.Reset();
    // Judged rules owe an event, and so does a report; an exception leaves the last one unwritten.
    if (m_outcome.ran || m_outcome.report != ReportState::NotDue)
    {
        m_outcome.journal = JournalState::Lost;
    }
    if (m_outcome.problem.IsEmpty())
    {
        Keep(m_outcome.problem, kCutShort);
    }
}

std::uint32_t CheckRun::JudgeFile()
{
    TimeTraceDump(m_session.m_trace, "CHECK SIGNATURES RULES", 0, 0);
    TraceValue(m_session.m_trace, "FileName", m_fileName, 1);
    TraceValueUTF8(m_session.m_trace, "Signers", m_signers);

    SettleAmounts();
    const std::uint32_t verdict = CheckSignatures(m_reasonCode, m_reasonText);
    if (verdict >= rules::kVerdictFailed && m_session.m_psrService[0] != '\0')
    {
        Answer();
    }
    m_ended = true;
    return verdict;
}

std::uint32_t CheckRun::JudgeRules(TSimpleString& reasonCode, TSimpleStringW& reasonText,
                                   double totalAmount, double maxOrderAmount, const char* currency)
{
    m_totalAmount = totalAmount;
    m_maxOrderAmount = maxOrderAmount;
    support::TruncatingCopy(m_currency, sizeof m_currency, currency);
    JudgeGivenAmounts();
    RecordAmounts();

    const std::uint32_t verdict = CheckSignatures(reasonCode, reasonText);
    // On other ways out the reasons are what the caller had in them.
    if (m_trail.ran && verdict != rules::kVerdictSuccess)
    {
        Keep(m_reasonCode, reasonCode);
        Keep(m_reasonText, reasonText);
    }
    m_ended = true;
    return verdict;
}

void CheckRun::SettleAmounts()
{
    if (m_session.m_amountFromFile == 1)
    {
        WorkOutAmounts();
    }
    else
    {
        TakeGivenAmounts();
    }
    RecordAmounts();
}

void CheckRun::WorkOutAmounts()
{
    char errorText[kErrorTextSize] = {};
    amounts::FileTotals totals;
    const support::Stopwatch time(&support::Measures::conversionTime);
    const bool converted =
        amounts::GetMaxAmountFile({m_fileName, m_session.m_format1.SafeGetString(),
                                   m_session.m_format2.SafeGetString(), m_session.m_trace},
                                  totals, m_currency, errorText) != 0;
    m_totalAmount = totals.totalAmount;
    m_maxOrderAmount = totals.maxOrderAmount;
    m_orderCount = totals.orderCount;
    m_outcome.amountsKnown = converted && totals.complete;
    Keep(m_outcome.amountsProblem, converted && !totals.complete ? kWorkFilesLost : errorText);
    if (converted)
    {
        return;
    }
    // The rules are judged all the same: a holder in opposition is refused whatever the amounts.
    m_reasonCode = "NARR";
    m_reasonText.GenerateString(kAmountsUnknown);
    TraceValue(m_session.m_trace, "Error", errorText, 1);
}

void CheckRun::TakeGivenAmounts()
{
    m_totalAmount = m_session.m_totalAmount;
    m_maxOrderAmount = m_session.m_maxOrderAmount;
    support::CheckedCopy(m_currency, sizeof m_currency, m_session.m_currency.SafeGetString(),
                         sizeof m_currency - 1);
    JudgeGivenAmounts();
}

void CheckRun::JudgeGivenAmounts() noexcept
{
    // The rules are judged all the same, and no limit refuses a NaN.
    m_outcome.amountsKnown = std::isfinite(m_totalAmount) && std::isfinite(m_maxOrderAmount);
    if (!m_outcome.amountsKnown)
    {
        Keep(m_outcome.amountsProblem, kNotFinite);
    }
}

void CheckRun::RecordAmounts() noexcept
{
    m_outcome.totalAmount = m_totalAmount;
    m_outcome.maxOrderAmount = m_maxOrderAmount;
    m_outcome.orderCount = m_orderCount;
    Keep(m_outcome.currency, m_currency);
}

std::uint32_t CheckRun::CheckSignatures(TSimpleString& reasonCode, TSimpleStringW& reasonText)
{
    const rules::ContractKey contract = {m_session.m_contractType,    m_session.m_protocol,
                                         m_session.m_protocolName,    m_session.m_partner,
                                         m_session.m_service,         m_session.m_client,
                                         m_session.m_serverMode != 0, m_session.m_modeVeu != 0};
    const rules::OrderFacts order = {m_fileName, m_session.m_orgnlMsgId.SafeGetString(),
                                     m_session.m_idFileVfs, m_totalAmount, m_maxOrderAmount};
    const rules::CheckInput input = {contract,
                                     order,
                                     m_signers,
                                     m_session.m_connexionString.SafeGetString(),
                                     m_session.m_trace,
                                     *m_session.m_signers.Get(),
                                     m_session.m_database,
                                     m_audit};
    m_outcome.verdict = rules::CheckSignatures(input, reasonCode, reasonText, m_trail);
    return m_outcome.verdict;
}

void CheckRun::Answer()
{
    m_outcome.report = ReportState::NotHandedOn;
    if (WriteReport() && HandOnReport())
    {
        return;
    }
    TSimpleStringW failure;
    failure.LoadStringA(kReportFailed);
    m_audit.LogEvent(kError, failure.SafeGetString());
}

bool CheckRun::WriteReport()
{
    TSimpleString reasonInfo;
    reasonInfo.FromWide(m_reasonText.SafeGetString());
    const int written = m_session.GeneratePSR(
        m_session.m_psrText, m_session.m_initiatingParty.SafeGetString(),
        m_session.m_orgnlMsgId.SafeGetString(), m_session.m_orgnlMsgNmId.SafeGetString(),
        m_session.m_msgId.SafeGetString(), kRejected, m_reasonCode.SafeGetString(),
        reasonInfo.SafeGetString(), m_orderCount, m_totalAmount);
    if (written == 0)
    {
        TraceValue(m_session.m_trace, "GeneratePSR Error", "Function error", 1);
        return false;
    }
    // The document declares UTF-8; until here its texts are in Windows-1252.
    m_session.m_psrText.EncodeUtf8();
    TraceString(m_session.m_trace, m_session.m_psrText.SafeGetString());
    return true;
}

bool CheckRun::HandOnReport()
{
    tag_Rc rc = {};
    unsigned long fileId = 0;
    if (m_session.AddPaymentStatusReport(m_session.m_psrText, "psr", m_session.m_psrService,
                                         m_session.m_partner, m_session.m_handOffTarget, rc,
                                         &fileId) != 0)
    {
        TraceValue(m_session.m_trace, "AddPaymentStatusReport Error", "Function error", 1);
        Keep(m_outcome.reportProblem, *rc.text != '\0' ? rc.text : kNotSaved);
        return false;
    }
    m_outcome.report = ReportState::HandedOn;
    m_outcome.reportFileId = fileId;
    m_session.m_extraInfo.GenerateString("PSR Generated in %s=%d", m_session.m_psrService,
                                         static_cast<int>(fileId));
    TraceValue(m_session.m_trace, "info", m_session.m_extraInfo.SafeGetString(), 1);
    TSimpleStringW info;
    info.FromNarrow(m_session.m_extraInfo.SafeGetString());
    m_audit.LogEvent(kInformation, info.SafeGetString());
    return true;
}

} // namespace signutils

unsigned long SignUtils::CheckSignRules(const char* fileName, const wchar_t* signers)
{
    return signutils::CheckRun(*this, fileName, signers).JudgeFile();
}

unsigned long SignUtils::CheckSignRulesFor(TSimpleString& reasonCode, TSimpleStringW& reasonText,
                                           const wchar_t* signers, const char* fileName,
                                           double totalAmount, double maxOrderAmount,
                                           const char* currency)
{
    return signutils::CheckRun(*this, fileName, signers)
        .JudgeRules(reasonCode, reasonText, totalAmount, maxOrderAmount, currency);
}
