#pragma once

#include <string>
#include <string_view>

namespace support
{

constexpr char32_t kReplacementCharacter = 0xFFFD;
constexpr char32_t kLargestCharacter = 0x10FFFF;

constexpr bool IsHighSurrogate(char32_t character) noexcept
{
    return character >= 0xD800 && character <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char32_t character) noexcept
{
    return character >= 0xDC00 && character <= 0xDFFF;
}

constexpr bool IsSurrogate(char32_t character) noexcept
{
    return character >= 0xD800 && character <= 0xDFFF;
}

/// What a text may hold on its way out: a reader that meets half a surrogate pair may take the next
/// unit, whatever it is, for the other half.
constexpr char32_t ValidOrReplacement(char32_t character) noexcept
{
    const bool valid = character <= kLargestCharacter && !IsSurrogate(character);
    return valid ? character : kReplacementCharacter;
}

constexpr char32_t CombineSurrogates(char32_t high, char32_t low) noexcept
{
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// Takes the next character of a text that is not at its end. A surrogate pair counts as one
/// character where wchar_t has 32 bits, too; a lone surrogate is given as it stands.
template <typename Unit>
constexpr char32_t NextCodePoint(const Unit*& position, const Unit* end) noexcept
{
    const auto first = static_cast<char32_t>(*position++);
    if (IsHighSurrogate(first) && position != end &&
        IsLowSurrogate(static_cast<char32_t>(*position)))
    {
        return CombineSurrogates(first, static_cast<char32_t>(*position++));
    }
    return first;
}

/// Appends one character in as many units as the text's kind of character needs.
template <typename Unit>
void AppendCodePoint(std::basic_string<Unit>& text, char32_t character)
{
    if (sizeof(Unit) == sizeof(char16_t) && character > 0xFFFF)
    {
        text.push_back(static_cast<Unit>(0xD7C0 + (character >> 10)));
        text.push_back(static_cast<Unit>(0xDC00 + (character & 0x3FF)));
        return;
    }
    text.push_back(static_cast<Unit>(character));
}

/// The text without a first half of a surrogate pair that a cut has left at its end.
template <typename Unit>
constexpr std::basic_string_view<Unit> WithoutHalfPair(std::basic_string_view<Unit> text) noexcept
{
    const bool half = !text.empty() && IsHighSurrogate(static_cast<char32_t>(text.back()));
    return half ? text.substr(0, text.size() - 1) : text;
}

} // namespace support
