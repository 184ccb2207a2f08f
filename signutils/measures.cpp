#include "signutils/measures.h"

#include "port/files.h"
#include "port/kernel.h"
#include "services/file_contents.h"
#include "services/spool_depth.h"
#include "services/system_error.h"
#include "signutils/version.h"
#include "support/codepage.h"
#include "support/folders.h"
#include "support/measures_place.h"
#include "support/measures_text.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace
{

using support::MetricFamily;

constexpr char kNotStarted[] = "no measures are gathered. Start them before they are written.";
constexpr MetricFamily kBuild = {"signutils_build_info", "gauge",
                                 "1, with the version of the library."};
constexpr MetricFamily kSpoolEvents = {
    "signutils_spool_events", "gauge",
    "Audit events of every database that wait in the spool folder."};
constexpr MetricFamily kSpoolUnreadable = {
    "signutils_spool_unreadable_files", "gauge",
    "Files of the spool, or its folder, that could not be counted."};

/// The name of a file without folders and without its last ending, UTF-8.
std::string SourceOf(std::string_view path)
{
    const auto end = std::find_if(path.rbegin(), path.rend(), port::IsPathSeparator).base();
    const std::string_view name = path.substr(static_cast<std::size_t>(end - path.begin()));
    return support::Utf8FromNarrow(name.substr(0, name.rfind('.')));
}

std::string CannotWrite(const std::string& file, const std::string& reason,
                        const std::string& remedy)
{
    return "the measures cannot be written to \"" + services::OneLine(file) + "\": " + reason +
           ". " + remedy;
}

/// Of the last error.
std::string FailureOf(const std::string& file)
{
    return CannotWrite(file, services::SystemErrorText(GetLastError()),
                       "Give a file in a folder that this user may write.");
}

void AppendSpool(support::Exposition& text)
{
    const services::SpoolDepth depth = services::DepthOfSpool(support::SpoolFolder());
    text.Begin(kSpoolEvents);
    text.Sample(std::to_string(depth.events));
    text.Begin(kSpoolUnreadable);
    text.Sample(std::to_string(depth.unreadable));
}

std::string TextOf(const support::Measures& measures, std::string_view path)
{
    support::Exposition text(SourceOf(path));
    text.Begin(kBuild);
    text.Sample("1", {{"version", SIGNUTILS_VERSION}});
    support::AppendMeasures(text, measures);
    AppendSpool(text);
    return text.Text();
}

} // namespace

namespace signutils
{

void StartMeasures()
{
    support::StartMeasures();
}

bool WriteMeasures(const char* path, TSimpleString& problem)
{
    const support::Measures* const measures = support::g_measures.load(std::memory_order_acquire);
    if (measures == nullptr)
    {
        problem = kNotStarted;
        return false;
    }
    const std::string file = path == nullptr ? "" : path;
    // A mistyped name must not cost a database or an order.
    if (const char* const obstacle = support::ObstacleToMeasures(file); obstacle != nullptr)
    {
        problem = CannotWrite(file, obstacle, support::kOtherMeasuresFile).c_str();
        return false;
    }
    if (!services::ReplaceReadableFile(file, TextOf(*measures, file)))
    {
        problem = FailureOf(file).c_str();
        return false;
    }
    problem.Empty();
    return true;
}

} // namespace signutils
