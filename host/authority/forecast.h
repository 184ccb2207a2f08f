#pragma once

#include "host/authority/parties.h"
#include "host/scratch/judge.h"

#include <string>
#include <vector>

namespace authority
{

/// Further signers that complete an order.
struct Completion
{
    std::vector<std::size_t> parties; ///< rising
    std::vector<std::string> signers; ///< certificate names that stand for them
    std::string label;
};

/// What may still become of a distributed order.
struct Forecast
{
    std::vector<Party> parties;
    std::vector<std::string> signedBy; ///< labels, in the order of the signers
    scratch::Decision soFar;           ///< on the signatures that are there
    /// All signatures are there: they would be accepted if they came together, too.
    bool isComplete = false;
    /// The smallest sets of at most two further signers that complete it, none of which holds
    /// another; empty when it is complete, or when nobody can complete it.
    std::vector<Completion> completions;
};

/// Asks the library about every completion. `order` is judged as distributed whatever it says.
Forecast ForecastOf(scratch::Judge& judge, const rulebook::RuleBook& book,
                    const scratch::Order& order);

/// Whether the order is complete or further signers can complete it: what a forecast says, without
/// asking for more than one way to do it.
bool CanBeCompleted(scratch::Judge& judge, const rulebook::RuleBook& book,
                    const scratch::Order& order);

/// Nobody can complete it.
bool IsHopeless(const Forecast& forecast);

} // namespace authority
