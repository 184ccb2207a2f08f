// Checks whose amounts come from the order file: what is decided, told and left behind.

#include "port/files.h"
#include "tests/engine/corpus_table.h"
#include "tests/engine/work_files.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ostream>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

// 2^63 - 1 units of 10^-7, the end of the analysis's range.
constexpr double kLargestAmount = 922'337'203'685.4775807;

constexpr const char* kAccepted = "Élodie Lefèvre"; // up to 50 000.00
constexpr const char* kInOpposition = "Hélène Garçon";
constexpr const char* kUnknownSigner = "Paul Martin";

class FileCheck : public SampleBankTest
{
protected:
    /// A copy of a file of the corpus, alone in a folder.
    std::string Order(const std::string& name) const
    {
        const std::string path = m_orders.Path(name);
        fs::copy_file(fs::path(SIGNUTILS_CORPUS) / name, path,
                      fs::copy_options::overwrite_existing);
        return path;
    }

    /// A pain.001 of two orders of 100.00 and 250.50 EUR, cut before the second.
    std::string TruncatedOrder() const
    {
        const std::string whole =
            ReadWholeFile((fs::path(SIGNUTILS_CORPUS) / "pain001_v03.xml").string());
        const std::size_t second = whole.rfind("<CdtTrfTxInf>");
        EXPECT_NE(second, std::string::npos);
        return m_orders.Write("truncated.xml", whole.substr(0, second));
    }

    Answer Check(const std::string& file, const std::string& format, const std::string& signers,
                 const std::vector<std::string>& more = {"--json"}) const
    {
        auto arguments = CheckOfFile(file, format, signers);
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunSigncheck(arguments);
    }

    std::vector<std::string> OrdersFolder() const { return engine_tests::Names(m_orders.Path()); }

    TemporaryFolder m_orders;
};

struct FormatCase
{
    const char* name;
    const char* file;
    const char* format;
    double total;
    double largest;
    int orders;
    const char* currency;
};

void PrintTo(const FormatCase& each, std::ostream* stream)
{
    *stream << each.name;
}

const FormatCase kFormatCases[] = {
    {"Transfers", "pain001_v09.xml", "ISO20022/pain.001", 350.50, 250.50, 2, "EUR"},
    {"DirectDebits", "pain008_v08.xml", "ISO20022/pain.008", 75.00, 45.10, 2, "EUR"},
    {"DomesticRecords", "cfonb160_transfers.txt", "CFONB/160", 350.50, 250.50, 2, "EUR"},
    {"InternationalRecords", "cfonb320_one_currency.txt", "CFONB/320", 1050.00, 1000.00, 2, "USD"},
    {"SwiftMessages", "mt101_blocks.txt", "SWIFT/MT101", 1012.50, 1000.00, 2, "EUR"},
};

class FileCheckOfFormat : public FileCheck, public testing::WithParamInterface<FormatCase>
{
protected:
    void ExpectAmounts(const std::string& option)
    {
        const FormatCase& expected = GetParam();
        const Answer answer = Check(Order(expected.file), option, kAccepted);

        EXPECT_EQ(answer.status, 0) << answer.errors;
        EXPECT_EQ(answer.errors, "");
        const auto json = answer.Json();
        EXPECT_EQ(json["outcome"], "success");
        EXPECT_EQ(json["amounts"], "file");
        EXPECT_EQ(json["format"], expected.format);
        EXPECT_EQ(json["total"], expected.total);
        EXPECT_EQ(json["largestOrder"], expected.largest);
        EXPECT_EQ(json["orders"], expected.orders);
        EXPECT_EQ(json["currency"], expected.currency);
        EXPECT_TRUE(json["amountsProblem"].is_null());
        EXPECT_TRUE(json["fileErrors"].empty());
        EXPECT_THAT(OrdersFolder(), ElementsAre(expected.file));
    }
};

TEST_P(FileCheckOfFormat, GivesTheAmountsOfTheFileInTheFormatThatWasNamed)
{
    ExpectAmounts(GetParam().format);
}

