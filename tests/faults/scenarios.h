#pragma once

#include "tests/model/scenario.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace faults
{

enum class Pool
{
    Off,
    Empty, ///< on, nothing waits in it
    Warm,  ///< on, connections wait in it
};

/// One check in one world, and a second one on the same session that shows what is left of it.
struct Scenario
{
    std::string name;
    model::World world;
    Pool pool = Pool::Off;
    bool eventWaits = false; ///< in the spool, before the check
    bool rowByRow = false;   ///< the driver reads rows when they are asked for
};

/// For the messages of a test.
void PrintTo(const Scenario& scenario, std::ostream* stream);

/// Every verdict, every branch of the rules, the journal there and away, reports, the pool.
const std::vector<Scenario>& AllScenarios();

} // namespace faults
