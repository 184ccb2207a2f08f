#pragma once

#include "tests/model/plain_rules.h"
#include "tests/model/scenario.h"

#include <cstddef>
#include <vector>

// A world small enough to be judged whole: three holders with a certificate each, up to three
// signers, five amounts, every flag. A cell is one rule in one environment.

namespace model
{

/// Who signs what, and for how much.
struct Environment
{
    Tables tables;   ///< the three holders, each free or in opposition
    Session session; ///< VEU, the amounts, and one call with the list of signers
};

/// Every list of up to three of the holders and a stranger, each five amounts, each set of holders
/// in opposition, VEU on and off.
std::size_t EnvironmentCount();
/// `tag` ends every name, so that environments can share a database.
Environment EnvironmentAt(std::size_t index, const Text& tag = Text());

/// Every rule: two holders or nobody in their places, every flag, profiles and levels with a
/// meaning and one without.
std::size_t RuleCount();
Rule RuleAt(std::size_t index, const Text& tag = Text());

/// The signers of the environment's call, as the session keeps them.
std::vector<Signer> SignersOf(const Environment& environment);

} // namespace model