TEST_P(FileCheckOfFormat, GivesTheAmountsOfTheFileInTheFormatThatItShows)
{
    ExpectAmounts("auto");
}

INSTANTIATE_TEST_SUITE_P(Formats, FileCheckOfFormat, testing::ValuesIn(kFormatCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FileCheck, EveryFileOfTheCorpusIsJudgedOnItsAmountsAndToldItsErrors)
{
    for (const CorpusCase& expected : kCorpus)
    {
        SCOPED_TRACE(expected.file);
        const std::string order = Order(expected.file);
        const Answer answer = Check(order, "auto", "Siobhan OBrien");

        const auto json = answer.Json();
        EXPECT_EQ(json["amounts"], "file");
        const double total = std::strtod(expected.total, nullptr);
        const double largest = std::strtod(expected.largest, nullptr);
        if (total < kLargestAmount)
        {
            EXPECT_DOUBLE_EQ(json["total"].get<double>(), total);
        }
        else
        {
            // Each remittance and currency ends there; together they may be more.
            EXPECT_GE(json["total"].get<double>(), kLargestAmount);
            EXPECT_LE(json["total"].get<double>(), total);
        }
        EXPECT_DOUBLE_EQ(json["largestOrder"].get<double>(), std::min(largest, kLargestAmount));
        EXPECT_EQ(answer.errors.find("END of what can be judged") != std::string::npos,
                  total > kLargestAmount)
            << answer.errors;
        EXPECT_EQ(json["orders"], expected.orders);
        const bool hasErrors = *expected.errors != '\0';
        EXPECT_EQ(json["fileErrors"].empty(), !hasErrors);
        EXPECT_EQ(answer.errors.find("ERRORS") != std::string::npos, hasErrors) << answer.errors;
        EXPECT_THAT(OrdersFolder(), ElementsAre(expected.file));
        fs::remove(order);
    }
}

TEST_F(FileCheck, TheTotalOfTheFileIsHeldAgainstTheLimit)
{
    const std::string order = std::string(SIGNUTILS_SOURCES) + "/examples/orders/"
                                                               "03-dupont-workshop.xml";
    const std::string copy = m_orders.Path("order.xml");
    fs::copy_file(order, copy);

    const Answer answer = Check(copy, "auto", kAccepted);

    EXPECT_EQ(answer.status, 1);
    const auto json = answer.Json();
    EXPECT_EQ(json["reasonCode"], "AM02");
    EXPECT_EQ(json["total"], 64200.0);
    EXPECT_EQ(json["largestOrder"], 20000.0);
    EXPECT_THAT(OrdersFolder(), ElementsAre("order.xml"));
}

TEST_F(FileCheck, WordsShowTheAmountsAndWhereTheyComeFrom)
{
    const Answer answer = Check(Order("pain001_v03.xml"), "auto", kAccepted, {});

    EXPECT_THAT(answer.output,
                HasSubstr("Amounts   total 350.50 EUR, largest order 250.50, 2 orders, worked out "
                          "from the\n          file (ISO20022/pain.001)."));
}

TEST_F(FileCheck, WordsShowGivenAmountsToo)
{
    EXPECT_THAT(RunSigncheck(CheckOf(kAccepted)).output,
                HasSubstr("Amounts   total 900.00 EUR, largest order 900.00, as given."));
}

TEST_F(FileCheck, AStatusReportSaysHowManyOrdersAndHowMuch)
{
    const Answer answer =
        Check(Order("pain001_v03.xml"), "auto", kInOpposition,
              {"--psr-service", "STATUS", "--party", "QZBKFRPP", "--order-id", "A001",
               "--message-name", "pain.001.001.03", "--message-id", "RPT-1", "--json"});

    EXPECT_EQ(answer.status, 1) << answer.errors;
    EXPECT_THAT(answer.Json()["report"].get<std::string>(),
                AllOf(HasSubstr("<OrgnlNbOfTxs>2</OrgnlNbOfTxs>"),
                      HasSubstr("<OrgnlCtrlSum>350.50</OrgnlCtrlSum>")));
}

TEST_F(FileCheck, TheTraceShowsTheAnalysis)
{
    Check(Order("pain001_v03.xml"), "auto", kAccepted, {"--trace", m_folder.Path("trace.txt")});

    EXPECT_THAT(ReadWholeFile(m_folder.Path("trace.txt")),
                AllOf(HasSubstr("GET MAX AMOUNT AUTHORIZED"), HasSubstr("Remise: 350.50 EUR")));
}

struct UnknownCase
{
    const char* name;
    const char* signers;
    const char* outcome;
    const char* decided;
    int status;
};

void PrintTo(const UnknownCase& each, std::ostream* stream)
{
    *stream << each.name;
}

const UnknownCase kUnknownCases[] = {
    {"AcceptanceIsNone", kAccepted, "success", "ACCEPTED ON UNKNOWN AMOUNTS", 4},
    {"RefusalStays", kInOpposition, "refused", "REFUSED", 1},
    {"NoRuleStays", kUnknownSigner, "no-rule", "NO RULE", 2},
};

class UnknownAmounts : public FileCheck, public testing::WithParamInterface<UnknownCase>
{
};

TEST_P(UnknownAmounts, AreToldLoudlyAndTheRulesAreJudgedAllTheSame)
{
    const UnknownCase& expected = GetParam();
    const std::string order = TruncatedOrder();
    const Answer answer = Check(order, "auto", expected.signers);

    EXPECT_EQ(answer.status, expected.status);
    EXPECT_THAT(answer.errors, AllOf(StartsWith("signcheck: WARNING: "),
                                     HasSubstr("the verdict rests on UNKNOWN amounts"),
                                     HasSubstr("the file is cut off")));
    const auto json = answer.Json();
    EXPECT_EQ(json["outcome"], expected.outcome);
    EXPECT_EQ(json["amounts"], "unknown");
    EXPECT_EQ(json["format"], "ISO20022/pain.001");
    EXPECT_THAT(json["amountsProblem"].get<std::string>(),
                AllOf(HasSubstr(order), HasSubstr("line "), HasSubstr("column ")));
    for (const char* const field : {"total", "largestOrder", "orders", "currency"})
    {
        EXPECT_TRUE(json[field].is_null()) << field;
    }
    EXPECT_EQ(json["rows"]["written"], 1);
    EXPECT_EQ(json["warnings"].size(), 1U);
    EXPECT_THAT(OrdersFolder(), ElementsAre("truncated.xml"));
}

TEST_P(UnknownAmounts, StandInTheWords)
{
    const Answer answer = Check(TruncatedOrder(), "auto", GetParam().signers, {});

    EXPECT_EQ(answer.status, GetParam().status);
    EXPECT_THAT(answer.output, AllOf(HasSubstr(std::string("Decided   ") + GetParam().decided),
                                     HasSubstr("Amounts   UNKNOWN: ")));
}

INSTANTIATE_TEST_SUITE_P(Verdicts, UnknownAmounts, testing::ValuesIn(kUnknownCases),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_F(FileCheck, AFileOfAnotherFormatThanNamedHasUnknownAmounts)
{
    const Answer answer = Check(Order("mt101_blocks.txt"), "CFONB/160", kAccepted);

    EXPECT_EQ(answer.status, 4);
    EXPECT_THAT(answer.Json()["amountsProblem"].get<std::string>(),
                HasSubstr("does not begin with a header record 03"));
    EXPECT_THAT(OrdersFolder(), ElementsAre("mt101_blocks.txt"));
}

TEST_F(FileCheck, AFolderThatCannotBeWrittenIsNamed)
{
    // Root writes into any folder but those that the kernel keeps.
    const std::string order = Order("pain001_v03.xml");
    fs::permissions(m_orders.Path(), fs::perms::owner_read | fs::perms::owner_exec);
    const bool isWritable = port::IsWritableFolder(m_orders.Path().c_str());
    const std::string file = isWritable ? "/proc/version" : order;
    const std::string folder = isWritable ? "/proc" : m_orders.Path();
    const Answer answer = Check(file, isWritable ? "CFONB/160" : "auto", kAccepted);
    fs::permissions(m_orders.Path(), fs::perms::owner_all);

    EXPECT_EQ(answer.status, 4);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("UNKNOWN amounts"), HasSubstr(folder), HasSubstr("in folder")));
    EXPECT_THAT(OrdersFolder(), ElementsAre("pain001_v03.xml"));
}

