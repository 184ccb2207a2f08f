#include "engine/pain_text.h"

#include "engine/cfonb_date.h"

#include <cstddef>

namespace engine
{

namespace
{

// More than any text of the message may have. What stands in a group is written with each of its
// orders, so a long one would multiply.
constexpr std::size_t kLongestText = 512;

} // namespace

std::string_view Shortened(std::string_view text)
{
    return text.substr(0, kLongestText);
}

std::string PlainDate(std::string_view text)
{
    if (text.size() < 10 || text[4] != '-' || text[7] != '-')
    {
        return {};
    }
    std::string date;
    date.append(text.substr(0, 4)).append(text.substr(5, 2)).append(text.substr(8, 2));
    return DateOfFourDigitYear(date);
}

} // namespace engine
