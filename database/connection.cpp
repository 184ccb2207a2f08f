#include "database/connection.h"

#include "database/cdbexception.h"
#include "database/connect_turn.h"
#include "database/driver_letters.h"
#include "database/guard_database.h"
#include "port/environment.h"
#include "support/codepage.h"
#include "support/measures.h"
#include "support/numbers.h"
#include "support/utf16.h"

#include <algorithm>
#include <utility>

namespace database
{

namespace
{

// Long enough for another process's burst of history rows, short enough for a waiting customer.
constexpr std::uint32_t kSqliteBusySeconds = 30;
constexpr std::uint32_t kLongestTimeoutSeconds = 24 * 60 * 60;

std::uint32_t ConfiguredTimeout()
{
    const std::int32_t seconds =
        support::ToInt32(port::Environment("SIGNUTILS_DB_TIMEOUT").c_str());
    return std::min(static_cast<std::uint32_t>(std::max(seconds, 0)), kLongestTimeoutSeconds);
}

SQLPOINTER AttributeValue(SQLULEN value) noexcept
{
    // ODBC passes numbers of attributes as pointers.
    return reinterpret_cast<SQLPOINTER>(value); // NOLINT(performance-no-int-to-ptr)
}

/// Whether a failed connect reached its driver: the driver manager answers with IM states, or
/// 01000, when it cannot find or load one.
bool ComesFromDriver(const CDBException& raised)
{
    const std::string_view state = raised.GetState();
    return state.substr(0, 2) != "IM" && state != "01000";
}

constexpr const char* kOpen = "OpenEx";
constexpr const char* kExecute = "ExecuteSQLW";

} // namespace

Connection::Connection(const std::string& connexionString)
    : m_key(connexionString), m_timeoutSeconds(ConfiguredTimeout()),
      m_crossing(TextCrossing::Utf16), m_dialect(&DialectOf(""))
{
    const ConnectionString parsed(connexionString);
    if (!parsed.Fault().empty())
    {
        Refuse("08001", parsed.Fault(), {kOpen, L""});
    }
    m_secrets = parsed.Secrets();
    Connect(parsed);
    LearnProduct();
    SetUpSession(parsed);
}

void Connection::Connect(const ConnectionString& connexionString)
{
    const std::string driver = connexionString.Value("DRIVER");
    m_crossing = ConnectCrossing(m_key, driver);
    ConnectTurn turn(driver.empty() ? "DSN " + connexionString.Value("DSN") : driver);
    try
    {
        TryConnect(connexionString);
    }
    catch (const CDBException* raised)
    {
        if (ComesFromDriver(*raised))
        {
            turn.Reached();
        }
        throw;
    }
    turn.Reached();
}

void Connection::TryConnect(const ConnectionString& connexionString)
{
    // Without memory for an environment there is no handle that could tell more.
    if (!SQL_SUCCEEDED(m_environment.Allocate(SQL_NULL_HANDLE)) ||
        !SQL_SUCCEEDED(SQLSetEnvAttr(m_environment.Get(), SQL_ATTR_ODBC_VERSION,
                                     AttributeValue(SQL_OV_ODBC3), 0)) ||
        !SQL_SUCCEEDED(m_handle.Allocate(m_environment.Get())))
    {
        Refuse("HY001", "The driver manager gives no connection handle.", {kOpen, L""});
    }
    if (m_timeoutSeconds > 0)
    {
        // A driver without this attribute says so and connects with its own time-out.
        SQLSetConnectAttr(m_handle.Get(), SQL_ATTR_LOGIN_TIMEOUT, AttributeValue(m_timeoutSeconds),
                          SQL_IS_UINTEGER);
    }
    OutgoingText text;
    text.Set(support::WideFromNarrow(m_key), m_crossing);
    const SQLRETURN result = text.Connect(m_handle.Get());
    if (!SQL_SUCCEEDED(result))
    {
        const std::wstring shown = support::WideFromNarrow(connexionString.Masked());
        Raise(result, {SQL_HANDLE_DBC, m_handle.Get()}, {kOpen, shown});
    }
    m_disconnector.Connected();
}

void Connection::LearnProduct()
{
    m_dialect = &DialectOf(InfoText(SQL_DBMS_NAME));
    // Not guessed where it is not told: statements would cross in the other way and lose letters.
    m_crossing = StatementCrossing(*m_dialect, m_dialect->product == Product::Sqlite
                                                   ? InfoText(SQL_DRIVER_NAME)
                                                   : std::string());

    SQLUINTEGER extensions = 0;
    const SQLRETURN known = SQLGetInfo(m_handle.Get(), SQL_GETDATA_EXTENSIONS, &extensions,
                                       static_cast<SQLSMALLINT>(sizeof extensions), nullptr);
    m_bindsColumns = m_dialect->bindsColumns && SQL_SUCCEEDED(known) &&
                     (extensions & SQL_GD_BOUND) != 0 && (extensions & SQL_GD_ANY_COLUMN) != 0;
}

std::string Connection::InfoText(SQLUSMALLINT fact)
{
    char text[256] = {};
    SQLSMALLINT length = 0;
    CheckConnection(
        SQLGetInfo(m_handle.Get(), fact, text, static_cast<SQLSMALLINT>(sizeof text - 1), &length),
        kOpen);
    return text;
}

void Connection::SetUpSession(const ConnectionString& connexionString)
{
    // The new one would not have been told what a backslash means.
    if (m_dialect->product == Product::MariaDb && connexionString.AllowsSilentReconnect())
    {
        Refuse("08001",
               "The connection string lets the driver connect anew by itself, which loses the "
               "settings of the session: leave AUTO_RECONNECT and its bit 4194304 of OPTION out.",
               {kOpen, L""});
    }
    if (m_dialect->connectStatement != nullptr)
    {
        Execute(m_dialect->connectStatement);
    }
    if (m_dialect->product == Product::Sqlite)
    {
        SetUpSqlite(connexionString);
    }
    m_sessionTouched = false;
}

void Connection::SetUpSqlite(const ConnectionString& connexionString)
{
    // The driver's own key, in milliseconds, comes before ours.
    if (connexionString.Value("Timeout").empty())
    {
        const std::uint32_t seconds = m_timeoutSeconds > 0 ? m_timeoutSeconds : kSqliteBusySeconds;
        Execute(L"PRAGMA busy_timeout = " + std::to_wstring(seconds * 1000));
    }
    m_filePath = support::Utf8FromWide(FirstText(L"PRAGMA database_list", 3));
    m_file = port::IdentifyFile(m_filePath);
}

std::wstring Connection::FirstText(std::wstring_view query, SQLUSMALLINT column)
{
    constexpr std::size_t kUnits = 4096;
    const StatementHandle statement = NewStatement(kOpen);
    Run(statement, query, kOpen);
    const Attempt attempt{kOpen, query};
    std::u16string text(kUnits, u'\0');
    SQLLEN indicator = 0;
    SQLRETURN result = SQLFetch(statement.Get());
    if (SQL_SUCCEEDED(result))
    {
        result = SQLGetData(statement.Get(), column, SQL_C_WCHAR, OdbcUnits(text.data()),
                            static_cast<SQLLEN>(kUnits * sizeof(char16_t)), &indicator);
    }
    if (!SQL_SUCCEEDED(result))
    {
        RaiseFrom(result, statement, attempt);
    }
    return support::WideFromUtf16(text.substr(0, text.find(u'\0')));
}

StatementHandle Connection::NewStatement(std::string_view operation)
{
    StatementHandle handle;
    CheckConnection(handle.Allocate(m_handle.Get()), operation);
    if (m_timeoutSeconds > 0)
    {
        // A driver without this attribute says so and goes on without a limit.
        SQLSetStmtAttr(handle.Get(), SQL_ATTR_QUERY_TIMEOUT, AttributeValue(m_timeoutSeconds),
                       SQL_IS_UINTEGER);
    }
    return handle;
}

void Connection::Run(const StatementHandle& handle, std::wstring_view statement,
                     std::string_view operation)
{
    const Attempt attempt{operation, statement};
    ScanStatement(statement, m_dialect->lexicon, m_scanned);
    if (!m_scanned.single)
    {
        Refuse("42000", "The text would run as more than one statement.", attempt);
    }
    m_outgoing.Set(m_scanned.text, m_crossing);
    RequireLettersKept(attempt);
    m_sessionTouched = m_sessionTouched || !m_scanned.plainData;
    const SQLRETURN result = ExecuteOutgoing(handle);
    if (!SQL_SUCCEEDED(result) && result != SQL_NO_DATA)
    {
        RaiseFrom(result, handle, attempt);
    }
}

SQLRETURN Connection::ExecuteOutgoing(const StatementHandle& handle)
{
    const support::Stopwatch time(&support::Measures::statementTime);
    return m_outgoing.ExecuteDirect(handle.Get());
}

void Connection::RequireLettersKept(const Attempt& attempt)
{
    if (m_crossing != TextCrossing::Utf16 || m_keepsLetters || m_outgoing.IsAscii())
    {
        return;
    }
    m_keepsLetters = KeepsLetters(m_handle.Get());
    if (!m_keepsLetters)
    {
        Refuse("HYC00",
               "The driver does not take Unicode text, so that letters of the statement would "
               "become others: use the product's Unicode driver.",
               attempt);
    }
}

std::int64_t Connection::Execute(std::wstring_view statement)
{
    StatementHandle handle = TakeSpareStatement();
    Run(handle, statement, kExecute);
    SQLLEN rows = -1;
    if (!SQL_SUCCEEDED(SQLRowCount(handle.Get(), &rows)))
    {
        rows = -1;
    }
    // Some products tell of a failure only with a later result, of a trigger for instance.
    SQLRETURN more = SQLMoreResults(handle.Get());
    while (SQL_SUCCEEDED(more))
    {
        more = SQLMoreResults(handle.Get());
    }
    if (more != SQL_NO_DATA)
    {
        RaiseFrom(more, handle, {kExecute, statement});
    }
    PutSpareStatement(std::move(handle));
    return rows;
}

StatementHandle Connection::TakeSpareStatement()
{
    return m_spareStatement ? std::move(m_spareStatement) : NewStatement(kExecute);
}

// Drivers that do not fill bound columns are not trusted with a second statement on a handle
// either.
void Connection::PutSpareStatement(StatementHandle statement) noexcept
{
    if (m_bindsColumns && SQL_SUCCEEDED(SQLFreeStmt(statement.Get(), SQL_CLOSE)))
    {
        m_spareStatement = std::move(statement);
    }
}

std::unique_ptr<QueryShape> Connection::TakeShape(const RowLayout* layout) noexcept
{
    for (std::unique_ptr<QueryShape>& each : m_idleShapes)
    {
        if (m_bindsColumns && layout != nullptr && each != nullptr && each->layout == layout)
        {
            return std::exchange(each, nullptr);
        }
    }
    return nullptr;
}

void Connection::PutShape(std::unique_ptr<QueryShape> shape) noexcept
{
    const auto place = std::find(m_idleShapes.begin(), m_idleShapes.end(), nullptr);
    if (!m_bindsColumns || m_failed || shape->layout == nullptr || place == m_idleShapes.end() ||
        !SQL_SUCCEEDED(SQLFreeStmt(shape->statement.Get(), SQL_CLOSE)))
    {
        return;
    }
    for (Column& each : shape->columns)
    {
        // Long values are rare, and may be very long.
        if (!each.longValue.empty())
        {
            std::u16string().swap(each.longValue);
        }
    }
    *place = std::move(shape);
}

void Connection::Begin()
{
    const char* const operation = "BeginTransaction";
    if (m_inTransaction)
    {
        Refuse("25001", "A transaction is open already.", {operation, L""});
    }
    if (!SetAutocommit(false))
    {
        Raise(SQL_ERROR, {SQL_HANDLE_DBC, m_handle.Get()}, {operation, L""});
    }
    m_inTransaction = true;
}

void Connection::Commit()
{
    EndTransaction(SQL_COMMIT, "CommitTransaction");
}

void Connection::Rollback()
{
    EndTransaction(SQL_ROLLBACK, "RollbackTransaction");
}

void Connection::EndTransaction(SQLSMALLINT completion, std::string_view operation)
{
    if (!m_inTransaction)
    {
        Refuse("25000", "No transaction is open.", {operation, L""});
    }
    CheckConnection(SQLEndTran(SQL_HANDLE_DBC, m_handle.Get(), completion), operation);
    m_inTransaction = false;
    CheckConnection(SetAutocommit(true) ? SQL_SUCCESS : SQL_ERROR, operation);
}

bool Connection::SetAutocommit(bool on) noexcept
{
    return SQL_SUCCEEDED(SQLSetConnectAttr(
        m_handle.Get(), SQL_ATTR_AUTOCOMMIT,
        AttributeValue(on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF), SQL_IS_UINTEGER));
}

void Connection::CheckConnection(SQLRETURN returnCode, std::string_view operation)
{
    if (!SQL_SUCCEEDED(returnCode))
    {
        Raise(returnCode, {SQL_HANDLE_DBC, m_handle.Get()}, {operation, L""});
    }
}

void Connection::RaiseFrom(SQLRETURN returnCode, const StatementHandle& statement,
                           const Attempt& attempt)
{
    Raise(returnCode, {SQL_HANDLE_STMT, statement.Get()}, attempt);
}

void Connection::Raise(SQLRETURN returnCode, const DriverHandle& handle, const Attempt& attempt)
{
    m_failed = true;
    RaiseDriverError(returnCode, handle, {m_crossing, m_secrets}, attempt);
}

void Connection::Refuse(const char* state, std::string_view text, const Attempt& attempt)
{
    m_failed = true;
    RaiseRefusal(state, text, attempt);
}

bool Connection::Release() noexcept
{
    // A setting that one user made must not meet the next one, nor may a database in memory,
    // which begins anew with every connection.
    const bool inMemory = m_dialect->product == Product::Sqlite && m_filePath.empty();
    if (m_failed || m_sessionTouched || inMemory)
    {
        return false;
    }
    if (m_inTransaction)
    {
        m_inTransaction = false;
        return SQL_SUCCEEDED(SQLEndTran(SQL_HANDLE_DBC, m_handle.Get(), SQL_ROLLBACK)) &&
               SetAutocommit(true);
    }
    return true;
}

bool Connection::IsAlive() noexcept
{
    if (m_dialect->product == Product::Sqlite)
    {
        // Where the file was removed or replaced, rows would go to one that nobody sees.
        return port::IdentifyFile(m_filePath) == m_file;
    }
    if (m_dialect->probeStatement == nullptr)
    {
        return false;
    }
    return GuardDatabase([this] { Execute(m_dialect->probeStatement); }, [](const CDBException&) {},
                         [] {});
}

void Connection::Abandon() noexcept
{
    m_spareStatement.Abandon();
    for (const std::unique_ptr<QueryShape>& each : m_idleShapes)
    {
        if (each != nullptr)
        {
            each->statement.Abandon();
        }
    }
    m_disconnector.Abandon();
    m_handle.Abandon();
    m_environment.Abandon();
}

} // namespace database
