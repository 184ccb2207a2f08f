#include "tests/model/library_run.h"

#include "signutils/signutils.h"
#include "tests/model/plain_texts.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

namespace model
{

void Prepare(SignUtils& object, const Session& session, const std::string& connexionString)
{
    const auto narrow = [](const Text& text) { return NarrowOf(text); };
    if (session.connected)
    {
        object.SetConnexionString(connexionString.c_str());
    }
    object.SetContractInfo(static_cast<unsigned long>(session.contractType),
                           static_cast<unsigned long>(session.protocol),
                           narrow(session.partner).c_str(), narrow(session.service).c_str(),
                           narrow(session.client).c_str(), session.serverMode, "");
    object.SetAmountInfo(session.total, session.largest, narrow(session.currency).c_str());
    if (session.amountsFromFile)
    {
        object.SetFormatInfo("NONE", "none", "");
    }
    object.SetMessageInfo(narrow(session.initiatingParty).c_str(), narrow(session.orderId).c_str(),
                          narrow(session.messageName).c_str(), narrow(session.messageId).c_str());
    object.SetPSRWarning(narrow(session.psrService).c_str());
    object.SetIdFileVfs(static_cast<unsigned long>(session.idFileVfs));
    object.SetRefRequest(narrow(session.refRequest).c_str());
    if (session.veu)
    {
        object.SetModeVeu();
    }
}

namespace
{

std::string WithoutTime(std::string document, Results& results)
{
    const std::string mark = "<CreDtTm>";
    const std::size_t begin = document.find(mark);
    if (begin == std::string::npos)
    {
        return document;
    }
    const std::size_t end = document.find("</CreDtTm>", begin);
    const std::string time = document.substr(begin + mark.size(), end - begin - mark.size());
    int parts[6] = {};
    if (std::sscanf(time.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d", &parts[0], &parts[1], &parts[2],
                    &parts[3], &parts[4], &parts[5]) != 6)
    {
        results.problems.push_back("a report carries the time " + time);
    }
    return document.replace(begin + mark.size(), time.size(), kTimeOfReport);
}

std::string FileText(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    return stream.is_open() ? bytes.str() : "(no file)";
}

/// The trace's findings; its other lines tell of columns and sections.
std::vector<std::string> FindingsOf(const std::string& path)
{
    constexpr const char* labels[] = {"#RULE", "Warning: #", "warning: ", "******* WARNING"};
    std::vector<std::string> findings;
    std::ifstream stream(path, std::ios::binary);
    for (std::string line; std::getline(stream, line);)
    {
        for (const char* const label : labels)
        {
            if (line.rfind(label, 0) == 0)
            {
                findings.push_back(line);
            }
        }
    }
    return findings;
}

Journal JournalOf(JournalState state)
{
    switch (state)
    {
    case JournalState::NotDue:
        return Journal::NotDue;
    case JournalState::Written:
        return Journal::Written;
    case JournalState::Spooled:
        return Journal::Spooled;
    case JournalState::Lost:
        break;
    }
    return Journal::Lost;
}

void ChangeSettings(SignUtils& object, const Call& call)
{
    if (call.amounts && !call.rulesAlone)
    {
        object.SetAmountInfo(call.amounts->total, call.amounts->largest,
                             NarrowOf(call.amounts->currency).c_str());
    }
    if (call.distributedFromNow)
    {
        object.SetModeVeu();
    }
}

/// One world's run.
class Run
{
public:
    Run(RealBank& bank, const World& world, const Surroundings& surroundings)
        : m_bank(bank), m_world(world), m_surroundings(surroundings)
    {
    }

    Seen Finish();

private:
    const std::string& ConnexionString() const
    {
        const std::string& other = m_surroundings.connexionString;
        return other.empty() ? m_bank.ConnexionString() : other;
    }
    void RunSession(const Session& session);
    Answer RunWatched(SignUtils& object, const Session& session, const Call& call);
    Answer RunCall(SignUtils& object, const Session& session, const Call& call);
    void TakeOutcome(const Session& session, const CheckOutcome& outcome, Answer& answer);
    void TakeReport(const Session& session, const Answer& answer);
    void DeliverWaitingEvents();

