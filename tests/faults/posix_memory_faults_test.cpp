// Whole checks of which one allocation fails, or it and all behind it: the first, the second, and
// so on until none is left to fail. An exception may end a check; what it leaves must be true all
// the same, and nothing passes on a check that lacks something without saying so.
//
// SIGNUTILS_FAULTS=all tries every scenario, otherwise a few.

#include "database/idle_pool.h"
#include "signutils/signutils.h"
#include "tests/faults/scenarios.h"
#include "tests/model/library_run.h"
#include "tests/model/plain_session.h"
#include "tests/model/plain_texts.h"
#include "tests/model/real_bank.h"
#include "tests/signers/failing_rows.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/open_descriptors.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <new>
#include <optional>
#include <string>
#include <vector>

namespace
{

using faults::Pool;
using faults::Scenario;

constexpr unsigned int kRefused = 2;

constexpr const char* kUsual[] = {"AloneUnderTheTotal", "AnyTwoHolders",
                                  "FirstRuleAcceptsSecondRefuses"};

constexpr wchar_t kWaiting[] = L"waits since before";

std::vector<Scenario> ChosenScenarios()
{
    const char* const wanted = std::getenv("SIGNUTILS_FAULTS");
    const bool all = wanted != nullptr && std::string(wanted) == "all";
    std::vector<Scenario> chosen;
    for (const Scenario& scenario : faults::AllScenarios())
    {
        const bool usual =
            std::find(std::begin(kUsual), std::end(kUsual), scenario.name) != std::end(kUsual);
        if (all || usual)
        {
            chosen.push_back(scenario);
        }
    }
    return chosen;
}

class MemoryFault : public testing::TestWithParam<Scenario>
{
protected:
    MemoryFault() : m_pool("SIGNUTILS_POOL", GetParam().pool == Pool::Off ? "0" : "1")
    {
        std::filesystem::create_directory(m_temporaryFolder);
    }
    ~MemoryFault() override { database::EmptyIdlePool(); }

    /// Both checks, the first one with the fault. Whether an allocation failed.
    template <typename Failure>
    bool Check(unsigned long spared)
    {
        const model::World& world = GetParam().world;
        m_bank.Load(world.tables);
        std::filesystem::remove_all(m_bank.SpoolFolder());
        m_eventsDue = 0;
        m_eventsLost = false;
        if (world.journalMissing || GetParam().eventWaits)
        {
            m_bank.HideJournal();
        }
        if (GetParam().eventWaits)
        {
            SignUtils earlier;
            earlier.SetConnexionString(ConnexionString().c_str());
            earlier.LogEvent(0, kWaiting);
            ++m_eventsDue;
            m_bank.ShowJournal();
        }
        {
            SignUtils session;
            model::Prepare(session, world.sessions[0], ConnexionString());
            CheckOnce<Failure>(session, spared);
            ExpectWhole(session);
        }
        if (world.journalMissing)
        {
            m_bank.ShowJournal();
        }
        ExpectEventsOnce();
        return m_used;
    }

