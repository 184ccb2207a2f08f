#pragma once

#include "host/option_values.h"

#include <chrono>
#include <string>

namespace batch
{

/// The measures of a run in the file of --metrics: from the beginning, every 15 seconds, and at the
/// end, however the run ends. Without the option nothing is gathered. A file that cannot be written
/// is a warning, once for each reason, and changes nothing else.
class MetricsFile
{
public:
    /// `judged` is the folder of the orders, UTF-8; empty where they are listed. Raises
    /// UsageRefusal for an empty name, for one that has no place in Windows-1252, for a file in
    /// `judged`, and where something else than measures lies.
    MetricsFile(const host::OptionValues& values, const std::string& judged);
    ~MetricsFile();
    MetricsFile(const MetricsFile&) = delete;
    MetricsFile& operator=(const MetricsFile&) = delete;

    /// Writes when it is time; for the loop of a run.
    void Turn();

private:
    using Clock = std::chrono::steady_clock;

    void Write();

    std::string m_path; ///< Windows-1252; empty without the option
    std::string m_told; ///< the problem that was told last
    Clock::time_point m_next;
};

} // namespace batch
