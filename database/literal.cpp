#include "database/literal.h"

#include "database/diagnostics.h"

#include <string>
#include <string_view>

namespace database
{

namespace
{

template <typename Character>
bool StaysWithin(const Character* text, std::size_t cut) noexcept
{
    constexpr Character quote = '\'';
    using View = std::basic_string_view<Character>;
    if (text == nullptr || View(text).substr(0, cut).find(quote) == View::npos)
    {
        return true;
    }
    bool unpaired = false;
    for (std::size_t at = 0; at < cut && text[at] != Character(); ++at)
    {
        if (text[at] == quote)
        {
            unpaired = !unpaired;
        }
        else if (unpaired)
        {
            return false;
        }
    }
    return !unpaired;
}

template <typename Character>
void Require(const Character* text, std::size_t cut, const char* what, const char* operation)
{
    if (StaysWithin(text, cut))
    {
        return;
    }
    // The text itself is not shown: what it may hold is meant to deceive.
    std::string reason = std::string("The ") + what;
    if (cut != kUncut)
    {
        reason += ", cut to " + std::to_string(cut) + " characters,";
    }
    reason += " has an apostrophe without a partner, which would end its literal in the statement:"
              " write it without apostrophes.";
    RaiseRefusal("42000", reason, {operation, L""});
}

} // namespace

void RequireWithinLiteral(const wchar_t* text, std::size_t cut, const char* what,
                          const char* operation)
{
    Require(text, cut, what, operation);
}

void RequireWithinLiteral(const char* text, std::size_t cut, const char* what,
                          const char* operation)
{
    Require(text, cut, what, operation);
}

} // namespace database
