#pragma once

#include <cstddef>
#include <string>

namespace signutils
{

// Arguments of the C interface: UTF-8 texts with the names that signutils_c.h gives them. Each
// function ends the call with CallRefused when it refuses.

[[noreturn]] void RefuseNull(const char* name, const char* expected);
/// For numbers and sizes.
[[noreturn]] void RefuseValue(const char* name, const std::string& reason);

/// What a field holds at most, in characters, and what to do about a text that is longer.
struct FieldLimit
{
    std::size_t longest;
    const char* remedy;
};

inline constexpr FieldLimit kIdentifier = {8, "Give the short name that the contract tables hold."};

/// Refuses a text that would not fit its field.
void RequireFits(const char* name, std::size_t length, const FieldLimit& limit);

/// Windows-1252.
std::string Narrow(const char* name, const char* utf8);
std::string NarrowUpTo(const char* name, const char* utf8, const FieldLimit& limit);
/// The same; null is empty.
std::string OptionalNarrow(const char* name, const char* utf8);
std::string OptionalNarrowUpTo(const char* name, const char* utf8, const FieldLimit& limit);

std::wstring Wide(const char* name, const char* utf8);

/// The bytes as they stand, well-formed.
std::string Utf8(const char* name, const char* utf8);

} // namespace signutils
