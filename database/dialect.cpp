#include "database/dialect.h"

#include <algorithm>
#include <cstddef>

namespace database
{

namespace
{

// Where wchar_t is no UTF-16 the driver manager is unixODBC, which would convert a wide connection
// string for the SQLite driver by the locale and lose letters.
constexpr TextCrossing kSqliteConnectCrossing =
    sizeof(wchar_t) == sizeof(char16_t) ? TextCrossing::Utf16 : TextCrossing::Utf8;

constexpr Dialect kDialects[] = {
    {Product::Sqlite,
     "SQLite",
     TextCrossing::Utf8,
     true,
     {.dropsNationalPrefix = true,
      .rewritesNow = true,
      .knowsComments = true,
      .backtickQuotes = true,
      .bracketQuotes = true,
      .doubtful = L""},
     nullptr,
     nullptr},
    {Product::PostgreSql,
     "PostgreSQL",
     TextCrossing::Utf16,
     true,
     {.escapeLiterals = true, .doubtful = L"`$"},
     L"SET standard_conforming_strings = on",
     L"SELECT 1"},
    // N'…' is of MariaDB's three-byte character set there and refuses letters beyond U+FFFF; a
    // plain literal has the connection's set, which the driver's wide calls make the four-byte one.
    // Its driver counts letters beyond ASCII wrongly in bound columns: a value longer than its
    // buffer fails the fetch or comes cut without a word.
    {Product::MariaDb,
     "MariaDB",
     TextCrossing::Utf16,
     false,
     {.dropsNationalPrefix = true, .backtickQuotes = true, .doubtful = L"#"},
     L"SET SESSION sql_mode = CONCAT(@@SESSION.sql_mode, ',NO_BACKSLASH_ESCAPES')",
     L"SELECT 1"},
    {Product::MariaDb,
     "MySQL",
     TextCrossing::Utf16,
     false,
     {.dropsNationalPrefix = true, .backtickQuotes = true, .doubtful = L"#"},
     L"SET SESSION sql_mode = CONCAT(@@SESSION.sql_mode, ',NO_BACKSLASH_ESCAPES')",
     L"SELECT 1"},
    {Product::SqlServer,
     "Microsoft SQL Server",
     TextCrossing::Utf16,
     false,
     {.doubledBrackets = true, .bareStatements = true, .doubtful = L"`"},
     nullptr,
     L"SELECT 1"},
    {Product::Other,
     "",
     TextCrossing::Utf16,
     false,
     {.backslashEscapes = true, .escapeLiterals = true, .doubtful = L"`[#$"},
     nullptr,
     nullptr},
};

char AsciiLower(char character) noexcept
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool EqualIgnoringCase(char left, char right) noexcept
{
    return AsciiLower(left) == AsciiLower(right);
}

bool IsAscii(std::string_view text) noexcept
{
    return std::all_of(text.begin(), text.end(),
                       [](char each) { return static_cast<unsigned char>(each) < 0x80; });
}

} // namespace

const Dialect& DialectOf(std::string_view productName) noexcept
{
    // The last entry has an empty name, so that it answers for every other product.
    return *std::find_if(std::begin(kDialects), std::end(kDialects) - 1,
                         [productName](const Dialect& each)
                         {
                             const std::string_view name = each.name;
                             return productName.size() >= name.size() &&
                                    std::equal(name.begin(), name.end(), productName.begin(),
                                               EqualIgnoringCase);
                         });
}

TextCrossing StatementCrossing(const Dialect& dialect, std::string_view driverFile) noexcept
{
    // The SQLite driver has wide entry points of its own on Windows alone, and there a manager
    // would convert narrow texts by the machine's code page. Asked by its file, not by the
    // platform: a Windows manager may hand on to a driver of another system.
    constexpr std::string_view kWindowsEnding = ".dll";
    const bool onWindows = driverFile.size() > kWindowsEnding.size() &&
                           std::equal(kWindowsEnding.begin(), kWindowsEnding.end(),
                                      driverFile.end() - kWindowsEnding.size(), EqualIgnoringCase);
    return dialect.product == Product::Sqlite && onWindows ? TextCrossing::Utf16 : dialect.crossing;
}

TextCrossing ConnectCrossing(std::string_view connexionString, std::string_view driver) noexcept
{
    // Wide calls tell a driver that has both kinds that the program speaks Unicode, so they come
    // first wherever no letter can be lost.
    constexpr std::string_view kSqlite = "sqlite";
    const bool sqlite = std::search(driver.begin(), driver.end(), kSqlite.begin(), kSqlite.end(),
                                    EqualIgnoringCase) != driver.end();
    return sqlite && !IsAscii(connexionString) ? kSqliteConnectCrossing : TextCrossing::Utf16;
}

} // namespace database
