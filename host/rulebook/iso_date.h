#pragma once

#include <string_view>

namespace rulebook
{

/// Whether the text is a day of the calendar, such as 2027-06-30.
bool IsIsoDate(std::string_view text);

} // namespace rulebook
