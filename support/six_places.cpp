#include "support/six_places.h"

#include <charconv>
#include <cstdint>

namespace support
{

namespace
{

constexpr unsigned kBinaryPlaces = 52;
constexpr std::uint64_t kOne = std::uint64_t{1} << kBinaryPlaces;
constexpr std::uint64_t kHalf = kOne / 2;

/// Three decimal places of a fraction in units of 2^-52, which keeps the rest.
std::uint64_t TakeThreePlaces(std::uint64_t& fraction) noexcept
{
    const std::uint64_t scaled = fraction * 1000; // below 2^62
    fraction = scaled % kOne;
    return scaled >> kBinaryPlaces;
}

} // namespace

char* WriteSixPlaces(double magnitude, char* text) noexcept
{
    if (!(magnitude >= 0 && magnitude < 0x1p53))
    {
        return nullptr;
    }
    auto whole = static_cast<std::uint64_t>(magnitude);
    const double scaled = (magnitude - static_cast<double>(whole)) * 0x1p52; // exact
    auto fraction = static_cast<std::uint64_t>(scaled);
    if (static_cast<double>(fraction) != scaled)
    {
        return nullptr;
    }
    std::uint64_t places = TakeThreePlaces(fraction) * 1000;
    places += TakeThreePlaces(fraction);
    places += fraction > kHalf || (fraction == kHalf && places % 2 == 1) ? 1 : 0;
    if (places == 1'000'000)
    {
        ++whole;
        places = 0;
    }
    // A seventh digit before the places keeps their zeros, and makes room for the point.
    char* const end = std::to_chars(text, text + kSixPlacesSize, whole).ptr;
    std::to_chars(end, text + kSixPlacesSize, 1'000'000 + places);
    *end = '.';
    return end + 7;
}

} // namespace support
