#include "engine/exact_decimal.h"

#include "engine/blanks.h"

#include <algorithm>
#include <cstddef>

namespace engine
{

namespace
{

constexpr std::uint64_t kBase = 100'000'000'000'000'000U;

// Up to 10^18, the largest that is asked for.
constexpr std::array<std::uint64_t, 19> kPowersOfTen = []()
{
    std::array<std::uint64_t, 19> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
    {
        powers[i] = powers[i - 1U] * 10U;
    }
    return powers;
}();

std::uint64_t PowerOfTen(unsigned exponent)
{
    return kPowersOfTen[exponent];
}

bool AllDigits(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::uint64_t ToNumber(std::string_view digits)
{
    std::uint64_t number = 0;
    for (const char digit : digits)
    {
        number = number * 10U + static_cast<std::uint64_t>(digit - '0');
    }
    return number;
}

std::string ZeroPadded(std::uint64_t number, std::size_t width)
{
    std::string digits = std::to_string(number);
    if (digits.size() < width)
    {
        digits.insert(0, width - digits.size(), '0');
    }
    return digits;
}

} // namespace

ExactDecimal::ParseResult ExactDecimal::Parse(std::string_view text, char separator,
                                              ExactDecimal& value)
{
    text = WithoutBlanks(text);
    if (text.empty())
    {
        return ParseResult::Empty;
    }
    const bool negative = text.front() == '-';
    if (negative || text.front() == '+')
    {
        text.remove_prefix(1);
    }
    const std::size_t point = text.find(separator);
    std::string_view whole = text.substr(0, point);
    std::string_view fraction =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1U);
    if (!AllDigits(whole) || !AllDigits(fraction) || whole.size() + fraction.size() == 0)
    {
        return ParseResult::NotANumber;
    }
    if (negative)
    {
        return ParseResult::Negative;
    }
    whole.remove_prefix(std::min(whole.find_first_not_of('0'), whole.size()));
    fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1U);
    if (whole.size() > kIntegerDigits)
    {
        value = Largest();
        return ParseResult::TooManyDigits;
    }
    value.Set(ToNumber(whole), fraction.substr(0, kFractionDigits));
    if (fraction.size() > kFractionDigits)
    {
        value.AddUnit(kFractionDigits);
        return ParseResult::TooManyDigits;
    }
    return ParseResult::Ok;
}

ExactDecimal ExactDecimal::Largest() noexcept
{
    ExactDecimal largest;
    largest.Set(PowerOfTen(kIntegerDigits) - 1U, {});
    return largest;
}

void ExactDecimal::Set(std::uint64_t whole, std::string_view fraction) noexcept
{
    m_limbs = {ToNumber(fraction) *
                   PowerOfTen(kFractionDigits - static_cast<unsigned>(fraction.size())),
               whole % kBase, whole / kBase, 0U};
}

void ExactDecimal::Add(const ExactDecimal& other) noexcept
{
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < m_limbs.size(); ++i)
    {
        const std::uint64_t sum = m_limbs[i] + other.m_limbs[i] + carry;
        carry = sum >= kBase ? 1U : 0U;
        m_limbs[i] = sum - carry * kBase;
    }
}

bool ExactDecimal::IsZero() const noexcept
{
    return *this == ExactDecimal();
}

unsigned ExactDecimal::FractionDigits() const noexcept
{
    unsigned digits = kFractionDigits;
    for (std::uint64_t rest = m_limbs[0]; digits > 0 && rest % 10U == 0; rest /= 10U)
    {
        --digits;
    }
    return digits;
}

void ExactDecimal::AddUnit(unsigned decimals) noexcept
{
    ExactDecimal unit;
    if (decimals == 0)
    {
        unit.m_limbs[1] = 1U;
    }
    else
    {
        unit.m_limbs[0] = PowerOfTen(kFractionDigits - decimals);
    }
    Add(unit);
}

ExactDecimal ExactDecimal::RoundedUp(unsigned decimals) const noexcept
{
    if (decimals >= kFractionDigits)
    {
        return *this;
    }
    ExactDecimal rounded = *this;
    if (const std::uint64_t rest = m_limbs[0] % PowerOfTen(kFractionDigits - decimals); rest != 0)
    {
        rounded.m_limbs[0] -= rest;
        rounded.AddUnit(decimals);
    }
    return rounded;
}

std::string ExactDecimal::ToText(unsigned decimals) const
{
    decimals = std::min(decimals, kFractionDigits);
    const std::uint64_t step = PowerOfTen(kFractionDigits - decimals);
    const ExactDecimal rounded = RoundedUp(decimals);
    std::size_t limb = m_limbs.size() - 1U;
    while (limb > 1U && rounded.m_limbs[limb] == 0)
    {
        --limb;
    }
    std::string text = std::to_string(rounded.m_limbs[limb]);
    while (limb > 1U)
    {
        text += ZeroPadded(rounded.m_limbs[--limb], kFractionDigits);
    }
    if (decimals > 0)
    {
        text += '.';
        text += ZeroPadded(rounded.m_limbs[0] / step, decimals);
    }
    return text;
}

std::strong_ordering operator<=>(const ExactDecimal& left, const ExactDecimal& right) noexcept
{
    return std::lexicographical_compare_three_way(left.m_limbs.rbegin(), left.m_limbs.rend(),
                                                  right.m_limbs.rbegin(), right.m_limbs.rend());
}

} // namespace engine
