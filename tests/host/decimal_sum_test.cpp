#include "host/decimal_sum.h"

#include <gtest/gtest.h>

#include <string>

namespace host
{
namespace
{

std::string Sum(std::initializer_list<const char*> texts)
{
    DecimalSum sum;
    for (const char* const text : texts)
    {
        EXPECT_TRUE(sum.Add(text)) << text;
    }
    return sum.Text();
}

TEST(DecimalSum, IsZeroWithoutANumber)
{
    EXPECT_EQ(Sum({}), "0");
    EXPECT_EQ(Sum({"0"}), "0");
    EXPECT_EQ(Sum({"0.00"}), "0.00");
}

TEST(DecimalSum, HasTheDecimalsOfTheMostPreciseNumber)
{
    EXPECT_EQ(Sum({"1500", "0.05"}), "1500.05");
    EXPECT_EQ(Sum({"19.845", "150000", "0.5"}), "150020.345");
}

TEST(DecimalSum, CarriesThroughEveryDigit)
{
    EXPECT_EQ(Sum({"999.99", "0.01"}), "1000.00");
    EXPECT_EQ(Sum({"0.99", "0.99"}), "1.98");
}

TEST(DecimalSum, KeepsTheLastUnitWhereADoubleWouldNot)
{
    EXPECT_EQ(Sum({"999999999999999999.99", "999999999999999999.99", "0.03"}),
              "2000000000000000000.01");
}

TEST(DecimalSum, AMillionCentsAreTenThousand)
{
    DecimalSum sum;
    for (int i = 0; i < 1'000'000; ++i)
    {
        ASSERT_TRUE(sum.Add("0.01"));
    }
    EXPECT_EQ(sum.Text(), "10000.00");
}

TEST(DecimalSum, DropsZerosInFront)
{
    EXPECT_EQ(Sum({"0007.50"}), "7.50");
    EXPECT_EQ(Sum({"000"}), "0");
}

TEST(DecimalSum, AddsNothingOfATextThatIsNoPlainDecimal)
{
    for (const char* const text : {"", ".", "1.", ".5", "-1", "+1", "1,5", "1e3", "1.2.3", " 1"})
    {
        DecimalSum sum;
        EXPECT_FALSE(sum.Add(text)) << text;
        EXPECT_EQ(sum.Text(), "0") << text;
    }
}

TEST(DecimalComparison, GoesByTheNumberNotByTheText)
{
    EXPECT_TRUE(IsSmallerDecimal("9", "10"));
    EXPECT_TRUE(IsSmallerDecimal("1.5", "1.51"));
    EXPECT_TRUE(IsSmallerDecimal("999999999999999999.98", "999999999999999999.99"));
    EXPECT_FALSE(IsSmallerDecimal("10", "9"));
    EXPECT_FALSE(IsSmallerDecimal("1.50", "1.5"));
    EXPECT_FALSE(IsSmallerDecimal("0", "0.00"));
}

} // namespace
} // namespace host
