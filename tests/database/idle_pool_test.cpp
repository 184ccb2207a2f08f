#include "database/idle_pool.h"

#include "database/connection.h"
#include "tests/database/sqlite_file.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace database_tests;
using database::Connection;
using database::IdleConnectionCount;
using database::IdlePool;

namespace
{

const IdlePool::Clock::time_point kStart{std::chrono::hours(1)};

std::shared_ptr<Connection> Connect(const SqliteFile& file, const std::string& suffix = "")
{
    return std::make_shared<Connection>(file.ConnexionString() + suffix);
}

TEST(IdlePoolTest, GivesAConnectionBackForTheSameStringOnly)
{
    const SqliteFile file;
    IdlePool pool;
    auto connection = Connect(file);
    const Connection* const same = connection.get();
    pool.Put(std::move(connection), kStart);

    EXPECT_EQ(pool.Take(file.ConnexionString() + ";", kStart), nullptr);
    const auto taken = pool.Take(file.ConnexionString(), kStart);
    EXPECT_EQ(taken.get(), same);
    EXPECT_EQ(pool.Take(file.ConnexionString(), kStart), nullptr);
}

TEST(IdlePoolTest, ClosesWhatWaitedForAMinute)
{
    const SqliteFile file;
    IdlePool pool;
    pool.Put(Connect(file), kStart);
    pool.Put(Connect(file, ";X=1"), kStart + std::chrono::seconds(1));

    EXPECT_EQ(pool.Take(file.ConnexionString(), kStart + std::chrono::seconds(60)), nullptr);
    EXPECT_EQ(pool.Count(), 1U);
    EXPECT_NE(pool.Take(file.ConnexionString() + ";X=1", kStart + std::chrono::seconds(60)),
              nullptr);
}

TEST(IdlePoolTest, KeepsEightOfOneString)
{
    const SqliteFile file;
    IdlePool pool;
    for (int index = 0; index < 9; ++index)
    {
        pool.Put(Connect(file), kStart);
    }
    EXPECT_EQ(pool.Count(), 8U);
    pool.Put(Connect(file, ";X=1"), kStart);
    EXPECT_EQ(pool.Count(), 9U);
}

TEST(IdlePoolTest, KeepsSixtyFourInAll)
{
    const SqliteFile file;
    IdlePool pool;
    for (int index = 0; index < 70; ++index)
    {
        pool.Put(Connect(file, ";X=" + std::to_string(index / 7)), kStart);
    }
    EXPECT_EQ(pool.Count(), 64U);
    pool.Empty();
    EXPECT_EQ(pool.Count(), 0U);
}

TEST(IdlePoolTest, ClosesAConnectionThatRaisedAnError)
{
    const SqliteFile file;
    IdlePool pool;
    auto connection = Connect(file);
    EXPECT_TRUE(FailureOf([&] { connection->Execute(L"SELEC"); }));
    pool.Put(std::move(connection), kStart);
    EXPECT_EQ(pool.Count(), 0U);
}

TEST(IdlePoolTest, ClosesAConnectionWhoseSessionMayHaveChanged)
{
    const SqliteFile file;
    IdlePool pool;
    for (const wchar_t* statement : {L"PRAGMA foreign_keys = ON", L"BEGIN",
                                     L"CREATE TEMP TABLE X (A)", L"ATTACH ':memory:' AS M"})
    {
        auto connection = Connect(file);
        connection->Execute(statement);
        pool.Put(std::move(connection), kStart);
        EXPECT_EQ(pool.Count(), 0U) << statement;
    }
}

TEST(IdlePoolTest, RollsAnOpenTransactionBack)
{
    const SqliteFile file;
    Connect(file)->Execute(L"CREATE TABLE T (A INTEGER)");
    IdlePool pool;
    auto connection = Connect(file);
    connection->Begin();
    connection->Execute(L"INSERT INTO T VALUES (1)");
    pool.Put(std::move(connection), kStart);

    EXPECT_EQ(Connect(file)->Execute(L"DELETE FROM T"), 0); // neither locked nor written
    const auto again = pool.Take(file.ConnexionString(), kStart);
    ASSERT_NE(again, nullptr);
    again->Execute(L"INSERT INTO T VALUES (2)"); // its own transaction again
    EXPECT_EQ(Connect(file)->Execute(L"DELETE FROM T"), 1);
}

TEST(IdlePoolTest, ClosesAConnectionToAFileThatIsGoneOrReplaced)
{
    const SqliteFile file;
    const SqliteFile other;
    Connect(file)->Execute(L"CREATE TABLE T (A INTEGER)");
    Connect(other)->Execute(L"CREATE TABLE U (A INTEGER)");
    IdlePool pool;
    pool.Put(Connect(file), kStart);
    pool.Put(Connect(file), kStart);
    std::error_code refused;
    std::filesystem::rename(other.Path(), file.Path(), refused);
    if (refused)
    {
        GTEST_SKIP() << "an open file cannot be replaced here";
    }
    EXPECT_EQ(pool.Take(file.ConnexionString(), kStart), nullptr);
    EXPECT_EQ(pool.Count(), 0U);
}

TEST(IdlePoolTest, ClosesADatabaseInMemory)
{
    IdlePool pool;
    pool.Put(std::make_shared<Connection>("DRIVER={SQLite3};Database=:memory:"), kStart);
    EXPECT_EQ(pool.Count(), 0U);
}

class ProcessPool : public testing::Test
{
protected:
    ProcessPool() { database::EmptyIdlePool(); }

