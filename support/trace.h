#pragma once

#include "support/export.h"

/// Opens a trace file for appending: readable UTF-8 lines, a time stamp and the elapsed
/// milliseconds for each section. Returns null when the file cannot be written. `path` is
/// Windows-1252. A handle may be used by several threads.
SIGNUTILS_API void* TraceOpen(const char* path);

/// Writes what is left and closes; 0 and all ones are ignored.
SIGNUTILS_API void TraceClose(void* trace);

/// Whether a handle is usable: neither 0 nor all ones.
SIGNUTILS_API bool TraceIsUsable(const void* trace) noexcept;

/// Opens a titled, timed section. Everything written before it reaches the file, so that a crash
/// of the host loses at most the section under way. The last two arguments are 0.
SIGNUTILS_API void TimeTraceDump(void* trace, const char* title, unsigned long first,
                                 unsigned long second);

/// Writes one labelled narrow value. Every function here does nothing without a usable handle.
SIGNUTILS_API void TraceValue(void* trace, const char* label, const char* value, int level);

/// Writes one labelled wide value.
SIGNUTILS_API void TraceValueUTF8(void* trace, const char* label, const wchar_t* value,
                                  int level = 1);

/// Writes a block of text: Windows-1252 or, where it is well-formed UTF-8, UTF-8.
SIGNUTILS_API void TraceString(void* trace, const char* text);
