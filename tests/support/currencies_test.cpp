#include "support/currencies.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

struct CurrencyCase
{
    const char* code;
    const char* numeric;
    std::uint16_t decimals;
    bool withdrawn;
};

const CurrencyCase kCurrencyCases[] = {
    {"AED", "784", 2, false}, {"ALL", "008", 2, false},      {"BHD", "048", 3, false},
    {"CHF", "756", 2, false}, {"CLF", "990", 4, false},      {"EUR", "978", 2, false},
    {"GBP", "826", 2, false}, {"JPY", "392", 0, false},      {"KRW", "410", 0, false},
    {"TND", "788", 3, false}, {"USD", "840", 2, false},      {"UYW", "927", 4, false},
    {"XAF", "950", 0, false}, {"XAU", "959", 0xFFFF, false}, {"XXX", "999", 0xFFFF, false},
    {"ZWG", "924", 2, false}, {"ADP", "020", 0, true},       {"BGN", "975", 2, true},
    {"DEM", "276", 2, true},  {"FRF", "250", 2, true},       {"ITL", "380", 0, true},
    {"ZWL", "932", 2, true},
};

TEST(Currencies, EveryCodeHasItsFacts)
{
    const TResourceDevise currencies;
    for (const CurrencyCase& currency : kCurrencyCases)
    {
        const CurrencyInfo* const found = currencies.Find(currency.code);
        ASSERT_NE(found, nullptr) << currency.code;
        EXPECT_STREQ(found->code, currency.code);
        EXPECT_STREQ(found->numeric, currency.numeric);
        EXPECT_EQ(found->decimals, currency.decimals) << currency.code;
        EXPECT_EQ(found->withdrawn, currency.withdrawn) << currency.code;
        EXPECT_EQ(currencies.GetDecimals(currency.code, 0), currency.decimals);
    }
}

TEST(Currencies, TheTableIsComplete)
{
    const TResourceDevise currencies;
    int active = 0;
    int withdrawn = 0;
    for (char first = 'A'; first <= 'Z'; ++first)
    {
        for (char second = 'A'; second <= 'Z'; ++second)
        {
            for (char third = 'A'; third <= 'Z'; ++third)
            {
                const char code[] = {first, second, third, '\0'};
                if (const CurrencyInfo* const found = currencies.Find(code); found != nullptr)
                {
                    EXPECT_STREQ(found->code, code);
                    EXPECT_EQ(std::string(found->numeric).size(), 3U) << code;
                    EXPECT_TRUE(found->decimals <= 4 || found->decimals == 0xFFFF) << code;
                    (found->withdrawn ? withdrawn : active) += 1;
                }
            }
        }
    }
    EXPECT_EQ(active, 178);
    EXPECT_EQ(withdrawn, 48);
}

TEST(Currencies, UnknownCodesHaveNoDecimals)
{
    const TResourceDevise currencies;
    for (const char* const code : {"ZZZ", "", "EU", "EURO", "eur", " EUR", "978"})
    {
        EXPECT_EQ(currencies.Find(code), nullptr) << code;
        EXPECT_EQ(currencies.GetDecimals(code, 0), 0xFFFF) << code;
    }
    EXPECT_EQ(currencies.Find(nullptr), nullptr);
    EXPECT_EQ(currencies.GetDecimals(nullptr, 0), 0xFFFF);
}

TEST(Currencies, TheProcessHasATable)
{
    ASSERT_NE(GlobalResourceDevise, nullptr);
    EXPECT_EQ(GlobalResourceDevise->GetDecimals("EUR", 0), 2);
}

TEST(Currencies, AHostPutsItsOwnTableInPlace)
{
    class HouseCurrencies : public TResourceDevise
    {
    public:
        std::uint16_t GetDecimals(const char* code, int reserved) const override
        {
            return std::string(code) == "PTS" ? 1 : TResourceDevise::GetDecimals(code, reserved);
        }
    };
    HouseCurrencies house;
    TResourceDevise* const before = GlobalResourceDevise;
    GlobalResourceDevise = &house;
    EXPECT_EQ(GlobalResourceDevise->GetDecimals("PTS", 0), 1);
    EXPECT_EQ(GlobalResourceDevise->GetDecimals("JPY", 0), 0);
    GlobalResourceDevise = before;
    EXPECT_EQ(GlobalResourceDevise->GetDecimals("PTS", 0), 0xFFFF);
}

} // namespace
