#include "tests/model/plain_session.h"

#include "tests/model/plain_messages.h"
#include "tests/model/plain_records.h"
#include "tests/model/plain_texts.h"

#include <algorithm>
#include <cmath>

namespace model
{

namespace
{

constexpr std::uint32_t kNoRule = 0;
constexpr std::uint32_t kSuccess = 1;
constexpr std::uint32_t kRefused = 2;

std::vector<Text> NamesIn(const Text& list)
{
    std::vector<Text> names;
    Text piece;
    for (const wchar_t character : list + L";")
    {
        if (character != L';')
        {
            piece += character;
            continue;
        }
        if (!Trimmed(piece).empty())
        {
            names.push_back(Trimmed(piece));
        }
        piece.clear();
    }
    return names;
}

struct Heading
{
    const wchar_t* text;
    int level;
};

Heading HeadingOf(std::uint32_t verdict)
{
    switch (verdict)
    {
    case kNoRule:
        return {L"CHECK SIGNATURES RULES NOT FOUND\r\n", 1};
    case kSuccess:
        return {L"CHECK SIGNATURES RULES SUCCESS\r\n", 0};
    default:
        return {L"CHECK SIGNATURES RULES FAILED\r\n", 2};
    }
}

/// The calls of one session, one after the other.
class Teller
{
public:
    Teller(const World& world, const Session& session, Results& results,
           const std::vector<std::uint32_t>& fileIds, std::size_t& nextFileId)
        : m_world(world), m_session(session), m_results(results), m_fileIds(fileIds),
          m_nextFileId(nextFileId)
    {
    }

    Answer Tell(const Call& call, const Mishaps& mishaps);
    const Outcomes& Met() const { return m_account.outcomes; }

private:
    void ChangeSettings(const Call& call);
    void SettleAmounts(const Call& call, Answer& answer);
    void RunRules(const Call& call, Answer& answer);
    void Record(const Call& call, const Case& given, const std::vector<Decision>& decisions,
                Account& run, Answer& answer);
    void AnswerWithReport(Answer& answer);
    void Enter(int level, const Text& message, Answer& answer)
    {
        const bool reached = m_session.connected && !m_world.journalMissing;
        answer.journal = reached ? Journal::Written : Journal::Spooled;
        // An event without a connection text never reaches a database.
        if (m_session.connected)
        {
            m_results.journal.push_back(EventOf(m_session, level, message));
        }
    }

