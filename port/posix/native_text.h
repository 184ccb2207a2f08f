#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace port
{

/// The one function that turns a Windows-1252 path into the platform's own form, UTF-8. A null path
/// is an empty one. The five undefined bytes are the C1 controls of the same number.
std::string NativePath(const char* path);
/// The same into a buffer, without memory of its own; false when it does not fit with its NUL.
bool TryNativePath(const char* path, char* native, std::size_t capacity) noexcept;

/// Windows-1252 of UTF-8 text. False when a byte is malformed or a character has no place; each of
/// them is then a '?'.
bool TryFromNative(std::string_view native, std::string& text);
std::string FromNative(std::string_view native);

/// The Windows-1252 byte of a character; '?' when it has no place.
char NarrowCharacterOf(char32_t character);

} // namespace port
