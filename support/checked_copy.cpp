#include "support/checked_copy.h"

#include "port/crt.h"
#include "support/codepage.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace
{

std::size_t LengthUpTo(const char* text, std::size_t limit) noexcept
{
    return static_cast<std::size_t>(std::find(text, text + limit, '\0') - text);
}

} // namespace

namespace support
{

void CheckedCopy(char* destination, std::size_t size, const char* source, std::size_t count)
{
    if (destination == nullptr || size == 0)
    {
        port::RaiseInvalidParameter();
        return;
    }
    destination[0] = '\0';
    if (count == 0)
    {
        return;
    }
    // No more than `size` characters are looked at: with as many there is no room for the NUL.
    const std::size_t length = source == nullptr ? size : LengthUpTo(source, std::min(count, size));
    if (length >= size)
    {
        port::RaiseInvalidParameter();
        return;
    }
    std::memcpy(destination, source, length);
    destination[length] = '\0';
}

void TruncatingCopy(wchar_t* destination, std::size_t capacity, const wchar_t* source) noexcept
{
    if (destination == nullptr || capacity == 0)
    {
        return;
    }
    const std::wstring_view whole = source == nullptr ? L"" : source;
    const std::wstring_view part = CutWide(whole, capacity - 1);
    part.copy(destination, part.size());
    destination[part.size()] = L'\0';
}

void TruncatingCopy(char* destination, std::size_t capacity, const char* source) noexcept
{
    if (destination == nullptr || capacity == 0)
    {
        return;
    }
    const std::string_view whole = source == nullptr ? "" : source;
    destination[whole.copy(destination, capacity - 1)] = '\0';
}

} // namespace support
