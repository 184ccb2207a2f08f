#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host
{

/// What tables, pages of help and explanations are made for.
constexpr std::size_t kTerminalColumns = 80;

/// Splits UTF-8 into code points; each malformed byte is U+FFFD.
std::u32string CodePoints(std::string_view utf8);
std::string Utf8FromCodePoint(char32_t character);

/// Columns that a terminal gives to the text: combining marks take none, wide letters two.
std::size_t DisplayWidth(std::string_view utf8);

/// The text for a terminal: control characters, which could rewrite the screen, become '?'; line
/// ends and tabs become blanks. Malformed bytes become U+FFFD.
std::string Printable(std::string_view utf8);

/// At most the first `count` characters.
std::string CutTo(std::string_view utf8, std::size_t count);

/// A path of at most `width` columns: its beginning gives way to "…", at a separator where one is
/// near enough.
std::string ShortenedPath(std::string_view utf8, std::size_t width);

/// Whether the byte is one of ASCII's digits.
bool IsDigit(char character) noexcept;

/// The value in quotes for a message, printable and cut where it is very long.
std::string Quoted(std::string_view utf8);

/// A path in Windows-1252, in quotes for a message.
std::string QuotedPath(const std::string& narrow);

/// The first character that Windows-1252 has no place for, in UTF-8; empty when all have one.
std::string FirstWithoutNarrowPlace(std::string_view utf8);

/// Whether the bytes are well-formed UTF-8.
bool IsUtf8(std::string_view bytes);

/// Whether a byte is one of ASCII's control characters, such as a tab or the end of a line.
bool HasControlCharacter(std::string_view utf8);

} // namespace host
