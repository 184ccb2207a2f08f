// Whole checks of which one call to the driver fails: the first, the second, and so on until none
// is left to fail. What each run must answer and leave behind is told by the model, which hears
// only where the failure fell.
//
// SIGNUTILS_FAULTS=all tries every kind of failure, SIGNUTILS_FAULTS=waits calls that take their
// time; otherwise the gravest failures are tried.

#include "tests/faults/fault_run.h"
#include "tests/model/differences.h"
#include "tests/model/plain_session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <tuple>
#include <vector>

namespace
{

using fault_driver::Bit;
using fault_driver::Entry;
using fault_driver::Kind;
using fault_driver::Plan;
using fault_driver::Reach;
using faults::Foresight;
using faults::Scenario;
using faults::Shown;

struct Fault
{
    const char* name;
    Plan plan;
    bool gravest;
};

// The driver manager frees these behind the library's back and does not ask twice.
constexpr std::uint32_t kOfTheManager = Bit(Entry::FreeEnvironment) | Bit(Entry::FreeConnection);
// A driver that will not let go of its handles for good keeps them, whatever the library does.
constexpr std::uint32_t kLettingGo = Bit(Entry::FreeEnvironment) | Bit(Entry::FreeConnection) |
                                     Bit(Entry::FreeStatement) | Bit(Entry::CloseStatement) |
                                     Bit(Entry::Disconnect);
constexpr std::uint32_t kEveryCall = fault_driver::kEveryEntry & ~kOfTheManager;
constexpr std::uint32_t kEveryUse = kEveryCall & ~kLettingGo;
constexpr std::uint32_t kStatements = Bit(Entry::Execute);

std::string Wanted()
{
    const char* const wanted = std::getenv("SIGNUTILS_FAULTS");
    return wanted == nullptr ? "" : wanted;
}

std::vector<Fault> ChosenFaults()
{
    const std::vector<Fault> all = {
        {"ConnectionLost", {0, Kind::Refuse, Reach::Once, "08S01", kEveryCall}, true},
        {"ConnectionDead", {0, Kind::Refuse, Reach::Connection, "08S01", kEveryUse}, false},
        {"ServerGone", {0, Kind::Refuse, Reach::FromThenOn, "08S01", kEveryUse}, false},
        {"AnswerLost", {0, Kind::DoAndRefuse, Reach::Once, "08S01", kStatements}, true},
        {"Deadlock", {0, Kind::Refuse, Reach::Once, "40001", kEveryCall}, false},
        {"DeadlockWhoseWorkIsDone",
         {0, Kind::DoAndRefuse, Reach::Once, "40001", kStatements},
         false},
        {"TimeOut", {0, Kind::Refuse, Reach::Once, "HYT00", kEveryCall}, false},
        {"TimeOutOfWorkDone", {0, Kind::DoAndRefuse, Reach::Once, "HYT00", kStatements}, false},
        {"TimeOutsFromThenOn", {0, Kind::Refuse, Reach::FromThenOn, "HYT00", kEveryUse}, false},
        {"NoMemory", {0, Kind::Refuse, Reach::Once, "HY001", kEveryCall}, false},
        {"TooLong", {0, Kind::Refuse, Reach::Once, "22001", kEveryCall}, false},
        {"Integrity", {0, Kind::Refuse, Reach::Once, "23000", kEveryCall}, false},
        {"IntegrityOfWorkDone", {0, Kind::DoAndRefuse, Reach::Once, "23000", kStatements}, false},
        {"NoTable", {0, Kind::Refuse, Reach::Once, "42S02", kEveryCall}, false},
        {"Remark", {0, Kind::SucceedWithRemark, Reach::Once, "01004", kEveryCall}, false},
        {"RemarksFromThenOn",
         {0, Kind::SucceedWithRemark, Reach::FromThenOn, "01004", kEveryCall},
         false},
        {"Slow", {0, Kind::Wait, Reach::Once, "", kEveryCall}, false},
        {"SlowFromThenOn", {0, Kind::Wait, Reach::FromThenOn, "", kEveryCall}, false},
    };
    std::vector<Fault> chosen;
    for (const Fault& fault : all)
    {
        const bool waits = fault.plan.kind == Kind::Wait;
        if (Wanted() == "waits" ? waits : !waits && (fault.gravest || Wanted() == "all"))
        {
            chosen.push_back(fault);
        }
    }
    return chosen;
}

void PrintTo(const Fault& fault, std::ostream* stream)
{
    *stream << fault.name;
}

/// All runs of one scenario with one kind of fault.
class Trial
{
public:
    Trial(faults::FaultRun& run, const Scenario& scenario, const Plan& plan)
        : m_run(run), m_scenario(scenario), m_plan(plan)
    {
    }

