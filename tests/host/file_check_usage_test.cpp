// How a check is told to work the amounts out of the order file.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

class FormatOption : public SampleBankTest
{
protected:
    // Refused: a message, nothing recorded.
    std::string RefusalOf(const std::vector<std::string>& arguments, int status = 64)
    {
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, status) << answer.errors;
        EXPECT_EQ(RecordsWritten(), 0U);
        return answer.errors;
    }

    std::vector<std::string> Of(const std::string& format) const
    {
        return CheckOfFile(m_transfer, format, "Élodie Lefèvre");
    }

    std::vector<std::string> OfFileAnd(const std::vector<std::string>& more) const
    {
        auto arguments = Of("auto");
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    }

    const std::string m_transfer = m_folder.Write(
        "transfer.xml", ReadWholeFile(std::string(SIGNUTILS_CORPUS) + "/pain001_v03.xml"));
};

TEST_F(FormatOption, ExcludesGivenAmounts)
{
    EXPECT_THAT(RefusalOf(OfFileAnd({"--total", "1.00"})),
                AllOf(HasSubstr("option --format has the amounts worked out from the order file, "
                                "but they are given as well (option --total)."),
                      HasSubstr("Leave --total, --largest and --currency out, or leave --format "
                                "out")));
    EXPECT_THAT(RefusalOf(OfFileAnd({"--largest", "1.00", "--currency", "EUR"})),
                HasSubstr("(option --largest, option --currency)"));
}

TEST_F(FormatOption, GoesBeforeAmountsOfTheSettingsFile)
{
    const std::string file = m_folder.Write("bank.toml", "[check]\ntotal = \"1.00\"\n");
    const Answer answer = RunSigncheck(OfFileAnd({"--config", file}));
    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("worked out from"));
}

TEST_F(FormatOption, ExcludesAmountsOfTheSameSettingsFile)
{
    const std::string file =
        m_folder.Write("bank.toml", "[check]\nformat = \"auto\"\ntotal = \"1.00\"\n");
    EXPECT_THAT(RefusalOf(Without(OfFileAnd({"--config", file}), "--format")),
                HasSubstr("(" + file + ", line 3, field check.total)"));
}

TEST_F(FormatOption, OrAmountsMustBeThere)
{
    auto arguments = Of("auto");
    EXPECT_THAT(RefusalOf(Without(arguments, "--format")),
                AllOf(HasSubstr("the amounts are missing"), HasSubstr("--format auto"),
                      HasSubstr("--total 1500.00 --largest 800.00 --currency EUR")));
}

TEST_F(FormatOption, ThatIsUnknownIsRefusedWithTheKnownOnes)
{
    EXPECT_THAT(RefusalOf(Of("pain.001")),
                AllOf(HasSubstr("option --format: 'pain.001' is no known order format"),
                      HasSubstr("Did you mean ISO20022/pain.001?"), HasSubstr("SWIFT/MT101")));
}

TEST_F(FormatOption, CanComeFromTheSettingsFile)
{
    const std::string file = m_folder.Write("bank.toml", "[check]\nformat = \"auto\"\n");
    auto arguments = Without(Of("auto"), "--format");
    arguments.insert(arguments.end(), {"--config", file, "--json"});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["format"], "ISO20022/pain.001");
}

TEST_F(FormatOption, RefusalsOfTheSettingsFileNameTheirField)
{
    const std::string file = m_folder.Write("bank.toml", "[check]\nformat = \"pain.001\"\n");
    auto arguments = Without(Of("auto"), "--format");
    arguments.insert(arguments.end(), {"--config", file});

    EXPECT_THAT(RefusalOf(arguments), HasSubstr(file + ", line 2, field check.format: 'pain.001'"));
}

TEST_F(FormatOption, AutoOnAFileThatShowsNoFormatDoesNotRunTheCheck)
{
    const std::string file = m_folder.Write("garbage.txt", "hello\n");
    auto arguments = CheckOfFile(file, "auto", "Élodie Lefèvre");
    EXPECT_THAT(RefusalOf(arguments, 3),
                AllOf(HasSubstr("order file '" + file + "' shows no order format"),
                      HasSubstr("--format ISO20022/pain.001")));

    arguments.emplace_back("--json");
    const auto json = RunSigncheck(arguments).Json();
    EXPECT_EQ(json["outcome"], "not-run");
    EXPECT_TRUE(json["verdict"].is_null());
    EXPECT_TRUE(json["format"].is_null());
    EXPECT_EQ(json["amounts"], "unknown");
    EXPECT_THAT(json["problem"].get<std::string>(), HasSubstr("shows no order format"));
}

TEST_F(FormatOption, GivenAmountsLeaveTheFileUnread)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments[1] = m_folder.Write("garbage.txt", "hello\n");
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.Json()["amounts"], "given");
    EXPECT_TRUE(answer.Json()["format"].is_null());
    EXPECT_TRUE(answer.Json()["orders"].is_null());
}

TEST_F(FormatOption, IsInTheHelp)
{
    EXPECT_THAT(RunSigncheck({"check", "--help"}).output, HasSubstr("--format F"));
}

} // namespace
} // namespace testing_support
