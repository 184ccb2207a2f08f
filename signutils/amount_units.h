#pragma once

#include "support/tsimplestring.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// Amounts are compared and added as signed 64-bit amount units: one unit is 10^-7 of the currency's
// main unit, so 1.00 is 10000000 units.

/// The decimals indicator for "unknown: find the separator in the text".
inline constexpr std::uint16_t kUnknownDecimals = 0xFFFF;

/// Units of an amount text (Windows-1252). `decimals`: kUnknownDecimals; 0 for a whole number; any
/// other N: the separator stands N characters before the end, and the character there is
/// overwritten. On return the number of fraction digits found when there was a separator. More
/// than 7 fraction digits are not cut: the value is then scaled by 10 to that number. A text too
/// short for its decimals has nothing overwritten and counts as a whole number. Saturates. A text
/// ends at its first NUL; null counts as empty.
std::int64_t AmountTextToUnits(std::string_view text, std::uint16_t& decimals) noexcept;
std::int64_t AmountTextToUnits(const char* text, std::uint16_t& decimals) noexcept;

/// Text with a point and six decimals; the seventh is dropped. Negative amounts of fewer than
/// eight digits give malformed text; this is kept.
TSimpleString UnitsToAmountText(std::int64_t units);

/// Room for any such text and a NUL: sign, twelve digits, point, six decimals.
inline constexpr std::size_t kAmountTextSize = 21;
/// The same text in the caller's memory, with a NUL behind it.
std::string_view UnitsToAmountText(std::int64_t units,
                                   std::array<char, kAmountTextSize>& text) noexcept;

/// Units of a double in the main unit, moved 0.0001 away from zero; this magnitude is intended.
std::int64_t AmountToUnits(double value) noexcept;

/// The double, in the main unit, of an amount in units.
double UnitsToAmount(std::int64_t units) noexcept;
