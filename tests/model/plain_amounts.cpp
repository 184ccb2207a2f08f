#include "tests/model/plain_amounts.h"

#include "tests/model/plain_texts.h"

#include <cstdint>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace model
{

namespace
{

/// Digits with an optional minus before them; saturates.
std::int64_t Units(const std::string& digits)
{
    const bool negative = !digits.empty() && digits[0] == '-';
    const std::uint64_t most = std::numeric_limits<std::int64_t>::max();
    std::uint64_t value = 0;
    for (std::size_t index = negative ? 1 : 0; index < digits.size(); ++index)
    {
        const auto digit = static_cast<std::uint64_t>(digits[index] - '0');
        if (value > (most - digit) / 10)
        {
            return negative ? std::numeric_limits<std::int64_t>::min()
                            : std::numeric_limits<std::int64_t>::max();
        }
        value = value * 10 + digit;
    }
    return negative ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
}

std::int64_t UnitsOfText(const std::string& text)
{
    const std::size_t separator = text.find_last_of(",.");
    std::string whole;
    std::string fraction;
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const char character = text[index];
        const bool digit = character >= '0' && character <= '9';
        if (digit || (character == '-' && index == 0))
        {
            (separator != std::string::npos && index > separator ? fraction : whole) += character;
        }
    }
    // A fraction of more than seven digits is not cut: the amount grows by ten for each.
    while (fraction.size() < 7)
    {
        fraction += '0';
    }
    return Units(whole + fraction);
}

/// The number at the beginning of the text, up to `separator` as its decimal separator.
double Number(const std::string& text)
{
    std::size_t end = text.find_first_not_of("0123456789", text.find_first_not_of('-'));
    if (end != std::string::npos && text[end] == '.')
    {
        end = text.find_first_not_of("0123456789", end + 1);
    }
    std::istringstream stream(text.substr(0, end));
    stream.imbue(std::locale::classic());
    double value = 0.0;
    stream >> value;
    return stream.fail() ? 0.0 : value;
}

} // namespace

double LimitOf(const NullableText& amount)
{
    const std::int64_t units = UnitsOfText(NarrowOf(amount.value_or(Text())));
    // The sign of an amount of fewer than eight digits stands within its zeros.
    const std::string digits = "0000000" + std::to_string(units);
    std::string whole = digits.substr(0, digits.size() - 7);
    const std::string fraction = digits.substr(digits.size() - 7, 6);
    while (whole.size() > 1 && whole[0] == '0')
    {
        whole.erase(0, 1);
    }
    const double withPoint = Number(whole + "." + fraction);
    const double withComma = Number(whole + "," + fraction);
    const bool pointIsLarger =
        (withPoint > withComma && withPoint > 0) || (withComma > withPoint && withPoint < 0);
    return pointIsLarger ? withPoint : withComma;
}

} // namespace model
