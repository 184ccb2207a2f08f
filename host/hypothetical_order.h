#pragma once

#include "host/authority/contract_maps.h"
#include "host/option_values.h"
#include "host/scratch/judge.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace host
{

/// An order that nobody has made, as the options of a command describe it.
struct HypotheticalOrder
{
    std::string cuid;
    std::optional<std::int64_t> type; ///< every one that the contract has terms for when not given
    std::optional<rulebook::ContractKey> key; ///< every one of the contract when not given
    scratch::Order order;
    std::vector<std::string> warnings; ///< of the options
    std::string currency;              ///< may be empty where no amount was given in one
};

/// Reads contract, signers, amounts and mode. Raises UsageRefusal.
HypotheticalOrder ReadHypotheticalOrder(const OptionValues& values);

/// Reads contract and order type alone. Raises UsageRefusal.
HypotheticalOrder ReadAskedContract(const OptionValues& values);

/// One kind of order that is asked about, and the rules that it falls under.
struct AskedKind
{
    const scratch::OrderKind& kind;
    const rulebook::RuleBook& book;
    scratch::Copy& copy; ///< holds the book
};

/// Hands every kind of order to `take`, on a copy of its rules. Raises Refusal.
void ForEachKind(const OptionValues& values, const HypotheticalOrder& asked,
                 const std::function<void(const AskedKind& each)>& take);

/// Warns of what the options hardly mean.
void TellWarnings(const HypotheticalOrder& asked);

/// Contract, signers and amounts as lines for people.
std::string InWords(const HypotheticalOrder& asked, const scratch::OrderKind& kind);

} // namespace host
