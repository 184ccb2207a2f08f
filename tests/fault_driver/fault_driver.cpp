#include "tests/fault_driver/text_calls.h"

#include "tests/fault_driver/faults.h"
#include "tests/testing/odbc_texts.h"

#include <algorithm>
#include <memory>

namespace fault_driver
{

namespace
{

ConnectionHandle& ConnectionIn(SQLHANDLE handle)
{
    return *static_cast<ConnectionHandle*>(handle);
}

StatementHandle& StatementIn(SQLHANDLE handle)
{
    return *static_cast<StatementHandle*>(handle);
}

SQLRETURN AllocEnvironment(SQLHANDLE* handle)
{
    EnvironmentHandle nobody;
    return Pass(Entry::AllocEnvironment, nobody,
                [&]
                {
                    *handle = new EnvironmentHandle;
                    ++TheControl().environmentHandles.allocated;
                    return SQL_SUCCESS;
                });
}

SQLRETURN AllocConnection(EnvironmentHandle& parent, SQLHANDLE* handle)
{
    const std::size_t number = ++TheControl().connections;
    return Pass({Entry::AllocConnection, number, 0, 0, 0, false}, parent,
                [&]
                {
                    auto* const made = new ConnectionHandle;
                    made->number = number;
                    *handle = made;
                    ++TheControl().connectionHandles.allocated;
                    return SQL_SUCCESS;
                });
}

SQLRETURN AllocStatement(ConnectionHandle& parent, SQLHANDLE* handle)
{
    Control& control = TheControl();
    control.statements.push_back({parent.number, ""});
    Call call = CallOn(Entry::AllocStatement, parent);
    call.statement = control.statements.size();
    return Pass(call, parent,
                [&]
                {
                    auto made = std::make_unique<StatementHandle>();
                    made->number = call.statement;
                    made->connection = &parent;
                    const SQLRETURN result =
                        parent.driver->allocHandle(SQL_HANDLE_STMT, parent.real, &made->real);
                    if (SQL_SUCCEEDED(result))
                    {
                        *handle = made.release();
                        ++control.statementHandles.allocated;
                    }
                    return result;
                });
}

SQLRETURN FreeEnvironment(SQLHANDLE handle)
{
    auto* const environment = static_cast<EnvironmentHandle*>(handle);
    return PassLast(Entry::FreeEnvironment, *environment,
                    [&]
                    {
                        delete environment;
                        ++TheControl().environmentHandles.freed;
                        return SQL_SUCCESS;
                    });
}

/// The real handles behind a connection; also after a connect that was made to fail behind them.
void LetGo(ConnectionHandle& connection)
{
    if (connection.connected)
    {
        connection.driver->disconnect(connection.real);
        connection.connected = false;
    }
    if (connection.real != nullptr)
    {
        connection.driver->freeHandle(SQL_HANDLE_DBC, connection.real);
        connection.real = nullptr;
    }
    if (connection.realEnvironment != nullptr)
    {
        connection.driver->freeHandle(SQL_HANDLE_ENV, connection.realEnvironment);
        connection.realEnvironment = nullptr;
    }
}

SQLRETURN FreeConnection(ConnectionHandle& connection)
{
    return PassLast(Entry::FreeConnection, connection,
                    [&]
                    {
                        LetGo(connection);
                        delete &connection;
                        ++TheControl().connectionHandles.freed;
                        return SQL_SUCCESS;
                    });
}

SQLRETURN FreeStatement(StatementHandle& statement)
{
    return PassLast(Entry::FreeStatement, statement,
                    [&]
                    {
                        const SQLRETURN result = statement.connection->driver->freeHandle(
                            SQL_HANDLE_STMT, statement.real);
                        if (SQL_SUCCEEDED(result))
                        {
                            delete &statement;
                            ++TheControl().statementHandles.freed;
                        }
                        return result;
                    });
}

bool MakeRealHandles(ConnectionHandle& connection)
{
    const RealDriver& driver = *connection.driver;
    if (!SQL_SUCCEEDED(driver.allocHandle(SQL_HANDLE_ENV, nullptr, &connection.realEnvironment)) ||
        !SQL_SUCCEEDED(driver.setEnvAttr(connection.realEnvironment, SQL_ATTR_ODBC_VERSION,
                                         reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3), 0)) ||
        !SQL_SUCCEEDED(
            driver.allocHandle(SQL_HANDLE_DBC, connection.realEnvironment, &connection.real)))
    {
        return false;
    }
    for (const ConnectionHandle::Attribute& each : connection.early)
    {
        driver.setConnectAttr(connection.real, each.name, each.value, each.length);
    }
    return true;
}

/// Takes one "KEY=value;" out of a connection string and gives the value.
std::string TakeKey(std::string& connexion, const std::string& key)
{
    const std::size_t begin = (";" + connexion).find(";" + key + "=");
    if (begin == std::string::npos)
    {
        return "";
    }
    const std::size_t end = std::min(connexion.find(';', begin), connexion.size());
    const std::size_t value = begin + key.size() + 1;
    std::string taken = connexion.substr(value, end - value);
    connexion.erase(begin, end - begin + 1);
    return taken;
}

SQLRETURN Connect(ConnectionHandle& connection, std::string connexion)
{
    TakeKey(connexion, "DRIVER");
    connection.driver = LoadRealDriver(TakeKey(connexion, "FAULT_DRIVER"));
    if (connection.driver == nullptr || !MakeRealHandles(connection))
    {
        connection.diagnosis = {"IM003", 0, "the real driver cannot be loaded"};
        return SQL_ERROR;
    }
    const SQLRETURN result = connection.driver->driverConnect(
        connection.real, nullptr, reinterpret_cast<SQLCHAR*>(connexion.data()),
        static_cast<SQLSMALLINT>(connexion.size()), nullptr, 0, nullptr, SQL_DRIVER_NOPROMPT);
    connection.connected = SQL_SUCCEEDED(result);
    return result;
}

} // namespace

