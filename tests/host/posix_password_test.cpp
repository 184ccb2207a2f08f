// Where a password goes that signcheck was given: nowhere, whatever fails. The driver repeats the
// connection string in each of its messages and tells what a core of the process would hold.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace testing_support
{
namespace
{

namespace fs = std::filesystem;

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr char kRefusing[] = "DRIVER=" SIGNUTILS_ECHO_DRIVER ";UID=bank;PWD=sentinel";

class PasswordOfSigncheck : public SampleBankTest
{
protected:
    /// Every command that opens a database, with what it needs besides the connection string.
    std::vector<std::vector<std::string>> CommandsWithADatabase() const
    {
        auto check = Without(CheckOf("Élodie Lefèvre"), "--db");
        check.insert(check.end(), {"--trace", m_folder.Path("trace.txt"), "--log",
                                   m_folder.Path("log.txt"), "--psr-service", "REPORT"});
        auto checkFile = Without(CheckOfFile(m_order, "auto", "Élodie Lefèvre"), "--db");
        return {check, checkFile, {"init"}, {"init", "--sample"}, {"history"}, {"events"}};
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
};

TEST_F(PasswordOfSigncheck, StaysOutOfWordsJsonTraceAndLogOfEveryCommand)
{
    for (const char* connection : kConnections)
    {
        const ScopedEnvironment variable("SIGNCHECK_DB", connection);
        for (auto command : CommandsWithADatabase())
        {
            for (const bool asJson : {false, true})
            {
                if (asJson)
                {
                    command.emplace_back("--json");
                }
                const Answer answer = RunSigncheck(command);
                EXPECT_NE(answer.status, 0) << connection;
                EXPECT_THAT(EverythingOf(answer), Not(HasSubstr("sentinel")))
                    << command.front() << " with " << connection;
            }
        }
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

} // namespace
} // namespace testing_support
