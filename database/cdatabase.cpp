#include "database/cdatabase.h"

#include "database/connection.h"
#include "database/guard_database.h"
#include "database/idle_pool.h"
#include "port/cancellation.h"

#include <string>
#include <utility>

// A thread is cancelled between two calls only: inside one, the driver manager's locks would stay
// held for the whole process.

CDatabase::CDatabase() = default;

CDatabase::~CDatabase()
{
    Close();
}

void CDatabase::OpenEx(const char* connexionString, std::uint32_t)
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    Close();
    const std::string key = connexionString == nullptr ? "" : connexionString;
    m_connection = database::TakeIdleConnection(key);
    if (m_connection == nullptr)
    {
        m_connection = std::make_shared<database::Connection>(key);
    }
}

bool CDatabase::IsOpen() const noexcept
{
    return m_connection != nullptr;
}

std::int64_t CDatabase::ExecuteSQLW(const wchar_t* statement)
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    return GetConnection().Execute(statement == nullptr ? L"" : statement);
}

std::wstring& CDatabase::NewStatementText()
{
    return RequireOpen().NewText();
}

void CDatabase::BeginTransaction()
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    GetConnection().Begin();
}

void CDatabase::CommitTransaction()
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    GetConnection().Commit();
}

void CDatabase::RollbackTransaction()
{
    port::CancellationPoint();
    const port::CancellationHold hold;
    GetConnection().Rollback();
}

void CDatabase::Close() noexcept
{
    if (m_connection == nullptr)
    {
        return;
    }
    const port::CancellationHold hold;
    // Where there is no memory to keep the connection, it is closed.
    database::GuardDatabase([this] { database::PutIdleConnection(std::move(m_connection)); },
                            [](const CDBException&) {}, [] {});
    m_connection.reset();
}

const database::Dialect& CDatabase::GetDialect() const
{
    return RequireOpen().GetDialect();
}

database::Connection& CDatabase::GetConnection()
{
    return RequireOpen();
}

database::Connection& CDatabase::RequireOpen() const
{
    if (m_connection == nullptr)
    {
        database::RaiseRefusal("08003", "The database is not open.", {"CDatabase", L""});
    }
    return *m_connection;
}
