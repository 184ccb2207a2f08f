#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class Init : public testing::Test
{
protected:
    TemporaryFolder m_folder;
    ScopedEnvironment m_connection{"SIGNCHECK_DB", nullptr};
    std::string m_db = "Driver=SQLite3;Database=" + m_folder.Path("bank.db");
};

TEST_F(Init, CreatesAnEmbeddedDatabase)
{
    const Answer answer = RunSigncheck({"init", "--db", m_db});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output, AllOf(HasSubstr("no schema was found"), HasSubstr("HST_SIGNRULES")));
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("bank.db")));
}

TEST_F(Init, CanBeRepeatedAndSaysWhatItFound)
{
    RunSigncheck({"init", "--db", m_db, "--sample"});

    const Answer answer = RunSigncheck({"init", "--db", m_db, "--sample"});

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.output,
                AllOf(HasSubstr("up to date"),
                      HasSubstr("0 holders and contracts added, 22 were there already")));
}

TEST_F(Init, AnswersInJson)
{
    const auto first = RunSigncheck({"init", "--db", m_db, "--json"}).Json();
    const auto second = RunSigncheck({"init", "--db", m_db, "--sample", "--json"}).Json();

    EXPECT_EQ(first["foundVersion"], 0);
    EXPECT_EQ(first["createdTables"].size(), 8U);
    EXPECT_TRUE(first["sample"].is_null());
    EXPECT_EQ(second["foundVersion"], first["version"]);
    EXPECT_EQ(second["createdTables"].size(), 0U);
    EXPECT_EQ(second["sample"]["added"], 22);
}

TEST(InitOnANewerSchema, IsRefusedAndChangesNothing)
{
    const ScopedEnvironment connection("SIGNCHECK_DB", nullptr);
    TestDatabase database;
    RunSigncheck({"init", "--db", database.ConnexionString()});
    database.Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (999, '0999_future')");

    const Answer answer = RunSigncheck({"init", "--db", database.ConnexionString(), "--sample"});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("schema version 999"), HasSubstr("newer"),
                                     HasSubstr("Nothing was changed")));
    EXPECT_EQ(answer.output, "");
    EXPECT_TRUE(database.Query(L"SELECT HUID FROM SSR_HOLDER").empty());
}

TEST_F(Init, ADatabaseInMemoryIsRefused)
{
    const Answer answer = RunSigncheck({"init", "--db", "Driver=SQLite3;Database=:memory:"});

    EXPECT_EQ(answer.status, 64);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --db"), HasSubstr(":memory:"),
                                     HasSubstr("Name a file as Database=")));
    EXPECT_EQ(answer.output, "");
}

TEST_F(Init, ATableOfOurNameWithoutOurColumnsIsRefused)
{
    TestDatabase database;
    database.Execute(L"DROP TABLE SSR_VERSION");
    database.Execute(L"DROP TABLE SSR_HOLDER");
    database.Execute(L"CREATE TABLE SSR_HOLDER (x INTEGER)");

    const Answer answer = RunSigncheck({"init", "--db", database.ConnexionString()});

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("SSR_HOLDER was there already"), HasSubstr("HUID"),
                                     HasSubstr("Nothing was changed")));
    EXPECT_EQ(answer.output, "");
}

TEST_F(Init, AFolderThatIsNotThereIsRefused)
{
    const Answer answer = RunSigncheck(
        {"init", "--db", "Driver=SQLite3;Database=" + m_folder.Path("none") + "/bank.db"});

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("option --db"), HasSubstr("Correct Database="),
                                     Not(HasSubstr("odbcinst"))));
}

} // namespace
} // namespace testing_support
