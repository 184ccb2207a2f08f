#pragma once

#include <cstddef>
#include <cstring>
#include <string>

namespace services
{

/// The text of a field that has no NUL when it is full.
template <std::size_t Size>
std::string FieldText(const char (&field)[Size])
{
    const void* const end = std::memchr(field, '\0', Size);
    const char* const last = end == nullptr ? field + Size : static_cast<const char*>(end);
    return std::string(field, last);
}

} // namespace services
