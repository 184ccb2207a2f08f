#include "support/codepage.h"

#include "support/code_points.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

using support::AppendCodePoint;
using support::IsSurrogate;
using support::kLargestCharacter;
using support::kReplacementCharacter;

constexpr unsigned kFirstOwn = 0x80; // bytes 80 to 9F are where the code page has its own order

constexpr std::array<char16_t, 32> kOwnCharacters = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char16_t CharacterOf(char byte) noexcept
{
    const unsigned value = static_cast<unsigned char>(byte);
    const unsigned own = value - kFirstOwn;
    return own < kOwnCharacters.size() ? kOwnCharacters[own] : static_cast<char16_t>(value);
}

bool ByteOf(char32_t character, char& byte) noexcept
{
    if (character < 0x80 || (character >= 0xA0 && character <= 0xFF))
    {
        byte = static_cast<char>(static_cast<unsigned char>(character));
        return true;
    }
    const auto* const found =
        std::find(kOwnCharacters.begin(), kOwnCharacters.end(), static_cast<char16_t>(character));
    if (character > 0xFFFF || found == kOwnCharacters.end())
    {
        return false;
    }
    byte = static_cast<char>(static_cast<unsigned char>(
        kFirstOwn + static_cast<unsigned>(found - kOwnCharacters.begin())));
    return true;
}

void AppendUtf8(std::string& bytes, char32_t character)
{
    const auto tail = [&bytes, character](unsigned shift)
    { bytes.push_back(static_cast<char>(0x80 | ((character >> shift) & 0x3F))); };
    if (character < 0x80)
    {
        bytes.push_back(static_cast<char>(character));
        return;
    }
    if (character < 0x800)
    {
        bytes.push_back(static_cast<char>(0xC0 | (character >> 6)));
        tail(0);
        return;
    }
    if (character < 0x10000)
    {
        bytes.push_back(static_cast<char>(0xE0 | (character >> 12)));
        tail(6);
        tail(0);
        return;
    }
    bytes.push_back(static_cast<char>(0xF0 | (character >> 18)));
    tail(12);
    tail(6);
    tail(0);
}

struct Lead
{
    unsigned tails;    // bytes that follow; more than 3 for a byte that starts nothing
    char32_t bits;     // the lead byte's share
    char32_t smallest; // below it the form is overlong
};

Lead ReadLead(unsigned char byte) noexcept
{
    if (byte < 0x80)
    {
        return {0, byte, 0};
    }
    if ((byte & 0xE0U) == 0xC0U)
    {
        return {1, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0U) == 0xE0U)
    {
        return {2, byte & 0x0FU, 0x800};
    }
    if ((byte & 0xF8U) == 0xF0U)
    {
        return {3, byte & 0x07U, 0x10000};
    }
    return {4, 0, 0};
}

/// Takes one character off the front; false, with nothing taken, when it is malformed.
bool TakeUtf8(std::string_view& bytes, char32_t& character) noexcept
{
    const Lead lead = ReadLead(static_cast<unsigned char>(bytes.front()));
    if (lead.tails > 3 || bytes.size() <= lead.tails)
    {
        return false;
    }
    character = lead.bits;
    for (unsigned i = 1; i <= lead.tails; ++i)
    {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if ((byte & 0xC0U) != 0x80U)
        {
            return false;
        }
        character = (character << 6) | (byte & 0x3FU);
    }
    if (character < lead.smallest || character > kLargestCharacter || IsSurrogate(character))
    {
        return false;
    }
    bytes.remove_prefix(lead.tails + 1);
    return true;
}

/// Takes one character off the front: the replacement character for a malformed byte; false then.
bool TakeOrReplaceUtf8(std::string_view& bytes, char32_t& character) noexcept
{
    if (TakeUtf8(bytes, character))
    {
        return true;
    }
    character = kReplacementCharacter;
    bytes.remove_prefix(1);
    return false;
}

/// False when there were malformed bytes.
bool DecodeUtf8(std::string_view bytes, std::wstring& wide)
{
    bool wellFormed = true;
    wide.clear();
    wide.reserve(bytes.size());
    while (!bytes.empty())
    {
        char32_t character = 0;
        wellFormed = TakeOrReplaceUtf8(bytes, character) && wellFormed;
        AppendCodePoint(wide, character);
    }
    return wellFormed;
}

