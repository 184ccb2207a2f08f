#pragma once

#include "host/rulebook/rule_book.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace replay
{

/// What the history does not hold of an order.
struct Way
{
    std::int64_t type = 0;
    bool isOtherTypes = false; ///< `type` stands for all that have no terms
    bool isDistributed = false;
};

/// What the user knows of it.
struct AskedWays
{
    std::optional<std::int64_t> type;
    std::optional<bool> isDistributed;
};

/// The rules that past orders are judged by. Books with one half of the change each tell what comes
/// of holders and what of rules.
struct Books
{
    rulebook::RuleBook before;
    rulebook::RuleBook holdersOnly; ///< contracts from before, holders from after
    rulebook::RuleBook rulesOnly;   ///< contracts from after, holders from before
    rulebook::RuleBook after;
    bool changesHolders = false;
    bool changesContracts = false;
};

/// Every way in which an order of the key can have been judged, as far as a check can tell them
/// apart; at least one.
std::vector<Way> WaysOf(const Books& books, const rulebook::ContractKey& key,
                        const AskedWays& asked);

/// "order type 1, VEU off"
std::string InWords(const Way& way);

} // namespace replay
