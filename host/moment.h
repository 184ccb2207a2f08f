#pragma once

#include <string>
#include <string_view>

namespace host
{

/// Whether the text has the shape: 0 stands for a digit, T for a blank or a T, other characters for
/// themselves.
bool HasShape(std::string_view text, std::string_view shape);

/// Whether a text of the shape "0000-00-00T00:00:00", or of its beginning up to a day or a minute,
/// is a day of the calendar with a time of day.
bool IsMoment(const std::string& text);

/// The local time as "2026-03-29 14:05:00".
std::string LocalNow();

} // namespace host
