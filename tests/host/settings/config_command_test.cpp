#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class ConfigCommand : public SampleBankTest
{
protected:
    ConfigCommand() : m_machine("SIGNUTILS_CONFIG", m_folder.Path().c_str()) {}

    static nlohmann::json SettingOf(const Answer& answer, const std::string& name)
    {
        const nlohmann::json object = answer.Json();
        for (const auto& setting : object["settings"])
        {
            if (setting["name"] == name)
            {
                return setting;
            }
        }
        ADD_FAILURE() << name << " is not told: " << answer.output;
        return {};
    }

    ScopedEnvironment m_machine;
};

TEST_F(ConfigCommand, TellsEachSourceAndWhatItHides)
{
    const ScopedEnvironment partner("SIGNCHECK_PARTNER", "FIRST");
    WriteUserSettings("partner = \"SECOND\"\n");
    m_folder.Write("signcheck.toml", "partner = \"THIRD\"\n");

    const auto setting = SettingOf(RunSigncheck({"config", "--json"}), "partner");

    EXPECT_EQ(setting["value"], "FIRST");
    EXPECT_EQ(setting["from"], "SIGNCHECK_PARTNER");
    EXPECT_EQ(setting["variable"], "SIGNCHECK_PARTNER");
    ASSERT_EQ(setting["hides"].size(), 2U);
    EXPECT_EQ(setting["hides"][0]["value"], "SECOND");
    EXPECT_THAT(setting["hides"][0]["from"], EndsWith("config.toml, line 1, field partner"));
    EXPECT_EQ(setting["hides"][1]["value"], "THIRD");
    EXPECT_THAT(setting["hides"][1]["from"], EndsWith("signcheck.toml, line 1, field partner"));
}

TEST_F(ConfigCommand, TellsEverySettingAlsoThoseThatAreNotSet)
{
    const Answer answer = RunSigncheck({"config", "--json"});

    EXPECT_TRUE(SettingOf(answer, "psr-service")["value"].is_null());
    EXPECT_TRUE(SettingOf(answer, "total")["variable"].is_null()) << "an amount is of one order";
    EXPECT_THAT(RunSigncheck({"config"}).output, HasSubstr("Not set"));
}

TEST_F(ConfigCommand, TellsWhatAFileSaysToOneCommandOnly)
{
    WriteUserSettings("limit = 5\n[history]\nlimit = 20\n");
    const Answer all = RunSigncheck({"config", "--json"});
    const Answer history = RunSigncheck({"config", "history", "--json"});
    const Answer events = RunSigncheck({"config", "events", "--json"});

    EXPECT_EQ(SettingOf(all, "limit")["value"], "5");
    EXPECT_EQ(SettingOf(all, "history.limit")["value"], "20");
    EXPECT_EQ(SettingOf(history, "limit")["value"], "20");
    EXPECT_EQ(SettingOf(history, "limit")["hides"][0]["value"], "5");
    EXPECT_EQ(SettingOf(events, "limit")["value"], "5");
}

TEST_F(ConfigCommand, NamesCommandsOfTwoWordsAsTheirTablesAre)
{
    WriteUserSettings("[rules.export]\ncontract = \"C-1001\"\n");

    for (const std::string name : {"rules export", "rules.export"})
    {
        const Answer answer = RunSigncheck({"config", name, "--json"});
        EXPECT_EQ(SettingOf(answer, "contract")["value"], "C-1001") << name;
    }
}

TEST_F(ConfigCommand, TellsWhichFilesAreReadAndWhichAreNotThere)
{
    m_folder.Write("signcheck.toml", "");

    const auto files = RunSigncheck({"config", "--json"}).Json()["files"];

    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0]["role"], "user");
    EXPECT_EQ(files[0]["isThere"], false);
    EXPECT_EQ(files[1]["role"], "machine");
    EXPECT_EQ(files[1]["isThere"], true);
    EXPECT_THAT(RunSigncheck({"config"}).output,
                AllOf(HasSubstr("config.toml: not"), HasSubstr("signcheck.toml: read")));
}

TEST_F(ConfigCommand, MasksPasswords)
{
    const ScopedEnvironment db("SIGNCHECK_DB", "DSN=bank;UID=check;PWD=sentinel");

    for (const std::string format : {"table", "json"})
    {
        const Answer answer = RunSigncheck({"config", "--format", format});
        EXPECT_EQ(answer.status, 0) << answer.errors;
        EXPECT_THAT(answer.output, AllOf(HasSubstr("PWD=***"), Not(HasSubstr("sentinel"))));
    }
}

TEST_F(ConfigCommand, HidesAConnectionStringThatCannotBeTakenApart)
{
    for (const char* const broken : {"DSN=x;PWD={sentinel", "PWD=a;sentinel", "sentinel"})
    {
        const ScopedEnvironment db("SIGNCHECK_DB", broken);
        const Answer answer = RunSigncheck({"config", "--json"});
        EXPECT_EQ(SettingOf(answer, "db")["value"], "***") << broken;
    }
}

TEST_F(ConfigCommand, MasksAPasswordInTheWrongSetting)
{
    WriteUserSettings("partner = \"DSN=bank;PWD=sentinel\"\n");

    EXPECT_THAT(RunSigncheck({"config"}).output, Not(HasSubstr("sentinel")));
}

TEST_F(ConfigCommand, TellsVariablesThatNothingReadsButNotTheirValues)
{
    const ScopedEnvironment misspelt("SIGNCHECK_PARNTER", "sentinel");
    const ScopedEnvironment strange("SIGNCHECK_QUITE_ANOTHER", "sentinel");

    const Answer answer = RunSigncheck({"config"});
    const auto json = RunSigncheck({"config", "--json"}).Json();

    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("Unknown   SIGNCHECK_PARNTER is not known; did you mean"),
                      HasSubstr("SIGNCHECK_QUITE_ANOTHER is not known."),
                      Not(HasSubstr("sentinel"))));
    ASSERT_EQ(json["unknownVariables"].size(), 2U);
    EXPECT_EQ(json["unknownVariables"][0]["variable"], "SIGNCHECK_PARNTER");
    EXPECT_EQ(json["unknownVariables"][0]["meant"], "SIGNCHECK_PARTNER");
    EXPECT_TRUE(json["unknownVariables"][1]["meant"].is_null());
    EXPECT_THAT(json.dump(), Not(HasSubstr("sentinel")));
}

TEST_F(ConfigCommand, AnyCommandWarnsOfAMisspeltVariableAndGoesOn)
{
    const ScopedEnvironment misspelt("SIGNCHECK_PARNTER", "DUPONTSA");
    const ScopedEnvironment strange("SIGNCHECK_QUITE_ANOTHER", "x");

    const Answer answer = RunSigncheck({"history", "--db", Db(), "--json"});

    EXPECT_EQ(answer.status, 0);
    EXPECT_TRUE(answer.Json()["rows"].empty());
    EXPECT_EQ(answer.errors, "signcheck: WARNING: SIGNCHECK_PARNTER is not known; did you mean "
                             "SIGNCHECK_PARTNER?\n");
}

TEST_F(ConfigCommand, RefusesAnUnknownCommand)
{
    const Answer answer = RunSigncheck({"config", "histroy"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("signcheck has no command 'histroy'"),
                                     HasSubstr("Did you mean history?")));
}

TEST_F(ConfigCommand, NeedsNoDatabase)
{
    EXPECT_EQ(RunSigncheck({"config"}).status, 0);
    EXPECT_EQ(RunSigncheck({"config", "check"}).status, 0);
}

} // namespace
} // namespace testing_support