    RealBank& m_bank;
    const World& m_world;
    const Surroundings& m_surroundings;
    Seen m_seen;
    void* m_trace = nullptr;
};

void Run::TakeOutcome(const Session& session, const CheckOutcome& outcome, Answer& answer)
{
    answer.ran = outcome.ran;
    answer.rulesComplete = outcome.rulesComplete;
    answer.lookupsComplete = outcome.lookupsComplete;
    answer.amountsKnown = outcome.amountsKnown;
    answer.total = outcome.totalAmount;
    answer.largest = outcome.maxOrderAmount;
    answer.currency = WideOf(outcome.currency.SafeGetString());
    answer.toldReasonCode = WideOf(outcome.reasonCode.SafeGetString());
    answer.toldReasonText = outcome.reasonText.SafeGetString();
    answer.rowsDue = outcome.rowsDue;
    answer.rowsWritten = outcome.rowsWritten;
    answer.orderCount = outcome.orderCount;
    answer.journal = JournalOf(outcome.journal);
    answer.report = outcome.report == ReportState::HandedOn      ? Report::HandedOn
                    : outcome.report == ReportState::NotHandedOn ? Report::NotHandedOn
                                                                 : Report::NotDue;
    answer.reportFileId = static_cast<std::uint32_t>(outcome.reportFileId);
    if (outcome.verdict != answer.verdict)
    {
        m_seen.results.problems.push_back("the outcome's verdict is not the call's");
    }
    if (m_surroundings.eventsMayWait && session.connected && !m_world.journalMissing &&
        answer.journal == Journal::Spooled)
    {
        answer.journal = Journal::Written; // it may wait, and is delivered at the end
    }
}

void Run::TakeReport(const Session& session, const Answer& answer)
{
    if (answer.report != Report::HandedOn)
    {
        return;
    }
    auto& problems = m_seen.results.problems;
    if (!m_seen.reportFileIds.empty() && m_seen.reportFileIds.back() >= answer.reportFileId)
    {
        problems.push_back("the identifiers of reports do not rise");
    }
    m_seen.reportFileIds.push_back(answer.reportFileId);
    const std::filesystem::path path = std::filesystem::path(m_bank.StoreFolder()) /
                                       Utf8Of(session.psrService) / Utf8Of(session.partner) /
                                       (std::to_string(answer.reportFileId) + ".psr");
    Results ignored;
    if (WithoutTime(FileText(path), ignored) != answer.reportDocument)
    {
        problems.push_back("the report in the store is not the session's: " + path.string());
    }
    std::error_code gone;
    std::filesystem::remove(path, gone);
}

Answer Run::RunCall(SignUtils& object, const Session& session, const Call& call)
{
    const std::string fileName = NarrowOf(call.fileName);
    Answer answer;
    if (call.rulesAlone)
    {
        TSimpleString reasonCode(NarrowOf(call.reasonCodeBefore).c_str());
        TSimpleStringW reasonText(call.reasonTextBefore.c_str());
        const GivenAmounts amounts =
            call.amounts.value_or(GivenAmounts{session.total, session.largest, L""});
        answer.verdict = static_cast<std::uint32_t>(object.CheckSignRulesFor(
            reasonCode, reasonText, call.signers.c_str(), fileName.c_str(), amounts.total,
            amounts.largest, NarrowOf(amounts.currency).c_str()));
        TakeOutcome(session, object.GetLastCheck(), answer);
        answer.reasonCode = WideOf(reasonCode.SafeGetString());
        answer.reasonText = reasonText.SafeGetString();
    }
    else
    {
        answer.verdict = static_cast<std::uint32_t>(
            object.CheckSignRules(fileName.c_str(), call.signers.c_str()));
        TakeOutcome(session, object.GetLastCheck(), answer);
        answer.reasonCode = answer.toldReasonCode;
        answer.reasonText = answer.toldReasonText;
    }
    answer.extraInfo = WideOf(object.GetExtraInfo().SafeGetString());
    answer.reportDocument = WithoutTime(object.GetPSRWarning().SafeGetString(), m_seen.results);
    TakeReport(session, answer);
    return answer;
}

Answer Run::RunWatched(SignUtils& object, const Session& session, const Call& call)
{
    if (m_surroundings.beforeCall)
    {
        m_surroundings.beforeCall();
    }
    Answer answer = RunCall(object, session, call);
    if (m_surroundings.afterCall)
    {
        m_surroundings.afterCall(object);
    }
    return answer;
}

void Run::RunSession(const Session& session)
{
    const std::string logFile = NarrowOf(session.logFile);
    SignUtils object(session.traced ? m_trace : nullptr, logFile.c_str());
    Prepare(object, session, ConnexionString());
    std::vector<Answer> answers;
    for (const Call& call : session.calls)
    {
        ChangeSettings(object, call);
        if (call.onCopy)
        {
            SignUtils copy(object);
            answers.push_back(RunWatched(copy, session, call));
            continue;
        }
        answers.push_back(RunWatched(object, session, call));
    }
    m_seen.results.answers.push_back(answers);
}

/// Waiting events go before the next one; that one is taken away again.
void Run::DeliverWaitingEvents()
{
    SignUtils object;
    object.SetConnexionString(ConnexionString().c_str());
    object.LogEvent(0, L"last");
}

Seen Run::Finish()
{
    m_bank.Load(m_world.tables);
    bool traced = false;
    for (const Session& session : m_world.sessions)
    {
        traced = traced || session.traced;
    }
    if (traced)
    {
        m_trace = TraceOpen(m_bank.TraceFile().c_str());
    }
    if (m_world.journalMissing)
    {
        m_bank.HideJournal();
    }
    for (const Session& session : m_world.sessions)
    {
        RunSession(session);
    }
    if (m_world.journalMissing)
    {
        m_bank.ShowJournal();
    }
    const bool delivered = m_world.journalMissing || m_surroundings.eventsMayWait;
    if (delivered)
    {
        DeliverWaitingEvents();
    }
    m_bank.ReadHistory(m_seen.results);
    m_bank.ReadJournal(m_seen.results);
    if (delivered && !m_seen.results.journal.empty())
    {
        m_seen.results.journal.pop_back();
    }
    if (traced)
    {
        TraceClose(m_trace);
        m_seen.results.trace = FindingsOf(m_bank.TraceFile());
        std::remove(m_bank.TraceFile().c_str());
    }
    return m_seen;
}

} // namespace

Seen RunLibrary(RealBank& bank, const World& world, const Surroundings& surroundings)
{
    return Run(bank, world, surroundings).Finish();
}

} // namespace model
