#pragma once

// What keeps the secrets of a process and of a file from others. Paths are Windows-1252.

#include "port/export.h"

#include <string>

namespace port
{

/// From now on the process leaves no core and lets no other process of the same user read its
/// memory or its environment. For programs, not for libraries: it is the whole process that
/// changes.
SIGNUTILS_PORT_API void KeepMemoryPrivate() noexcept;

/// What others than the owner may do.
struct FileRights
{
    bool othersMayRead = false;  ///< anybody but the owner
    bool othersMayWrite = false; ///< anybody but the owner
    bool everybodyMayWrite = false;
    bool isSticky = false; ///< a folder that everybody shares on purpose
    std::string mode;      ///< as in "0644"
};

/// The rights of a file or folder. Where the platform has access lists in place of modes, and where
/// the file cannot be looked at, others have none.
SIGNUTILS_PORT_API FileRights RightsOf(const char* path);

/// Whether the current user may write into a file that is there. The file is not touched.
SIGNUTILS_PORT_API bool IsWritableFile(const char* path);

/// Whether a file or folder that is there belongs to another user than the current one.
SIGNUTILS_PORT_API bool BelongsToOther(const char* path);

/// Whether the path itself is a link, wherever it leads.
SIGNUTILS_PORT_API bool IsLink(const char* path);

} // namespace port