const testing_support::Diagnosis& DiagnosisOf(SQLSMALLINT kind, SQLHANDLE handle)
{
    switch (kind)
    {
    case SQL_HANDLE_ENV:
        return static_cast<EnvironmentHandle*>(handle)->diagnosis;
    case SQL_HANDLE_DBC:
        return ConnectionIn(handle).diagnosis;
    default:
        return StatementIn(handle).diagnosis;
    }
}

SQLRETURN ConnectBy(SQLHDBC handle, const std::string& connexion)
{
    ConnectionHandle& connection = ConnectionIn(handle);
    return Pass(Entry::Connect, connection, [&] { return Connect(connection, connexion); });
}

SQLRETURN ExecuteText(SQLHSTMT handle, std::string text)
{
    StatementHandle& statement = StatementIn(handle);
    std::vector<Statement>& statements = TheControl().statements;
    // The next statement of a handle that has run one already.
    if (!statements[statement.number - 1].text.empty())
    {
        statements.push_back({statement.connection->number, ""});
        statement.number = statements.size();
    }
    statements[statement.number - 1].text = text;
    return Pass(Entry::Execute, statement,
                [&]
                {
                    return statement.connection->driver->execDirect(
                        statement.real, reinterpret_cast<SQLCHAR*>(text.data()),
                        static_cast<SQLINTEGER>(text.size()));
                });
}

SQLRETURN TellInfo(SQLHDBC handle, SQLUSMALLINT what, const InfoPlace& place)
{
    ConnectionHandle& connection = ConnectionIn(handle);
    if (connection.real == nullptr)
    {
        return SQL_ERROR;
    }
    Call call = CallOn(Entry::GetInfo, connection);
    call.attribute = what;
    return Pass(call, connection,
                [&]
                {
                    return connection.driver->getInfo(connection.real, what, place.value,
                                                      place.size, place.length);
                });
}

SQLRETURN TellColumn(SQLHSTMT handle, SQLUSMALLINT column, const ColumnPlace& place)
{
    StatementHandle& statement = StatementIn(handle);
    return Pass(Entry::DescribeColumn, statement,
                [&]
                {
                    return statement.connection->driver->describeCol(
                        statement.real, column, place.name, place.size, place.length, place.type,
                        place.columnSize, place.digits, place.nullable);
                });
}

} // namespace fault_driver

using namespace fault_driver;

