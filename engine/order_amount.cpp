#include "engine/order_amount.h"

namespace engine
{

namespace
{

constexpr std::size_t kShownCharacters = 40;

std::string Shown(const std::string& text)
{
    return text.size() <= kShownCharacters ? text : text.substr(0, kShownCharacters) + "...";
}

} // namespace

void KeepLarger(RawAmount& kept, const RawAmount& other, char separator)
{
    ExactDecimal keptValue;
    ExactDecimal otherValue;
    const bool otherReads =
        ExactDecimal::Parse(other.text, separator, otherValue) == ExactDecimal::ParseResult::Ok;
    const bool keptReads =
        ExactDecimal::Parse(kept.text, separator, keptValue) == ExactDecimal::ParseResult::Ok;
    if (otherReads && (!keptReads || otherValue > keptValue))
    {
        kept = other;
    }
}

bool ReadAmount(const RawAmount& amount, char separator, ConversionOutput& output,
                std::uint64_t position, OrderRow& order)
{
    const auto tell = [&](Finding finding, const std::string& text)
    {
        output.AddError(position, order.record, finding, text);
        return false;
    };
    const ExactDecimal::ParseResult result =
        amount.present ? ExactDecimal::Parse(amount.text, separator, order.amount)
                       : ExactDecimal::ParseResult::Empty;
    switch (result)
    {
    case ExactDecimal::ParseResult::Ok:
        order.currency = amount.currency;
        return true;
    case ExactDecimal::ParseResult::Empty:
        return tell(Finding::AmountMissing, "Order without an amount");
    case ExactDecimal::ParseResult::Negative:
        return tell(Finding::AmountMalformed, "Amount " + Shown(amount.text) + " is negative");
    case ExactDecimal::ParseResult::TooManyDigits:
        return tell(Finding::AmountTooLarge,
                    "Amount " + Shown(amount.text) + " has too many digits");
    case ExactDecimal::ParseResult::NotANumber:
        break;
    }
    return tell(Finding::AmountMalformed,
                "Amount " + Shown(amount.text) + " is no number with '" + separator + "'");
}

} // namespace engine
