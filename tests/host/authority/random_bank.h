#pragma once

#include "host/rulebook/rule_book.h"

#include <cstdint>
#include <random>

namespace testing_support
{

/// The key of every contract below.
rulebook::ContractKey RandomBankKey();

/// A rule book of one key with the order type 1 as any database may hold it: blocked holders,
/// shared certificate names, holders without names or certificates, rules that name nobody or one
/// holder twice, limits of every form, two contracts of one key. The same seed gives the same book.
rulebook::RuleBook RandomBank(std::mt19937_64& random);

/// The contract that is always there.
inline constexpr const char* kRandomContract = "C-1";

} // namespace testing_support
