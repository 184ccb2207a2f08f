#pragma once

#include <string_view>

namespace engine
{

inline bool IsBlank(char character) noexcept
{
    return character == ' ' || character == '\t' || character == '\r' || character == '\n';
}

/// The text without blanks and line ends at both ends.
inline std::string_view WithoutBlanks(std::string_view text) noexcept
{
    while (!text.empty() && IsBlank(text.front()))
    {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsBlank(text.back()))
    {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace engine
