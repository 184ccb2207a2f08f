#include "host/query_options.h"

#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"

#include <array>

namespace host
{

namespace
{

constexpr std::size_t kDefaultLimit = 50;
constexpr std::uint32_t kLargestLimit = 1000000;

struct TimeShape
{
    const char* pattern; ///< 0 stands for a digit, T for a blank or a T
    const char* firstMoment;
    const char* lastMoment;
};

constexpr TimeShape kShapes[] = {
    {"0000-00-00", " 00:00:00", " 23:59:59.999"},
    {"0000-00-00T00:00", ":00", ":59.999"},
    {"0000-00-00T00:00:00", "", ".999"},
};

bool Matches(const std::string& text, const std::string& pattern)
{
    if (text.size() != pattern.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const char letter = text[index];
        const char wanted = pattern[index];
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

int DaysOfMonth(int year, int month)
{
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && isLeap ? 29 : kDays.at(static_cast<std::size_t>(month - 1));
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

std::optional<std::string> Bound(const OptionValues& values, const std::string& option,
                                 const char* TimeShape::*moment)
{
    const OptionValue* value = values.Find(option);
    if (value == nullptr)
    {
        return std::nullopt;
    }
    for (const TimeShape& shape : kShapes)
    {
        if (Matches(value->text, shape.pattern) && IsMoment(value->text))
        {
            std::string bound = value->text;
            if (const auto letter = bound.find('T'); letter != std::string::npos)
            {
                bound[letter] = ' ';
            }
            return bound + shape.*moment;
        }
    }
    throw UsageRefusal(value->origin + ": " + Quoted(value->text) +
                       " is no time. Write a date such as 2026-03-29, or with a time of day such "
                       "as \"2026-03-29 14:05\".");
}

} // namespace

void FilterBy(const OptionValues& values, const std::string& option, const std::string& column,
              Conditions& conditions)
{
    if (const OptionValue* value = values.Find(option); value != nullptr)
    {
        NarrowText(*value);
        conditions.Equal(column, value->text);
    }
}

void FilterByTime(const OptionValues& values, const std::string& column, Conditions& conditions)
{
    if (const auto since = SinceTime(values); since)
    {
        conditions.AtLeast(column, *since);
    }
    if (const auto until = UntilTime(values); until)
    {
        conditions.AtMost(column, *until);
    }
}

std::optional<std::string> SinceTime(const OptionValues& values)
{
    return Bound(values, "since", &TimeShape::firstMoment);
}

std::optional<std::string> UntilTime(const OptionValues& values)
{
    return Bound(values, "until", &TimeShape::lastMoment);
}

std::size_t LimitFrom(const OptionValues& values)
{
    const OptionValue* value = values.Find("limit");
    if (value == nullptr)
    {
        return kDefaultLimit;
    }
    return WholeNumber(*value, kLargestLimit, 1);
}

int ChoiceFrom(const OptionValue& value, const Choice* choices, std::size_t count)
{
    std::string names;
    for (std::size_t index = 0; index < count; ++index)
    {
        const Choice& choice = choices[index];
        const std::string number = std::to_string(choice.number);
        if (value.text == choice.name || value.text == number)
        {
            return choice.number;
        }
        names += (index == 0 ? "" : ", ") + std::string(choice.name) + " (" + number + ")";
    }
    throw UsageRefusal(value.origin + ": " + Quoted(value.text) + " is none of the choices. Give " +
                       "one of: " + names + ".");
}

} // namespace host
