#include "amounts/format_conversion.h"
#include "port/kernel.h"
#include "support/currencies.h"
#include "support/trace.h"
#include "tests/amounts/scripted_engine.h"
#include "tests/testing/failing_allocations.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <new>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

using amounts_tests::ComApartment;
using amounts_tests::Script;
using amounts_tests::ScriptedEngine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::ReadWholeFile;
using testing_support::TemporaryFolder;

namespace
{

const std::string kRemittanceHeader = "RECORD;CORPS;TOTAL;DEVISE\r\n16;16;16;16\r\n\"RECORD\";"
                                      "\"CORPS\";\"TOTAL\";\"DEVISE\"\r\n----\r\n";
const std::string kOrderHeader =
    "RECORD;CORPS;CTL_CPTDEBIT;CTL_CPTCREDIT;CTL_MONTANT;CTL_DEVISE\r\n"
    "16\r\n\"RECORD\"\r\n----\r\n";
const std::string kErrorHeader = "POS;CORPS;RECORD;NO_ERR;MESS\r\n";

std::string Row(const std::vector<std::string>& fields)
{
    std::string row;
    for (const std::string& field : fields)
    {
        row += (row.empty() ? "\"" : ";\"") + field + "\"";
    }
    return row + "\r\n";
}

std::string Remittance(const std::string& amount, const std::string& currency = "EUR")
{
    return Row({"1", "1", amount, currency});
}

std::string Order(const std::string& amount, const std::string& currency = "EUR")
{
    return Row({"1.1", "1", "debit", "credit", amount, currency});
}

std::string Error(const std::string& record, const std::string& number, const std::string& text)
{
    return Row({"12", "1", record, number, text});
}

// The work files by extension; one that is not there is not written.
using WorkFiles = std::map<std::string, std::string>;

WorkFiles Files(const std::string& remittances, const std::string& orders,
                const std::string& errors = "")
{
    return {{"", "main"},
            {".bp", kRemittanceHeader + remittances},
            {".cp", kOrderHeader + orders},
            {".cp2", "details"},
            {".tot", "totals"},
            {".err", kErrorHeader + errors}};
}

struct Analysis
{
    int result = -1;
    amounts::FileTotals totals = {1.0, 2.0, 3};
    std::string currencyCode;
    std::string errorText;
    std::string trace;
    std::string told;              // on standard error
    std::vector<std::string> left; // in the order file's folder, itself excepted
};

// Runs the analysis on an engine that leaves these work files.
Analysis Analyse(const WorkFiles& files, bool traced = false, bool withCurrency = true)
{
    const TemporaryFolder folder;
    const TemporaryFolder traceFolder;
    const std::string order = folder.Write("order.xml", "order");
    const ComApartment apartment;
    Script script;
    script.onExecute = [&](const std::wstring&)
    {
        for (const auto& [extension, bytes] : files)
        {
            folder.Write("order.xml.veu" + extension, bytes);
        }
    };
    const ScriptedEngine engine(script);
    Analysis analysis;
    char errorText[256] = "before";
    char currencyCode[4] = "XYZ";
    const std::string traceFile = traceFolder.Path("trace.txt");
    void* const trace = traced ? TraceOpen(traceFile.c_str()) : nullptr;
    testing::internal::CaptureStderr();
    analysis.result =
        amounts::GetMaxAmountFile({order.c_str(), "ISO20022", "pain.001", trace}, analysis.totals,
                                  withCurrency ? currencyCode : nullptr, errorText);
    analysis.told = testing::internal::GetCapturedStderr();
    if (traced)
    {
        TraceClose(trace);
        analysis.trace = ReadWholeFile(traceFile);
    }
    analysis.currencyCode = currencyCode;
    analysis.errorText = errorText;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path()))
    {
        if (entry.path().filename() != "order.xml")
        {
            analysis.left.push_back(entry.path().filename().string());
        }
    }
    return analysis;
}

