#pragma once

#include "database/connection_string.h"
#include "database/diagnostics.h"
#include "database/dialect.h"
#include "database/odbc_handle.h"
#include "database/odbc_text.h"
#include "database/query_shape.h"
#include "database/statement_scanner.h"
#include "port/file_identity.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace database
{

/// One ODBC connection with what is known of its product. One thread at a time.
///
/// Shared between the CDatabase and the cursors open on it, so that a cursor that lives longer
/// keeps its connection. Every failure raises CDBException* and keeps the connection out of the
/// idle pool.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    /// `connexionString` is Windows-1252.
    explicit Connection(const std::string& connexionString);
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    const std::string& Key() const noexcept { return m_key; }
    const Dialect& GetDialect() const noexcept { return *m_dialect; }
    /// Whether columns are bound; a value that does not fit can then be read again.
    bool BindsColumns() const noexcept { return m_bindsColumns; }
    /// From now on each value is asked for on its own, whatever the dialect says.
    void ReadValuesOneByOne() noexcept { m_bindsColumns = false; }

    /// What the driver tells of itself or the product, one of ODBC's SQL_… of texts.
    std::string InfoText(SQLUSMALLINT fact);

    StatementHandle NewStatement(std::string_view operation);
    /// Runs a statement on a handle without an open result. Refuses a text that is more than one.
    void Run(const StatementHandle& handle, std::wstring_view statement,
             std::string_view operation);
    /// Runs to the end of every result; rows changed by the first, -1 when the driver does not say.
    std::int64_t Execute(std::wstring_view statement);

    /// An empty text to make the next statement in; its memory stays for those after it.
    std::wstring& NewText() noexcept
    {
        m_text.clear();
        return m_text;
    }

    /// The shape that a query of this layout left behind, or null. A layout lives as long as the
    /// program.
    std::unique_ptr<QueryShape> TakeShape(const RowLayout* layout) noexcept;
    /// Ends the query, and with it the locks that the reading holds. Keeps the shape for the next
    /// query of its layout where that may be bound to it, else frees it.
    void PutShape(std::unique_ptr<QueryShape> shape) noexcept;

    void Begin();
    void Commit();
    void Rollback();

    /// Raises what the driver says of a call on `statement` that failed.
    [[noreturn]] void RaiseFrom(SQLRETURN returnCode, const StatementHandle& statement,
                                const Attempt& attempt);
    [[noreturn]] void Refuse(const char* state, std::string_view text, const Attempt& attempt);

    /// Makes the connection fit for another user; false when it must be closed instead.
    [[nodiscard]] bool Release() noexcept;
    /// Whether a connection that has been idle still reaches its database.
    [[nodiscard]] bool IsAlive() noexcept;

    /// Forgets the handles without a word to the server; for a process that was forked off.
    void Abandon() noexcept;

private:
    void Connect(const ConnectionString& connexionString);
    void TryConnect(const ConnectionString& connexionString);
    void LearnProduct();
    void SetUpSession(const ConnectionString& connexionString);
    void SetUpSqlite(const ConnectionString& connexionString);
    void CheckConnection(SQLRETURN returnCode, std::string_view operation);
    [[noreturn]] void Raise(SQLRETURN returnCode, const DriverHandle& handle,
                            const Attempt& attempt);
    void EndTransaction(SQLSMALLINT completion, std::string_view operation);
    [[nodiscard]] bool SetAutocommit(bool on) noexcept;
    /// Refuses the statement about to go out when its letters would be others behind the driver
    /// manager.
    void RequireLettersKept(const Attempt& attempt);
    SQLRETURN ExecuteOutgoing(const StatementHandle& handle);
    StatementHandle TakeSpareStatement();
    void PutSpareStatement(StatementHandle statement) noexcept;
    std::wstring FirstText(std::wstring_view query, SQLUSMALLINT column);

    std::string m_key;
    std::vector<std::string> m_secrets; // of the key
    std::uint32_t m_timeoutSeconds;     // 0: the driver's own
    TextCrossing m_crossing;
    const Dialect* m_dialect;
    bool m_bindsColumns = false;
    bool m_keepsLetters = false; // known when the first letter beyond ASCII has been sent
    bool m_inTransaction = false;
    bool m_failed = false;
    bool m_sessionTouched = false; // ran something that may leave a setting behind
    std::string m_filePath;        // SQLite's file, UTF-8; empty for a database in memory
    port::FileIdentity m_file;
    // Disconnected, then freed, then its environment: members go in reverse order, those of a
    // connection whose set-up failed too.
    EnvironmentHandle m_environment;
    ConnectionHandle m_handle;
    Disconnector m_disconnector{m_handle};
    // Kept from one statement to the next: handles, and the memory of texts on their way.
    StatementHandle m_spareStatement;
    std::array<std::unique_ptr<QueryShape>, 4> m_idleShapes;
    std::wstring m_text;
    ScannedStatement m_scanned;
    OutgoingText m_outgoing;
};

} // namespace database
