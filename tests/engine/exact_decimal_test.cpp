#include "engine/exact_decimal.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

using engine::ExactDecimal;
using ParseResult = engine::ExactDecimal::ParseResult;

namespace
{

ExactDecimal Value(const std::string& text)
{
    ExactDecimal value;
    EXPECT_EQ(ExactDecimal::Parse(text, '.', value), ParseResult::Ok) << text;
    return value;
}

struct ParseCase
{
    const char* name;
    std::string text;
    ParseResult result;
    const char* shown; // with five decimals
};

void PrintTo(const ParseCase& parseCase, std::ostream* stream)
{
    *stream << parseCase.name;
}

const ParseCase kParseCases[] = {
    {"Whole", "1500", ParseResult::Ok, "1500.00000"},
    {"OneDecimal", "1500.5", ParseResult::Ok, "1500.50000"},
    {"NothingBeforeThePoint", ".50", ParseResult::Ok, "0.50000"},
    {"NothingAfterThePoint", "7.", ParseResult::Ok, "7.00000"},
    {"BlanksAround", " \t\r\n12.30 \n", ParseResult::Ok, "12.30000"},
    {"LeadingZerosDoNotCount", "000000000000000000000012", ParseResult::Ok, "12.00000"},
    {"TrailingZerosDoNotCount", "1.50000000000000000000000", ParseResult::Ok, "1.50000"},
    {"PlusSign", "+3.00", ParseResult::Ok, "3.00000"},
    {"EighteenDigits", "999999999999999999", ParseResult::Ok, "999999999999999999.00000"},
    {"Zero", "0", ParseResult::Ok, "0.00000"},
    {"NineteenDigits", "1000000000000000000", ParseResult::TooManyDigits,
     "999999999999999999.00000"},
    {"FourHundredDigits", std::string(400, '9'), ParseResult::TooManyDigits,
     "999999999999999999.00000"},
    {"EighteenPlaces", "0.000000000000000001", ParseResult::TooManyDigits, "0.00001"},
    {"EighteenPlacesOfNines", "0.999999999999999999", ParseResult::TooManyDigits, "1.00000"},
    {"Negative", "-1.00", ParseResult::Negative, ""},
    {"Empty", "", ParseResult::Empty, ""},
    {"BlanksOnly", "  \n", ParseResult::Empty, ""},
    {"PointOnly", ".", ParseResult::NotANumber, ""},
    {"TwoPoints", "1.2.3", ParseResult::NotANumber, ""},
    {"Comma", "1,50", ParseResult::NotANumber, ""},
    {"Exponent", "1e5", ParseResult::NotANumber, ""},
    {"InnerBlank", "1 500", ParseResult::NotANumber, ""},
    {"Letters", "abc", ParseResult::NotANumber, ""},
    {"SignOnly", "+", ParseResult::NotANumber, ""},
    {"TwoSigns", "+-1", ParseResult::NotANumber, ""},
};

class ExactDecimalParse : public testing::TestWithParam<ParseCase>
{
};

} // namespace

TEST_P(ExactDecimalParse, ReadsOrRefuses)
{
    ExactDecimal value = Value("42");
    EXPECT_EQ(ExactDecimal::Parse(GetParam().text, '.', value), GetParam().result);
    const bool written =
        GetParam().result == ParseResult::Ok || GetParam().result == ParseResult::TooManyDigits;
    EXPECT_EQ(value.ToText(5), written ? GetParam().shown : "42.00000");
}

INSTANTIATE_TEST_SUITE_P(Texts, ExactDecimalParse, testing::ValuesIn(kParseCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(ExactDecimal, OneMillionCentsSumToTenThousand)
{
    const ExactDecimal cent = Value("0.01");
    ExactDecimal sum;
    for (int i = 0; i < 1'000'000; ++i)
    {
        sum.Add(cent);
    }
    EXPECT_EQ(sum.ToText(2), "10000.00");
}

TEST(ExactDecimal, SumsGrowBeyondEighteenDigits)
{
    ExactDecimal sum = Value("999999999999999999.99");
    for (int i = 0; i < 3; ++i)
    {
        sum.Add(sum);
    }
    EXPECT_EQ(sum.ToText(2), "7999999999999999999.92");
}

TEST(ExactDecimal, RemaindersAreRoundedUp)
{
    EXPECT_EQ(Value("10.001").ToText(2), "10.01");
    EXPECT_EQ(Value("0.00000000000000001").ToText(2), "0.01");
    EXPECT_EQ(Value("9.999").ToText(2), "10.00");
    EXPECT_EQ(Value("150.5").ToText(0), "151");
    EXPECT_EQ(Value("10.00").ToText(2), "10.00");
}

TEST(ExactDecimal, RoundedValuesHaveNoFurtherPlaces)
{
    EXPECT_EQ(Value("10.001").RoundedUp(2), Value("10.01"));
    EXPECT_EQ(Value("9.999").RoundedUp(0), Value("10"));
    EXPECT_EQ(Value("10.01").RoundedUp(2), Value("10.01"));
    EXPECT_EQ(Value("0.00000000000000001").RoundedUp(17), Value("0.00000000000000001"));
}

TEST(ExactDecimal, FractionDigitsLeaveTrailingZerosOut)
{
    EXPECT_EQ(Value("1.500").FractionDigits(), 1U);
    EXPECT_EQ(Value("100").FractionDigits(), 0U);
    EXPECT_EQ(Value("0.00000000000000001").FractionDigits(), 17U);
}

TEST(ExactDecimal, IsOrderedByValue)
{
    EXPECT_LT(Value("9.99"), Value("10"));
    EXPECT_LT(Value("10"), Value("10.00001"));
    EXPECT_EQ(Value("1.50"), Value("1.5"));
    EXPECT_TRUE(Value("0.00").IsZero());
    EXPECT_FALSE(Value("0.01").IsZero());
}

TEST(ExactDecimal, TheSeparatorIsChosen)
{
    ExactDecimal value;
    EXPECT_EQ(ExactDecimal::Parse("1000,", ',', value), ParseResult::Ok);
    EXPECT_EQ(value.ToText(0), "1000");
    EXPECT_EQ(ExactDecimal::Parse("12.5", ',', value), ParseResult::NotANumber);
}
