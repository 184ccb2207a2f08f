#pragma once

/// What hosts may call. SIGNUTILS_BUILDING is set while the library itself is compiled,
/// SIGNUTILS_STATIC by programs that link its rooms instead of the shared library.
#if defined(_WIN32)
#if defined(SIGNUTILS_BUILDING)
#define SIGNUTILS_API __declspec(dllexport)
#elif defined(SIGNUTILS_STATIC)
#define SIGNUTILS_API
#else
#define SIGNUTILS_API __declspec(dllimport)
#endif
#else
#define SIGNUTILS_API __attribute__((visibility("default")))
#endif
