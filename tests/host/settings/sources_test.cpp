// Which of several sources a command heeds: option, environment, the user's file, the machine's.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

/// The machine's file lies in the folder of the machine's configuration, which a test may name.
class SettingsSources : public SampleBankTest
{
protected:
    SettingsSources() : m_machine("SIGNUTILS_CONFIG", m_folder.Path().c_str()) {}

    void WriteMachineSettings(const std::string& toml) const
    {
        m_folder.Write("signcheck.toml", toml);
    }

    std::string Limited(const std::string& value) const
    {
        return "db = '" + Db() + "'\n[history]\nlimit = " + value + "\n";
    }

    /// The row limit that history took, told by its refusal of each of those used here.
    std::string OriginOfLimit(const std::vector<std::string>& more = {}) const
    {
        std::vector<std::string> arguments = {"history"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const Answer answer = RunSigncheck(arguments);
        EXPECT_EQ(answer.status, 64) << answer.errors;
        return answer.errors;
    }

    ScopedEnvironment m_machine;
};

TEST_F(SettingsSources, TheMachinesFileGivesWhatNothingElseGives)
{
    WriteMachineSettings(Limited("0"));

    EXPECT_THAT(OriginOfLimit(), HasSubstr("signcheck.toml, line 3, field history.limit: '0'"));
}

TEST_F(SettingsSources, TheUsersFileGoesBeforeTheMachines)
{
    WriteMachineSettings(Limited("0"));
    const std::string user = WriteUserSettings("limit = -1\n");

    EXPECT_THAT(OriginOfLimit(), HasSubstr("config.toml, line 1, field limit: '-1'"));
}

TEST_F(SettingsSources, TheEnvironmentGoesBeforeTheUsersFile)
{
    WriteUserSettings(Limited("0"));
    const ScopedEnvironment limit("SIGNCHECK_LIMIT", "none");

    EXPECT_THAT(OriginOfLimit(), HasSubstr("SIGNCHECK_LIMIT: 'none'"));
}

TEST_F(SettingsSources, AnOptionGoesBeforeTheEnvironment)
{
    WriteUserSettings(Limited("0"));
    const ScopedEnvironment limit("SIGNCHECK_LIMIT", "none");

    EXPECT_THAT(OriginOfLimit({"--limit", "x"}), HasSubstr("option --limit: 'x'"));
    EXPECT_EQ(RunSigncheck({"history", "--limit", "1"}).status, 0);
}

TEST_F(SettingsSources, ANamedFileTakesThePlaceOfTheUsersAndLeavesTheMachines)
{
    WriteMachineSettings(Limited("0"));
    WriteUserSettings("limit = -1\n");
    const std::string named = m_folder.Write("named.toml", "partner = \"DUPONTSA\"\n");

    EXPECT_THAT(OriginOfLimit({"--config", named}), HasSubstr("signcheck.toml, line 3"));
}

TEST_F(SettingsSources, TheEnvironmentNamesAFileToo)
{
    WriteUserSettings("limit = -1\n");
    const std::string named = m_folder.Write("named.toml", Limited("0"));
    const ScopedEnvironment config("SIGNCHECK_CONFIG", named.c_str());

    EXPECT_THAT(OriginOfLimit(), HasSubstr("named.toml, line 3"));
}

TEST_F(SettingsSources, AFileThatIsNamedByTheEnvironmentMustBeThere)
{
    const ScopedEnvironment config("SIGNCHECK_CONFIG", m_folder.Path("none.toml").c_str());

    const Answer answer = RunSigncheck({"history", "--db", Db()});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("SIGNCHECK_CONFIG: there is no file"));
}

TEST_F(SettingsSources, AMistakeInTheUsersFileIsNamedWithItsPlace)
{
    WriteUserSettings("\nlimt = 5\n");

    const Answer answer = RunSigncheck({"history", "--db", Db()});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("config.toml, line 2, field limt: unknown field"),
                                     HasSubstr("Did you mean limit?")));
}

TEST_F(SettingsSources, AMistakeInTheMachinesFileIsNamedWithItsPlace)
{
    WriteMachineSettings("limit = \"five\"\n");

    const Answer answer = RunSigncheck({"history", "--db", Db()});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("signcheck.toml, line 1, field limit: expected a whole "
                                         "number, found text. Write limit = 9."));
}

TEST_F(SettingsSources, AmountsOfTheCommandLineGoBeforeAFormatOfAFile)
{
    WriteUserSettings("format = \"auto\"\n");

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, HasSubstr("as given."));
}

TEST_F(SettingsSources, AFormatOfTheCommandLineGoesBeforeAmountsOfAFile)
{
    WriteUserSettings("total = \"1.00\"\nlargest = \"1.00\"\ncurrency = \"EUR\"\n");

    const Answer answer = RunSigncheck(CheckOfFile(m_order, "auto", "Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 3) << "the order file shows no format";
    EXPECT_THAT(answer.errors, HasSubstr("order.xml"));
}

TEST_F(SettingsSources, AFormatAndAmountsOfOneSourceContradictEachOther)
{
    WriteUserSettings("total = \"1.00\"\nformat = \"auto\"\n");
    auto arguments = Without(CheckOf("Élodie Lefèvre"), "--total");
    arguments = Without(Without(arguments, "--largest"), "--currency");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("field format"), HasSubstr("field total")));
}

TEST_F(SettingsSources, JsonOfTheEnvironmentGoesBeforeTheOutputFormatOfAFile)
{
    WriteUserSettings("output-format = \"csv\"\n");
    const ScopedEnvironment json("SIGNCHECK_JSON", "true");

    EXPECT_EQ(RunSigncheck({"history", "--db", Db()}).Json()["more"], false);
}

TEST_F(SettingsSources, HelpIsGivenWhateverTheFilesHold)
{
    WriteUserSettings("nonsense\n");

    EXPECT_EQ(RunSigncheck({"history", "--help"}).status, 0);
}

} // namespace
} // namespace testing_support