TEST_F(FileCheck, AConversionThatFailsAtItsLastFilesLeavesNone)
{
    const std::string order = Order("pain001_v03.xml");
    // In the place of a work file, which can therefore not be given its name.
    fs::create_directory(order + ".veu.err");
    const Answer answer = Check(order, "auto", kAccepted);

    EXPECT_EQ(answer.status, 4);
    EXPECT_THAT(
        answer.errors,
        HasSubstr("Cannot rename work file pain001_v03.xml.veu.err in folder " + m_orders.Path()));
    EXPECT_THAT(OrdersFolder(), ElementsAre("pain001_v03.xml", "pain001_v03.xml.veu.err"));
}

TEST_F(FileCheck, ErrorsOfTheOrderFileAreToldAndWhereToReadThemAll)
{
    const std::string order = Order("pain001_wrong_sum.xml");
    const Answer answer = Check(order, "auto", kAccepted);

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("WARNING: the order file has ERRORS"), HasSubstr("Err 2 (record "),
                      HasSubstr("signcheck amounts '" + order +
                                "' --format ISO20022/pain.001 shows every one.")));
    const auto json = answer.Json();
    EXPECT_EQ(json["amounts"], "file");
    EXPECT_EQ(json["total"], 3.0);
    ASSERT_EQ(json["fileErrors"].size(), 1U);
    EXPECT_THAT(json["fileErrors"][0].get<std::string>(), StartsWith("Err 2 (record "));
    EXPECT_THAT(OrdersFolder(), ElementsAre("pain001_wrong_sum.xml"));
}

