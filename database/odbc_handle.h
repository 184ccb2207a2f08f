#pragma once

#include "database/odbc.h"

#include <utility>

namespace database
{

/// Runs what lets go of a handle, a second time where it fails: a handle is still there then, and
/// what holds it keeps its connection open at the server.
template <typename LettingGo>
void LetGo(const LettingGo& letGo) noexcept
{
    if (letGo() == SQL_ERROR)
    {
        letGo();
    }
}

/// Owns one ODBC handle of the given kind.
template <SQLSMALLINT Kind>
class OdbcHandle
{
public:
    OdbcHandle() noexcept = default;
    ~OdbcHandle() { Free(); }
    OdbcHandle(const OdbcHandle&) = delete;
    OdbcHandle& operator=(const OdbcHandle&) = delete;
    OdbcHandle(OdbcHandle&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    OdbcHandle& operator=(OdbcHandle&& other) noexcept
    {
        if (this != &other)
        {
            Free();
            m_handle = std::exchange(other.m_handle, nullptr);
        }
        return *this;
    }

    [[nodiscard]] SQLRETURN Allocate(SQLHANDLE parent)
    {
        Free();
        return SQLAllocHandle(Kind, parent, &m_handle);
    }

    void Free() noexcept
    {
        if (m_handle != nullptr)
        {
            LetGo([this] { return SQLFreeHandle(Kind, m_handle); });
            m_handle = nullptr;
        }
    }

    /// Forgets the handle without freeing it.
    void Abandon() noexcept { m_handle = nullptr; }

    SQLHANDLE Get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != nullptr; }

private:
    SQLHANDLE m_handle = nullptr;
};

using EnvironmentHandle = OdbcHandle<SQL_HANDLE_ENV>;
using ConnectionHandle = OdbcHandle<SQL_HANDLE_DBC>;
using StatementHandle = OdbcHandle<SQL_HANDLE_STMT>;

/// Disconnects a connection handle, which must outlive it: driver and server keep what a handle is
/// freed with while connected.
class Disconnector
{
public:
    explicit Disconnector(const ConnectionHandle& handle) noexcept : m_handle(handle) {}
    ~Disconnector()
    {
        if (m_connected)
        {
            // A connection with an open transaction cannot be closed.
            SQLEndTran(SQL_HANDLE_DBC, m_handle.Get(), SQL_ROLLBACK);
            LetGo([this] { return SQLDisconnect(m_handle.Get()); });
        }
    }
    Disconnector(const Disconnector&) = delete;
    Disconnector& operator=(const Disconnector&) = delete;

    void Connected() noexcept { m_connected = true; }
    /// Leaves the connection as it is.
    void Abandon() noexcept { m_connected = false; }

private:
    const ConnectionHandle& m_handle;
    bool m_connected = false;
};

} // namespace database
