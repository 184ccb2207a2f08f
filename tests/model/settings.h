#pragma once

#include <cstdint>
#include <cstdlib>

namespace model
{

/// A number from the environment; another one where it is missing or empty.
inline std::uint64_t Setting(const char* name, std::uint64_t otherwise)
{
    const char* const value = std::getenv(name);
    return value == nullptr || *value == '\0' ? otherwise : std::strtoull(value, nullptr, 10);
}

} // namespace model
