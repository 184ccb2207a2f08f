#include "engine/cfonb_date.h"

#include "engine/fixed_records.h"
#include "port/environment.h"
#include "support/cttime.h"
#include "support/format.h"

namespace engine
{

namespace
{

int Number(std::string_view digits)
{
    int number = 0;
    for (const char digit : digits)
    {
        number = number * 10 + (digit - '0');
    }
    return number;
}

std::string Date(int year, int month, int day)
{
    if (month < 1 || month > 12 || day < 1 || day > 31)
    {
        return {};
    }
    return support::FormatA("%04d%02d%02d", year, month, day);
}

} // namespace

std::string DateOfOneDigitYear(std::string_view zone, int thisYear)
{
    if (zone.size() != 5 || !IsDigits(zone))
    {
        return {};
    }
    const int digit = zone[4] - '0';
    int year = thisYear - thisYear % 10 + digit;
    if (year - thisYear > 5)
    {
        year -= 10;
    }
    else if (thisYear - year > 5)
    {
        year += 10;
    }
    return Date(year, Number(zone.substr(2, 2)), Number(zone.substr(0, 2)));
}

std::string DateOfOneDigitYear(std::string_view zone)
{
    const port::LocalTime now = port::ToLocalTime(CTTime::GetTickCount().GetTime());
    return DateOfOneDigitYear(zone, now.year);
}

std::string DateOfTwoDigitYear(std::string_view zone)
{
    if (zone.size() != 6 || !IsDigits(zone))
    {
        return {};
    }
    const int year = Number(zone.substr(4, 2));
    return Date(year < 70 ? 2000 + year : 1900 + year, Number(zone.substr(2, 2)),
                Number(zone.substr(0, 2)));
}

std::string DateOfFourDigitYear(std::string_view zone)
{
    if (zone.size() != 8 || !IsDigits(zone))
    {
        return {};
    }
    return Date(Number(zone.substr(0, 4)), Number(zone.substr(4, 2)), Number(zone.substr(6, 2)));
}

} // namespace engine
