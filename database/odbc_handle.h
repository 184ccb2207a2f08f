#pragma once

#include "database/odbc.h"

#include <utility>

namespace database
{

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
            SQLFreeHandle(Kind, m_handle);
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

} // namespace database
