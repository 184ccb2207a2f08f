#pragma once

#include <cstdint>
#include <optional>
#include <string>

class CDatabase;

namespace rulebook
{

/// A UTF-8 value as a literal that the connected product stores to the last blank.
std::string Literal(const CDatabase& database, const std::string& value);
/// The same, and NULL for no value.
std::string Literal(const CDatabase& database, const std::optional<std::string>& value);
std::string Literal(const std::optional<std::int64_t>& value);

/// " ORDER BY …": the order of insertion, which the look-ups of a check meet too; nothing on a
/// product that reads in that order of itself.
std::string InReadingOrder(const CDatabase& database);

} // namespace rulebook
