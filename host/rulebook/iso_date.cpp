#include "host/rulebook/iso_date.h"

#include <charconv>
#include <chrono>

namespace rulebook
{

namespace
{

int Number(std::string_view digits)
{
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

} // namespace

bool IsIsoDate(std::string_view text)
{
    constexpr std::string_view kShape = "0000-00-00";
    if (text.size() != kShape.size())
    {
        return false;
    }
    for (std::size_t at = 0; at < kShape.size(); ++at)
    {
        const bool isDigit = text[at] >= '0' && text[at] <= '9';
        if (kShape[at] == '0' ? !isDigit : text[at] != '-')
        {
            return false;
        }
    }
    const std::chrono::year_month_day day{
        std::chrono::year(Number(text.substr(0, 4))),
        std::chrono::month(static_cast<unsigned>(Number(text.substr(5, 2)))),
        std::chrono::day(static_cast<unsigned>(Number(text.substr(8, 2))))};
    return day.ok() && day.year() >= std::chrono::year(1);
}

} // namespace rulebook
