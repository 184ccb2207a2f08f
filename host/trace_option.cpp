#include "host/trace_option.h"

#include "host/moment.h"
#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"

#include <string_view>

namespace host
{

namespace
{

// Of the first section's time, as support/trace.h shows it.
constexpr std::string_view kTraceNameBegins = "[0000-00-00 00:00:00.";

// Pipes and devices are no files that anything could be lost from.
bool HoldsSomethingElse(const std::string& path)
{
    port::File file;
    if (port::FileSize(path.c_str()) == 0 || !file.Open(path.c_str(), port::OpenMode::Read))
    {
        return false;
    }
    char beginning[kTraceNameBegins.size()] = {};
    const std::int64_t count = file.Read(beginning, sizeof beginning);
    return count < 0 || !HasShape({beginning, static_cast<std::size_t>(count)}, kTraceNameBegins);
}

} // namespace

std::string TraceFileFrom(const OptionValues& values)
{
    const std::string path = OptionalNarrowText(values, "trace");
    if (!path.empty() && HoldsSomethingElse(path))
    {
        const OptionValue& given = *values.Find("trace");
        throw UsageRefusal(given.origin + ": " + Quoted(given.text) +
                           " is no trace, and nothing is appended to it. Name a new file, or one "
                           "that a trace was written to.");
    }
    return path;
}

} // namespace host
