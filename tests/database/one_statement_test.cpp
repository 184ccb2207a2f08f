// One statement a call, on the product that SIGNUTILS_TEST_DB names, SQLite without it. The rows
// that a second statement would delete are looked at over another connection.

#include "database/dialect.h"
#include "tests/database/sqlite_file.h"
#include "tests/testing/test_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

using namespace database_tests;

namespace
{

using database::Product;
using testing::HasSubstr;
using testing_support::TestDatabase;

class OneStatement : public testing::Test
{
protected:
    OneStatement()
    {
        tables.Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (900, 'kept')");
        Open(database, tables.ConnexionString());
    }

    bool IsKept()
    {
        return tables.Query(L"SELECT NAME FROM SSR_VERSION WHERE VERSION = 900").size() == 1;
    }

    void ExpectRefused(const std::wstring& text)
    {
        const auto executed = FailureOf([&] { database.ExecuteSQLW(text.c_str()); });
        const auto queried = FailureOf(
            [&]
            {
                CRecordset rows(database);
                rows.OpenW(CRecordset::kForwardOnly, text.c_str(), 0);
            });
        for (const auto& failure : {executed, queried})
        {
            ASSERT_TRUE(failure);
            EXPECT_EQ(failure->first, "[42000] The text would run as more than one statement.");
            EXPECT_EQ(failure->nativeError, 0) << "it was sent";
        }
        EXPECT_TRUE(IsKept());
    }

