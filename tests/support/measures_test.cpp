#include "support/measures.h"
#include "support/measures_place.h"
#include "support/measures_text.h"
#include "tests/testing/exposition_reader.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace
{

using namespace std::chrono_literals;
using support::CheckCounts;
using support::CheckEnd;
using support::CheckFacts;
using support::Exposition;
using support::Histogram;
using support::Measures;
using support::Shortfall;
using support::Stopwatch;
using ::testing::HasSubstr;
using testing_support::ExpositionReader;
using testing_support::MetricLabels;
using testing_support::TemporaryFolder;

/// Sends measures to its own while it lives.
class Gathering
{
public:
    Gathering() { support::g_measures = &m_measures; }
    ~Gathering() { support::g_measures = m_before; }
    Gathering(const Gathering&) = delete;
    Gathering& operator=(const Gathering&) = delete;

    Measures& Get() noexcept { return m_measures; }

private:
    Measures* m_before = support::g_measures;
    Measures m_measures;
};

std::string TextOf(const Measures& measures, const std::string& source = "bank")
{
    Exposition text(source);
    support::AppendMeasures(text, measures);
    return text.Text();
}

CheckFacts Check(CheckEnd end, std::string_view reason = "", std::string_view service = "CCT")
{
    CheckFacts facts;
    facts.end = end;
    facts.reasonCode = reason;
    facts.service = service;
    return facts;
}

MetricLabels Labels(const std::string& verdict, const std::string& reason,
                    const std::string& service = "CCT")
{
    return {{"verdict", verdict}, {"reason", reason}, {"service", service}, {"source", "bank"}};
}

TEST(Measures, NothingIsGatheredWithoutATarget)
{
    const Stopwatch watch(&Measures::checkTime);
    EXPECT_EQ(watch.Target(), support::g_measures);
}

TEST(Measures, StopwatchAddsItsLifeToItsHistogramAlone)
{
    Gathering gathering;
    {
        const Stopwatch watch(&Measures::statementTime);
        EXPECT_EQ(watch.Target(), &gathering.Get());
    }
    const ExpositionReader read(TextOf(gathering.Get()));
    EXPECT_EQ(read.Sum("signutils_statement_seconds_count"), 1.0);
    EXPECT_EQ(read.Sum("signutils_check_seconds_count"), 0.0);
    EXPECT_EQ(read.Sum("signutils_conversion_seconds_count"), 0.0);
}

// Else there were times without their check.
TEST(Measures, StopwatchThatBeganBeforeTheMeasuresAddsNothing)
{
    auto before = std::make_unique<Stopwatch>(&Measures::checkTime);
    Measures* const target = before->Target();
    Gathering gathering;
    EXPECT_NE(target, &gathering.Get());
    before.reset();
    EXPECT_EQ(gathering.Get().checkTime.Read().sum, 0ns);
}

TEST(Histogram, BoundBelongsToItsBucket)
{
    Histogram histogram;
    histogram.Add(100us);
    histogram.Add(100us + 1ns);
    histogram.Add(60s);
    histogram.Add(60s + 1ns);
    const Histogram::Reading reading = histogram.Read();
    EXPECT_EQ(reading.counts[0], 1U);
    EXPECT_EQ(reading.counts[1], 1U);
    EXPECT_EQ(reading.counts[Histogram::kBuckets - 2], 1U);
    EXPECT_EQ(reading.counts[Histogram::kBuckets - 1], 1U);
    EXPECT_EQ(reading.sum, 120s + 200us + 2ns);
}

TEST(Histogram, BoundsRiseAndAreWrittenAsTheyAre)
{
    std::chrono::nanoseconds before = 0ns;
    for (const support::DurationBound& each : support::kDurationBounds)
    {
        EXPECT_GT(each.upTo, before);
        EXPECT_DOUBLE_EQ(std::chrono::duration<double>(each.upTo).count(), std::stod(each.seconds));
        before = each.upTo;
    }
}

TEST(MeasuresText, IsWellFormedBeforeAnythingIsCounted)
{
    const Measures measures;
    const ExpositionReader read(TextOf(measures));
    EXPECT_THAT(read.FamilyNames(),
                ::testing::ElementsAre("signutils_measures_start_time_seconds",
                                       "signutils_checks_total", "signutils_shortfalls_total",
                                       "signutils_check_seconds", "signutils_conversion_seconds",
                                       "signutils_statement_seconds"));
    EXPECT_EQ(read.Count("signutils_checks_total"), 0U);
    EXPECT_EQ(read.Count("signutils_shortfalls_total"), std::size(support::kShortfalls));
    EXPECT_EQ(read.Sum("signutils_shortfalls_total"), 0.0);
    EXPECT_NEAR(read.Sum("signutils_measures_start_time_seconds"),
                static_cast<double>(std::chrono::system_clock::to_time_t(measures.start)), 1.0);
}

TEST(MeasuresText, BucketsAreCumulativeAndSumAndCountAreExact)
{
    Measures measures;
    measures.checkTime.Add(2ms);
    measures.checkTime.Add(3ms);
    measures.checkTime.Add(1s + 500ns);
    measures.checkTime.Add(2min);
    const std::string text = TextOf(measures);
    const ExpositionReader read(text);
    const auto bucket = [&read](const char* bound) {
        return read.Sum("signutils_check_seconds_bucket", {{"le", bound}});
    };
    EXPECT_EQ(bucket("0.001"), 0.0);
    EXPECT_EQ(bucket("0.0025"), 1.0);
    EXPECT_EQ(bucket("0.005"), 2.0);
    EXPECT_EQ(bucket("1"), 2.0);
    EXPECT_EQ(bucket("2.5"), 3.0);
    EXPECT_EQ(bucket("60"), 3.0);
    EXPECT_EQ(bucket("+Inf"), 4.0);
    EXPECT_THAT(text, HasSubstr("signutils_check_seconds_sum{source=\"bank\"} 121.005000500\n"));
    EXPECT_THAT(text, HasSubstr("signutils_check_seconds_count{source=\"bank\"} 4\n"));
}

TEST(MeasuresText, ChecksAreToldByVerdictReasonAndService)
{
    Measures measures;
    measures.checks.Add(Check(CheckEnd::Success));
    measures.checks.Add(Check(CheckEnd::Success));
    measures.checks.Add(Check(CheckEnd::Refused, "AM02"));
    measures.checks.Add(Check(CheckEnd::Refused, "NARR"));
    measures.checks.Add(Check(CheckEnd::NoRule, "NARR"));
    measures.checks.Add(Check(CheckEnd::NotRun, "", "SDD"));
    measures.checks.Add(Check(CheckEnd::Refused, "AC01"));
    const ExpositionReader read(TextOf(measures));
    const std::string name = "signutils_checks_total";
    EXPECT_EQ(read.Sum(name, Labels("success", "none")), 2.0);
    EXPECT_EQ(read.Sum(name, Labels("refused", "AM02")), 1.0);
    EXPECT_EQ(read.Sum(name, Labels("refused", "NARR")), 1.0);
    EXPECT_EQ(read.Sum(name, Labels("no-rule", "NARR")), 1.0);
    EXPECT_EQ(read.Sum(name, Labels("not-run", "none", "SDD")), 1.0);
    EXPECT_EQ(read.Sum(name, Labels("refused", "other")), 1.0);
    EXPECT_EQ(read.Sum(name), 7.0);
    EXPECT_EQ(read.Count(name), 6U);
}

TEST(MeasuresText, ShortfallsAreToldByKind)
{
    Measures measures;
    CheckFacts facts = Check(CheckEnd::Success);
    facts.shortfalls[static_cast<std::size_t>(Shortfall::AmountsUnknown)] = true;
    measures.checks.Add(facts);
    facts.shortfalls[static_cast<std::size_t>(Shortfall::EventLost)] = true;
    measures.checks.Add(facts);
    const ExpositionReader read(TextOf(measures));
    EXPECT_EQ(read.Sum("signutils_shortfalls_total", {{"kind", "amounts-unknown"}}), 2.0);
    EXPECT_EQ(read.Sum("signutils_shortfalls_total", {{"kind", "event-lost"}}), 1.0);
    EXPECT_EQ(read.Sum("signutils_shortfalls_total"), 3.0);
}

TEST(MeasuresText, HostileNamesStayOneLabelValue)
{
    Measures measures;
    measures.checks.Add(Check(CheckEnd::Success, "", "\"} 9\n\\x"));
    measures.checks.Add(Check(CheckEnd::Success, "", "\xC9T\xC9\r\t"));
    measures.checks.Add(Check(CheckEnd::Success, "", ""));
    const std::string source = "a\"b\\c\nd";
    const ExpositionReader read(TextOf(measures, source));
    const std::string name = "signutils_checks_total";
    EXPECT_EQ(read.Sum(name, {{"service", "\"} 9\n\\x"}, {"source", source}}), 1.0);
    EXPECT_EQ(read.Sum(name, {{"service", "\xC3\x89T\xC3\x89\r\t"}}), 1.0);
    EXPECT_EQ(read.Sum(name, {{"service", ""}}), 1.0);
}

TEST(MeasuresText, ServicesBeyondTheRoomAndNamesTooLongAreCountedAsOne)
{
    Measures measures;
    constexpr std::size_t kTooMany = CheckCounts::kMostServices + 20;
    for (std::size_t number = 0; number < kTooMany; ++number)
    {
        measures.checks.Add(Check(CheckEnd::Success, "", "S" + std::to_string(number)));
    }
    measures.checks.Add(Check(CheckEnd::Success, "", "S0"));
    measures.checks.Add(Check(CheckEnd::Success, "", "(other services)"));
    const ExpositionReader read(TextOf(measures));
    const std::string name = "signutils_checks_total";
    EXPECT_EQ(read.Sum(name), static_cast<double>(kTooMany + 2));
    EXPECT_EQ(read.Sum(name, {{"service", "S0"}}), 2.0);
    EXPECT_EQ(read.Count(name, {{"service", "S64"}}), 0U);
    EXPECT_EQ(read.Sum(name, {{"service", CheckCounts::kOtherServices}}), 21.0);
    EXPECT_EQ(read.Count(name), CheckCounts::kMostServices + 1);
}

TEST(Measures, SumsOfManyThreadsAreExact)
{
    constexpr int kThreads = 4;
    constexpr int kEach = 20'000;
    auto measures = std::make_unique<Measures>();
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            [&measures, thread]
            {
                const std::string own = "S" + std::to_string(thread);
                for (int number = 0; number < kEach; ++number)
                {
                    measures->checks.Add(Check(CheckEnd::Refused, "AM02", own));
                    measures->checks.Add(Check(CheckEnd::Success));
                    measures->statementTime.Add(1us);
                }
            });
    }
    // A reader in between finds a text that holds.
    const ExpositionReader meanwhile(TextOf(*measures));
    EXPECT_LE(meanwhile.Sum("signutils_checks_total"), 2.0 * kThreads * kEach);
    for (std::thread& each : threads)
    {
        each.join();
    }
    const ExpositionReader read(TextOf(*measures));
    for (int thread = 0; thread < kThreads; ++thread)
    {
        EXPECT_EQ(read.Sum("signutils_checks_total",
                           Labels("refused", "AM02", "S" + std::to_string(thread))),
                  kEach);
    }
    EXPECT_EQ(read.Sum("signutils_checks_total", Labels("success", "none")), kThreads * kEach);
    EXPECT_EQ(read.Sum("signutils_statement_seconds_count"), kThreads * kEach);
    EXPECT_DOUBLE_EQ(read.Sum("signutils_statement_seconds_sum"), 1e-6 * kThreads * kEach);
}

