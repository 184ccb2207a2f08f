#include "support/format_number.h"

#include "support/six_places.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

namespace
{

using support::Conversion;

/// A number on its way: what stands before padding zeros, and what stands behind them.
struct Digits
{
    std::string prefix;
    std::string body;
    bool zeroPadded = false;
};

bool IntegerBits(const FormatArgument& argument, std::uint64_t& bits) noexcept
{
    switch (argument.kind)
    {
    case FormatArgument::Kind::Signed:
    case FormatArgument::Kind::Signed64:
        bits = static_cast<std::uint64_t>(argument.signedValue);
        return true;
    case FormatArgument::Kind::Unsigned:
    case FormatArgument::Kind::Unsigned64:
        bits = argument.unsignedValue;
        return true;
    default:
        return false;
    }
}

/// The value as an integer of the conversion's own width, sign extended; wider ones are cut as the
/// Windows runtime cuts them.
std::int64_t SignedValue(std::uint64_t bits, Conversion::Size size) noexcept
{
    switch (size)
    {
    case Conversion::Size::Short:
        return static_cast<std::int16_t>(bits);
    case Conversion::Size::Wide:
        return static_cast<std::int64_t>(bits);
    default:
        return static_cast<std::int32_t>(bits);
    }
}

std::uint64_t UnsignedValue(std::uint64_t bits, Conversion::Size size) noexcept
{
    switch (size)
    {
    case Conversion::Size::Short:
        return static_cast<std::uint16_t>(bits);
    case Conversion::Size::Wide:
        return bits;
    default:
        return static_cast<std::uint32_t>(bits);
    }
}

std::string SignPrefix(bool negative, const Conversion& conversion)
{
    if (negative)
    {
        return "-";
    }
    if (conversion.plus)
    {
        return "+";
    }
    return conversion.blank ? " " : "";
}

std::string UnsignedText(std::uint64_t value, int base)
{
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value, base);
    return std::string(buffer, result.ptr);
}

void ToUpper(std::string& text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char character)
                   {
                       return character >= 'a' && character <= 'z'
                                  ? static_cast<char>(character - 'a' + 'A')
                                  : character;
                   });
}

Digits IntegerDigits(std::uint64_t bits, const Conversion& conversion)
{
    Digits digits;
    std::uint64_t value = UnsignedValue(bits, conversion.size);
    const bool hexadecimal = conversion.type == 'x' || conversion.type == 'X';
    if (conversion.type == 'd' || conversion.type == 'i')
    {
        const std::int64_t number = SignedValue(bits, conversion.size);
        value = number < 0 ? 0 - static_cast<std::uint64_t>(number)
                           : static_cast<std::uint64_t>(number);
        digits.prefix = SignPrefix(number < 0, conversion);
    }
    digits.body = UnsignedText(value, hexadecimal ? 16 : 10);
    if (hexadecimal && conversion.alternate && value != 0)
    {
        digits.prefix = "0x";
    }
    if (conversion.type == 'X')
    {
        ToUpper(digits.body);
        ToUpper(digits.prefix);
    }
    if (conversion.hasPrecision)
    {
        const std::size_t least = conversion.precision;
        if (value == 0 && least == 0)
        {
            digits.body.clear();
        }
        digits.body.insert(0, least > digits.body.size() ? least - digits.body.size() : 0, '0');
    }
    digits.zeroPadded = !conversion.hasPrecision;
    return digits;
}

std::string RealText(double value, std::chars_format format, std::size_t precision)
{
    // 309 digits before the point, sign, point and exponent.
    constexpr std::size_t besidePlaces = 330;
    char usual[besidePlaces + 32];
    if (format == std::chars_format::fixed && precision == 6)
    {
        if (const char* const end = support::WriteSixPlaces(value, usual); end != nullptr)
        {
            return {static_cast<const char*>(usual), end};
        }
    }
    if (precision + besidePlaces <= sizeof usual)
    {
        const auto result =
            std::to_chars(usual, usual + sizeof usual, value, format, static_cast<int>(precision));
        return std::string(usual, result.ptr);
    }
    std::string text(precision + besidePlaces, '\0');
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value, format,
                                      static_cast<int>(precision));
    text.resize(static_cast<std::size_t>(result.ptr - text.data()));
    return text;
}

int ExponentOf(const std::string& scientific) noexcept
{
    const std::size_t mark = scientific.rfind('e');
    const bool negative = scientific[mark + 1] == '-';
    int exponent = 0;
    std::from_chars(scientific.data() + mark + 2, scientific.data() + scientific.size(), exponent);
    return negative ? -exponent : exponent;
}

/// %g: the shorter form for the exponent that rounding gives; '#' keeps the trailing zeros.
std::string GeneralText(double value, std::size_t precision, bool keepZeros)
{
    const std::size_t significant = std::max<std::size_t>(precision, 1);
    if (!keepZeros)
    {
        return RealText(value, std::chars_format::general, significant);
    }
    std::string scientific = RealText(value, std::chars_format::scientific, significant - 1);
    const int exponent = ExponentOf(scientific);
    if (exponent < -4 || exponent >= static_cast<int>(significant))
    {
        return scientific;
    }
    const auto places = static_cast<std::size_t>(static_cast<int>(significant) - 1 - exponent);
    return RealText(value, std::chars_format::fixed, places);
}

void RequirePoint(std::string& text)
{
    if (text.find('.') == std::string::npos)
    {
        text.insert(std::min(text.find('e'), text.size()), 1, '.');
    }
}

Digits RealDigits(double value, const Conversion& conversion)
{
    Digits digits;
    if (std::isnan(value))
    {
        digits.body = "nan";
        return digits;
    }
    digits.prefix = SignPrefix(std::signbit(value), conversion);
    if (std::isinf(value))
    {
        digits.body = "inf";
        return digits;
    }
    constexpr std::size_t usualPrecision = 6;
    const std::size_t precision = conversion.hasPrecision ? conversion.precision : usualPrecision;
    const double magnitude = std::fabs(value);
    switch (conversion.type)
    {
    case 'f':
        digits.body = RealText(magnitude, std::chars_format::fixed, precision);
        break;
    case 'e':
        digits.body = RealText(magnitude, std::chars_format::scientific, precision);
        break;
    default:
        digits.body = GeneralText(magnitude, precision, conversion.alternate);
        break;
    }
    if (conversion.alternate)
    {
        RequirePoint(digits.body);
    }
    digits.zeroPadded = true;
    return digits;
}

void AppendPadded(std::string& target, const Digits& digits, const Conversion& conversion)
{
    const std::size_t length = digits.prefix.size() + digits.body.size();
    const std::size_t padding = conversion.width > length ? conversion.width - length : 0;
    const bool zeros = conversion.zero && digits.zeroPadded && !conversion.left;
    target.append(conversion.left || zeros ? 0 : padding, ' ');
    target.append(digits.prefix);
    target.append(zeros ? padding : 0, '0');
    target.append(digits.body);
    target.append(conversion.left ? padding : 0, ' ');
}

} // namespace

namespace support
{

bool AppendNumber(std::string& target, const Conversion& conversion, const FormatArgument& argument)
{
    if (conversion.type == 'f' || conversion.type == 'e' || conversion.type == 'g')
    {
        if (argument.kind != FormatArgument::Kind::Real)
        {
            return false;
        }
        AppendPadded(target, RealDigits(argument.realValue, conversion), conversion);
        return true;
    }
    std::uint64_t bits = 0;
    if (!IntegerBits(argument, bits))
    {
        return false;
    }
    AppendPadded(target, IntegerDigits(bits, conversion), conversion);
    return true;
}

} // namespace support
