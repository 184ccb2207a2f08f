#pragma once

// Preprocessor only: C sources read this file too.

/// What hosts may call. On Windows the library's list of exports says what it gives; a host sees it
/// as imported, and programs that link the rooms themselves set SIGNUTILS_STATIC.
#if defined(_WIN32)

#if defined(SIGNUTILS_STATIC)
#define SIGNUTILS_API
#else
#define SIGNUTILS_API __declspec(dllimport)
#endif

#else
#define SIGNUTILS_API __attribute__((visibility("default")))
#endif

/// How hosts call the C interface: the platform's C convention. Marked where the language of the
/// host has more than one to choose from.
#if defined(_WIN32)
#define SIGNUTILS_CALL __cdecl
#else
#define SIGNUTILS_CALL
#endif
