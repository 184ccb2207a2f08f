#include "support/filter.h"

#include "support/casefold.h"
#include "support/codepage.h"

namespace
{

char32_t Folded(char character) noexcept
{
    return support::LowerCase(static_cast<char32_t>(support::WideFromNarrow(character)));
}

bool MatchesOne(char pattern, char character) noexcept
{
    return pattern == '?' || Folded(pattern) == Folded(character);
}

} // namespace

int GetFilterResult(const char* pattern, const TSimpleString& text) noexcept
{
    if (pattern == nullptr)
    {
        return 0;
    }
    // Only the last star needs to be tried again: what an earlier one could take, this one can.
    const char* next = text.SafeGetString();
    const char* afterStar = nullptr;
    const char* takenByStar = nullptr;
    while (*next != '\0')
    {
        if (*pattern == '*')
        {
            afterStar = ++pattern;
            takenByStar = next;
        }
        else if (*pattern != '\0' && MatchesOne(*pattern, *next))
        {
            ++pattern;
            ++next;
        }
        else if (afterStar != nullptr)
        {
            pattern = afterStar;
            next = ++takenByStar;
        }
        else
        {
            return 0;
        }
    }
    while (*pattern == '*')
    {
        ++pattern;
    }
    return *pattern == '\0' ? 1 : 0;
}
