#pragma once

#include "host/option_values.h"

#include <string>
#include <string_view>

namespace listing
{

/// A part of a text that rows must hold, in whatever case. It is looked for here and not by the
/// database, whose products do not agree on what LIKE takes for the same letter.
class TextFilter
{
public:
    /// Of an option that may be missing; then every text fits. Raises UsageRefusal for one that is
    /// empty or no UTF-8 text.
    TextFilter(const host::OptionValues& values, const std::string& option);

    bool IsGiven() const noexcept { return !m_part.empty(); }
    bool Fits(std::string_view utf8) const;

private:
    std::u32string m_part; // in lower case
};

/// The text in lower case, letter by letter, whatever the locale.
std::u32string LowerCased(std::string_view utf8);

} // namespace listing
