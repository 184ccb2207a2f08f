#include "host/check_amounts.h"

#include "host/amount_text.h"
#include "signutils/check_outcome.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using host::AmountsOrigin;
using host::CheckAmounts;
using host::CheckRequest;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace
{

CheckRequest FromFile()
{
    CheckRequest request;
    request.amountsFromFile = true;
    request.format = host::OrderFormat{"CFONB", "160"};
    request.fileShown = "order.txt";
    return request;
}

CheckOutcome WorkedOut(const std::string& problem = {})
{
    CheckOutcome outcome;
    outcome.ran = true;
    outcome.amountsKnown = true;
    outcome.totalAmount = 350.5;
    outcome.maxOrderAmount = 250.5;
    outcome.orderCount = 2;
    outcome.currency = "EUR";
    outcome.amountsProblem = problem.c_str();
    return outcome;
}

std::vector<std::string> Warnings(const CheckRequest& request, const CheckAmounts& amounts)
{
    std::vector<std::string> warnings;
    host::WarnOfAmounts(request, amounts, warnings);
    return warnings;
}

} // namespace

TEST(CheckAmounts, GivenOnesAreThoseOfTheRequest)
{
    CheckRequest request;
    request.total = 900.0;
    request.largest = 800.0;
    request.currency = "EUR";
    const CheckAmounts amounts = host::AmountsOf(request, WorkedOut(), true);

    EXPECT_EQ(amounts.origin, AmountsOrigin::Given);
    EXPECT_EQ(amounts.total, 900.0);
    EXPECT_EQ(amounts.largest, 800.0);
    EXPECT_THAT(Warnings(request, amounts), IsEmpty());
}

TEST(CheckAmounts, OfAFileWithoutErrorsWarnOfNothing)
{
    const CheckAmounts amounts = host::AmountsOf(FromFile(), WorkedOut(), true);

    EXPECT_EQ(amounts.origin, AmountsOrigin::File);
    EXPECT_EQ(amounts.total, 350.5);
    EXPECT_EQ(amounts.orders, 2);
    EXPECT_THAT(Warnings(FromFile(), amounts), IsEmpty());
}

TEST(CheckAmounts, OneOrderIsNotCalledOrders)
{
    CheckAmounts amounts = host::AmountsOf(FromFile(), WorkedOut(), true);
    amounts.orders = 1;

    EXPECT_THAT(host::AmountsInWords(FromFile(), amounts), HasSubstr(" 1 order, worked out"));
}

TEST(CheckAmounts, WithoutACurrencyLeaveNoBlankWhereItWouldStand)
{
    CheckAmounts amounts = host::AmountsOf(FromFile(), WorkedOut(), true);
    amounts.currency.clear();

    EXPECT_THAT(host::AmountsInWords(FromFile(), amounts), HasSubstr("total 350.50, largest"));
}

TEST(CheckAmounts, AQuotationMarkInThePathIsToldAsTheReasonOfUnknownOnes)
{
    CheckRequest request = FromFile();
    request.file = "folder/q\"uote.xml";
    CheckOutcome outcome;
    outcome.amountsProblem = "Work parameters, character 6";
    const CheckAmounts amounts = host::AmountsOf(request, outcome, true);

    EXPECT_EQ(amounts.origin, AmountsOrigin::Unknown);
    EXPECT_THAT(amounts.problem, HasSubstr("Work parameters, character 6; the path of the order "
                                           "file holds a quotation mark"));
    EXPECT_THAT(amounts.problem, HasSubstr("Rename the file"));
}

TEST(CheckAmounts, AreUnknownWhenAWorkFileVanishedWhileItWasRead)
{
    CheckOutcome withoutTotals = WorkedOut();
    withoutTotals.totalAmount = 0.0;
    CheckOutcome withoutOrders = WorkedOut();
    withoutOrders.maxOrderAmount = 0.0;
    withoutOrders.orderCount = 0;
    CheckOutcome withoutAny = withoutOrders;
    withoutAny.totalAmount = 0.0;

    for (const CheckOutcome& outcome : {withoutTotals, withoutOrders, withoutAny})
    {
        const CheckAmounts amounts = host::AmountsOf(FromFile(), outcome, true);
        EXPECT_EQ(amounts.origin, AmountsOrigin::Unknown);
        EXPECT_THAT(amounts.problem, HasSubstr("vanished while they were read"));
        EXPECT_THAT(Warnings(FromFile(), amounts), ElementsAre(HasSubstr("UNKNOWN")));
    }
}

TEST(CheckAmounts, OfAFileThatSaysItHoldsNoOrderAreKnown)
{
    CheckOutcome outcome = WorkedOut("Err 43 (record ) : The file holds no order");
    outcome.totalAmount = 0.0;
    outcome.maxOrderAmount = 0.0;
    outcome.orderCount = 0;

    EXPECT_EQ(host::AmountsOf(FromFile(), outcome, true).origin, AmountsOrigin::File);
}

