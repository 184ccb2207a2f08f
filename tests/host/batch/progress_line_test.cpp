#include "host/batch/progress_bar.h"
#include "host/status_line.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace batch
{
namespace
{

OrderResult Result(Ending ending, unsigned int verdict)
{
    OrderResult result;
    result.ending = ending;
    result.check.ran = ending == Ending::Judged;
    result.check.rulesComplete = true;
    result.check.verdict = verdict;
    result.check.amounts.origin = host::AmountsOrigin::Given;
    if (result.IsJudged())
    {
        result.status = host::ExitStatusOf(result.check);
    }
    return result;
}

TEST(ProgressLine, TellsHowFarTheRunIs)
{
    Tally tally;
    tally.Add(Result(Ending::Judged, 1));
    tally.Add(Result(Ending::Judged, 2));
    tally.Add(Result(Ending::NotJudged, 0));

    EXPECT_EQ(ProgressLine(tally, 12, 1.5, false),
              "[#####...............] 3/12 files, 1 refused, 1 errors, 2/s, 0:00:05 left");
}

TEST(ProgressLine, OfAnEmptyRunIsFull)
{
    EXPECT_EQ(ProgressLine(Tally(), 0, 0.0, false),
              "[####################] 0/0 files, 0 refused, 0 errors, 0/s");
}

TEST(ProgressLine, HasColoursOnlyWhereTheyAreWanted)
{
    Tally tally;
    tally.Add(Result(Ending::Judged, 2));

    EXPECT_NE(ProgressLine(tally, 1, 1.0, true).find("\x1B[33m1 refused\x1B[0m"),
              std::string::npos);
    EXPECT_EQ(ProgressLine(tally, 1, 1.0, false).find('\x1B'), std::string::npos);
}

TEST(ProgressLine, IsCutWhereTheTerminalEndsAndKeepsNoColour)
{
    Tally tally;
    tally.Add(Result(Ending::Judged, 2));
    const std::string plain = ProgressLine(tally, 10'000, 1.0, false);
    const std::string coloured = ProgressLine(tally, 10'000, 1.0, true);

    EXPECT_EQ(host::FitInto(plain, 30), plain.substr(0, 30));
    EXPECT_EQ(host::FitInto(plain, plain.size()), plain);
    EXPECT_EQ(host::FitInto(plain, 0), plain);
    EXPECT_EQ(host::FitInto(coloured, plain.size()), coloured);
    // "[....................] 1/10000 files, 1 ref"
    EXPECT_EQ(host::FitInto(coloured, 43),
              plain.substr(0, 38) + "\x1B[33m" + plain.substr(38, 5) + "\x1B[0m");
}

TEST(Counts, TellOrdersThatWaitForTheirTerms)
{
    Tally tally;
    EXPECT_EQ(tally.InWords(0.0).find("terms"), std::string::npos);

    tally.SetWithoutTerms(2);

    EXPECT_NE(tally.InWords(0.0).find(", 2 waiting for terms; "), std::string::npos);
    EXPECT_EQ(tally.AsJson(0.0)["withoutTerms"], 2);
}

TEST(Gravity, OfARunIsThatOfItsGravestOrder)
{
    EXPECT_LT(GravityOf(host::kDone), GravityOf(host::kFindings));
    EXPECT_LT(GravityOf(host::kFindings), GravityOf(host::kNoRule));
    EXPECT_LT(GravityOf(host::kNoRule), GravityOf(host::kAmountsUnknown));
    EXPECT_LT(GravityOf(host::kAmountsUnknown), GravityOf(host::kCouldNotRun));

    Tally tally;
    EXPECT_EQ(tally.Status(), host::kDone);
    tally.Add(Result(Ending::Judged, 2));
    tally.Add(Result(Ending::Judged, 1));
    EXPECT_EQ(tally.Status(), host::kFindings);
    tally.Add(Result(Ending::Judged, 0));
    EXPECT_EQ(tally.Status(), host::kNoRule);
    tally.SetLeft(1);
    EXPECT_EQ(tally.Status(), host::kCouldNotRun);
}

} // namespace
} // namespace batch
