#pragma once

#include <cstdint>
#include <string>

// The amount conversions step by step, each as slowly as its rule is told; what the real ones give
// is compared with.
namespace literal
{

/// Saturates, as the runtime's own conversion does.
std::int64_t Atoi64(const std::string& text);

std::int64_t TextToUnits(std::string s, std::uint16_t& decimals);
std::string UnitsToText(std::int64_t units);
double UnitsToAmount(std::int64_t units);
std::int64_t AmountToUnits(double value);

} // namespace literal
