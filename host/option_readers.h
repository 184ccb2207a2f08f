#pragma once

#include "host/option_values.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace host
{

// Settings as the library takes them. Each raises UsageRefusal, naming origin, value and remedy.

/// The value, or a refusal that tells how to give it.
const OptionValue& Required(const OptionValues& values, const std::string& name,
                            const std::string& example);

/// Refuses malformed UTF-8 and control characters.
void RefuseUnreadable(const OptionValue& value);

/// The text in Windows-1252. Control characters and what has no place there are refused.
std::string NarrowText(const OptionValue& value);

/// As NarrowText; empty when the option was not given.
std::string OptionalNarrowText(const OptionValues& values, const std::string& name);

/// As NarrowText, at most `longest` characters.
std::string NarrowTextUpTo(const OptionValue& value, std::size_t longest);

/// A partner, service or client: 1 to 8 characters and no apostrophe, which would change the
/// look-up of the rules.
std::string ContractIdentifier(const OptionValue& value);

/// A whole number of digits only, from `smallest` to `largest`.
std::uint32_t WholeNumber(const OptionValue& value, std::uint32_t largest,
                          std::uint32_t smallest = 0);

} // namespace host
