#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace listing
{

/// One record by RFC 4180: fields separated by commas, ended by CR LF. A field with a comma, quote
/// or line end stands in quotes, with its quotes doubled.
std::string CsvLine(const std::vector<std::string>& fields);

/// The value as a field: null is empty, an amount has its decimals. A text that a spreadsheet would
/// take for a formula is kept from it by GuardedFromFormulas.
std::string CsvField(const nlohmann::ordered_json& value);

/// Puts an apostrophe before a text that a spreadsheet would calculate: one that begins, behind
/// blanks and apostrophes, with = + - @, a tab, a line end or a wide form of these signs. So the
/// apostrophe can be taken off again: exactly such texts that begin with one have one too many.
std::string GuardedFromFormulas(std::string_view utf8);

} // namespace listing
