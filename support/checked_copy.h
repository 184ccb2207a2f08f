#pragma once

#include <cstddef>

namespace support
{

/// The checked copy (strncpy_s meaning): the lesser of `count` and the source's length characters
/// and a NUL. What does not fit, and a null source with a count, empties the destination and calls
/// the host's invalid-parameter handler; without one the process ends.
void CheckedCopy(char* destination, std::size_t size, const char* source, std::size_t count);

/// The truncating copy: at most `capacity` - 1 characters and a NUL, never failing. A null source
/// counts as empty; half a surrogate pair is not left behind.
void TruncatingCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source) noexcept;
void TruncatingCopy(char* destination, std::size_t capacity, const char* source) noexcept;

template <std::size_t Size>
void CheckedCopy(char (&destination)[Size], const char* source)
{
    CheckedCopy(destination, Size, source, Size);
}

} // namespace support
