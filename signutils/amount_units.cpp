#include "signutils/amount_units.h"

#include "support/numbers.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <limits>

namespace
{

constexpr std::size_t kUnitDigits = 7;
constexpr std::size_t kShownDecimals = kUnitDigits - 1U;
constexpr std::uint64_t kUnitsPerMain = 10'000'000U;
constexpr std::uint64_t kUnitsPerMillionth = 10U;
constexpr double kMillionthsPerMain = 1e6;
constexpr double kNudge = 0.0001;
constexpr std::uint64_t kLargest = std::numeric_limits<std::int64_t>::max();

// What is left to multiply by, and the largest number that can bear it, for each number of fraction
// digits. More than seven of them are not cut: the value is then scaled by their number.
struct Scale
{
    std::uint64_t factor;
    std::uint64_t largest;
};

constexpr std::array<Scale, kUnitDigits + 1U> kScales = []
{
    std::array<Scale, kUnitDigits + 1U> scales{};
    std::uint64_t factor = kUnitsPerMain;
    for (Scale& scale : scales)
    {
        scale = {factor, kLargest / factor};
        factor /= 10U;
    }
    return scales;
}();

// The digits of an amount text, whatever stands between them.
struct AmountDigits
{
    std::uint64_t number = 0; // that they make; the largest there is when they are too many
    std::size_t count = 0;
    std::size_t wholeCount = 0; // of those before the separator
    bool separated = false;

    void Take(unsigned digit) noexcept
    {
        // With one more digit it would be beyond the units.
        constexpr std::uint64_t kFull = 1'000'000'000'000'000'000U;
        number = number < kFull ? number * 10U + digit : std::numeric_limits<std::uint64_t>::max();
        ++count;
    }

    void Separate() noexcept
    {
        separated = true;
        wholeCount = count;
    }

    std::size_t FractionCount() const noexcept { return separated ? count - wholeCount : 0U; }

    std::int64_t Units(bool negative) const noexcept
    {
        using Limits = std::numeric_limits<std::int64_t>;
        const Scale& scale = kScales[std::min(FractionCount(), kUnitDigits)];
        if (number > scale.largest)
        {
            return negative ? Limits::min() : Limits::max();
        }
        const auto units = static_cast<std::int64_t>(number * scale.factor);
        return negative ? -units : units;
    }
};

unsigned DigitOf(char character) noexcept
{
    return static_cast<unsigned char>(character) - unsigned{'0'};
}

// The last comma or point separates.
AmountDigits FindDigits(std::string_view text) noexcept
{
    AmountDigits digits;
    for (const char character : text)
    {
        if (const unsigned digit = DigitOf(character); digit < 10U)
        {
            digits.Take(digit);
        }
        else if (character == '.' || character == ',')
        {
            digits.Separate();
        }
    }
    return digits;
}

// The character at `separator` separates, whichever it is: a digit there is lost.
AmountDigits FindDigits(std::string_view text, std::size_t separator) noexcept
{
    AmountDigits digits;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (i == separator)
        {
            digits.Separate();
        }
        else if (const unsigned digit = DigitOf(text[i]); digit < 10U)
        {
            digits.Take(digit);
        }
    }
    return digits;
}

// The point and the millionths, of six digits.
char* WriteFraction(char* at, std::uint64_t millionths) noexcept
{
    *at++ = '.';
    for (std::size_t i = kShownDecimals; i > 0; --i)
    {
        at[i - 1U] = static_cast<char>('0' + millionths % 10U);
        millionths /= 10U;
    }
    return at + kShownDecimals;
}

// Seven zeros in front of the number, sign included, put the sign of a negative amount below one
// among the digits; kept as it is.
char* WriteNegativeBelowOne(char* at, std::int64_t units) noexcept
{
    std::array<char, kUnitDigits + kAmountTextSize> padded{};
    padded.fill('0');
    const char* const end =
        std::to_chars(padded.data() + kUnitDigits, padded.data() + padded.size(), units).ptr;
    const char* const fraction = end - kUnitDigits;
    *at++ = fraction[-1];
    *at++ = '.';
    return std::copy(fraction, fraction + kShownDecimals, at);
}

char* WriteAmount(char* at, char* end, std::int64_t units) noexcept
{
    auto magnitude = static_cast<std::uint64_t>(units);
    if (units < 0)
    {
        magnitude = 0U - magnitude;
        if (magnitude < kUnitsPerMain)
        {
            return WriteNegativeBelowOne(at, units);
        }
        *at++ = '-';
    }
    at = std::to_chars(at, end, magnitude / kUnitsPerMain).ptr;
    return WriteFraction(at, magnitude % kUnitsPerMain / kUnitsPerMillionth);
}

} // namespace

std::int64_t AmountTextToUnits(std::string_view text, std::uint16_t& decimals) noexcept
{
    text = text.substr(0, text.find('\0'));
    std::size_t separator = std::string_view::npos;
    if (decimals != kUnknownDecimals && decimals != 0 && text.size() > decimals)
    {
        separator = text.size() - decimals - 1U;
    }
    const AmountDigits digits =
        decimals == kUnknownDecimals ? FindDigits(text) : FindDigits(text, separator);
    if (decimals == kUnknownDecimals || digits.separated)
    {
        decimals = static_cast<std::uint16_t>(digits.FractionCount());
    }
    return digits.Units(separator != 0 && text.starts_with('-'));
}

std::int64_t AmountTextToUnits(const char* text, std::uint16_t& decimals) noexcept
{
    return AmountTextToUnits(std::string_view(text == nullptr ? "" : text), decimals);
}

std::string_view UnitsToAmountText(std::int64_t units,
                                   std::array<char, kAmountTextSize>& text) noexcept
{
    char* const end = WriteAmount(text.data(), text.data() + text.size(), units);
    *end = '\0';
    return {text.data(), static_cast<std::size_t>(end - text.data())};
}

TSimpleString UnitsToAmountText(std::int64_t units)
{
    std::array<char, kAmountTextSize> buffer{};
    const std::string_view text = UnitsToAmountText(units, buffer);
    return {text.data(), text.size()};
}

std::int64_t AmountToUnits(double value) noexcept
{
    if (value > 0.0)
    {
        value += kNudge;
    }
    else if (value < 0.0)
    {
        value -= kNudge;
    }
    // Sign, point and decimals beside the digits of the largest double.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 10> text{};
    const char* const end = std::to_chars(text.data(), text.data() + text.size(), value,
                                          std::chars_format::fixed, kShownDecimals)
                                .ptr;
    std::uint16_t decimals = kShownDecimals;
    return AmountTextToUnits({text.data(), static_cast<std::size_t>(end - text.data())}, decimals);
}

double UnitsToAmount(std::int64_t units) noexcept
{
    // The value of the text, whatever the locale. A division rounds as reading the text does while
    // both numbers are exact.
    constexpr std::int64_t kExact = std::int64_t{1} << std::numeric_limits<double>::digits;
    const std::int64_t millionths = units / std::int64_t{kUnitsPerMillionth};
    if (millionths > kExact || millionths < -kExact)
    {
        std::array<char, kAmountTextSize> text{};
        return support::ToDouble(UnitsToAmountText(units, text).data());
    }
    // The sign of a negative amount below a tenth stands behind the point of its text and ends it.
    constexpr std::int64_t kTenth = kUnitsPerMain / 10U;
    if (units < 0 && units > -kTenth)
    {
        return 0.0;
    }
    return static_cast<double>(millionths) / kMillionthsPerMain;
}
