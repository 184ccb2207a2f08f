#include "tests/model/differences.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

using model::Differences;
using model::Results;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

Results Told(double total)
{
    Results results;
    results.answers.push_back({model::Answer()});
    results.answers[0][0].total = total;
    return results;
}

Results Stored(double total)
{
    Results results;
    results.history.push_back(model::HistoryRow());
    results.history[0].total = total;
    return results;
}

TEST(Differences, InfiniteAmountsEqualThemselvesOnly)
{
    EXPECT_THAT(Differences(Told(kInfinity), Told(kInfinity)), IsEmpty());
    EXPECT_THAT(Differences(Told(kInfinity), Told(-kInfinity)), HasSubstr("total"));
    EXPECT_THAT(Differences(Told(kInfinity), Told(100.0)), HasSubstr("total"));
    EXPECT_THAT(Differences(Stored(kInfinity), Stored(100.0)), HasSubstr("TOTAL"));
    EXPECT_THAT(Differences(Stored(100.0), Stored(kInfinity)), HasSubstr("TOTAL"));
}

TEST(Differences, NotANumberEqualsItself)
{
    EXPECT_THAT(Differences(Told(kNone), Told(kNone)), IsEmpty());
    EXPECT_THAT(Differences(Told(kNone), Told(0.0)), HasSubstr("total"));
}

TEST(Differences, OnlyTheDatabaseMayMissTheLastPlace)
{
    const double near = std::nextafter(1000.0, 2000.0);
    EXPECT_THAT(Differences(Stored(1000.0), Stored(near)), IsEmpty());
    EXPECT_THAT(Differences(Told(1000.0), Told(near)), HasSubstr("total"));
    EXPECT_THAT(Differences(Stored(1000.0), Stored(1000.01)), HasSubstr("TOTAL"));
}

} // namespace
