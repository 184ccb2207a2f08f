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

/// A text that is another one as soon as the file was replaced, written to, or given another name,
/// time or right: its number and the time of its last change of any kind, which nobody sets. It
/// does not name the volume, whose number may change when the system starts. Empty when there is no
/// such file. `path` is UTF-8.
SIGNUTILS_PORT_API std::string StampOf(const std::string& path);

/// The one full path of what `path` leads to, without links; empty when that is not there. UTF-8.
SIGNUTILS_PORT_API std::string RealPath(const std::string& path);

} // namespace port
