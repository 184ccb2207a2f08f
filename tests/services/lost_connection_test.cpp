// What real servers' drivers say of a connection that is gone. scripts/check servers names the
// server.

#include "services/insert_failure.h"

#include "database/cdatabase.h"
#include "database/dialect.h"
#include "database/guard_database.h"
#include "tests/services/journal_fixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

namespace
{

using database::Product;
using testing_support::Row;
using testing_support::TestDatabase;

constexpr const wchar_t* kStatement = L"DELETE FROM EVT_JOURNAL";

class LostServerConnection : public testing::Test
{
protected:
    LostServerConnection()
    {
        m_database.OpenEx(m_bank.ConnexionString().c_str(), CDatabase::kNoOdbcDialog);
        m_product = m_database.GetDialect().product;
    }

    /// Two statements: what a driver says of the second one, whose connection it knows to be gone,
    /// may be something else.
    void ExpectLost()
    {
        for (int attempt = 0; attempt < 2; ++attempt)
        {
            std::string told = "done";
            bool lost = false;
            database::GuardDatabase([this] { m_database.ExecuteSQLW(kStatement); },
                                    [&](const CDBException& raised)
                                    {
                                        told = raised.GetFirstText().SafeGetString();
                                        lost = services::IsConnectionLost(raised);
                                    },
                                    [] {});
            EXPECT_TRUE(lost) << "attempt " << attempt << ": " << told;
        }
    }

    TestDatabase m_bank;
    CDatabase m_database;
    Product m_product = Product::Other;
};

TEST_F(LostServerConnection, IsNoticedWhereTheServerEndedAnIdleSession)
{
    if (m_product == Product::MariaDb)
    {
        m_database.ExecuteSQLW(L"SET SESSION wait_timeout = 1");
    }
    else if (m_product == Product::PostgreSql)
    {
        m_database.ExecuteSQLW(L"SET idle_session_timeout = '1s'");
    }
    else
    {
        GTEST_SKIP() << "needs a server";
    }
    // The servers count whole seconds, from the last statement.
    std::this_thread::sleep_for(std::chrono::milliseconds(2500));
    ExpectLost();
}

TEST_F(LostServerConnection, IsNoticedWhereAnAdministratorEndedTheSession)
{
    if (m_product == Product::MariaDb)
    {
        const std::vector<Row> others =
            m_bank.Query(L"SELECT ID FROM information_schema.PROCESSLIST WHERE COMMAND = 'Sleep' "
                         L"AND USER = 'root'");
        for (const Row& other : others)
        {
            m_bank.Execute(L"KILL " + other[0].value_or(L""));
        }
    }
    else if (m_product == Product::PostgreSql)
    {
        m_bank.Query(L"SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE pid <> "
                     L"pg_backend_pid() AND backend_type = 'client backend'");
    }
    else
    {
        GTEST_SKIP() << "needs a server";
    }
    ExpectLost();
}

} // namespace
