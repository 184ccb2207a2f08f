#pragma once

#include "host/authority/authority_map.h"
#include "host/connection.h"
#include "host/rulebook/book_change.h"

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <vector>

class CDatabase;

namespace authority
{

/// Orders of the same signers and amounts that are decided otherwise after a change.
struct Redecision
{
    std::string signers;
    std::string veu; ///< "any", "off" or "on"
    Cell cell;
    unsigned int before = scratch::kNoRule;
    unsigned int after = scratch::kNoRule;
};

/// What a change does to one kind of order.
struct KindEffect
{
    AuthorityMap map; ///< kind alone
    std::vector<Redecision> redecisions;
};

/// What a change of rules does to the orders that are decided by them.
struct ChangeOfEffect
{
    std::vector<KindEffect> kinds; ///< those that are decided otherwise
    std::size_t keysJudged = 0;
    std::size_t keysLeft = 0; ///< not judged, there being too many
    std::size_t judged = 0;   ///< orders that the library decided for it
};

/// Judges the orders that the change may reach, by the rules before and after, each on a copy; of
/// at most `mostKeys` different partners, services, clients, protocols and sides. Raises
/// host::Refusal.
ChangeOfEffect EffectOf(CDatabase& database, const host::Connection& connection,
                        const rulebook::RuleBook& before, const rulebook::BookChange& change,
                        std::size_t mostKeys);

std::string AsText(const ChangeOfEffect& effect);
nlohmann::ordered_json AsJson(const ChangeOfEffect& effect);

} // namespace authority
