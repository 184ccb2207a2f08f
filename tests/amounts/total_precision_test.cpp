#include "amounts/format_conversion.h"
#include "signutils/amount_units.h"
#include "support/numbers.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

// What the total of a file, a double that remittances are added to, can tell apart. The figures of
// docs/amounts.md stand here.

using amounts_tests::ComApartment;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using support::ToDouble;
using testing_support::TemporaryFolder;

namespace
{

std::string RemittanceRow(const std::string& amount, const std::string& currency)
{
    return "\"1\";\"1\";\"" + amount + "\";\"" + currency + "\"\r\n";
}

// The total of a file with these rows in its ".veu.bp".
double TotalOf(const std::string& remittances)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "order");
    const ComApartment apartment;
    Script script;
    script.onExecute = [&](const std::wstring&)
    {
        const std::string header = "RECORD;CORPS;TOTAL;DEVISE\r\n\"16\"\r\n\"RECORD\"\r\n\"-\"\r\n";
        folder.Write("order.xml.veu.bp", header + remittances);
        folder.Write("order.xml.veu.cp", header);
        folder.Write("order.xml.veu.err", header);
    };
    const ScriptedEngine engine(script);
    amounts::FileTotals totals;
    EXPECT_EQ(amounts::GetMaxAmountFile({order.c_str(), "ISO20022", "pain.001", nullptr}, totals,
                                        nullptr, nullptr),
              1);
    return totals.totalAmount;
}

double TotalOfMany(int count, const std::string& amount)
{
    const std::string row = RemittanceRow(amount, "EUR");
    std::string rows;
    rows.reserve(row.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
    {
        rows += row;
    }
    return TotalOf(rows);
}

// A limit as it is read from a rule.
double Limit(const char* text)
{
    std::uint16_t decimals = kUnknownDecimals;
    return UnitsToAmount(AmountTextToUnits(text, decimals));
}

struct SumCase
{
    const char* name;
    int count;
    const char* amount;
    double total;
    double exact;
};

void PrintTo(const SumCase& sum, std::ostream* stream)
{
    *stream << sum.name;
}

const SumCase kSumCases[] = {
    {"OneRemittanceIsExact", 1, "1234567890.12", 1234567890.12, 1234567890.12},
    {"TenOfTenCentsFallShort", 10, "0.10", 0.9999999999999999, 1.00},
    {"HundredCentsGoBeyond", 100, "0.01", 1.0000000000000007, 1.00},
    {"MillionCentsGoBeyond", 1'000'000, "0.01", 10000.000000171856, 10000.00},
    {"MillionLargerOnesFallShortByThreeCents", 1'000'000, "1234.56", 1234559999.968619,
     1234560000.00},
};

class SumsOfRemittances : public testing::TestWithParam<SumCase>
{
};

} // namespace

TEST_P(SumsOfRemittances, CarryTheErrorsOfTheirAdditions)
{
    const SumCase& sum = GetParam();
    const double total = TotalOfMany(sum.count, sum.amount);
    EXPECT_EQ(total, sum.total);
    // No addition is wrong by more than half of the last place of the total.
    const double lastPlace = std::nextafter(sum.exact, 2.0 * sum.exact) - sum.exact;
    EXPECT_LE(std::abs(total - sum.exact), sum.count * lastPlace);
}

INSTANTIATE_TEST_SUITE_P(Figures, SumsOfRemittances, testing::ValuesIn(kSumCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(TotalAgainstLimit, OneRemittanceIsJudgedToTheCent)
{
    for (const char* const amount :
         {"0.01", "0.30", "10000.00", "1234567890.12", "922337203685.47"})
    {
        EXPECT_EQ(TotalOf(RemittanceRow(amount, "EUR")), Limit(amount)) << amount;
    }
    EXPECT_GT(TotalOf(RemittanceRow("922337203685.47", "EUR")), Limit("922337203685.46"));
}

TEST(TotalAgainstLimit, TwoRemittancesMayExceedALimitThatTheyEqual)
{
    const double total = TotalOf(RemittanceRow("0.10", "EUR") + RemittanceRow("0.20", "EUR"));
    EXPECT_EQ(total, 0.30000000000000004);
    EXPECT_GT(total, Limit("0.30"));
}

TEST(TotalAgainstLimit, LimitALittleLargerIsJudgedAsMeant)
{
    EXPECT_GT(TotalOfMany(1'000'000, "0.01"), Limit("10000.00"));
    EXPECT_LE(TotalOfMany(1'000'000, "0.01"), Limit("10000.004"));
    EXPECT_GT(TotalOf(RemittanceRow("10000.01", "EUR")), Limit("10000.004"));
}

TEST(TotalPrecision, RowsBeyondTheLargestUnitsCountAsThose)
{
    EXPECT_EQ(TotalOf(RemittanceRow("922337203685.47", "EUR")), 922337203685.47);
    EXPECT_EQ(TotalOf(RemittanceRow("922337203685.48", "EUR")), 922337203685.47758);
    EXPECT_EQ(TotalOf(RemittanceRow("999999999999999999.00", "EUR")), 922337203685.47758);
    EXPECT_LT(TotalOf(RemittanceRow("922337203685.47", "EUR")),
              TotalOf(RemittanceRow("922337203685.48", "EUR")));
}

TEST(TotalPrecision, SeventhDecimalIsDropped)
{
    EXPECT_EQ(TotalOf(RemittanceRow("1.2345678", "XXX")), 1.234567);
}

TEST(TotalPrecision, CurrenciesAreAdded)
{
    EXPECT_EQ(TotalOf(RemittanceRow("100.00", "EUR") + RemittanceRow("15000", "JPY") +
                      RemittanceRow("1.250", "KWD") + RemittanceRow("0.5000", "CLF")),
              15101.75);
}

struct PrecisionCase
{
    const char* name;
    const char* last; // below the bound
    const char* before;
    const char* first; // above the bound
    const char* next;
};

void PrintTo(const PrecisionCase& precision, std::ostream* stream)
{
    *stream << precision.name;
}

// The bounds are 2^53, 2^46, 2^43 and 2^39: from there on a double's last place is more than the
// currency's smallest unit.
const PrecisionCase kPrecisionCases[] = {
    {"WholeUnits", "9007199254740991", "9007199254740990", "9007199254740992", "9007199254740993"},
    {"Cents", "70368744177663.99", "70368744177663.98", "70368744177664.01", "70368744177664.02"},
    {"ThreeDecimals", "8796093022207.999", "8796093022207.998", "8796093022208.001",
     "8796093022208.002"},
    {"FourDecimals", "549755813887.9999", "549755813887.9998", "549755813888.0002",
     "549755813888.0003"},
};

class DoublePrecision : public testing::TestWithParam<PrecisionCase>
{
};

TEST_P(DoublePrecision, TellsNeighboursApartBelowItsBoundOnly)
{
    EXPECT_GT(ToDouble(GetParam().last), ToDouble(GetParam().before));
    EXPECT_EQ(ToDouble(GetParam().first), ToDouble(GetParam().next));
}

INSTANTIATE_TEST_SUITE_P(Bounds, DoublePrecision, testing::ValuesIn(kPrecisionCases),
                         [](const auto& test) { return std::string(test.param.name); });