TEST_F(FileCheck, AmountsThatCannotBeReadAreToldWithATraceToo)
{
    const std::string order = Order("pain001_bad_amounts.xml");
    const Answer untraced = Check(order, "auto", kAccepted);
    const Answer traced =
        Check(order, "auto", kAccepted, {"--trace", m_folder.Path("trace.txt"), "--json"});

    const auto errors = untraced.Json()["fileErrors"];
    EXPECT_EQ(errors, traced.Json()["fileErrors"]);
    EXPECT_GE(errors.size(), 2U);
    for (const auto& error : errors)
    {
        EXPECT_THAT(error.get<std::string>(), StartsWith("Err 1"));
    }
    EXPECT_THAT(untraced.errors, AllOf(HasSubstr("ERRORS"), HasSubstr("Err 11 (record 1.1)"),
                                       HasSubstr("END of what can be judged")));
}

TEST_F(FileCheck, ErrorsStandInTheWords)
{
    EXPECT_THAT(Check(Order("pain001_wrong_sum.xml"), "auto", kAccepted, {}).output,
                HasSubstr("which has ERRORS."));
}

TEST_F(FileCheck, OfARefusalLeavesNoWorkFile)
{
    EXPECT_EQ(Check(Order("pain001_v03.xml"), "auto", kInOpposition).status, 1);
    EXPECT_THAT(OrdersFolder(), ElementsAre("pain001_v03.xml"));
}

TEST_F(FileCheck, OfAFileWhosePathHoldsLettersBeyondAsciiIsDone)
{
    const std::string path = m_orders.Path("virement été.xml");
    fs::copy_file(fs::path(SIGNUTILS_CORPUS) / "pain001_v03.xml", Utf8Path(path));
    const Answer answer = Check(path, "auto", kAccepted);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["total"], 350.50);
    EXPECT_THAT(OrdersFolder(), ElementsAre("virement été.xml"));
}

} // namespace
} // namespace testing_support
