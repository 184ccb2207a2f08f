#include "support/hash.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{

TEST(GetHashValue, EqualTextsHaveEqualHashes)
{
    EXPECT_EQ(GetHashValue("QRV"), GetHashValue(TSimpleString("QRV")));
    EXPECT_EQ(GetHashValue(""), GetHashValue(TSimpleString()));
}

TEST(GetHashValue, RespectsCase)
{
    EXPECT_NE(GetHashValue("key"), GetHashValue("KEY"));
}

TEST(GetHashValue, IsTheSameInEveryRunAndOnEveryPlatform)
{
    EXPECT_EQ(GetHashValue(""), 2166136261U);
    EXPECT_EQ(GetHashValue("a"), 0xE40C292CU);
    EXPECT_EQ(GetHashValue("foobar"), 0xBF9CF968U);
    EXPECT_NE(GetHashValue("\xE9"), GetHashValue("\x69")) << "every bit of a byte counts";
}

TEST(GetHashValue, SpreadsKeysThatDifferInOneDigitOverSmallTables)
{
    std::set<std::uint32_t> of3;
    std::set<std::uint32_t> of61;
    for (int number = 0; number < 1000; ++number)
    {
        const std::uint32_t hash = GetHashValue(("key" + std::to_string(number)).c_str());
        of3.insert(hash % 3);
        of61.insert(hash % 61);
    }
    EXPECT_EQ(of3.size(), 3U);
    EXPECT_EQ(of61.size(), 61U);
}

} // namespace
