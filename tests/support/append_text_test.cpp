#include "support/append_text.h"

#include "support/six_places.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace
{

using support::AppendCut;
using support::AppendSixPlaces;
using support::kSixPlacesSize;
using support::kWhole;
using support::WriteSixPlaces;

constexpr double kFirstWithoutPlaces = 0x1p53;

std::string Written(double number)
{
    char text[kSixPlacesSize];
    const char* const end = WriteSixPlaces(number, text);
    return end == nullptr ? "not written" : std::string(text, static_cast<std::size_t>(end - text));
}

std::string Printed(double number)
{
    char text[400];
    std::snprintf(text, sizeof text, "%.6f", number);
    return text;
}

std::wstring Appended(double number)
{
    std::wstring text;
    AppendSixPlaces(text, number);
    return text;
}

TEST(SixPlaces, PlacesThatRoundUpCarryIntoTheWhole)
{
    EXPECT_EQ(Written(1.9999999), "2.000000");
    EXPECT_EQ(Written(41.9999999), "42.000000");
    EXPECT_EQ(Written(999999.9999999), "1000000.000000");
    EXPECT_EQ(Written(1.999999), "1.999999");
    EXPECT_EQ(Written(1.9999994), "1.999999");
}

TEST(SixPlaces, HalvesGoToTheEvenPlace)
{
    // Odd multiples of 1/128 have seven decimals, the last a five.
    for (int odd = 1; odd < 128; odd += 2)
    {
        const double number = 7.0 + odd / 128.0;
        EXPECT_EQ(Written(number), Printed(number));
    }
}

TEST(SixPlaces, TheLargestNumberThatMayHavePlacesIsWritten)
{
    EXPECT_EQ(Written(kFirstWithoutPlaces - 1), "9007199254740991.000000");
    EXPECT_EQ(Written(std::nextafter(kFirstWithoutPlaces / 2, 0)), "4503599627370495.500000");
    EXPECT_EQ(Written(0.0), "0.000000");
}

TEST(SixPlaces, WhatIsRareIsLeftToTheCaller)
{
    EXPECT_EQ(Written(kFirstWithoutPlaces), "not written");
    EXPECT_EQ(Written(1e300), "not written");
    EXPECT_EQ(Written(std::numeric_limits<double>::infinity()), "not written");
    EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), "not written");
    EXPECT_EQ(Written(-1.0), "not written");
    EXPECT_EQ(Written(0x1p-53), "not written");
    EXPECT_EQ(Written(1e-20), "not written");
}

TEST(AppendText, RareNumbersArePrintedToo)
{
    EXPECT_EQ(Appended(-0.0), L"-0.000000");
    EXPECT_EQ(Appended(-1.5), L"-1.500000");
    EXPECT_EQ(Appended(1e-20), L"0.000000");
    EXPECT_EQ(Appended(kFirstWithoutPlaces), L"9007199254740992.000000");
    EXPECT_EQ(Appended(1500.5), L"1500.500000");
}

TEST(AppendText, NoTextIsSaidSo)
{
    std::wstring text;
    AppendCut(text, static_cast<const wchar_t*>(nullptr), kWhole);
    AppendCut(text, static_cast<const char*>(nullptr), 5);
    EXPECT_EQ(text, L"(null)(null");
}

} // namespace
