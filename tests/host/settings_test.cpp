#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

class Settings : public SampleBankTest
{
protected:
};

TEST_F(Settings, TheConnectionStringComesFromTheEnvironment)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", Db().c_str());

    EXPECT_EQ(RunSigncheck(Without(CheckOf("Élodie Lefèvre"), "--db")).status, 0);
}

TEST_F(Settings, AnOptionGoesBeforeTheEnvironment)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", "Driver=none;Database=none");

    EXPECT_EQ(RunSigncheck(CheckOf("Élodie Lefèvre")).status, 0);
}

TEST_F(Settings, TheEnvironmentGoesBeforeTheFile)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", Db().c_str());
    const std::string file = m_folder.Write("bank.toml", "db = \"Driver=none\"\n");
    auto arguments = Without(CheckOf("Élodie Lefèvre"), "--db");
    arguments.insert(arguments.end(), {"--config", file});

    EXPECT_EQ(RunSigncheck(arguments).status, 0);
}

TEST_F(Settings, TheFileGivesWhatNothingElseGives)
{
    const std::string file = m_folder.Write(
        "bank.toml", "db = '" + Db() + "'\nfile = '" + m_order +
                         "'\n[check]\npartner = \"DUPONTSA\"\nservice = \"CCT\"\n"
                         "client = \"TRESOR\"\nprotocol = 9\ntype = 1\n"
                         "signers = \"Élodie Lefèvre\"\ntotal = \"900.00\"\nlargest = 900\n"
                         "currency = \"EUR\"\njson = true\n");

    const Answer answer = RunSigncheck({"check", "--config", file});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_EQ(answer.Json()["outcome"], "success");
}

TEST_F(Settings, AnOptionGoesBeforeTheFile)
{
    const std::string file = m_folder.Write("bank.toml", "signers = \"Paul Martin\"\n");
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--config", file});

    EXPECT_EQ(RunSigncheck(arguments).status, 0);
}

TEST_F(Settings, AFlagSwitchedOffGoesBeforeTheFile)
{
    const std::string file = m_folder.Write("bank.toml", "json = true\n");
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--config", file, "--json=false"});

    EXPECT_THAT(RunSigncheck(arguments).output, HasSubstr("Decided   ACCEPTED"));
}

TEST_F(Settings, RefusalsOfTheFileNameFileLineAndField)
{
    const std::string file = m_folder.Write("bank.toml", "\npartner = \"TOOLONGNAME\"\n");
    auto arguments = Without(CheckOf("Élodie Lefèvre"), "--partner");
    arguments.insert(arguments.end(), {"--config", file});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr(file + ", line 2, field partner: 'TOOLONGNAME'"));
}

TEST_F(Settings, AMissingFileIsRefused)
{
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.insert(arguments.end(), {"--config", m_folder.Path("none.toml")});

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, HasSubstr("option --config: there is no file"));
}

TEST_F(Settings, HelpAndVersionGoToStandardOutput)
{
    const Answer help = RunSigncheck({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, HasSubstr("history"));
    const Answer commandHelp = RunSigncheck({"check", "--help"});
    EXPECT_EQ(commandHelp.status, 0);
    EXPECT_THAT(commandHelp.output, HasSubstr("--psr-service"));
    const Answer version = RunSigncheck({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_THAT(version.output, HasSubstr("signcheck "));
}

TEST_F(Settings, AnUnknownLanguageWarns)
{
    const ScopedEnvironment language("SIGNUTILS_LANG", "de");

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "signcheck: WARNING: SIGNUTILS_LANG: 'de' is an unknown language; "
                             "messages are in English. Set en or fr.\n");
}

TEST_F(Settings, AKnownLanguageDoesNotWarn)
{
    const ScopedEnvironment language("SIGNUTILS_LANG", "FR");

    EXPECT_EQ(RunSigncheck(CheckOf("Élodie Lefèvre")).errors, "");
}

} // namespace
} // namespace testing_support
