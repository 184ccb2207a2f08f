// What signcheck says when the verdict is there but the database did not take its records.

#include "tests/host/signcheck_process.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace testing_support
{
namespace
{

using testing::HasSubstr;

class UnwrittenRecords : public SampleBankTest
{
protected:
    void RefuseInsertsInto(const std::wstring& table)
    {
        m_database.Execute(L"CREATE TRIGGER REFUSE BEFORE INSERT ON " + table +
                           L" BEGIN SELECT RAISE(ABORT, 'full'); END");
    }
};

TEST_F(UnwrittenRecords, HistoryRowsThatWereLostAreToldLoudly)
{
    RefuseInsertsInto(L"HST_SIGNRULES");
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: 1 of 1 history rows were NOT written"));
    EXPECT_EQ(answer.Json()["rows"]["due"], 1);
    EXPECT_EQ(answer.Json()["rows"]["written"], 0);
    EXPECT_EQ(answer.Json()["warnings"].size(), 1U);
    EXPECT_EQ(answer.Json()["journal"], "written");
}

TEST_F(UnwrittenRecords, AnEventThatWasSpooledIsToldLoudly)
{
    RefuseInsertsInto(L"EVT_JOURNAL");
    auto arguments = CheckOf("Élodie Lefèvre");
    arguments.emplace_back("--json");

    const Answer answer = RunSigncheck(arguments);

    EXPECT_EQ(answer.status, 0) << answer.errors;
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: the audit event was NOT written"));
    EXPECT_EQ(answer.Json()["journal"], "spooled");
    EXPECT_TRUE(std::filesystem::exists(m_folder.Path("spool")));
}

TEST_F(UnwrittenRecords, ASpooledEventIsDeliveredByALaterCheck)
{
    RefuseInsertsInto(L"EVT_JOURNAL");
    RunSigncheck(CheckOf("Élodie Lefèvre"));
    m_database.Execute(L"DROP TRIGGER REFUSE");

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors, "");
    EXPECT_EQ(m_database.Query(L"SELECT EVENTID FROM EVT_JOURNAL").size(), 2U);
}

TEST_F(UnwrittenRecords, AnEventThatWasLostIsToldLoudly)
{
    RefuseInsertsInto(L"EVT_JOURNAL");
    m_folder.Write("spool", "a file where the folder should be");

    const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.errors, HasSubstr("WARNING: the audit event was LOST"));
    EXPECT_THAT(answer.output, HasSubstr("NO audit event"));
}

TEST_F(UnwrittenRecords, MissingTablesAreFoundBeforeAnythingIsJudged)
{
    for (const std::wstring table : {L"HST_SIGNRULES", L"EVT_JOURNAL", L"SSR_HOLDERID"})
    {
        m_database.Execute(L"ALTER TABLE " + table + L" RENAME TO AWAY");

        const Answer answer = RunSigncheck(CheckOf("Élodie Lefèvre"));

        EXPECT_EQ(answer.status, 3);
        EXPECT_THAT(answer.errors,
                    HasSubstr("has no table " + std::string(table.begin(), table.end())));
        m_database.Execute(L"ALTER TABLE AWAY RENAME TO " + table);
    }
    EXPECT_EQ(RecordsWritten(), 0U);
}

} // namespace
} // namespace testing_support
