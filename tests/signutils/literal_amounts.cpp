#include "tests/signutils/literal_amounts.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace literal
{

// Saturates, as the runtime's own conversion does.
std::int64_t Atoi64(const std::string& text)
{
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    std::size_t at = 0;
    const bool negative = !text.empty() && text[0] == '-';
    std::uint64_t value = 0;
    bool beyond = false;
    for (at = negative ? 1 : 0; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
    {
        const auto digit = static_cast<std::uint64_t>(text[at] - '0');
        beyond = beyond || value > (kMost - digit) / 10U;
        value = beyond ? kMost : value * 10U + digit;
    }
    if (negative)
    {
        return beyond ? std::numeric_limits<std::int64_t>::min()
                      : -static_cast<std::int64_t>(value);
    }
    return static_cast<std::int64_t>(value);
}

std::int64_t TextToUnits(std::string s, std::uint16_t& decimals)
{
    long sep = -1;
    if (decimals == 0xFFFF)
    {
        for (const char separator : {',', '.'})
        {
            if (const std::size_t last = s.rfind(separator); last != std::string::npos)
            {
                sep = std::max(sep, static_cast<long>(last));
            }
        }
        if (sep == -1)
        {
            decimals = 0;
        }
    }
    else if (decimals != 0)
    {
        sep = static_cast<long>(s.size()) - decimals - 1;
    }
    if (sep >= 0)
    {
        s[static_cast<std::size_t>(sep)] = '.';
    }
    std::string kept;
    for (long i = 0; i < static_cast<long>(s.size()); ++i)
    {
        const char c = s[static_cast<std::size_t>(i)];
        if ((c == '.' && i == sep) || (c == '-' && i == 0) || (c >= '0' && c <= '9'))
        {
            kept += c;
        }
    }
    if (const std::size_t pos = kept.find('.'); pos != std::string::npos)
    {
        const std::size_t f = kept.size() - pos - 1U;
        decimals = static_cast<std::uint16_t>(f);
        kept = kept.substr(0, pos) + kept.substr(pos + 1U);
        for (std::size_t i = f; i < 7; ++i)
        {
            kept += "0";
        }
    }
    else
    {
        kept += "0000000";
    }
    return Atoi64(kept);
}

std::string UnitsToText(std::int64_t units)
{
    const std::string padded = "0000000" + std::to_string(units);
    std::string whole = padded.substr(0, padded.size() - 7U);
    const std::string fraction = padded.substr(padded.size() - 7U, 6);
    while (whole.size() > 1 && whole[0] == '0')
    {
        whole.erase(0, 1);
    }
    return whole + "." + fraction;
}

double UnitsToAmount(std::int64_t units)
{
    const std::string text = UnitsToText(units);
    std::string alt = text;
    alt[alt.size() - 7U] = ',';
    const double a = std::atof(text.c_str());
    const double b = std::atof(alt.c_str());
    const bool first = (a > b && a > 0.0) || (b > a && a < 0.0);
    return first ? a : b;
}

std::int64_t AmountToUnits(double value)
{
    if (value > 0.0)
    {
        value += 0.0001;
    }
    else if (value < 0.0)
    {
        value -= 0.0001;
    }
    std::array<char, 512> text{};
    std::snprintf(text.data(), text.size(), "%.6f", value);
    std::uint16_t decimals = 6;
    return TextToUnits(text.data(), decimals);
}

} // namespace literal
