#include "database/dialect.h"
#include "tests/database/sqlite_file.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace database_tests;

namespace
{

struct CrossingCase
{
    const char* name;
    std::wstring text;
    const char* stored; ///< the bytes in the file, hexadecimal
    const char* narrow; ///< Windows-1252
};

void PrintTo(const CrossingCase& each, std::ostream* stream)
{
    *stream << each.name;
}

const std::wstring kCrossingSmiley = sizeof(wchar_t) == 2
                                         ? std::wstring{wchar_t(0xD83D), wchar_t(0xDE00)}
                                         : std::wstring(1, static_cast<wchar_t>(0x1F600));

const CrossingCase kCrossingCases[] = {
    {"PlainLetters", L"Ana Ruiz", "416E61205275697A", "Ana Ruiz"},
    {"Accents",
     L"Ren\x00E9"
     L"e \x00C9t\x00E9",
     "52656EC3A96520C38974C3A9",
     "Ren\xE9"
     "e \xC9t\xE9"},
    {"Euro",
     L"\x20AC"
     L"5",
     "E282AC35",
     "\x80"
     "5"},
    {"LetterWithoutAPlace",
     L"\x0416"
     L"a",
     "D09661", "?a"},
    {"BeyondTheFirstPlane", L"a" + kCrossingSmiley + L"b", "61F09F988062", "a?b"},
    {"Apostrophe", L"O'Brien", "4F27427269656E", "O'Brien"},
    {"Backslash", L"A\\'B", "415C2742", "A\\'B"},
};

class TextCrossing : public testing::TestWithParam<CrossingCase>
{
protected:
    TextCrossing() { Open(m_database, m_file.ConnexionString()); }

    SqliteFile m_file;
    CDatabase m_database;
};

std::wstring Doubled(std::wstring text)
{
    for (std::size_t at = text.find(L'\''); at != std::wstring::npos; at = text.find(L'\'', at + 2))
    {
        text.insert(at, 1, L'\'');
    }
    return text;
}

TEST_P(TextCrossing, KeepsEveryLetterBothWays)
{
    m_database.ExecuteSQLW(L"CREATE TABLE T (A NVARCHAR(20))");
    m_database.ExecuteSQLW(
        (L"INSERT INTO T VALUES (N'" + Doubled(GetParam().text) + L"')").c_str());

    EXPECT_EQ(ReadOne(m_database, L"SELECT hex(A) AS H FROM T", "H"), GetParam().stored);
    EXPECT_EQ(ReadOneWide(m_database, L"SELECT A FROM T", "A"), GetParam().text);
    EXPECT_EQ(ReadOne(m_database, L"SELECT A FROM T", "A"), GetParam().narrow);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextCrossing, testing::ValuesIn(kCrossingCases),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(StatementCrossing, SqliteIsWideWithTheDriverOfWindowsAlone)
{
    using database::DialectOf;
    using database::StatementCrossing;
    constexpr auto kWide = database::TextCrossing::Utf16;
    constexpr auto kNarrow = database::TextCrossing::Utf8;

    EXPECT_EQ(StatementCrossing(DialectOf("SQLite"), "sqlite3odbc.dll"), kWide);
    EXPECT_EQ(StatementCrossing(DialectOf("SQLite"), "SQLITE3ODBC.DLL"), kWide);
    EXPECT_EQ(StatementCrossing(DialectOf("SQLite"), "libsqlite3odbc.so"), kNarrow);
    EXPECT_EQ(StatementCrossing(DialectOf("SQLite"), ""), kNarrow);
    EXPECT_EQ(StatementCrossing(DialectOf("PostgreSQL"), "psqlodbcw.so"), kWide);
    EXPECT_EQ(StatementCrossing(DialectOf("PostgreSQL"), "psqlodbcw.dll"), kWide);
}

TEST(ConnectCrossing, UsesNarrowCallsForSqliteOnlyWhereALetterWouldBeLost)
{
    using database::ConnectCrossing;
    const auto narrow =
        sizeof(wchar_t) == 2 ? database::TextCrossing::Utf16 : database::TextCrossing::Utf8;

    EXPECT_EQ(ConnectCrossing("Database=a", "SQLite3"), database::TextCrossing::Utf16);
    EXPECT_EQ(ConnectCrossing("Database=\xE9", "libsqlite3odbc.so"), narrow);
    EXPECT_EQ(ConnectCrossing("Database=\xE9", "PostgreSQL Unicode"),
              database::TextCrossing::Utf16);
}

} // namespace
