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

/// Both ends of a range, where they are given.
struct Range
{
    std::optional<std::string> from;
    std::optional<std::string> to;
};

/// --amount-from and --amount-to as plain decimals. Raises UsageRefusal for what is none, and for
/// a range that holds nothing.
Range AmountsFrom(const OptionValues& values);

/// --since and --until as database time stamps ("2026-03-29 00:00:00"); the later end covers the
/// whole day, minute or second that it names. Raises UsageRefusal for what is no time, and for a
/// range that holds nothing.
Range TimesFrom(const OptionValues& values);

/// Refuses a reason code for --reason: a table of texts would find nothing, and that would be read
/// as an answer. Raises UsageRefusal.
void RefuseReasonCode(const OptionValues& values, const std::string& table);

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
