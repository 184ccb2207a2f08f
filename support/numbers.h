#pragma once

#include <cstdint>

namespace support
{

/// Blanks skipped, one sign, leading decimal digits; 0 when there are none. Out of range saturates,
/// so that no large number turns into a small one. Null counts as empty.
std::int32_t ToInt32(const char* text) noexcept;
std::int64_t ToInt64(const char* text) noexcept;

/// Decimal number with a point, whatever the locale; stops at the first character that does not
/// fit; no hexadecimal form, no inf, no nan; 0 when there is none. A number too large for a double
/// becomes the largest finite one.
double ToDouble(const char* text) noexcept;

} // namespace support
