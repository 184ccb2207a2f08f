#include "engine/order_amount.h"

namespace engine
{

namespace
{

constexpr std::size_t kShownCharacters = 40;

// Too many digits have an upper bound.
bool HasValue(ExactDecimal::ParseResult result)
{
    return result == ExactDecimal::ParseResult::Ok ||
           result == ExactDecimal::ParseResult::TooManyDigits;
}

std::string Shown(const std::string& text)
{
    return text.size() <= kShownCharacters ? text : text.substr(0, kShownCharacters) + "...";
}

} // namespace

void KeepLarger(RawAmount& kept, const RawAmount& other, char separator)
{
    ExactDecimal keptValue;
    ExactDecimal otherValue;
    if (HasValue(ExactDecimal::Parse(kept.text, separator, keptValue)) &&
        (!HasValue(ExactDecimal::Parse(other.text, separator, otherValue)) ||
         otherValue > keptValue))
    {
        kept = other;
    }
}

void CountAsLargest(ConversionOutput& output, std::uint64_t position, Finding finding,
                    const std::string& problem, OrderRow& order)
{
    order.amount = ExactDecimal::Largest();
    output.AddError(position, order.record, finding,
                    problem + "; the order counts as " + order.amount.ToText(0));
}

bool ReadAmount(const RawAmount& amount, char separator, ConversionOutput& output,
                std::uint64_t position, OrderRow& order)
{
    order.currency = amount.currency;
    const ExactDecimal::ParseResult result =
        amount.present ? ExactDecimal::Parse(amount.text, separator, order.amount)
                       : ExactDecimal::ParseResult::Empty;
    const auto countAsLargest = [&](Finding finding, const std::string& problem)
    { CountAsLargest(output, position, finding, problem, order); };
    switch (result)
    {
    case ExactDecimal::ParseResult::Ok:
        break;
    case ExactDecimal::ParseResult::TooManyDigits:
        output.AddError(position, order.record, Finding::AmountTooLarge,
                        "Amount " + Shown(amount.text) + " has too many digits and counts as " +
                            order.amount.ToText(order.amount.FractionDigits()));
        break;
    case ExactDecimal::ParseResult::Empty:
        countAsLargest(Finding::AmountMissing, "Order without an amount");
        break;
    case ExactDecimal::ParseResult::Negative:
        countAsLargest(Finding::AmountMalformed, "Amount " + Shown(amount.text) + " is negative");
        break;
    case ExactDecimal::ParseResult::NotANumber:
        countAsLargest(Finding::AmountMalformed,
                       "Amount " + Shown(amount.text) + " is no number with '" + separator + "'");
        break;
    }
    return HasValue(result);
}

} // namespace engine
