#pragma once

#include "tests/model/expected.h"
#include "tests/model/mishaps.h"
#include "tests/model/scenario.h"

#include <cstdint>
#include <vector>

namespace model
{

/// What the library must answer and leave behind, told from the tables alone.
struct Told
{
    Results results;
    std::vector<Outcomes> outcomes; ///< of each session
};

/// `reportFileIds` are the identifiers that the hand-off gave, in their order: the one thing that
/// the model cannot know. `mishaps` are those of the first session's calls, in their order.
Told Tell(const World& world, const std::vector<std::uint32_t>& reportFileIds,
          const std::vector<Mishaps>& mishaps = {});

} // namespace model