    void FailEach()
    {
        // What the first check of a process loads and opens stays.
        Check<testing_support::FailNextAllocation>(1'000'000'000);
        database::EmptyIdlePool();
        const std::ptrdiff_t before = testing_support::OpenDescriptors();
        unsigned long runs = 0;
        FailEachFor<testing_support::FailNextAllocation>(runs);
        FailEachFor<testing_support::FailAllAllocations>(runs);
        database::EmptyIdlePool();
        EXPECT_EQ(testing_support::OpenDescriptors(), before);
        EXPECT_TRUE(std::filesystem::is_empty(m_temporaryFolder));
        std::cout << GetParam().name << ": " << runs << " runs\n";
    }

private:
    template <typename Failure>
    void FailEachFor(unsigned long& runs)
    {
        bool used = true;
        for (unsigned long spared = 0; used && !HasFailure(); ++spared, ++runs)
        {
            SCOPED_TRACE(spared);
            used = Check<Failure>(spared);
        }
    }

    std::string ConnexionString() const
    {
        return m_bank.ConnexionString() + (GetParam().rowByRow ? testing_support::kRowByRow : "");
    }

    /// A copy is made while memory may be refused, too.
    template <typename Failure>
    void CheckOnce(SignUtils& session, unsigned long spared)
    {
        const model::Session& settings = GetParam().world.sessions[0];
        const model::Call& call = settings.calls[0];
        const std::string fileName = model::NarrowOf(call.fileName);
        TSimpleString reasonCode;
        TSimpleStringW reasonText;
        std::optional<SignUtils> copy;
        SignUtils* checked = call.onCopy ? nullptr : &session;
        unsigned long verdict = 0;
        m_ended = false;
        try
        {
            const Failure failure(spared);
            if (call.onCopy)
            {
                checked = &copy.emplace(session);
            }
            verdict = call.rulesAlone
                          ? checked->CheckSignRulesFor(reasonCode, reasonText, call.signers.c_str(),
                                                       fileName.c_str(), settings.total,
                                                       settings.largest, "")
                          : checked->CheckSignRules(fileName.c_str(), call.signers.c_str());
            m_ended = true;
            m_used = failure.WasUsed();
        }
        catch (const std::bad_alloc&)
        {
            m_used = true;
        }
        if (checked == nullptr)
        {
            ExpectNothingWritten();
            return;
        }
        if (m_ended)
        {
            EXPECT_EQ(verdict, checked->GetLastCheck().verdict);
        }
        ExpectTruth(checked->GetLastCheck());
    }

    /// There is no copy that could have checked anything.
    void ExpectNothingWritten()
    {
        model::Results results;
        m_bank.ReadHistory(results);
        m_bank.ReadJournal(results);
        EXPECT_TRUE(results.history.empty());
        EXPECT_TRUE(results.journal.empty());
    }

    void ExpectTruth(const CheckOutcome& outcome)
    {
        const bool whole = outcome.ran && outcome.rulesComplete && outcome.lookupsComplete;
        const unsigned int told = m_told.results.answers[0][0].verdict;
        if (!m_ended)
        {
            EXPECT_TRUE(outcome.verdict == kRefused || (whole && outcome.verdict == told));
        }
        else if (whole)
        {
            EXPECT_EQ(outcome.verdict, told);
        }
        else
        {
            EXPECT_FALSE(outcome.problem.IsEmpty());
        }
        if (!m_used)
        {
            EXPECT_TRUE(m_ended && whole);
        }
        model::Results results;
        m_bank.ReadHistory(results);
        EXPECT_EQ(results.history.size(), outcome.rowsWritten);
        EXPECT_LE(outcome.rowsWritten, outcome.rowsDue);

        const std::size_t due =
            (outcome.ran ? 1U : 0U) + (outcome.report == ReportState::NotDue ? 0U : 1U);
        m_eventsDue += due;
        m_eventsLost = outcome.journal == JournalState::Lost;
        EXPECT_EQ(outcome.journal == JournalState::NotDue, due == 0);
    }

    /// The next check of the session lacks nothing.
    void ExpectWhole(SignUtils& session)
    {
        session.CheckSignRules("next", L"");
        const CheckOutcome& outcome = session.GetLastCheck();
        EXPECT_TRUE(outcome.ran);
        EXPECT_TRUE(outcome.rulesComplete);
        EXPECT_TRUE(outcome.lookupsComplete);
        EXPECT_TRUE(outcome.problem.IsEmpty()) << outcome.problem.SafeGetString();
        EXPECT_EQ(outcome.rowsWritten, outcome.rowsDue);
        EXPECT_NE(outcome.journal, JournalState::Lost);
        m_eventsDue += 1U + (outcome.report == ReportState::NotDue ? 0U : 1U);
    }

    /// After the next contact each event is in the table once, or was told as lost.
    void ExpectEventsOnce()
    {
        {
            SignUtils next;
            next.SetConnexionString(ConnexionString().c_str());
            next.LogEvent(0, L"next");
        }
        model::Results results;
        m_bank.ReadJournal(results);
        const std::size_t due = m_eventsDue + 1;
        if (GetParam().eventWaits)
        {
            ASSERT_FALSE(results.journal.empty());
            EXPECT_NE(results.journal.front().text.find(kWaiting), model::Text::npos);
        }
        if (m_eventsLost)
        {
            EXPECT_LT(results.journal.size(), due);
        }
        else
        {
            EXPECT_EQ(results.journal.size(), due);
        }
    }

    model::RealBank m_bank;
    testing_support::TemporaryFolder m_folder;
    const std::string m_temporaryFolder = m_folder.Path("temporary");
    testing_support::ScopedEnvironment m_temporary{"TMPDIR", m_temporaryFolder.c_str()};
    testing_support::ScopedEnvironment m_pool;
    const model::Told m_told = model::Tell(GetParam().world, {});
    bool m_ended = false; ///< the check, with a verdict
    bool m_used = false;
    bool m_eventsLost = false;
    std::size_t m_eventsDue = 0;
};

TEST_P(MemoryFault, LeavesATrueOutcomeWhicheverAllocationFails)
{
    FailEach();
}

INSTANTIATE_TEST_SUITE_P(Scenarios, MemoryFault, testing::ValuesIn(ChosenScenarios()),
                         [](const auto& test) { return test.param.name; });

} // namespace
