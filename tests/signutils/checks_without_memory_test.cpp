#include "signutils/audit_trail.h"
#include "tests/signutils/session_fixture.h"
#include "tests/testing/failing_allocations.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <new>
#include <set>
#include <string>

using namespace testing_support;
using ::testing::IsEmpty;

namespace
{

constexpr char kOrder[] = "an order file with a long name.xml";
constexpr wchar_t kSigner[] = L"Ana Ruiz";

/// The keys of all events, each once wherever it lies.
struct EventsFound
{
    std::set<std::string> inTable;
    std::set<std::string> anywhere;
    bool unaddressed = false; ///< some lie in the spool of events without a database
};

/// Sessions of which one allocation fails, or it and all behind it, in a world that is put back
/// after each. Connections are made anew every time, so that every allocation has its turn.
class WithoutMemory : public SessionTest
{
protected:
    WithoutMemory() { std::filesystem::create_directory(m_temporary); }

    void PrepareRefusal(SignUtils& session)
    {
        Prepare(session);
        session.SetAmountInfo(1000.01, 1.00, "EUR");
        session.SetPSRWarning("STATUS");
        session.SetRefRequest("a reference of the request");
    }

    void PutBack()
    {
        m_database.Execute(L"DELETE FROM HST_SIGNRULES");
        m_database.Execute(L"DELETE FROM EVT_JOURNAL");
        std::filesystem::remove_all(SpoolFolder());
        std::filesystem::remove_all(HandOffFolder());
    }

    EventsFound FindEvents()
    {
        EventsFound found;
        for (const Row& row : m_database.Query(L"SELECT EVENTKEY FROM EVT_JOURNAL"))
        {
            const std::wstring key = row[0].value_or(L"");
            found.inTable.insert(std::string(key.begin(), key.end()));
        }
        found.anywhere = found.inTable;
        for (const std::string& file : FilesBelow(SpoolFolder()))
        {
            if (std::filesystem::path(file).extension() == ".jsonl")
            {
                AddKeys(SpoolFolder() + "/" + file, found);
            }
        }
        return found;
    }

    static void AddKeys(const std::string& path, EventsFound& found)
    {
        const std::string label = "\"EVENTKEY\":\"";
        std::ifstream lines(path);
        for (std::string line; std::getline(lines, line);)
        {
            const std::size_t start = line.find(label);
            ASSERT_NE(start, std::string::npos) << line;
            found.anywhere.insert(line.substr(start + label.size(), 36));
            found.unaddressed |= path.find("unaddressed") != std::string::npos;
        }
    }

    std::size_t CountRows() { return m_database.Query(L"SELECT STATUT FROM HST_SIGNRULES").size(); }

    /// All files of the hand-off store but its own two.
    std::vector<std::string> Reports() const
    {
        std::vector<std::string> reports;
        for (const std::string& file : FilesBelow(HandOffFolder()))
        {
            if (file != "identifiers.counter" && file != "identifiers.lock")
            {
                reports.push_back(file);
            }
        }
        return reports;
    }

    void ExpectTruth(const CheckOutcome& outcome)
    {
        EXPECT_EQ(CountRows(), outcome.rowsWritten);
        EXPECT_GE(outcome.rowsDue, outcome.rowsWritten);

        const EventsFound events = FindEvents();
        EXPECT_FALSE(events.unaddressed);
        const std::size_t due =
            (outcome.ran ? 1U : 0U) + (outcome.report == ReportState::NotDue ? 0U : 1U);
        EXPECT_EQ(outcome.journal == JournalState::NotDue, due == 0);
        EXPECT_EQ(outcome.journal == JournalState::Lost, events.anywhere.size() < due);
        EXPECT_LE(events.anywhere.size(), due);
        if (outcome.journal == JournalState::Written)
        {
            EXPECT_EQ(events.inTable.size(), due);
        }

        EXPECT_THAT(FilesBelow(m_temporary), IsEmpty());
        if (outcome.report == ReportState::HandedOn)
        {
            EXPECT_THAT(Reports(),
                        ::testing::ElementsAre("STATUS/PARTNER1/" +
                                               std::to_string(outcome.reportFileId) + ".psr"));
        }
        else
        {
            EXPECT_THAT(Reports(), IsEmpty());
            EXPECT_EQ(outcome.reportFileId, 0U);
        }
    }

