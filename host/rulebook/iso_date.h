#pragma once

#include <cstddef>
#include <string_view>

namespace rulebook
{

/// Characters of a day such as 2027-06-30.
constexpr std::size_t kIsoDateLength = 10;

/// Whether the text is a day of the calendar, such as 2027-06-30.
bool IsIsoDate(std::string_view text);

} // namespace rulebook
