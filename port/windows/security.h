#pragma once

#include "port/kernel.h"

namespace port
{

/// What a new file or folder gets so that its owner alone may use it. Null, with the last error
/// set, when the system refuses to tell who that is. Lives as long as the process.
SECURITY_ATTRIBUTES* OwnerOnly();

/// Whether the current user owns what the path names; false with the reason as last error,
/// ERROR_INVALID_OWNER when it is somebody else's.
bool IsOwnedByCurrentUser(const wchar_t* path);

} // namespace port