    /// The number of runs.
    std::uint64_t FailEachCall()
    {
        m_clean = m_run.Run(m_scenario, m_plan);
        ExpectForetold(m_clean, Foresight{{}, false, m_scenario.world.journalMissing});
        std::uint64_t runs = 1;
        for (; !testing::Test::HasFailure(); ++runs)
        {
            m_plan.failing = runs;
            const Shown shown = m_run.Run(m_scenario, m_plan);
            if (shown.faults == 0 && runs > m_clean.counted)
            {
                return runs;
            }
            SCOPED_TRACE(faults::Describe(m_clean.log, runs));
            const bool keepsConnection = !m_scenario.world.sessions[0].calls[0].onCopy;
            ExpectForetold(shown, faults::Foresee(m_clean.log, m_plan, keepsConnection));
            if (m_plan.kind == Kind::Wait)
            {
                EXPECT_GE(shown.elapsed, std::chrono::milliseconds(50));
            }
        }
        return runs;
    }

private:
    /// Events may have had to wait; where they end is compared in the journal.
    static void AllowSpooled(const std::vector<model::Answer>& seen,
                             std::vector<model::Answer>& told)
    {
        for (std::size_t index = 0; index < seen.size() && index < told.size(); ++index)
        {
            if (told[index].journal == model::Journal::Written &&
                seen[index].journal == model::Journal::Spooled)
            {
                told[index].journal = model::Journal::Spooled;
            }
        }
    }

    void ExpectForetold(const Shown& shown, const Foresight& foresight) const
    {
        model::Told told =
            model::Tell(m_scenario.world, shown.seen.reportFileIds, foresight.mishaps);
        if (foresight.journalHurt)
        {
            AllowSpooled(shown.seen.results.answers[0], told.results.answers[0]);
        }
        EXPECT_EQ(model::Differences(shown.seen.results, told.results), "")
            << "problem: " << shown.problem;
        EXPECT_EQ(!shown.problem.empty(), foresight.noticed) << shown.problem;
    }

    faults::FaultRun& m_run;
    const Scenario& m_scenario;
    Plan m_plan;
    Shown m_clean;
};

/// Shares of the scenarios, so that they run side by side: many of those that mostly wait.
std::size_t Shares()
{
    return Wanted() == "waits" ? 31 : 4;
}

class DatabaseFault : public testing::TestWithParam<std::tuple<Fault, std::size_t>>
{
};

void FailEachCallOfShare(faults::FaultRun& run, const Fault& fault, std::size_t share)
{
    std::uint64_t runs = 0;
    const std::vector<Scenario>& scenarios = faults::AllScenarios();
    for (std::size_t index = share; index < scenarios.size(); index += Shares())
    {
        SCOPED_TRACE(scenarios[index].name);
        runs += Trial(run, scenarios[index], fault.plan).FailEachCall();
        if (testing::Test::HasFailure())
        {
            return;
        }
    }
    std::cout << fault.name << ": " << runs << " runs\n";
}

TEST_P(DatabaseFault, IsAnsweredAsForetoldWhicheverCallFails)
{
    faults::FaultRun run;
    FailEachCallOfShare(run, std::get<0>(GetParam()), std::get<1>(GetParam()));
}

/// Drivers of servers have wide entry points, which the library calls; so has SQLite's on Windows.
class WideDatabaseFault : public DatabaseFault
{
};

TEST_P(WideDatabaseFault, IsAnsweredAsForetoldWhicheverCallFails)
{
    faults::FaultRun run(fault_driver::Entries::WideAsWell);
    FailEachCallOfShare(run, std::get<0>(GetParam()), std::get<1>(GetParam()));
}

std::string NameOf(const testing::TestParamInfo<DatabaseFault::ParamType>& test)
{
    return std::string(std::get<0>(test.param).name) + std::to_string(std::get<1>(test.param));
}

/// The gravest alone: what differs is how a call and a message cross. Of all scenarios where every
/// kind is asked for, of one share otherwise.
std::vector<Fault> WideFaults()
{
    std::vector<Fault> chosen;
    for (const Fault& fault : ChosenFaults())
    {
        if (fault.gravest)
        {
            chosen.push_back(fault);
        }
    }
    return chosen;
}

std::size_t WideShares()
{
    return Wanted() == "all" ? Shares() : 1;
}

INSTANTIATE_TEST_SUITE_P(Kinds, DatabaseFault,
                         testing::Combine(testing::ValuesIn(ChosenFaults()),
                                          testing::Range(std::size_t{0}, Shares())),
                         NameOf);

INSTANTIATE_TEST_SUITE_P(Kinds, WideDatabaseFault,
                         testing::Combine(testing::ValuesIn(WideFaults()),
                                          testing::Range(std::size_t{0}, WideShares())),
                         NameOf);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(WideDatabaseFault);

} // namespace
