#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace scratch
{

/// What the name of a copy tells about its origin.
struct NameParts
{
    std::string made; ///< such as "2026-03-29 10:11:12", the maker's local time
    std::uint32_t process = 0;
    std::string user;
};

/// A name for a copy that nobody else has:
/// signcheck_scratch_<day>_<time>_<process>_<user>_<random>, small letters, which no product folds,
/// and at most 63 characters, which all of them take.
std::string NewName();

/// Nothing for a text that NewName does not give.
std::optional<NameParts> ReadName(const std::string& name);

/// What every name begins with.
inline constexpr const char* kNamePrefix = "signcheck_scratch_";

} // namespace scratch