TEST(CheckAmounts, OfOrdersOfZeroAreKnown)
{
    CheckOutcome outcome = WorkedOut();
    outcome.totalAmount = 0.0;
    outcome.maxOrderAmount = 0.0;

    EXPECT_EQ(host::AmountsOf(FromFile(), outcome, true).origin, AmountsOrigin::File);
}

TEST(CheckAmounts, ErrorsAreTakenApart)
{
    const auto amounts = host::AmountsOf(
        FromFile(), WorkedOut("Err 11 (record 2) : Zone 'A;B' is none;Err 5 (record 9) : total"),
        true);

    EXPECT_THAT(amounts.fileErrors,
                ElementsAre("Err 11 (record 2) : Zone 'A;B' is none", "Err 5 (record 9) : total"));
}

TEST(CheckAmounts, ErrorsAreTurnedIntoUtf8OnOneLine)
{
    const auto amounts =
        host::AmountsOf(FromFile(), WorkedOut("Err 20 (record 2) : caf\xE9\n\x1B[2J"), true);

    EXPECT_THAT(amounts.fileErrors, ElementsAre("Err 20 (record 2) : café ?[2J"));
}

TEST(CheckAmounts, AListThatTheLibraryCutSaysSo)
{
    std::string list = "Err 1 (record 1) : ";
    list.resize(255, 'x');
    const auto amounts = host::AmountsOf(FromFile(), WorkedOut(list), true);

    ASSERT_EQ(amounts.fileErrors.size(), 1U);
    EXPECT_THAT(amounts.fileErrors[0], EndsWith("x…"));
}

TEST(CheckAmounts, AnUntracedCheckHasErrorsButNotTheirTexts)
{
    const auto amounts = host::AmountsOf(FromFile(), WorkedOut("350.50 EUR;350.50 EUR"), false);

    ASSERT_EQ(amounts.fileErrors.size(), 1U);
    EXPECT_THAT(amounts.fileErrors[0], Not(HasSubstr("350.50")));
    EXPECT_EQ(Warnings(FromFile(), amounts).size(), 1U);
}

TEST(CheckAmounts, AWarningShowsTheFirstErrorsAndTheCommandForAll)
{
    const auto amounts = host::AmountsOf(
        FromFile(),
        WorkedOut("Err 1 (record 1) : a;Err 2 (record 2) : b;Err 3 (record 3) : c;Err 4 "
                  "(record 4) : d"),
        true);
    const auto warnings = Warnings(FromFile(), amounts);

    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_THAT(warnings[0], HasSubstr("Err 3 (record 3) : c. signcheck amounts 'order.txt' "
                                       "--format CFONB/160 shows every one."));
    EXPECT_THAT(warnings[0], Not(HasSubstr("Err 4")));
}

TEST(CheckAmounts, AtTheEndOfTheRangeAreToldLoudly)
{
    CheckOutcome outcome = WorkedOut();
    outcome.totalAmount = 922'337'203'685.4775807;
    const auto warnings = Warnings(FromFile(), host::AmountsOf(FromFile(), outcome, true));

    ASSERT_EQ(warnings.size(), 1U);
    EXPECT_THAT(warnings[0], HasSubstr("END of what can be judged"));
    EXPECT_THAT(warnings[0], HasSubstr("922337203685.47"));
}

TEST(CheckAmounts, AskedFromAFileAreUnknownUntilTheyAreWorkedOut)
{
    EXPECT_EQ(host::AmountsAskedFor(FromFile()).origin, AmountsOrigin::Unknown);
    EXPECT_EQ(host::AmountsAskedFor(CheckRequest()).origin, AmountsOrigin::Given);
}

struct ShownCase
{
    double amount;
    const char* currency;
    const char* expected;
};

class ShownAmountText : public testing::TestWithParam<ShownCase>
{
};

TEST_P(ShownAmountText, HasTheDecimalsOfItsCurrencyAtLeast)
{
    EXPECT_EQ(host::ShownAmount(GetParam().amount, GetParam().currency), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Amounts, ShownAmountText,
    testing::Values(ShownCase{1500.0, "EUR", "1500.00"}, ShownCase{0.1 + 0.2, "EUR", "0.30"},
                    ShownCase{1500.0, "JPY", "1500"}, ShownCase{150019.845, "JPY", "150019.845"},
                    ShownCase{12.5, "TND", "12.500"}, ShownCase{12.5, "", "12.50"},
                    ShownCase{0.0, "XAU", "0.00"},
                    ShownCase{1000000000000000.0, "EUR", "1000000000000000.00"}));
