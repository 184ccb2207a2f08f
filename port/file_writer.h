#pragma once

#include "port/export.h"

namespace port
{

enum class Writer
{
    None,
    Some,    ///< somebody has the file open to write
    Unknown, ///< the system does not tell: another user's file, a network file system
};

/// Whether somebody is writing the file now. `path` is Windows-1252.
SIGNUTILS_PORT_API Writer WriterOf(const char* path);

} // namespace port