    const Connection* OpenAndClose()
    {
        CDatabase database;
        Open(database, m_file.ConnexionString());
        return &database.GetConnection();
    }

    SqliteFile m_file;
};

TEST_F(ProcessPool, ServesTheNextOpen)
{
    OpenAndClose();
    ASSERT_EQ(IdleConnectionCount(), 1U);
    CDatabase database;
    Open(database, m_file.ConnexionString());
    EXPECT_EQ(IdleConnectionCount(), 0U);
    EXPECT_EQ(ReadOne(database, L"SELECT 1 AS N", "N"), "1");
    database.Close();
    EXPECT_EQ(IdleConnectionCount(), 1U);
}

TEST_F(ProcessPool, DoesNotGetAConnectionAfterAnError)
{
    CDatabase database;
    Open(database, m_file.ConnexionString());
    EXPECT_TRUE(FailureOf([&] { database.ExecuteSQLW(L"SELEC"); }));
    database.Close();
    EXPECT_EQ(IdleConnectionCount(), 0U);
}

TEST_F(ProcessPool, DoesNotGetAConnectionAfterARefusal)
{
    CDatabase database;
    Open(database, m_file.ConnexionString());
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT 1 AS N", 0);
    CTString value;
    EXPECT_TRUE(FailureOf([&] { rows.GetFieldValue("M", value); }));
    rows.Close();
    database.Close();
    EXPECT_EQ(IdleConnectionCount(), 0U);
}

TEST_F(ProcessPool, DoesNotGetAConnectionThatARecordSetStillReads)
{
    CDatabase database;
    Open(database, m_file.ConnexionString());
    CRecordset rows(database);
    rows.OpenW(CRecordset::kForwardOnly, L"SELECT 1 AS N", 0);
    database.Close();
    EXPECT_EQ(IdleConnectionCount(), 0U);
    rows.Close();
    EXPECT_EQ(IdleConnectionCount(), 0U);
}

TEST_F(ProcessPool, IsOffByItsSwitch)
{
    OpenAndClose();
    ASSERT_EQ(IdleConnectionCount(), 1U);
    const testing_support::ScopedEnvironment off("SIGNUTILS_POOL", "0");
    {
        CDatabase database;
        Open(database, m_file.ConnexionString());
        EXPECT_EQ(IdleConnectionCount(), 1U); // not taken
    }
    EXPECT_EQ(IdleConnectionCount(), 0U); // nor kept, and what waited is closed
}

TEST_F(ProcessPool, KeepsADatabaseThatWasOpenedButFailedOut)
{
    CDatabase database;
    EXPECT_TRUE(FailureOf([&] { Open(database, "DRIVER={No Such Driver}"); }));
    database.Close();
    EXPECT_EQ(IdleConnectionCount(), 0U);
}

} // namespace
