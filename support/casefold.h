#pragma once

#include <cstddef>

namespace support
{

/// Simple Unicode lower-casing of one character, whatever the locale.
char32_t LowerCase(char32_t character) noexcept;

/// Whether the texts are equal without regard to case over at most `count` characters.
bool EqualIgnoringCase(const wchar_t* left, const wchar_t* right, std::size_t count) noexcept;
bool EqualIgnoringCase(const wchar_t* left, const wchar_t* right) noexcept;

/// The same for ASCII letters only; column names, extensions, file names.
bool EqualIgnoringAsciiCase(const char* left, const char* right) noexcept;

} // namespace support