    void ExpectUsable(SignUtils& session)
    {
        PutBack();
        session.SetPSRWarning("");
        // A session keeps its signers; the check before may have ended without any.
        if (session.CheckSignRules(kOrder, L"") == kNoRule)
        {
            PutBack();
            EXPECT_EQ(session.CheckSignRules(kOrder, kSigner), kRefused);
        }
        const CheckOutcome& outcome = session.GetLastCheck();
        EXPECT_TRUE(outcome.ran);
        EXPECT_EQ(outcome.verdict, kRefused);
        EXPECT_TRUE(outcome.rulesComplete);
        EXPECT_TRUE(outcome.lookupsComplete);
        EXPECT_TRUE(outcome.problem.IsEmpty()) << outcome.problem.SafeGetString();
        EXPECT_EQ(outcome.rowsWritten, 1U);
        EXPECT_NE(outcome.journal, JournalState::Lost);
        ExpectTruth(outcome);
    }

    /// One whole check with its report. Whether an allocation failed on the way.
    template <typename Failure>
    bool CheckSparing(unsigned long spared)
    {
        SCOPED_TRACE(spared);
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        bool used = true;
        bool ended = false;
        unsigned long verdict = 4711;
        try
        {
            const Failure failure(spared);
            verdict = session.CheckSignRules(kOrder, kSigner);
            ended = true;
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_EQ(verdict, 4711U);
        }
        const CheckOutcome& outcome = session.GetLastCheck();
        EXPECT_NE(outcome.verdict, kSuccess);
        EXPECT_EQ(outcome.verdict, ended ? verdict : outcome.verdict);
        ExpectTruth(outcome);
        ExpectUsable(session);
        return used;
    }

    std::string m_temporary = m_folder.Path("temporary");
    ScopedEnvironment m_noPool{"SIGNUTILS_POOL", "0"};
    ScopedEnvironment m_posix{"TMPDIR", m_temporary.c_str()};
    ScopedEnvironment m_windows{"TMP", m_temporary.c_str()};
    ScopedEnvironment m_windowsToo{"TEMP", m_temporary.c_str()};
};

TEST_F(WithoutMemory, FailureOfATextReachesTheHostAndLeavesAUsableSession)
{
    SignUtils session;
    PrepareRefusal(session);
    session.SetAmountInfo(1000.01, 1.00, ""); // no currency to keep
    {
        const FailNextAllocation failure; // that of the list of signers
        EXPECT_THROW(session.CheckSignRules(kOrder, kSigner), std::bad_alloc);
    }
    const CheckOutcome& outcome = session.GetLastCheck();
    EXPECT_FALSE(outcome.ran);
    EXPECT_EQ(outcome.verdict, kRefused);
    EXPECT_STREQ(outcome.problem.SafeGetString(), "The check was ended by an exception");
    EXPECT_EQ(outcome.journal, JournalState::NotDue);
    ExpectTruth(outcome);
    ExpectUsable(session);
}

TEST_F(WithoutMemory, ExceptionBehindTheRowsLeavesThemInTheOutcome)
{
    bool met = false;
    bool used = true;
    for (unsigned long spared = 0; used && !met; ++spared)
    {
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        try
        {
            const FailNextAllocation failure(spared);
            session.CheckSignRules(kOrder, kSigner);
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            const CheckOutcome& outcome = session.GetLastCheck();
            met = CountRows() == 1 && outcome.report == ReportState::NotDue;
            if (met)
            {
                EXPECT_TRUE(outcome.ran);
                EXPECT_TRUE(outcome.rulesComplete);
                EXPECT_TRUE(outcome.lookupsComplete);
                EXPECT_EQ(outcome.rowsDue, 1U);
                EXPECT_EQ(outcome.rowsWritten, 1U);
                EXPECT_STREQ(outcome.reasonCode.SafeGetString(), "AM02");
                EXPECT_FALSE(outcome.reasonText.IsEmpty());
                EXPECT_EQ(outcome.journal, JournalState::Lost);
            }
        }
    }
    EXPECT_TRUE(met);
}

TEST_F(WithoutMemory, ExceptionBehindACheckThatCouldNotRunKeepsWhyItCouldNot)
{
    bool used = true;
    unsigned long endedInTheReport = 0;
    for (unsigned long spared = 0; used; ++spared)
    {
        SCOPED_TRACE(spared);
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        session.SetConnexionString("");
        const CheckOutcome& outcome = session.GetLastCheck();
        try
        {
            const FailNextAllocation failure(spared);
            EXPECT_EQ(session.CheckSignRules(kOrder, kSigner), kRefused);
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            if (outcome.report != ReportState::NotDue)
            {
                ++endedInTheReport;
                EXPECT_STREQ(outcome.problem.SafeGetString(), "DSN not defined");
                EXPECT_EQ(outcome.journal, JournalState::Lost);
            }
        }
        EXPECT_FALSE(outcome.ran);
        EXPECT_EQ(outcome.verdict, kRefused);
    }
    EXPECT_GT(endedInTheReport, 0U);
}

TEST_F(WithoutMemory, RulesAloneFailNoMoreOnceTheirEventIsWritten)
{
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        TSimpleString reasonCode;
        TSimpleStringW reasonText;
        try
        {
            const FailNextAllocation failure(spared);
            session.CheckSignRulesFor(reasonCode, reasonText, kSigner, kOrder, 1000.01, 1.00,
                                      "a currency of many letters");
            used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            EXPECT_THAT(FindEvents().anywhere, IsEmpty()) << spared;
        }
        ExpectTruth(session.GetLastCheck());
    }
}

