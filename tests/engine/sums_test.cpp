#include "amounts/format_conversion.h"
#include "engine/convert.h"
#include "port/com.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

// Sums of many orders, from the order file to the total that rules are judged on.

using testing::ElementsAre;
using testing_support::TemporaryFolder;

namespace
{

constexpr int kOrders = 1'000'000;

std::string MillionOrdersOfACent()
{
    const std::string order =
        "<CdtTrfTxInf><Amt><InstdAmt Ccy=\"EUR\">0.01</InstdAmt></Amt></CdtTrfTxInf>\n";
    std::string message = "<Document><CstmrCdtTrfInitn><PmtInf>";
    message.reserve(order.size() * kOrders + 100U);
    for (int i = 0; i < kOrders; ++i)
    {
        message += order;
    }
    return message + "</PmtInf></CstmrCdtTrfInitn></Document>";
}

TEST(Sums, MillionOrdersOfACentAreTenThousand)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", MillionOrdersOfACent());

    engine::Convert(engine::Work::Pain001, order, order + ".veu");

    EXPECT_THAT(engine_tests::ReadRows(order + ".veu.bp", 4),
                ElementsAre(ElementsAre("1", "1", "10000.00", "EUR")));
    EXPECT_THAT(engine_tests::ReadRows(order + ".veu.tot", 4),
                ElementsAre(ElementsAre("1", "1", "10000.00", "EUR", "1000000"),
                            ElementsAre("*", "1", "10000.00", "EUR", "1000000")));

    amounts::FileTotals totals;
    char currencyCode[4] = "";
    char errorText[256] = "";
    CoInitialize(nullptr);
    const int worked = amounts::GetMaxAmountFile({order.c_str(), "ISO20022", "pain.001", nullptr},
                                                 totals, currencyCode, errorText);
    CoUninitialize();

    EXPECT_EQ(worked, 1) << errorText;
    EXPECT_EQ(totals.totalAmount, 10000.00) << "exactly: a remittance is one row";
    EXPECT_EQ(totals.maxOrderAmount, 0.01);
    EXPECT_EQ(totals.orderCount, kOrders);
    EXPECT_STREQ(errorText, "");
}

// Each order is rounded up, and so is their sum: whoever adds the orders finds the total.
TEST(Sums, RoundedOrdersAreAddedAsTheyAreWritten)
{
    const TemporaryFolder folder;
    std::string orders;
    for (const char* const amount : {"0.001 EUR", "0.005 EUR", "0.00000001 XXX", "1.00000001 XXX"})
    {
        const std::string text = amount;
        const std::size_t blank = text.find(' ');
        orders += "<CdtTrfTxInf><Amt><InstdAmt Ccy='" + text.substr(blank + 1U) + "'>" +
                  text.substr(0, blank) + "</InstdAmt></Amt></CdtTrfTxInf>";
    }
    const std::string order =
        folder.Write("order.xml", "<Document><CstmrCdtTrfInitn><PmtInf>" + orders +
                                      "</PmtInf></CstmrCdtTrfInitn></Document>");

    engine::Convert(engine::Work::Pain001, order, order + ".veu");

    EXPECT_THAT(engine_tests::ReadRows(order + ".veu.bp", 4),
                ElementsAre(ElementsAre("1", "1", "0.02", "EUR"),
                            ElementsAre("1", "1", "1.0000002", "XXX")));
}

} // namespace
