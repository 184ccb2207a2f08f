#pragma once

#include "support/tsimplestring.h"

#include <cstdint>

// Amounts are compared and added as signed 64-bit amount units: one unit is 10^-7 of the currency's
// main unit, so 1.00 is 10000000 units.

/// The decimals indicator for "unknown: find the separator in the text".
inline constexpr std::uint16_t kUnknownDecimals = 0xFFFF;

/// Units of an amount text (Windows-1252). `decimals`: kUnknownDecimals; 0 for a whole number; any
/// other N: the separator stands N characters before the end, and the character there is
/// overwritten. On return the number of fraction digits found when there was a separator. More
/// than 7 fraction digits are not cut: the value is then scaled by 10 to that number. A text too
/// short for its decimals has nothing overwritten and counts as a whole number. Saturates.
std::int64_t AmountTextToUnits(const char* text, std::uint16_t& decimals);

/// Text with a point and six decimals; the seventh is dropped. Negative amounts of fewer than
/// eight digits give malformed text; this is kept.
TSimpleString UnitsToAmountText(std::int64_t units);

/// Units of a double in the main unit, moved 0.0001 away from zero; this magnitude is intended.
std::int64_t AmountToUnits(double value);

/// The double, in the main unit, of an amount in units.
double UnitsToAmount(std::int64_t units);
