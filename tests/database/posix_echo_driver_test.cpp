// What is left of a password when a driver repeats the connection string in its messages. The
// driver is loaded by its path, which only the driver manager of POSIX takes in place of a name.

#include "database/idle_pool.h"
#include "tests/database/sqlite_file.h"
#include "tests/testing/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using namespace database_tests;

namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

std::string EchoConnection(const std::string& more)
{
    return "DRIVER=" SIGNUTILS_ECHO_DRIVER ";UID=bank;" + more;
}

std::string AllOfIt(const Failure& failure)
{
    return failure.first + "\n" + failure.second + "\n" + failure.text;
}

TEST(EchoingDriver, RepeatsTheConnectionStringAndSoTestsSomething)
{
    CDatabase database;
    const auto failure = FailureOf([&] { Open(database, EchoConnection("Server=wire")); });

    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->state, "28000");
    EXPECT_THAT(failure->first, AllOf(HasSubstr("no luck with"), HasSubstr("Server=wire")));
}

class EchoedPassword : public testing::TestWithParam<const char*>
{
};

TEST_P(EchoedPassword, StandsInNoTextOfARefusedConnection)
{
    CDatabase database;
    const auto failure = FailureOf([&] { Open(database, EchoConnection(GetParam())); });

    ASSERT_TRUE(failure);
    EXPECT_THAT(AllOfIt(*failure), AllOf(HasSubstr("UID=bank"), HasSubstr("***"),
                                         Not(HasSubstr("sen")), Not(HasSubstr("tinel"))));
}

TEST_P(EchoedPassword, StandsInNoTextOfARefusedStatement)
{
    const std::string connection = EchoConnection(std::string("ECHO=CONNECT;") + GetParam());
    CDatabase database;
    Open(database, connection);

    const auto executed = FailureOf([&] { database.ExecuteSQLW(L"DELETE FROM T"); });
    const auto queried = FailureOf([&] { ReadOne(database, L"SELECT A FROM T", "A"); });

    for (const auto& failure : {executed, queried})
    {
        ASSERT_TRUE(failure);
        EXPECT_THAT(AllOfIt(*failure), AllOf(HasSubstr("no luck with"), Not(HasSubstr("sen")),
                                             Not(HasSubstr("tinel"))));
    }
}

INSTANTIATE_TEST_SUITE_P(Spellings, EchoedPassword,
                         testing::Values("PWD=sentinel", "pwd=sentinel;X=1", "Password=sentinel",
                                         "PASSWORD = sentinel ", "PWD={sentinel}",
                                         "PWD={sen;tinel}", "PWD={sen}}tinel};Port=1",
                                         "Pwd={sen tinel}", "pqopt={password=sentinel}",
                                         "pqopt={user=x password = sentinel sslmode=off}",
                                         "SSLPassword=sentinel", "AccessToken=sentinel",
                                         "PWD=x;sentinel=y", "PWD=x;y=sentinel"));

/// The code in which the driver repeats a password with an accent, without its key.
class BareEchoedPassword : public testing::TestWithParam<const char*>
{
protected:
    static constexpr const char* kPassword = "s\xE9ntinel";

    static void ExpectHidden(const std::string& driver)
    {
        CDatabase database;
        const auto failure = FailureOf(
            [&]
            { Open(database, "DRIVER=" + driver + ";BARE=" + GetParam() + ";PWD=" + kPassword); });

        ASSERT_TRUE(failure);
        // Where a driver before this one has set a locale of UTF-8, the driver manager does not end
        // the text that it converts: what lies behind it in memory counts to the password.
        EXPECT_THAT(AllOfIt(*failure),
                    AllOf(HasSubstr("no luck with \"***"), Not(HasSubstr("ntinel"))));
    }
};

TEST_P(BareEchoedPassword, StandsInNoText)
{
    ExpectHidden(SIGNUTILS_ECHO_DRIVER);
}

// A driver that is called so is spoken to in narrow texts.
TEST_P(BareEchoedPassword, StandsInNoTextOfADriverOfNarrowTexts)
{
    const testing_support::TemporaryFolder folder;
    const std::string driver = folder.Path("libsqlite-echo.so");
    std::filesystem::copy_file(SIGNUTILS_ECHO_DRIVER, driver);

    ExpectHidden(driver);
}

INSTANTIATE_TEST_SUITE_P(Codes, BareEchoedPassword,
                         testing::Values("given", "1252", "utf8", "marks"));

TEST(EchoingDriver, GetsNoLettersThatTheDriverManagerWouldMakeOthers)
{
    CDatabase database;
    Open(database, EchoConnection("ECHO=CONNECT"));

    // U+0427 is an apostrophe when it is cut to its low byte, U+02BC by its looks.
    for (const wchar_t* text : {L"SELECT '\u0427'", L"SELECT '\u02BC'", L"SELECT '\u00E9'"})
    {
        const auto failure = FailureOf([&] { database.ExecuteSQLW(text); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->first, "[HYC00] The driver does not take Unicode text, so that letters "
                                  "of the statement would become others: use the product's "
                                  "Unicode driver.");
    }
    const auto plain = FailureOf([&] { database.ExecuteSQLW(L"SELECT 'a'"); });
    ASSERT_TRUE(plain);
    EXPECT_THAT(plain->first, HasSubstr("no luck with")) << "it reached the driver";
}

} // namespace
