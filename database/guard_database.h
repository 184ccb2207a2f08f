#pragma once

#include "database/cdbexception.h"

#include <exception>

namespace database
{

/// Calls Delete() on the exception at the end of the scope.
class ExceptionOwner
{
public:
    explicit ExceptionOwner(CDBException* exception) noexcept : m_exception(exception) {}
    ~ExceptionOwner() { m_exception->Delete(); }
    ExceptionOwner(const ExceptionOwner&) = delete;
    ExceptionOwner& operator=(const ExceptionOwner&) = delete;

private:
    CDBException* m_exception;
};

/// The pair of handlers round every use of the database: runs `body`; a database exception goes to
/// `onDatabase` and is deleted afterwards, any other to `onOther`. Returns whether `body` ended
/// normally. The unwinding of a cancelled thread passes through.
template <typename Body, typename OnDatabase, typename OnOther>
bool GuardDatabase(Body&& body, OnDatabase&& onDatabase, OnOther&& onOther)
{
    try
    {
        body();
        return true;
    }
    catch (CDBException* raised)
    {
        const ExceptionOwner owner(raised);
        onDatabase(*raised);
    }
    catch (...)
    {
        // What unwinds a cancelled thread is no C++ exception, and a handler that ends it ends the
        // process.
        if (std::current_exception() == nullptr)
        {
            throw;
        }
        onOther();
    }
    return false;
}

} // namespace database
