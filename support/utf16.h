#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace support
{

// UTF-16 code units of a wide text, and back; pairs are kept whole on both platforms. On the way
// out a lone surrogate or a value beyond U+10FFFF becomes U+FFFD; what comes in stays as it is.

std::u16string Utf16FromWide(std::wstring_view text);
/// Into a text that keeps its room.
void Utf16FromWide(std::wstring_view text, std::u16string& units);

/// Writes each character as one unit into memory of the text's length and gives the bits that any
/// of them has: below kFirstBeyondOneUnit these are the text's units, below 80 it is all ASCII.
char32_t CopyUnits(std::wstring_view text, char16_t* units) noexcept;
/// Here surrogates begin, which need a look at their neighbours.
inline constexpr char32_t kFirstBeyondOneUnit = 0xD800;

std::wstring WideFromUtf16(std::u16string_view text);
/// Into memory that holds as many characters as the text has units. The number written.
std::size_t WideFromUtf16(std::u16string_view text, wchar_t* wide) noexcept;

/// Writes a text that is all ASCII into memory of its length; false, with that memory in any
/// state, when it is not.
bool TryAsciiFromUtf16(std::u16string_view text, char* ascii) noexcept;

} // namespace support