TEST(MaxAmount, TotalsLargestOrderAndCountComeFromTheWorkFiles)
{
    const Analysis analysis =
        Analyse(Files(Remittance("1500.00") + Remittance("12.345", "TND"),
                      Order("1000.00") + Order("500.00") + Order("12.345", "TND")));
    EXPECT_EQ(analysis.result, 1);
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 1512.345);
    EXPECT_DOUBLE_EQ(analysis.totals.maxOrderAmount, 1000.0);
    EXPECT_EQ(analysis.totals.orderCount, 3);
    EXPECT_TRUE(analysis.totals.complete);
    EXPECT_EQ(analysis.currencyCode, "TND") << "the last remittance's";
    EXPECT_EQ(analysis.errorText, "before") << "as the conversion left it";
    EXPECT_THAT(analysis.left, ElementsAre()) << "every work file is deleted";
    EXPECT_EQ(analysis.told, "");
}

TEST(MaxAmount, FileOfOneDataRowCounts)
{
    const Analysis analysis = Analyse(Files(Remittance("7.00"), Order("7.00")));
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 7.0);
    EXPECT_EQ(analysis.totals.orderCount, 1);
}

TEST(MaxAmount, FirstRemittanceWithoutMarkerLeavesTotalAndCurrency)
{
    const Analysis analysis =
        Analyse(Files(Row({"1", "", "1500.00", "EUR"}) + Remittance("5.00"), Order("1500.00")));
    EXPECT_EQ(analysis.totals.totalAmount, 0.0);
    EXPECT_EQ(analysis.currencyCode, "XYZ");
    EXPECT_EQ(analysis.totals.orderCount, 1);
}

TEST(MaxAmount, RowWithoutMarkerEndsTheFile)
{
    const Analysis analysis = Analyse(Files(Remittance("1.00") + Row({"2"}) + Remittance("2.00"),
                                            Order("1.00") + Row({"2", ""}) + Order("2.00")));
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 1.0);
    EXPECT_DOUBLE_EQ(analysis.totals.maxOrderAmount, 1.0);
    EXPECT_EQ(analysis.totals.orderCount, 1);
}

TEST(MaxAmount, ShortRemittanceRowCountsWithEmptyAmountAndCurrency)
{
    const Analysis analysis = Analyse(Files(Remittance("3.00") + Row({"2", "1"}) +
                                                Remittance("4.00", "USD") + Row({"3", "1", "5.00"}),
                                            ""));
    // The last row's currency is unknown, so its separator is looked for in the text.
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 12.0);
    EXPECT_EQ(analysis.currencyCode, "");
}

TEST(MaxAmount, ZeroFiveAndThreeGiveFiveOfThreeOrders)
{
    const Analysis analysis = Analyse(Files("", Order("0.00") + Order("5.00") + Order("3.00")));
    EXPECT_DOUBLE_EQ(analysis.totals.maxOrderAmount, 5.0);
    EXPECT_EQ(analysis.totals.orderCount, 3);
    EXPECT_EQ(analysis.totals.totalAmount, 0.0) << "the total is that of the remittances";
}

TEST(MaxAmount, NegativeOrdersLeaveTheLargestAtZero)
{
    const Analysis analysis = Analyse(Files("", Order("-5.00") + Order("-3.00")));
    EXPECT_EQ(analysis.totals.maxOrderAmount, 0.0);
    EXPECT_EQ(analysis.totals.orderCount, 2);
}

TEST(MaxAmount, CurrencyCodeIsCutToThreeCharacters)
{
    EXPECT_EQ(Analyse(Files(Remittance("1.00", "EUROS"), "")).currencyCode, "EUR");
}

TEST(MaxAmount, CurrencyCodeMayBeNull)
{
    const Analysis analysis = Analyse(Files(Remittance("1.00"), ""), false, false);
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 1.0);
    EXPECT_EQ(analysis.currencyCode, "XYZ");
}

struct AmountCase
{
    const char* name;
    const char* amount;
    const char* currency;
    double value;
};

void PrintTo(const AmountCase& amountCase, std::ostream* stream)
{
    *stream << amountCase.name;
}

const AmountCase kAmountCases[] = {
    {"TwoDecimals", "1234.56", "EUR", 1234.56},
    {"NoDecimals", "1500", "JPY", 1500.0},
    {"ThreeDecimals", "1.234", "KWD", 1.234},
    {"MissingPointLosesADigit", "150000", "EUR", 150.00},
    {"UnknownCurrencyIsSearchedForItsPoint", "12.5", "ZZZ", 12.5},
    {"UnknownCurrencyWithComma", "12,5", "ZZZ", 12.5},
    {"MetalHasNoDecimalsOfItsOwn", "3.125", "XAU", 3.125},
    {"EmptyAmount", "", "EUR", 0.0},
};

