#include "host/rulebook/amount_reading.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace rulebook
{
namespace
{

struct ReadingCase
{
    const char* name;
    const char* text;
    std::vector<std::string> meant;
    std::string read;
    bool isRead;
};

const ReadingCase kReadingCases[] = {
    {"APointBeforeDecimals", "50000.00", {"50000.00"}, "50000.00", true},
    {"AWholeNumber", "50000", {"50000.00"}, "50000.00", true},
    {"ACommaBeforeTwoDecimals", "1500,50", {"1500.50"}, "1500.50", true},
    {"GroupsWithPointsAndAComma", "1.234.567,50", {"1234567.50"}, "1234567.50", true},
    {"GroupsWithBlanks", "1 000 000", {"1000000.00"}, "1000000.00", true},
    {"GroupsWithNarrowBlanks", "1\u202F000,5", {"1000.50"}, "1000.50", true},
    {"BlanksAroundIt", " 12.5 ", {"12.50"}, "12.50", true},
    {"SixDecimals", "0.000001", {"0.000001"}, "0.000001", true},
    {"ThreeDecimalsBehindFourDigits", "1500.500", {"1500.50"}, "1500.50", true},
    {"ThreeDecimalsBehindZero", "0.500", {"0.50"}, "0.50", true},
    {"BelowZero", "-5.00", {"-5.00"}, "-5.00", true},
    {"TheLargest", "922337203685.47", {"922337203685.47"}, "922337203685.47", true},
    {"ACommaBeforeThreeDigitsIsBoth", "10,000", {"10.00", "10000.00"}, "10.00", false},
    {"APointBeforeThreeDigitsIsBoth", "1.000", {"1.00", "1000.00"}, "1.00", false},
    {"GroupsAlone", "1.234.567", {"1234567.00"}, "1234.567", false},
    {"TheSeventhDecimalIsDropped", "0.1234567", {"0.1234567"}, "0.123456", false},
    {"TheNinthDecimalScalesIt", "0.123456789", {"0.123456789"}, "12.345678", false},
    {"BeyondWhatACheckCanWeigh",
     "99999999999999",
     {"99999999999999.00"},
     "922337203685.4775",
     false},
    {"BelowZeroAndAboveMinusATenth", "-0.05", {"-0.05"}, "0.00", false},
    {"AnExponent", "1e5", {}, "15.00", false},
    {"ACurrency", "EUR 500", {}, "500.00", false},
    {"GroupsOfTwo", "10 00", {}, "1000.00", false},
    {"TwoKindsOfGroups", "1.000 000", {}, "1.00", false},
    {"NoDigitBehindThePoint", "5.", {"5.00"}, "5.00", true},
    {"Nothing", "", {}, "0.00", false},
    {"Letters", "unlimited", {}, "0.00", false},
};

class AmountReadingTest : public testing::TestWithParam<ReadingCase>
{
};

TEST_P(AmountReadingTest, IsWhatPeopleMeanAndWhatACheckReads)
{
    const AmountReading reading = ReadingOf(GetParam().text);

    EXPECT_EQ(reading.meant, GetParam().meant);
    EXPECT_EQ(reading.read, GetParam().read);
    EXPECT_EQ(reading.isRead, GetParam().isRead);
}

INSTANTIATE_TEST_SUITE_P(Texts, AmountReadingTest, testing::ValuesIn(kReadingCases),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
} // namespace rulebook
