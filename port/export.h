#pragma once

/// Marks what port/ gives to other modules. Its library is shared on POSIX, so that last error,
/// invalid-parameter handler and class registry exist once in a process.
#if defined(_WIN32)
#define SIGNUTILS_PORT_API
#else
#define SIGNUTILS_PORT_API __attribute__((visibility("default")))
#endif
