// Where a password goes that signcheck was given: nowhere, whatever fails. The driver repeats the
// connection string in each of its messages and tells what a core of the process would hold.

#include "host/command_table.h"
#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <map>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kRefusing[] = "DRIVER=" SIGNUTILS_ECHO_DRIVER ";UID=bank;PWD=sentinel";
// No part of the passwords here may be shown that is as long as this.
constexpr char kPart[] = "ntinel";

/// The words of an example of a command, as a shell takes them apart; what is written into a file
/// by the shell is left to it.
std::vector<std::string> WordsOf(const std::string& line)
{
    std::vector<std::string> words(1);
    bool isQuoted = false;
    for (const char character : line.substr(0, line.find(" > ")))
    {
        if (character == '"')
        {
            isQuoted = !isQuoted;
        }
        else if (character == ' ' && !isQuoted)
        {
            words.emplace_back();
        }
        else
        {
            words.back() += character;
        }
    }
    words.erase(words.begin()); // signcheck
    if (const auto db = std::find(words.begin(), words.end(), "--db"); db != words.end())
    {
        words.erase(db, db + 2); // the tests' own stands in the environment
    }
    return words;
}

bool TakesADatabase(const host::CommandSpec& command)
{
    return host::FindOption(command, "db") != nullptr;
}

/// The examples of every command that opens a database, from the table of all commands.
std::vector<std::vector<std::string>> ExamplesWithADatabase()
{
    std::vector<std::vector<std::string>> all;
    for (const host::CommandSpec& command : host::Commands())
    {
        for (const host::Example& example : command.examples)
        {
            if (TakesADatabase(command))
            {
                all.push_back(WordsOf(example.line));
            }
        }
    }
    return all;
}

class PasswordOfSigncheck : public SampleBankTest
{
protected:
    /// A folder with everything that the examples of commands name, in which they are run.
    PasswordOfSigncheck() : m_before(fs::current_path())
    {
        const Answer rules = RunSigncheck({"rules", "export", "--db", Db()});
        EXPECT_EQ(rules.status, 0) << rules.errors;
        m_folder.Write("rules.toml", rules.output);
        m_folder.Write("people.csv", "huid,first-name,last-name,certificate\nH1,Ana,Ruiz,Ana\n");
        fs::create_directory(m_folder.Path("orders"));
        m_folder.Write("orders/A001.xml", "<Document/>");
        fs::current_path(m_folder.Path());
    }
    ~PasswordOfSigncheck() override { fs::current_path(m_before); }

    /// Every command that opens a database, in words and as JSON, and a check with all that it can
    /// write.
    std::vector<std::vector<std::string>> CommandsWithADatabase() const
    {
        std::vector<std::vector<std::string>> all = ExamplesWithADatabase();
        auto check = Without(CheckOf("Élodie Lefèvre"), "--db");
        check.insert(check.end(),
                     {"--trace", m_folder.Path("trace.txt"), "--log", m_folder.Path("log.txt"),
                      "--psr-service", "REPORT", "--party", "QZBKFRPP", "--order-id", "A001",
                      "--message-name", "pain.001.001.03", "--message-id", "RPT-1"});
        all.push_back(check);
        all.push_back({"init", "--sample"});
        const std::size_t inWords = all.size();
        for (std::size_t index = 0; index < inWords; ++index)
        {
            const host::CommandSpec* command = SpecOf(all[index]);
            if (host::FindOption(*command, "json") != nullptr)
            {
                all.push_back(all[index]);
                all.back().emplace_back("--json");
            }
        }
        return all;
    }

    static const host::CommandSpec* SpecOf(const std::vector<std::string>& words)
    {
        const host::CommandSpec* command = host::FindCommand(words.at(0));
        return command != nullptr ? command : host::FindCommand(words.at(0) + " " + words.at(1));
    }

    /// Everything that the run printed and that lies in the test's folder.
    std::string EverythingOf(const Answer& answer) const
    {
        std::string all = answer.output + "\n" + answer.errors;
        for (const auto& entry : fs::recursive_directory_iterator(m_folder.Path()))
        {
            all += "\n" + entry.path().string() + "\n";
            if (entry.is_regular_file())
            {
                all += ReadWholeFile(entry.path().string());
            }
        }
        return all;
    }

    /// A settings file of these rights whose db has the password.
    std::string SettingsFile(fs::perms rights) const
    {
        std::string file = m_folder.Write("bank.toml", std::string("db = \"") + kRefusing + "\"\n");
        fs::permissions(file, rights);
        return file;
    }

private:
    fs::path m_before;
};

