#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace support
{

// Pieces of a text that is put together in a fixed order, such as a statement, appended to a buffer
// that keeps its room. Each is what the formatter (support/format.h) makes of the conversion named,
// without a template to take apart.

/// Constant words; their length is not looked for.
template <std::size_t Size>
void AppendWords(std::wstring& target, const wchar_t (&words)[Size])
{
    target.append(words, Size - 1);
}

/// The cut of a text that is taken whole.
inline constexpr std::size_t kWhole = std::string::npos;

/// %.<cut>s of a wide template.
void AppendCut(std::wstring& target, const wchar_t* text, std::size_t cut);
/// %.<cut>S: Windows-1252.
void AppendCut(std::wstring& target, const char* text, std::size_t cut);
/// %d
void AppendDecimal(std::wstring& target, std::int32_t number);
/// %u
void AppendDecimal(std::wstring& target, std::uint32_t number);
/// %f
void AppendSixPlaces(std::wstring& target, double number);

} // namespace support
