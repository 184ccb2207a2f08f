#include "host/check_command.h"

#include "database/cdatabase.h"
#include "host/check_request.h"
#include "host/check_result.h"
#include "host/com_apartment.h"
#include "host/explain/explanation.h"
#include "host/html_page.h"
#include "host/journal_reader.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/schema_version.h"
#include "host/text.h"
#include "host/work_file_guard.h"
#include "port/files.h"
#include "port/null_device.h"
#include "signutils/signutils.h"
#include "support/codepage.h"
#include "support/cttime.h"

#include <nlohmann/json.hpp>

#include <optional>

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

void AppendToLog(port::File& log, const std::string& line)
{
    char now[32] = {};
    CTTime::GetTickCount().GetDatabaseTimestamp(now, sizeof now);
    const std::string text = std::string(now) + " signcheck: " + Printable(line) + "\n";
    if (!log.Write(text.data(), text.size()))
    {
        Warn("option --log: the log file cannot be written; the check goes on.");
    }
}

void OpenLog(const std::string& path, port::File& log)
{
    if (!path.empty() && !log.Open(path.c_str(), port::OpenMode::Append))
    {
        throw UsageRefusal("option --log: " + Quoted(support::Utf8FromNarrow(path)) +
                           " cannot be written. Give a file in a folder that is there and "
                           "writable.");
    }
}

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

CheckResult Judge(const CheckRequest& request, CDatabase& database)
{
    const auto before = NewestEvent(database, request.connection);
    CheckResult result;
    {
        const TraceFile trace(request.traceFile);
        SignUtils session(trace.Handle(), request.logFile.c_str());
        SetUp(session, request);
        const unsigned long verdict =
            session.CheckSignRules(request.file.c_str(), request.signers.c_str());
        result = ResultOf(session, verdict, request, TraceIsUsable(trace.Handle()));
    }
    if (before && result.journal == "written")
    {
        if (auto event = FindCheckEvent(database, request, *before); event)
        {
            result.eventId = event->eventId;
            result.findings = std::move(event->findings);
        }
    }
    return result;
}

void Tell(const CheckRequest& request, const CheckResult& result,
          const std::optional<explain::Explanation>& explanation = std::nullopt)
{
    if (request.asJson)
    {
        nlohmann::ordered_json object = CheckAsJson(request, result);
        if (explanation)
        {
            object["explanation"] = explain::AsJson(*explanation);
        }
        PrintJson(object);
        return;
    }
    Print(CheckInWords(request, result));
    if (explanation)
    {
        Print("\n" + explain::AsText(explain::Sections(*explanation)));
    }
}

// The check stands whatever becomes of its explanation.
std::optional<explain::Explanation> Explained(const CheckRequest& request,
                                              const CheckResult& result, CDatabase& database,
                                              const std::string& trace)
{
    std::optional<authority::Amounts> amounts;
    if (result.amounts.AreKnown())
    {
        amounts = {result.amounts.total, result.amounts.largest};
    }
    try
    {
        return explain::ExplainCheck(database, request, amounts, trace);
    }
    catch (const Refusal& refusal)
    {
        Warn(std::string("the check cannot be explained: ") + refusal.what());
        return std::nullopt;
    }
}

// The library is not asked when its database is not there: it would answer 2 and hand a report on.
int TellNotRun(const CheckRequest& request, const Refusal& refusal)
{
    Complain(refusal.what());
    CheckResult result;
    result.amounts = AmountsAskedFor(request);
    result.journal = "not-due";
    result.problem = refusal.what();
    Tell(request, result);
    return refusal.Status();
}

// Said at once, and kept for the answer.
void WarnAndKeep(const std::string& warning, std::vector<std::string>& warnings)
{
    if (!warning.empty())
    {
        Warn(warning);
        warnings.push_back(warning);
    }
}

/// What a check needs whose amounts come from the file, from before the library is asked to the
/// end.
struct FileReading
{
    explicit FileReading(const std::string& file) : workFiles(file) {}

    ComApartment com;
    WorkFileGuard workFiles;
};

// Settles what must be there before the library is asked. Raises Refusal.
void Prepare(const OptionValues& values, CheckRequest& request, CDatabase& database,
             std::optional<FileReading>& reading, std::vector<std::string>& warnings)
{
    if (request.amountsFromFile)
    {
        request.format = ReadOrderFormat(values, request.file);
        reading.emplace(request.file);
        WarnAndKeep(reading->workFiles.Warning(), warnings);
    }
    OpenRulesDatabase(database, request.connection);
    WarnAndKeep(CheckSchemaVersion(database, request.connection), warnings);
}

} // namespace

int RunCheck(const OptionValues& values)
{
    RefuseHtmlWithoutExplain(values);
    CheckRequest request = ReadCheckRequest(values);
    std::vector<std::string> warnings;
    for (const std::string& warning : WarningsBefore(request))
    {
        WarnAndKeep(warning, warnings);
    }
    CDatabase database;
    std::optional<FileReading> reading;
    try
    {
        Prepare(values, request, database, reading, warnings);
    }
    catch (const UsageRefusal&)
    {
        throw;
    }
    catch (const Refusal& refusal)
    {
        return TellNotRun(request, refusal);
    }
    port::File log;
    OpenLog(request.logFile, log);
    std::optional<explain::TraceKeeper> keeper;
    if (request.isExplained)
    {
        keeper.emplace(request);
    }
    CheckResult result = Judge(request, database);
    for (const std::string& warning : WarningsAfter(request, result))
    {
        WarnAndKeep(warning, warnings);
    }
    result.warnings = std::move(warnings);
    if (log.IsOpen())
    {
        AppendToLog(log, "check of " + request.fileShown + ": " + OutcomeName(result));
    }
    std::optional<explain::Explanation> explanation;
    if (keeper)
    {
        explanation = Explained(request, result, database, keeper->Text());
    }
    Tell(request, result, explanation);
    if (explanation)
    {
        WriteHtmlPageAskedFor(
            values, explain::AsHtml(explain::Sections(*explanation), support::MessageLanguage()));
    }
    return ExitStatusOf(result);
}

} // namespace host
