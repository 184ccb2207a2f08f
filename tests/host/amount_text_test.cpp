#include "host/amount_text.h"

#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace
{

using testing::HasSubstr;

host::AmountForm Form(const std::string& currency)
{
    return host::FormOf({currency, "option --currency"});
}

std::string RefusalOfAmount(const std::string& text, const std::string& currency = "EUR")
{
    try
    {
        host::ReadAmount({text, "option --total"}, Form(currency));
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        return refusal.what();
    }
    return "accepted";
}

struct Accepted
{
    const char* name;
    const char* text;
    const char* currency;
    double amount;
};

void PrintTo(const Accepted& each, std::ostream* stream)
{
    *stream << each.name;
}

class AmountText : public testing::TestWithParam<Accepted>
{
};

TEST_P(AmountText, IsRead)
{
    const Accepted& accepted = GetParam();

    EXPECT_EQ(host::ReadAmount({accepted.text, "option --total"}, Form(accepted.currency)),
              accepted.amount);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, AmountText,
    testing::Values(Accepted{"WholeNumber", "1500", "EUR", 1500.0},
                    Accepted{"AllDecimals", "1500.25", "EUR", 1500.25},
                    Accepted{"FewerDecimalsThanTheCurrencyHas", "1500.5", "EUR", 1500.5},
                    Accepted{"Zero", "0", "EUR", 0.0},
                    Accepted{"LeadingZeroes", "000000000000000001.50", "EUR", 1.5},
                    Accepted{"CurrencyWithoutDecimals", "1500", "JPY", 1500.0},
                    Accepted{"CurrencyOfThreeDecimals", "1500.125", "KWD", 1500.125},
                    Accepted{"MetalOfSixDecimals", "1.123456", "XAU", 1.123456},
                    Accepted{"FifteenDigits", "9999999999999.99", "EUR", 9999999999999.99}),
    [](const auto& each) { return std::string(each.param.name); });

struct Refused
{
    const char* name;
    const char* text;
    const char* reason;
};

void PrintTo(const Refused& each, std::ostream* stream)
{
    *stream << each.name;
}

class RefusedAmountText : public testing::TestWithParam<Refused>
{
};

TEST_P(RefusedAmountText, NamesOptionValueReasonAndAcceptedForm)
{
    const std::string refusal = RefusalOfAmount(GetParam().text);

    EXPECT_THAT(refusal, HasSubstr("option --total"));
    EXPECT_THAT(refusal, HasSubstr("'" + std::string(GetParam().text) + "'"));
    EXPECT_THAT(refusal, HasSubstr(GetParam().reason));
    EXPECT_THAT(refusal, HasSubstr("at most 2 decimals behind a point, such as 1500.00."));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, RefusedAmountText,
    testing::Values(Refused{"Empty", "", "it is empty"},
                    Refused{"DecimalComma", "1500,00", "a comma is not taken"},
                    Refused{"GroupingComma", "1,500.00", "a comma is not taken"},
                    Refused{"GroupingBlank", "1 500.00", "grouping is not taken"},
                    Refused{"GroupingApostrophe", "1'500.00", "grouping is not taken"},
                    Refused{"Plus", "+1500", "a sign is not taken"},
                    Refused{"Minus", "-1500", "a sign is not taken"},
                    Refused{"Exponent", "15e2", "an exponent is not taken"},
                    Refused{"SignedExponent", "1.5E+3", "an exponent is not taken"},
                    Refused{"Infinity", "inf", "it is no number"},
                    Refused{"LongInfinity", "INFINITY", "it is no number"},
                    Refused{"NotANumber", "nan", "it is no number"},
                    Refused{"Hexadecimal", "0x10", "only digits and one point"},
                    Refused{"CurrencySign", "1500€", "only digits and one point"},
                    Refused{"TwoPoints", "1.500.00", "more than one point"},
                    Refused{"NothingBeforeThePoint", ".50", "both sides of the point"},
                    Refused{"NothingBehindThePoint", "15.", "both sides of the point"},
                    Refused{"OneDecimalTooMany", "1500.125", "it has 3 decimals and EUR has 2"},
                    Refused{"SixteenDigits", "99999999999999.99", "more than 15 digits"}),
    [](const auto& each) { return std::string(each.param.name); });

TEST(AmountTextOfACurrencyWithoutDecimals, RefusesAPointAndShowsDigitsOnly)
{
    const std::string refusal = RefusalOfAmount("1500.0", "JPY");

    EXPECT_THAT(refusal, HasSubstr("it has 1 decimals and JPY has 0"));
    EXPECT_THAT(refusal, HasSubstr("Write digits only, such as 1500."));
}

TEST(AmountCurrency, UnknownOnesAreRefusedByName)
{
    for (const std::string code : {"EURO", "eur", "ZZZ", ""})
    {
        try
        {
            Form(code);
            ADD_FAILURE() << code;
        }
        catch (const host::Refusal& refusal)
        {
            EXPECT_THAT(refusal.what(), HasSubstr("option --currency: '" + code + "'"));
            EXPECT_THAT(refusal.what(), HasSubstr("such as EUR"));
        }
    }
}

} // namespace
