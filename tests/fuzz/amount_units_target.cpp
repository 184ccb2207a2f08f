#include "signutils/amount_units.h"
#include "tests/fuzz/target.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

// The four amount conversions beside their steps written out one by one. An input is a number of
// decimals, a line feed and an amount text, whose first bytes also serve as a double and as units.

namespace
{

// Saturates, as the runtime's own conversion does.
std::int64_t LiteralAtoi64(const std::string& text)
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

std::int64_t LiteralTextToUnits(std::string s, std::uint16_t& decimals)
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
    return LiteralAtoi64(kept);
}

std::string LiteralUnitsToText(std::int64_t units)
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

double LiteralUnitsToAmount(std::int64_t units)
{
    const std::string text = LiteralUnitsToText(units);
    std::string alt = text;
    alt[alt.size() - 7U] = ',';
    const double a = std::atof(text.c_str());
    const double b = std::atof(alt.c_str());
    const bool first = (a > b && a > 0.0) || (b > a && a < 0.0);
    return first ? a : b;
}

std::int64_t LiteralAmountToUnits(double value)
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
    return LiteralTextToUnits(text.data(), decimals);
}

template <typename Value>
Value FromBytes(std::string_view bytes)
{
    Value value{};
    std::string whole(bytes.substr(0, sizeof value));
    whole.resize(sizeof value);
    std::memcpy(&value, whole.data(), sizeof value);
    return value;
}

void CheckText(const std::string& text, std::uint16_t decimals)
{
    std::uint16_t expectedDecimals = decimals;
    const std::int64_t expected = LiteralTextToUnits(text, expectedDecimals);
    const std::int64_t units = AmountTextToUnits(text.c_str(), decimals);
    fuzz::Require(units == expected, "other units");
    fuzz::Require(decimals == expectedDecimals, "other decimals");
}

void CheckUnits(std::int64_t units)
{
    const std::string text = UnitsToAmountText(units).SafeGetString();
    fuzz::Require(text == LiteralUnitsToText(units), "another text");
    fuzz::Require(UnitsToAmount(units) == LiteralUnitsToAmount(units), "another amount");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = fuzz::View(data, size);
    const std::size_t end = bytes.find('\n');
    const std::string decimals(bytes.substr(0, end));
    const std::string_view rest =
        end == std::string_view::npos ? std::string_view() : bytes.substr(end + 1U);
    const std::string text(rest.substr(0, rest.find('\0')));

    CheckText(text, static_cast<std::uint16_t>(std::strtoul(decimals.c_str(), nullptr, 10)));
    CheckUnits(FromBytes<std::int64_t>(rest));
    CheckUnits(LiteralAtoi64(text));
    for (const double value : {FromBytes<double>(rest), std::atof(text.c_str())})
    {
        fuzz::Require(AmountToUnits(value) == LiteralAmountToUnits(value),
                      "other units of a double");
    }
    return 0;
}
