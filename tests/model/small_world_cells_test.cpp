// Cells of the small world through the public class and a real database, drawn by a seed.

#include "tests/model/differences.h"
#include "tests/model/library_run.h"
#include "tests/model/plain_session.h"
#include "tests/model/settings.h"
#include "tests/model/small_world.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <random>

namespace
{

constexpr std::size_t kCellsOfTheSuite = 2000;
constexpr std::size_t kCellsOfADatabase = 20;

template <typename Row>
void Append(std::vector<Row>& rows, const std::vector<Row>& more)
{
    rows.insert(rows.end(), more.begin(), more.end());
}

/// Adds one cell, with holders and a contract of its own.
void AddCell(model::World& world, std::size_t environmentNumber, std::size_t ruleNumber)
{
    const model::Text tag = std::to_wstring(world.sessions.size());
    const model::Environment environment = model::EnvironmentAt(environmentNumber, tag);
    const model::Rule rule = model::RuleAt(ruleNumber, tag);
    Append(world.tables.holders, environment.tables.holders);
    Append(world.tables.certificates, environment.tables.certificates);

    model::Session session = environment.session;
    session.partner = L"P" + tag;
    session.service = L"XCT";
    session.client = L"CLI01";
    model::CurrentRow contract;
    contract.cuid = rule.cuid;
    contract.key = {session.partner, session.service, session.client, 9, 1};
    contract.type = 1;
    contract.profile = rule.profile;
    contract.allHolders = rule.allHolders ? 1 : 0;
    contract.opposition = rule.active ? L"0" : L"1";
    world.tables.current.push_back(contract);
    world.tables.rules.push_back(
        {rule.cuid, rule.huid1, rule.huid2, rule.alone ? 1 : 0, L"1000.00", rule.tlevel});
    world.sessions.push_back(session);
}

TEST(SmallWorldCells, AreJudgedAlikeThroughARealDatabase)
{
    const std::uint64_t seed = model::Setting("SIGNUTILS_MODEL_SEED", std::random_device()());
    const std::size_t cells = model::Setting("SIGNUTILS_MODEL_CELLS", kCellsOfTheSuite);
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<std::size_t> environment(0, model::EnvironmentCount() - 1);
    std::uniform_int_distribution<std::size_t> rule(0, model::RuleCount() - 1);
    model::RealBank bank;
    for (std::size_t done = 0; done < cells;)
    {
        model::World world;
        const std::size_t here = std::min(kCellsOfADatabase, cells - done);
        std::string drawn;
        for (std::size_t index = 0; index < here; ++index)
        {
            const std::size_t environmentNumber = environment(random);
            const std::size_t ruleNumber = rule(random);
            AddCell(world, environmentNumber, ruleNumber);
            drawn += " " + std::to_string(environmentNumber) + "/" + std::to_string(ruleNumber);
        }
        const model::Seen seen = model::RunLibrary(bank, world);
        const model::Told told = model::Tell(world, seen.reportFileIds);
        ASSERT_EQ(model::Differences(seen.results, told.results), "")
            << "seed " << seed << ", environments/rules" << drawn;
        done += here;
    }
    std::cout << cells << " cells through a real database without a difference, seed " << seed
              << '\n';
}

} // namespace
