#pragma once

#include "host/authority/map_text.h"
#include "host/connection.h"
#include "host/rulebook/rule_book.h"

#include <string>
#include <vector>

class CDatabase;

namespace authority
{

/// One contract as checks meet it under one key: with every other contract of that key, whose rules
/// count as well.
struct ContractUnderKey
{
    rulebook::ContractKey key;
    rulebook::RuleBook book;
    std::vector<std::int64_t> types; ///< order types that the contract has terms for
    /// A type without terms, standing for all of them, when the contract can be met there.
    std::optional<std::int64_t> otherType;
};

/// Adds the keys that the contract's rules or it itself stand under, each once.
void AddKeys(std::vector<rulebook::ContractKey>& keys, const rulebook::Contract& contract);

/// Every key of the contract. Raises host::Refusal when there is no such contract or the database
/// cannot be read.
std::vector<ContractUnderKey> ReadContract(CDatabase& database, const host::Connection& connection,
                                           const std::string& cuid);

/// Judges the contract on a copy. Raises host::Refusal.
ContractMaps MapContract(CDatabase& database, const host::Connection& connection,
                         const std::string& cuid);

} // namespace authority
