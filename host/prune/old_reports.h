#pragma once

#include "host/prune/archive.h"

#include <cstdint>
#include <functional>
#include <string>

namespace host
{
struct StoredReport;
}

namespace prune
{

/// The list of the archived reports within the archive; their copies lie beside it in reports/.
inline constexpr const char* kReportsFile = "reports.ndjson";

/// The status reports of a hand-off store that tell a day before a day. One that tells no time is
/// none of them.
class OldReports
{
public:
    /// `store` is Windows-1252.
    OldReports(std::string store, std::string day);

    /// Copies them to reports/<service>/<partner>/, and lists them with their digests. Raises
    /// Refusal.
    ArchivedFile Export(const std::string& folder) const;

    /// Removes those of the list that are in the store as they were copied; returns how many. One
    /// that is another meanwhile raises Refusal.
    static std::uint64_t Remove(const std::string& folder);

    std::uint64_t Count() const;

private:
    void ForEach(const std::function<void(const host::StoredReport&)>& take) const;

    std::string m_store;
    std::string m_day;
};

/// Reads every copy again. Raises Refusal when one is not what was copied.
void VerifyReports(const std::string& folder);

} // namespace prune
