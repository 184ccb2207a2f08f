#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace testing_support
{
namespace
{

using testing::AllOf;
using testing::HasSubstr;

class SchemaVersion : public SampleBankTest
{
protected:
    Answer Check()
    {
        auto arguments = CheckOf("\xC3\x89lodie Lef\xC3\xA8vre");
        arguments.emplace_back("--json");
        return RunSigncheck(arguments);
    }
};

TEST_F(SchemaVersion, ANewerOneIsNotJudgedOn)
{
    m_database.Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (999, '0999_future')");

    const Answer answer = Check();

    EXPECT_EQ(answer.status, 3);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("schema version 999, newer than version 1 of this "
                                               "program. Use a newer signcheck."),
                                     HasSubstr("option --db")));
    EXPECT_EQ(answer.Json()["outcome"], "not-run");
    EXPECT_EQ(RecordsWritten(), 0U);
}

TEST_F(SchemaVersion, NoneRecordedWarnsAndIsJudged)
{
    m_database.Execute(L"DELETE FROM SSR_VERSION");

    const Answer answer = Check();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, AllOf(HasSubstr("WARNING: option --db"),
                                     HasSubstr("has no schema version recorded. Bring it up to "
                                               "date: run signcheck init --db CONN.")));
    EXPECT_EQ(answer.Json()["warnings"].size(), 1U);
}

TEST_F(SchemaVersion, AMissingTableOfVersionsWarnsAndIsJudged)
{
    m_database.Execute(L"DROP TABLE SSR_VERSION");

    const Answer answer = Check();

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("signcheck init"));
}

TEST_F(SchemaVersion, OneThatCannotBeReadIsNoFault)
{
    m_database.Execute(L"DROP TABLE SSR_VERSION");
    m_database.Execute(L"CREATE TABLE SSR_VERSION (x INTEGER)");

    const Answer answer = Check();

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
}

} // namespace
} // namespace testing_support
