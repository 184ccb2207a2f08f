// An ODBC driver without a database: it answers the statements of a check with canned rows at once
// and counts what it is asked for, so that what remains of a check's time is the program's own. It
// has the wide calls alone, gives itself out for PostgreSQL, whose columns are bound, and takes the
// number of rule lines from the connection string: DRIVER=…;RULES=20.

#include "benchmarks/null_driver/answers.h"
#include "benchmarks/null_driver/counts.h"

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using null_driver::Answer;
using null_driver::Counts;
using null_driver::Watcher;

using Counter = std::atomic<std::uint64_t>;
Counter g_connects;
Counter g_statements;
Counter g_fetches;
Counter g_bindings;
Counter g_metadata;
Counter g_values;

std::atomic<Watcher> g_watcher = nullptr;
std::atomic<void*> g_context = nullptr;

void Count(Counter& counter) noexcept
{
    counter.fetch_add(1, std::memory_order_relaxed);
}

struct Connection
{
    std::size_t rules = 0;
};

struct Binding
{
    SQLPOINTER target = nullptr; // null: not bound
    SQLLEN size = 0;
    SQLLEN* indicator = nullptr;
};

struct Statement
{
    explicit Statement(const Connection& its) : connection(its) {}

    const Connection& connection;
    std::vector<Binding> bindings; // by column
    Answer answer = {};
    std::size_t fetched = 0;
};

Statement& StatementOf(SQLHSTMT handle)
{
    return *static_cast<Statement*>(handle);
}

std::u16string_view TextOf(const SQLWCHAR* text, SQLINTEGER length)
{
    static_assert(sizeof(SQLWCHAR) == sizeof(char16_t));
    const auto* const units = reinterpret_cast<const char16_t*>(text);
    return length == SQL_NTS ? std::u16string_view(units)
                             : std::u16string_view(units, static_cast<std::size_t>(length));
}

std::size_t NumberBehind(std::u16string_view text, std::u16string_view key)
{
    std::size_t number = 0;
    std::size_t at = text.find(key);
    for (at = at == text.npos ? text.size() : at + key.size();
         at < text.size() && text[at] >= u'0' && text[at] <= u'9'; ++at)
    {
        number = number * 10 + static_cast<std::size_t>(text[at] - u'0');
    }
    return number;
}

/// Writes a value as ODBC does: cut at its room, with its whole length. Whether it was cut.
bool WriteValue(std::u16string_view value, const Binding& to)
{
    const std::size_t room = static_cast<std::size_t>(to.size) / sizeof(char16_t) - 1;
    const std::size_t units = std::min(value.size(), room);
    auto* const target = static_cast<char16_t*>(to.target);
    std::memcpy(target, value.data(), units * sizeof(char16_t));
    target[units] = u'\0';
    if (to.indicator != nullptr)
    {
        *to.indicator = static_cast<SQLLEN>(value.size() * sizeof(char16_t));
    }
    return units < value.size();
}

SQLRETURN WriteInfo(std::u16string_view value, SQLPOINTER target, SQLSMALLINT bytes,
                    SQLSMALLINT* length)
{
    SQLLEN told = 0;
    WriteValue(value, {target, bytes, &told});
    if (length != nullptr)
    {
        *length = static_cast<SQLSMALLINT>(told);
    }
    return SQL_SUCCESS;
}

template <typename Number>
SQLRETURN WriteNumber(Number value, SQLPOINTER target)
{
    std::memcpy(target, &value, sizeof value);
    return SQL_SUCCESS;
}

SQLRETURN Unanswered()
{
    Count(g_metadata);
    return SQL_ERROR;
}

} // namespace

