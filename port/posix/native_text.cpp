#include "port/posix/native_text.h"

#include <cstdint>

namespace port
{

namespace
{

// Bytes 0x80 to 0x9F; all others stand for the character of the same number.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char32_t CharacterOf(unsigned char byte)
{
    return byte >= 0x80 && byte <= 0x9F ? kHighControls[byte - 0x80] : byte;
}

bool TryByteOf(char32_t character, char& byte)
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    {
        byte = static_cast<char>(character);
        return true;
    }
    for (unsigned int index = 0; index < 32; ++index)
    {
        if (kHighControls[index] == character)
        {
            byte = static_cast<char>(0x80 + index);
            return true;
        }
    }
    return false;
}

unsigned char ByteAt(std::string_view text, std::size_t index)
{
    return static_cast<unsigned char>(text[index]);
}

/// Reads one character and moves past it. No Windows-1252 character takes more than three bytes, so
/// longer sequences are read as malformed bytes: they have no place either way.
bool TryTakeCharacter(std::string_view native, std::size_t& index, char32_t& character)
{
    const unsigned char first = ByteAt(native, index);
    ++index;
    if (first < 0x80)
    {
        character = first;
        return true;
    }
    const std::size_t more = first >= 0xC2 && first <= 0xDF ? 1U
                             : (first & 0xF0U) == 0xE0U     ? 2U
                                                            : 0U;
    if (more == 0 || index + more > native.size())
    {
        return false;
    }
    char32_t value = first & (more == 1 ? 0x1FU : 0x0FU);
    for (std::size_t offset = 0; offset < more; ++offset)
    {
        const unsigned char next = ByteAt(native, index + offset);
        if ((next & 0xC0U) != 0x80U)
        {
            return false;
        }
        value = (value << 6U) | (next & 0x3FU);
    }
    if (more == 2 && value < 0x800)
    {
        return false;
    }
    index += more;
    character = value;
    return true;
}

} // namespace

char NarrowCharacterOf(char32_t character)
{
    char byte = '?';
    TryByteOf(character, byte);
    return byte;
}

std::string NativePath(const char* path)
{
    std::string native;
    for (const char* next = path == nullptr ? "" : path; *next != '\0'; ++next)
    {
        const char32_t character = CharacterOf(static_cast<unsigned char>(*next));
        if (character < 0x80)
        {
            native += static_cast<char>(character);
        }
        else if (character < 0x800)
        {
            native += static_cast<char>(0xC0U | (character >> 6U));
            native += static_cast<char>(0x80U | (character & 0x3FU));
        }
        else
        {
            native += static_cast<char>(0xE0U | (character >> 12U));
            native += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
            native += static_cast<char>(0x80U | (character & 0x3FU));
        }
    }
    return native;
}

bool TryFromNative(std::string_view native, std::string& text)
{
    text.clear();
    bool complete = true;
    for (std::size_t index = 0; index < native.size();)
    {
        char32_t character = 0;
        char byte = '?';
        if (!TryTakeCharacter(native, index, character) || !TryByteOf(character, byte))
        {
            complete = false;
        }
        text += byte;
    }
    return complete;
}

std::string FromNative(std::string_view native)
{
    std::string text;
    TryFromNative(native, text);
    return text;
}

} // namespace port
