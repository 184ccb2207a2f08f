#include "port/code_page.h"

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

} // namespace

char32_t CharacterOf(char byte) noexcept
{
    const auto value = static_cast<unsigned char>(byte);
    return value >= 0x80 && value <= 0x9F ? kHighControls[value - 0x80] : value;
}

bool TryByteOf(char32_t character, char& byte) noexcept
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

} // namespace port
