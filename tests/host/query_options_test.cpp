#include "host/query_options.h"

#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{

using testing::HasSubstr;

host::OptionValues Given(const std::string& name, const std::string& text)
{
    host::OptionValues values;
    values.AddUnlessThere(name, {text, "option --" + name});
    return values;
}

std::optional<std::string> Since(const host::OptionValues& values)
{
    return host::TimesFrom(values).from;
}

std::optional<std::string> Until(const host::OptionValues& values)
{
    return host::TimesFrom(values).to;
}

host::OptionValues GivenBoth(const std::string& first, const std::string& firstText,
                             const std::string& second, const std::string& secondText)
{
    host::OptionValues values = Given(first, firstText);
    values.AddUnlessThere(second, {secondText, "option --" + second});
    return values;
}

template <typename Read>
std::string RefusalOf(Read&& read)
{
    try
    {
        read();
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        return refusal.what();
    }
    return "accepted";
}

TEST(TimeBounds, CoverWhatTheyName)
{
    EXPECT_EQ(Since(Given("since", "2026-03-29")), "2026-03-29 00:00:00");
    EXPECT_EQ(Until(Given("until", "2026-03-29")), "2026-03-29 23:59:59.999");
    EXPECT_EQ(Since(Given("since", "2026-03-29 14:05")), "2026-03-29 14:05:00");
    EXPECT_EQ(Until(Given("until", "2026-03-29T14:05")), "2026-03-29 14:05:59.999");
    EXPECT_EQ(Until(Given("until", "2026-03-29T14:05:09")), "2026-03-29 14:05:09.999");
    EXPECT_EQ(Since(host::OptionValues()), std::nullopt);
}

TEST(TimeBounds, LeapDaysExistInLeapYearsOnly)
{
    EXPECT_EQ(Since(Given("since", "2028-02-29")), "2028-02-29 00:00:00");
    EXPECT_THAT(RefusalOf([] { Since(Given("since", "2026-02-29")); }), HasSubstr("is no time"));
}

TEST(TimeBounds, WhatIsNoTimeIsRefused)
{
    for (const std::string text :
         {"", "yesterday", "29.03.2026", "2026-13-01", "2026-00-10", "2026-03-29 24:00",
          "2026-03-29 14:60", "2026-03-29 14", "2026-03-29' OR '1'='1", "2026-03-29 14:05:09 "})
    {
        const std::string refusal = RefusalOf([&text] { Since(Given("since", text)); });

        EXPECT_THAT(refusal, HasSubstr("option --since: '" + text + "' is no time"));
        EXPECT_THAT(refusal, HasSubstr("2026-03-29"));
    }
}

TEST(TimeBounds, ARangeThatHoldsNothingIsRefused)
{
    EXPECT_THAT(
        RefusalOf([] { host::TimesFrom(GivenBoth("since", "2026-03-30", "until", "2026-03-29")); }),
        HasSubstr("option --since: '2026-03-30' is after '2026-03-29' of option --until, and "
                  "nothing lies between"));
    EXPECT_EQ(Since(GivenBoth("since", "2026-03-29 14:05", "until", "2026-03-29")),
              "2026-03-29 14:05:00");
}

TEST(AmountBounds, ARangeThatHoldsNothingIsRefused)
{
    EXPECT_THAT(
        RefusalOf([]
                  { host::AmountsFrom(GivenBoth("amount-from", "1000", "amount-to", "999.99")); }),
        HasSubstr("option --amount-from: '1000' is above '999.99' of option --amount-to"));
    EXPECT_EQ(host::AmountsFrom(GivenBoth("amount-from", "1000", "amount-to", "1000.00")).from,
              "1000");
}

TEST(Limit, IsFiftyWhenNotGiven)
{
    EXPECT_EQ(host::LimitFrom(host::OptionValues()), 50U);
    EXPECT_EQ(host::LimitFrom(Given("limit", "7")), 7U);
}

TEST(Limit, OutOfRangeIsRefused)
{
    for (const std::string text : {"0", "-1", "1000001", "99999999999999", "x", ""})
    {
        EXPECT_THAT(RefusalOf([&text] { host::LimitFrom(Given("limit", text)); }),
                    HasSubstr("option --limit"));
    }
}

TEST(Conditions, DoubleTheQuotesOfValues)
{
    host::Conditions conditions;
    conditions.Equal("ORDERID", "O'Brien");
    conditions.AtLeast("DATETIME", "2026-03-29 00:00:00");

    EXPECT_EQ(conditions.Clause(),
              " WHERE ORDERID = 'O''Brien' AND DATETIME >= '2026-03-29 00:00:00'");
}

TEST(Conditions, NoneGiveNoClause)
{
    EXPECT_EQ(host::Conditions().Clause(), "");
}

TEST(Limit, RefusalNamesTheRangeThatIsTaken)
{
    for (const std::string text : {"-1", "0"})
    {
        EXPECT_THAT(
            RefusalOf([&text] { host::LimitFrom(Given("limit", text)); }),
            HasSubstr("option --limit: '" + text + "' is not a whole number from 1 to 1000000."));
    }
}

} // namespace
