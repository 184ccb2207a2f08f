#pragma once

#include "host/scratch/interruption.h"

#include <string>
#include <vector>

namespace scratch
{

/// What the name of a trace file of signcheck's own ends with.
inline constexpr const char* kTraceEnding = ".trace";

/// Where such files are made: in the folder for temporary files, or in that of progress journals
/// where the first cannot be written. Windows-1252.
std::vector<std::string> TraceFolders();

/// An empty file for the trace of a check that a command needs for itself, for its owner only. Its
/// name tells its origin as that of a copy does; see LeftoverFiles. Removed at the end of the
/// scope.
class OwnTrace
{
public:
    OwnTrace();
    ~OwnTrace();
    OwnTrace(const OwnTrace&) = delete;
    OwnTrace& operator=(const OwnTrace&) = delete;

    /// Windows-1252; empty when no file could be made.
    const std::string& Path() const noexcept { return m_path; }

    /// A sentence for a file that could not be made, and the remedy.
    static std::string Failure();

private:
    Interruption m_interruption; ///< ends behind the file
    std::string m_path;
};

} // namespace scratch
