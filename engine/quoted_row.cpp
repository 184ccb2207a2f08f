#include "engine/quoted_row.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace engine
{

namespace
{

// What stands for each byte between quotes.
constexpr std::array<char, 256> kBetweenQuotes = []()
{
    std::array<char, 256> bytes{};
    for (unsigned value = 0; value < bytes.size(); ++value)
    {
        const bool control = value < 0x20U || value == 0x7FU;
        bytes[value] = control ? ' ' : static_cast<char>(static_cast<unsigned char>(value));
    }
    bytes[static_cast<unsigned char>('"')] = '\'';
    return bytes;
}();

constexpr std::uint64_t EightTimes(unsigned char byte)
{
    return byte * std::uint64_t{0x0101010101010101};
}

// Whether one of eight bytes has another in its place between quotes: one of control characters,
// '"' and DEL. The test goes by the top bits; a carry misleads only above a byte that is one.
constexpr bool HasReplaced(std::uint64_t eight)
{
    constexpr std::uint64_t kTops = EightTimes(0x80);
    // This puts '"' right behind the control characters, and everything else further up.
    const std::uint64_t moved = eight ^ EightTimes(0x02);
    const std::uint64_t controlOrQuote = (moved - EightTimes(0x21)) & ~moved;
    const std::uint64_t del = ((eight & ~kTops) + EightTimes(1)) & ~eight;
    return ((controlOrQuote | del) & kTops) != 0;
}

// Copies eight bytes unless one of them would be replaced.
bool CopyEight(char* to, const char* from)
{
    std::uint64_t eight = 0;
    std::memcpy(&eight, from, sizeof eight);
    if (HasReplaced(eight))
    {
        return false;
    }
    std::memcpy(to, &eight, sizeof eight);
    return true;
}

// Copies a text of which nothing is replaced, as nearly always; false where it cannot.
bool CopyUnchanged(char* at, std::string_view field)
{
    constexpr std::size_t kStep = sizeof(std::uint64_t);
    if (field.size() < kStep)
    {
        return false;
    }
    const std::size_t last = field.size() - kStep;
    for (std::size_t position = 0; position < last; position += kStep)
    {
        if (!CopyEight(at + position, field.data() + position))
        {
            return false;
        }
    }
    return CopyEight(at + last, field.data() + last);
}

// Writes the text of a field to where there is room for it; returns where it ends.
char* WriteFieldText(char* at, std::string_view field)
{
    if (!CopyUnchanged(at, field))
    {
        std::transform(field.begin(), field.end(), at,
                       [](char character)
                       { return kBetweenQuotes[static_cast<unsigned char>(character)]; });
    }
    at += field.size();
    // A quote behind it would not end the field.
    if (field.ends_with('\\'))
    {
        at[-1] = '/';
    }
    return at;
}

} // namespace

void AppendQuotedRow(std::string& line, std::initializer_list<std::string_view> fields)
{
    constexpr std::size_t kAroundField = std::string_view("\"\";").size();
    const std::size_t start = line.size();
    std::size_t size = start;
    for (const std::string_view field : fields)
    {
        size += field.size() + kAroundField;
    }
    line.resize(size);
    char* at = line.data() + start;
    for (const std::string_view field : fields)
    {
        *at++ = '"';
        at = WriteFieldText(at, field);
        *at++ = '"';
        *at++ = ';';
    }
    if (fields.size() > 0)
    {
        line.pop_back();
    }
}

} // namespace engine
