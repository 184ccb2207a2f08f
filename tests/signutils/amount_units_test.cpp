#include "signutils/amount_units.h"

#include "tests/testing/failing_allocations.h"

#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>

namespace
{

struct TextCase
{
    const char* name;
    const char* text;
    std::uint16_t decimals;
    std::int64_t units;
    std::uint16_t decimalsAfter;
};

void PrintTo(const TextCase& row, std::ostream* stream)
{
    *stream << row.name;
}

const TextCase kTextCases[] = {
    {"GroupedWithACommaFindsTheComma", "1.234,56", 0xFFFF, 12345600000, 2},
    {"GroupedWithAPointFindsThePoint", "1,234.56", 0xFFFF, 12345600000, 2},
    {"WithoutSeparatorIsAWholeNumber", "1234", 0xFFFF, 12340000000, 0},
    {"LastOfSeveralPointsSeparates", "1.234.567", 0xFFFF, 12345670000, 3},
    {"DigitAtTheSeparatorsPlaceIsLost", "12345", 2, 124500000, 2},
    {"SeparatorAtItsPlaceIsKept", "12,45", 2, 124500000, 2},
    {"LeadingMinusIsHonoured", "-7.5", 0xFFFF, -75000000, 1},
    {"MinusElsewhereIsDropped", "7-.5", 0xFFFF, 75000000, 1},
    {"MinusAfterABlankIsDropped", " -7.5", 0xFFFF, 75000000, 1},
    {"PlusIsDropped", "+7.5", 0xFFFF, 75000000, 1},
    {"EmptyIsZero", "", 0xFFFF, 0, 0},
    {"EmptyWithKnownDecimalsIsZero", "", 2, 0, 2},
    {"EmptyWithNoDecimalsIsZero", "", 0, 0, 0},
    {"LettersAloneAreZero", "EUR", 0xFFFF, 0, 0},
    {"MinusAloneIsZero", "-", 0xFFFF, 0, 0},
    {"CurrencyAndBlanksAreDropped", "EUR 1 234,50", 0xFFFF, 12345000000, 2},
    {"NoDecimalsIgnoresEverySeparator", "1.234,56", 0, 1234560000000, 0},
    {"SevenFractionDigitsAreWholeUnits", "0.1234567", 0xFFFF, 1234567, 7},
    {"NineFractionDigitsAreNotCut", "0.123456789", 0xFFFF, 123456789, 9},
    {"SeparatorAtTheEndHasNoFraction", "12.", 0xFFFF, 120000000, 0},
    {"SeparatorAtTheStart", ".5", 0xFFFF, 5000000, 1},
    {"ShorterThanItsDecimalsIsAWholeNumber", "12", 2, 120000000, 2},
    {"AsLongAsItsDecimalsIsAWholeNumber", "12", 3, 120000000, 3},
    {"OneLongerThanItsDecimalsLosesTheFirst", "123", 2, 2300000, 2},
    {"OtherSeparatorsAreDroppedWithKnownDecimals", "1.234,56", 2, 12345600000, 2},
    {"MinusBehindTheSeparatorsPlaceIsLost", "-45", 2, 4500000, 2},
    {"MinusBeforeTheSeparatorsPlaceIsKept", "-.45", 2, -4500000, 2},
    {"CharactersBesideTheDigitsAreNone", "1:2/3", 0xFFFF, 1230000000, 0},
    {"CharactersBesideTheDigitsAreNoneWithKnownDecimals", "1:9/0.5", 1, 1905000000, 1},
    {"OtherCharactersInAKnownFractionAreNotCounted", "1.2E5", 3, 12500000, 2},
    {"LargestWholeNumberIsKept", "922337203685", 0xFFFF, 9223372036850000000, 0},
    {"OneAboveTheLargestWholeNumberSaturates", "922337203686", 0xFFFF,
     std::numeric_limits<std::int64_t>::max(), 0},
    {"LargestUnitsAreKeptWithASign", "-922337203685.4775807", 0xFFFF,
     -std::numeric_limits<std::int64_t>::max(), 7},
    {"BeyondTheLargestSaturates", "99999999999999999999", 0xFFFF,
     std::numeric_limits<std::int64_t>::max(), 0},
    {"BelowTheSmallestSaturates", "-99999999999999999999", 0xFFFF,
     std::numeric_limits<std::int64_t>::min(), 0},
};

class AmountText : public ::testing::TestWithParam<TextCase>
{
};

TEST_P(AmountText, GivesUnitsAndDecimals)
{
    const TextCase& row = GetParam();
    std::uint16_t decimals = row.decimals;
    EXPECT_EQ(AmountTextToUnits(row.text, decimals), row.units);
    EXPECT_EQ(decimals, row.decimalsAfter);
}

INSTANTIATE_TEST_SUITE_P(Cases, AmountText, ::testing::ValuesIn(kTextCases),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(AmountTextToUnits, NullTextIsZero)
{
    std::uint16_t decimals = kUnknownDecimals;
    EXPECT_EQ(AmountTextToUnits(nullptr, decimals), 0);
    EXPECT_EQ(decimals, 0);
}

TEST(AmountTextToUnits, TextEndsWithItsView)
{
    std::uint16_t decimals = 1;
    EXPECT_EQ(AmountTextToUnits(std::string_view("1.2345").substr(0, 3), decimals), 12000000);
    decimals = kUnknownDecimals;
    EXPECT_EQ(AmountTextToUnits(std::string_view("1.2345").substr(0, 3), decimals), 12000000);
}

// As many characters as the indicator of unknown decimals has of them.
TEST(AmountTextToUnits, UnknownDecimalsAreSearchedForInTheLongestTexts)
{
    const std::string text = '-' + std::string(65'532, ' ') + "1.5";
    ASSERT_EQ(text.size(), std::size_t{kUnknownDecimals} + 1U);
    std::uint16_t decimals = kUnknownDecimals;
    EXPECT_EQ(AmountTextToUnits(text, decimals), -15000000);
    EXPECT_EQ(decimals, 1);
}

TEST(UnitsToAmountText, HasAPointAndSixDecimals)
{
    EXPECT_STREQ(UnitsToAmountText(12345600000).SafeGetString(), "1234.560000");
    EXPECT_STREQ(UnitsToAmountText(0).SafeGetString(), "0.000000");
    EXPECT_STREQ(UnitsToAmountText(10000000).SafeGetString(), "1.000000");
    EXPECT_STREQ(UnitsToAmountText(std::numeric_limits<std::int64_t>::max()).SafeGetString(),
                 "922337203685.477580");
}

TEST(UnitsToAmountText, DropsTheSeventhDecimalWithoutRounding)
{
    EXPECT_STREQ(UnitsToAmountText(5).SafeGetString(), "0.000000");
    EXPECT_STREQ(UnitsToAmountText(19).SafeGetString(), "0.000001");
    EXPECT_STREQ(UnitsToAmountText(-19999999).SafeGetString(), "-1.999999");
}

TEST(UnitsToAmountText, NegativeAmountsOfEightDigitsAreWellFormed)
{
    EXPECT_STREQ(UnitsToAmountText(-10000000).SafeGetString(), "-1.000000");
    EXPECT_STREQ(UnitsToAmountText(-75000000).SafeGetString(), "-7.500000");
    EXPECT_STREQ(UnitsToAmountText(-12345600000).SafeGetString(), "-1234.560000");
}

TEST(UnitsToAmountText, SmallNegativeAmountsAreMalformedAndKeptSo)
{
    // Seven zeros and -5 are 0000000-5: the sign lands among the decimals.
    EXPECT_STREQ(UnitsToAmountText(-5).SafeGetString(), "0.00000-");
    EXPECT_STREQ(UnitsToAmountText(-5000000).SafeGetString(), "-.500000");
    EXPECT_STREQ(UnitsToAmountText(-9999999).SafeGetString(), "-.999999");
}

TEST(AmountToUnits, MovesEveryAmountATenThousandthAwayFromZero)
{
    EXPECT_EQ(AmountToUnits(0.1), 1001000);
    EXPECT_EQ(AmountToUnits(-0.5), -5001000);
    EXPECT_EQ(AmountToUnits(0.0), 0);
    EXPECT_EQ(AmountToUnits(1000.0), 10000001000);
    EXPECT_EQ(AmountToUnits(0.00005), 1500);
    EXPECT_EQ(AmountToUnits(-0.00005), -1500);
}

TEST(UnitsToAmount, GivesTheMainUnit)
{
    EXPECT_EQ(UnitsToAmount(12345600000), 1234.56);
    EXPECT_EQ(UnitsToAmount(0), 0.0);
    EXPECT_EQ(UnitsToAmount(5), 0.0);
    EXPECT_EQ(UnitsToAmount(-75000000), -7.5);
    EXPECT_EQ(UnitsToAmount(10), 0.000001);
}

// The sign of less than a tenth ends the number that the text is read as.
TEST(UnitsToAmount, NegativeAmountsBelowATenthAreZero)
{
    EXPECT_EQ(UnitsToAmount(-999999), 0.0);
    EXPECT_EQ(UnitsToAmount(-1000000), -0.1);
}

// One above 2^53 millionths: a division would round twice.
TEST(UnitsToAmount, AmountsBeyondTheExactOnesAreThoseOfTheirText)
{
    EXPECT_EQ(UnitsToAmount(90071992547409930), 9007199254.740993);
    EXPECT_EQ(UnitsToAmount(-90071992547409930), -9007199254.740993);
}

TEST(UnitsToAmount, IsTheSameInALocaleWithADecimalComma)
{
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    // Where the machine has no such locale the value is that of the usual one.
    for (const char* const locale : {"fr_FR.UTF-8", "de_DE.UTF-8", "French_France.1252"})
    {
        if (std::setlocale(LC_NUMERIC, locale) != nullptr)
        {
            break;
        }
    }
    EXPECT_EQ(UnitsToAmount(12345600000), 1234.56);
    EXPECT_EQ(AmountToUnits(1234.56), 12345601000);
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(AmountConversions, NeedNoMemory)
{
    std::uint16_t decimals = kUnknownDecimals;
    std::array<char, kAmountTextSize> text{};
    const testing_support::FailAllAllocations fault;
    const std::int64_t units = AmountTextToUnits("-922337203685.4775808", decimals);
    const bool same = UnitsToAmountText(units, text) == "-922337203685.477580";
    const double amount = UnitsToAmount(units);
    const std::int64_t largest = AmountToUnits(std::numeric_limits<double>::max());
    EXPECT_FALSE(fault.WasUsed());
    EXPECT_TRUE(same);
    EXPECT_EQ(text.back(), '\0');
    EXPECT_EQ(amount, -922337203685.47758);
    EXPECT_EQ(largest, std::numeric_limits<std::int64_t>::max());
}

} // namespace
