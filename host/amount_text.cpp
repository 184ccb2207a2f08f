#include "host/amount_text.h"

#include "host/option_readers.h"
#include "host/refusal.h"
#include "host/text.h"
#include "support/codepage.h"
#include "support/currencies.h"
#include "support/format.h"
#include "support/messages.h"

#include <algorithm>
#include <charconv>
#include <string_view>

namespace host
{

namespace
{

// Metals and units of account have no decimals of their own; messages show up to six.
constexpr std::uint16_t kNotApplicable = 0xFFFF;
constexpr unsigned int kDecimalsWhereNoneApply = 6;
// Beyond 15 digits a double no longer keeps every cent.
constexpr std::size_t kMostWholeDigits = 15;

std::string Example(const AmountForm& form)
{
    return form.decimals == 0 ? "1500" : "1500." + std::string(form.decimals, '0');
}

std::string ReasonOfCharacter(char character, const std::string& text)
{
    switch (character)
    {
    case ',':
        return "a comma is not taken, neither for decimals nor for grouping";
    case ' ':
    case '\'':
    case '_':
        return "grouping is not taken";
    case '+':
    case '-':
        return "a sign is not taken";
    default:
        break;
    }
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char letter) {
                       return letter >= 'A' && letter <= 'Z'
                                  ? static_cast<char>(letter + ('a' - 'A'))
                                  : letter;
                   });
    if (lower.find("inf") != std::string::npos || lower.find("nan") != std::string::npos)
    {
        return "it is no number";
    }
    return lower.find('e') != std::string::npos ? "an exponent is not taken"
                                                : "only digits and one point are taken";
}

// Why the text is no amount; empty when it is one.
std::string Problem(const std::string& text, const AmountForm& form)
{
    if (text.empty())
    {
        return "it is empty";
    }
    const auto odd =
        std::find_if(text.begin(), text.end(),
                     [](char character) { return !IsDigit(character) && character != '.'; });
    if (odd != text.end())
    {
        return ReasonOfCharacter(*odd, text);
    }
    const std::size_t point = text.find('.');
    if (point != text.rfind('.'))
    {
        return "it has more than one point";
    }
    const bool hasPoint = point != std::string::npos;
    if (hasPoint && (point == 0 || point + 1 == text.size()))
    {
        return "digits are needed on both sides of the point";
    }
    const std::size_t decimals = hasPoint ? text.size() - point - 1 : 0;
    if (decimals > form.decimals)
    {
        return "it has " + std::to_string(decimals) + " decimals and " + form.currency + " has " +
               std::to_string(form.decimals);
    }
    const std::size_t firstCounted = std::min(text.find_first_not_of('0'), text.size());
    const auto digits = std::count_if(text.begin() + static_cast<std::ptrdiff_t>(firstCounted),
                                      text.end(), IsDigit);
    if (static_cast<std::size_t>(digits) > kMostWholeDigits)
    {
        return "it has more than " + std::to_string(kMostWholeDigits) + " digits";
    }
    return {};
}

} // namespace

AmountForm FormOf(const OptionValue& currency)
{
    const std::string code = NarrowText(currency);
    const CurrencyInfo* info =
        GlobalResourceDevise == nullptr ? nullptr : GlobalResourceDevise->Find(code.c_str());
    if (info == nullptr)
    {
        throw UsageRefusal(currency.origin + ": " + Quoted(currency.text) +
                           " is an unknown currency. Give an ISO 4217 code of three capital "
                           "letters, such as EUR.");
    }
    return {code, info->decimals == kNotApplicable ? kDecimalsWhereNoneApply : info->decimals};
}

double ReadAmount(const OptionValue& value, const AmountForm& form)
{
    const std::string problem = Problem(value.text, form);
    if (!problem.empty())
    {
        const std::string decimals = form.decimals == 0
                                         ? "digits only"
                                         : "digits, with at most " + std::to_string(form.decimals) +
                                               " decimals behind a "
                                               "point";
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) + " is not an amount in " +
                           form.currency + ": " + problem + ". Write " + decimals + ", such as " +
                           Example(form) + ".");
    }
    double amount = 0.0;
    std::from_chars(value.text.data(), value.text.data() + value.text.size(), amount);
    return amount;
}

std::string WarningOfLargest(double total, double largest)
{
    return largest > total ? "option --largest is above option --total; the rules are judged on "
                             "both as given."
                           : "";
}

std::string RuleAmount(double amount)
{
    return support::Utf8FromWide(support::AmountText(amount));
}

std::string ShownAmount(double amount, const std::string& currency)
{
    constexpr std::size_t kUsualDecimals = 2;
    // No currency has more; a file's total in several currencies may have more than the one shown.
    constexpr std::size_t kMostDecimals = 4;
    const CurrencyInfo* const info =
        GlobalResourceDevise == nullptr ? nullptr : GlobalResourceDevise->Find(currency.c_str());
    const std::size_t decimals =
        info == nullptr || info->decimals == kNotApplicable ? kUsualDecimals : info->decimals;
    std::string text = support::FormatA("%.4f", amount);
    const std::size_t point = text.size() - kMostDecimals - 1;
    while (text.size() > point + 1 + decimals && text.back() == '0')
    {
        text.pop_back();
    }
    if (text.back() == '.')
    {
        text.pop_back();
    }
    return text;
}

} // namespace host
