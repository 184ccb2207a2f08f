#pragma once

// Looking into a file at a place where anybody may have put something else: a link, a pipe that
// nobody writes to, a device.

#include "port/export.h"

#include <cstddef>
#include <string>

namespace port
{

enum class PlainFile
{
    Read,
    Missing,
    Other,  ///< a link, a folder, a pipe or a device
    Failed, ///< with the reason as last error
};

/// Reads the file from its beginning, `most` bytes or as many as there are. Follows no link of that
/// name and waits for nobody. `path` is Windows-1252.
[[nodiscard]] SIGNUTILS_PORT_API PlainFile ReadPlainFile(const char* path, std::size_t most,
                                                         std::string& bytes);

} // namespace port
