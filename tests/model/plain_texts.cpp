#include "tests/model/plain_texts.h"

#include <algorithm>
#include <limits>

namespace model
{

namespace
{

// The characters of Windows-1252 from 0x80 to 0x9F; a control of the same value where it has none.
constexpr wchar_t kMiddle[] =
    L"\u20AC\x81\u201A\u0192\u201E\u2026\u2020\u2021\u02C6\u2030\u0160\u2039\u0152\x8D\u017D\x8F"
    L"\x90\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u02DC\u2122\u0161\u203A\u0153\x9D\u017E\u0178";
constexpr wchar_t kFirstMiddle = 0x80;
constexpr wchar_t kFirstUpper = 0xA0;

char NarrowCharacter(wchar_t character)
{
    if (character < kFirstMiddle || (character >= kFirstUpper && character <= 0xFF))
    {
        return static_cast<char>(character);
    }
    for (int index = 0; index < kFirstUpper - kFirstMiddle; ++index)
    {
        if (kMiddle[index] == character)
        {
            return static_cast<char>(kFirstMiddle + index);
        }
    }
    return '?';
}

bool Between(wchar_t character, wchar_t first, wchar_t last)
{
    return character >= first && character <= last;
}

} // namespace

Text Trimmed(const Text& text)
{
    const wchar_t* const blanks = L" \t\r\n";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == Text::npos)
    {
        return Text();
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

Text Cut(const Text& text, std::size_t length)
{
    return text.substr(0, length);
}

Text Doubled(const Text& text)
{
    Text doubled;
    for (const wchar_t character : text)
    {
        doubled += character;
        if (character == L'\'')
        {
            doubled += character;
        }
    }
    return doubled;
}

NullableText LiteralValue(const Text& text)
{
    Text value;
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        value += text[index];
        if (text[index] != L'\'')
        {
            continue;
        }
        ++index;
        if (index == text.size() || text[index] != L'\'')
        {
            return std::nullopt;
        }
    }
    return value;
}

Text AsciiLower(Text text)
{
    for (wchar_t& character : text)
    {
        if (Between(character, L'A', L'Z'))
        {
            character += 32;
        }
    }
    return text;
}

wchar_t LowerCase(wchar_t character)
{
    const bool latin = Between(character, 0xC0, 0xDE) && character != 0xD7;
    const bool greek = Between(character, 0x391, 0x3A9);
    const bool cyrillic = Between(character, 0x410, 0x42F);
    if (Between(character, L'A', L'Z') || latin || greek || cyrillic)
    {
        return character + 32;
    }
    switch (character)
    {
    case 0x130: // dotted capital I
        return L'i';
    case 0x152:
    case 0x160:
    case 0x17D:
        return character + 1;
    case 0x178:
        return 0xFF;
    case 0x1E9E: // capital sharp S
        return 0xDF;
    case 0x212A: // Kelvin
        return L'k';
    default:
        return character;
    }
}

bool SameCertificateName(const Text& left, const Text& right)
{
    constexpr std::size_t compared = 255;
    const Text first = Cut(left, compared);
    const Text second = Cut(right, compared);
    return std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](wchar_t one, wchar_t other)
                      { return LowerCase(one) == LowerCase(other); });
}

std::string NarrowOf(const Text& text)
{
    std::string bytes;
    for (const wchar_t character : text)
    {
        bytes += NarrowCharacter(character);
    }
    return bytes;
}

Text WideOf(std::string_view bytes)
{
    Text text;
    for (const char byte : bytes)
    {
        const auto value = static_cast<wchar_t>(static_cast<unsigned char>(byte));
        text +=
            Between(value, kFirstMiddle, kFirstUpper - 1) ? kMiddle[value - kFirstMiddle] : value;
    }
    return text;
}

Text ThroughCodePage(const Text& text)
{
    return WideOf(NarrowOf(text));
}

std::string Utf8Of(const Text& text)
{
    std::string bytes;
    for (const wchar_t character : text)
    {
        const auto point = static_cast<std::uint32_t>(character);
        int tail = 0;
        if (point < 0x80)
        {
            bytes += static_cast<char>(point);
        }
        else if (point < 0x800)
        {
            bytes += static_cast<char>(0xC0 | point >> 6);
            tail = 1;
        }
        else if (point < 0x10000)
        {
            bytes += static_cast<char>(0xE0 | point >> 12);
            tail = 2;
        }
        else
        {
            bytes += static_cast<char>(0xF0 | point >> 18);
            tail = 3;
        }
        while (tail-- > 0)
        {
            bytes += static_cast<char>(0x80 | (point >> (6 * tail) & 0x3F));
        }
    }
    return bytes;
}

std::int32_t IntegerOf(const NullableText& text)
{
    if (!text)
    {
        return 0;
    }
    std::size_t index = 0;
    while (index < text->size() && (*text)[index] != 0 &&
           Text(L" \t\n\v\f\r").find((*text)[index]) != Text::npos)
    {
        ++index;
    }
    bool negative = false;
    if (index < text->size() && ((*text)[index] == L'-' || (*text)[index] == L'+'))
    {
        negative = (*text)[index] == L'-';
        ++index;
    }
    std::int64_t value = 0;
    for (; index < text->size() && Between((*text)[index], L'0', L'9'); ++index)
    {
        value = std::min<std::int64_t>(value * 10 + ((*text)[index] - L'0'), 1LL << 40);
    }
    return IntegerOf(NullableNumber(negative ? -value : value));
}

std::int32_t IntegerOf(const NullableNumber& number)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>(number.value_or(0), Limits::min(), Limits::max()));
}

} // namespace model
