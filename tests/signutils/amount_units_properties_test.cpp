#include "signutils/amount_units.h"

#include "tests/signutils/literal_amounts.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace
{

// Amounts up to 92 thousand million, the range of 64-bit units with room to spare.
std::int64_t AnyUnits()
{
    return *rc::gen::inRange<std::int64_t>(-900000000000000000, 900000000000000000);
}

std::string Digits(int most)
{
    return *rc::gen::container<std::string>(*rc::gen::inRange(1, most + 1),
                                            rc::gen::inRange('0', static_cast<char>('9' + 1)));
}

std::int64_t ToUnits(const std::string& text, std::uint16_t decimals)
{
    return AmountTextToUnits(text.c_str(), decimals);
}

// Of every magnitude alike, and the ends of the range.
std::int64_t UnitsOfAnyLength()
{
    using Limits = std::numeric_limits<std::int64_t>;
    const auto bits = *rc::gen::arbitrary<std::uint64_t>();
    const auto units = std::bit_cast<std::int64_t>(bits) >> *rc::gen::inRange(0, 64);
    return *rc::gen::element(units, units, units, units, Limits::min(), Limits::max());
}

// Amounts with what may stand around their digits, and some that are none.
std::string AnyAmountText()
{
    return *rc::gen::container<std::string>(
        *rc::gen::inRange(0, 30), rc::gen::oneOf(rc::gen::inRange('0', static_cast<char>('9' + 1)),
                                                 rc::gen::inRange('0', static_cast<char>('9' + 1)),
                                                 rc::gen::element('.', ',', '-', ' ', '+', 'E')));
}

std::uint16_t AnyDecimals()
{
    const auto small = static_cast<std::uint16_t>(*rc::gen::inRange(0, 12));
    const auto any = *rc::gen::arbitrary<std::uint16_t>();
    return *rc::gen::element(kUnknownDecimals, kUnknownDecimals, small, small, any);
}

// Cents, halves of the last decimal that is kept, and any double there is.
double AnyAmount()
{
    const auto any = std::bit_cast<double>(*rc::gen::arbitrary<std::uint64_t>());
    const double cents = static_cast<double>(*rc::gen::arbitrary<std::int32_t>()) / 100.0;
    const double halves = static_cast<double>(*rc::gen::arbitrary<std::int32_t>()) / 128.0;
    return *rc::gen::element(any, cents, halves);
}

RC_GTEST_PROP(AmountUnitsProperties, TextsBecomeTheUnitsOfTheLiteralSteps, ())
{
    const std::string text = AnyAmountText();
    std::uint16_t decimals = AnyDecimals();
    std::uint16_t expectedDecimals = decimals;
    const std::int64_t expected = literal::TextToUnits(text, expectedDecimals);
    RC_ASSERT(AmountTextToUnits(text, decimals) == expected);
    RC_ASSERT(decimals == expectedDecimals);
}

RC_GTEST_PROP(AmountUnitsProperties, UnitsBecomeTheTextOfTheLiteralSteps, ())
{
    const std::int64_t units = UnitsOfAnyLength();
    RC_ASSERT(UnitsToAmountText(units).SafeGetString() == literal::UnitsToText(units));
}

RC_GTEST_PROP(AmountUnitsProperties, UnitsBecomeTheDoubleOfTheLiteralSteps, ())
{
    const std::int64_t units = UnitsOfAnyLength();
    RC_ASSERT(UnitsToAmount(units) == literal::UnitsToAmount(units));
}

RC_GTEST_PROP(AmountUnitsProperties, DoublesBecomeTheUnitsOfTheLiteralSteps, ())
{
    const double value = AnyAmount();
    RC_ASSERT(AmountToUnits(value) == literal::AmountToUnits(value));
}

RC_GTEST_PROP(AmountUnitsProperties, TextEndsAtItsFirstNul, ())
{
    const std::string text = AnyAmountText();
    const std::uint16_t decimals = AnyDecimals();
    std::uint16_t decimalsOfView = decimals;
    const std::string more = text + std::string(1, '\0') + AnyAmountText();
    RC_ASSERT(AmountTextToUnits(more, decimalsOfView) == ToUnits(text, decimals));
}

RC_GTEST_PROP(AmountUnitsProperties, TextOfUnitsReadsBackWithoutTheSeventhDecimal, ())
{
    const std::int64_t units = AnyUnits();
    RC_PRE(units >= 0 || units <= -10000000);
    const TSimpleString text = UnitsToAmountText(units);
    RC_ASSERT(ToUnits(text.SafeGetString(), kUnknownDecimals) == units / 10 * 10);
}

RC_GTEST_PROP(AmountUnitsProperties, TextHasOnePointAndSixDecimals, ())
{
    const std::string text = UnitsToAmountText(AnyUnits()).SafeGetString();
    RC_ASSERT(std::count(text.begin(), text.end(), '.') == 1);
    RC_ASSERT(text.size() - text.find('.') == 7U);
    RC_ASSERT(text.find('.') >= 1U);
}

RC_GTEST_PROP(AmountUnitsProperties, SeparatorMayBeCommaOrPoint, ())
{
    const std::string whole = Digits(9);
    const std::string fraction = Digits(7);
    RC_ASSERT(ToUnits(whole + "." + fraction, kUnknownDecimals) ==
              ToUnits(whole + "," + fraction, kUnknownDecimals));
}

RC_GTEST_PROP(AmountUnitsProperties, KnownDecimalsAgreeWithTheSeparatorInTheText, ())
{
    const std::string whole = Digits(9);
    const std::string fraction = Digits(7);
    const auto decimals = static_cast<std::uint16_t>(fraction.size());
    const std::string text = whole + "." + fraction;
    RC_ASSERT(ToUnits(text, decimals) == ToUnits(text, kUnknownDecimals));
}

RC_GTEST_PROP(AmountUnitsProperties, MinusTurnsTheSign, ())
{
    const std::string text = Digits(9) + "." + Digits(7);
    RC_ASSERT(ToUnits("-" + text, kUnknownDecimals) == -ToUnits(text, kUnknownDecimals));
}

RC_GTEST_PROP(AmountUnitsProperties, BlanksAndLettersCountForNothing, ())
{
    const std::string whole = Digits(9);
    const std::string fraction = Digits(7);
    const std::string noise = *rc::gen::container<std::string>(rc::gen::element(' ', '\'', 'E'));
    RC_ASSERT(ToUnits(whole + noise + "." + fraction + noise, kUnknownDecimals) ==
              ToUnits(whole + "." + fraction, kUnknownDecimals));
}

RC_GTEST_PROP(AmountUnitsProperties, AnyBytesAreReadAsTheLiteralStepsSay, (const std::string& text))
{
    const auto decimals = *rc::gen::arbitrary<std::uint16_t>();
    std::uint16_t expectedDecimals = decimals;
    RC_ASSERT(ToUnits(text, decimals) ==
              literal::TextToUnits(text.substr(0, text.find('\0')), expectedDecimals));
}

RC_GTEST_PROP(AmountUnitsProperties, AmountsKeepTheirOrder, ())
{
    const double left = static_cast<double>(*rc::gen::inRange(-100000000, 100000000)) / 100.0;
    const double right = static_cast<double>(*rc::gen::inRange(-100000000, 100000000)) / 100.0;
    RC_PRE(left < right);
    RC_ASSERT(AmountToUnits(left) < AmountToUnits(right));
}

RC_GTEST_PROP(AmountUnitsProperties, UnitsOfACentAmountAreATenThousandthOff, ())
{
    const int cents = *rc::gen::inRange(1, 2000000000);
    const double amount = cents / 100.0;
    RC_ASSERT(AmountToUnits(amount) == cents * std::int64_t{100000} + 1000);
    RC_ASSERT(std::abs(UnitsToAmount(AmountToUnits(amount)) - amount - 0.0001) < 1e-6);
}

} // namespace