const char* const kConnections[] = {
    kRefusing,
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";ECHO=CONNECT;UID=bank;Password={sentinel}",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";pqopt={password = sentinel}",
    "DRIVER=/no/such/driver.so;UID=bank;pwd=sentinel",
    "DRIVER={No such driver};PWD={sentinel;x}",
    "DSN=NoSuchSource;PWD=sentinel",
    "DRIVER=X;PWD=a;sentinel", // broken
    "DRIVER=X;PWD={sentinel",  // broken
    "Driver=SQLite3;PWD=sentinel",
    "Driver=SQLite3;Database=/no/such/folder/x.db;PWD=sentinel",
    "PWD=sentinel",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";UID=bank;PWD=séntinel",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";ECHO=CONNECT;UID=bank;PWD={séntinel}",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";BARE=given;PWD=séntinel",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";BARE=1252;PWD=séntinel",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";BARE=utf8;ECHO=CONNECT;PWD=séntinel",
    "DRIVER=" SIGNUTILS_ECHO_DRIVER ";BARE=marks;PWD=séntinel",
};

/// A connection string with a password, on every command.
class EveryPasswordOfSigncheck : public PasswordOfSigncheck,
                                 public testing::WithParamInterface<const char*>
{
};

TEST_P(EveryPasswordOfSigncheck, StaysOutOfWordsJsonTraceAndLogOfEveryCommand)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", GetParam());
    for (const auto& command : CommandsWithADatabase())
    {
        const Answer answer = RunSigncheck(command);
        EXPECT_NE(answer.status, 0) << command.front();
        EXPECT_THAT(EverythingOf(answer), Not(HasSubstr(kPart))) << command.front();
    }
}

INSTANTIATE_TEST_SUITE_P(Connections, EveryPasswordOfSigncheck, testing::ValuesIn(kConnections));

// Else the tests above would show nothing of a command that is wrongly used.
TEST_F(PasswordOfSigncheck, IsGivenToTheDriverByEveryCommandInWordsAndAsJson)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", kRefusing);
    std::map<std::string, bool> reached;
    for (const auto& command : CommandsWithADatabase())
    {
        const Answer answer = RunSigncheck(command);
        const std::string told = answer.output + answer.errors;
        const bool asJson = std::find(command.begin(), command.end(), "--json") != command.end();
        reached[SpecOf(command)->name + std::string(asJson ? " as JSON" : "")] |=
            told.find("no luck") != std::string::npos && told.find("***") != std::string::npos;
    }
    EXPECT_GT(reached.size(), 20U);
    for (const auto& [command, hasReached] : reached)
    {
        EXPECT_TRUE(hasReached) << command << ": none of its examples comes to the driver; put the "
                                << "files that they name into this test's folder";
    }
}

TEST_F(PasswordOfSigncheck, StaysOutOfMessagesWhereverTheConnectionStringStands)
{
    const std::vector<std::vector<std::string>> calls = {
        {kRefusing},
        {kRefusing, "history"},
        {"history", kRefusing},
        {"history", "--limit", kRefusing},
        {"history", "--partner", kRefusing},
        {"history", "--since", kRefusing},
        {"history", "--verdict", kRefusing},
        {"history", "--config", kRefusing},
        {"history", std::string("--dB=") + kRefusing},
        {"history", std::string("--bd=") + kRefusing},
        {"history", "--bd", kRefusing},
        {"history", "--db", kRefusing, "--db", kRefusing},
        {"history", "--db", std::string(kRefusing) + "\xFF"},
        {"check", "--db", kRefusing, kRefusing},
        {"display", kRefusing},
        {"reports", "--hand-off", kRefusing},
    };
    for (const auto& call : calls)
    {
        for (const bool asJson : {false, true})
        {
            auto arguments = call;
            if (asJson)
            {
                arguments.emplace_back("--json");
            }
            const Answer answer = RunSigncheck(arguments);
            EXPECT_NE(answer.status, 0);
            EXPECT_THAT(answer.output + answer.errors, Not(HasSubstr("sentinel")));
        }
    }
}

TEST_F(PasswordOfSigncheck, StandsInNoCoreAndInNoProcessList)
{
    const ScopedEnvironment variable("SIGNCHECK_DB", kRefusing);

    EXPECT_THAT(RunSigncheck({"history"}).errors,
                AllOf(HasSubstr("dumpable=0"), HasSubstr("core-limit=0"), HasSubstr("listed=no")));
}

