#pragma once

#include <cstddef>

namespace support
{

/// What WriteSixPlaces writes at most: 16 digits, the point, six places.
inline constexpr std::size_t kSixPlacesSize = 23;

/// Writes a number that is not negative with six decimal places, halves of its exact value rounded
/// to even, and gives the end. Null, with nothing written, for a number from 2^53 on, for one with
/// binary places behind the 52nd and for what is no number: those are rare and left to the caller.
/// Amounts end here, which the general conversion prints ten times slower.
char* WriteSixPlaces(double magnitude, char* text) noexcept;

} // namespace support
