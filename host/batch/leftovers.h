#pragma once

#include "host/option_values.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace batch
{

/// Work files that a killed run left beside orders: they hold the orders in plain text.
struct Leftovers
{
    std::vector<std::string> names; ///< still there
    std::size_t removed = 0;
};

/// --remove-leftovers: a number and s, m, h or d; nothing when it was not given. Raises
/// UsageRefusal.
std::optional<std::chrono::seconds> RemovalAge(const host::OptionValues& values);

/// Finds them among `names` of the folder (absolute, UTF-8) and removes those that are older than
/// `age`. What belongs to an order that is being judged now is none. A lock that a dead host left
/// is taken over and gone by that.
Leftovers TendLeftovers(const std::string& folder, const std::vector<std::string>& names,
                        std::optional<std::chrono::seconds> age);

/// What the operator must hear of; empty when nothing was left.
std::string LeftoverWarning(const std::string& folder, const Leftovers& leftovers);

} // namespace batch