TEST_F(PasswordOfSigncheck, StandsInNoProcessListWhenItComesFromAFile)
{
    const std::string file = SettingsFile(fs::perms::owner_read | fs::perms::owner_write);

    const Answer answer = RunSigncheck({"history", "--config", file});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("listed=no"), Not(HasSubstr("sentinel"))));
}

TEST_F(PasswordOfSigncheck, OnTheCommandLineItIsListed)
{
    EXPECT_THAT(RunSigncheck({"history", "--db", kRefusing}).errors, HasSubstr("listed=yes"))
        << "else the tests above show nothing";
}

TEST_F(PasswordOfSigncheck, FromAFileThatOthersMayReadIsRefused)
{
    const std::string file = SettingsFile(fs::perms::owner_read | fs::perms::owner_write |
                                          fs::perms::group_read | fs::perms::others_read);

    const Answer answer = RunSigncheck({"history", "--config", file});

    EXPECT_EQ(answer.status, 64);
    EXPECT_EQ(answer.errors, "signcheck: option --config: the settings file '" + file +
                                 "' holds the password of its field db and has mode 0644, so that "
                                 "others may read it. Make it its owner's alone: chmod 600 " +
                                 file + ", and change the password if others have seen it.\n");
}

TEST_F(PasswordOfSigncheck, FromAFileThatOthersMayOnlyWriteIsRefused)
{
    const std::string file =
        SettingsFile(fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_write);

    EXPECT_THAT(RunSigncheck({"history", "--config", file}).errors,
                HasSubstr("has mode 0620, so that others may write it."));
}

TEST_F(PasswordOfSigncheck, FromAFileOfItsReaderAloneIsTaken)
{
    for (const fs::perms rights :
         {fs::perms::owner_read, fs::perms::owner_read | fs::perms::owner_write})
    {
        EXPECT_THAT(RunSigncheck({"history", "--config", SettingsFile(rights)}).errors,
                    HasSubstr("cannot be opened"));
        fs::remove(m_folder.Path("bank.toml"));
    }
}

TEST_F(PasswordOfSigncheck, OfAnotherCommandsTableIsGuardedToo)
{
    const std::string file =
        m_folder.Write("bank.toml", std::string("[check]\ndb = \"") + kRefusing + "\"\n");
    fs::permissions(file, fs::perms::owner_all | fs::perms::others_read);

    EXPECT_THAT(RunSigncheck({"history", "--db", Db(), "--config", file}).errors,
                HasSubstr("has mode 0704"));
}

TEST_F(PasswordOfSigncheck, IsWhatAFileIsGuardedForAndNothingElse)
{
    const std::string file = m_folder.Write("bank.toml", "db = '" + Db() + "'\n");
    fs::permissions(file, fs::perms::owner_all | fs::perms::group_read | fs::perms::others_read);

    EXPECT_EQ(RunSigncheck({"history", "--config", file}).status, 0);
}

TEST_F(PasswordOfSigncheck, ApartOthersMayNotWriteAFileThatNamesTheDatabase)
{
    const std::string file = m_folder.Write("bank.toml", "[history]\ndb = '" + Db() + "'\n");
    fs::permissions(file, fs::perms::owner_all | fs::perms::group_write);

    const Answer answer = RunSigncheck({"history", "--config", file});

    EXPECT_EQ(answer.status, 64);
    EXPECT_EQ(answer.errors,
              "signcheck: option --config: the settings file '" + file +
                  "' holds a connection string and has mode 0720, so that others may "
                  "write it. Take that right from them: chmod go-w " +
                  file + ".\n");
}

TEST_F(PasswordOfSigncheck, FromTheUsersOwnFileIsGuardedAsWell)
{
    const std::string file = WriteUserSettings(std::string("db = \"") + kRefusing + "\"\n");
    fs::permissions(file, fs::perms::owner_all | fs::perms::others_read);

    for (const std::string command : {"history", "config"})
    {
        const Answer answer = RunSigncheck({command});
        EXPECT_EQ(answer.status, 64);
        EXPECT_THAT(answer.errors,
                    AllOf(HasSubstr("the user's settings: the settings file '" + file +
                                    "' holds the password of its field db and has mode 0704"),
                          Not(HasSubstr("sentinel"))));
    }
}

} // namespace
} // namespace testing_support
