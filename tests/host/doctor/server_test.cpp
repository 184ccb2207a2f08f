// What only a server has: rights of users, a time zone of its own, copies within the database.

#include "database/cdatabase.h"
#include "database/connection_string.h"
#include "tests/host/doctor/doctor_bank.h"
#include "tests/host/host_user.h"

#include <gmock/gmock.h>

namespace testing_support
{
namespace
{

using database::Product;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class DoctorOnServer : public DoctorBank
{
protected:
    void SetUp() override
    {
        if (ConnectedProduct() == Product::Sqlite)
        {
            GTEST_SKIP() << "a server has users, a clock and copies of its own";
        }
    }

    /// The user that checks, with what grants.sql gives.
    std::string AsHost()
    {
        CDatabase bank;
        bank.OpenEx(Db().c_str(), CDatabase::kUseCursorLib | CDatabase::kNoOdbcDialog);
        return AsHostUser(bank, Db());
    }
};

TEST_F(DoctorOnServer, RightsOfAHostAreEnough)
{
    const Answer answer = DoctorOf(AsHost());

    EXPECT_EQ(answer.status, 0) << answer.output;
    EXPECT_THAT(Told(answer, "tables"), ElementsAre(StartsWith("ok: 8 tables")));
    EXPECT_THAT(Told(answer, "rights"),
                ElementsAre(AllOf(StartsWith("ok: "), HasSubstr("not SELECT on HST_SIGNRULES and "
                                                                "EVT_JOURNAL"))));
}

TEST_F(DoctorOnServer, AMissingRightIsToldWithItsGrant)
{
    const std::string host = AsHost();
    m_database.Execute(L"REVOKE SELECT ON SSR_HOLDER FROM signutils_host");
    m_database.Execute(L"GRANT INSERT ON SSR_HOLDER TO signutils_host");
    m_database.Execute(L"REVOKE INSERT ON EVT_JOURNAL FROM signutils_host");
    m_database.Execute(L"GRANT SELECT ON EVT_JOURNAL TO signutils_host");

    const Answer answer = DoctorOf(host);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(
        Told(answer, "rights"),
        ElementsAre(AllOf(StartsWith("failed: this user has not: SELECT ON SSR_HOLDER, INSERT ON "
                                     "EVT_JOURNAL"),
                          HasSubstr("GRANT SELECT ON SSR_HOLDER TO USER; GRANT INSERT ON "
                                    "EVT_JOURNAL TO USER."))));
}

TEST_F(DoctorOnServer, AnotherTimeZoneIsTold)
{
    if (ConnectedProduct() != Product::PostgreSql)
    {
        GTEST_SKIP() << "PostgreSQL has a time zone for each user";
    }
    const std::string host = AsHost();
    m_database.Execute(L"ALTER ROLE signutils_host SET timezone = 'Etc/GMT-9'");

    EXPECT_THAT(Told(DoctorOf(host), "clock"),
                ElementsAre(AllOf(StartsWith("warning: the database's clock is"),
                                  HasSubstr("another time zone"))));
    m_database.Execute(L"ALTER ROLE signutils_host RESET timezone");
}

TEST_F(DoctorOnServer, ACopyThatAKillLeftIsToldAndRemoved)
{
    const bool isPostgreSql = ConnectedProduct() == Product::PostgreSql;
    m_database.Execute(std::wstring(isPostgreSql ? L"CREATE SCHEMA " : L"CREATE DATABASE ") +
                       L"signcheck_scratch_20260329_101159_4194304_ana_0badcafe");

    EXPECT_THAT(Told(Doctor(), "copies"),
                ElementsAre(AllOf(HasSubstr("signcheck_scratch_20260329_101159_4194304_ana_"),
                                  HasSubstr("Run DROP "))));
    EXPECT_THAT(Told(Doctor({"--remove-leftovers", "1d"}), "copies"),
                ElementsAre(HasSubstr("; 1 was removed")));
    EXPECT_THAT(Told(Doctor(), "copies"), ElementsAre(StartsWith("ok: ")));
}

TEST_F(DoctorOnServer, AServerThatDoesNotAnswerFails)
{
    const std::string connection = database::ConnectionString(Db()).With("PORT", "1");

    const Answer answer = DoctorOf(connection);

    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(Told(answer, "driver"), ElementsAre(StartsWith("ok: ")));
    EXPECT_THAT(
        Told(answer, "database"),
        ElementsAre(AllOf(HasSubstr("cannot be opened"), HasSubstr("See that the server runs"))));
}

} // namespace
} // namespace testing_support
