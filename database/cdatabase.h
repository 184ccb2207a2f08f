#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace database
{
class Connection;
struct Dialect;
} // namespace database

/// A connection to a database through ODBC. One thread at a time.
class CDatabase
{
public:
    /// Options of OpenEx; every connection of the library is opened with both. No dialog is ever
    /// shown.
    static constexpr std::uint32_t kUseCursorLib = 0x04;
    static constexpr std::uint32_t kNoOdbcDialog = 0x08;

    CDatabase();
    virtual ~CDatabase();
    CDatabase(const CDatabase&) = delete;
    CDatabase& operator=(const CDatabase&) = delete;

    /// Opens, from the idle pool where one of exactly this connection string waits. Windows-1252.
    /// Raises CDBException*.
    void OpenEx(const char* connexionString, std::uint32_t options);
    bool IsOpen() const noexcept;

    /// Runs one statement that gives no rows and returns the number of rows it changed (-1 when
    /// the driver does not say). A text that would run as more than one statement is refused.
    /// Raises CDBException*.
    std::int64_t ExecuteSQLW(const wchar_t* statement);

    /// An empty text to make the next statement of this connection in, valid until the next call of
    /// this function: its memory serves for one statement after the other. Raises CDBException*.
    std::wstring& NewStatementText();

    /// One transaction: Begin, then Commit or Rollback. Without Begin every statement is its own.
    void BeginTransaction();
    void CommitTransaction();
    void RollbackTransaction();

    /// Gives the connection back to the idle pool, or closes it when it raised an error.
    void Close() noexcept;

    /// What is known of the connected product; only while open.
    const database::Dialect& GetDialect() const;
    /// For database/ alone.
    database::Connection& GetConnection();

private:
    database::Connection& RequireOpen() const;

    // Shared with the cursors open on it, so that one that lives longer keeps its connection.
    std::shared_ptr<database::Connection> m_connection;
};
