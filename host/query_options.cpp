#include "host/query_options.h"

#include "host/decimal_sum.h"
#include "host/moment.h"
#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"

namespace host
{

namespace
{

constexpr std::size_t kDefaultLimit = 50;
constexpr std::uint32_t kLargestLimit = 1000000;
constexpr std::size_t kLongestAmount = 30; // what every product reads as a number

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
        if (HasShape(value->text, shape.pattern) && IsMoment(value->text))
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

std::optional<std::string> AmountBound(const OptionValues& values, const std::string& option)
{
    const OptionValue* value = values.Find(option);
    if (value == nullptr)
    {
        return std::nullopt;
    }
    if (!IsDecimal(value->text) || value->text.size() > kLongestAmount)
    {
        throw UsageRefusal(value->origin + ": " + Quoted(value->text) +
                           " is no amount. Write digits, with a point before decimals, such as "
                           "1500.00.");
    }
    return value->text;
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

void FilterByAmount(const OptionValues& values, const std::string& column, Conditions& conditions)
{
    if (const auto least = LeastAmount(values); least)
    {
        conditions.AtLeastDecimal(column, *least);
    }
    if (const auto largest = LargestAmount(values); largest)
    {
        conditions.AtMostDecimal(column, *largest);
    }
}

std::optional<std::string> LeastAmount(const OptionValues& values)
{
    return AmountBound(values, "amount-from");
}

std::optional<std::string> LargestAmount(const OptionValues& values)
{
    return AmountBound(values, "amount-to");
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