class RowAmounts : public testing::TestWithParam<AmountCase>
{
};

TEST_P(RowAmounts, AreReadWithTheCurrencysDecimals)
{
    const AmountCase& amount = GetParam();
    const Analysis analysis = Analyse(
        Files(Remittance(amount.amount, amount.currency), Order(amount.amount, amount.currency)));
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, amount.value);
    EXPECT_DOUBLE_EQ(analysis.totals.maxOrderAmount, amount.value);
}

INSTANTIATE_TEST_SUITE_P(Texts, RowAmounts, testing::ValuesIn(kAmountCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(MaxAmount, WithoutACurrencyTableThePointIsSearched)
{
    TResourceDevise* const table = std::exchange(GlobalResourceDevise, nullptr);
    const Analysis analysis = Analyse(Files(Remittance("150000") + Remittance("0.5"), ""));
    GlobalResourceDevise = table;
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 150000.5);
}

/// Notes what it is asked; every currency has two decimals.
class AskedCurrencies final : public TResourceDevise
{
public:
    std::uint16_t GetDecimals(const char* code, int reserved) const override
    {
        m_asked.push_back(std::string(code) + "/" + std::to_string(reserved));
        return 2;
    }
    const std::vector<std::string>& Asked() const noexcept { return m_asked; }

private:
    mutable std::vector<std::string> m_asked;
};

TEST(MaxAmount, DecimalsAreAskedOfTheProcessesCurrencyTable)
{
    AskedCurrencies table;
    TResourceDevise* const before = std::exchange(GlobalResourceDevise, &table);
    const Analysis analysis =
        Analyse(Files(Remittance("150000", "ABC") + Remittance("150000", "ABC"),
                      Order("1500", "JPY") + Order("2.00", "")));
    GlobalResourceDevise = before;
    EXPECT_THAT(table.Asked(), ElementsAre("ABC/0", "JPY/0", "/0")) << "neighbours once";
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 300.00);
}

TEST(MaxAmount, DecimalsOfAFirstRowWithoutCurrencyAreAskedForToo)
{
    AskedCurrencies table;
    TResourceDevise* const before = std::exchange(GlobalResourceDevise, &table);
    const Analysis analysis = Analyse(Files(Remittance("150000", ""), ""));
    GlobalResourceDevise = before;
    EXPECT_THAT(table.Asked(), ElementsAre("/0"));
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 150.00);
}

TEST(MaxAmountErrors, HeaderAloneLeavesTheErrorTextAsItWas)
{
    EXPECT_EQ(Analyse(Files(Remittance("1.00"), "")).errorText, "before");
}

TEST(MaxAmountErrors, WithTracingAreListed)
{
    const Analysis analysis = Analyse(Files(Remittance("1.00"), "",
                                            Error("1.2", "11", "Amount x is no number") +
                                                Error("3", "42", "Group without an order")),
                                      true);
    EXPECT_EQ(analysis.result, 1);
    EXPECT_EQ(analysis.errorText, "Err 11 (record 1.2) : Amount x is no number;"
                                  "Err 42 (record 3) : Group without an order");
}

TEST(MaxAmountErrors, WithoutTracingRepeatTheLastRemittance)
{
    const Analysis analysis = Analyse(Files(Remittance("2000", "USD") + Remittance("1500"), "",
                                            Error("1", "11", "a") + Error("2", "11", "b")));
    EXPECT_EQ(analysis.errorText, "1500 EUR;1500 EUR");
}

TEST(MaxAmountErrors, WithoutTracingAndRemittanceListNothing)
{
    EXPECT_EQ(Analyse(Files("", "", Error("1", "11", "a") + Error("2", "11", "b"))).errorText,
              "before");
}

TEST(MaxAmountErrors, AreCutAt255Characters)
{
    std::string errors;
    std::string list;
    for (int i = 0; i < 300; ++i)
    {
        errors += Error("1", "11", "some error");
        list += std::string(i == 0 ? "" : ";") + "Err 11 (record 1) : some error";
    }
    EXPECT_EQ(Analyse(Files("", "", errors), true).errorText, list.substr(0, 255));
}

TEST(MaxAmountErrors, RowWithoutPositionEndsTheList)
{
    const Analysis analysis = Analyse(
        Files("", "",
              Error("1", "11", "a") + Row({"", "1", "2", "11", "b"}) + Error("3", "11", "c")),
        true);
    EXPECT_EQ(analysis.errorText, "Err 11 (record 1) : a");
}

