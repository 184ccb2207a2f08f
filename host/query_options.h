#pragma once

#include "host/option_values.h"
#include "host/query.h"

#include <cstddef>
#include <optional>
#include <string>

namespace host
{

/// Adds "column = value" for an option that was given. The value must have a place in
/// Windows-1252, as what it is compared with.
void FilterBy(const OptionValues& values, const std::string& option, const std::string& column,
              Conditions& conditions);

/// Adds --since and --until on a column of local times.
void FilterByTime(const OptionValues& values, const std::string& column, Conditions& conditions);

/// Adds --amount-from and --amount-to on a column of amounts. Both belong to the range.
void FilterByAmount(const OptionValues& values, const std::string& column, Conditions& conditions);

/// The bounds themselves, plain decimals. Raise UsageRefusal for what is none.
std::optional<std::string> LeastAmount(const OptionValues& values);
std::optional<std::string> LargestAmount(const OptionValues& values);

/// The bounds of --since and --until as database time stamps ("2026-03-29 00:00:00"); the later
/// bound covers the whole day, minute or second that it names. Raise UsageRefusal for what is no
/// time.
std::optional<std::string> SinceTime(const OptionValues& values);
std::optional<std::string> UntilTime(const OptionValues& values);

/// --limit, 50 when not given, at least 1.
std::size_t LimitFrom(const OptionValues& values);

/// The number of a named choice such as --verdict. Raises UsageRefusal that lists the names.
struct Choice
{
    const char* name;
    int number;
};
int ChoiceFrom(const OptionValue& value, const Choice* choices, std::size_t count);

} // namespace host
