#include "support/utf16.h"

#include "support/code_points.h"

namespace support
{

std::u16string Utf16FromWide(std::wstring_view text)
{
    std::u16string units;
    Utf16FromWide(text, units);
    return units;
}

void Utf16FromWide(std::wstring_view text, std::u16string& units)
{
    units.resize(text.size());
    if (CopyUnits(text, units.data()) < kFirstBeyondOneUnit)
    {
        return;
    }
    units.clear();
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* position = text.data(); position != end;)
    {
        AppendCodePoint(units, ValidOrReplacement(NextCodePoint(position, end)));
    }
}

char32_t CopyUnits(std::wstring_view text, char16_t* units) noexcept
{
    // Without a branch in the loop, which then goes by several characters at once.
    char32_t bits = 0;
    for (const wchar_t each : text)
    {
        bits |= static_cast<char32_t>(each);
        *units++ = static_cast<char16_t>(each);
    }
    return bits;
}

std::wstring WideFromUtf16(std::u16string_view text)
{
    std::wstring wide(text.size(), L'\0');
    wide.resize(WideFromUtf16(text, wide.data()));
    return wide;
}

std::size_t WideFromUtf16(std::u16string_view text, wchar_t* wide) noexcept
{
    wchar_t* written = wide;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        const char32_t first = text[at];
        const bool pair = sizeof(wchar_t) > sizeof(char16_t) && IsHighSurrogate(first) &&
                          at + 1 < text.size() && IsLowSurrogate(text[at + 1]);
        *written++ = static_cast<wchar_t>(pair ? CombineSurrogates(first, text[++at]) : first);
    }
    return static_cast<std::size_t>(written - wide);
}

bool TryAsciiFromUtf16(std::u16string_view text, char* ascii) noexcept
{
    unsigned bits = 0;
    for (const char16_t each : text)
    {
        bits |= each;
        *ascii++ = static_cast<char>(each);
    }
    return bits < 0x80U;
}

} // namespace support
