#include "engine/cfonb_date.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

struct YearDigitCase
{
    const char* name;
    const char* zone;
    int thisYear;
    const char* date;
};

void PrintTo(const YearDigitCase& yearDigit, std::ostream* stream)
{
    *stream << yearDigit.name;
}

const YearDigitCase kYearDigitCases[] = {
    {"SameYear", "25116", 2026, "20261125"},
    {"NextYear", "01017", 2026, "20270101"},
    {"LastYear", "31125", 2026, "20251231"},
    {"FourYearsAhead", "01010", 2026, "20300101"},
    {"FiveYearsEitherWayAreInTheDecade", "01011", 2026, "20210101"},
    {"SixYearsAheadAreFourBack", "01012", 2026, "20220101"},
    {"DecadeEndsBetween", "01010", 2029, "20300101"},
    {"DecadeBeganBetween", "31129", 2030, "20291231"},
    {"FiveYearsEitherWayAtTheDecadesStart", "01010", 2025, "20200101"},
    {"NoSuchMonth", "25136", 2026, ""},
    {"NoSuchDay", "32116", 2026, ""},
    {"DayZero", "00116", 2026, ""},
    {"Letter", "25A16", 2026, ""},
    {"Blank", " 5116", 2026, ""},
    {"TooShort", "2511", 2026, ""},
    {"TooLong", "251126", 2026, ""},
};

class YearDigit : public testing::TestWithParam<YearDigitCase>
{
};

} // namespace

TEST_P(YearDigit, MeansTheNearestYearThatEndsInIt)
{
    EXPECT_EQ(engine::DateOfOneDigitYear(GetParam().zone, GetParam().thisYear), GetParam().date);
}

INSTANTIATE_TEST_SUITE_P(Zones, YearDigit, testing::ValuesIn(kYearDigitCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(CfonbDate, TwoDigitsOfTheYearReachFrom1970To2069)
{
    EXPECT_EQ(engine::DateOfTwoDigitYear("311226"), "20261231");
    EXPECT_EQ(engine::DateOfTwoDigitYear("010169"), "20690101");
    EXPECT_EQ(engine::DateOfTwoDigitYear("010170"), "19700101");
    EXPECT_EQ(engine::DateOfTwoDigitYear("999999"), "");
    EXPECT_EQ(engine::DateOfTwoDigitYear("31122"), "");
    EXPECT_EQ(engine::DateOfTwoDigitYear("      "), "");
}

TEST(CfonbDate, FourDigitsOfTheYearStandFirst)
{
    EXPECT_EQ(engine::DateOfFourDigitYear("20261231"), "20261231");
    EXPECT_EQ(engine::DateOfFourDigitYear("20261331"), "");
    EXPECT_EQ(engine::DateOfFourDigitYear("20260032"), "");
    EXPECT_EQ(engine::DateOfFourDigitYear("2026123"), "");
    EXPECT_EQ(engine::DateOfFourDigitYear("2026-2-3"), "");
}
