#include "host/text.h"

#include "support/codepage.h"

#include <algorithm>

namespace host
{

namespace
{

constexpr std::size_t kLongestQuotedValue = 120;

struct Range
{
    char32_t first;
    char32_t last;
};

constexpr Range kWithoutWidth[] = {
    {0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},   {0x200B, 0x200F},
    {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF},   {0xFE00, 0xFE0F},
    {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF},
};

constexpr Range kDoubleWidth[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

template <std::size_t Count>
bool IsIn(const Range (&ranges)[Count], char32_t character)
{
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [character](const Range& range)
                       { return character >= range.first && character <= range.last; });
}

bool IsControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

// Direction marks reorder what a terminal shows, so that a name could read as another one.
bool IsDirectionMark(char32_t character)
{
    return (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

} // namespace

std::u32string CodePoints(std::string_view utf8)
{
    const std::wstring wide = support::WideFromUtf8(utf8);
    std::u32string points;
    points.reserve(wide.size());
    for (const wchar_t unit : wide)
    {
        const auto value = static_cast<char32_t>(unit);
        const bool isLow = value >= 0xDC00 && value <= 0xDFFF;
        if (isLow && !points.empty() && points.back() >= 0xD800 && points.back() <= 0xDBFF)
        {
            points.back() = 0x10000 + ((points.back() - 0xD800) << 10U) + (value - 0xDC00);
            continue;
        }
        points.push_back(value);
    }
    return points;
}

std::string Utf8FromCodePoint(char32_t character)
{
    std::string bytes;
    const auto append = [&bytes](char32_t value) { bytes += static_cast<char>(value); };
    if (character < 0x80)
    {
        append(character);
    }
    else if (character < 0x800)
    {
        append(0xC0 | (character >> 6U));
        append(0x80 | (character & 0x3FU));
    }
    else if (character < 0x10000)
    {
        append(0xE0 | (character >> 12U));
        append(0x80 | ((character >> 6U) & 0x3FU));
        append(0x80 | (character & 0x3FU));
    }
    else
    {
        append(0xF0 | (character >> 18U));
        append(0x80 | ((character >> 12U) & 0x3FU));
        append(0x80 | ((character >> 6U) & 0x3FU));
        append(0x80 | (character & 0x3FU));
    }
    return bytes;
}

std::size_t DisplayWidth(std::string_view utf8)
{
    std::size_t width = 0;
    for (const char32_t character : CodePoints(utf8))
    {
        if (IsIn(kWithoutWidth, character))
        {
            continue;
        }
        width += IsIn(kDoubleWidth, character) ? 2 : 1;
    }
    return width;
}

std::string Printable(std::string_view utf8)
{
    std::string shown;
    shown.reserve(utf8.size());
    for (const char32_t character : CodePoints(utf8))
    {
        if (character == '\r' || character == '\n' || character == '\t')
        {
            shown += ' ';
        }
        else if (IsControl(character) || IsDirectionMark(character))
        {
            shown += '?';
        }
        else
        {
            shown += Utf8FromCodePoint(character);
        }
    }
    return shown;
}

std::string CutTo(std::string_view utf8, std::size_t count)
{
    const std::u32string points = CodePoints(utf8);
    std::string cut;
    for (std::size_t index = 0; index < std::min(points.size(), count); ++index)
    {
        cut += Utf8FromCodePoint(points[index]);
    }
    return cut;
}

std::string ShortenedPath(std::string_view utf8, std::size_t width)
{
    const std::string path = Printable(utf8);
    if (DisplayWidth(path) <= width)
    {
        return path;
    }
    const std::u32string letters = CodePoints(path);
    std::string kept;
    std::size_t keptFromSeparator = 0;
    for (std::size_t index = letters.size(); index > 0; --index)
    {
        const char32_t letter = letters[index - 1];
        std::string longer = Utf8FromCodePoint(letter) + kept;
        if (DisplayWidth(longer) + 1 > width)
        {
            break;
        }
        kept = std::move(longer);
        keptFromSeparator = letter == U'/' || letter == U'\\' ? kept.size() : keptFromSeparator;
    }
    return "…" + kept.substr(keptFromSeparator == 0 ? 0 : kept.size() - keptFromSeparator);
}

bool IsDigit(char character) noexcept
{
    return character >= '0' && character <= '9';
}

std::string Quoted(std::string_view utf8)
{
    const std::string shown = Printable(utf8);
    const std::string cut = CutTo(shown, kLongestQuotedValue);
    return "'" + cut + (cut.size() < shown.size() ? "…'" : "'");
}

std::string QuotedPath(const std::string& narrow)
{
    return Quoted(support::Utf8FromNarrow(narrow));
}

std::string FirstWithoutNarrowPlace(std::string_view utf8)
{
    for (const char32_t character : CodePoints(utf8))
    {
        const std::string one = Utf8FromCodePoint(character);
        std::string narrow;
        if (!support::TryNarrowFromWide(support::WideFromUtf8(one), narrow))
        {
            return one;
        }
    }
    return {};
}

bool IsUtf8(std::string_view bytes)
{
    std::wstring ignored;
    return support::TryWideFromUtf8(bytes, ignored);
}

bool HasControlCharacter(std::string_view utf8)
{
    return std::any_of(utf8.begin(), utf8.end(),
                       [](char byte)
                       {
                           const auto value = static_cast<unsigned char>(byte);
                           return value < 0x20 || value == 0x7F;
                       });
}

} // namespace host
