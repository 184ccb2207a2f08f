#pragma once

#include "tests/model/scenario.h"

#include <rapidcheck.h>

namespace model
{

/// Scenarios of one world, at most: each session has a contract of its own, all share the holders.
inline constexpr int kMostSessions = 16;

/// Biased to boundaries: limits met exactly and passed by one unit, shared and repeated
/// certificates, apostrophes, accents, NULLs, 0 to 5 signers, several checks on one object.
rc::Gen<World> AnyWorld();

} // namespace model
