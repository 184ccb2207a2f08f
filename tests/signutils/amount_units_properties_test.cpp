#include "signutils/amount_units.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
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

RC_GTEST_PROP(AmountUnitsProperties, AnyTextIsReadWithoutHarm, (const std::string& text))
{
    const auto decimals = *rc::gen::arbitrary<std::uint16_t>();
    ToUnits(text, decimals);
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
