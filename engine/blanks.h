#pragma once

#include <cstddef>
#include <string_view>

namespace engine
{

/// The text without blanks and line ends at both ends.
inline std::string_view WithoutBlanks(std::string_view text) noexcept
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string_view::npos
               ? std::string_view()
               : text.substr(first, text.find_last_not_of(kBlanks) - first + 1U);
}

} // namespace engine