TEST(MaxAmountErrors, ShortRowIsListedWithEmptyTexts)
{
    EXPECT_EQ(Analyse(Files("", "", Row({"1", "1"})), true).errorText, "Err  (record ) : ");
}

// The other value of a trace handle that is none.
TEST(MaxAmountErrors, TraceHandleOfAllOnesIsNone)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "order");
    for (const auto& [extension, bytes] : Files(Remittance("1500"), "", Error("1", "11", "a")))
    {
        folder.Write("order.xml.veu" + extension, bytes);
    }
    amounts::FileTotals totals;
    char errorText[256] = "before";
    void* const allOnes = reinterpret_cast<void*>(~std::uintptr_t{0});
    amounts::ReadFileTotals({order.c_str(), nullptr, nullptr, allOnes}, totals, nullptr, errorText);
    EXPECT_STREQ(errorText, "1500 EUR");
}

// Wherever memory runs out once: the exception passes, or the loss is told, or nothing was lost.
TEST(MaxAmount, NoMemoryNeverMakesTheAmountsSmallerUnnoticed)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "order");
    const std::string longText(2000, 'x');
    const std::string orders = Row({longText, "1", "d", "c", "1000.00", "EUR"}) + Order("5.00");
    for (const auto& [extension, bytes] :
         Files(Remittance("1000.00") + Remittance("5.00"), orders, Error("1", "11", longText)))
    {
        folder.Write("order.xml.veu" + extension, bytes);
    }
    bool used = true;
    int failures = 0;
    testing::internal::CaptureStderr();
    for (unsigned long spared = 0; used; ++spared)
    {
        amounts::FileTotals totals;
        bool raised = false;
        {
            const testing_support::FailNextAllocation failure(spared);
            try
            {
                amounts::ReadFileTotals({order.c_str(), nullptr, nullptr, nullptr}, totals, nullptr,
                                        nullptr);
            }
            catch (const std::bad_alloc&)
            {
                raised = true;
            }
            used = failure.WasUsed();
        }
        failures += used ? 1 : 0;
        if (!raised && totals.complete)
        {
            EXPECT_DOUBLE_EQ(totals.totalAmount, 1005.0) << spared;
            EXPECT_DOUBLE_EQ(totals.maxOrderAmount, 1000.0) << spared;
            EXPECT_EQ(totals.orderCount, 2) << spared;
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GT(failures, 20);
}

TEST(MaxAmountTrace, ShowsRemittancesTotalsAndErrors)
{
    const std::string trace = Analyse(Files(Remittance("1500.60") + Remittance("20.00", "USD"),
                                            Order("1500.60"), Error("1", "11", "bad")),
                                      true)
                                  .trace;
    EXPECT_THAT(trace, HasSubstr("GET MAX AMOUNT AUTHORIZED"));
    EXPECT_THAT(trace, HasSubstr("Remise: 1500.60 EUR\nRemise: 20.00 USD\n"
                                 "Max. Order Amount:                 1501\n"
                                 "Total File Amount:                 1521\n"
                                 "Error: Err 11 (record 1) : bad\n"));
}

TEST(MaxAmount, MissingWorkFilesLeaveAmountsAtZeroAndSucceed)
{
    const Analysis analysis = Analyse({});
    EXPECT_EQ(analysis.result, 1);
    EXPECT_EQ(analysis.totals.totalAmount, 0.0);
    EXPECT_EQ(analysis.totals.maxOrderAmount, 0.0);
    EXPECT_EQ(analysis.totals.orderCount, 0);
    EXPECT_EQ(analysis.currencyCode, "XYZ");
    EXPECT_EQ(analysis.errorText, "before");
    EXPECT_THAT(
        analysis.told,
        testing::MatchesRegex("Fatal error : unable to open input file .*order.xml.veu.bp\n"
                              "Fatal error : unable to open input file .*order.xml.veu.cp\n"
                              "Fatal error : unable to open input file .*order.xml.veu.err\n"));
}

TEST(MaxAmount, OneMissingWorkFileLeavesTheOthersRead)
{
    WorkFiles files = Files(Remittance("1.00"), Order("1.00"));
    files.erase(".bp");
    const Analysis analysis = Analyse(files);
    EXPECT_EQ(analysis.result, 1);
    EXPECT_EQ(analysis.totals.totalAmount, 0.0);
    EXPECT_FALSE(analysis.totals.complete);
    EXPECT_DOUBLE_EQ(analysis.totals.maxOrderAmount, 1.0);
    EXPECT_THAT(analysis.left, ElementsAre());
}

TEST(MaxAmount, EmptyWorkFilesAreCompleteAndMissingErrorsNoLoss)
{
    WorkFiles files = Files("", "");
    files.erase(".err");
    const Analysis analysis = Analyse(files);
    EXPECT_EQ(analysis.result, 1);
    EXPECT_TRUE(analysis.totals.complete);
}

TEST(MaxAmount, MissingOrdersAreALoss)
{
    WorkFiles files = Files(Remittance("1.00"), Order("1.00"));
    files.erase(".cp");
    const Analysis analysis = Analyse(files);
    EXPECT_EQ(analysis.result, 1);
    EXPECT_DOUBLE_EQ(analysis.totals.totalAmount, 1.0);
    EXPECT_FALSE(analysis.totals.complete);
}

TEST(MaxAmount, FailedConversionLeavesAmountsZeroAndWorkFilesInPlace)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "order");
    for (const auto& [extension, bytes] : Files(Remittance("1.00"), Order("1.00")))
    {
        folder.Write("order.xml.veu" + extension, bytes);
    }
    const ComApartment apartment;
    Script script;
    script.success = 0;
    script.errorNumber = 121;
    const ScriptedEngine engine(script);
    amounts::FileTotals totals = {1.0, 2.0, 3};
    char currencyCode[4] = "XYZ";
    char errorText[256] = "before";
    EXPECT_EQ(amounts::GetMaxAmountFile({order.c_str(), "ISO20022", "pain.001", nullptr}, totals,
                                        currencyCode, errorText),
              0);
    EXPECT_STREQ(errorText, "engine text n\xB0"
                            "121 ");
    EXPECT_STREQ(currencyCode, "XYZ");
    EXPECT_EQ(totals.totalAmount, 0.0);
    EXPECT_EQ(totals.maxOrderAmount, 0.0);
    EXPECT_EQ(totals.orderCount, 0);
    for (const auto& [extension, bytes] : Files(Remittance("1.00"), Order("1.00")))
    {
        EXPECT_EQ(ReadWholeFile(order + ".veu" + extension), bytes);
    }
}

