#include "support/numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace
{

using support::ToDouble;
using support::ToInt32;
using support::ToInt64;

template <typename Value>
struct NumberCase
{
    const char* text;
    Value expected;
};

const NumberCase<std::int32_t> kInt32Cases[] = {
    {"0", 0},
    {"42", 42},
    {"-42", -42},
    {"+42", 42},
    {" \t\r\n\v\f42", 42},
    {"42abc", 42},
    {"42 43", 42},
    {"007", 7},
    {"", 0},
    {"abc", 0},
    {"-", 0},
    {"+-1", 0},
    {"- 1", 0},
    {"0x10", 0},
    {"1.9", 1},
    {"2147483647", INT32_MAX},
    {"2147483648", INT32_MAX},
    {"4294967296", INT32_MAX}, // a blocked holder must not become a free one
    {"99999999999999999999999", INT32_MAX},
    {"-2147483647", -INT32_MAX},
    {"-2147483648", INT32_MIN},
    {"-2147483649", INT32_MIN},
    {"-99999999999999999999999", INT32_MIN},
    {"00000000000000000000001", 1},
    {nullptr, 0},
};

TEST(Numbers, ThirtyTwoBitsSaturate)
{
    for (const auto& number : kInt32Cases)
    {
        EXPECT_EQ(ToInt32(number.text), number.expected)
            << (number.text == nullptr ? "null" : number.text);
    }
}

const NumberCase<std::int64_t> kInt64Cases[] = {
    {"9223372036854775806", INT64_MAX - 1},
    {"9223372036854775807", INT64_MAX},
    {"9223372036854775808", INT64_MAX},
    {"18446744073709551616", INT64_MAX},
    {"-9223372036854775807", -INT64_MAX},
    {"-9223372036854775808", INT64_MIN},
    {"-9223372036854775809", INT64_MIN},
    {" +4294967296x", 4294967296},
    {"", 0},
    {nullptr, 0},
};

TEST(Numbers, SixtyFourBitsSaturate)
{
    for (const auto& number : kInt64Cases)
    {
        EXPECT_EQ(ToInt64(number.text), number.expected)
            << (number.text == nullptr ? "null" : number.text);
    }
}

const NumberCase<double> kDoubleCases[] = {
    {"0", 0.0},
    {"1234.56", 1234.56},
    {"-1234.56", -1234.56},
    {"+1.5", 1.5},
    {" \t 1.5", 1.5},
    {"1234,56", 1234.0},
    {"1 000.00", 1.0},
    {".5", 0.5},
    {"5.", 5.0},
    {".", 0.0},
    {"-", 0.0},
    {"", 0.0},
    {"abc", 0.0},
    {"1e3", 1000.0},
    {"1E+3", 1000.0},
    {"1e-3", 0.001},
    {"1e", 1.0},
    {"1e+", 1.0},
    {"1e3.5", 1000.0},
    {"--1", 0.0},
    {"+-1", 0.0},
    {"0x10", 0.0},
    {"inf", 0.0},
    {"-Infinity", 0.0},
    {"nan", 0.0},
    {"NAN(1)", 0.0},
    {"0.1", 0.1},
    {"123456789012345678901234567890", 123456789012345678901234567890.0},
    {"1.7976931348623157e308", std::numeric_limits<double>::max()},
    {"5e-324", std::numeric_limits<double>::denorm_min()},
    {nullptr, 0.0},
};

TEST(Numbers, RealsStopAtTheFirstCharacterThatDoesNotFit)
{
    for (const auto& number : kDoubleCases)
    {
        EXPECT_EQ(ToDouble(number.text), number.expected)
            << (number.text == nullptr ? "null" : number.text);
    }
}

TEST(Numbers, RealsTooLargeSaturateAndTooSmallOnesAreNull)
{
    constexpr double largest = std::numeric_limits<double>::max();
    const NumberCase<double> kCases[] = {
        {"1e309", largest},
        {"-1e309", -largest},
        {"0.001e400", largest},
        {"1e99999999999999999999", largest},
        {"1e-400", 0.0},
        {"100000e-400", 0.0},
        {"1e-99999999999999999999", 0.0},
        {"0e999", 0.0},
        {"0.000e999", 0.0},
    };
    for (const auto& number : kCases)
    {
        EXPECT_EQ(ToDouble(number.text), number.expected) << number.text;
    }
    EXPECT_EQ(ToDouble((std::string(400, '9') + ".5").c_str()), largest);
    EXPECT_EQ(ToDouble(("0." + std::string(400, '0') + "1").c_str()), 0.0);
    EXPECT_EQ(ToDouble((std::string(400, '0') + "1.5").c_str()), 1.5);
}

TEST(Numbers, ThePointStaysAPointInEveryLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* const locale : {"fr_FR.UTF-8", "de_DE.UTF-8", "French_France.1252"})
    {
        std::setlocale(LC_ALL, locale);
        EXPECT_EQ(ToDouble("1234.56"), 1234.56) << locale;
        EXPECT_EQ(ToDouble("1234,56"), 1234.0) << locale;
    }
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
