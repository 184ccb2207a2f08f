#include "benchmarks/raw_checks.h"

#include "benchmarks/check_statements.h"
#include "database/odbc.h"

#include <stdexcept>
#include <string_view>

namespace benchmarks
{

namespace
{

void Require(SQLRETURN result, const char* what)
{
    if (!SQL_SUCCEEDED(result))
    {
        throw std::runtime_error(std::string("bare ODBC calls: ") + what + " fails");
    }
}

SQLWCHAR* Units(std::u16string& text)
{
    return reinterpret_cast<SQLWCHAR*>(text.data());
}

struct Environment
{
    Environment()
    {
        SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &handle);
        SQLSetEnvAttr(handle, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0);
    }
    ~Environment() { SQLFreeHandle(SQL_HANDLE_ENV, handle); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

    SQLHENV handle = SQL_NULL_HENV;
};

class Connection
{
public:
    Connection(SQLHENV environment, const std::string& connexionString)
    {
        SQLAllocHandle(SQL_HANDLE_DBC, environment, &m_handle);
        std::u16string text(connexionString.begin(), connexionString.end());
        Require(SQLDriverConnectW(m_handle, nullptr, Units(text), SQL_NTS, nullptr, 0, nullptr,
                                  SQL_DRIVER_NOPROMPT),
                "connecting");
    }
    ~Connection()
    {
        SQLDisconnect(m_handle);
        SQLFreeHandle(SQL_HANDLE_DBC, m_handle);
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    SQLHDBC Get() const { return m_handle; }

private:
    SQLHDBC m_handle = SQL_NULL_HDBC;
};

/// One statement handle with its columns bound; none for a statement without rows.
class Shape
{
public:
    Shape(const Connection& connection, std::vector<std::size_t> lengths)
        : m_lengths(std::move(lengths)), m_indicators(m_lengths.size())
    {
        Require(SQLAllocHandle(SQL_HANDLE_STMT, connection.Get(), &m_handle), "a statement");
        for (std::size_t column = 0; column < m_lengths.size(); ++column)
        {
            std::u16string& buffer = m_buffers.emplace_back(m_lengths[column] + 1, u'\0');
            m_bytes.push_back(static_cast<SQLLEN>(buffer.size() * sizeof(char16_t)));
        }
        for (std::size_t column = 0; column < m_lengths.size(); ++column)
        {
            Require(SQLBindCol(m_handle, static_cast<SQLUSMALLINT>(column + 1), SQL_C_WCHAR,
                               m_buffers[column].data(), m_bytes[column], &m_indicators[column]),
                    "binding");
        }
    }
    ~Shape() { SQLFreeHandle(SQL_HANDLE_STMT, m_handle); }
    Shape(const Shape&) = delete;
    Shape& operator=(const Shape&) = delete;

    std::uint64_t Run(std::u16string& statement)
    {
        Require(
            SQLExecDirectW(m_handle, Units(statement), static_cast<SQLINTEGER>(statement.size())),
            "a statement");
        std::uint64_t rows = 0;
        while (!m_lengths.empty() && SQL_SUCCEEDED(SQLFetch(m_handle)))
        {
            ++rows;
        }
        SQLFreeStmt(m_handle, SQL_CLOSE);
        return rows;
    }

private:
    SQLHSTMT m_handle = SQL_NULL_HSTMT;
    std::vector<std::size_t> m_lengths;
    std::vector<std::u16string> m_buffers;
    std::vector<SQLLEN> m_bytes;
    std::vector<SQLLEN> m_indicators;
};

} // namespace

struct RawChecks::State
{
    State(const std::string& connexionString, const std::vector<std::u16string>& texts)
        : rules(environment.handle, connexionString), history(environment.handle, connexionString),
          journal(environment.handle, connexionString)
    {
        for (const std::u16string& each : texts)
        {
            steps.push_back({&ShapeOf(each), each, IsEvent(each)});
        }
    }

    Shape& ShapeOf(std::u16string_view statement)
    {
        if (statement.starts_with(u"SELECT C.CUID"))
        {
            return ruleLines;
        }
        if (statement.starts_with(u"SELECT H.HUID"))
        {
            return holders;
        }
        return statement.starts_with(u"INSERT INTO HST_") ? historyRow : journalRow;
    }

    Environment environment;
    Connection rules;
    Connection history;
    Connection journal;
    Shape ruleLines{rules, {64, 8, 11, 11, 8, 8, 11, 11, 11, 20, 64, 64, 11, 32, 11}};
    Shape holders{rules, {64, 8, 255, 255, 20, 255, 64, 32}};
    Shape historyRow{history, {}};
    Shape journalRow{journal, {}};
    struct Step
    {
        Shape* shape;
        std::u16string statement;
        bool isEvent;
    };
    std::vector<Step> steps;
};

RawChecks::RawChecks(const std::string& connexionString,
                     const std::vector<std::u16string>& statements)
    : m_state(std::make_unique<State>(connexionString, statements))
{
}

RawChecks::~RawChecks() = default;

std::uint64_t RawChecks::RunOnce()
{
    std::uint64_t rows = 0;
    for (State::Step& each : m_state->steps)
    {
        if (each.isEvent)
        {
            RenewKey(each.statement);
        }
        rows += each.shape->Run(each.statement);
    }
    return rows;
}

} // namespace benchmarks
