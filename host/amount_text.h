#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// What one needs to know of a currency to read an amount in it.
struct AmountForm
{
    std::string currency;
    unsigned int decimals = 0; ///< at most
};

/// The form of amounts in the currency. Raises UsageRefusal for an unknown currency.
AmountForm FormOf(const OptionValue& currency);

/// The amount in the main unit: digits, and at most the currency's decimals behind a point.
/// Raises UsageRefusal, which shows the accepted form.
double ReadAmount(const OptionValue& value, const AmountForm& form);

/// What to warn of where the options say a largest order above the total of its file; empty where
/// they do not. Rules are judged on both all the same.
std::string WarningOfLargest(double total, double largest);

/// An amount as the rules write it, whatever its currency, in UTF-8.
std::string RuleAmount(double amount);

/// An amount in the main unit for people: with the currency's decimals (two where the currency is
/// unknown) and with more, up to four, where it has them.
std::string ShownAmount(double amount, const std::string& currency);

} // namespace host
