#include "host/moment.h"

#include "support/cttime.h"

#include <array>

namespace host
{

namespace
{

int DaysOfMonth(int year, int month)
{
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && isLeap ? 29 : kDays.at(static_cast<std::size_t>(month - 1));
}

} // namespace

bool HasShape(std::string_view text, std::string_view shape)
{
    if (text.size() != shape.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const char letter = text[index];
        const char wanted = shape[index];
        const bool fits = wanted == '0'   ? letter >= '0' && letter <= '9'
                          : wanted == 'T' ? letter == ' ' || letter == 'T'
                                          : letter == wanted;
        if (!fits)
        {
            return false;
        }
    }
    return true;
}

bool IsMoment(const std::string& text)
{
    const auto part = [&text](std::size_t begin, std::size_t length)
    { return text.size() < begin + length ? 0 : std::stoi(text.substr(begin, length)); };
    const int month = part(5, 2);
    return part(0, 4) >= 1 && month >= 1 && month <= 12 && part(8, 2) >= 1 &&
           part(8, 2) <= DaysOfMonth(part(0, 4), month) && part(11, 2) <= 23 && part(14, 2) <= 59 &&
           part(17, 2) <= 59;
}

std::string LocalNow()
{
    char now[32] = {};
    CTTime::GetTickCount().GetDatabaseTimestamp(now, sizeof now);
    return now;
}

} // namespace host
