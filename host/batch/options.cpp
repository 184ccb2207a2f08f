#include "host/batch/options.h"

#include "host/batch/terms.h"
#include "host/output_format.h"

#include <algorithm>
#include <string_view>

namespace batch
{

namespace
{

using host::OptionKind;
using host::OptionSpec;

constexpr std::string_view kShared[] = {"db", "hand-off", host::kConfigOption};

constexpr OptionSpec kOrders = {"orders", OptionKind::Text, "ORDERS",
                                "folder of order files, or a list of them (CSV or JSON lines)",
                                true};
constexpr OptionSpec kFolder = {"folder", OptionKind::Text, "FOLDER",
                                "folder that order files come into", true};
constexpr OptionSpec kSettle = {"settle", OptionKind::Number, "SECONDS",
                                "a file that nobody told of is whole when it stays the same so "
                                "long; 2 when not given"};
constexpr OptionSpec kRescan = {"rescan", OptionKind::Number, "SECONDS",
                                "look at the whole folder so often; 30 when not given"};
constexpr OptionSpec kJobs = {"jobs", OptionKind::Number, "N",
                              "judge N orders at the same time; else one a processor"};
constexpr OptionSpec kSidecar = {"sidecar", OptionKind::Flag, "",
                                 "each order has its own terms beside it, in ORDER.terms"};
constexpr OptionSpec kJournal = {"journal", OptionKind::Text, "FILE",
                                 "where the progress is kept; else in a folder of the user's own"};
constexpr OptionSpec kRemoveLeftovers = {"remove-leftovers", OptionKind::Text, "AGE",
                                         "remove work files of killed runs that are older than "
                                         "that: 90s, 30m, 12h or 2d"};
constexpr OptionSpec kMetrics = {"metrics", OptionKind::Text, "FILE",
                                 "keep counters and times for a monitoring server in this file"};
constexpr OptionSpec kJsonLines = {"json", OptionKind::Flag, "",
                                   "print one JSON object a line: each order, then the summary"};

constexpr OptionSpec kLinesFormat = {
    host::kOutputFormatOption,
    OptionKind::Text,
    "F",
    "table, for people; json or ndjson: an object a line, as --json; csv: a line of names, then a "
    "row an order",
    false,
    "table|json|ndjson|csv"};

// Terms and what goes with them, in the order of check.
void AddShared(const std::vector<OptionSpec>& ofCheck, std::vector<OptionSpec>& options)
{
    std::copy_if(ofCheck.begin(), ofCheck.end(), std::back_inserter(options),
                 [](const OptionSpec& option)
                 {
                     return IsTerm(option.name) || std::find(std::begin(kShared), std::end(kShared),
                                                             option.name) != std::end(kShared);
                 });
}

} // namespace

std::vector<OptionSpec> BatchOptions(const std::vector<OptionSpec>& ofCheck)
{
    std::vector<OptionSpec> options = {kOrders,          kJobs,   kSidecar, kJournal,
                                       kRemoveLeftovers, kMetrics};
    AddShared(ofCheck, options);
    options.push_back(kLinesFormat);
    options.push_back(kJsonLines);
    return options;
}

std::vector<OptionSpec> WatchOptions(const std::vector<OptionSpec>& ofCheck)
{
    std::vector<OptionSpec> options = {kFolder, kJobs,    kSidecar,         kSettle,
                                       kRescan, kJournal, kRemoveLeftovers, kMetrics};
    AddShared(ofCheck, options);
    options.push_back(kLinesFormat);
    options.push_back(kJsonLines);
    return options;
}

} // namespace batch
