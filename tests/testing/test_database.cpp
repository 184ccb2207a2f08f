#include "tests/testing/test_database.h"

#include "port/kernel.h"
#include "schema/scripts.h"

#include <gtest/gtest.h>

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

namespace testing_support
{

namespace
{

constexpr char32_t kReplacement = 0xFFFD;

/// The code points of wide text, whether wchar_t holds 16 or 32 bits.
std::u32string CodePoints(const std::wstring& text)
{
    std::u32string points;
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        auto point = static_cast<char32_t>(text[index]);
        if (sizeof(wchar_t) == 2 && point >= 0xD800 && point < 0xDC00 && index + 1 < text.size())
        {
            const auto low = static_cast<char32_t>(text[++index]);
            point = 0x10000 + ((point - 0xD800) << 10) + (low - 0xDC00);
        }
        points += point;
    }
    return points;
}

std::string ToUtf8(const std::wstring& text)
{
    std::string bytes;
    for (const char32_t point : CodePoints(text))
    {
        const auto tail = [&](int shift)
        { bytes += static_cast<char>(0x80 | ((point >> shift) & 0x3F)); };
        if (point < 0x80)
        {
            bytes += static_cast<char>(point);
        }
        else if (point < 0x800)
        {
            bytes += static_cast<char>(0xC0 | (point >> 6));
            tail(0);
        }
        else if (point < 0x10000)
        {
            bytes += static_cast<char>(0xE0 | (point >> 12));
            tail(6);
            tail(0);
        }
        else
        {
            bytes += static_cast<char>(0xF0 | (point >> 18));
            tail(12);
            tail(6);
            tail(0);
        }
    }
    return bytes;
}

std::u16string ToUtf16(const std::wstring& text)
{
    std::u16string units;
    for (const char32_t point : CodePoints(text))
    {
        if (point < 0x10000)
        {
            units += static_cast<char16_t>(point);
            continue;
        }
        units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
    return units;
}

std::wstring FromUtf16(const std::u16string& units)
{
    std::wstring text;
    for (std::size_t index = 0; index < units.size(); ++index)
    {
        char32_t point = units[index];
        const bool pair = point >= 0xD800 && point < 0xDC00 && index + 1 < units.size();
        if (sizeof(wchar_t) > 2 && pair)
        {
            point = 0x10000 + ((point - 0xD800) << 10) + (units[++index] - 0xDC00U);
        }
        else if (sizeof(wchar_t) > 2 && point >= 0xD800 && point < 0xE000)
        {
            point = kReplacement;
        }
        text += static_cast<wchar_t>(point);
    }
    return text;
}

/// An ODBC handle, freed at the end of the scope.
class Handle
{
public:
    Handle(SQLSMALLINT kind, SQLHANDLE parent) : m_kind(kind)
    {
        SQLAllocHandle(kind, parent, &m_handle);
    }
    ~Handle()
    {
        if (m_handle != SQL_NULL_HANDLE)
        {
            SQLFreeHandle(m_kind, m_handle);
        }
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    SQLHANDLE Get() const noexcept { return m_handle; }

    std::string Diagnosis() const
    {
        std::array<SQLCHAR, 6> state{};
        std::array<SQLCHAR, 1024> text{};
        SQLINTEGER native = 0;
        SQLSMALLINT length = 0;
        SQLGetDiagRec(m_kind, m_handle, 1, state.data(), &native, text.data(),
                      static_cast<SQLSMALLINT>(text.size()), &length);
        return std::string(reinterpret_cast<const char*>(state.data())) + " " +
               reinterpret_cast<const char*>(text.data());
    }

private:
    SQLSMALLINT m_kind;
    SQLHANDLE m_handle = SQL_NULL_HANDLE;
};

/// One value of the current row, fetched in pieces until it is whole.
std::optional<std::wstring> ReadValue(const Handle& statement, SQLUSMALLINT column)
{
    std::u16string units;
    std::array<char16_t, 512> piece{};
    for (;;)
    {
        SQLLEN indicator = 0;
        const SQLRETURN result =
            SQLGetData(statement.Get(), column, SQL_C_WCHAR, piece.data(),
                       static_cast<SQLLEN>(piece.size() * sizeof(char16_t)), &indicator);
        if (result == SQL_NO_DATA)
        {
            break;
        }
        if (!SQL_SUCCEEDED(result))
        {
            ADD_FAILURE() << statement.Diagnosis();
            break;
        }
        if (indicator == SQL_NULL_DATA)
        {
            return std::nullopt;
        }
        units += piece.data();
        if (result == SQL_SUCCESS)
        {
            break;
        }
    }
    return FromUtf16(units);
}

} // namespace

struct TestDatabase::State
{
    State()
    {
        SQLSetEnvAttr(environment.Get(), SQL_ATTR_ODBC_VERSION,
                      reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    }
    ~State()
    {
        if (connection)
        {
            SQLDisconnect(connection->Get());
        }
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void Connect();
    void FindProduct();
    SQLRETURN Run(const Handle& statement, const std::wstring& text) const;

    std::string connexionString;
    Handle environment{SQL_HANDLE_ENV, SQL_NULL_HANDLE};
    std::unique_ptr<Handle> connection;
    schema::Product product = schema::Product::SQLite;
    bool shared = false; ///< on a server that other databases of this process use too
};

void TestDatabase::State::Connect()
{
    connection = std::make_unique<Handle>(SQL_HANDLE_DBC, environment.Get());
    std::string text = connexionString;
    const SQLRETURN result = SQLDriverConnect(
        connection->Get(), nullptr, reinterpret_cast<SQLCHAR*>(text.data()),
        static_cast<SQLSMALLINT>(text.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    if (!SQL_SUCCEEDED(result))
    {
        const std::string diagnosis = connection->Diagnosis();
        connection.reset();
        FAIL() << connexionString << "\n" << diagnosis;
    }
    FindProduct();
}

void TestDatabase::State::FindProduct()
{
    std::array<char, 64> name{};
    SQLSMALLINT length = 0;
    SQLGetInfo(connection->Get(), SQL_DBMS_NAME, name.data(), static_cast<SQLSMALLINT>(name.size()),
               &length);
    const auto found = schema::FindProduct(name.data());
    ASSERT_TRUE(found.has_value()) << "no table definitions for " << name.data();
    product = *found;
}

// The SQLite driver has no wide entry points; the driver manager would convert by the locale.
SQLRETURN TestDatabase::State::Run(const Handle& statement, const std::wstring& text) const
{
    if (product == schema::Product::SQLite)
    {
        std::string bytes = ToUtf8(text);
        return SQLExecDirect(statement.Get(), reinterpret_cast<SQLCHAR*>(bytes.data()),
                             static_cast<SQLINTEGER>(bytes.size()));
    }
    std::u16string units = ToUtf16(text);
    return SQLExecDirectW(statement.Get(), reinterpret_cast<SQLWCHAR*>(units.data()),
                          static_cast<SQLINTEGER>(units.size()));
}

namespace
{

// A waiting connection polls the lock for so many milliseconds. Nothing a test writes has to
// outlive a power cut, so no write waits for the disk.
constexpr const char* kSqliteOptions = ";Timeout=20000;SyncPragma=OFF;";

/// How many of a server's databases this process has in use: the first one is that of the
/// connection string.
int g_sharedInUse = 0;

/// A connection string with another DATABASE.
std::string WithDatabase(std::string connexionString, const std::string& name)
{
    std::string upper = connexionString;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](char each)
                   { return each >= 'a' && each <= 'z' ? static_cast<char>(each - 32) : each; });
    const std::string key = ";DATABASE=";
    const std::size_t found = upper.find(key);
    if (found == std::string::npos)
    {
        return connexionString + key + name;
    }
    const std::size_t begin = found + key.size();
    const std::size_t end = std::min(connexionString.find(';', begin), connexionString.size());
    return connexionString.replace(begin, end - begin, name);
}

} // namespace

TestDatabase::TestDatabase() : m_state(std::make_unique<State>())
{
    const char* other = std::getenv("SIGNUTILS_TEST_DB");
    const bool shared = other != nullptr && *other != '\0';
    m_state->connexionString =
        shared ? other : "Driver=SQLite3;Database=" + m_folder.Path("rules.db") + kSqliteOptions;
    m_state->Connect();
    m_state->shared = shared;
    if (shared && ++g_sharedInUse > 1)
    {
        MoveToOwnDatabase();
    }
    else if (shared)
    {
        for (const std::string& table : schema::TableNames())
        {
            Execute(L"DROP TABLE IF EXISTS " + std::wstring(table.begin(), table.end()));
        }
    }
    for (const schema::Script& script : schema::UpgradeScripts(m_state->product))
    {
        for (const std::wstring& statement : schema::SplitStatements(script.text))
        {
            Execute(statement);
        }
        Execute(L"INSERT INTO SSR_VERSION (VERSION, NAME) VALUES (" +
                std::to_wstring(script.number) + L", '" + script.name + L"')");
    }
}

TestDatabase::~TestDatabase()
{
    if (m_state->shared)
    {
        --g_sharedInUse;
    }
}

void TestDatabase::MoveToOwnDatabase()
{
    const std::string name = "signutils_other" + std::to_string(g_sharedInUse);
    const std::wstring wide(name.begin(), name.end());
    // Connections that wait in a pool would hold the one of an earlier test.
    const bool held = m_state->product == schema::Product::PostgreSQL;
    Execute(L"DROP DATABASE IF EXISTS " + wide + (held ? L" WITH (FORCE)" : L""));
    Execute(L"CREATE DATABASE " + wide);
    const std::string connexionString = WithDatabase(m_state->connexionString, name);
    m_state = std::make_unique<State>();
    m_state->connexionString = connexionString;
    m_state->shared = true;
    m_state->Connect();
}

const std::string& TestDatabase::ConnexionString() const noexcept
{
    return m_state->connexionString;
}

void TestDatabase::Execute(const std::wstring& statement)
{
    ASSERT_TRUE(m_state->connection) << "no connection";
    const Handle handle(SQL_HANDLE_STMT, m_state->connection->Get());
    const SQLRETURN result = m_state->Run(handle, statement);
    // A statement that changes no row answers SQL_NO_DATA.
    EXPECT_TRUE(SQL_SUCCEEDED(result) || result == SQL_NO_DATA) << handle.Diagnosis() << "\n"
                                                                << ToUtf8(statement);
}

std::vector<Row> TestDatabase::Query(const std::wstring& statement)
{
    std::vector<Row> rows;
    if (!m_state->connection)
    {
        ADD_FAILURE() << "no connection";
        return rows;
    }
    const Handle handle(SQL_HANDLE_STMT, m_state->connection->Get());
    if (!SQL_SUCCEEDED(m_state->Run(handle, statement)))
    {
        ADD_FAILURE() << handle.Diagnosis() << "\n" << ToUtf8(statement);
        return rows;
    }
    SQLSMALLINT columns = 0;
    SQLNumResultCols(handle.Get(), &columns);
    while (SQL_SUCCEEDED(SQLFetch(handle.Get())))
    {
        Row row;
        for (SQLSMALLINT column = 1; column <= columns; ++column)
        {
            row.push_back(ReadValue(handle, static_cast<SQLUSMALLINT>(column)));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

std::wstring TestDatabase::Literal(const std::wstring& text) const
{
    std::wstring literal = m_state->product == schema::Product::SQLite ? L"'" : L"N'";
    for (const wchar_t letter : text)
    {
        literal.append(letter == L'\'' ? 2 : 1, letter);
    }
    return literal + L'\'';
}

} // namespace testing_support
