#pragma once

#include "port/kernel.h"

namespace port
{

/// The Windows error of an errno value. ENOENT is ERROR_FILE_NOT_FOUND.
DWORD ErrorOf(int errnoValue, DWORD otherwise = ERROR_GEN_FAILURE);

/// Sets the last error from errno and gives back false.
bool FailWithErrno(DWORD otherwise = ERROR_GEN_FAILURE);

/// As FailWithErrno for a call that names a file: a missing folder above it is
/// ERROR_PATH_NOT_FOUND, as is an empty name.
bool FailOnPath(const char* nativePath);

} // namespace port
