#pragma once

#include "support/export.h"

// A trace is made of sections, values and blocks:
//
//   [2026-03-29 14:05:09.123 +15 ms] CHECK SIGNATURES RULES
//   HUID Signer       : H1
//       <a line of a block>
//
// A section shows the local time and the milliseconds since the section before (the first: since
// the trace was opened). A value's line is its label byte for byte, blanks included, then ": " and
// the value. Control characters in titles, labels and values are escaped (\r, \n, \xHH), so that
// no value can pass for a line; a block keeps its lines, each indented by four blanks. A trace that
// cannot be written any more loses lines without a word.

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
