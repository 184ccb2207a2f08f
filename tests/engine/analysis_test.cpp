#include "amounts/format_conversion.h"
#include "port/com.h"
#include "port/files.h"
#include "support/trace.h"
#include "tests/engine/corpus_table.h"
#include "tests/engine/work_files.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>

// The amount analysis over real order files with the real engine, as a session runs it.

using testing::ElementsAre;
using testing::HasSubstr;
using testing_support::TemporaryFolder;

namespace
{

class Apartment
{
public:
    Apartment() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~Apartment() { CoUninitialize(); }
    Apartment(const Apartment&) = delete;
    Apartment& operator=(const Apartment&) = delete;
};

struct AnalysisResult
{
    int worked = -1;
    amounts::FileTotals totals;
    char currencyCode[4] = "";
    char errorText[256] = "";
};

AnalysisResult Analyse(const std::string& order, const char* format1, const char* format2,
                       void* trace = nullptr)
{
    const Apartment apartment;
    AnalysisResult result;
    result.worked = amounts::GetMaxAmountFile({order.c_str(), format1, format2, trace},
                                              result.totals, result.currencyCode, result.errorText);
    return result;
}

// What the analysis makes of an amount: one row above the largest 64-bit number of amount units
// counts as that number.
double Analysed(const char* amount)
{
    constexpr double kLargest = 922337203685.477580;
    return std::min(std::strtod(amount, nullptr), kLargest);
}

// The error numbers of a traced error list.
std::string Numbers(const std::string& errorText)
{
    std::string numbers;
    const std::string mark = "Err ";
    for (std::size_t at = errorText.find(mark); at != std::string::npos;
         at = errorText.find(";" + mark, at))
    {
        at += errorText[at] == ';' ? 1U : 0U;
        const std::size_t start = at + mark.size();
        numbers += (numbers.empty() ? "" : ",") +
                   errorText.substr(start, errorText.find(' ', start) - start);
        at = start;
    }
    return numbers;
}

class AnalysedCorpus : public testing::TestWithParam<CorpusCase>
{
};

} // namespace

TEST_P(AnalysedCorpus, GivesItsTotalsAndLeavesNoWorkFile)
{
    const CorpusCase& expected = GetParam();
    const TemporaryFolder folder;
    const TemporaryFolder traceFolder;
    const std::string order = folder.Path(expected.file);
    std::filesystem::copy_file(std::filesystem::path(SIGNUTILS_CORPUS) / expected.file, order);
    void* const trace = TraceOpen(traceFolder.Path("trace.txt").c_str());

    const AnalysisResult result = Analyse(order, expected.format1, expected.format2, trace);

    TraceClose(trace);
    ASSERT_EQ(result.worked, 1) << result.errorText;
    EXPECT_DOUBLE_EQ(result.totals.totalAmount, Analysed(expected.total));
    EXPECT_DOUBLE_EQ(result.totals.maxOrderAmount, Analysed(expected.largest));
    EXPECT_EQ(result.totals.orderCount, expected.orders);
    // A list that was cut still begins with the expected numbers.
    EXPECT_EQ(std::string(expected.errors).substr(0, Numbers(result.errorText).size()),
              Numbers(result.errorText));
    EXPECT_EQ(*result.errorText == '\0', *expected.errors == '\0');
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre(expected.file));
}

INSTANTIATE_TEST_SUITE_P(Files, AnalysedCorpus, testing::ValuesIn(kCorpus),
                         [](const testing::TestParamInfo<CorpusCase>& test)
                         {
                             std::string name = test.param.file;
                             name.erase(name.rfind('.'));
                             return name;
                         });

TEST(Analysis, FileThatCannotBeConvertedNamesLineAndNumber)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "<Document>\n</Wrong>");
    const AnalysisResult result = Analyse(order, "ISO20022", "pain.001");
    EXPECT_EQ(result.worked, 0);
    EXPECT_THAT(std::string(result.errorText), HasSubstr("line 2"));
    EXPECT_THAT(std::string(result.errorText), testing::EndsWith(" n\xB0"
                                                                 "121 "));
    EXPECT_THAT(engine_tests::Names(folder.Path()), ElementsAre("order.xml"));
}

// A folder in which nobody may create files, not even who may write anywhere.
TEST(Analysis, OrderInAFolderThatCannotBeWrittenNamesTheFolder)
{
    const std::string order = "/proc/self/status";
    if (!std::filesystem::exists(order))
    {
        GTEST_SKIP() << "this system has no such folder";
    }
    const AnalysisResult result = Analyse(order, "SWIFT", "MT101");
    EXPECT_EQ(result.worked, 0);
    EXPECT_THAT(std::string(result.errorText), HasSubstr("in folder /proc/self/"));
    EXPECT_THAT(std::string(result.errorText), HasSubstr("must be writable"));
}

TEST(Analysis, UnknownFormatNamesTheKnownOnes)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "<Document/>");
    const AnalysisResult result = Analyse(order, "EDIFACT", "PAYMUL");
    EXPECT_EQ(result.worked, 0);
    EXPECT_THAT(std::string(result.errorText), HasSubstr("EDIFACT/PAYMUL"));
}

TEST(Analysis, PathWithBlanksAndAccentsIsFound)
{
    const TemporaryFolder folder;
    const std::string order = folder.Write("order.xml", "x") + " caf\xE9.txt";
    const std::string corpus =
        testing_support::ReadWholeFile(std::string(SIGNUTILS_CORPUS) + "/mt101_bare.txt");
    // Written through the engine's own view of paths: Windows-1252.
    port::File file;
    ASSERT_TRUE(file.Open(order.c_str(), port::OpenMode::CreateNew));
    ASSERT_TRUE(file.Write(corpus.data(), corpus.size()));
    file.Close();
    const AnalysisResult result = Analyse(order, "SWIFT", "MT101");
    EXPECT_EQ(result.worked, 1) << result.errorText;
    EXPECT_GT(result.totals.orderCount, 0);
}
