#pragma once

namespace port
{

/// Path of the file that takes everything and keeps nothing.
#if defined(_WIN32)
inline constexpr const char* kNullDevice = "NUL";
#else
inline constexpr const char* kNullDevice = "/dev/null";
#endif

} // namespace port
