#pragma once

// Profile files (".INI") under their Windows names. On Windows these are the real calls; on POSIX
// they follow the same reading rules, quirks included.

#include "port/kernel.h"

#if !defined(_WIN32)

/// Reads one value; a null key gives the section's key names, a null section the section names,
/// each with a NUL and one more NUL after the last.
///
/// Section and key are compared without regard to case and to blanks around them; the first
/// section and the first key of a name count. One pair of equal quotes around a value is removed.
/// `defaultText` (null: empty) serves when there is no such key, not when its value is empty; it
/// loses trailing blanks and one pair of quotes.
///
/// Returns the length without the last NUL. A value that does not fit is cut to `size` - 1
/// characters, a list to `size` - 2. When the file is missing the last error is
/// ERROR_FILE_NOT_FOUND. A file name without a full path is looked up in the machine's
/// configuration folder, never in the current one.
SIGNUTILS_PORT_API DWORD GetPrivateProfileStringA(LPCSTR section, LPCSTR key, LPCSTR defaultText,
                                                  LPSTR buffer, DWORD size, LPCSTR fileName);

/// Reads all lines of a section as "key=value", each with a NUL and one more NUL after the last.
/// Quotes are kept, comments and blank lines left out. Returns the length without the last NUL;
/// `size` - 2 when the lines do not fit and also when they fit exactly; 0 with two NULs when the
/// section is empty or unknown or the file is missing. `size` is at least 2.
SIGNUTILS_PORT_API DWORD GetPrivateProfileSectionA(LPCSTR section, LPSTR buffer, DWORD size,
                                                   LPCSTR fileName);

#endif
