#pragma once

#include "tests/model/expected.h"
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
/// the model cannot know.
Told Tell(const World& world, const std::vector<std::uint32_t>& reportFileIds);

} // namespace model
