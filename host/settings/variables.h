#pragma once

#include "host/command_table.h"
#include "host/option_values.h"

#include <optional>
#include <string>

namespace host
{

/// SIGNCHECK_HAND_OFF for "hand-off".
std::string VariableOf(const std::string& option);

/// Whether an option can come from its variable. What belongs to one order or one run cannot: left
/// over in an environment it would be taken for the next.
bool MayComeFromEnvironment(const std::string& option);

/// What the option's variable says; nothing when it may not or does not. Raises UsageRefusal for a
/// flag that is neither true nor false.
std::optional<OptionValue> FromEnvironment(const OptionSpec& option);

} // namespace host
