#include "database/connection_string.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace
{

using database::ConnectionString;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(ConnectionStringText, GivesValuesWithoutRegardToTheKeysCase)
{
    const ConnectionString text(" Driver = {SQLite3} ; Database=/tmp/a b.db;Empty=;");

    EXPECT_EQ(text.Fault(), "");
    EXPECT_EQ(text.Value("DRIVER"), "SQLite3");
    EXPECT_EQ(text.Value("DATABASE"), "/tmp/a b.db");
    EXPECT_EQ(text.Value("Empty"), "");
    EXPECT_EQ(text.Value("Missing"), "");
}

TEST(ConnectionStringText, TakesSemicolonsAndDoubledBracesInBraces)
{
    const ConnectionString text("DSN=x;PWD={a;b}}c};UID=u");

    EXPECT_EQ(text.Value("PWD"), "a;b}c");
    EXPECT_EQ(text.Value("UID"), "u");
}

TEST(ConnectionStringText, PutsAValueInThePlaceOfEveryOlderOne)
{
    const ConnectionString text("Driver={My Driver};database=a;PWD={x;}}y};DATABASE=b");

    EXPECT_EQ(text.With("Database", "c"), "Driver={My Driver};PWD={x;}}y};Database=c;");
    EXPECT_EQ(ConnectionString(text.With("Database", " a;b}")).Value("database"), " a;b}");
    EXPECT_EQ(text.With("Port", ""), "Driver={My Driver};database=a;PWD={x;}}y};DATABASE=b;Port=;");
}

TEST(ConnectionStringText, MasksEveryPassword)
{
    const ConnectionString text("DRIVER={X};UID=u;Pwd=secret1;PASSWORD={sec;ret}}2};Port=1;"
                                "pqopt={password=secret3}");

    EXPECT_EQ(text.Masked(), "DRIVER={X};UID=u;Pwd=***;PASSWORD=***;Port=1;pqopt=***;");
    EXPECT_THAT(text.Secrets(),
                ElementsAre("secret1", "sec;ret}2", "sec;ret}}2", "password=secret3", "secret3"));
}

TEST(ConnectionStringText, HidesWhatMayBeTheRestOfAPasswordWithASemicolon)
{
    const ConnectionString text("DRIVER=X;Timeout=1;Other=2;PWD=sec;ret=3;more=4;UID=u;Other=5");

    EXPECT_EQ(text.Masked(), "DRIVER=X;Timeout=1;Other=2;PWD=***;***;***;UID=u;Other=5;");
    EXPECT_THAT(text.Secrets(), ElementsAre("sec", "ret=3", "3", "more=4", "4"));
}

TEST(ConnectionStringText, TellsWhetherTheDriverMayConnectAnewByItself)
{
    for (const char* text : {"DSN=x;AUTO_RECONNECT=1", "DSN=x;auto_reconnect={1}",
                             "DSN=x;OPTION=4194304", "DSN=x;Options=71303168"})
    {
        EXPECT_TRUE(ConnectionString(text).AllowsSilentReconnect()) << text;
    }
    for (const char* text : {"DSN=x", "DSN=x;AUTO_RECONNECT=0", "DSN=x;OPTION=67108864"})
    {
        EXPECT_FALSE(ConnectionString(text).AllowsSilentReconnect()) << text;
    }
}

struct Fault
{
    const char* name;
    const char* text;
    const char* fault;
};

void PrintTo(const Fault& each, std::ostream* stream)
{
    *stream << each.name;
}

const Fault kFaults[] = {
    {"Empty", "", "The connection string is empty."},
    {"Blank", " \t", "The connection string is empty."},
    {"NoEqualsSign", "hello",
     "The connection string has no '=' in its first part; it is made of KEY=value parts, joined by "
     "semicolons."},
    {"SemicolonInAPassword", "DRIVER=X;PWD=sec;ret",
     "The connection string has no '=' in the part behind entry 2; a value with a semicolon must "
     "stand in braces."},
    {"NoKey", "DRIVER=X;=1", "The connection string has a '=' without a key before it."},
    {"OpenBrace", "DRIVER=X;PWD={secret",
     "The connection string never closes the brace of the value in its part 2."},
    {"OpenBraceInAPasswordWithASemicolon", "DRIVER=X;PWD=sec;secret={x",
     "The connection string never closes the brace of the value in its part 3."},
    {"NeitherDriverNorDsn", "Database=x;UID=y",
     "The connection string names no database: it has neither DRIVER nor DSN."},
    {"EmptyDriver", "DRIVER=;Database=x",
     "The connection string names no database: it has neither DRIVER nor DSN."},
    {"EmptyPartsAreNoFault", ";DRIVER=X;;", ""},
    {"DsnAlone", "DSN=x", ""},
};

class ConnectionStringFault : public testing::TestWithParam<Fault>
{
};

TEST_P(ConnectionStringFault, IsToldWithoutAnyValue)
{
    const ConnectionString text(GetParam().text);

    EXPECT_EQ(text.Fault(), GetParam().fault);
    EXPECT_THAT(text.Fault(), Not(HasSubstr("secret")));
}

INSTANTIATE_TEST_SUITE_P(Texts, ConnectionStringFault, testing::ValuesIn(kFaults),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
