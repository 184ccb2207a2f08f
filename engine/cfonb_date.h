#pragma once

#include <string>
#include <string_view>

namespace engine
{

/// "DDMMY": the year is the nearest to today's that ends in the digit. YYYYMMDD, empty when it is
/// no date.
std::string DateOfOneDigitYear(std::string_view zone);
/// "DDMMYY", from 1970 to 2069.
std::string DateOfTwoDigitYear(std::string_view zone);
/// "YYYYMMDD", empty when it is no date.
std::string DateOfFourDigitYear(std::string_view zone);

/// The same for a given year of today; tests.
std::string DateOfOneDigitYear(std::string_view zone, int thisYear);

} // namespace engine
