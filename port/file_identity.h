#pragma once

// Which file a path stands for at this moment: tells a file from another one put in its place.

#include "port/export.h"

#include <cstdint>
#include <string>

namespace port
{

struct FileIdentity
{
    std::uint64_t volume = 0;
    std::uint64_t number = 0; ///< 0 stands for no file

    bool operator==(const FileIdentity&) const = default;
};

/// `path` is UTF-8. All 0 when there is no such file.
SIGNUTILS_PORT_API FileIdentity IdentifyFile(const std::string& path);

} // namespace port
