#include "signutils/amount_units.h"

#include "support/format.h"
#include "support/numbers.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace
{

constexpr std::size_t kUnitDigits = 7;
constexpr double kNudge = 0.0001;

// Position of the decimal separator, npos when the text has none. Writes the point there.
std::size_t PlaceSeparator(std::string& text, std::uint16_t& decimals)
{
    std::size_t position = std::string::npos;
    if (decimals == kUnknownDecimals)
    {
        position = text.find_last_of(",.");
        if (position == std::string::npos)
        {
            decimals = 0;
        }
    }
    else if (decimals != 0 && text.size() > decimals)
    {
        // A digit that stands where the separator belongs is lost.
        position = text.size() - decimals - 1U;
    }
    if (position != std::string::npos)
    {
        text[position] = '.';
    }
    return position;
}

// What counts: digits, the point at its place, a minus sign that stands first.
std::string KeepAmountCharacters(const std::string& text, std::size_t separator)
{
    std::string kept;
    kept.reserve(text.size() + kUnitDigits);
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const char character = text[i];
        const bool digit = character >= '0' && character <= '9';
        if (digit || (character == '.' && i == separator) || (character == '-' && i == 0))
        {
            kept += character;
        }
    }
    return kept;
}

} // namespace

std::int64_t AmountTextToUnits(const char* text, std::uint16_t& decimals)
{
    std::string work = text == nullptr ? "" : text;
    const std::size_t separator = PlaceSeparator(work, decimals);
    std::string digits = KeepAmountCharacters(work, separator);

    std::size_t fraction = 0;
    if (const std::size_t point = digits.find('.'); point != std::string::npos)
    {
        fraction = digits.size() - point - 1U;
        decimals = static_cast<std::uint16_t>(fraction);
        digits.erase(point, 1);
    }
    // More than seven fraction digits are not cut: the value is then scaled by their number.
    digits.append(kUnitDigits - std::min(fraction, kUnitDigits), '0');
    return support::ToInt64(digits.c_str());
}

TSimpleString UnitsToAmountText(std::int64_t units)
{
    // Seven zeros in front of the number, sign included, so that a small negative amount has its
    // sign among the digits; kept as it is.
    const std::string padded = support::FormatA("0000000%I64d", static_cast<long long>(units));
    const std::size_t point = padded.size() - kUnitDigits;
    const std::size_t firstKept = std::min(padded.find_first_not_of('0'), point - 1U);
    std::string text = padded.substr(firstKept, point - firstKept);
    text += '.';
    text += padded.substr(point, kUnitDigits - 1U);
    return TSimpleString(text.c_str());
}

std::int64_t AmountToUnits(double value)
{
    if (value > 0.0)
    {
        value += kNudge;
    }
    else if (value < 0.0)
    {
        value -= kNudge;
    }
    const std::string text = support::FormatA("%.6f", value);
    std::uint16_t decimals = kUnitDigits - 1U;
    return AmountTextToUnits(text.c_str(), decimals);
}

double UnitsToAmount(std::int64_t units)
{
    // Numbers are read with a point whatever the locale, so one reading gives the value.
    return support::ToDouble(UnitsToAmountText(units).SafeGetString());
}
