#pragma once

#include <string>
#include <string_view>

namespace port
{

/// The one function that turns a Windows-1252 path into the platform's own form, UTF-16. A null
/// path is an empty one. A path that is too long for the plain calls becomes a full one with the
/// prefix that lifts their limit.
std::wstring NativePath(const char* path);

/// UTF-16 of Windows-1252 text, whatever the machine's ANSI code page.
std::wstring ToNative(std::string_view text);

/// Windows-1252 of UTF-16 text. False when a character has no place; each is then a '?'.
bool TryFromNative(std::wstring_view native, std::string& text);
std::string FromNative(std::wstring_view native);

std::string Utf8FromNative(std::wstring_view native);
/// Malformed bytes become U+FFFD.
std::wstring NativeFromUtf8(std::string_view text);

/// An environment variable as it stands; empty when it is not set.
std::wstring NativeVariable(const wchar_t* name);

} // namespace port