extern "C"
{

    // Found by its name.
    fault_driver::Control* SignUtilsFaultDriverControl();

    fault_driver::Control* SignUtilsFaultDriverControl()
    {
        return &TheControl();
    }

    SQLRETURN SQLAllocHandle(SQLSMALLINT kind, SQLHANDLE parent, SQLHANDLE* handle)
    {
        switch (kind)
        {
        case SQL_HANDLE_ENV:
            return AllocEnvironment(handle);
        case SQL_HANDLE_DBC:
            return AllocConnection(*static_cast<EnvironmentHandle*>(parent), handle);
        case SQL_HANDLE_STMT:
            return AllocStatement(ConnectionIn(parent), handle);
        default:
            return SQL_ERROR;
        }
    }

    SQLRETURN SQLFreeHandle(SQLSMALLINT kind, SQLHANDLE handle)
    {
        switch (kind)
        {
        case SQL_HANDLE_ENV:
            return FreeEnvironment(handle);
        case SQL_HANDLE_DBC:
            return FreeConnection(ConnectionIn(handle));
        case SQL_HANDLE_STMT:
            return FreeStatement(StatementIn(handle));
        default:
            return SQL_ERROR;
        }
    }

    SQLRETURN SQLFreeStmt(SQLHSTMT handle, SQLUSMALLINT option)
    {
        StatementHandle& statement = StatementIn(handle);
        if (option == SQL_DROP)
        {
            return FreeStatement(statement);
        }
        return Pass(Entry::CloseStatement, statement,
                    [&] { return statement.connection->driver->freeStmt(statement.real, option); });
    }

    SQLRETURN SQLSetEnvAttr(SQLHENV handle, SQLINTEGER, SQLPOINTER, SQLINTEGER)
    {
        return Pass(Entry::SetEnvironment, *static_cast<EnvironmentHandle*>(handle),
                    [] { return SQL_SUCCESS; });
    }

    SQLRETURN SQLSetConnectAttr(SQLHDBC handle, SQLINTEGER name, SQLPOINTER value,
                                SQLINTEGER length)
    {
        ConnectionHandle& connection = ConnectionIn(handle);
        Call call = CallOn(Entry::SetConnection, connection);
        call.attribute = static_cast<unsigned>(name);
        return Pass(call, connection,
                    [&]() -> SQLRETURN
                    {
                        if (connection.real == nullptr)
                        {
                            connection.early.push_back({name, value, length});
                            return SQL_SUCCESS;
                        }
                        return connection.driver->setConnectAttr(connection.real, name, value,
                                                                 length);
                    });
    }

    SQLRETURN SQLSetStmtAttr(SQLHSTMT handle, SQLINTEGER name, SQLPOINTER value, SQLINTEGER length)
    {
        StatementHandle& statement = StatementIn(handle);
        Call call = CallOn(Entry::SetStatement, statement);
        call.attribute = static_cast<unsigned>(name);
        return Pass(call, statement,
                    [&] {
                        return statement.connection->driver->setStmtAttr(statement.real, name,
                                                                         value, length);
                    });
    }

    SQLRETURN SQLDisconnect(SQLHDBC handle)
    {
        ConnectionHandle& connection = ConnectionIn(handle);
        return Pass(Entry::Disconnect, connection,
                    [&]
                    {
                        const SQLRETURN result = connection.driver->disconnect(connection.real);
                        connection.connected = connection.connected && !SQL_SUCCEEDED(result);
                        return result;
                    });
    }

    SQLRETURN SQLEndTran(SQLSMALLINT kind, SQLHANDLE handle, SQLSMALLINT completion)
    {
        if (kind != SQL_HANDLE_DBC)
        {
            return SQL_ERROR;
        }
        ConnectionHandle& connection = ConnectionIn(handle);
        return Pass(Entry::EndTransaction, connection,
                    [&] { return connection.driver->endTran(kind, connection.real, completion); });
    }

    SQLRETURN SQLRowCount(SQLHSTMT handle, SQLLEN* rows)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::RowCount, statement,
                    [&] { return statement.connection->driver->rowCount(statement.real, rows); });
    }

    SQLRETURN SQLMoreResults(SQLHSTMT handle)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::MoreResults, statement,
                    [&] { return statement.connection->driver->moreResults(statement.real); });
    }

    SQLRETURN SQLNumResultCols(SQLHSTMT handle, SQLSMALLINT* count)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::ResultColumns, statement,
                    [&]
                    { return statement.connection->driver->numResultCols(statement.real, count); });
    }

    SQLRETURN SQLBindCol(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER buffer,
                         SQLLEN size, SQLLEN* indicator)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::BindColumn, statement,
                    [&]
                    {
                        return statement.connection->driver->bindCol(statement.real, column, type,
                                                                     buffer, size, indicator);
                    });
    }

    SQLRETURN SQLFetch(SQLHSTMT handle)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::Fetch, statement,
                    [&] { return statement.connection->driver->fetch(statement.real); });
    }

    SQLRETURN SQLGetData(SQLHSTMT handle, SQLUSMALLINT column, SQLSMALLINT type, SQLPOINTER buffer,
                         SQLLEN size, SQLLEN* indicator)
    {
        StatementHandle& statement = StatementIn(handle);
        return Pass(Entry::GetData, statement,
                    [&]
                    {
                        return statement.connection->driver->getData(statement.real, column, type,
                                                                     buffer, size, indicator);
                    });
    }

    // The driver manager asks for messages only if the driver has this one too; it needs nothing
    // of what could be told here.
    SQLRETURN SQLGetDiagField(SQLSMALLINT, SQLHANDLE, SQLSMALLINT, SQLSMALLINT, SQLPOINTER,
                              SQLSMALLINT, SQLSMALLINT*)
    {
        return SQL_NO_DATA;
    }

} // extern "C"