TEST(MaxAmount, TotalsOfWorkFilesThatLieThereLeaveThem)
{
    const TemporaryFolder folder;
    const std::string order = folder.Path("order.xml");
    folder.Write("order.xml.veu.bp", kRemittanceHeader + Remittance("8.00"));
    folder.Write("order.xml.veu.cp", kOrderHeader + Order("5.00") + Order("3.00"));
    folder.Write("order.xml.veu.err", kErrorHeader);
    amounts::FileTotals totals = {1.0, 2.0, 3};
    char currency[4] = "";

    amounts::ReadFileTotals({order.c_str(), nullptr, nullptr, nullptr}, totals, currency, nullptr);

    EXPECT_EQ(totals.totalAmount, 8.0);
    EXPECT_EQ(totals.maxOrderAmount, 5.0);
    EXPECT_EQ(totals.orderCount, 2);
    EXPECT_STREQ(currency, "EUR");
    EXPECT_TRUE(std::filesystem::exists(order + ".veu.bp"));
    EXPECT_TRUE(std::filesystem::exists(order + ".veu.cp"));
    EXPECT_TRUE(std::filesystem::exists(order + ".veu.err"));
}

TEST(MaxAmount, ErrorTextMayBeNull)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "order");
    const ComApartment apartment;
    Script script;
    script.onExecute = [&](const std::wstring&)
    {
        for (const auto& [extension, bytes] : Files(Remittance("1.00"), "", Error("1", "1", "e")))
        {
            folder.Write("order.xml.veu" + extension, bytes);
        }
    };
    const ScriptedEngine engine(script);
    amounts::FileTotals totals;
    EXPECT_EQ(amounts::GetMaxAmountFile({order.c_str(), "ISO20022", "pain.001", nullptr}, totals,
                                        nullptr, nullptr),
              1);
    EXPECT_DOUBLE_EQ(totals.totalAmount, 1.0);
}

} // namespace
