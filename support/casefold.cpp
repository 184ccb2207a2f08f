#include "support/casefold.h"

#include "support/code_points.h"
#include "support/lower_case_table.h"

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <limits>

namespace
{

const wchar_t* EndWithin(const wchar_t* text, std::size_t count) noexcept
{
    const wchar_t* end = text;
    while (count > 0 && *end != L'\0')
    {
        ++end;
        --count;
    }
    return end;
}

char AsciiLower(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

} // namespace

namespace support
{

char32_t LowerCase(char32_t character) noexcept
{
    if (character < 0x80)
    {
        return character >= U'A' && character <= U'Z' ? character - U'A' + U'a' : character;
    }
    const auto* const range =
        std::lower_bound(std::begin(kLowerCaseRanges), std::end(kLowerCaseRanges), character,
                         [](const LowerCaseRange& candidate, char32_t searched)
                         { return candidate.last < searched; });
    if (range == std::end(kLowerCaseRanges) || character < range->first ||
        (character - range->first) % range->step != 0)
    {
        return character;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(character) + range->distance);
}

bool EqualIgnoringCase(const wchar_t* left, const wchar_t* right, std::size_t count) noexcept
{
    left = left == nullptr ? L"" : left;
    right = right == nullptr ? L"" : right;
    // Most texts differ at once or not at all. Half a pair is left to be read with its other half.
    for (; count > 0 && *left == *right && *left != L'\0' &&
           !IsSurrogate(static_cast<char32_t>(*left));
         --count)
    {
        ++left;
        ++right;
    }
    const wchar_t* const leftEnd = EndWithin(left, count);
    const wchar_t* const rightEnd = EndWithin(right, count);
    while (left != leftEnd && right != rightEnd)
    {
        if (LowerCase(NextCodePoint(left, leftEnd)) != LowerCase(NextCodePoint(right, rightEnd)))
        {
            return false;
        }
    }
    return left == leftEnd && right == rightEnd;
}

bool EqualIgnoringCase(const wchar_t* left, const wchar_t* right) noexcept
{
    return EqualIgnoringCase(left, right, std::numeric_limits<std::size_t>::max());
}

bool EqualIgnoringAsciiCase(const char* left, const char* right) noexcept
{
    left = left == nullptr ? "" : left;
    right = right == nullptr ? "" : right;
    for (; AsciiLower(*left) == AsciiLower(*right); ++left, ++right)
    {
        if (*left == '\0')
        {
            return true;
        }
    }
    return false;
}

} // namespace support
