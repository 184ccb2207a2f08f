#include "engine/pain_text.h"

#include "engine/cfonb_date.h"
#include "support/codepage.h"

#include <cstddef>

namespace engine
{

namespace
{

// More than any text of the message may have. What stands in a group is written with each of its
// orders, so a long one would multiply.
constexpr std::size_t kLongestText = 512;

} // namespace

std::string Narrow(std::string_view utf8)
{
    return support::NarrowFromWide(support::WideFromUtf8(utf8));
}

std::string Trimmed(const std::string& text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == std::string::npos
               ? std::string()
               : text.substr(first, text.find_last_not_of(kBlanks) - first + 1U);
}

std::string Shortened(const std::string& text)
{
    return text.substr(0, kLongestText);
}

std::string PlainDate(const std::string& text)
{
    if (text.size() < 10 || text[4] != '-' || text[7] != '-')
    {
        return {};
    }
    return DateOfFourDigitYear(text.substr(0, 4) + text.substr(5, 2) + text.substr(8, 2));
}

} // namespace engine