TEST(MeasuresPlace, IsFreeWhereNothingOrATextOfMeasuresLies)
{
    const TemporaryFolder folder;
    EXPECT_EQ(support::ObstacleToMeasures(folder.Path("none.prom")), nullptr);
    EXPECT_EQ(support::ObstacleToMeasures(folder.Write("empty.prom", "")), nullptr);
    EXPECT_EQ(support::ObstacleToMeasures(
                  folder.Write("old.prom", "# HELP signutils_build_info 1, with the version")),
              nullptr);
}

TEST(MeasuresPlace, IsTakenByWhateverElseLiesThere)
{
    const TemporaryFolder folder;
    for (const std::string text : {"SQLite format 3", "#", "# HELP node_load1 1m load average."})
    {
        EXPECT_STREQ(support::ObstacleToMeasures(folder.Write("file", text)),
                     "a file lies there that holds no measures");
    }
    EXPECT_STREQ(support::ObstacleToMeasures(folder.Path()),
                 "a link, a folder, a pipe or a device lies there");
}

struct MalformedText
{
    const char* name;
    const char* text;
};

// The reader that the other tests stand on.
const MalformedText kMalformed[] = {
    {"NoLastLineFeed", "# HELP a b\n# TYPE a gauge\na 1"},
    {"SampleWithoutFamily", "a 1\n"},
    {"SampleOfAnotherFamily", "# HELP a b\n# TYPE a gauge\nb 1\n"},
    {"TypeMissing", "# HELP a b\na 1\n"},
    {"TypeUnknown", "# HELP a b\n# TYPE a number\na 1\n"},
    {"FamilyTwice", "# HELP a b\n# TYPE a gauge\n# HELP a b\n# TYPE a gauge\n"},
    {"SampleTwice", "# HELP a b\n# TYPE a gauge\na{b=\"c\"} 1\na{b=\"c\"} 2\n"},
    {"LabelTwice", "# HELP a b\n# TYPE a gauge\na{b=\"c\",b=\"d\"} 1\n"},
    {"UnknownEscape", "# HELP a b\n# TYPE a gauge\na{b=\"\\t\"} 1\n"},
    {"QuoteInsideAValue", "# HELP a b\n# TYPE a gauge\na{b=\"c\"d\"} 1\n"},
    {"NoNumber", "# HELP a b\n# TYPE a gauge\na 1x\n"},
    {"EmptyLine", "# HELP a b\n# TYPE a gauge\n\n"},
    {"CounterWithoutTotal", "# HELP a b\n# TYPE a counter\na 1\n"},
    {"CounterOfHalves", "# HELP a_total b\n# TYPE a_total counter\na_total 0.5\n"},
    {"BucketsFall",
     "# HELP a b\n# TYPE a histogram\na_bucket{le=\"1\"} 2\na_bucket{le=\"+Inf\"} 1\n"
     "a_sum 1\na_count 1\n"},
    {"BoundsFall", "# HELP a b\n# TYPE a histogram\na_bucket{le=\"2\"} 1\na_bucket{le=\"1\"} 1\n"
                   "a_bucket{le=\"+Inf\"} 1\na_sum 1\na_count 1\n"},
    {"NoLastBucket", "# HELP a b\n# TYPE a histogram\na_bucket{le=\"2\"} 1\na_sum 1\na_count 1\n"},
    {"CountIsNotTheLastBucket",
     "# HELP a b\n# TYPE a histogram\na_bucket{le=\"+Inf\"} 1\na_sum 1\na_count 2\n"},
    {"NoSum", "# HELP a b\n# TYPE a histogram\na_bucket{le=\"+Inf\"} 1\na_count 1\n"},
};

class ExpositionReaderRefuses : public ::testing::TestWithParam<MalformedText>
{
};

TEST_P(ExpositionReaderRefuses, WhatIsMalformed)
{
    EXPECT_THROW(ExpositionReader{GetParam().text}, std::runtime_error);
}

INSTANTIATE_TEST_SUITE_P(Texts, ExpositionReaderRefuses, ::testing::ValuesIn(kMalformed),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
