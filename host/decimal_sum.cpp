#include "host/decimal_sum.h"
#include "host/text.h"

#include <algorithm>

namespace host
{

namespace
{

struct Number
{
    std::string digits;
    std::size_t decimals = 0;
};

Number Parsed(std::string_view text)
{
    const std::size_t point = text.find('.');
    Number number;
    number.digits = text.substr(0, point);
    if (point != std::string_view::npos)
    {
        number.digits += text.substr(point + 1U);
        number.decimals = text.size() - point - 1U;
    }
    return number;
}

// Gives both numbers the same decimals and the same count of digits.
void Align(Number& left, Number& right)
{
    const std::size_t decimals = std::max(left.decimals, right.decimals);
    for (Number* const number : {&left, &right})
    {
        number->digits.append(decimals - number->decimals, '0');
        number->decimals = decimals;
    }
    const std::size_t length = std::max(left.digits.size(), right.digits.size());
    for (Number* const number : {&left, &right})
    {
        number->digits.insert(0, length - number->digits.size(), '0');
    }
}

} // namespace

bool IsDecimal(std::string_view text)
{
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    if (whole.empty() || !std::all_of(whole.begin(), whole.end(), IsDigit))
    {
        return false;
    }
    if (point == std::string_view::npos)
    {
        return true;
    }
    const std::string_view fraction = text.substr(point + 1U);
    return !fraction.empty() && std::all_of(fraction.begin(), fraction.end(), IsDigit);
}

bool IsSmallerDecimal(std::string_view left, std::string_view right)
{
    Number smaller = Parsed(left);
    Number larger = Parsed(right);
    Align(smaller, larger);
    return smaller.digits < larger.digits;
}

bool DecimalSum::Add(std::string_view text)
{
    if (!IsDecimal(text))
    {
        return false;
    }
    Number sum{std::move(m_digits), m_decimals};
    Number added = Parsed(text);
    Align(sum, added);
    int carry = 0;
    for (std::size_t at = sum.digits.size(); at-- > 0;)
    {
        const int digit = (sum.digits[at] - '0') + (added.digits[at] - '0') + carry;
        sum.digits[at] = static_cast<char>('0' + digit % 10);
        carry = digit / 10;
    }
    m_digits = carry == 0 ? std::move(sum.digits) : "1" + sum.digits;
    m_decimals = sum.decimals;
    return true;
}

std::string DecimalSum::Text() const
{
    const std::size_t wholeDigits = m_digits.size() - m_decimals;
    const std::size_t zeros = std::min(m_digits.find_first_not_of('0'), wholeDigits - 1U);
    const std::string whole = m_digits.substr(zeros, wholeDigits - zeros);
    return m_decimals == 0 ? whole : whole + "." + m_digits.substr(wholeDigits);
}

} // namespace host
