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

[[noreturn]] void RefuseRange(const OptionValue& from, const OptionValue& to, const char* order)
{
    throw UsageRefusal(from.origin + ": " + Quoted(from.text) + " is " + order + " " +
                       Quoted(to.text) + " of " + to.origin + ", and nothing lies between. " +
                       "Exchange them.");
}

// Two letters and two digits, or NARR, as reports have them.
bool IsReasonCode(const std::string& text)
{
    constexpr std::size_t kCodeLength = 4;
    const auto isUpper = [](char letter) { return letter >= 'A' && letter <= 'Z'; };
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    return text == "NARR" || (text.size() == kCodeLength && isUpper(text[0]) && isUpper(text[1]) &&
                              isDigit(text[2]) && isDigit(text[3]));
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
    const auto [since, until] = TimesFrom(values);
    if (since)
    {
        conditions.AtLeast(column, *since);
    }
    if (until)
    {
        conditions.AtMost(column, *until);
    }
}

void FilterByAmount(const OptionValues& values, const std::string& column, Conditions& conditions)
{
    const auto [least, largest] = AmountsFrom(values);
    if (least)
    {
        conditions.AtLeastDecimal(column, *least);
    }
    if (largest)
    {
        conditions.AtMostDecimal(column, *largest);
    }
}

Range AmountsFrom(const OptionValues& values)
{
    Range range = {AmountBound(values, "amount-from"), AmountBound(values, "amount-to")};
    if (range.from && range.to && IsSmallerDecimal(*range.to, *range.from))
    {
        RefuseRange(*values.Find("amount-from"), *values.Find("amount-to"), "above");
    }
    return range;
}

Range TimesFrom(const OptionValues& values)
{
    Range range = {Bound(values, "since", &TimeShape::firstMoment),
                   Bound(values, "until", &TimeShape::lastMoment)};
    if (range.from && range.to && *range.from > *range.to)
    {
        RefuseRange(*values.Find("since"), *values.Find("until"), "after");
    }
    return range;
}

void RefuseReasonCode(const OptionValues& values, const std::string& table)
{
    const OptionValue* const reason = values.Find("reason");
    if (reason != nullptr && IsReasonCode(reason->text))
    {
        throw UsageRefusal(reason->origin + ": " + Quoted(reason->text) + " is a code, and " +
                           table +
                           " keeps the texts alone. Give a part of the text, or ask signcheck "
                           "reports --reason " +
                           reason->text + ".");
    }
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
