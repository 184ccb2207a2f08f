#pragma once

#include "host/authority/authority_map.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace authority
{

/// The maps of one contract, with what has to be said beside them; texts are UTF-8.
struct ContractMaps
{
    std::string cuid;
    std::vector<AuthorityMap> maps; ///< one for each key and order type
    std::vector<std::string> notes;
    std::string provenance;
    std::size_t judged = 0; ///< orders that the library decided for it
};

/// For a terminal of 80 columns.
std::string AsText(const ContractMaps& maps);
nlohmann::ordered_json AsJson(const ContractMaps& maps);
/// One page that needs nothing else.
std::string AsHtml(const ContractMaps& maps);

/// Neighbouring cells that no row tells apart become one, where only one of the two amounts has
/// limits.
AuthorityMap WithoutEqualNeighbours(AuthorityMap map);

/// "order type 1", "every other order type".
std::string TypeInWords(const AuthorityMap& map);
/// "partner BODENSEE, service CCT, client FINANZ, protocol 9, bank's side".
std::string KeyInWords(const rulebook::ContractKey& key);

/// What the rows tell of three and more signers.
std::string LargerSets(const AuthorityMap& map);

/// Said of a map without any rule, and of the rows that are left out.
inline constexpr const char* kNothingAccepted =
    "No rule, whoever signs and whatever the amounts: nothing is accepted.";
inline constexpr const char* kOthersWithoutRule =
    "Nobody, every single signer and every two signers not listed: no rule.";

/// Whether no order of these signers meets a rule.
bool IsWithoutRule(const Row& row);

/// "accepted", "refused" or "no rule".
const char* OutcomeOf(unsigned int verdict);

} // namespace authority
