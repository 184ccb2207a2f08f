#include "support/measures_text.h"

#include "support/codepage.h"
#include "support/format.h"

#include <cstdint>
#include <string>

namespace support
{

namespace
{

constexpr MetricFamily kStart = {"signutils_measures_start_time_seconds", "gauge",
                                 "When the process began to count, in seconds since 1970."};
constexpr MetricFamily kChecks = {"signutils_checks_total", "counter",
                                  "Checks by verdict, reason code and service of the contract."};
constexpr MetricFamily kShortfallFamily = {
    "signutils_shortfalls_total", "counter",
    "Checks that fell short of something, by what it was."};
constexpr MetricFamily kCheckTime = {"signutils_check_seconds", "histogram",
                                     "Time of whole checks, conversion and statements included."};
constexpr MetricFamily kConversionTime = {"signutils_conversion_seconds", "histogram",
                                          "Time in which order files were converted."};
constexpr MetricFamily kStatementTime = {
    "signutils_statement_seconds", "histogram",
    "Time until the database answered a statement, without the fetching of rows."};

std::string Seconds(std::chrono::nanoseconds duration)
{
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    const std::int64_t count = duration.count();
    return std::to_string(count / kNanoseconds) +
           FormatA(".%09d", static_cast<int>(count % kNanoseconds));
}

void AppendHistogram(Exposition& text, const MetricFamily& family, const Histogram& histogram)
{
    const Histogram::Reading reading = histogram.Read();
    text.Begin(family);
    std::uint64_t count = 0;
    for (std::size_t bucket = 0; bucket < reading.counts.size(); ++bucket)
    {
        count += reading.counts[bucket];
        const bool isLast = bucket == std::size(kDurationBounds);
        text.Sample(std::to_string(count),
                    {{"le", isLast ? "+Inf" : kDurationBounds[bucket].seconds}}, "_bucket");
    }
    text.Sample(Seconds(reading.sum), {}, "_sum");
    text.Sample(std::to_string(count), {}, "_count");
}

// What never came has no sample: most reasons belong to one end of a check only.
void AppendCounts(Exposition& text, std::string_view service, const CheckCounts::Counts& counts)
{
    for (std::size_t end = 0; end < counts.size(); ++end)
    {
        for (std::size_t reason = 0; reason < counts[end].size(); ++reason)
        {
            if (counts[end][reason] > 0)
            {
                text.Sample(std::to_string(counts[end][reason]), {{"verdict", kCheckEnds[end]},
                                                                  {"reason", kReasons[reason]},
                                                                  {"service", service}});
            }
        }
    }
}

void AppendChecks(Exposition& text, const CheckCounts::Reading& checks)
{
    text.Begin(kChecks);
    for (const CheckCounts::OfService& each : checks.services)
    {
        AppendCounts(text, Utf8FromNarrow(each.Name()), each.counts);
    }
    AppendCounts(text, CheckCounts::kOtherServices, checks.others);
    text.Begin(kShortfallFamily);
    for (std::size_t kind = 0; kind < checks.shortfalls.size(); ++kind)
    {
        text.Sample(std::to_string(checks.shortfalls[kind]), {{"kind", kShortfalls[kind]}});
    }
}

} // namespace

void AppendMeasures(Exposition& text, const Measures& measures)
{
    const auto start = measures.start.time_since_epoch();
    text.Begin(kStart);
    text.Sample(std::to_string(std::chrono::duration_cast<std::chrono::seconds>(start).count()));
    AppendChecks(text, measures.checks.Read());
    AppendHistogram(text, kCheckTime, measures.checkTime);
    AppendHistogram(text, kConversionTime, measures.conversionTime);
    AppendHistogram(text, kStatementTime, measures.statementTime);
}

} // namespace support
