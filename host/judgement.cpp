#include "host/judgement.h"

#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "port/null_device.h"
#include "signutils/signutils.h"
#include "support/codepage.h"

namespace host
{

namespace
{

constexpr const char* kReportEnding = ".psr";

/// The trace of a check; closed, and so complete, at the end of the scope. Without a file it goes
/// nowhere, but it is there: the library tells the errors of an order file to a traced check alone.
class TraceFile
{
public:
    explicit TraceFile(const std::string& path)
        : m_trace(TraceOpen(path.empty() ? port::kNullDevice : path.c_str()))
    {
        if (!path.empty() && !TraceIsUsable(m_trace))
        {
            throw UsageRefusal("option --trace: " + Quoted(support::Utf8FromNarrow(path)) +
                               " cannot be written. Give a file in a folder that is there and "
                               "writable.");
        }
    }
    ~TraceFile() { TraceClose(m_trace); }
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    void* Handle() const noexcept { return m_trace; }

private:
    void* m_trace;
};

void SetUp(SignUtils& session, const CheckRequest& request)
{
    session.SetConnexionString(request.connection.text.c_str());
    session.SetContractInfo(request.contractType, request.protocol, request.partner.c_str(),
                            request.service.c_str(), request.client.c_str(),
                            request.isRequester ? 0 : 1, request.handOff.c_str());
    if (request.format)
    {
        session.SetFormatInfo(request.format->format1.c_str(), request.format->format2.c_str(), "");
    }
    else
    {
        session.SetAmountInfo(request.total, request.largest, request.currency.c_str());
    }
    session.SetMessageInfo(request.party.c_str(), request.orderId.c_str(),
                           request.messageName.c_str(), request.messageId.c_str());
    session.SetPSRWarning(request.psrService.c_str());
    session.SetIdFileVfs(request.fileId);
    session.SetRefRequest(request.requestReference.c_str());
    if (request.isDistributed)
    {
        session.SetModeVeu();
    }
}

std::string NameOf(JournalState state)
{
    switch (state)
    {
    case JournalState::Written:
        return "written";
    case JournalState::Spooled:
        return "spooled";
    case JournalState::Lost:
        return "lost";
    default:
        return "not-due";
    }
}

// Where the hand-off service keeps the report.
std::string ReportPath(const CheckRequest& request, unsigned long fileId)
{
    const std::string folder =
        port::JoinPath(port::JoinPath(HandOffStore(request), request.psrService), request.partner);
    const std::string path = port::JoinPath(folder, std::to_string(fileId) + kReportEnding);
    return port::FileExists(path.c_str()) ? support::Utf8FromNarrow(path) : std::string();
}

CheckResult ResultOf(const SignUtils& session, unsigned long verdict, const CheckRequest& request,
                     bool isTraced)
{
    const CheckOutcome& outcome = session.GetLastCheck();
    const auto narrow = [](const TSimpleString& text)
    { return support::Utf8FromNarrow(text.SafeGetString()); };
    CheckResult result;
    result.verdict = static_cast<unsigned int>(verdict);
    result.ran = outcome.ran;
    result.rulesComplete = outcome.rulesComplete;
    // Nothing was looked up where the check did not run.
    result.lookupsComplete = outcome.lookupsComplete || !outcome.ran;
    result.amounts = AmountsOf(request, outcome, isTraced);
    result.reasonCode = narrow(outcome.reasonCode);
    result.reasonText = support::Utf8FromWide(outcome.reasonText.SafeGetString());
    result.problem = narrow(outcome.problem);
    result.rowsDue = outcome.rowsDue;
    result.rowsWritten = outcome.rowsWritten;
    result.journal = NameOf(outcome.journal);
    result.extraInfo = narrow(session.GetExtraInfo());
    if (outcome.report != ReportState::NotDue)
    {
        // The session holds the document as it was handed on, in UTF-8.
        result.report = session.GetPSRWarning().SafeGetString();
        result.reportProblem = narrow(outcome.reportProblem);
        result.reportHandedOn = outcome.report == ReportState::HandedOn;
    }
    if (result.reportHandedOn)
    {
        result.reportFileId = outcome.reportFileId;
        result.reportPath = ReportPath(request, outcome.reportFileId);
    }
    return result;
}

} // namespace

CheckResult AskLibrary(const CheckRequest& request)
{
    const TraceFile trace(request.traceFile);
    SignUtils session(trace.Handle(), request.logFile.c_str());
    SetUp(session, request);
    const unsigned long verdict =
        session.CheckSignRules(request.file.c_str(), request.signers.c_str());
    return ResultOf(session, verdict, request, TraceIsUsable(trace.Handle()));
}

} // namespace host
