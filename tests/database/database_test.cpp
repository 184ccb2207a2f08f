#include "database/cdatabase.h"

#include "database/dialect.h"
#include "tests/database/sqlite_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <thread>

using namespace database_tests;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace
{

class Database : public testing::Test
{
protected:
    Database()
    {
        Open(m_database, m_file.ConnexionString());
        m_database.ExecuteSQLW(L"CREATE TABLE T (ID INTEGER, A TEXT)");
    }

    std::string Rows() { return ReadOne(m_database, L"SELECT COUNT(*) AS N FROM T", "N"); }

    SqliteFile m_file;
    CDatabase m_database;
};

TEST_F(Database, TellsHowManyRowsChanged)
{
    EXPECT_EQ(m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x')"), 1);
    EXPECT_EQ(m_database.ExecuteSQLW(L"INSERT INTO T VALUES (2, N'y'), (3, N'z')"), 2);
    EXPECT_EQ(m_database.ExecuteSQLW(L"UPDATE T SET A = N'w'"), 3);
    EXPECT_EQ(m_database.ExecuteSQLW(L"UPDATE T SET A = N'w' WHERE ID = 99"), 0);
    EXPECT_EQ(m_database.ExecuteSQLW(L"DELETE FROM T WHERE ID > 1"), 2);
}

TEST_F(Database, KnowsItsProduct)
{
    EXPECT_EQ(m_database.GetDialect().product, database::Product::Sqlite);
    EXPECT_STREQ(m_database.GetDialect().name, "SQLite");
}

TEST_F(Database, RunsTheTimeOfTheDatabaseInLocalTime)
{
    // Whatever the zone, the two agree to within the day's end between both readings.
    m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, {fn NOW()})");
    EXPECT_EQ(
        ReadOne(m_database,
                L"SELECT CASE WHEN A GLOB "
                L"'[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]'"
                L" AND abs(julianday(A) - julianday('now','localtime')) < 0.01"
                L" THEN 'local' ELSE A END AS W FROM T",
                "W"),
        "local");
}

TEST_F(Database, SyntaxErrorGivesStateAndBothTexts)
{
    const auto failure = FailureOf([&] { m_database.ExecuteSQLW(L"SELEC '\x00E9'"); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->returnCode, -1);
    EXPECT_EQ(failure->state, "HY000");
    EXPECT_EQ(failure->nativeError, 1);
    EXPECT_THAT(failure->first,
                AllOf(StartsWith("[HY000] "), HasSubstr("near \"SELEC\": syntax error")));
    EXPECT_EQ(failure->second, "ExecuteSQLW: SELEC '\xE9'");
    EXPECT_EQ(failure->text, failure->first);
}

TEST_F(Database, QueryOfAMissingTableSaysSo)
{
    CRecordset rows(m_database);
    const auto failure =
        FailureOf([&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM NOWHERE", 0); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_THAT(failure->first, HasSubstr("no such table: NOWHERE"));
    EXPECT_EQ(failure->second, "OpenW: SELECT A FROM NOWHERE");
}

TEST_F(Database, MoreThanOneStatementIsRefusedAndNothingRuns)
{
    const wchar_t* const kStatements[] = {
        L"INSERT INTO T VALUES (1, 'a'); INSERT INTO T VALUES (2, 'b')",
        L"INSERT INTO T VALUES (1, N'x'); DROP TABLE T --')",
        L"INSERT INTO T VALUES (1, '\\'); DROP TABLE T -- ')",
    };
    for (const wchar_t* statement : kStatements)
    {
        const auto failure = FailureOf([&] { m_database.ExecuteSQLW(statement); });
        ASSERT_TRUE(failure.has_value()) << statement;
        EXPECT_EQ(failure->state, "42000");
        EXPECT_EQ(failure->first, "[42000] The text would run as more than one statement.");
        EXPECT_EQ(Rows(), "0");
    }
}

TEST_F(Database, AQueryOfMoreThanOneStatementIsRefused)
{
    CRecordset rows(m_database);
    const auto failure = FailureOf(
        [&] { rows.OpenW(CRecordset::kForwardOnly, L"SELECT A FROM T; DELETE FROM T", 0); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "42000");
}

TEST_F(Database, AnOpenLiteralIsRefusedByTheServerAndNothingRuns)
{
    EXPECT_TRUE(
        FailureOf([&] { m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x; DROP TABLE T"); }));
    EXPECT_EQ(Rows(), "0");
}

TEST_F(Database, GoesOnAfterAFailure)
{
    EXPECT_TRUE(FailureOf([&] { m_database.ExecuteSQLW(L"SELEC"); }));
    EXPECT_EQ(m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x')"), 1);
    EXPECT_EQ(Rows(), "1");
}

TEST_F(Database, NullStatementIsRefusedByTheServerOrDoesNothing)
{
    FailureOf([&] { m_database.ExecuteSQLW(nullptr); });
    EXPECT_EQ(Rows(), "0");
}

TEST_F(Database, CommittedRowsAreSeenByOthers)
{
    CDatabase other;
    Open(other, m_file.ConnexionString());
    m_database.BeginTransaction();
    m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x')");
    EXPECT_EQ(ReadOne(other, L"SELECT COUNT(*) AS N FROM T", "N"), "0");
    m_database.CommitTransaction();
    EXPECT_EQ(ReadOne(other, L"SELECT COUNT(*) AS N FROM T", "N"), "1");
    m_database.ExecuteSQLW(L"INSERT INTO T VALUES (2, N'y')"); // its own again
    EXPECT_EQ(ReadOne(other, L"SELECT COUNT(*) AS N FROM T", "N"), "2");
}

TEST_F(Database, RolledBackRowsAreGone)
{
    m_database.BeginTransaction();
    m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x')");
    m_database.RollbackTransaction();
    EXPECT_EQ(Rows(), "0");
}

TEST_F(Database, ClosedWithinATransactionRollsBack)
{
    m_database.BeginTransaction();
    m_database.ExecuteSQLW(L"INSERT INTO T VALUES (1, N'x')");
    m_database.Close();
    Open(m_database, m_file.ConnexionString());
    EXPECT_EQ(Rows(), "0");
}

TEST_F(Database, TransactionsOutOfTurnAreRefused)
{
    EXPECT_EQ(FailureOf([&] { m_database.CommitTransaction(); })->state, "25000");
    EXPECT_EQ(FailureOf([&] { m_database.RollbackTransaction(); })->state, "25000");
    m_database.BeginTransaction();
    EXPECT_EQ(FailureOf([&] { m_database.BeginTransaction(); })->state, "25001");
    m_database.RollbackTransaction();
}

TEST_F(Database, OpenedAgainLetsItsFirstConnectionGo)
{
    const SqliteFile second;
    Open(m_database, second.ConnexionString());
    const auto failure = FailureOf([&] { Rows(); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_THAT(failure->first, HasSubstr("no such table: T"));
}

TEST(ClosedDatabase, RefusesEveryUse)
{
    CDatabase database;
    EXPECT_FALSE(database.IsOpen());
    database.Close();
    const auto failure = FailureOf([&] { database.ExecuteSQLW(L"SELECT 1"); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->state, "08003");
    EXPECT_EQ(failure->first, "[08003] The database is not open.");
    EXPECT_EQ(FailureOf([&] { database.BeginTransaction(); })->state, "08003");
    EXPECT_EQ(FailureOf([&] { database.GetDialect(); })->state, "08003");
}

TEST(OpenDatabase, WithoutAConnectionStringIsRefused)
{
    CDatabase database;
    for (const char* empty : {"", " ", static_cast<const char*>(nullptr)})
    {
        const auto failure = FailureOf([&] { database.OpenEx(empty, 12); });
        ASSERT_TRUE(failure.has_value());
        EXPECT_EQ(failure->state, "08001");
        EXPECT_EQ(failure->first, "[08001] The connection string is empty.");
        EXPECT_EQ(failure->second, "OpenEx");
        EXPECT_FALSE(database.IsOpen());
    }
}

TEST(OpenDatabase, WithABrokenConnectionStringNamesTheFaultAndNoValue)
{
    CDatabase database;
    const auto failure = FailureOf([&] { Open(database, "DRIVER={SQLite3};PWD={secret"); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->first,
              "[08001] The connection string never closes the brace of the value in its part 2.");
    EXPECT_THAT(failure->second, Not(HasSubstr("secret")));
}

TEST(OpenDatabase, WithAnUnknownDriverGivesTheManagersReasonAndNoPassword)
{
    CDatabase database;
    const auto failure =
        FailureOf([&] { Open(database, "DRIVER={No Such Driver};UID=u;PWD={sec;ret}"); });

    ASSERT_TRUE(failure.has_value());
    EXPECT_FALSE(database.IsOpen());
    EXPECT_THAT(failure->first, StartsWith("[" + failure->state + "] "));
    EXPECT_THAT(failure->first, HasSubstr("[Driver Manager]"));
    EXPECT_EQ(failure->second, "OpenEx: DRIVER={No Such Driver};UID=u;PWD=***;");
}

TEST(OpenDatabase, OfAFolderThatIsMissingIsRefused)
{
    const SqliteFile file;
    CDatabase database;
    const std::filesystem::path missing =
        std::filesystem::path(file.Path()).parent_path() / "missing" / "x.db";
    // The driver opens the file with the first statement, if not with the connection.
    const auto failure = FailureOf(
        [&]
        {
            Open(database, "DRIVER={SQLite3};Database=" + missing.generic_string());
            database.ExecuteSQLW(L"CREATE TABLE T (A TEXT)");
        });
    ASSERT_TRUE(failure.has_value());
    EXPECT_FALSE(failure->first.empty());
}

TEST(BusyFile, IsWaitedForAsLongAsConfigured)
{
    const SqliteFile file;
    const auto wait = [](const std::string& connexionString)
    {
        CDatabase database;
        Open(database, connexionString);
        return ReadOne(database, L"PRAGMA busy_timeout", "timeout");
    };
    EXPECT_EQ(wait(file.ConnexionString()), "30000");
    {
        const testing_support::ScopedEnvironment seconds("SIGNUTILS_DB_TIMEOUT", "7");
        EXPECT_EQ(wait(file.ConnexionString() + ";X=1"), "7000");
        // The driver's own key; it waits by a handler of its own.
        EXPECT_EQ(wait(file.ConnexionString() + ";Timeout=5"), "0");
    }
    {
        const testing_support::ScopedEnvironment nonsense("SIGNUTILS_DB_TIMEOUT", "-3");
        EXPECT_EQ(wait(file.ConnexionString() + ";X=2"), "30000");
    }
}

TEST(BusyFile, IsRefusedAfterTheWait)
{
    const SqliteFile file;
    CDatabase holder;
    Open(holder, file.ConnexionString());
    holder.ExecuteSQLW(L"CREATE TABLE T (A TEXT)");
    holder.BeginTransaction();
    holder.ExecuteSQLW(L"INSERT INTO T VALUES ('x')");
    CDatabase other;
    Open(other, file.ConnexionString() + ";Timeout=1");
    const auto failure = FailureOf([&] { other.ExecuteSQLW(L"INSERT INTO T VALUES ('y')"); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_THAT(failure->first, HasSubstr("database is locked"));
    holder.RollbackTransaction();
}

TEST(BusyFile, LetsTheWaitingWriterThrough)
{
    const SqliteFile file;
    CDatabase holder;
    Open(holder, file.ConnexionString());
    holder.ExecuteSQLW(L"CREATE TABLE T (A TEXT)");
    CDatabase waiting;
    Open(waiting, file.ConnexionString());
    holder.BeginTransaction();
    holder.ExecuteSQLW(L"INSERT INTO T VALUES ('x')");
    std::optional<Failure> failure;
    std::thread writer(
        [&] { failure = FailureOf([&] { waiting.ExecuteSQLW(L"INSERT INTO T VALUES ('y')"); }); });
    holder.CommitTransaction();
    writer.join();
    EXPECT_FALSE(failure.has_value()) << failure->first;
    EXPECT_EQ(ReadOne(holder, L"SELECT COUNT(*) AS N FROM T", "N"), "2");
}

// Each thread's connection string is its own, so that none is served by another's idle connection.
TEST(Threads, ReadAndWriteOverConnectionsOfTheirOwn)
{
    const SqliteFile file;
    {
        CDatabase database;
        Open(database, file.ConnexionString());
        database.ExecuteSQLW(L"CREATE TABLE T (A INTEGER)");
    }
    constexpr int kThreads = 4;
    constexpr int kRounds = 25;
    std::vector<std::optional<Failure>> failures(kThreads);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
    {
        threads.emplace_back(
            [&, thread]
            {
                const std::string key = ";X=" + std::to_string(thread);
                failures[static_cast<std::size_t>(thread)] = FailureOf(
                    [&]
                    {
                        for (int round = 0; round < kRounds; ++round)
                        {
                            CDatabase database;
                            Open(database, file.ConnexionString() + key);
                            database.ExecuteSQLW(L"INSERT INTO T VALUES (1)");
                            ReadOne(database, L"SELECT COUNT(*) AS N FROM T", "N");
                        }
                    });
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    for (const auto& failure : failures)
    {
        EXPECT_FALSE(failure.has_value()) << failure->first;
    }
    CDatabase database;
    Open(database, file.ConnexionString());
    EXPECT_EQ(ReadOne(database, L"SELECT COUNT(*) AS N FROM T", "N"), "100");
}

TEST(Threads, ConnectBesideConnectsThatFail)
{
    const testing_support::ScopedEnvironment off("SIGNUTILS_POOL", "0");
    const SqliteFile file;
    constexpr int kRounds = 20;
    int refused = 0;
    int opened = 0;
    const auto connect = [](const std::string& connexionString)
    {
        CDatabase database;
        return !FailureOf([&] { Open(database, connexionString); });
    };
    std::thread wrong(
        [&]
        {
            for (int round = 0; round < kRounds; ++round)
            {
                refused += connect("DRIVER={No Such Driver}") ? 0 : 1;
            }
        });
    for (int round = 0; round < kRounds; ++round)
    {
        opened += connect(file.ConnexionString()) ? 1 : 0;
    }
    wrong.join();
    EXPECT_EQ(refused, kRounds);
    EXPECT_EQ(opened, kRounds);
}

} // namespace