bool IsAsciiByte(char byte) noexcept
{
    return static_cast<unsigned char>(byte) < 0x80U;
}

} // namespace

namespace support
{

wchar_t WideFromNarrow(char character) noexcept
{
    return static_cast<wchar_t>(CharacterOf(character));
}

std::wstring WideFromNarrow(std::string_view text)
{
    std::wstring wide;
    AppendWideFromNarrow(wide, text);
    return wide;
}

void AppendWideFromNarrow(std::wstring& wide, std::string_view text)
{
    const std::size_t before = wide.size();
    wide.resize(before + text.size());
    std::transform(text.begin(), text.end(), wide.data() + before,
                   [](char character) { return static_cast<wchar_t>(CharacterOf(character)); });
}

bool TryNarrowFromWide(std::wstring_view text, std::string& narrow)
{
    bool complete = true;
    narrow.clear();
    narrow.reserve(text.size());
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* position = text.data(); position != end;)
    {
        char byte = '?';
        complete = ByteOf(NextCodePoint(position, end), byte) && complete;
        narrow.push_back(byte);
    }
    return complete;
}

std::optional<CharacterPlace> FindWithoutNarrowPlace(std::wstring_view text) noexcept
{
    const wchar_t* const end = text.data() + text.size();
    std::size_t index = 0;
    for (const wchar_t* position = text.data(); position != end; ++index)
    {
        const char32_t character = NextCodePoint(position, end);
        if (char byte = 0; !ByteOf(character, byte))
        {
            return CharacterPlace{index, character};
        }
    }
    return std::nullopt;
}

std::string NarrowFromWide(std::wstring_view text)
{
    std::string narrow;
    static_cast<void>(TryNarrowFromWide(text, narrow));
    return narrow;
}

std::string Utf8FromWide(std::wstring_view text)
{
    std::string bytes;
    Utf8FromWide(text, bytes);
    return bytes;
}

void Utf8FromWide(std::wstring_view text, std::string& bytes)
{
    bytes.clear();
    bytes.reserve(text.size());
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* position = text.data(); position != end;)
    {
        AppendUtf8(bytes, ValidOrReplacement(NextCodePoint(position, end)));
    }
}

std::string Utf8FromNarrow(std::string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    for (const char character : text)
    {
        AppendUtf8(bytes, CharacterOf(character));
    }
    return bytes;
}

bool TryWideFromUtf8(std::string_view bytes, std::wstring& wide)
{
    return DecodeUtf8(bytes, wide);
}

std::optional<std::size_t> FindMalformedUtf8(std::string_view bytes) noexcept
{
    std::string_view rest = bytes;
    char32_t character = 0;
    while (!rest.empty())
    {
        if (!TakeUtf8(rest, character))
        {
            return bytes.size() - rest.size();
        }
    }
    return std::nullopt;
}

std::wstring WideFromUtf8(std::string_view bytes)
{
    std::wstring wide;
    static_cast<void>(DecodeUtf8(bytes, wide));
    return wide;
}

bool IsAscii(std::string_view bytes) noexcept
{
    constexpr std::uint64_t kOthers = 0x8080808080808080U;
    constexpr std::size_t kStep = sizeof kOthers;
    if (bytes.size() < kStep)
    {
        return std::all_of(bytes.begin(), bytes.end(), IsAsciiByte);
    }
    // Eight at a time; the last eight may overlap those before them.
    const char* const last = bytes.data() + bytes.size() - kStep;
    std::uint64_t eight = 0;
    std::memcpy(&eight, last, kStep);
    std::uint64_t found = eight;
    for (const char* at = bytes.data(); at < last; at += kStep)
    {
        std::memcpy(&eight, at, kStep);
        found |= eight;
    }
    return (found & kOthers) == 0;
}

void NarrowFromUtf8(std::string_view bytes, std::string& narrow)
{
    narrow.clear();
    while (!bytes.empty())
    {
        char32_t character = 0;
        static_cast<void>(TakeOrReplaceUtf8(bytes, character));
        char byte = '?';
        static_cast<void>(ByteOf(character, byte));
        narrow.push_back(byte);
    }
}

std::wstring_view CutWide(std::wstring_view text, std::size_t count) noexcept
{
    return text.size() <= count ? text : WithoutHalfPair(text.substr(0, count));
}

} // namespace support
