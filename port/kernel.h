#pragma once

// Kernel objects, tick counter and last error under their Windows names. On Windows these are the
// real ones; on POSIX they are declared here with the same refusals.

#if defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

#include "port/export.h"

#include <cstdint>

using BOOL = int;
using DWORD = std::uint32_t;
using HANDLE = void*;
using LPCSTR = const char*;
using LPSTR = char*;
struct SECURITY_ATTRIBUTES;

#ifndef FALSE
#define FALSE 0
#endif
#ifndef TRUE
#define TRUE 1
#endif

inline constexpr DWORD INFINITE = 0xFFFFFFFFU;
inline constexpr DWORD WAIT_OBJECT_0 = 0U;
inline constexpr DWORD WAIT_ABANDONED = 0x80U;
inline constexpr DWORD WAIT_TIMEOUT = 0x102U;
inline constexpr DWORD WAIT_FAILED = 0xFFFFFFFFU;

inline constexpr DWORD ERROR_SUCCESS = 0U;
inline constexpr DWORD ERROR_FILE_NOT_FOUND = 2U;
inline constexpr DWORD ERROR_PATH_NOT_FOUND = 3U;
inline constexpr DWORD ERROR_TOO_MANY_OPEN_FILES = 4U;
inline constexpr DWORD ERROR_ACCESS_DENIED = 5U;
inline constexpr DWORD ERROR_INVALID_HANDLE = 6U;
inline constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8U;
inline constexpr DWORD ERROR_NOT_SAME_DEVICE = 17U;
inline constexpr DWORD ERROR_WRITE_FAULT = 29U;
inline constexpr DWORD ERROR_READ_FAULT = 30U;
inline constexpr DWORD ERROR_GEN_FAILURE = 31U;
inline constexpr DWORD ERROR_SHARING_VIOLATION = 32U;
inline constexpr DWORD ERROR_NOT_SUPPORTED = 50U;
inline constexpr DWORD ERROR_FILE_EXISTS = 80U;
inline constexpr DWORD ERROR_INVALID_PARAMETER = 87U;
inline constexpr DWORD ERROR_DISK_FULL = 112U;
inline constexpr DWORD ERROR_INVALID_NAME = 123U;
inline constexpr DWORD ERROR_DIR_NOT_EMPTY = 145U;
inline constexpr DWORD ERROR_NOT_OWNER = 288U;
inline constexpr DWORD ERROR_INVALID_OWNER = 1307U;
inline constexpr DWORD ERROR_INVALID_ACL = 1336U;

/// Makes an unnamed recursive mutex. Null, with ERROR_NOT_ENOUGH_MEMORY, when there is no memory,
/// or, with ERROR_NOT_SUPPORTED, when a name or security attributes are asked for.
SIGNUTILS_PORT_API HANDLE CreateMutexA(SECURITY_ATTRIBUTES* attributes, BOOL initialOwner,
                                       LPCSTR name);

/// Waits for the mutex: WAIT_OBJECT_0 got it, WAIT_ABANDONED got it from a thread that ended
/// while holding it, WAIT_TIMEOUT, or WAIT_FAILED with ERROR_INVALID_HANDLE as last error.
SIGNUTILS_PORT_API DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds);

/// Gives back one hold on the mutex. Returns 0, with ERROR_NOT_OWNER as last error, when the
/// calling thread has none, as the Windows kernel does.
SIGNUTILS_PORT_API BOOL ReleaseMutex(HANDLE mutex);

/// Closes the handle, held or not. Returns 0, with ERROR_INVALID_HANDLE as last error, for a null
/// or closed handle.
SIGNUTILS_PORT_API BOOL CloseHandle(HANDLE handle);

/// Milliseconds since the system started; wraps to 0 after 49.7 days.
SIGNUTILS_PORT_API DWORD GetTickCount();

/// The calling thread's last error; calls that succeed leave it as it was.
SIGNUTILS_PORT_API DWORD GetLastError();
SIGNUTILS_PORT_API void SetLastError(DWORD error);

SIGNUTILS_PORT_API DWORD GetCurrentProcessId();

#endif
