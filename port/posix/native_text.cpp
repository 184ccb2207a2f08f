#include "port/posix/native_text.h"

#include "port/code_page.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace port
{

namespace
{

unsigned char ByteAt(std::string_view text, std::size_t index)
{
    return static_cast<unsigned char>(text[index]);
}

/// How many bytes at the beginning are ASCII, which is the same in both encodings; mostly all of
/// them.
std::size_t AsciiBytes(std::string_view text)
{
    const auto other =
        std::find_if(text.begin(), text.end(),
                     [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
    return static_cast<std::size_t>(other - text.begin());
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

constexpr std::size_t kLongestSequence = 3;

/// Writes one character in UTF-8 and gives its length.
std::size_t Encode(char32_t character, char (&sequence)[kLongestSequence])
{
    if (character < 0x80)
    {
        sequence[0] = static_cast<char>(character);
        return 1;
    }
    if (character < 0x800)
    {
        sequence[0] = static_cast<char>(0xC0U | (character >> 6U));
        sequence[1] = static_cast<char>(0x80U | (character & 0x3FU));
        return 2;
    }
    sequence[0] = static_cast<char>(0xE0U | (character >> 12U));
    sequence[1] = static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
    sequence[2] = static_cast<char>(0x80U | (character & 0x3FU));
    return 3;
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
    const std::string_view text = path == nullptr ? "" : path;
    const std::size_t ascii = AsciiBytes(text);
    std::string native(text.substr(0, ascii));
    for (const char byte : text.substr(ascii))
    {
        char sequence[kLongestSequence];
        native.append(sequence, Encode(CharacterOf(byte), sequence));
    }
    return native;
}

bool TryNativePath(const char* path, char* native, std::size_t capacity) noexcept
{
    std::size_t length = 0;
    for (const char* next = path == nullptr ? "" : path; *next != '\0'; ++next)
    {
        char sequence[kLongestSequence];
        const std::size_t size = Encode(CharacterOf(*next), sequence);
        if (size >= capacity - length)
        {
            return false;
        }
        std::memcpy(native + length, sequence, size);
        length += size;
    }
    native[length] = '\0';
    return true;
}

bool TryFromNative(std::string_view native, std::string& text)
{
    const std::size_t ascii = AsciiBytes(native);
    text = native.substr(0, ascii);
    bool complete = true;
    for (std::size_t index = ascii; index < native.size();)
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