    TestDatabase tables;
    CDatabase database;
};

class SecondStatement : public OneStatement, public testing::WithParamInterface<const wchar_t*>
{
};

TEST_P(SecondStatement, IsRefusedBeforeAnythingIsSent)
{
    ExpectRefused(GetParam());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SecondStatement,
    testing::Values(L"SELECT 1; DELETE FROM SSR_VERSION", L"SELECT 1;DELETE FROM SSR_VERSION;",
                    L"DELETE FROM SSR_VERSION WHERE 1=0; DELETE FROM SSR_VERSION",
                    L"SELECT 'a;b'; DELETE FROM SSR_VERSION",
                    L"SELECT 'it''s'; DELETE FROM SSR_VERSION",
                    L"SELECT \"NAME\" FROM SSR_VERSION; DELETE FROM SSR_VERSION",
                    L"SELECT 1 /* ; */; DELETE FROM SSR_VERSION",
                    L"SELECT 1 -- ;\n; DELETE FROM SSR_VERSION",
                    L"SELECT '\\'; DELETE FROM SSR_VERSION WHERE NAME <> '\\'",
                    L"SELECT 1 /*'*/; DELETE FROM SSR_VERSION WHERE NAME <> '/*'*/'",
                    L"SELECT N'x'; DELETE FROM SSR_VERSION",
                    L"SELECT 1;\t\r\n DELETE FROM SSR_VERSION", L"; DELETE FROM SSR_VERSION"));

TEST_F(OneStatement, SemicolonsInLiteralsAreData)
{
    EXPECT_EQ(ReadOne(database, L"SELECT '1; DELETE FROM SSR_VERSION' AS A", "A"),
              "1; DELETE FROM SSR_VERSION");
    EXPECT_TRUE(IsKept());
}

TEST_F(OneStatement, BackslashesInLiteralsAreData)
{
    EXPECT_EQ(ReadOne(database, L"SELECT 'a\\' AS A, '\\''; DELETE FROM SSR_VERSION' AS B", "B"),
              "\\'; DELETE FROM SSR_VERSION");
    EXPECT_EQ(ReadOne(database, L"SELECT 'a\\' AS A", "A"), "a\\");
    EXPECT_TRUE(IsKept());
}

TEST_F(OneStatement, DollarQuotesHideNoSecondStatement)
{
    if (database.GetDialect().product != Product::PostgreSql)
    {
        GTEST_SKIP() << "dollar quotes are PostgreSQL's";
    }
    ExpectRefused(L"SELECT $$'$$; DELETE FROM SSR_VERSION WHERE NAME <> $$'$$");
    ExpectRefused(L"SELECT $a$'$a$; DELETE FROM SSR_VERSION");
    ExpectRefused(L"SELECT E'\\''; DELETE FROM SSR_VERSION WHERE NAME <> '''");
    ExpectRefused(L"DO $$ BEGIN DELETE FROM SSR_VERSION; END $$");
}

TEST_F(OneStatement, CommentsThatTheServerRunsHideNone)
{
    if (database.GetDialect().product != Product::MariaDb)
    {
        GTEST_SKIP() << "comments that are run are MariaDB's";
    }
    ExpectRefused(L"SELECT 1 /*! ; DELETE FROM SSR_VERSION */");
    ExpectRefused(L"SELECT 1 # '\n; DELETE FROM SSR_VERSION WHERE NAME <> '#'");
    ExpectRefused(L"SELECT 1 --'\n; DELETE FROM SSR_VERSION WHERE NAME <> '--'");
}

// Shows that the refusal is ours: this driver would run both.
TEST_F(OneStatement, IsNotTheDriversDoing)
{
    if (database.GetDialect().product != Product::PostgreSql)
    {
        GTEST_SKIP() << "only PostgreSQL's driver runs several statements without being asked to";
    }
    tables.Execute(L"SELECT 1; DELETE FROM SSR_VERSION");

    EXPECT_FALSE(IsKept());
}

TEST_F(OneStatement, IsKeptToWhereTheConnectionStringAllowsSeveral)
{
    if (database.GetDialect().product != Product::MariaDb)
    {
        GTEST_SKIP() << "the option is that of MariaDB's driver";
    }
    Open(database, tables.ConnexionString() + ";OPTION=67108864"); // several statements a call
    ExpectRefused(L"SELECT 1; DELETE FROM SSR_VERSION");
}

// The driver manager cuts each letter to its low byte for a driver of narrow texts: U+0427 becomes
// an apostrophe, behind all that was looked at before.
TEST_F(OneStatement, IsKeptToWhereTheDriverWouldGetOtherLetters)
{
    if (database.GetDialect().product != Product::PostgreSql)
    {
        GTEST_SKIP() << "only PostgreSQL has a driver of narrow texts beside";
    }
    std::string connection = tables.ConnexionString();
    const std::string unicode = "PostgreSQL Unicode";
    connection.replace(connection.find(unicode), unicode.size(), "PostgreSQL ANSI");
    CDatabase narrow;
    Open(narrow, connection);
    const auto failure = FailureOf(
        [&]
        { narrow.ExecuteSQLW(L"SELECT '\u0427; DELETE FROM SSR_VERSION WHERE NAME <> \u0427'"); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->state, "HYC00");
    EXPECT_TRUE(IsKept());
}

TEST_F(OneStatement, IsNoSettingThatAConnectionMayLoseWithoutAWord)
{
    if (database.GetDialect().product != Product::MariaDb)
    {
        GTEST_SKIP() << "only MariaDB's driver connects anew by itself";
    }
    for (const char* setting : {";AUTO_RECONNECT=1", ";OPTION=4194304"})
    {
        CDatabase reconnecting;
        const auto failure =
            FailureOf([&] { Open(reconnecting, tables.ConnexionString() + setting); });
        ASSERT_TRUE(failure) << setting;
        EXPECT_THAT(failure->first, HasSubstr("lets the driver connect anew by itself"));
    }
}

TEST_F(OneStatement, LettersReachTheDriverThatTheTestsUse)
{
    EXPECT_EQ(ReadOneWide(database, L"SELECT '\u00E9\u0427\u02BC\uFF07' AS A", "A"),
              L"\u00E9\u0427\u02BC\uFF07");
}

TEST_F(OneStatement, LiteralsStayWhatTheyAreWhereTheServerTakesBackslashesForEscapes)
{
    switch (database.GetDialect().product)
    {
    case Product::PostgreSql:
        tables.Execute(L"ALTER ROLE CURRENT_USER SET standard_conforming_strings = off");
        break;
    case Product::MariaDb:
        tables.Execute(L"SET GLOBAL sql_mode = ''");
        break;
    default:
        GTEST_SKIP() << "this product knows no such escapes";
    }
    CDatabase later; // its connection string has a key of its own, so that no idle one serves it
    Open(later, tables.ConnexionString() + ";");

    EXPECT_EQ(ReadOne(later, L"SELECT 'a\\' AS A", "A"), "a\\");
    EXPECT_EQ(ReadOne(later, L"SELECT N'a\\' AS A", "A"), "a\\");
    if (database.GetDialect().product == Product::PostgreSql)
    {
        tables.Execute(L"ALTER ROLE CURRENT_USER RESET standard_conforming_strings");
    }
}

} // namespace