    const World& m_world;
    Session m_session; ///< as its calls have left it
    Results& m_results;
    const std::vector<std::uint32_t>& m_fileIds;
    std::size_t& m_nextFileId;
    std::vector<Signer> m_signers;
    Mishaps m_mishaps; ///< of the call
    Account m_account; ///< of the session: its outcomes
    Text m_extraInfo;
    std::string m_report;
};

void Teller::ChangeSettings(const Call& call)
{
    if (call.amounts && !call.rulesAlone)
    {
        m_session.total = call.amounts->total;
        m_session.largest = call.amounts->largest;
        m_session.currency = call.amounts->currency;
        m_session.amountsFromFile = false;
    }
    m_session.veu = m_session.veu || call.distributedFromNow;
}

void Teller::SettleAmounts(const Call& call, Answer& answer)
{
    if (call.rulesAlone)
    {
        const GivenAmounts given =
            call.amounts.value_or(GivenAmounts{m_session.total, m_session.largest, L""});
        answer.reasonCode = call.reasonCodeBefore;
        answer.reasonText = call.reasonTextBefore;
        answer.total = given.total;
        answer.largest = given.largest;
        answer.currency = given.currency;
        answer.amountsKnown = std::isfinite(answer.total) && std::isfinite(answer.largest);
        return;
    }
    if (m_session.amountsFromFile)
    {
        answer.reasonCode = L"NARR";
        answer.reasonText = Message(1816);
        m_account.Note(Outcome::AmountsUnknown);
        return;
    }
    answer.total = m_session.total;
    answer.largest = m_session.largest;
    answer.currency = m_session.currency;
    answer.amountsKnown = std::isfinite(answer.total) && std::isfinite(answer.largest);
}

void Teller::Record(const Call& call, const Case& given, const std::vector<Decision>& decisions,
                    Account& run, Answer& answer)
{
    const Rows rows = RowsOf(m_session, given, call, decisions, answer.verdict);
    answer.rowsDue = rows.due;
    const std::size_t inTable = std::min(m_mishaps.rowsInTable, rows.written.size());
    answer.rowsWritten = static_cast<std::uint32_t>(std::min(m_mishaps.rowsTold, inTable));
    if (rows.written.size() < rows.due)
    {
        run.Note(Outcome::RowLost);
    }
    m_results.history.insert(m_results.history.end(), rows.written.begin(),
                             rows.written.begin() + static_cast<std::ptrdiff_t>(inTable));

    const Heading heading = HeadingOf(answer.verdict);
    Enter(heading.level, heading.text + run.journal, answer);
}

void Teller::RunRules(const Call& call, Answer& answer)
{
    for (const Text& name : NamesIn(call.signers))
    {
        m_signers.push_back({name, {}, {}});
    }
    answer.verdict = kRefused;
    if (!m_session.connected)
    {
        m_account.Note(Outcome::NotConnected);
        return;
    }
    if (m_mishaps.notOpened)
    {
        return;
    }
    answer.ran = true;

    Account run;
    run.mishaps = m_mishaps;
    std::vector<Rule> rules;
    answer.rulesComplete = LoadRules(m_world.tables, m_session, rules, run);
    const Case given{m_session, m_signers, call.signers, answer.total, answer.largest};
    const std::vector<Decision> decisions = Judge(m_world.tables, rules, given, run);
    answer.verdict = VerdictOf(decisions, answer.reasonCode, answer.reasonText);
    if (answer.verdict == kNoRule)
    {
        run.Trace(L"#RULE4 FAILED", L"NO RULES FOUND FOR SIGNERS !!!");
        run.Note(Outcome::Rule4);
        answer.reasonCode = L"NARR";
        answer.reasonText = Message(1816);
        run.journal += Message(1805, {call.signers}) + L"\r\n";
    }
    answer.lookupsComplete = run.lookupsComplete;
    Record(call, given, decisions, run, answer);
    m_account.outcomes |= run.outcomes;
    if (m_session.traced)
    {
        m_results.trace.insert(m_results.trace.end(), run.trace.begin(), run.trace.end());
    }
}

void Teller::AnswerWithReport(Answer& answer)
{
    m_report = ReportOf(m_session, answer.reasonCode, answer.reasonText);
    // A name that is empty or leads out of the store is no place for a report.
    const bool refused = m_session.partner.empty() || m_session.psrService == L"..";
    if (refused)
    {
        answer.report = Report::NotHandedOn;
        m_account.Note(Outcome::ReportNotHandedOn);
        Enter(1, Message(10735), answer);
        return;
    }
    answer.report = Report::HandedOn;
    m_account.Note(Outcome::ReportHandedOn);
    if (m_nextFileId < m_fileIds.size())
    {
        answer.reportFileId = m_fileIds[m_nextFileId++];
    }
    m_extraInfo =
        L"PSR Generated in " + m_session.psrService + L"=" + std::to_wstring(answer.reportFileId);
    Enter(0, m_extraInfo, answer);
}

Answer Teller::Tell(const Call& call, const Mishaps& mishaps)
{
    m_mishaps = mishaps;
    Answer answer;
    ChangeSettings(call);
    SettleAmounts(call, answer);
    RunRules(call, answer);
    // A copy's own outputs end with it.
    const Text extraBefore = m_extraInfo;
    const std::string reportBefore = m_report;
    if (!call.rulesAlone && answer.verdict >= kRefused && !m_session.psrService.empty())
    {
        AnswerWithReport(answer);
    }
    // Outputs that a call of the rules alone has not written are the caller's.
    if (!call.rulesAlone || (answer.ran && answer.verdict != kSuccess))
    {
        answer.toldReasonCode = answer.reasonCode;
        answer.toldReasonText = answer.reasonText;
    }
    answer.extraInfo = m_extraInfo;
    answer.reportDocument = m_report;
    if (call.onCopy)
    {
        m_extraInfo = extraBefore;
        m_report = reportBefore;
    }
    return answer;
}

Outcomes OutcomesOf(const std::vector<Call>& calls)
{
    Outcomes met;
    const auto note = [&met](Outcome outcome, bool isMet)
    {
        const auto index = static_cast<std::size_t>(outcome);
        met.set(index, met.test(index) || isMet);
    };
    note(Outcome::SecondCheck, calls.size() > 1);
    for (const Call& call : calls)
    {
        const std::size_t signers = NamesIn(call.signers).size();
        note(Outcome::SettingsChanged,
             call.distributedFromNow || (call.amounts && !call.rulesAlone));
        note(Outcome::RulesAlone, call.rulesAlone);
        note(Outcome::OnCopy, call.onCopy);
        note(Outcome::NoSigner, signers == 0);
        note(Outcome::FiveSigners, signers == 5);
    }
    return met;
}

} // namespace

Told Tell(const World& world, const std::vector<std::uint32_t>& reportFileIds,
          const std::vector<Mishaps>& mishaps)
{
    Told told;
    std::size_t nextFileId = 0;
    for (const Session& session : world.sessions)
    {
        Teller teller(world, session, told.results, reportFileIds, nextFileId);
        std::vector<Answer> answers;
        for (const Call& call : session.calls)
        {
            const bool mishap = told.results.answers.empty() && answers.size() < mishaps.size();
            answers.push_back(teller.Tell(call, mishap ? mishaps[answers.size()] : Mishaps()));
        }
        told.results.answers.push_back(answers);
        told.outcomes.push_back(teller.Met() | OutcomesOf(session.calls));
    }
    return told;
}

} // namespace model
