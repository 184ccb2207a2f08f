#include "support/numbers.h"

#include <charconv>
#include <cstddef>
#include <limits>
#include <system_error>

namespace
{

bool IsBlank(char character) noexcept
{
    return character == ' ' || (character >= '\t' && character <= '\r');
}

bool IsDigit(char character) noexcept
{
    return character >= '0' && character <= '9';
}

/// Skips blanks and one sign; true for a minus.
bool SkipSign(const char*& text) noexcept
{
    while (IsBlank(*text))
    {
        ++text;
    }
    const bool negative = *text == '-';
    if (negative || *text == '+')
    {
        ++text;
    }
    return negative;
}

template <typename Integer>
Integer Saturating(const char* text) noexcept
{
    if (text == nullptr)
    {
        return 0;
    }
    const bool negative = SkipSign(text);
    // Counted downwards, since the smallest value has no positive counterpart.
    constexpr Integer smallest = std::numeric_limits<Integer>::min();
    constexpr Integer largest = std::numeric_limits<Integer>::max();
    Integer value = 0;
    for (; IsDigit(*text); ++text)
    {
        const auto digit = static_cast<Integer>(*text - '0');
        if (value < (smallest + digit) / 10)
        {
            return negative ? smallest : largest;
        }
        value = static_cast<Integer>(value * 10 - digit);
    }
    if (negative)
    {
        return value;
    }
    return value == smallest ? largest : static_cast<Integer>(-value);
}

const char* SkipDigits(const char* text) noexcept
{
    while (IsDigit(*text))
    {
        ++text;
    }
    return text;
}

const char* SkipExponent(const char* text) noexcept
{
    if (*text != 'e' && *text != 'E')
    {
        return text;
    }
    const char* digits = text + 1;
    if (*digits == '+' || *digits == '-')
    {
        ++digits;
    }
    return IsDigit(*digits) ? SkipDigits(digits) : text;
}

/// The end of the number that starts at `text`; `text` itself when there is none.
const char* EndOfNumber(const char* text) noexcept
{
    const char* end = SkipDigits(text);
    std::ptrdiff_t digits = end - text;
    if (*end == '.')
    {
        const char* const fraction = end + 1;
        end = SkipDigits(fraction);
        digits += end - fraction;
    }
    return digits == 0 ? text : SkipExponent(end);
}

/// Whether a number out of range is too large rather than too small: whether its first significant
/// digit stands before the point once the exponent has moved it.
bool IsTooLarge(const char* text) noexcept
{
    while (*text == '0')
    {
        ++text;
    }
    const char* position = SkipDigits(text);
    std::int64_t place = position - text;
    if (*position == '.')
    {
        ++position;
        for (; place <= 0 && *position == '0'; ++position)
        {
            --place;
        }
        position = SkipDigits(position);
    }
    const std::int64_t exponent =
        *position == 'e' || *position == 'E' ? support::ToInt32(position + 1) : 0;
    return place + exponent > 0;
}

} // namespace

namespace support
{

std::int32_t ToInt32(const char* text) noexcept
{
    return Saturating<std::int32_t>(text);
}

std::int64_t ToInt64(const char* text) noexcept
{
    return Saturating<std::int64_t>(text);
}

double ToDouble(const char* text) noexcept
{
    if (text == nullptr)
    {
        return 0.0;
    }
    const bool negative = SkipSign(text);
    const char* const end = EndOfNumber(text);
    double value = 0.0;
    if (std::from_chars(text, end, value).ec == std::errc::result_out_of_range)
    {
        value = IsTooLarge(text) ? std::numeric_limits<double>::max() : 0.0;
    }
    return negative ? -value : value;
}

} // namespace support
