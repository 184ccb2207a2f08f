#include "amounts/format_conversion.h"

#include "port/kernel.h"
#include "support/trace.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace testing_support;
using ::testing::HasSubstr;

namespace
{

std::string MissingFormat()
{
    TSimpleString text;
    text.LoadStringA(287);
    return text.SafeGetString();
}

amounts::AmountSource Source(const char* fileName, const char* format1, const char* format2)
{
    return {fileName, format1, format2, nullptr};
}

TEST(FormatConversion, WithoutFirstFormatIsRefusedWithItsMessage)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt(Source("order.xml", "", "pain.001"), errorText), 0);
    EXPECT_EQ(errorText, MissingFormat());
    EXPECT_NE(MissingFormat(), "");
}

TEST(FormatConversion, WithoutSecondFormatIsRefusedWithItsMessage)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt(Source("order.xml", "ISO20022", ""), errorText), 0);
    EXPECT_EQ(errorText, MissingFormat());
}

TEST(FormatConversion, WithoutFileNameIsRefusedWithItsMessage)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt(Source("", "ISO20022", "pain.001"), errorText), 0);
    EXPECT_EQ(errorText, MissingFormat());
}

TEST(FormatConversion, NullTextsCountAsEmpty)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt(Source(nullptr, nullptr, nullptr), errorText), 0);
    EXPECT_EQ(errorText, MissingFormat());
}

TEST(FormatConversion, ErrorTextMayBeNull)
{
    EXPECT_EQ(amounts::ExecWorkFmt(Source("order.xml", "", ""), nullptr), 0);
    EXPECT_EQ(amounts::ExecWorkFmt(Source("order.xml", "ISO20022", "pain.001"), nullptr), 0);
}

TEST(FormatConversion, WithoutAnEngineFailsWithItsMessage)
{
    char errorText[256] = "before";
    EXPECT_EQ(amounts::ExecWorkFmt(Source("order.xml", "ISO20022", "pain.001"), errorText), 0);
    EXPECT_THAT(errorText, testing::StartsWith("Initialize CFFmtRun Error : "));
}

TEST(FileAmounts, OfAFailedConversionAreAllZero)
{
    amounts::FileTotals totals = {1.0, 2.0, 3};
    char currencyCode[4] = "XYZ";
    char errorText[256] = "before";
    EXPECT_EQ(amounts::GetMaxAmountFile(Source("order.xml", "", "pain.001"), totals, currencyCode,
                                        errorText),
              0);
    EXPECT_EQ(totals.totalAmount, 0.0);
    EXPECT_EQ(totals.maxOrderAmount, 0.0);
    EXPECT_EQ(totals.orderCount, 0);
    EXPECT_STREQ(currencyCode, "XYZ");
    EXPECT_EQ(errorText, MissingFormat());
}

TEST(FileAmounts, FailedConversionLeavesTheWorkFilesInPlace)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "<Document/>");
    for (const char* const extension : {".veu", ".veu.bp", ".veu.cp", ".veu.cp2", ".veu.err"})
    {
        folder.Write(std::string("order.xml") + extension, "work");
    }
    amounts::FileTotals totals;
    EXPECT_EQ(amounts::GetMaxAmountFile(Source(order.c_str(), "", ""), totals, nullptr, nullptr),
              0);
    for (const char* const extension : {".veu", ".veu.bp", ".veu.cp", ".veu.cp2", ".veu.err"})
    {
        EXPECT_EQ(ReadWholeFile(order + extension), "work");
    }
}

TEST(FileAmounts, AnalysisIsASectionOfTheTrace)
{
    const TemporaryFolder folder;
    void* const trace = TraceOpen(folder.Path("trace.txt").c_str());
    amounts::FileTotals totals;
    EXPECT_EQ(amounts::GetMaxAmountFile({"order.xml", "", "", trace}, totals, nullptr, nullptr), 0);
    TraceClose(trace);
    EXPECT_THAT(ReadWholeFile(folder.Path("trace.txt")), HasSubstr("GET MAX AMOUNT AUTHORIZED"));
}

} // namespace
