#include "engine/order_amount.h"

namespace engine
{

namespace
{

constexpr std::size_t kShownCharacters = 40;

// Too many digits have an upper bound: the order counts, and no limit is slipped under.
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
    if (HasValue(ExactDecimal::Parse(other.text, separator, otherValue)) &&
        (!HasValue(ExactDecimal::Parse(kept.text, separator, keptValue)) || otherValue > keptValue))
    {
        kept = other;
    }
}

bool ReadAmount(const RawAmount& amount, char separator, ConversionOutput& output,
                std::uint64_t position, OrderRow& order)
{
    const ExactDecimal::ParseResult result =
        amount.present ? ExactDecimal::Parse(amount.text, separator, order.amount)
                       : ExactDecimal::ParseResult::Empty;
    if (HasValue(result))
    {
        order.currency = amount.currency;
    }
    const auto tell = [&](Finding finding, const std::string& text)
    {
        output.AddError(position, order.record, finding, text);
        return HasValue(result);
    };
    switch (result)
    {
    case ExactDecimal::ParseResult::Ok:
        return true;
    case ExactDecimal::ParseResult::Empty:
        return tell(Finding::AmountMissing, "Order without an amount");
    case ExactDecimal::ParseResult::Negative:
        return tell(Finding::AmountMalformed, "Amount " + Shown(amount.text) + " is negative");
    case ExactDecimal::ParseResult::TooManyDigits:
        return tell(Finding::AmountTooLarge,
                    "Amount " + Shown(amount.text) + " has too many digits and counts as " +
                        order.amount.ToText(order.amount.FractionDigits()));
    case ExactDecimal::ParseResult::NotANumber:
        break;
    }
    return tell(Finding::AmountMalformed,
                "Amount " + Shown(amount.text) + " is no number with '" + separator + "'");
}

} // namespace engine
