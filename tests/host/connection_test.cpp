#include "host/connection.h"

#include "host/refusal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace
{

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

host::Connection ConnectionOf(const std::string& text)
{
    host::OptionValues values;
    values.AddUnlessThere("db", {text, "option --db"});
    return host::ConnectionFrom(values);
}

std::string RefusalOfConnection(const std::string& text)
{
    try
    {
        ConnectionOf(text);
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        return refusal.what();
    }
    return "accepted";
}

TEST(Connection, IsShownWithoutItsPassword)
{
    EXPECT_THAT(ConnectionOf("Driver=X;UID=check;PWD=s3cret;Server=db").shown,
                AllOf(Not(HasSubstr("s3cret")), HasSubstr("UID=check"), HasSubstr("PWD=***"),
                      HasSubstr("Server=db")));
    EXPECT_THAT(ConnectionOf("Driver=X;password={a;b}c}};Server=db").shown, Not(HasSubstr("a;b")));
}

TEST(Connection, IsHandedOnAsItWasGiven)
{
    EXPECT_EQ(ConnectionOf("Driver=X;PWD=é").text, "Driver=X;PWD=\xE9");
}

TEST(Connection, EmptyOnesAreRefused)
{
    EXPECT_THAT(RefusalOfConnection(""),
                AllOf(HasSubstr("option --db"), HasSubstr("empty"), HasSubstr("Driver=SQLite3")));
    EXPECT_THAT(RefusalOfConnection("  "), HasSubstr("empty"));
}

TEST(Connection, AnEmbeddedDatabaseWithoutAFileIsRefused)
{
    for (const std::string text :
         {"Driver=SQLite3", "Driver={SQLite3};Database=", "DRIVER=sqlite3;Timeout=100;PWD=s3cret"})
    {
        EXPECT_THAT(RefusalOfConnection(text),
                    AllOf(HasSubstr("option --db"), HasSubstr("names no database file"),
                          HasSubstr("Database="), Not(HasSubstr("s3cret"))));
    }
    EXPECT_EQ(ConnectionOf("DSN=Bank").text, "DSN=Bank");
    EXPECT_EQ(ConnectionOf("Driver=SQLite3;DSN=Bank").text, "Driver=SQLite3;DSN=Bank");
}

TEST(Connection, BrokenOnesAreRefusedWithoutTheirPassword)
{
    EXPECT_THAT(RefusalOfConnection("Driver=X;PWD=top;secret"),
                AllOf(HasSubstr("braces"), Not(HasSubstr("top")), Not(HasSubstr("secret"))));
}

TEST(Connection, CharactersWithoutPlaceAreRefusedWithoutThePassword)
{
    EXPECT_THAT(RefusalOfConnection("Driver=X;Database=/tmp/Ж.db;PWD=s3cret"),
                AllOf(HasSubstr("'Ж'"), HasSubstr("Windows-1252"), Not(HasSubstr("s3cret"))));
    EXPECT_THAT(RefusalOfConnection("Driver=X;PWD=Жopa"),
                AllOf(HasSubstr("password"), Not(HasSubstr("Жopa"))));
}

TEST(Connection, ATextThatIsNoneIsToldItsForm)
{
    EXPECT_THAT(RefusalOfConnection("hello"),
                AllOf(HasSubstr("option --db: The connection string has no '='"),
                      HasSubstr("KEY=value"), HasSubstr("Give one such as \"Driver=SQLite3;")));
}

TEST(Connection, AMissingOneIsExplained)
{
    try
    {
        host::ConnectionFrom(host::OptionValues());
        ADD_FAILURE();
    }
    catch (const host::Refusal& refusal)
    {
        EXPECT_EQ(refusal.Status(), host::kUsage);
        EXPECT_THAT(refusal.what(), AllOf(HasSubstr("--db"), HasSubstr("SIGNCHECK_DB")));
    }
}

} // namespace
