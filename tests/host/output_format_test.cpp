// --output-format, --format and --json over all commands.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

using OutputFormat = SampleBankTest;

TEST_F(OutputFormat, OfACheckIsAskedForBesideTheFormatOfItsOrderFile)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--output-format", "ndjson"});
    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(std::count(answer.output.begin(), answer.output.end(), '\n'), 1);
    EXPECT_EQ(answer.Json()["verdict"], 1);
}

TEST_F(OutputFormat, FormatOfAnOrderFileStaysWhatItWas)
{
    auto arguments = Without(CheckOf("Élodie Lefèvre"), "--total");
    arguments = Without(Without(arguments, "--largest"), "--currency");
    arguments.insert(arguments.end(), {"--format", "csv"});
    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("ISO20022/pain.001"));
}

TEST_F(OutputFormat, CommandsWithOneAnswerHaveNoCsv)
{
    const Answer answer = RunSigncheck({"map", "C-1001", "--db", Db(), "--format", "csv"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors,
                AllOf(HasSubstr("option --format: 'csv' is for commands that list rows, which "
                                "signcheck map does not"),
                      HasSubstr("table, json, ndjson.")));
}

// A habit must not keep `config` from telling where it was set.
TEST_F(OutputFormat, OfAListInTheSettingsLeavesOtherCommandsTheirTable)
{
    const std::string file = m_folder.Write("set.toml", "output-format = \"csv\"\n");

    const Answer map = RunSigncheck({"map", "C-1001", "--db", Db(), "--config", file});
    EXPECT_EQ(map.status, 0) << map.errors;
    EXPECT_EQ(map.output, RunSigncheck({"map", "C-1001", "--db", Db()}).output);

    const Answer config = RunSigncheck({"config", "--config", file});
    EXPECT_EQ(config.status, 0) << config.errors;
    EXPECT_THAT(config.output, HasSubstr("csv"));
}

TEST_F(OutputFormat, AnUnknownOneListsTheChoices)
{
    const Answer answer = RunSigncheck({"history", "--db", Db(), "--format", "xml"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --format: 'xml' is no output format. Give one of: "
                                         "table, json, ndjson, csv."));
}

TEST_F(OutputFormat, ThatContradictsJsonIsRefused)
{
    const Answer answer = RunSigncheck({"history", "--db", Db(), "--format", "csv", "--json"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("contradicts --json, which is short for --format json"));
    EXPECT_EQ(RunSigncheck({"history", "--db", Db(), "--format", "json", "--json"}).status, 0);
}

TEST_F(OutputFormat, OfTheCommandLineGoesBeforeTheSettingsFile)
{
    const std::string lines = m_folder.Write("a.toml", "output-format = \"ndjson\"\n");
    const std::string json = m_folder.Write("b.toml", "json = true\n");

    EXPECT_EQ(RunSigncheck({"history", "--db", Db(), "--config", lines}).output, "");
    EXPECT_THAT(RunSigncheck({"history", "--db", Db(), "--config", lines, "--json"}).output,
                HasSubstr("\"more\": false"));
    EXPECT_EQ(RunSigncheck({"history", "--db", Db(), "--config", json, "--format", "table"}).output,
              "No history row fits.\n");
}

TEST_F(OutputFormat, AFormatForOrderFilesInTheSettingsIsNoneOfAListing)
{
    const std::string file = m_folder.Write("set.toml", "format = \"auto\"\n");

    const Answer answer = RunSigncheck({"history", "--db", Db(), "--config", file});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.output, "No history row fits.\n");
}

TEST_F(OutputFormat, RefusalsAreJsonWhereItWasAskedFor)
{
    for (const std::string format : {"--format=json", "--format=ndjson", "--output-format=ndjson"})
    {
        const Answer answer = RunSigncheck({"history", format, "--limit", "x", "--db", Db()});
        EXPECT_EQ(answer.status, 64);
        EXPECT_EQ(answer.Json()["status"], 64) << format;
    }
    EXPECT_EQ(RunSigncheck({"history", "--nonsense", "--format", "ndjson"}).Json()["status"], 64);
}

TEST_F(OutputFormat, HelpNamesTheChoices)
{
    const Answer answer = RunSigncheck({"history", "--help"});

    EXPECT_THAT(answer.output, AllOf(HasSubstr("--format"), HasSubstr("--output-format"),
                                     HasSubstr("ndjson"), HasSubstr("csv")));
    EXPECT_THAT(RunSigncheck({"map", "--help"}).output, Not(HasSubstr("csv")));
}

} // namespace
} // namespace testing_support
