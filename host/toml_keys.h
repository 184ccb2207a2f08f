#pragma once

#include <cstddef>
#include <string_view>

namespace host
{

/// More parts than any key needs; "a.b.c" has three.
inline constexpr std::size_t kMostKeyParts = 16;

/// The line of the first key of more than kMostKeyParts parts, 0 when there is none. Ask before
/// parsing: the parser makes a table within a table for each part and takes them apart by
/// recursion, so that a key of many thousands ends the process.
std::size_t LineOfKeyWithTooManyParts(std::string_view toml);

} // namespace host