extern "C"
{

    void SignUtilsNullDriverCounts(Counts* counts)
    {
        *counts = {g_connects, g_statements, g_fetches, g_bindings, g_metadata, g_values};
    }

    void SignUtilsNullDriverWatch(Watcher watcher, void* context)
    {
        g_context = context;
        g_watcher = watcher;
    }

    SQLRETURN SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE* handle)
    {
        static char environment = 0;
        switch (kind)
        {
        case SQL_HANDLE_ENV:
            *handle = &environment;
            return SQL_SUCCESS;
        case SQL_HANDLE_DBC:
            *handle = std::make_unique<Connection>().release();
            return SQL_SUCCESS;
        case SQL_HANDLE_STMT:
            *handle = std::make_unique<Statement>(*static_cast<Connection*>(parent)).release();
            return SQL_SUCCESS;
        default:
            return SQL_ERROR;
        }
    }

    SQLRETURN SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle)
    {
        if (kind == SQL_HANDLE_DBC)
        {
            const std::unique_ptr<Connection> owner(static_cast<Connection*>(handle));
        }
        else if (kind == SQL_HANDLE_STMT)
        {
            const std::unique_ptr<Statement> owner(static_cast<Statement*>(handle));
        }
        return SQL_SUCCESS;
    }

    SQLRETURN SQLSetEnvAttr(SQLHENV, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLSetConnectAttrW(SQLHDBC, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLSetStmtAttrW(SQLHSTMT, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLDriverConnectW(SQLHDBC connection, SQLHWND, SQLWCHAR* text, SQLSMALLINT length,
                                SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*, SQLUSMALLINT)
    {
        Count(g_connects);
        static_cast<Connection*>(connection)->rules = NumberBehind(TextOf(text, length), u"RULES=");
        return SQL_SUCCESS;
    }

    SQLRETURN SQLDisconnect(SQLHDBC)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLEndTran(SQLSMALLINT, SQLHANDLE, SQLSMALLINT)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLGetInfoW(SQLHDBC, SQLUSMALLINT what, SQLPOINTER value, SQLSMALLINT size,
                          SQLSMALLINT* length)
    {
        switch (what)
        {
        case SQL_DBMS_NAME:
            return WriteInfo(u"PostgreSQL", value, size, length);
        case SQL_DRIVER_NAME:
            return WriteInfo(u"null_driver", value, size, length);
        case SQL_DRIVER_ODBC_VER:
            return WriteInfo(u"03.51", value, size, length);
        case SQL_GETDATA_EXTENSIONS:
            return WriteNumber<SQLUINTEGER>(SQL_GD_ANY_COLUMN | SQL_GD_BOUND, value);
        case SQL_CURSOR_COMMIT_BEHAVIOR:
        case SQL_CURSOR_ROLLBACK_BEHAVIOR:
            return WriteNumber<SQLUSMALLINT>(SQL_CB_PRESERVE, value);
        default:
            return SQL_ERROR;
        }
    }

    SQLRETURN SQLNativeSqlW(SQLHDBC, SQLWCHAR* text, SQLINTEGER length, SQLWCHAR* native,
                            SQLINTEGER size, SQLINTEGER* nativeLength)
    {
        SQLLEN bytes = 0;
        WriteValue(
            TextOf(text, length),
            {native, static_cast<SQLLEN>(size) * static_cast<SQLLEN>(sizeof(SQLWCHAR)), &bytes});
        *nativeLength = static_cast<SQLINTEGER>(bytes / static_cast<SQLLEN>(sizeof(SQLWCHAR)));
        return SQL_SUCCESS;
    }

    SQLRETURN SQLExecDirectW(SQLHSTMT handle, SQLWCHAR* text, SQLINTEGER length)
    {
        Count(g_statements);
        const std::u16string_view statement = TextOf(text, length);
        if (const Watcher watcher = g_watcher.load(std::memory_order_acquire); watcher != nullptr)
        {
            watcher(statement.data(), statement.size(), g_context);
        }
        Statement& itself = StatementOf(handle);
        itself.answer = null_driver::AnswerTo(statement, itself.connection.rules);
        itself.fetched = 0;
        return SQL_SUCCESS;
    }

    SQLRETURN SQLBindCol(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER target,
                         SQLLEN size, SQLLEN* indicator)
    {
        if (type != SQL_C_WCHAR || column == 0)
        {
            return SQL_ERROR;
        }
        Count(g_bindings);
        std::vector<Binding>& bindings = StatementOf(handle).bindings;
        bindings.resize(std::max<std::size_t>(bindings.size(), column));
        bindings[column - 1U] = {target, size, indicator};
        return SQL_SUCCESS;
    }

    SQLRETURN SQLFetch(SQLHSTMT handle)
    {
        Count(g_fetches);
        Statement& statement = StatementOf(handle);
        const Answer& answer = statement.answer;
        if (statement.fetched == answer.rows)
        {
            return SQL_NO_DATA;
        }
        ++statement.fetched;
        bool cut = false;
        const std::size_t bound = std::min(statement.bindings.size(), answer.row.count);
        for (std::size_t column = 0; column < bound; ++column)
        {
            const Binding& to = statement.bindings[column];
            cut = (to.target != nullptr && WriteValue(answer.row.values[column], to)) || cut;
        }
        return cut ? SQL_SUCCESS_WITH_INFO : SQL_SUCCESS;
    }

    SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER target,
                         SQLLEN size, SQLLEN* indicator)
    {
        Count(g_values);
        const Statement& statement = StatementOf(handle);
        const null_driver::Row& row = statement.answer.row;
        if (type != SQL_C_WCHAR || statement.fetched == 0 || column == 0 || column > row.count)
        {
            return SQL_ERROR;
        }
        return WriteValue(row.values[column - 1U], {target, size, indicator})
                   ? SQL_SUCCESS_WITH_INFO
                   : SQL_SUCCESS;
    }

    SQLRETURN SQLRowCount(SQLHSTMT, SQLLEN* rows)
    {
        *rows = 1;
        return SQL_SUCCESS;
    }

    SQLRETURN SQLMoreResults(SQLHSTMT)
    {
        return SQL_NO_DATA;
    }

    SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
    {
        if (option == SQL_UNBIND)
        {
            StatementOf(handle).bindings.clear();
        }
        return SQL_SUCCESS;
    }

    SQLRETURN SQLCloseCursor(SQLHSTMT)
    {
        return SQL_SUCCESS;
    }

    SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count)
    {
        Count(g_metadata);
        *count = static_cast<SQLSMALLINT>(StatementOf(handle).answer.row.count);
        return SQL_SUCCESS;
    }

    SQLRETURN SQLDescribeColW(SQLHSTMT, SQLUSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLSMALLINT*,
                              SQLSMALLINT*, SQLULEN*, SQLSMALLINT*, SQLSMALLINT*)
    {
        return Unanswered();
    }

    SQLRETURN SQLColAttributeW(SQLHSTMT, SQLUSMALLINT, SQLUSMALLINT, SQLPOINTER, SQLSMALLINT,
                               SQLSMALLINT*, SQLLEN*)
    {
        return Unanswered();
    }

    SQLRETURN SQLColumnsW(SQLHSTMT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                          SQLSMALLINT, SQLWCHAR*, SQLSMALLINT)
    {
        return Unanswered();
    }

    SQLRETURN SQLTablesW(SQLHSTMT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*, SQLSMALLINT, SQLWCHAR*,
                         SQLSMALLINT, SQLWCHAR*, SQLSMALLINT)
    {
        return Unanswered();
    }

    SQLRETURN SQLGetTypeInfoW(SQLHSTMT, SQLSMALLINT)
    {
        return Unanswered();
    }

    SQLRETURN SQLGetDiagFieldW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER,
                               SQLSMALLINT, SQLSMALLINT*)
    {
        return SQL_NO_DATA;
    }

    SQLRETURN SQLGetDiagRecW(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLWCHAR*, SQLINTEGER*, SQLWCHAR*,
                             SQLSMALLINT, SQLSMALLINT*)
    {
        return SQL_NO_DATA;
    }

} // extern "C"
