#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace support
{

// Narrow texts are Windows-1252 whatever the locale. The five bytes that it leaves undefined
// (81 8D 8F 90 9D) are the C1 controls of the same number, in both directions.

wchar_t WideFromNarrow(char character) noexcept;
std::wstring WideFromNarrow(std::string_view text);
void AppendWideFromNarrow(std::wstring& wide, std::string_view text);

/// What has no place becomes '?', one for each code point.
std::string NarrowFromWide(std::wstring_view text);
/// False, with `narrow` as NarrowFromWide gives it, when a character had no place.
bool TryNarrowFromWide(std::wstring_view text, std::string& narrow);

/// A character of a text and where it stands, counted in code points from 0.
struct CharacterPlace
{
    std::size_t index;
    char32_t character;
};
/// The first character that has no place; nothing when TryNarrowFromWide would succeed.
std::optional<CharacterPlace> FindWithoutNarrowPlace(std::wstring_view text) noexcept;

/// A lone surrogate or a value beyond U+10FFFF becomes U+FFFD.
std::string Utf8FromWide(std::wstring_view text);
/// The same into a text that keeps its room.
void Utf8FromWide(std::wstring_view text, std::string& bytes);
std::string Utf8FromNarrow(std::string_view text);

/// False when the bytes are not well-formed UTF-8 (overlong forms and surrogates included).
bool TryWideFromUtf8(std::string_view bytes, std::wstring& wide);
/// Where the first malformed byte stands, counted from 0; nothing when TryWideFromUtf8 would
/// succeed.
std::optional<std::size_t> FindMalformedUtf8(std::string_view bytes) noexcept;
/// As TryWideFromUtf8, each malformed byte replaced by U+FFFD.
std::wstring WideFromUtf8(std::string_view bytes);

/// Whether all bytes are below 80: such a text is the same in UTF-8 and in Windows-1252.
bool IsAscii(std::string_view bytes) noexcept;
/// What NarrowFromWide makes of WideFromUtf8, without a wide text between. `narrow` keeps its room.
void NarrowFromUtf8(std::string_view bytes, std::string& narrow);

/// At most `count` wide characters, never ending with half a surrogate pair.
std::wstring_view CutWide(std::wstring_view text, std::size_t count) noexcept;

} // namespace support