TEST_F(WithoutMemory, ConnectionThatCouldNotBeMadeIsMadeByTheNextEvent)
{
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        SCOPED_TRACE(spared);
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        signutils::AuditTrail trail(session);
        {
            const FailNextAllocation failure(spared);
            EXPECT_NO_THROW(trail.LogEvent(0, L"first"));
            used = failure.WasUsed();
        }
        const std::size_t kept = FindEvents().anywhere.size();
        EXPECT_EQ(kept, trail.GetState() == JournalState::Lost ? 0U : 1U);

        signutils::AuditTrail next(session);
        next.LogEvent(0, L"next");
        EXPECT_NE(next.GetState(), JournalState::Lost);
        EXPECT_EQ(FindEvents().anywhere.size(), kept + 1);
        EXPECT_FALSE(FindEvents().unaddressed);
    }
}

TEST_F(WithoutMemory, EventBehindAFullSpoolIsLostOrKept)
{
    bool used = true;
    for (unsigned long spared = 0; used; ++spared)
    {
        SCOPED_TRACE(spared);
        PutBack();
        SignUtils session;
        PrepareRefusal(session);
        m_database.Execute(L"ALTER TABLE EVT_JOURNAL RENAME TO EVT_AWAY");
        session.LogEvent(0, L"spooled");
        m_database.Execute(L"ALTER TABLE EVT_AWAY RENAME TO EVT_JOURNAL");
        ASSERT_EQ(FindEvents().anywhere.size(), 1U);

        signutils::AuditTrail trail(session);
        {
            const FailNextAllocation failure(spared);
            EXPECT_NO_THROW(trail.LogEvent(0, L"behind it"));
            used = failure.WasUsed();
        }
        const std::size_t due = trail.GetState() == JournalState::Lost ? 1U : 2U;
        EXPECT_EQ(FindEvents().anywhere.size(), due);
    }
}

TEST_F(WithoutMemory, CheckTellsTheTruthWhicheverAllocationFails)
{
    unsigned long spared = 0;
    while (CheckSparing<FailNextAllocation>(spared) && !HasFailure())
    {
        ++spared;
    }
    EXPECT_GT(spared, 100U); // there was something to fail
}

TEST_F(WithoutMemory, CheckTellsTheTruthWhereverMemoryRunsOutForGood)
{
    unsigned long spared = 0;
    while (CheckSparing<FailAllAllocations>(spared) && !HasFailure())
    {
        ++spared;
    }
    EXPECT_GT(spared, 100U);
}

} // namespace
