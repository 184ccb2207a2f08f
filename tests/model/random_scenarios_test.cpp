// Library and model side by side over random worlds. A run is told by its seed and its number of
// scenarios; without them the seed is another one each time. SIGNUTILS_MODEL_REDUCE=0 leaves a
// world that differs as it is.

#include "tests/model/differences.h"
#include "tests/model/generators.h"
#include "tests/model/library_run.h"
#include "tests/model/outcome_counts.h"
#include "tests/model/plain_session.h"
#include "tests/model/settings.h"
#include "tests/model/show.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/detail/TestListenerAdapter.h>

#include <chrono>
#include <iostream>
#include <random>
#include <string>
#include <unordered_map>

namespace
{

constexpr int kDefaultScenarios = 5000;
/// Shares of fewer scenarios say nothing.
constexpr int kScenariosToCount = 2500;

std::uint64_t NewSeed()
{
    std::random_device device;
    return (static_cast<std::uint64_t>(device()) << 32) | device();
}

/// Runs worlds through both sides until one differs; that one is reduced and not counted.
class SideBySide
{
public:
    void Check(const model::World& world)
    {
        const model::Seen seen = model::RunLibrary(m_bank, world);
        const model::Told told = model::Tell(world, seen.reportFileIds);
        const std::string differences = model::Differences(seen.results, told.results);
        if (!differences.empty())
        {
            if (!m_differed)
            {
                std::cout << "a difference within scenario "
                          << m_counts.Scenarios() + static_cast<int>(world.sessions.size()) << ":\n"
                          << differences << std::flush;
            }
            m_differed = true;
            RC_FAIL(differences);
        }
        if (!m_differed)
        {
            m_counts.Add(told.outcomes);
        }
    }

    const model::OutcomeCounts& Counts() const { return m_counts; }

private:
    model::RealBank m_bank;
    model::OutcomeCounts m_counts;
    bool m_differed = false;
};

/// Fails the running test at the first difference, with the seed and a reduced world.
void RunScenarios(std::uint64_t seed, int scenarios)
{
    SideBySide sides;
    // The way of RapidCheck's own macros, which take no parameters for one property.
    rc::detail::TestParams parameters;
    parameters.seed = seed;
    parameters.maxSuccess = scenarios; // worlds, of one scenario at least
    parameters.disableShrinking = model::Setting("SIGNUTILS_MODEL_REDUCE", 1) == 0;
    // Both given, since RapidCheck else reads its configuration and prints a seed of that, which is
    // not the run's.
    rc::detail::TestListenerAdapter listener;
    const std::unordered_map<std::string, rc::detail::Reproduce> noCases;
    const auto started = std::chrono::steady_clock::now();
    const rc::detail::TestResult result = rc::detail::checkTestable(
        [&sides, scenarios]
        {
            if (sides.Counts().Scenarios() >= scenarios)
            {
                return;
            }
            const model::World world = *model::AnyWorld();
            sides.Check(world);
        },
        rc::detail::TestMetadata(), parameters, listener, noCases);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - started;

    if (!result.is<rc::detail::SuccessResult>())
    {
        std::ostringstream text;
        rc::detail::printResultMessage(result, text);
        FAIL() << "seed " << seed << ", scenarios " << scenarios << "\n" << text.str();
    }
    const model::OutcomeCounts& counts = sides.Counts();
    std::cout << counts.Scenarios() << " scenarios without a difference, seed " << seed << ", "
              << static_cast<long long>(static_cast<double>(counts.Scenarios()) / seconds.count())
              << " a second\n"
              << counts.Table();
    ASSERT_GE(counts.Scenarios(), scenarios);
    if (scenarios >= kScenariosToCount)
    {
        EXPECT_EQ(counts.Rare(), "") << "fewer than 1 % of the scenarios came upon these";
    }
}

/// Shares of the suite's scenarios, so that they run side by side.
class RandomScenarios : public testing::TestWithParam<int>
{
};

TEST_P(RandomScenarios, LibraryAndModelAgree)
{
    const std::uint64_t seed = model::Setting("SIGNUTILS_MODEL_SEED", NewSeed());
    const auto scenarios =
        static_cast<int>(model::Setting("SIGNUTILS_MODEL_SCENARIOS", kDefaultScenarios));
    RunScenarios(seed + static_cast<std::uint64_t>(GetParam()), scenarios);
}

// Who repeats a run takes the seed that was printed.
TEST(RandomScenariosRun, PrintsNoSeedButItsOwn)
{
    testing::internal::CaptureStderr();
    RunScenarios(7, 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

INSTANTIATE_TEST_SUITE_P(Share, RandomScenarios, testing::Range(0, 4));

} // namespace
