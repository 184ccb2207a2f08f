#include "host/check_command.h"

#include "database/cdatabase.h"
#include "host/check_request.h"
#include "host/check_result.h"
#include "host/com_apartment.h"
#include "host/explain/explanation.h"
#include "host/html_page.h"
#include "host/journal_reader.h"
#include "host/judgement.h"
#include "host/moment.h"
#include "host/order_lock.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/schema_version.h"
#include "host/text.h"
#include "host/work_file_guard.h"
#include "port/files.h"
#include "support/codepage.h"

#include <nlohmann/json.hpp>

#include <optional>

namespace host
{

namespace
{

void AppendToLog(port::File& log, const std::string& line)
{
    const std::string text = LocalNow() + " signcheck: " + Printable(line) + "\n";
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

CheckResult Judge(const CheckRequest& request, CDatabase& database)
{
    const auto before = NewestEvent(database, request.connection);
    CheckResult result = AskLibrary(request);
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
                                              const explain::TraceKeeper& keeper)
{
    std::optional<authority::Amounts> amounts;
    if (result.amounts.AreKnown())
    {
        amounts = {result.amounts.total, result.amounts.largest};
    }
    try
    {
        return explain::ExplainCheck(database, request, amounts, keeper.Text());
    }
    catch (const Refusal& refusal)
    {
        Warn(std::string("the check is done, but cannot be explained: ") + refusal.what());
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

// A folder that cannot be written has no lock; amounts may be given for an order in one.
void RequireToBeAlone(const OrderLock& lock, std::vector<std::string>& warnings)
{
    if (lock.IsHeldByOther())
    {
        throw Refusal(kCouldNotRun, lock.Obstacle());
    }
    if (!lock.IsTaken())
    {
        WarnAndKeep(lock.Failure(), warnings);
    }
}

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

// The check is recorded and told by now: a page that cannot be written changes its status no more.
void WritePage(const OptionValues& values, const explain::Explanation& explanation)
{
    try
    {
        WriteHtmlPageAskedFor(
            values, explain::AsHtml(explain::Sections(explanation), support::MessageLanguage()));
    }
    catch (const UsageRefusal& refusal)
    {
        Warn(std::string(refusal.what()) + " The check itself is recorded.");
    }
}

} // namespace

int RunCheck(const OptionValues& values)
{
    RefuseHtmlWithoutExplain(values);
    RequirePlaceForHtmlPage(values);
    CheckRequest request = ReadCheckRequest(values);
    std::vector<std::string> warnings;
    for (const std::string& warning : WarningsBefore(request))
    {
        WarnAndKeep(warning, warnings);
    }
    CDatabase database;
    const OrderLock lock(request.file, "signcheck check"); // ends behind the work files
    std::optional<FileReading> reading;
    try
    {
        RequireToBeAlone(lock, warnings);
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
        explanation = Explained(request, result, database, *keeper);
    }
    Tell(request, result, explanation);
    if (explanation)
    {
        WritePage(values, *explanation);
    }
    return ExitStatusOf(result);
}

} // namespace host
