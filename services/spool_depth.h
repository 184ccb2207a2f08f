#pragma once

#include <cstdint>
#include <string>

namespace services
{

/// What waits in a spool folder.
struct SpoolDepth
{
    std::uint64_t events = 0;     ///< of every database, and of none
    std::uint64_t unreadable = 0; ///< files, or the folder itself, that could not be counted
};

/// Counts the events of all files of the folder, each while nobody writes it. A folder that is not
/// there holds none.
SpoolDepth DepthOfSpool(const std::string& folder);

} // namespace services
